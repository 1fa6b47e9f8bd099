#pragma once
// Shared state of one paint: the painter, the device's resolution, the fonts, and the
// mapping from document coordinates to device coordinates.
//
// Document coordinates are the plot's own: at zoom 32 a tall window makes a document
// far taller than the 32 768 pixels Qt's rasteriser promises to handle.  Every drawing
// routine therefore computes in document coordinates (64-bit where products get large)
// and draws through these helpers, which subtract the scroll origin and clip to a band
// just around the visible window before anything reaches QPainter.

#include <QColor>
#include <QFont>
#include <QPainter>
#include <QRect>
#include <QString>
#include <cstdint>
#include <string>

#include "images/draw/image_draw.h"

namespace sedra {

class Model;

struct PaintContext {
  PaintContext(QPainter& painter, Model& model, int originY, QRect deviceRect);

  QPainter& Painter;
  Model& M;
  int DpiX = 96;
  int DpiY = 96;
  int64_t OriginY = 0;  // document y drawn at device y 0
  QRect Device;         // device rectangle being painted (clip), device coordinates
  QFont LabelFont;      // 8 pt "MS Sans Serif", weight 400
  QFont PlotFont;       // 11 pt "MS Sans Serif", weight 700

  QFont MakeFont(const char* family, int points, int weight) const;
  // Character height (ascent + descent), maximum character width and text extent of a
  // font on this device.
  int FontHeight(const QFont& font) const;
  int FontMaxWidth(const QFont& font) const;
  int TextWidth(const QFont& font, const QString& text) const;

  // Colour of the settings' colour table.
  QColor Colour(int index) const;
  // A solid (or styled) one-pixel pen that, like the platform's, leaves out the last
  // pixel of a line.
  void SetPen(const QColor& colour, Qt::PenStyle style = Qt::SolidLine);

  // Document y to device y, clamped into a safe band around the device rectangle.
  int DeviceY(int64_t docY) const;
  // The visible document band [top, bottom) (with a margin); for skipping work.
  int64_t VisibleTop() const { return OriginY + Device.top() - 2; }
  int64_t VisibleBottom() const { return OriginY + Device.bottom() + 3; }
  bool RowVisible(int64_t docY) const { return docY >= VisibleTop() && docY < VisibleBottom(); }
  bool BandVisible(int64_t top, int64_t bottom) const { return bottom >= VisibleTop() && top < VisibleBottom(); }

  // Drawing in document coordinates.  Lines are clipped (keeping their slope) to the
  // visible band before they are handed to the painter.
  void Line(int x1, int64_t y1, int x2, int64_t y2);
  void FillRect(int left, int64_t top, int right, int64_t bottom, const QColor& colour);  // right/bottom exclusive
  void Pixel(int x, int64_t y, const QColor& colour);
  void Text(int left, int64_t top, int right, int64_t bottom, int flags, const QString& text);
  // The device rectangle for a document rectangle, clamped like DeviceY.
  QRect DeviceRect(int left, int64_t top, int right, int64_t bottom) const;
  // The dotted focus rectangle (left, top, right, bottom; right and bottom exclusive),
  // drawn only within `within` when that is given.
  void FocusRect(int left, int64_t top, int right, int64_t bottom, const QRegion* within = nullptr);

  // Where the image drawing lands.
  DrawSurface Surface() const { return DrawSurface{&Painter, OriginY, Device}; }

  // Set by whoever clips the painter to exactly Device (PaintPlot on screen): single
  // pixels and small fills may then be written straight into an image target.
  bool ClipIsDevice = false;
  // Width of the whole device in pixels (the screen's, or the printer page's) when it
  // differs from the painter's device, as for a window painted through a back buffer.
  int HorzRes = 0;

  // Many single pixels of one colour (a curve's points): whether they can be written
  // straight into the image is decided once, not for every pixel.
  class PixelBatch {
   public:
    PixelBatch(PaintContext& ctx, const QColor& colour);
    void Set(int x, int64_t y) {
      if (y < top_ || y >= bottom_) return;
      if (!bits_) {
        ctx_.Pixel(x, y, colour_);
        return;
      }
      const int64_t dy = y - ctx_.OriginY;
      if (x < left_ || x >= right_ || dy < rowTop_ || dy >= rowBottom_) return;
      reinterpret_cast<uint32_t*>(bits_ + dy * stride_)[x] = rgb_;
    }

   private:
    PaintContext& ctx_;
    QColor colour_;
    uint32_t rgb_ = 0;
    uchar* bits_ = nullptr;
    qsizetype stride_ = 0;
    int64_t top_ = 0, bottom_ = 0;
    int left_ = 0, right_ = 0;
    int64_t rowTop_ = 0, rowBottom_ = 0;
  };

 private:
  // The image under the painter when pixels can be written directly (untransformed
  // 32-bit image, plain source-over painting, no clip narrower than Device).
  QImage* DirectImage(const QColor& colour) const;
};

// A font of `points` points at `dpiY` (pixel size MulDiv(points, dpiY, 72)), without
// antialiasing so text lands on the same pixels on every target.
QFont MakePlotFont(const char* family, int points, int weight, int dpiY);

// 0x00BBGGRR colour of the settings to QColor.
inline QColor FromColorRef(uint32_t c) { return QColor(int(c & 0xFF), int((c >> 8) & 0xFF), int((c >> 16) & 0xFF)); }

// An 8-bit text of the model (Windows-1252) as a QString; at most `size` bytes are read.
QString FromAnsi(const char* text, size_t size = 4096);

// The first `maxChars` characters of `text` as Windows-1252 bytes, the way the model
// stores its texts.  Characters are composed first, so an "e" typed with a combining
// accent is stored as the one byte of "\u00e9".  False when one of those characters has
// no byte in the code page; `bad` then holds the first such character and `bytes` is
// left alone.  With a `replacement` byte such characters become that byte instead, and
// the call always succeeds.
bool ToAnsi(const QString& text, size_t maxChars, std::string& bytes, char32_t& bad, char replacement = 0);

// floor(v) as an int; NaN gives 0 and values beyond the int range are clamped, so a
// damaged length never turns into undefined behaviour.
int FloorInt(double v);

}  // namespace sedra
