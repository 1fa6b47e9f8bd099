#include "interact/data_dialogs.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <algorithm>
#include <cstring>
#include <string>

#include "model/messages.h"
#include "model/model.h"
#include "model/numbers.h"
#include "model/prompt.h"
#include "ui_dlg215.h"
#include "ui_dlg224.h"

namespace sedra {

int MarkPoints(CoreSection& section, double d1, double d2, bool deleting) {
  float* mask = section.Data[0];
  const int points = std::clamp(section.PointCount, 0, kMaxPoints);
  int changed = 0;
  for (int i = 0; i < points; ++i) {
    const double depth = section.Depth[i];
    if (!(depth >= d1 && depth <= d2)) continue;
    float& v = mask[i];
    if (deleting) {
      if (!(v >= 0)) continue;  // already deleted (or missing)
      v = v > 0 ? -2.0f : -1.0f;
    } else {
      if (!(v < 0)) continue;
      v = v == -2.0f ? 1.0f : 0.0f;
    }
    ++changed;
  }
  return changed;
}

DeletePointsDialog::DeletePointsDialog(PlotHost& host)
    : ToolDialog(host, 215), ui_(std::make_unique<Ui::dlg215>()) {
  ui_->setupUi(this);
  connect(ui_->ctl1473, &QPushButton::clicked, this, [this] { OnDelete(); });
  connect(ui_->ctl1471, &QPushButton::clicked, this, [this] { OnUndelete(); });
  connect(ui_->ctl1036, &QPushButton::clicked, this, [this] { OnFinished(); });
}

DeletePointsDialog::~DeletePointsDialog() = default;

void DeletePointsDialog::SetModes() {
  PlotState& plot = host_.PlotModel().Plot();
  // A band left on the plot goes: the next click places a new one.
  if (plot.TrackRect.Right >= 1) {
    plot.TrackRect = {};
    host_.Repaint();
  }
  plot.Tracking = 1;
  plot.DeleteMode = 1;
}

void DeletePointsDialog::ClearModes() {
  PlotState& plot = host_.PlotModel().Plot();
  plot.Tracking = 0;
  plot.DeleteMode = 0;
}

void DeletePointsDialog::OnDelete() {
  host_.PlotModel().Plot().Modified = 1;
  Mark(true);
}

void DeletePointsDialog::OnUndelete() { Mark(false); }

void DeletePointsDialog::OnFinished() {
  host_.PlotModel().Plot().Modified = 1;
  EndTool();
}

void DeletePointsDialog::Mark(bool deleting) {
  Model& model = host_.PlotModel();
  PlotState& plot = model.Plot();
  const IntRect band = plot.TrackRect;
  // The band's edges in mm from the section start, cut to the section.
  auto depth = [&plot](int y) {
    if (plot.PlotHeight == 0) return 0.0;
    const double d = double(y - plot.TopMargin) * double(plot.DepthSpan) / double(plot.PlotHeight);
    return plot.Expanded ? d + double(plot.ExpandTop) : d;
  };
  const double d1 = std::max(depth(band.Top), 0.0);
  const double d2 = std::min(depth(band.Bottom), double(plot.SectionLength[model.CurSectionSlot()]));
  const int changed = MarkPoints(model.CurSection(), d1, d2, deleting);
  plot.TrackRect = {};
  if (!deleting && changed == 0) {
    host_.UserPrompt().Tell(msg::kNoDeletedData, "", Icon::Exclamation);
    host_.Repaint();  // only the band goes
    return;
  }
  plot.NeedLayout = 1;
  host_.Repaint();
}

namespace {

std::string SetName(const PlotState& plot, int set1) {
  if (set1 < 1 || set1 > kMaxChannels) return {};
  const char* name = plot.DataSetNames[set1 - 1];
  return std::string(name, strnlen(name, kDataSetNameLength));
}

// The edit's text read as "%lf" into `value`, which keeps its value when the text does
// not start with a number.  A 32-character buffer read them.
void ReadDouble(const QLineEdit* edit, double& value) { LeadingReal(edit->text().left(32).toStdString(), value); }

}  // namespace

YScaleDialog::YScaleDialog(PlotHost& host, int column)
    : QDialog(host.OwnerWindow()), host_(host), column_(std::clamp(column, 0, kMaxCurves - 1)),
      ui_(std::make_unique<Ui::dlg224>()) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  setModal(false);
  const Model& model = host.PlotModel();
  const PlotState& plot = model.Plot();
  const AppState& app = model.App;
  std::string caption = "Set Scale for ";
  caption += SetName(plot, app.Settings.DataSetOfPlot[column_]);
  if (app.RatioOn[column_]) {
    caption += "/";
    caption += SetName(plot, app.RatioSetOfPlot[column_]);
  }
  setWindowTitle(QString::fromLatin1(caption.c_str()));
  const double yMax = plot.ColumnYMax[column_];
  ui_->ctl1498->setText(QString::fromStdString(FormatScaleValue(yMax, yMax)));
  ui_->ctl1028->setText(QString::fromStdString(FormatScaleValue(plot.ColumnOffset[column_], yMax)));
  // "Auto" starts unticked whatever the column's scale is.
  ui_->ctl1499->setChecked(false);
  connect(ui_->ctl1203, &QPushButton::clicked, this, [this] { OnApply(); });
  connect(ui_->ctl1026, &QPushButton::clicked, this, [this] { OnFinished(); });
}

YScaleDialog::~YScaleDialog() = default;

void YScaleDialog::OnApply() {
  PlotState& plot = host_.PlotModel().Plot();
  plot.ColumnFixedScale[column_] = ui_->ctl1499->isChecked() ? 0 : 1;
  ReadDouble(ui_->ctl1498, plot.ColumnYMax[column_]);
  ReadDouble(ui_->ctl1028, plot.ColumnOffset[column_]);
  if (!(plot.ColumnOffset[column_] < plot.ColumnYMax[column_])) plot.ColumnYMax[column_] = plot.ColumnOffset[column_] + 1.0;
  plot.NeedLayout = 1;
  host_.Repaint();
}

void YScaleDialog::OnFinished() {
  OnApply();
  close();
}

void YScaleDialog::reject() { close(); }

}  // namespace sedra
