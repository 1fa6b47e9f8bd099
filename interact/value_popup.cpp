#include "interact/value_popup.h"

#include <QLineEdit>
#include <algorithm>
#include <cmath>
#include <cstring>

#include "interact/mouse_engine.h"
#include "model/model.h"
#include "model/numbers.h"
#include "plot/plot_layout.h"
#include "ui_dlg225.h"

namespace sedra {

namespace {

std::string SetName(const PlotState& plot, int set0) {
  const char* name = plot.DataSetNames[set0];
  return std::string(name, strnlen(name, kDataSetNameLength));
}

// What column k shows at point n: the element's name, then its value.
std::string ColumnValue(const Model& model, int k, int n) {
  const PlotState& plot = model.Plot();
  const AppState& app = model.App;
  const int e = app.Settings.DataSetOfPlot[k] - 1;
  if (e < 0 || e >= kMaxChannels) return {};
  const std::string name = SetName(plot, e);
  // A ratio, a normalised or a filtered curve is read from the computed curve; a plain
  // channel from the section's data, whole counts except for the surface channels.
  if (app.RatioOn[k] || app.NormaliseBy[k] || app.FilterType[k] != 0) {
    const CurveWork& work = model.Curves();
    const double v = size_t(k + 1) * kCurveWorkPoints <= work.Values.size() ? work.Value(k, n) : 0.0;
    return name + TrimExponent(ThreeDigitExponent(Format(":- %8.2e", v)));
  }
  const float v = model.CurSection().Data[e][n];
  if (name.find("face") != std::string::npos) return name + Format(":- %4.2f", double(v));
  return name + Format(":- %d", Nearest(v));
}

}  // namespace

ValueLines ValueReadout(const Model& model, const PlotLayout& l, int x, int y) {
  const PlotState& plot = model.Plot();
  const CoreSection& section = model.CurSection();
  ValueLines lines;
  const double f = l.PlotHeight != 0 ? double(y - l.TopMargin) / double(l.PlotHeight) : 0.0;
  const int64_t n = plot.Expanded
                        ? plot.ViewFirstPoint + int64_t(Nearest((double(plot.ViewLastPoint) - plot.ViewFirstPoint) * f))
                        : Nearest(double(section.PointCount) * f);
  double depth = double(l.DepthSpan) * f + section.StartLabelDepth;
  if (plot.Expanded) depth += plot.ExpandTop;
  if (n >= 0 && n < std::min(section.PointCount, kMaxPoints)) {
    lines.File = Format("File L%06d.spe", int(n));
    const int columns = std::min(plot.ColumnCount, kMaxCurves);
    const int k = ColumnAt(l.ColumnLeft, l.ColumnWidth, columns, x);
    if (k < columns) lines.Value = ColumnValue(model, k, int(n));
  }
  lines.Depth = Format("Position is %2.0f mm", depth);
  return lines;
}

ValuePopup::ValuePopup(QWidget* owner)
    : QDialog(owner, Qt::ToolTip | Qt::FramelessWindowHint), ui_(std::make_unique<Ui::dlg225>()) {
  ui_->setupUi(this);
  // It must never take the focus or the mouse: the button-up has to reach the plot.
  setAttribute(Qt::WA_ShowWithoutActivating);
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setModal(false);
}

ValuePopup::~ValuePopup() = default;

void ValuePopup::Show(const ValueLines& lines, const QPoint& pointer) {
  ui_->ctl1476->setText(QString::fromStdString(lines.Depth));
  ui_->ctl1477->setText(QString::fromStdString(lines.File));
  ui_->ctl1478->setText(QString::fromStdString(lines.Value));
  adjustSize();
  // Its bottom edge sits at the pointer's height, its left at the pointer.
  move(pointer.x(), pointer.y() - height());
  show();
}

}  // namespace sedra
