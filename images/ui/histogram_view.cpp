#include "images/ui/histogram_view.h"

#include <QMouseEvent>
#include <QPainter>

#include "model/model.h"

namespace sedra {

namespace {
const QRgb kDotColour = qRgb(0, 127, 255);
const QRgb kBlack = qRgb(0, 0, 0);
const QRgb kWhite = qRgb(255, 255, 255);
}  // namespace

HistogramView::HistogramView(QWidget* parent) : QFrame(parent) {
  setMinimumSize(256, 120);
  setAttribute(Qt::WA_OpaquePaintEvent);
}

void HistogramView::Start() {
  if (picture_.size() != size()) picture_ = QImage(size(), QImage::Format_RGB32);
  picture_.fill(kBlack);
  update();
}

void HistogramView::Pixel(int x, int y) {
  if (picture_.valid(x, y)) picture_.setPixel(x, y, kDotColour);
}

void HistogramView::Dot(int x, int y) {
  Pixel(x, y);
  Pixel(x, y - 1);
  Pixel(x + 1, y - 1);
  Pixel(x + 1, y);
}

void HistogramView::VerticalLine(int x, int fromY, int toY, QRgb colour) {
  // A line from fromY up to toY, its last pixel left out as the platform draws lines.
  for (int y = fromY; y > toY; --y)
    if (picture_.valid(x, y)) picture_.setPixel(x, y, colour);
}

void HistogramView::Marker(PlotState& plot, int x, int y, int index, bool first) {
  if (!first) VerticalLine(plot.MarkerX[index], plot.MarkerY[index], plot.MarkerY[index] - 20, kBlack);
  plot.MarkerColour[index] = picture_.valid(x, y - 3) ? picture_.pixel(x, y - 3) & 0xFFFFFF : 0;
  plot.MarkerX[index] = x;
  plot.MarkerY[index] = y - 3;
  VerticalLine(x, y - 3, y - 23, kWhite);
  update();
}

void HistogramView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  if (picture_.isNull()) {
    painter.fillRect(rect(), Qt::black);
    return;
  }
  painter.drawImage(0, 0, picture_);
}

void HistogramView::resizeEvent(QResizeEvent* event) {
  QFrame::resizeEvent(event);
  emit Resized();
}

void HistogramView::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) emit Mouse(MouseKind::Down, event->position().toPoint());
}

void HistogramView::mouseMoveEvent(QMouseEvent* event) {
  if (event->buttons() & Qt::LeftButton) emit Mouse(MouseKind::Move, event->position().toPoint());
}

void HistogramView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) emit Mouse(MouseKind::Up, event->position().toPoint());
}

}  // namespace sedra
