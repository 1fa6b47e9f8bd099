#pragma once
// The client area of the main window: paints the composite plot and hands its mouse
// events to the plot's mouse handling.

#include <QImage>
#include <QWidget>

#include "plot/plot_layout.h"

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

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  void PaintInto(const QRect& exposed);
  Model& model_;
  PlotHost& host_;
  PlotMouse* mouse_;
  QImage buffer_;
  PlotLayout layout_;
};

}  // namespace sedra
