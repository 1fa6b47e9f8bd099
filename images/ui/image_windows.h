#pragma once
// The two image windows beside the main window: the optical image (ImageClass) during
// the optical contrast dialog, and the radiograph (RadImageClass) during the
// radiograph contrast and data-region dialogs, where the user also drags a rectangle
// on the image.  They exist from the start, hidden until a tool shows them, and every
// paint shows the image at its current contrast.

#include <QWidget>

#include "images/image_views.h"

namespace sedra {

class PlotHost;

// What the two windows share: a window of the host's, hidden until shown, placed for
// the current image whenever it is shown or refreshed.
class ImageViewWindow : public QWidget {
  Q_OBJECT
 public:
  ImageViewWindow(PlotHost& host, const char* className);
  // Sizes and places the window for the current image, shows it and repaints it.
  void ShowView();
  // Sizes, places and repaints it while it is shown.
  void Refresh();

 protected:
  virtual void Place() = 0;
  PlotHost& host_;
};

class ImageWindow : public ImageViewWindow {
  Q_OBJECT
 public:
  explicit ImageWindow(PlotHost& host);
  // The host's optical window, made when it has none yet.
  static ImageWindow& Of(PlotHost& host);
  const OpticalView& View() const { return view_; }

 protected:
  void Place() override;
  void paintEvent(QPaintEvent* event) override;

 private:
  OpticalView view_;
};

class RadImageWindow : public ImageViewWindow {
  Q_OBJECT
 public:
  explicit RadImageWindow(PlotHost& host);
  static RadImageWindow& Of(PlotHost& host);
  const RadiographView& View() const { return view_; }

  // The mouse as the window takes it, in window pixels: a move (with the left button
  // held or not), a button-down, a button-up (which commits the region being edited).
  void OnMouseMove(int x, int y, bool down);
  void OnButtonDown();
  void OnButtonUp();

 protected:
  void Place() override;
  void paintEvent(QPaintEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  void ShowEdgeCursor(int edges);
  void DragEdges(int edges, int x, int y);
  RadiographView view_;
};

}  // namespace sedra
