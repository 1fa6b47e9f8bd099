#include "images/ui/image_size_dialogs.h"

#include <QLineEdit>
#include <QPushButton>

#include "images/ui/up_down.h"
#include "model/model.h"
#include "ui_dlg123.h"
#include "ui_dlg206.h"

namespace sedra {

// ---------------------------------------------------------------- dialog 206

OpticalSizeDialog::OpticalSizeDialog(PlotHost& host) : ImageToolDialog(host, 206, Image::Optical), ui_(std::make_unique<Ui::dlg206>()) {
  ui_->setupUi(this);
  ui_->ctl1512->SetBuddy(ui_->ctl1476);
  ui_->ctl1513->SetBuddy(ui_->ctl1478);
  ApplyAfterSpin({ui_->ctl1512, ui_->ctl1513}, {ui_->ctl1476, ui_->ctl1478}, [this] { Apply(false); });
  connect(ui_->ctl1, &QPushButton::clicked, this, [this] { OnFinished(); });
  connect(ui_->ctl2, &QPushButton::clicked, this, [this] { OnCancel(); });
}

OpticalSizeDialog::~OpticalSizeDialog() = default;

void OpticalSizeDialog::SetModes() {
  Model& model = host_.PlotModel();
  PlotState& plot = model.Plot();
  OpticalImageDesc& opt = model.CurOptical();
  NoteImage();
  keptTop_ = opt.OpticalTop;
  keptLength_ = opt.OpticalLength;
  // The band to drag is the image as the plot last drew it.
  plot.TrackRect = opt.DrawnRect;
  plot.ImageSizeMode = 1;
  plot.OpticalPosMode = 1;
  plot.Tracking = 1;
  const int32_t start = model.CurSection().StartLabelDepth;
  const int32_t top = opt.OpticalTop + start;
  const int32_t bottom = top + opt.OpticalLength;
  ui_->ctl1476->setText(Signed(top));
  ui_->ctl1512->SetRange(top - 500, top + 500);
  ui_->ctl1512->SetPosition(top);
  ui_->ctl1478->setText(Signed(bottom));
  ui_->ctl1513->SetRange(bottom / 2, 2 * bottom);
  ui_->ctl1513->SetPosition(bottom);
  host_.Repaint();
}

void OpticalSizeDialog::ClearModes() {
  PlotState& plot = host_.PlotModel().Plot();
  plot.TrackRect = {};
  plot.ImageSizeMode = 0;
  plot.OpticalPosMode = 0;
  plot.Tracking = 0;
}

void OpticalSizeDialog::Apply(bool fromDrag) {
  if (!Alive()) return;
  Model& model = host_.PlotModel();
  OpticalImageDesc& opt = model.CurOptical();
  const int32_t start = model.CurSection().StartLabelDepth;
  // An edit that holds no number keeps the depth the image has.
  int32_t top = opt.OpticalTop + start, bottom = opt.OpticalTop + opt.OpticalLength + start;
  ReadInt(ui_->ctl1476, top);
  ReadInt(ui_->ctl1478, bottom);
  const int64_t topOffset = int64_t(top) - start;
  int64_t bottomOffset = int64_t(bottom) - start;
  if (!fromDrag) {
    bottomOffset += topOffset - opt.OpticalTop;
    ui_->ctl1478->setText(Signed(int32_t(bottomOffset + start)));
  }
  opt.OpticalTop = int32_t(topOffset);
  opt.OpticalLength = int32_t(bottomOffset - topOffset);
  host_.Repaint();
}

void OpticalSizeDialog::OnFinished() {
  if (Alive()) {
    host_.PlotModel().Plot().Modified = 1;
    Apply(false);
  }
  EndTool();
}

void OpticalSizeDialog::OnCancel() {
  if (Alive()) {
    OpticalImageDesc& opt = host_.PlotModel().CurOptical();
    opt.OpticalTop = keptTop_;
    opt.OpticalLength = keptLength_;
  }
  EndTool();
}

// ---------------------------------------------------------------- dialog 123

RadiographSizeDialog::RadiographSizeDialog(PlotHost& host)
    : ImageToolDialog(host, 123, Image::Radiograph), ui_(std::make_unique<Ui::dlg123>()) {
  ui_->setupUi(this);
  connect(ui_->ctl1, &QPushButton::clicked, this, [this] { OnFinished(); });
  connect(ui_->ctl2, &QPushButton::clicked, this, [this] { OnCancel(); });
}

RadiographSizeDialog::~RadiographSizeDialog() = default;

void RadiographSizeDialog::SetModes() {
  Model& model = host_.PlotModel();
  PlotState& plot = model.Plot();
  RadiographDesc& rad = model.CurRadiograph();
  NoteImage();
  // The band as the plot last drew it: its fixed width, or the width it was given.
  keptWidth_ = plot.RadiographWidth != 0 ? plot.RadiographWidth : rad.DestRect.Right - rad.DestRect.Left;
  keptHeightScale_ = rad.HeightScale;
  keptTopOffset_ = rad.TopOffset;
  plot.TrackRect = rad.ViewRect;
  plot.ImageSizeMode = 1;
  plot.Tracking = 1;
  host_.Repaint();
}

void RadiographSizeDialog::ClearModes() {
  Model& model = host_.PlotModel();
  PlotState& plot = model.Plot();
  plot.TrackRect = {};
  plot.ImageSizeMode = 0;
  plot.Tracking = 0;
  // The band's right edge goes with the rubber band (to 0); the next paint sets it.
  if (OnNotedImage()) model.CurRadiograph().ViewRect.Right = plot.TrackRect.Right;
}

void RadiographSizeDialog::OnFinished() {
  host_.PlotModel().Plot().Modified = 1;
  EndTool();
}

void RadiographSizeDialog::OnCancel() {
  Model& model = host_.PlotModel();
  PlotState& plot = model.Plot();
  if (Alive()) {
    RadiographDesc& rad = model.CurRadiograph();
    rad.ViewRect.Right = keptWidth_;
    plot.RadiographWidth = keptWidth_;
    plot.RadBandWidth = keptWidth_;
    rad.TopOffset = keptTopOffset_;
    rad.HeightScale = keptHeightScale_;
  }
  // Cancel marks the plot modified as well, as it always has.
  plot.Modified = 1;
  EndTool();
}

}  // namespace sedra
