#pragma once
// The client area of the main window: paints the composite plot.

#include <QImage>
#include <QWidget>

#include "plot/plot_layout.h"

namespace sedra {

class Model;
class PlotHost;

class PlotView : public QWidget {
  Q_OBJECT
 public:
  PlotView(Model& model, PlotHost& host, QWidget* parent);
  // The layout of the last paint: what the user sees, for hit-testing.
  const PlotLayout& Layout() const { return layout_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Model& model_;
  PlotHost& host_;
  QImage buffer_;
  PlotLayout layout_;
};

}  // namespace sedra
