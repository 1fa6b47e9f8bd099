#include "app/plot_view.h"

#include <QPaintEvent>
#include <QPainter>
#include <QScreen>

#include "model/model.h"
#include "plot/paint_context.h"
#include "plot/paint_plot.h"
#include "ui/plot_host.h"

namespace sedra {

PlotView::PlotView(Model& model, PlotHost& host, QWidget* parent) : QWidget(parent), model_(model), host_(host) {
  setObjectName(QStringLiteral("PlotView"));
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);
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
    QPainter bufferPainter(&buffer_);
    PaintTarget target;
    target.Client = rect();
    target.Exposed = event->rect();
    target.ScrollPos = host_.ScrollPos();
    // The device is the screen, not the buffer: the value scales are spaced by its width.
    if (const QScreen* s = screen()) target.HorzRes = s->geometry().width();
    const PlotLayout layout = PaintPlot(model_, bufferPainter, target);
    if (layout.PageWidth > 0) layout_ = layout;
  }
  QPainter painter(this);
  painter.drawImage(event->rect(), buffer_, event->rect());
}

}  // namespace sedra
