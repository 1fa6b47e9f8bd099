#include "interact/expand_dialog.h"

#include <QLineEdit>
#include <QPushButton>
#include <algorithm>
#include <cmath>

#include "interact/annotation_dialogs.h"
#include "model/messages.h"
#include "model/model.h"
#include "model/numbers.h"
#include "model/prompt.h"
#include "ui_dlg223.h"

namespace sedra {

ExpandDialog::ExpandDialog(PlotHost& host) : ToolDialog(host, 223), ui_(std::make_unique<Ui::dlg223>()) {
  ui_->setupUi(this);
  connect(ui_->ctl1, &QPushButton::clicked, this, [this] { OnExpand(); });
  connect(ui_->ctl1471, &QPushButton::clicked, this, [this] { OnNormal(); });
}

ExpandDialog::~ExpandDialog() = default;

void ExpandDialog::SetModes() {
  PlotState& plot = host_.PlotModel().Plot();
  plot.HRegionMode = 1;
  plot.Tracking = 1;
  FillFromRegion();
}

void ExpandDialog::ClearModes() {
  PlotState& plot = host_.PlotModel().Plot();
  plot.TrackRect = {};
  plot.HRegionMode = 0;
  plot.Tracking = 0;
  plot.ZoomFactor = 1;
}

void ExpandDialog::FillFromRegion() {
  // The current highlighted horizontal region starts the range, shown as the region
  // tool shows it: its band on the plot, absolute depths without the expanded offset.
  ShowAnnotation(host_, AnnotationKind::HRegion, *this);
}

bool ExpandDialog::OnExpand() {
  Model& model = host_.PlotModel();
  PlotState& plot = model.Plot();
  const CoreSection& section = model.CurSection();
  const float length = plot.SectionLength[model.CurSectionSlot()];
  const float top = EditReal(ui_->ctl1476) - float(section.StartLabelDepth);
  const float bottom = std::min(EditReal(ui_->ctl1478) - float(section.StartLabelDepth), length);
  // Depths typed as "nan" or "inf" make no range at all: refused before they are kept.
  const bool finite = std::isfinite(top) && std::isfinite(bottom);
  if (finite) {
    plot.ExpandTop = top;
    plot.ExpandBottom = bottom;
  }
  if (!finite || bottom - top < 0.05f * length) {
    host_.UserPrompt().Tell(msg::kExpandTooSmall, "", Icon::Exclamation);
    return false;
  }
  plot.DepthSpan = bottom - top;
  const int count = section.PointCount;
  if (length > 0) {
    plot.ViewFirstPoint = std::max(0, RoundToInt(double(count) * top / length));
    plot.ViewLastPoint = std::min(count, RoundToInt(double(count) * bottom / length));
  }
  plot.NeedLayout = 1;
  plot.Expanded = 1;
  EndTool();
  return true;
}

void ExpandDialog::OnNormal() {
  Model& model = host_.PlotModel();
  PlotState& plot = model.Plot();
  plot.ViewFirstPoint = 0;
  plot.ViewLastPoint = model.CurSection().PointCount;
  plot.ExpandTop = 0;
  plot.ExpandBottom = plot.SectionLength[model.CurSectionSlot()];
  plot.NeedLayout = 1;
  plot.Expanded = 0;
  EndTool();
}

}  // namespace sedra
