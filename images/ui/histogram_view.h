#pragma once
// The histogram frame of the contrast dialogs (control 1459): a black picture the
// dialog draws dots and markers into, and the mouse on it handed to the dialog.

#include <QFrame>
#include <QImage>
#include <cstdint>

namespace sedra {

struct PlotState;

class HistogramView : public QFrame {
  Q_OBJECT
 public:
  explicit HistogramView(QWidget* parent = nullptr);

  // The picture, the size of the frame.  Start() clears it to black.
  QImage& Picture() { return picture_; }
  void Start();
  // Two pixels wide, two high, in the histogram's colour (blue 255, green 127, red 0),
  // from (x, y) up.
  void Dot(int x, int y);
  void Pixel(int x, int y);
  // A marker: unless `first`, the old one is erased with a black line from its
  // remembered foot up 20 pixels; then the colour under (x, y - 3) and that foot are
  // remembered and a white line is drawn 20 pixels up from it.
  void Marker(PlotState& plot, int x, int y, int index, bool first);

  enum class MouseKind { Down, Move, Up };

 signals:
  // Button down, a move with the left button held, button up, in the frame's pixels.
  void Mouse(MouseKind kind, QPoint at);
  void Resized();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  void VerticalLine(int x, int fromY, int toY, QRgb colour);
  QImage picture_;
};

}  // namespace sedra
