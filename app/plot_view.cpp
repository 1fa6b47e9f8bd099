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

void PlotView::RepaintBand(const QRect& client) {
  screen_.MarkBandOnly(client);
  update(client);
}

void PlotView::paintEvent(QPaintEvent* event) {
  PaintTarget target;
  target.Client = rect();
  target.ScrollPos = host_.ScrollPos();
  // The device is the screen, not the buffer: the value scales are spaced by its width.
  if (const QScreen* s = screen()) target.HorzRes = s->geometry().width();
  target.EndValuePopup = [this] { mouse_->EndPopup(); };
  QPainter painter(this);
  const PlotLayout layout = screen_.Paint(model_, painter, event->region(), target);
  if (layout.PageWidth > 0) layout_ = layout;
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
