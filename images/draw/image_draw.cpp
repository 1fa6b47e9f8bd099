#include "images/draw/image_draw.h"

#include <QPaintEngine>
#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "images/draw/bitmap_cache.h"
#include "model/model.h"

namespace sedra {

namespace {

// floor() of a product that may be NaN or huge, as a pixel count that cannot overflow.
int FloorPixels(double v) {
  if (!(v == v)) return 0;
  return int(std::clamp(std::floor(v), -1.0e9, 1.0e9));
}

int Zoom(const PlotState& plot) { return std::max(1, plot.ZoomFactor); }

// The source index that destination pixel i of n samples when s source pixels from s0
// are stretched over them: the pixel whose span holds the destination pixel's centre.
inline int64_t SourceIndex(int64_t s0, int64_t s, int64_t i, int64_t n) { return s0 + ((2 * i + 1) * s) / (2 * n); }

// The first destination pixel in [lo, hi) whose source index reaches `target` (the
// source index never decreases along the destination).
int64_t FirstReaching(int64_t lo, int64_t hi, int64_t first, int64_t s0, int64_t s, int64_t n, int64_t target) {
  while (lo < hi) {
    const int64_t mid = lo + (hi - lo) / 2;
    if (SourceIndex(s0, s, mid - first, n) >= target)
      hi = mid;
    else
      lo = mid + 1;
  }
  return lo;
}

// Trims the destination range [d0, d1) (device pixels; the destination starts at
// `first`) to the pixels whose source lies inside [0, limit).
bool TrimToSource(int64_t& d0, int64_t& d1, int64_t first, int64_t s0, int64_t s, int64_t n, int64_t limit) {
  d0 = FirstReaching(d0, d1, first, s0, s, n, 0);
  d1 = FirstReaching(d0, d1, first, s0, s, n, limit);
  return d0 < d1;
}

}  // namespace

namespace {

// The stretch itself.  Source indices are worked out on the full-size image; `src` may
// be a copy reduced by 2^shift, from which the pixel at index >> shift is taken.
void Stretch(const DrawSurface& surface, const QImage& src, int shift, int fullWidth, int fullHeight, int sx, int sy,
             int sw, int sh, int x, int64_t y, int w, int64_t h, QPainter::CompositionMode mode) {
  const QRect& dev = surface.Device;
  // The destination in device coordinates, cut to the device rectangle.
  const int64_t top = y - surface.OriginY;
  int64_t c0 = std::max<int64_t>(x, dev.left());
  int64_t c1 = std::min<int64_t>(int64_t(x) + w, int64_t(dev.right()) + 1);
  int64_t r0 = std::max<int64_t>(top, dev.top());
  int64_t r1 = std::min<int64_t>(top + h, int64_t(dev.bottom()) + 1);
  if (c0 >= c1 || r0 >= r1) return;
  if (!TrimToSource(c0, c1, x, sx, sw, w, fullWidth)) return;
  if (!TrimToSource(r0, r1, top, sy, sh, h, fullHeight)) return;

  const int outW = int(c1 - c0);
  const int outH = int(r1 - r0);
  // One scratch buffer per thread, grown as needed: painting allocates nothing after
  // the first frames.
  thread_local std::vector<uint32_t> scratch;
  thread_local std::vector<int> columns;
  const size_t need = size_t(outW) * size_t(outH);
  if (scratch.size() < need) scratch.resize(need);
  columns.resize(size_t(outW));
  const int lastColumn = src.width() - 1, lastRow = src.height() - 1;
  for (int j = 0; j < outW; ++j)
    columns[size_t(j)] = std::min(lastColumn, int(SourceIndex(sx, sw, c0 + j - x, w) >> shift));

  const uchar* bits = src.constBits();
  const qsizetype bpl = src.bytesPerLine();
  int64_t previous = -1;
  for (int i = 0; i < outH; ++i) {
    uint32_t* out = scratch.data() + size_t(i) * size_t(outW);
    const int64_t row = std::min<int64_t>(lastRow, SourceIndex(sy, sh, r0 + i - top, h) >> shift);
    if (row == previous) {
      std::memcpy(out, out - outW, size_t(outW) * sizeof(uint32_t));
      continue;
    }
    previous = row;
    const auto* in = reinterpret_cast<const uint32_t*>(bits + row * bpl);
    for (int j = 0; j < outW; ++j) out[j] = in[columns[size_t(j)]] | 0xFF000000u;
  }

  const QImage part(reinterpret_cast<const uchar*>(scratch.data()), outW, outH, qsizetype(outW) * 4,
                    QImage::Format_RGB32);
  QPainter& painter = *surface.Painter;
  const QPainter::CompositionMode old = painter.compositionMode();
  const bool rasterOp = mode >= QPainter::RasterOp_SourceOrDestination;
  const bool supported =
      !rasterOp || (painter.paintEngine() && painter.paintEngine()->hasFeature(QPaintEngine::RasterOpModes));
  painter.setCompositionMode(supported ? mode : QPainter::CompositionMode_Source);
  painter.drawImage(QPoint(int(c0), int(r0)), part);
  painter.setCompositionMode(old);
}

bool Drawable(const DrawSurface& surface, int sw, int sh, int w, int64_t h) {
  return surface.Painter && w > 0 && h > 0 && sw > 0 && sh > 0 && !surface.Device.isEmpty();
}

}  // namespace

void StretchImage(const DrawSurface& surface, const QImage& image, int sx, int sy, int sw, int sh, int x, int64_t y,
                  int w, int64_t h, QPainter::CompositionMode mode) {
  if (image.isNull() || !Drawable(surface, sw, sh, w, h)) return;
  QImage converted;
  const QImage* src = &image;
  if (image.format() != QImage::Format_RGB32 && image.format() != QImage::Format_ARGB32) {
    converted = image.convertToFormat(QImage::Format_RGB32);
    if (converted.isNull()) return;
    src = &converted;
  }
  Stretch(surface, *src, 0, src->width(), src->height(), sx, sy, sw, sh, x, y, w, h, mode);
}

void StretchImage(const DrawSurface& surface, ScreenBitmap& bitmap, int sx, int sy, int sw, int sh, int x, int64_t y,
                  int w, int64_t h, QPainter::CompositionMode mode) {
  if (bitmap.Image.isNull() || !Drawable(surface, sw, sh, w, h)) return;
  // The smallest reduced copy that still has at least one source pixel per
  // destination pixel in both directions.
  int shift = 0;
  while (shift < 10 && (int64_t(sw) >> (shift + 1)) >= w && (int64_t(sh) >> (shift + 1)) >= h) ++shift;
  const QImage& src = bitmap.Reduced(shift);
  // The copy actually made (a copy that could not be allocated leaves a larger one):
  // copy k is ceil(width / 2^k) wide.
  int used = 0;
  while (used < shift && ((int64_t(bitmap.Image.width()) + (int64_t(1) << used) - 1) >> used) > src.width()) ++used;
  Stretch(surface, src, used, bitmap.Image.width(), bitmap.Image.height(), sx, sy, sw, sh, x, y, w, h, mode);
}

void RadiographSourceRows(const Model& model, int section, int imageHeight, int& firstRow, int& rowCount) {
  const PlotState& plot = model.Plot();
  const int points = model.Section(section).PointCount;
  firstRow = 0;
  rowCount = imageHeight;
  if (plot.Expanded && points > 0) {
    firstRow = int(int64_t(plot.ViewFirstPoint) * imageHeight / points);
    rowCount = int(int64_t(plot.ViewLastPoint - plot.ViewFirstPoint) * imageHeight / points);
  }
  firstRow = std::clamp(firstRow, 0, std::max(0, imageHeight - 1));
  rowCount = std::clamp(rowCount, 0, imageHeight - firstRow);
}

void DrawOpticalImage(const DrawSurface& surface, Model& model, int section, int left, int top, int width, int height) {
  OpticalImageDesc& optical = model.Section(section).Optical;
  const PlotState& plot = model.Plot();
  optical.RequestedRect = {left, top, left + width, top + height};
  optical.DrawnRect = {left, top, left, top};
  ScreenBitmap& bitmap = CachedScreenBitmap(model, optical.Bitmap);
  const QImage& image = bitmap.Image;
  if (image.isNull() || width <= 0 || height <= 0) return;

  // Columns: from CropLeft, CropRight of them.  The width is CropRight itself and not
  // CropRight - CropLeft; a crop that starts right of 0 therefore reaches past the
  // image's edge, which stays unpainted.  Kept so: the crop dialog was fitted to it.
  const int sx = optical.CropLeft;
  const int sw = optical.CropRight;

  // Rows: the crop, narrowed to the pixels document.txt placed on the section.
  int first = optical.CropTop;
  int last = optical.CropBottom;
  if (optical.LastShownPixel > optical.FirstShownPixel) {
    first = std::max(first, optical.FirstShownPixel);
    last = std::min(last, optical.LastShownPixel);
  }
  first = std::max(first, 0);
  last = std::min(last, image.height() - 1);
  int count = last - first + 1;
  if (count < 1) return;

  // The depth the rectangle stands for, to place the image's own start and length.
  double span = plot.SectionLength[section];
  if (plot.ShowAllSections && plot.ImageCoversAll) span = plot.LayoutSpan;
  if (plot.Expanded && !plot.ShowAllSections) {
    const double length = span;
    if (length > 0) {
      const int skip = FloorPixels(count * double(plot.ExpandTop) / length);
      count = FloorPixels(count * double(plot.ExpandBottom - plot.ExpandTop) / length);
      first += std::max(0, skip);
      count = std::clamp(count, 0, image.height() - first);
      if (count < 1) return;
    }
    span = plot.ExpandBottom - plot.ExpandTop;
  }
  int drawTop = top;
  int drawHeight = height;
  if (span > 0) {
    drawTop = top + FloorPixels(double(optical.OpticalTop) * height / span);
    if (optical.OpticalLength > 0) drawHeight = FloorPixels(double(optical.OpticalLength) * height / span);
  }
  StretchImage(surface, bitmap, sx, first, sw, count, left, drawTop, width, drawHeight);
  optical.DrawnRect = {left, drawTop, left + width, drawTop + drawHeight};
}

int PlacedRadiographs(const CoreSection& section) {
  const int count = std::clamp(section.RadiographCount, 0, kMaxRadiographs);
  int placed = 0;
  for (int i = 0; i < count; ++i)
    if (!section.Radiographs[size_t(i)].Bitmap.Empty()) ++placed;
  return placed;
}

IntRect RadiographDest(const PlotState& plot, const CoreSection& section, int index, int left, int top, int width,
                       int height) {
  const int count = std::clamp(section.RadiographCount, 0, kMaxRadiographs);
  if (index < 0 || index >= count || section.Radiographs[size_t(index)].Bitmap.Empty()) return {};
  int x = left;
  for (int i = 0; i < index; ++i)
    if (!section.Radiographs[size_t(i)].Bitmap.Empty()) x += width;
  const RadiographDesc& rad = section.Radiographs[size_t(index)];
  const int y = Zoom(plot) * rad.TopOffset + top;
  const int drawn = FloorPixels(double(rad.HeightScale) * height);
  return {x, y, x + width, y + drawn};
}

int DrawRadiographs(const DrawSurface& surface, Model& model, int section, int left, int top, int width, int height) {
  CoreSection& sec = model.Section(section);
  const PlotState& plot = model.Plot();
  const int count = std::clamp(sec.RadiographCount, 0, kMaxRadiographs);
  for (int i = 0; i < count; ++i) {
    RadiographDesc& rad = sec.Radiographs[size_t(i)];
    // While the radiograph contrast dialog is open it owns the image: the plot keeps
    // the place but draws nothing there.
    if (rad.Bitmap.Empty() || plot.RadContrastOpen) continue;
    const IntRect dest = RadiographDest(plot, sec, i, left, top, width, height);
    rad.EditRect = {dest.Left, dest.Top, dest.Right - 1, dest.Bottom - 1};
    rad.ViewRect = rad.EditRect;
    rad.DestRect = dest;
    ScreenBitmap& bitmap = CachedScreenBitmap(model, rad.Bitmap);
    int first = 0, rows = 0;
    RadiographSourceRows(model, section, bitmap.Image.height(), first, rows);
    StretchImage(surface, bitmap, 0, first, bitmap.Image.width(), rows, dest.Left, dest.Top, width,
                 int64_t(dest.Bottom) - dest.Top);
  }
  return PlacedRadiographs(sec);
}

void DrawOverlay(const DrawSurface& surface, Model& model, int section, int left, int top, int width, int height) {
  DrawOpticalImage(surface, model, section, left, top, width, height);
  const PlotState& plot = model.Plot();
  RadiographDesc& rad = model.Section(section).Radiographs[size_t(model.CurRadiographSlot())];
  ScreenBitmap& bitmap = CachedScreenBitmap(model, rad.Bitmap);
  const QImage& image = bitmap.Image;
  if (image.isNull()) return;
  const int y = Zoom(plot) * rad.TopOffset + top;
  const int drawn = FloorPixels(double(rad.HeightScale) * height);
  int first = 0, rows = 0;
  RadiographSourceRows(model, section, image.height(), first, rows);
  // A printed page gets a plain copy, so it shows the radiograph in place of the
  // optical image rather than combined with it.  Kept: printed figures have always
  // looked like this and users rely on it.
  QPainter::CompositionMode mode = QPainter::CompositionMode_Source;
  if (!plot.Printing)
    mode = plot.OverlayOr ? QPainter::RasterOp_SourceOrDestination : QPainter::RasterOp_SourceAndDestination;
  StretchImage(surface, bitmap, 0, first, image.width(), rows, left, y, width, drawn, mode);
}

void DrawMovedRadiograph(const DrawSurface& surface, Model& model) {
  const PlotState& plot = model.Plot();
  RadiographDesc& rad = model.CurRadiograph();
  ScreenBitmap& bitmap = CachedScreenBitmap(model, rad.Bitmap);
  const QImage& image = bitmap.Image;
  if (image.isNull()) return;
  const IntRect& r = plot.RadPlacement;
  int first = 0, rows = 0;
  RadiographSourceRows(model, model.CurSectionSlot(), image.height(), first, rows);
  StretchImage(surface, bitmap, 0, first, image.width(), rows, r.Left, r.Top, r.Right - r.Left,
               int64_t(r.Bottom) - r.Top);
}

}  // namespace sedra
