#include "app/plot_view.h"

#include <QPaintEvent>
#include <QPainter>

#include "app/main_window.h"
#include "model/model.h"
#include "plot/paint_context.h"
#include "plot/paint_plot.h"

namespace sedra {

PlotView::PlotView(Model& model, MainWindow& window) : QWidget(&window), model_(model), window_(window) {
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
    target.ScrollPos = window_.ScrollPos();
    PaintPlot(model_, bufferPainter, target);
  }
  QPainter painter(this);
  painter.drawImage(event->rect(), buffer_, event->rect());
}

}  // namespace sedra
