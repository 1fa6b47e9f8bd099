#include "images/ui/rad_contrast_dialog.h"

#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <cstring>

#include "images/auto_contrast.h"
#include "images/ui/image_windows.h"
#include "images/ui/up_down.h"
#include "ui_dlg202.h"

namespace sedra {

RadContrastDialog::RadContrastDialog(PlotHost& host) : ImageToolDialog(host, 202, Image::Radiograph), ui_(std::make_unique<Ui::dlg202>()) {
  ui_->setupUi(this);
  ui_->ctl1461->SetBuddy(ui_->ctl1030);
  ui_->ctl1462->SetBuddy(ui_->ctl1031);
  for (int k = 0; k < kRegionCount; ++k)
    connect(Control<QRadioButton>(this, 1384 + k), &QRadioButton::clicked, this, [this, k] { OnRegion(k); });
  connect(ui_->ctl1445, &QPushButton::clicked, this, [this] { OnAuto(); });
  connect(ui_->ctl1519, &QPushButton::clicked, this, [this] { OnClear(); });
  connect(ui_->ctl1203, &QPushButton::clicked, this, [this] { OnApply(); });
  connect(ui_->ctl1026, &QPushButton::clicked, this, [this] { OnOk(); });
  connect(ui_->ctl2, &QPushButton::clicked, this, [this] { OnCancel(); });
  for (UpDown* spin : {ui_->ctl1461, ui_->ctl1462})
    connect(spin, &UpDown::Notified, this, [this] {
      if (host_.PlotModel().Plot().InSizeMove || !Alive()) return;
      ReadEdits();
      Refresh();
      ContrastChanged(true);
    });
  connect(ui_->ctl1459, &HistogramView::Mouse, this, &RadContrastDialog::OnHistogramMouse);
  connect(ui_->ctl1459, &HistogramView::Resized, this, [this] {
    if (Alive()) DrawHistogram();
  });
}

RadContrastDialog::~RadContrastDialog() = default;

void RadContrastDialog::showEvent(QShowEvent* event) {
  ToolDialog::showEvent(event);
  RadImageWindow::Of(host_).Refresh();
}

RadiographDesc& RadContrastDialog::Rad() { return host_.PlotModel().CurRadiograph(); }

void RadContrastDialog::SetModes() {
  Model& model = host_.PlotModel();
  NoteImage();
  model.Plot().RadContrastOpen = 1;
  RadiographDesc& rad = Rad();
  rad.CurRegion = 0;
  saved_ = rad;
  Refresh();
  RadImageWindow::Of(host_).ShowView();
  DrawHistogram();
}

void RadContrastDialog::ClearModes() {
  PlotState& plot = host_.PlotModel().Plot();
  RadImageWindow::Of(host_).hide();
  plot.RadContrastOpen = 0;
  plot.RadWndCapture = 0;
  plot.NeedLayout = 1;
}

void RadContrastDialog::Refresh() {
  RadiographDesc& rad = Rad();
  const int k = std::clamp(rad.CurRegion, 0, kRegionCount - 1);
  const RadiographRegion& region = rad.Regions[k];
  ui_->ctl1030->setText(Signed(region.Lower));
  ui_->ctl1031->setText(Signed(region.Upper));
  ui_->ctl1461->SetRange(0, 32767);
  ui_->ctl1461->SetPosition(region.Lower);
  ui_->ctl1462->SetRange(0, 32767);
  ui_->ctl1462->SetPosition(region.Upper);
  Control<QRadioButton>(this, 1384 + k)->setChecked(true);
  RadImageWindow::Of(host_).Refresh();
  const IntRect& e = rad.EditRect;
  setWindowTitle(QStringLiteral("Region %1, X: %2 %3, Y: %4 %5").arg(k).arg(e.Left).arg(e.Right).arg(e.Top).arg(e.Bottom));
}

void RadContrastDialog::OnRegion(int k) {
  if (!Alive()) return;
  RadiographDesc& rad = Rad();
  // Before the radiograph window has painted there is no scale to place a region by.
  if (k != 0 && !(rad.ViewScale > 0)) {
    Control<QRadioButton>(this, 1384 + std::clamp(rad.CurRegion, 0, kRegionCount - 1))->setChecked(true);
    return;
  }
  rad.CurRegion = k;
  rad.EditRect = EditRectOfRegion(rad, k);
  Refresh();
  DrawHistogram();
}

void RadContrastDialog::OnAuto() {
  if (!Alive()) return;
  AutoContrast(host_.PlotModel(), std::clamp(Rad().CurRegion, 0, kRegionCount - 1));
  Refresh();
  DrawHistogram();
}

void RadContrastDialog::OnClear() {
  if (!Alive()) return;
  RadiographDesc& rad = Rad();
  if (rad.CurRegion < 1 || rad.CurRegion >= kRegionCount) return;
  RadiographRegion& region = rad.Regions[rad.CurRegion];
  // Its window goes back to region 0's at the next conversion.
  region.X1 = region.Y1 = region.X2 = region.Y2 = 0;
  rad.EditRect = {};
  Refresh();
  DrawHistogram();
}

void RadContrastDialog::ReadEdits() {
  RadiographDesc& rad = Rad();
  RadiographRegion& region = rad.Regions[std::clamp(rad.CurRegion, 0, kRegionCount - 1)];
  ReadInt(ui_->ctl1030, region.Lower);
  ReadInt(ui_->ctl1031, region.Upper);
}

void RadContrastDialog::OnApply() {
  if (!Alive()) return;
  ReadEdits();
  Refresh();
  DrawHistogram();
}

void RadContrastDialog::OnOk() {
  if (Alive()) {
    ReadEdits();
    Refresh();
    host_.PlotModel().Plot().Modified = 1;
  }
  EndTool();
}

void RadContrastDialog::OnCancel() {
  if (Alive()) {
    static_cast<RadiographFields&>(Rad()) = saved_;
    Refresh();
  }
  EndTool();
}

void RadContrastDialog::ContrastChanged(bool redrawHistogram) {
  RadImageWindow::Of(host_).Refresh();
  if (redrawHistogram) DrawHistogram();
}

const std::vector<uint32_t>& RadContrastDialog::RegionCounts() {
  const RadiographDesc& rad = Rad();
  const RadiographRegion& region = rad.Regions[std::clamp(rad.CurRegion, 0, kRegionCount - 1)];
  const ImageStamp image = ImageStamp::Radiograph(host_.PlotModel());
  const bool same = countedImage_ == image && region.X1 == countedRegion_.X1 && region.Y1 == countedRegion_.Y1 &&
                    region.X2 == countedRegion_.X2 && region.Y2 == countedRegion_.Y2 && !counts_.empty();
  if (!same) {
    CountRegionSamples(rad, region, counts_);
    countedRegion_ = region;
    countedImage_ = image;
  }
  return counts_;
}

void RadContrastDialog::DrawHistogram() {
  Model& model = host_.PlotModel();
  RadiographDesc& rad = Rad();
  PlotState& plot = model.Plot();
  const RadiographRegion& region = rad.Regions[std::clamp(rad.CurRegion, 0, kRegionCount - 1)];
  HistogramView& view = *ui_->ctl1459;
  view.Start();
  const int width = view.width(), height = view.height();
  const std::vector<uint32_t>& counts = RegionCounts();
  scale_ = ScaleRadiographHistogram(counts, region.Upper, rad.MaxValue, width, height);
  model.App.HistBinWidth = scale_.BinWidth;
  plot.HistLevelsPerPixel = scale_.PixelsPerBar;
  plot.HistPixelsPerCount = scale_.PixelsPerCount;
  for (int i = 0; i < scale_.Bars; ++i)
    view.Dot(scale_.BarX(i), scale_.BarY(scale_.BarFrom(counts, int64_t(i) * scale_.BinWidth), height));
  const uint64_t atLower = scale_.BarFrom(counts, region.Lower), atUpper = scale_.BarFrom(counts, region.Upper);
  view.Marker(plot, scale_.MarkerX(region.Lower), scale_.DragY(atLower, height), 0, true);
  view.Marker(plot, scale_.MarkerX(region.Upper), scale_.DragY(atUpper, height), 1, true);
  ui_->ctl1518->setText(QString::number(atLower));
  ui_->ctl1515->setText(QString::number(atUpper));
}

void RadContrastDialog::OnHistogramMouse(HistogramView::MouseKind kind, QPoint at) {
  if (!Alive()) return;
  PlotState& plot = host_.PlotModel().Plot();
  // A region being dragged on the radiograph window is committed there first.
  if (plot.RadWndCapture) {
    RadImageWindow::Of(host_).OnButtonUp();
    return;
  }
  HistogramView& view = *ui_->ctl1459;
  if (at.x() <= 0 || at.y() <= 0 || at.x() >= view.width() || at.y() >= view.height()) return;
  RadiographDesc& rad = Rad();
  RadiographRegion& region = rad.Regions[std::clamp(rad.CurRegion, 0, kRegionCount - 1)];
  const RadiographDrag drag = DragRadiographMarker(scale_, RegionCounts(), at.x(), plot.MarkerX);
  view.Marker(plot, at.x(), scale_.DragY(drag.Sum, view.height()), drag.Marker, false);
  // The count goes to the box of the other marker than the one the histogram drawing
  // uses; users have learnt to read it there.
  if (drag.Marker == 1) {
    region.Upper = drag.Level;
    ui_->ctl1518->setText(QString::number(drag.Sum));
  } else {
    region.Lower = drag.Level;
    ui_->ctl1515->setText(QString::number(drag.Sum));
  }
  if (int64_t(region.Upper) - region.Lower < 2) region.Lower = region.Upper - 2;
  ui_->ctl1030->setText(Unsigned(region.Lower));
  ui_->ctl1031->setText(Unsigned(region.Upper));
  ContrastChanged(kind == HistogramView::MouseKind::Up);
}

}  // namespace sedra
