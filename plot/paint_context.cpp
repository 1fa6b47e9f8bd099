#include "plot/paint_context.h"

#include <QPaintDevice>
#include <algorithm>

namespace sedra {

namespace {
// Far enough outside the device that clipped edges never show, small enough that
// every coordinate stays well inside the rasteriser's range.
constexpr int64_t kGuard = 4096;
}  // namespace

PaintContext::PaintContext(QPainter& painter, Model& model, int originY, QRect deviceRect)
    : Painter(painter), M(model), OriginY(originY), Device(deviceRect) {
  if (QPaintDevice* dev = painter.device()) {
    DpiX = dev->logicalDpiX();
    DpiY = dev->logicalDpiY();
  }
  LabelFont = MakeFont("MS Sans Serif", 8, 400);
  PlotFont = MakeFont("MS Sans Serif", 11, 700);
}

int PaintContext::FontPixels(int points) const {
  // MulDiv rounds to nearest.
  return int((int64_t(points) * DpiY * 2 + 72) / 144);
}

QFont PaintContext::MakeFont(const char* family, int points, int weight) const {
  QFont f(QString::fromLatin1(family));
  f.setPixelSize(std::max(1, FontPixels(points)));
  f.setWeight(weight >= 700 ? QFont::Bold : QFont::Normal);
  f.setStyleStrategy(QFont::NoAntialias);
  return f;
}

int PaintContext::DeviceY(int64_t docY) const {
  const int64_t y = docY - OriginY;
  const int64_t lo = int64_t(Device.top()) - kGuard;
  const int64_t hi = int64_t(Device.bottom()) + kGuard;
  return int(std::clamp(y, lo, hi));
}

QRect PaintContext::DeviceRect(int left, int64_t top, int right, int64_t bottom) const {
  const int t = DeviceY(top);
  const int b = DeviceY(bottom);
  return QRect(QPoint(left, t), QPoint(right - 1, b - 1));
}

void PaintContext::Line(int x1, int64_t y1, int x2, int64_t y2) {
  double ax = x1, ay = double(y1 - OriginY), bx = x2, by = double(y2 - OriginY);
  const double lo = double(Device.top() - kGuard), hi = double(Device.bottom() + kGuard);
  // Clip the segment to lo <= y <= hi, keeping its slope.
  if ((ay < lo && by < lo) || (ay > hi && by > hi)) return;
  auto clip = [&](double& px, double& py, double qx, double qy) {
    if (py < lo) {
      px += (qx - px) * (lo - py) / (qy - py);
      py = lo;
    } else if (py > hi) {
      px += (qx - px) * (hi - py) / (qy - py);
      py = hi;
    }
  };
  clip(ax, ay, bx, by);
  clip(bx, by, ax, ay);
  Painter.drawLine(QPointF(ax, ay), QPointF(bx, by));
}

void PaintContext::FillRect(int left, int64_t top, int right, int64_t bottom, const QColor& colour) {
  if (right <= left || bottom <= top) return;
  if (bottom <= VisibleTop() - kGuard || top >= VisibleBottom() + kGuard) return;
  Painter.fillRect(DeviceRect(left, top, right, bottom), colour);
}

void PaintContext::Pixel(int x, int64_t y, const QColor& colour) {
  if (!RowVisible(y)) return;
  Painter.fillRect(QRect(x, int(y - OriginY), 1, 1), colour);
}

void PaintContext::Text(int left, int64_t top, int right, int64_t bottom, int flags, const QString& text) {
  if (bottom < VisibleTop() - 200 || top > VisibleBottom() + 200) return;
  Painter.drawText(QRect(QPoint(left, int(top - OriginY)), QPoint(right - 1, int(bottom - OriginY) - 1)),
                   flags, text);
}

}  // namespace sedra
