#include "images/ui/image_windows.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScreen>

#include "images/draw/image_draw.h"
#include "images/draw/view_paint.h"
#include "images/ui/rad_contrast_dialog.h"
#include "model/messages.h"
#include "model/model.h"
#include "model/prompt.h"
#include "ui/plot_host.h"
#include "ui/tool_dialog.h"

namespace sedra {

namespace {

// The windows stand beside the main window: their places are taken from its client
// area's top left corner.
QPoint ClientOrigin(PlotHost& host) {
  QWidget* owner = host.OwnerWindow();
  return owner ? owner->geometry().topLeft() : QPoint();
}

bool IsEmpty(const IntRect& r) { return r.Right <= r.Left || r.Bottom <= r.Top; }

// The window paints only when nothing else is busy, and is busy itself meanwhile: a
// dialog's trackbar or spin notification then does not recompute the image under it.
class BusyGuard {
 public:
  explicit BusyGuard(PlotState& plot) : plot_(plot), free_(!plot.InSizeMove) {
    if (free_) plot_.InSizeMove = 1;
  }
  ~BusyGuard() {
    if (free_) plot_.InSizeMove = 0;
  }
  bool Free() const { return free_; }

 private:
  PlotState& plot_;
  bool free_;
};

template <typename Window>
Window& WindowOf(PlotHost& host) {
  QWidget* owner = host.OwnerWindow();
  if (auto* w = owner->findChild<Window*>(QString(), Qt::FindDirectChildrenOnly)) return *w;
  return *new Window(host);
}

}  // namespace

ImageViewWindow::ImageViewWindow(PlotHost& host, const char* className)
    : QWidget(host.OwnerWindow(), Qt::Tool), host_(host) {
  setObjectName(QString::fromLatin1(className));
  setAttribute(Qt::WA_OpaquePaintEvent);
  hide();
}

void ImageViewWindow::ShowView() {
  Place();
  show();
  update();
}

void ImageViewWindow::Refresh() {
  if (!isVisible()) return;
  Place();
  update();
}

// ---------------------------------------------------------------- ImageClass

ImageWindow::ImageWindow(PlotHost& host) : ImageViewWindow(host, "ImageClass") {}

ImageWindow& ImageWindow::Of(PlotHost& host) { return WindowOf<ImageWindow>(host); }

void ImageWindow::Place() {
  Model& model = host_.PlotModel();
  view_ = LayOutOpticalView(model.CurOptical(), host_.ClientHeight(), model.Plot().ZoomFactor, 0);
  const QPoint origin = ClientOrigin(host_);
  setGeometry(origin.x() + view_.WindowX, origin.y() + view_.WindowY, std::max(view_.WindowWidth, 1),
              std::max(view_.WindowHeight, 1));
}

void ImageWindow::paintEvent(QPaintEvent* event) {
  Model& model = host_.PlotModel();
  QPainter painter(this);
  painter.fillRect(event->rect(), Qt::white);
  BusyGuard busy(model.Plot());
  if (!busy.Free() || !model.CurOptical().Loaded()) return;
  view_ = LayOutOpticalView(model.CurOptical(), host_.ClientHeight(), model.Plot().ZoomFactor, 0);
  // The crop is shown as the plot's rubber band; the dialog clears it when it closes.
  model.Plot().TrackRect = view_.Focus;
  PaintOpticalView(painter, model, view_, event->rect());
}

// ---------------------------------------------------------------- RadImageClass

RadImageWindow::RadImageWindow(PlotHost& host) : ImageViewWindow(host, "RadImageClass") { setMouseTracking(true); }

RadImageWindow& RadImageWindow::Of(PlotHost& host) { return WindowOf<RadImageWindow>(host); }

void RadImageWindow::Place() {
  Model& model = host_.PlotModel();
  RadiographDesc& rad = model.CurRadiograph();
  const ToolDialog* tool = host_.ActiveTool();
  const QPoint origin = ClientOrigin(host_);
  const int dialogLeft = tool ? tool->frameGeometry().left() : origin.x();
  view_ = LayOutRadiographView(rad, host_.ClientHeight(), dialogLeft, 0);
  rad.ViewRect = view_.ViewRect;
  setGeometry(view_.WindowX, origin.y() + view_.WindowY, std::max(view_.WindowWidth, 1),
              std::max(view_.WindowHeight, 1));
}

void RadImageWindow::moveEvent(QMoveEvent* event) {
  QWidget::moveEvent(event);
  // Only what lies on the screen is painted: a part that comes onto it is painted now.
  update();
}

void RadImageWindow::paintEvent(QPaintEvent* event) {
  Model& model = host_.PlotModel();
  PlotState& plot = model.Plot();
  // A radiograph shown twice its width is mostly beside the screen (a 2 000-column image
  // makes the window 4 000 pixels wide); only the part on it is worth converting.
  QRect exposed = event->rect();
  if (const QScreen* s = screen()) exposed &= QRect(mapFromGlobal(s->virtualGeometry().topLeft()), s->virtualSize());
  QPainter painter(this);
  painter.fillRect(exposed, Qt::white);
  BusyGuard busy(plot);
  RadiographDesc& rad = model.CurRadiograph();
  if (!busy.Free() || !HasDisplay(rad)) return;
  // The scale is taken at every paint: the main window may have changed height.
  const RadiographView sized = LayOutRadiographView(rad, host_.ClientHeight(), 0, 0);
  rad.ViewScale = sized.ViewScale;
  rad.ViewRect = sized.ViewRect;
  // Above 100% the picture is drawn from the main window's scroll position down, as the
  // window has always done.
  const int originY = plot.ZoomFactor > 1 ? host_.ScrollPos() : 0;
  PaintRadiographView(painter, model, sized, originY, exposed, rad.EditRect,
                      plot.DataRegionMode || rad.CurRegion != 0);
}

void RadImageWindow::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) OnButtonDown();
}

