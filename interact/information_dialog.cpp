#include "interact/information_dialog.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <cmath>
#include <cstdio>
#include <span>

#include "model/core.h"
#include "model/menu_rules.h"
#include "model/messages.h"
#include "model/model.h"
#include "model/numbers.h"
#include "model/prompt.h"
#include "plot/paint_context.h"
#include "ui/ansi_text.h"
#include "ui/controls.h"
#include "ui/plot_host.h"
#include "ui_dlg218.h"

namespace sedra {

namespace {

// A text control and the section field it edits; Limit counts the terminator.  Some
// fields are wider than the editor lets the user fill: the scanner's files may carry
// longer texts, the editor has always cut them to its own limits.
struct TextBinding {
  int Id;
  char* (*Field)(CoreSection&);
  size_t Limit;
};

// Stored before the date is looked at, so a refused date leaves these already changed.
const TextBinding kBeforeDate[] = {
    {1468, [](CoreSection& s) -> char* { return s.FileName; }, 64},
    {1457, [](CoreSection& s) -> char* { return s.CoreName; }, 64},
    {1471, [](CoreSection& s) -> char* { return s.SectionName; }, 64},
    {1477, [](CoreSection& s) -> char* { return s.UserField; }, 32},
};
const TextBinding kAfterDate[] = {
    {1470, [](CoreSection& s) -> char* { return s.TubeText; }, 32},
    {1497, [](CoreSection& s) -> char* { return s.CameraText; }, 32},
    {1508, [](CoreSection& s) -> char* { return s.XrfVoltText; }, 32},
    {1493, [](CoreSection& s) -> char* { return s.StepSizeText; }, 32},
    {1502, [](CoreSection& s) -> char* { return s.CountTimeText; }, 32},
    {1446, [](CoreSection& s) -> char* { return s.TubeSettingsText; }, 32},
};

struct SwitchBinding {
  int Id;
  uint32_t& (*Flag)(Model&);
};
const SwitchBinding kSwitches[] = {
    {1472, [](Model& m) -> uint32_t& { return m.Plot().ShowInfo; }},
    {1473, [](Model& m) -> uint32_t& { return m.Plot().ShowSmoothPoints; }},
    {1485, [](Model& m) -> uint32_t& { return m.Plot().ShowDividers; }},
    {1486, [](Model& m) -> uint32_t& { return m.Plot().ShowSectionTitles; }},
    {1483, [](Model& m) -> uint32_t& { return m.Settings().ShowRadiographData; }},
    {1491, [](Model& m) -> uint32_t& { return m.Work().ShowOptical; }},
    {1492, [](Model& m) -> uint32_t& { return m.Work().ShowCoreName; }},
    {1494, [](Model& m) -> uint32_t& { return m.Work().ShowSectionName; }},
};

// Font sizes 1487..1489 and margins Top, Bottom, Left, Right in 1479..1482.
constexpr int kFirstFontId = 1487;
constexpr int kFirstMarginId = 1479;
int32_t* FontSizes(DisplaySettings& s, int i) {
  int32_t* sizes[] = {&s.ElementFontSize, &s.HScaleFontSize, &s.DepthFontSize};
  return sizes[i];
}
int16_t* Margins(DisplaySettings& s, int i) {
  int16_t* margins[] = {&s.MarginTop, &s.MarginBottom, &s.MarginLeft, &s.MarginRight};
  return margins[i];
}
// Below 6 points the settings reader replaces a size at the next start anyway; above
// 72 a label no longer fits a data column.  A margin beyond 100 mm leaves no page.
constexpr int kSmallestFont = 6, kLargestFont = 72, kWidestMargin = 100;

QString Text(const std::string& s) { return QString::fromLatin1(s.c_str()); }

}  // namespace

int DefaultDepthTick(float sectionLength) {
  if (sectionLength < 300) return 10;
  if (sectionLength < 600) return 25;
  return 50;
}

InformationDialog::InformationDialog(PlotHost& host)
    : ModalDialog(host.OwnerWindow()), host_(host), model_(host.PlotModel()), ui_(std::make_unique<Ui::dlg218>()) {
  ui_->setupUi(this);
  CopyField(stepSizeTextBefore_, model_.CurSection().StepSizeText);
  Fill();
  connect(ui_->ctl1026, &QPushButton::clicked, this, [this] { OnFinished(); });
}

InformationDialog::~InformationDialog() = default;

void InformationDialog::Fill() {
  PlotState& plot = model_.Plot();
  CoreSection& section = model_.CurSection();
  if (plot.DepthTick == 0) plot.DepthTick = DefaultDepthTick(plot.SectionLength[model_.CurSectionSlot()]);

  for (std::span<const TextBinding> table : {std::span<const TextBinding>(kBeforeDate), std::span<const TextBinding>(kAfterDate)})
    for (const TextBinding& b : table) ShowAnsiField(Control<QLineEdit>(this, b.Id), b.Field(section), b.Limit);
  Control<QLineEdit>(this, 1490)->setText(
      Text(Format("%02d/%02d/%d", section.ScanDay, section.ScanMonth, section.ScanYear)));
  // The dwell time is read from and written to the first section whatever section is
  // current, while its unit is the current section's: the information block shows the
  // current section's, so editing section 3 changes what section 1 prints.  Kept.
  Control<QLineEdit>(this, 1447)->setText(QString::number(model_.Section(0).Exposure) + QLatin1Char(' ') +
                                          FromAnsi(section.ExposureText, sizeof section.ExposureText));
  Control<QLineEdit>(this, 1475)->setText(Text(Format("%3.1f", double(section.OpticalWidthLabel))));
  Control<QLineEdit>(this, 1484)->setText(Text(Format("%3.1f", double(section.StartDepth))));
  Control<QLineEdit>(this, 1476)->setText(QString::number(section.StartLabelDepth));
  Control<QLineEdit>(this, 1478)->setText(QString::number(plot.DepthTick));
  DisplaySettings& settings = model_.Settings();
  for (int i = 0; i < 3; ++i) Control<QLineEdit>(this, kFirstFontId + i)->setText(QString::number(*FontSizes(settings, i)));
  for (int i = 0; i < 4; ++i) Control<QLineEdit>(this, kFirstMarginId + i)->setText(QString::number(*Margins(settings, i)));
  for (const SwitchBinding& b : kSwitches) Control<QCheckBox>(this, b.Id)->setChecked(b.Flag(model_) != 0);
  ui_->ctl1474->setChecked(false);
}

bool InformationDialog::OnFinished() {
  CoreSection& section = model_.CurSection();
  for (const TextBinding& b : kBeforeDate) StoreAnsiField(Control<QLineEdit>(this, b.Id), b.Field(section), b.Limit);
  Date date;
  if (!ParseDate(date, ToAnsi(ui_->ctl1490->text(), 31), &host_.UserPrompt())) return false;
  section.ScanDay = date.Day;
  section.ScanMonth = date.Month;
  section.ScanYear = date.Year;
  StoreTexts();
  StoreNumbers();
  StoreSizes();
  StoreSwitches();
  // The sizing box is not stored: it only offers "Image Size" until the next visit.
  MenuAfterInformationEditor(model_.App.Menu, ui_->ctl1474->isChecked());
  host_.ApplyMenuState();
  // A section whose title was never placed gets its header block at the column's top.
  if (section.SectionTitleFontSize == 0) {
    const PlotState& plot = model_.Plot();
    section.HeaderRect.Left = plot.ColumnLeft + plot.CharHeight;
    section.HeaderRect.Top = plot.CharHeight;
    section.SectionTitleFontSize = 8;
  }
  done(0);
  return true;
}

void InformationDialog::StoreTexts() {
  CoreSection& section = model_.CurSection();
  for (const TextBinding& b : kAfterDate) StoreAnsiField(Control<QLineEdit>(this, b.Id), b.Field(section), b.Limit);
  const std::string dwell = ToAnsi(ui_->ctl1447->text(), 31);
  int exposure = 0;
  char unit[32] = {};
  const int parsed = std::sscanf(dwell.c_str(), "%d %31s", &exposure, unit);
  if (parsed >= 1) model_.Section(0).Exposure = exposure;
  if (parsed == 2) CopyField(section.ExposureText, unit);
}

void InformationDialog::StoreNumbers() {
  CoreSection& section = model_.CurSection();
  // Text that is no number keeps the old value; so does one too large for a float,
  // which would otherwise put the whole plot at an infinite depth.
  auto real = [](const QLineEdit* edit, float& field) {
    float v = 0;
    if (LeadingReal(ToAnsi(edit->text(), 15), v) && std::isfinite(v)) field = v;
  };
  real(ui_->ctl1475, section.OpticalWidthLabel);
  real(ui_->ctl1484, section.StartDepth);
  section.StartLabelDepth = EditInt(ui_->ctl1476);
  PlotState& plot = model_.Plot();
  plot.DepthTick = EditInt(ui_->ctl1478);
  if (plot.DepthTick < 1) plot.DepthTick = 100;
}

void InformationDialog::StoreSizes() {
  DisplaySettings& settings = model_.Settings();
  int32_t fonts[3], margins[4];
  bool fontsOk = true, marginsOk = true;
  for (int i = 0; i < 3; ++i) {
    fonts[i] = EditInt(Control<QLineEdit>(this, kFirstFontId + i));
    fontsOk = fontsOk && fonts[i] >= kSmallestFont && fonts[i] <= kLargestFont;
  }
  for (int i = 0; i < 4; ++i) {
    margins[i] = EditInt(Control<QLineEdit>(this, kFirstMarginId + i));
    marginsOk = marginsOk && margins[i] >= 0 && margins[i] <= kWidestMargin;
  }
  if (marginsOk)
    for (int i = 0; i < 4; ++i) *Margins(settings, i) = int16_t(margins[i]);
  else
    host_.UserPrompt().Tell(msg::kMarginRange);
  if (fontsOk)
    for (int i = 0; i < 3; ++i) *FontSizes(settings, i) = fonts[i];
  else
    host_.UserPrompt().Tell(msg::kFontSizeRange);
}

void InformationDialog::StoreSwitches() {
  for (const SwitchBinding& b : kSwitches) b.Flag(model_) = Control<QCheckBox>(this, b.Id)->isChecked() ? 1 : 0;
}

void InformationDialog::Closed() {
  model_.Plot().NeedLayout = 1;
  UpdateMenusAfterEdit(model_, stepSizeTextBefore_);
  host_.ApplyMenuState();
  host_.Repaint();
}

}  // namespace sedra
