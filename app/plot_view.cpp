#include "app/plot_view.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScreen>

#include "interact/plot_mouse.h"
#include "model/model.h"
#include "plot/paint_context.h"
#include "plot/paint_plot.h"
#include "ui/plot_host.h"

namespace sedra {

PlotView::PlotView(Model& model, PlotHost& host, QWidget* parent)
    : QWidget(parent), model_(model), host_(host), mouse_(new PlotMouse(host, this)) {
  setObjectName(QStringLiteral("PlotView"));
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);
}

void PlotView::PaintInto(const QRect& exposed) {
  QPainter bufferPainter(&buffer_);
  PaintTarget target;
  target.Client = rect();
  target.Exposed = exposed;
  target.ScrollPos = host_.ScrollPos();
  // The device is the screen, not the buffer: the value scales are spaced by its width.
  if (const QScreen* s = screen()) target.HorzRes = s->geometry().width();
  target.EndValuePopup = [this] { mouse_->EndPopup(); };
  const PlotLayout layout = PaintPlot(model_, bufferPainter, target);
  if (layout.PageWidth > 0) layout_ = layout;
}

void PlotView::paintEvent(QPaintEvent* event) {
  // The plot is painted into a back buffer the size of the view and the exposed part
  // copied to the screen: image targets take the plot's direct pixel paths.
  const QSize size = rect().size();
  if (buffer_.size() != size) {
    buffer_ = QImage(size, QImage::Format_RGB32);
    buffer_.setDotsPerMeterX(qRound(logicalDpiX() / 0.0254));
    buffer_.setDotsPerMeterY(qRound(logicalDpiY() / 0.0254));
    // While the frame is being dragged the plot is not painted; show the background
    // rather than whatever the new buffer held.
    buffer_.fill(FromColorRef(model_.Settings().Colours[kBackgroundColour]));
  }
  if (!buffer_.isNull()) {
    // A drag exposes the thin edges of the old and the new rubber band: each is painted
    // on its own rather than the rectangle around them all.
    const QRegion& region = event->region();
    if (region.rectCount() <= 16)
      for (const QRect& r : region) PaintInto(r);
    else
      PaintInto(event->rect());
  }
  QPainter painter(this);
  for (const QRect& r : event->region()) painter.drawImage(r, buffer_, r);
}

// The mouse is never grabbed: a button released outside the view is not seen, and
// neither are moves outside it.
void PlotView::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) mouse_->Press(layout_, event->position().toPoint());
}

void PlotView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) mouse_->DoubleClick(layout_, event->position().toPoint());
}

void PlotView::mouseMoveEvent(QMouseEvent* event) {
  const QPoint p = event->position().toPoint();
  if (!rect().contains(p)) return;
  mouse_->Move(layout_, p, event->buttons().testFlag(Qt::LeftButton));
}

void PlotView::mouseReleaseEvent(QMouseEvent* event) {
  const QPoint p = event->position().toPoint();
  if (event->button() != Qt::LeftButton || !rect().contains(p)) return;
  mouse_->Release(layout_, p);
}

}  // namespace sedra