void RadImageWindow::mouseMoveEvent(QMouseEvent* event) {
  const QPoint p = event->position().toPoint();
  OnMouseMove(p.x(), p.y(), event->buttons() & Qt::LeftButton);
}

void RadImageWindow::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) OnButtonUp();
}

void RadImageWindow::OnButtonDown() {
  Model& model = host_.PlotModel();
  if (!model.Plot().DataRegionMode && model.CurRadiograph().CurRegion != 0) model.Plot().RadWndCapture = 1;
}

void RadImageWindow::ShowEdgeCursor(int edges) {
  const bool sideways = (edges & (kEdgeLeft | kEdgeRight)) && !(edges & (kEdgeTop | kEdgeBottom));
  if (sideways)
    setCursor(Qt::SizeHorCursor);
  else
    setCursor(host_.PlotModel().Plot().DataRegionMode ? Qt::ArrowCursor : Qt::SizeVerCursor);
}

void RadImageWindow::DragEdges(int edges, int x, int y) {
  Model& model = host_.PlotModel();
  PlotState& plot = model.Plot();
  RadiographDesc& rad = model.CurRadiograph();
  ToolDialog* tool = host_.ActiveTool();
  if (plot.DataRegionMode) {
    // The band runs the image's full height: only its sides move, and each is the
    // data region's column at once.
    edges &= kEdgeLeft | kEdgeRight;
    if (edges & kEdgeLeft) {
      plot.DataRegionLeft = ColumnAt(rad, x);
      if (tool) tool->SetControlText(1481, QString::number(plot.DataRegionLeft));
    }
    if (edges & kEdgeRight) {
      plot.DataRegionRight = ColumnAt(rad, x);
      if (tool) tool->SetControlText(1482, QString::number(plot.DataRegionRight));
    }
  }
  MoveRegionEdges(rad.EditRect, edges, x, y);
  update();
  if (tool)
    tool->setWindowTitle(QStringLiteral("Region %1, X: %2 %3, Y: %4 %5")
                             .arg(rad.CurRegion)
                             .arg(rad.EditRect.Left)
                             .arg(rad.EditRect.Right)
                             .arg(rad.EditRect.Top)
                             .arg(rad.EditRect.Bottom));
}

void RadImageWindow::OnMouseMove(int x, int y, bool down) {
  Model& model = host_.PlotModel();
  PlotState& plot = model.Plot();
  RadiographDesc& rad = model.CurRadiograph();
  if (!plot.DataRegionMode) {
    if (rad.CurRegion == 0) {
      if (down) host_.UserPrompt().Tell(msg::kSelectRegionFirst, "");
      return;
    }
    if (rad.EditRect.Right == 0 && down) {
      plot.RadWndCapture = 1;
      rad.EditRect = StartRegionRect(x, y);
      update();
      return;
    }
  }
  const int edges = HitRegionEdges(rad.EditRect, x, y);
  if (!edges) {
    setCursor(Qt::ArrowCursor);
    return;
  }
  if (!down) {
    ShowEdgeCursor(edges);
    return;
  }
  DragEdges(edges, x, y);
}

void RadImageWindow::OnButtonUp() {
  Model& model = host_.PlotModel();
  PlotState& plot = model.Plot();
  RadiographDesc& rad = model.CurRadiograph();
  if (plot.DataRegionMode) {
    // The data curve follows the band once it is let go.
    plot.NeedLayout = 1;
    host_.Repaint();
  }
  if (!plot.RadWndCapture || rad.CurRegion < 1 || rad.CurRegion >= kRegionCount || IsEmpty(rad.EditRect)) return;
  if (!CommitRegion(rad, rad.CurRegion, rad.EditRect)) return;
  if (auto* dialog = dynamic_cast<RadContrastDialog*>(host_.ActiveTool())) dialog->DrawHistogram();
  update();
  plot.RadWndCapture = 0;
}

}  // namespace sedra
