#include "images/ui/data_region_dialog.h"

#include <QLineEdit>
#include <QPushButton>

#include "images/image_views.h"
#include "images/ui/image_windows.h"
#include "images/ui/up_down.h"
#include "model/model.h"
#include "ui_dlg208.h"

namespace sedra {

DataRegionDialog::DataRegionDialog(PlotHost& host) : ImageToolDialog(host, 208, Image::Radiograph), ui_(std::make_unique<Ui::dlg208>()) {
  ui_->setupUi(this);
  ui_->ctl1512->SetBuddy(ui_->ctl1481);
  ui_->ctl1513->SetBuddy(ui_->ctl1482);
  ApplyAfterSpin({ui_->ctl1512, ui_->ctl1513}, {ui_->ctl1481, ui_->ctl1482}, [this] { ApplyEdits(); });
  connect(ui_->ctl1, &QPushButton::clicked, this, [this] { OnFinished(); });
  connect(ui_->ctl2, &QPushButton::clicked, this, [this] { OnCancel(); });
}

DataRegionDialog::~DataRegionDialog() = default;

void DataRegionDialog::showEvent(QShowEvent* event) {
  ToolDialog::showEvent(event);
  RadImageWindow::Of(host_).Refresh();
}

void DataRegionDialog::SetModes() {
  Model& model = host_.PlotModel();
  PlotState& plot = model.Plot();
  NoteImage();
  plot.DataRegionMode = 1;
  RadImageWindow::Of(host_).ShowView();
  keptLeft_ = plot.DataRegionLeft;
  keptRight_ = plot.DataRegionRight;
  RadiographDesc& rad = model.CurRadiograph();
  rad.EditRect = DataRegionMarker(rad, plot.DataRegionLeft, plot.DataRegionRight);
  ui_->ctl1481->setText(Signed(plot.DataRegionLeft));
  ui_->ctl1482->setText(Signed(plot.DataRegionRight));
  // The ranges run from the image's far edge: the up arrow moves toward column 0 (1).
  ui_->ctl1512->SetRange(rad.Width, 0);
  ui_->ctl1513->SetRange(rad.Width, 1);
  ui_->ctl1512->SetPosition(plot.DataRegionLeft);
  ui_->ctl1513->SetPosition(plot.DataRegionRight);
}

void DataRegionDialog::ClearModes() {
  Model& model = host_.PlotModel();
  PlotState& plot = model.Plot();
  if (OnNotedImage()) model.CurRadiograph().EditRect = {};
  plot.DataRegionMode = 0;
  RadImageWindow::Of(host_).hide();
}

void DataRegionDialog::ReadEdits() {
  PlotState& plot = host_.PlotModel().Plot();
  ReadInt(ui_->ctl1481, plot.DataRegionLeft);
  ReadInt(ui_->ctl1482, plot.DataRegionRight);
}

void DataRegionDialog::ShowBand() {
  Model& model = host_.PlotModel();
  RadiographDesc& rad = model.CurRadiograph();
  rad.EditRect = DataRegionMarker(rad, model.Plot().DataRegionLeft, model.Plot().DataRegionRight);
  RadImageWindow::Of(host_).update();
  // The data curve follows the band.
  model.Plot().NeedLayout = 1;
  host_.Repaint();
}

void DataRegionDialog::ApplyEdits() {
  if (!Alive()) return;
  ReadEdits();
  ShowBand();
}

void DataRegionDialog::OnFinished() {
  if (Alive()) {
    PlotState& plot = host_.PlotModel().Plot();
    ReadEdits();
    plot.NeedLayout = 1;
    plot.Modified = 1;
    if (plot.DataRegionRight <= plot.DataRegionLeft) plot.DataRegionRight = plot.DataRegionLeft + 1;
  }
  EndTool();
}

void DataRegionDialog::OnCancel() {
  if (Alive()) {
    PlotState& plot = host_.PlotModel().Plot();
    plot.DataRegionLeft = keptLeft_;
    plot.DataRegionRight = keptRight_;
    // A band dragged meanwhile may have been summed already.
    plot.NeedLayout = 1;
  }
  EndTool();
}

}  // namespace sedra
