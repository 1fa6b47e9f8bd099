#include "images/ui/optical_contrast_dialog.h"

#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSlider>

#include "images/ui/image_windows.h"
#include "images/ui/up_down.h"
#include "model/model.h"
#include "ui_dlg203.h"

namespace sedra {

namespace {
constexpr int kTrackbars[3] = {1184, 1185, 1186};  // red, green, blue
}

OpticalContrastDialog::OpticalContrastDialog(PlotHost& host)
    : ImageToolDialog(host, 203, Image::Optical), ui_(std::make_unique<Ui::dlg203>()) {
  ui_->setupUi(this);
  ui_->ctl1461->SetBuddy(ui_->ctl1030);
  ui_->ctl1462->SetBuddy(ui_->ctl1031);
  connect(ui_->ctl1203, &QPushButton::clicked, this, [this] { OnApply(); });
  connect(ui_->ctl1026, &QPushButton::clicked, this, [this] { OnOk(); });
  for (UpDown* spin : {ui_->ctl1461, ui_->ctl1462})
    connect(spin, &UpDown::Notified, this, [this] {
      // Not while the main window is being sized: the image would be recomputed
      // for every step of the frame.
      if (host_.PlotModel().Plot().InSizeMove) return;
      OnApply();
    });
  for (int id : kTrackbars)
    connect(Control<QSlider>(this, id), &QSlider::valueChanged, this, [this, id](int pos) { OnTrackbar(id, pos); });
  connect(ui_->ctl1459, &HistogramView::Mouse, this, &OpticalContrastDialog::OnHistogramMouse);
  connect(ui_->ctl1459, &HistogramView::Resized, this, [this] {
    if (Alive()) DrawHistogram();
  });
}

OpticalContrastDialog::~OpticalContrastDialog() = default;

void OpticalContrastDialog::SetModes() {
  NoteImage();
  Fill();
  ImageWindow::Of(host_).ShowView();
  DrawHistogram();
}

void OpticalContrastDialog::ClearModes() {
  host_.PlotModel().Plot().TrackRect = {};
  ImageWindow::Of(host_).hide();
}

void OpticalContrastDialog::Fill() {
  const OpticalImageDesc& opt = host_.PlotModel().CurOptical();
  ui_->ctl1030->setText(Signed(opt.Lower));
  ui_->ctl1031->setText(Signed(opt.Upper));
  ui_->ctl1461->SetRange(0, 256);
  ui_->ctl1461->SetPosition(opt.Lower);
  ui_->ctl1462->SetRange(0, 256);
  ui_->ctl1462->SetPosition(opt.Upper);
  const int32_t levels[3] = {opt.RedLevel, opt.GreenLevel, opt.BlueLevel};
  for (int i = 0; i < 3; ++i) {
    auto* bar = Control<QSlider>(this, kTrackbars[i]);
    const QSignalBlocker quiet(bar);
    bar->setRange(0, 256);
    bar->setPageStep(128);
    bar->setValue(256 - levels[i]);
  }
}

void OpticalContrastDialog::ContrastChanged(bool redrawHistogram) {
  // The plot shows the image at the new contrast as well as the window: only the
  // pixels they show are converted.
  ImageWindow::Of(host_).Refresh();
  host_.Repaint();
  if (redrawHistogram) DrawHistogram();
}

void OpticalContrastDialog::OnApply() {
  if (!Alive()) return;
  OpticalImageDesc& opt = host_.PlotModel().CurOptical();
  ReadInt(ui_->ctl1030, opt.Lower);
  ReadInt(ui_->ctl1031, opt.Upper);
  Fill();
  ContrastChanged(true);
}

void OpticalContrastDialog::OnTrackbar(int id, int position) {
  if (host_.PlotModel().Plot().InSizeMove || !Alive()) return;
  OpticalImageDesc& opt = host_.PlotModel().CurOptical();
  int32_t& level = id == 1184 ? opt.RedLevel : id == 1185 ? opt.GreenLevel : opt.BlueLevel;
  level = 256 - position;
  ContrastChanged(true);
}

void OpticalContrastDialog::DrawHistogram() {
  Model& model = host_.PlotModel();
  OpticalImageDesc& opt = model.CurOptical();
  PlotState& plot = model.Plot();
  HistogramView& view = *ui_->ctl1459;
  view.Start();
  const int width = view.width(), height = view.height();
  CountOpticalLevels(opt, counts_);
  scale_ = ScaleOpticalHistogram(counts_, width, height);
  opt.HistPeak = scale_.PeakBin;
  plot.HistLevelsPerPixel = scale_.LevelsPerPixel;
  plot.HistPixelsPerCount = scale_.PixelsPerCount;
  for (int x = 0; x < width; ++x) {
    const int h = scale_.CurveHeight(CountOf(counts_, scale_.LevelAt(x)));
    view.Pixel(x, height - 1 - h);
    view.Pixel(x, height - 2 - h);
  }
  view.Marker(plot, scale_.PixelOf(opt.Lower), height - scale_.CurveHeight(CountOf(counts_, opt.Lower)), 0, true);
  view.Marker(plot, scale_.PixelOf(opt.Upper), height - scale_.CurveHeight(CountOf(counts_, opt.Upper - 1)), 1, true);
  // From here on the peak is kept as its pixel: the marker drag compares with it.
  opt.HistPeak = scale_.PixelOf(scale_.PeakBin);
}

void OpticalContrastDialog::OnHistogramMouse(HistogramView::MouseKind kind, QPoint at) {
  HistogramView& view = *ui_->ctl1459;
  if (at.x() <= 0 || at.y() <= 0 || at.x() >= view.width() || at.y() >= view.height()) return;
  if (!Alive()) return;
  Model& model = host_.PlotModel();
  OpticalImageDesc& opt = model.CurOptical();
  PlotState& plot = model.Plot();
  const int x = at.x();
  const int marker = PickOpticalMarker(x, plot.MarkerX, opt.HistPeak);
  const int level = scale_.LevelAt(x);
  view.Marker(plot, x, view.height() - scale_.CurveHeight(CountOf(counts_, level)), marker, false);
  (marker == 0 ? opt.Lower : opt.Upper) = level;
  ui_->ctl1030->setText(Unsigned(opt.Lower));
  ui_->ctl1031->setText(Unsigned(opt.Upper));
  ContrastChanged(kind == HistogramView::MouseKind::Up);
}

void OpticalContrastDialog::OnOk() {
  host_.PlotModel().Plot().Modified = 1;
  EndTool();
}

}  // namespace sedra
