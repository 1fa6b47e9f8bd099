#include "images/ui/dialog_support.h"

#include <QLineEdit>
#include <algorithm>

#include "images/ui/up_down.h"
#include "model/model.h"

namespace sedra {

bool ReadInt(const QLineEdit* edit, int32_t& value) {
  if (!edit) return false;
  const std::string text = edit->text().left(16).toStdString();
  size_t i = 0;
  while (i < text.size() && (text[i] == ' ' || text[i] == '\t')) ++i;
  bool negative = false;
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
  if (i >= text.size() || text[i] < '0' || text[i] > '9') return false;
  int64_t v = 0;
  for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) v = std::min<int64_t>(v * 10 + (text[i] - '0'), INT64_C(1) << 40);
  v = negative ? -v : v;
  value = int32_t(std::clamp<int64_t>(v, INT32_MIN, INT32_MAX));
  return true;
}

QString Signed(int32_t value) { return QString::number(value); }

QString Unsigned(int32_t value) { return QString::number(uint32_t(value)); }

ImageStamp ImageStamp::Radiograph(const Model& model) {
  const int section = model.CurSectionSlot(), slot = model.CurRadiographSlot();
  const RadiographDesc& rad = model.Section(section).Radiographs[size_t(slot)];
  return {section, slot, rad.Samples.data(), rad.Width, rad.Height};
}

ImageStamp ImageStamp::Optical(const Model& model) {
  const int section = model.CurSectionSlot();
  const OpticalImageDesc& opt = model.Section(section).Optical;
  return {section, 0, opt.Pixels.data(), opt.Width, opt.Height};
}

ImageToolDialog::ImageToolDialog(PlotHost& host, int resourceId, Image image)
    : ToolDialog(host, resourceId), image_(image) {}

ImageStamp ImageToolDialog::Current() const {
  const Model& model = host_.PlotModel();
  return image_ == Image::Optical ? ImageStamp::Optical(model) : ImageStamp::Radiograph(model);
}

void ImageToolDialog::NoteImage() { stamp_ = Current(); }

bool ImageToolDialog::OnNotedImage() const { return stamp_ == Current(); }

bool ImageToolDialog::Alive() {
  if (Ended()) return false;
  if (OnNotedImage()) return true;
  EndTool();
  return false;
}

void ImageToolDialog::ApplyAfterSpin(std::initializer_list<UpDown*> spins, std::initializer_list<QLineEdit*> edits,
                                     std::function<void()> apply) {
  for (UpDown* spin : spins) connect(spin, &UpDown::Notified, this, [this] { spinChanged_ = true; });
  for (QLineEdit* edit : edits)
    connect(edit, &QLineEdit::textChanged, this, [this, apply] {
      if (!spinChanged_ || Ended()) return;
      spinChanged_ = false;
      apply();
    });
}

}  // namespace sedra
