#pragma once
// The two image windows beside the main window: the optical image (ImageClass) and the
// radiograph (RadImageClass).  They exist from the start, hidden until a tool shows them.

#include <QWidget>

namespace sedra {

class PlotHost;

class ImageWindow : public QWidget {
  Q_OBJECT
 public:
  explicit ImageWindow(PlotHost& host);

 protected:
  PlotHost& host_;
};

class RadImageWindow : public QWidget {
  Q_OBJECT
 public:
  explicit RadImageWindow(PlotHost& host);

 protected:
  PlotHost& host_;
};

}  // namespace sedra
