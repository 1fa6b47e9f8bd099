#include "app/plot_view.h"

#include <QPaintEvent>
#include <QPainter>

#include "app/main_window.h"
#include "model/model.h"
#include "plot/paint_plot.h"

namespace sedra {

PlotView::PlotView(Model& model, MainWindow& window) : QWidget(&window), model_(model), window_(window) {
  setObjectName(QStringLiteral("PlotView"));
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);
}

void PlotView::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  PaintTarget target;
  target.Client = rect();
  target.Exposed = event->rect();
  target.ScrollPos = window_.ScrollPos();
  PaintPlot(model_, painter, target);
}

}  // namespace sedra
