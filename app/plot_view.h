#pragma once
// The client area of the main window: paints the composite plot and hands its mouse
// events to the plot's mouse handling.

#include <QWidget>

#include "plot/plot_layout.h"
#include "plot/screen_buffer.h"

namespace sedra {

class Model;
class PlotHost;
class PlotMouse;

class PlotView : public QWidget {
  Q_OBJECT
 public:
  PlotView(Model& model, PlotHost& host, QWidget* parent);
  // The layout of the last paint: what the user sees, for hit-testing.
  const PlotLayout& Layout() const { return layout_; }
  PlotMouse& Mouse() { return *mouse_; }
  // Only the rubber band moved within `client`: repainted from the kept copy of the plot.
  void RepaintBand(const QRect& client);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  Model& model_;
  PlotHost& host_;
  PlotMouse* mouse_;
  ScreenBuffer screen_;
  PlotLayout layout_;
};

}  // namespace sedra
