#include "plot/paint_context.h"

#include <QFontMetrics>
#include <QImage>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPen>
#include <algorithm>
#include <cmath>

#include "model/model.h"

namespace sedra {

namespace {
// Far enough outside the device that clipped edges never show, small enough that
// every coordinate stays well inside the rasteriser's range.
constexpr int64_t kGuard = 4096;

// Windows-1252 code points of the bytes 0x80..0x9F (0 where the code page has none).
constexpr char16_t kCp1252High[32] = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                      0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                      0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};
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

QFont PaintContext::MakeFont(const char* family, int points, int weight) const {
  return MakePlotFont(family, points, weight, DpiY);
}

QFont MakePlotFont(const char* family, int points, int weight, int dpiY) {
  QFont f(QString::fromLatin1(family));
  // MulDiv(points, dpiY, 72), which rounds to nearest.
  f.setPixelSize(std::max(1, int((int64_t(points) * dpiY * 2 + 72) / 144)));
  f.setWeight(weight >= 700 ? QFont::Bold : QFont::Normal);
  f.setStyleStrategy(QFont::NoAntialias);
  return f;
}

int PaintContext::FontHeight(const QFont& font) const {
  const QFontMetrics fm(font, Painter.device());
  return fm.ascent() + fm.descent();
}

int PaintContext::FontMaxWidth(const QFont& font) const { return QFontMetrics(font, Painter.device()).maxWidth(); }

int PaintContext::TextWidth(const QFont& font, const QString& text) const {
  return QFontMetrics(font, Painter.device()).horizontalAdvance(text);
}

QColor PaintContext::Colour(int index) const {
  const auto& colours = M.App.Settings.Colours;
  if (index < 0 || index >= kColourTableSize) return QColor(0, 0, 0);
  return FromColorRef(colours[index]);
}

void PaintContext::SetPen(const QColor& colour, Qt::PenStyle style) {
  QPen pen(colour);
  pen.setWidth(1);
  pen.setCosmetic(true);
  pen.setStyle(style);
  pen.setCapStyle(Qt::FlatCap);
  Painter.setPen(pen);
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

QImage* PaintContext::DirectImage(const QColor& colour) const {
  QPaintDevice* dev = Painter.device();
  if (!dev || dev->devType() != QInternal::Image) return nullptr;
  auto* image = static_cast<QImage*>(dev);
  const QImage::Format f = image->format();
  if (f != QImage::Format_RGB32 && f != QImage::Format_ARGB32_Premultiplied) return nullptr;
  if (colour.alpha() != 255 || !Painter.deviceTransform().isIdentity()) return nullptr;
  const QPainter::CompositionMode mode = Painter.compositionMode();
  if (mode != QPainter::CompositionMode_SourceOver && mode != QPainter::CompositionMode_Source) return nullptr;
  if (Painter.hasClipping() && !ClipIsDevice) return nullptr;
  return image;
}

void PaintContext::FillRect(int left, int64_t top, int right, int64_t bottom, const QColor& colour) {
  if (right <= left || bottom <= top) return;
  if (bottom <= VisibleTop() - kGuard || top >= VisibleBottom() + kGuard) return;
  // The curves' coverage bar fills thousands of one-row strips: on an image they are
  // written directly, which costs a few nanoseconds instead of a painter call each.
  if (int64_t(right - left) * (bottom - top) <= 64) {
    if (QImage* image = DirectImage(colour)) {
      const QRect r = QRect(QPoint(left, int(std::clamp<int64_t>(top - OriginY, INT32_MIN / 2, INT32_MAX / 2))),
                            QPoint(right - 1, int(std::clamp<int64_t>(bottom - 1 - OriginY, INT32_MIN / 2, INT32_MAX / 2)))) &
                      Device & image->rect();
      const uint32_t value = colour.rgb();
      for (int y = r.top(); y <= r.bottom(); ++y) {
        auto* line = reinterpret_cast<uint32_t*>(image->scanLine(y));
        for (int x = r.left(); x <= r.right(); ++x) line[x] = value;
      }
      return;
    }
  }
  Painter.fillRect(DeviceRect(left, top, right, bottom), colour);
}

void PaintContext::Pixel(int x, int64_t y, const QColor& colour) {
  if (!RowVisible(y)) return;
  const int dy = int(y - OriginY);
  if (QImage* image = DirectImage(colour)) {
    if (Device.contains(x, dy) && image->rect().contains(x, dy))
      reinterpret_cast<uint32_t*>(image->scanLine(dy))[x] = colour.rgb();
    return;
  }
  Painter.fillRect(QRect(x, dy, 1, 1), colour);
}

PaintContext::PixelBatch::PixelBatch(PaintContext& ctx, const QColor& colour)
    : ctx_(ctx), colour_(colour), rgb_(colour.rgb()), top_(ctx.VisibleTop()), bottom_(ctx.VisibleBottom()) {
  if (QImage* image = ctx.DirectImage(colour)) {
    const QRect r = ctx.Device & image->rect();
    if (r.isEmpty()) {
      bottom_ = top_;  // nothing to draw
      return;
    }
    bits_ = image->bits();
    stride_ = image->bytesPerLine();
    left_ = r.left();
    right_ = r.right() + 1;
    rowTop_ = r.top();
    rowBottom_ = r.bottom() + 1;
  }
}

void PaintContext::Text(int left, int64_t top, int right, int64_t bottom, int flags, const QString& text) {
  if (bottom < VisibleTop() - 200 || top > VisibleBottom() + 200) return;
  Painter.drawText(QRect(QPoint(left, int(top - OriginY)), QPoint(right - 1, int(bottom - OriginY) - 1)),
                   flags, text);
}

void PaintContext::FocusRect(int left, int64_t top, int right, int64_t bottom, const QRegion* within) {
  if (right <= left || bottom <= top) return;
  if (!BandVisible(top, bottom)) return;
  // Edges far outside the device are moved to just outside it; the dots keep the phase
  // of the true corner.
  const int64_t t = std::max(top - OriginY, int64_t(Device.top()) - 1);
  const int64_t b = std::min(bottom - OriginY, int64_t(Device.bottom()) + 2);
  const QPoint phase(left, int((top - OriginY) & 1));
  DrawFocusOutline(Painter, QRect(left, int(t), right - left, int(b - t)), phase, within);
}

QString FromAnsi(const char* text, size_t size) {
  QString out;
  if (!text) return out;
  for (size_t i = 0; i < size && text[i] != '\0'; ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    char16_t c = byte;
    if (byte >= 0x80 && byte < 0xA0) c = kCp1252High[byte - 0x80] ? kCp1252High[byte - 0x80] : char16_t(0xFFFD);
    out.append(QChar(c));
  }
  return out;
}

bool ToAnsi(const QString& text, size_t maxChars, std::string& bytes, char32_t& bad, char replacement) {
  std::string out;
  const QString composed = text.normalized(QString::NormalizationForm_C);
  for (const char32_t c : composed.toUcs4()) {
    if (out.size() == maxChars || c == 0) break;
    int byte = c < 0x80 || (c >= 0xA0 && c <= 0xFF) ? int(c) : -1;
    for (int i = 0; i < 32 && byte < 0; ++i)
      if (kCp1252High[i] != 0 && kCp1252High[i] == c) byte = 0x80 + i;
    if (byte < 0 && replacement != 0) byte = static_cast<unsigned char>(replacement);
    if (byte < 0) {
      bad = c;
      return false;
    }
    out.push_back(char(byte));
  }
  bytes = std::move(out);
  return true;
}

int FloorInt(double v) {
  if (!(v == v)) return 0;
  return int(std::clamp(std::floor(v), -2147483648.0, 2147483647.0));
}

}  // namespace sedra
