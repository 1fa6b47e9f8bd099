#pragma once
// The client area of the main window: paints the composite plot.

#include <QImage>
#include <QWidget>

namespace sedra {

class Model;
class MainWindow;

class PlotView : public QWidget {
  Q_OBJECT
 public:
  PlotView(Model& model, MainWindow& window);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Model& model_;
  MainWindow& window_;
  QImage buffer_;
};

}  // namespace sedra
