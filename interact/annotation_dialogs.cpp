#include "interact/annotation_dialogs.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <algorithm>
#include <variant>

#include "interact/mouse_engine.h"
#include "model/model.h"
#include "model/numbers.h"
#include "ui_dlg209.h"
#include "ui_dlg211.h"
#include "ui_dlg212.h"
#include "ui_dlg213.h"

namespace sedra {

namespace {

constexpr int kFirstRadio = 1385;
constexpr int kClearCurrent = 1455;
constexpr int kPatternList = 1491;
constexpr int kFormatList = 1474;

// The stored index is the position in these lists.
constexpr const char* kPatterns[] = {"Shading",        "Horizontal hatch", "Vertical hatch",       "Upward hatch",
                                     "Downward hatch", "Crosshatch",       "45-degree crosshatch", "Stipple"};
constexpr const char* kFormats[] = {"Solid", "Dashes", "Dots", "Dash-Dot", "Dash-Dot-Dot"};

bool IsRegion(AnnotationKind kind) { return kind == AnnotationKind::HRegion || kind == AnnotationKind::VRegion; }

// Every field array moves down on its own, from slot `from` to the last.
template <typename... Fields>
void ShiftDown(int from, int last, Fields*... fields) {
  for (int i = from; i < last; ++i) ((fields[i] = fields[i + 1]), ...);
}

float SectionLengthOf(const Model& model) { return model.Plot().SectionLength[model.CurSectionSlot()]; }

// The edit's text read as "%f" into `value`, which keeps what it held when the text
// does not start with a number.  A 16-character buffer read the region edits.
void ReadReal(const QWidget* dialog, int id, float& value, int maxChars = -1) {
  const auto* edit = Control<QLineEdit>(dialog, id);
  if (!edit) return;
  QString text = edit->text();
  if (maxChars > 0) text.truncate(maxChars);
  LeadingReal(text.toStdString(), value);
}

// The band of the current entry, document pixels; zeros when the entry is free.
IntRect BandOf(const Model& model, AnnotationKind kind, int i) {
  const PlotState& plot = model.Plot();
  const CoreSection& s = model.CurSection();
  if (!InUse(s, kind, i)) return {};
  const int left = plot.LeftMargin, right = plot.PageWidth - plot.RightMargin;
  const int top = plot.TopMargin, bottom = plot.PageHeight - plot.BottomMargin;
  switch (kind) {
    case AnnotationKind::HRegion:
      return {left, RowOfStoredDepth(plot, s.HRegionTop[i]), right, RowOfStoredDepth(plot, s.HRegionBottom[i])};
    case AnnotationKind::VRegion:
      return {XOfUnits(model, s.VRegionLeft[i]), top, XOfUnits(model, s.VRegionRight[i]), bottom};
    case AnnotationKind::HLine: {
      // One pixel high, where the mouse places a two-pixel band.
      const int y = RowOfStoredDepth(plot, s.HLineDepth[i]);
      return {left, y - 1, right, y};
    }
    case AnnotationKind::VLine: {
      const int x = XOfUnits(model, s.VLinePosition[i]);
      return {x - 2, top, x + 2, bottom};
    }
  }
  return {};
}

}  // namespace

int SlotCount(AnnotationKind kind) { return kind == AnnotationKind::VLine ? kVLineSlots : kAnnotationSlots; }

bool InUse(const CoreSection& s, AnnotationKind kind, int i) {
  if (i < 0 || i >= SlotCount(kind)) return false;
  switch (kind) {
    case AnnotationKind::HRegion: return s.HRegionBottom[i] > 0;
    case AnnotationKind::VRegion: return s.VRegionRight[i] > 0;
    case AnnotationKind::HLine: return s.HLineDepth[i] > 0;
    case AnnotationKind::VLine: return s.VLinePosition[i] >= 1;
  }
  return false;
}

int& CurrentEntry(PlotState& plot, AnnotationKind kind) {
  switch (kind) {
    case AnnotationKind::HRegion: return plot.CurHRegion;
    case AnnotationKind::VRegion: return plot.CurVRegion;
    case AnnotationKind::HLine: return plot.CurHLine;
    case AnnotationKind::VLine: break;
  }
  return plot.CurVLine;
}

void RemoveAnnotation(CoreSection& s, AnnotationKind kind, int index) {
  const int last = SlotCount(kind) - 1;
  if (index < 0 || index > last) return;
  switch (kind) {
    case AnnotationKind::HRegion:
      ShiftDown(index, last, s.HRegionTop, s.HRegionBottom, s.HRegionPattern);
      s.HRegionBottom[last] = 0;
      break;
    case AnnotationKind::VRegion:
      ShiftDown(index, last, s.VRegionLeft, s.VRegionRight, s.VRegionPattern);
      s.VRegionRight[last] = 0;
      break;
    case AnnotationKind::HLine:
      ShiftDown(index, last, s.HLineDepth, s.HLineStyle, s.HLineWidth);
      s.HLineDepth[last] = 0;
      break;
    case AnnotationKind::VLine:
      ShiftDown(index, last, s.VLinePosition, s.VLineStyle, s.VLineWidth);
      s.VLinePosition[last] = 0;
      break;
  }
}

int RowOfStoredDepth(const PlotState& plot, float depth) {
  const double e = plot.Expanded ? double(plot.ExpandTop) : 0.0;
  const double rows = plot.DepthSpan != 0 ? double(plot.PlotHeight) * (double(depth) - e) / double(plot.DepthSpan) : 0;
  return int(std::clamp<int64_t>(int64_t(Nearest(rows)) + plot.TopMargin + plot.PageRect.Top, -1000000000, 1000000000));
}

int XOfUnits(const Model& model, double units) {
  const PlotState& plot = model.Plot();
  const float length = SectionLengthOf(model);
  const double px = length != 0 ? units * plot.DataAreaRight / double(length) : 0;
  return int(std::clamp<int64_t>(int64_t(Nearest(px)) + plot.ColumnLeft, -1000000000, 1000000000));
}

double UnitsOfX(const Model& model, int x) {
  const PlotState& plot = model.Plot();
  if (plot.DataAreaRight == 0) return 0;
  return double(SectionLengthOf(model)) * double(int64_t(x) - plot.ColumnLeft) / double(plot.DataAreaRight);
}

void ShowAnnotation(PlotHost& host, AnnotationKind kind, ToolDialog& readouts) {
  Model& model = host.PlotModel();
  PlotState& plot = model.Plot();
  const CoreSection& s = model.CurSection();
  const int i = std::clamp(CurrentEntry(plot, kind), 0, SlotCount(kind) - 1);
  plot.TrackRect = BandOf(model, kind, i);
  const double start = s.StartLabelDepth;
  if (kind == AnnotationKind::HRegion) {
    readouts.SetControlText(1476, QString::fromStdString(Format("%1.0f", double(s.HRegionTop[i]) + start)));
    readouts.SetControlText(1478, QString::fromStdString(Format("%1.0f", double(s.HRegionBottom[i]) + start)));
  } else if (kind == AnnotationKind::HLine) {
    readouts.SetControlText(1478, QString::fromStdString(Format("%3.1f", double(s.HLineDepth[i]) + start)));
  }
  host.Repaint();
}

struct AnnotationDialog::Form {
  std::variant<Ui::dlg209, Ui::dlg211, Ui::dlg212, Ui::dlg213> Ui;
};

namespace {
int ResourceOf(AnnotationKind kind) {
  switch (kind) {
    case AnnotationKind::HRegion: return 209;
    case AnnotationKind::VRegion: return 211;
    case AnnotationKind::HLine: return 212;
    case AnnotationKind::VLine: break;
  }
  return 213;
}
}  // namespace

AnnotationDialog::AnnotationDialog(PlotHost& host, AnnotationKind kind)
    : ToolDialog(host, ResourceOf(kind)), kind_(kind), form_(std::make_unique<Form>()) {
  switch (kind) {
    case AnnotationKind::HRegion: form_->Ui.emplace<Ui::dlg209>(); break;
    case AnnotationKind::VRegion: form_->Ui.emplace<Ui::dlg211>(); break;
    case AnnotationKind::HLine: form_->Ui.emplace<Ui::dlg212>(); break;
    case AnnotationKind::VLine: form_->Ui.emplace<Ui::dlg213>(); break;
  }
  std::visit([this](auto& ui) { ui.setupUi(this); }, form_->Ui);
  if (auto* list = Control<QComboBox>(this, IsRegion(kind) ? kPatternList : kFormatList)) {
    if (IsRegion(kind))
      for (const char* name : kPatterns) list->addItem(QString::fromLatin1(name));
    else
      for (const char* name : kFormats) list->addItem(QString::fromLatin1(name));
  }
  for (int k = 0; k < SlotCount(kind); ++k)
    if (auto* radio = Control<QRadioButton>(this, kFirstRadio + k))
      connect(radio, &QRadioButton::clicked, this, [this, k] { OnRadio(kFirstRadio + k); });
  connect(Control<QPushButton>(this, 1), &QPushButton::clicked, this, [this] { OnFinished(); });
  connect(Control<QPushButton>(this, kClearCurrent), &QPushButton::clicked, this, [this] { OnClearCurrent(); });
}

AnnotationDialog::~AnnotationDialog() = default;

void AnnotationDialog::SelectListEntry(int value) {
  if (auto* list = Control<QComboBox>(this, IsRegion(kind_) ? kPatternList : kFormatList)) list->setCurrentIndex(value);
}

void AnnotationDialog::SetModes() {
  Model& model = host_.PlotModel();
  PlotState& plot = model.Plot();
  CoreSection& s = model.CurSection();
  switch (kind_) {
    case AnnotationKind::HRegion: plot.HRegionMode = 1; break;
    case AnnotationKind::VRegion: plot.VLineMode = plot.VRegionMode = 1; break;
    case AnnotationKind::HLine: plot.HLineMode = 1; break;
    case AnnotationKind::VLine: plot.VLineMode = 1; break;
  }
  plot.Tracking = 1;
  int& cur = CurrentEntry(plot, kind_);
  cur = std::clamp(cur, 0, SlotCount(kind_) - 1);
  if (auto* radio = Control<QRadioButton>(this, kFirstRadio + cur)) radio->setChecked(true);
  const bool used = InUse(s, kind_, cur);
  if (kind_ == AnnotationKind::HRegion) SelectListEntry(used ? s.HRegionPattern[cur] : 0);
  if (kind_ == AnnotationKind::VRegion) SelectListEntry(used ? s.VRegionPattern[cur] : 0);
  if (!IsRegion(kind_)) {
    int32_t& width = kind_ == AnnotationKind::HLine ? s.HLineWidth[cur] : s.VLineWidth[cur];
    const int32_t style = kind_ == AnnotationKind::HLine ? s.HLineStyle[cur] : s.VLineStyle[cur];
    // A new line starts one pixel wide and solid.
    if (!used) width = 1;
    SetControlText(1476, QString::fromStdString(Format("%d", width)));
    SelectListEntry(used ? style : 0);
  }
  ShowAnnotation(host_, kind_, *this);
}

void AnnotationDialog::ClearModes() {
  PlotState& plot = host_.PlotModel().Plot();
  plot.TrackRect = {};
  plot.Tracking = 0;
  switch (kind_) {
    case AnnotationKind::HRegion: plot.HRegionMode = 0; break;
    case AnnotationKind::VRegion: plot.VLineMode = plot.VRegionMode = 0; break;
    case AnnotationKind::HLine: plot.HLineMode = 0; break;
    case AnnotationKind::VLine: plot.VLineMode = 0; break;
  }
}

// The current entry from the edits, the list and the band on the plot.
void AnnotationDialog::Store() {
  Model& model = host_.PlotModel();
  const PlotState& plot = model.Plot();
  CoreSection& s = model.CurSection();
  const int i = std::clamp(CurrentEntry(model.Plot(), kind_), 0, SlotCount(kind_) - 1);
  const float start = float(s.StartLabelDepth);
  const auto* list = Control<QComboBox>(this, IsRegion(kind_) ? kPatternList : kFormatList);
  const int selected = list ? list->currentIndex() : 0;
  switch (kind_) {
    case AnnotationKind::HRegion: {
      // One value reads both edits: a bottom that does not parse repeats the top.
      float v = 0;
      ReadReal(this, 1476, v, 16);
      s.HRegionTop[i] = v - start;
      ReadReal(this, 1478, v, 16);
      s.HRegionBottom[i] = v - start;
      s.HRegionPattern[i] = selected;
      break;
    }
    case AnnotationKind::VRegion:
      s.VRegionPattern[i] = selected;
      s.VRegionLeft[i] = float(UnitsOfX(model, plot.TrackRect.Left));
      s.VRegionRight[i] = float(UnitsOfX(model, plot.TrackRect.Right));
      break;
    case AnnotationKind::HLine: {
      float v = 0;
      ReadReal(this, 1478, v);
      s.HLineDepth[i] = v - start;
      s.HLineStyle[i] = selected;
      s.HLineWidth[i] = EditInt(Control<QLineEdit>(this, 1476));
      break;
    }
    case AnnotationKind::VLine:
      // The + 2 undoes the two pixels the shown band starts left of the line; it is
      // added in units, not pixels, and stays so: stored lines sit where users put them.
      s.VLinePosition[i] = Nearest(UnitsOfX(model, plot.TrackRect.Left)) + 2;
      s.VLineStyle[i] = selected;
      s.VLineWidth[i] = EditInt(Control<QLineEdit>(this, 1476));
      break;
  }
}

void AnnotationDialog::OnRadio(int id) {
  Store();
  Model& model = host_.PlotModel();
  const CoreSection& s = model.CurSection();
  const int i = std::clamp(id - kFirstRadio, 0, SlotCount(kind_) - 1);
  CurrentEntry(model.Plot(), kind_) = i;
  switch (kind_) {
    case AnnotationKind::HRegion:
      if (s.HRegionPattern[i] >= 0) SelectListEntry(s.HRegionPattern[i]);
      break;
    case AnnotationKind::VRegion:
      if (s.VRegionPattern[i] >= 0) SelectListEntry(s.VRegionPattern[i]);
      break;
    case AnnotationKind::HLine:
      if (s.HLineWidth[i] >= 0) SelectListEntry(s.HLineStyle[i]);
      break;
    case AnnotationKind::VLine:
      if (s.VLinePosition[i] >= 0) SelectListEntry(s.VLineStyle[i]);
      break;
  }
  ShowAnnotation(host_, kind_, *this);
}

void AnnotationDialog::OnFinished() {
  Store();
  host_.PlotModel().Plot().Modified = 1;
  EndTool();
}

void AnnotationDialog::OnClearCurrent() {
  Model& model = host_.PlotModel();
  int& cur = CurrentEntry(model.Plot(), kind_);
  cur = std::clamp(cur, 0, SlotCount(kind_) - 1);
  RemoveAnnotation(model.CurSection(), kind_, cur);
  if (cur > 0) --cur;
  model.Plot().Modified = 1;
  EndTool();
}

}  // namespace sedra
