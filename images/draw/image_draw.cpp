#include "images/draw/image_draw.h"

#include <QBrush>
#include <QImage>
#include <QPaintEngine>
#include <QPainter>
#include <QRegion>
#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "images/draw/display_image.h"
#include "model/model.h"

namespace sedra {

namespace {

// floor() of a product that may be NaN or huge, as a pixel count that cannot overflow.
int FloorPixels(double v) {
  if (!(v == v)) return 0;
  return int(std::clamp(std::floor(v), -1.0e9, 1.0e9));
}

int Zoom(const PlotState& plot) { return std::max(1, plot.ZoomFactor); }

QBrush CheckerBrush(QColor colour) {
  QImage tile(2, 2, QImage::Format_ARGB32_Premultiplied);
  tile.fill(Qt::transparent);
  tile.setPixelColor(0, 0, colour);
  tile.setPixelColor(1, 1, colour);
  return QBrush(tile);
}

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

void StretchImage(const DrawSurface& surface, DisplayImage& image, int sx, int sy, int sw, int sh, int x, int64_t y,
                  int w, int64_t h, QPainter::CompositionMode mode) {
  if (image.Null() || !surface.Painter || w <= 0 || h <= 0 || sw <= 0 || sh <= 0 || surface.Device.isEmpty()) return;
  const QRect& dev = surface.Device;
  // The destination in device coordinates, cut to the device rectangle and to the
  // pixels whose source lies inside the image.
  const int64_t top = y - surface.OriginY;
  int64_t c0 = std::max<int64_t>(x, dev.left());
  int64_t c1 = std::min<int64_t>(int64_t(x) + w, int64_t(dev.right()) + 1);
  int64_t r0 = std::max<int64_t>(top, dev.top());
  int64_t r1 = std::min<int64_t>(top + h, int64_t(dev.bottom()) + 1);
  if (c0 >= c1 || r0 >= r1) return;
  if (!TrimToSource(c0, c1, x, sx, sw, w, image.Width())) return;
  if (!TrimToSource(r0, r1, top, sy, sh, h, image.Height())) return;

  Sampling s;
  s.X = sx;
  s.XSpan = sw;
  s.XCount = w;
  s.ColumnFrom = c0 - x;
  s.Columns = int(c1 - c0);
  s.Y = sy;
  s.YSpan = sh;
  s.YCount = h;
  s.RowFrom = r0 - top;
  s.Rows = int(r1 - r0);
  const QImage& part = image.Picked(s);

  QPainter& painter = *surface.Painter;
  const QPainter::CompositionMode old = painter.compositionMode();
  const bool rasterOp = mode >= QPainter::RasterOp_SourceOrDestination;
  const bool supported =
      !rasterOp || (painter.paintEngine() && painter.paintEngine()->hasFeature(QPaintEngine::RasterOpModes));
  painter.setCompositionMode(supported ? mode : QPainter::CompositionMode_Source);
  painter.drawImage(QPoint(int(c0), int(r0)), part);
  painter.setCompositionMode(old);
}

void StretchImage(const DrawSurface& surface, const QImage& image, int sx, int sy, int sw, int sh, int x, int64_t y,
                  int w, int64_t h, QPainter::CompositionMode mode) {
  if (image.isNull()) return;
  QImage converted;
  const QImage* src = &image;
  if (image.format() != QImage::Format_RGB32 && image.format() != QImage::Format_ARGB32) {
    converted = image.convertToFormat(QImage::Format_RGB32);
    if (converted.isNull()) return;
    src = &converted;
  }
  DisplayImage display;
  display.UseImage(*src);
  StretchImage(surface, display, sx, sy, sw, sh, x, y, w, h, mode);
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
  DisplayImage& image = OpticalDisplay(model, optical);
  if (image.Null() || width <= 0 || height <= 0) return;

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
  last = std::min(last, image.Height() - 1);
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
      count = std::clamp(count, 0, image.Height() - first);
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
  StretchImage(surface, image, sx, first, sw, count, left, drawTop, width, drawHeight);
  optical.DrawnRect = {left, drawTop, left + width, drawTop + drawHeight};
}

bool HasDisplay(const RadiographDesc& rad) {
  if (!rad.Bitmap.Empty()) return true;
  const size_t count = size_t(std::max(rad.Width, 0)) * size_t(std::max(rad.Height, 0));
  return rad.DisplayFromSamples && count > 0 && rad.Samples.size() >= count;
}

int PlacedRadiographs(const CoreSection& section) {
  const int count = std::clamp(section.RadiographCount, 0, kMaxRadiographs);
  int placed = 0;
  for (int i = 0; i < count; ++i)
    if (HasDisplay(section.Radiographs[size_t(i)])) ++placed;
  return placed;
}

IntRect RadiographDest(const PlotState& plot, const CoreSection& section, int index, int left, int top, int width,
                       int height) {
  const int count = std::clamp(section.RadiographCount, 0, kMaxRadiographs);
  if (index < 0 || index >= count || !HasDisplay(section.Radiographs[size_t(index)])) return {};
  int x = left;
  for (int i = 0; i < index; ++i)
    if (HasDisplay(section.Radiographs[size_t(i)])) x += width;
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
    if (!HasDisplay(rad) || plot.RadContrastOpen) continue;
    const IntRect dest = RadiographDest(plot, sec, i, left, top, width, height);
    // The radiograph window keeps the data-region band in its own pixels in these two
    // while that dialog is open; the plot leaves them alone meanwhile.
    if (!plot.DataRegionMode) {
      rad.EditRect = {dest.Left, dest.Top, dest.Right - 1, dest.Bottom - 1};
      rad.ViewRect = rad.EditRect;
    }
    rad.DestRect = dest;
    DisplayImage& image = RadiographDisplay(model, rad);
    int first = 0, rows = 0;
    RadiographSourceRows(model, section, image.Height(), first, rows);
    StretchImage(surface, image, 0, first, image.Width(), rows, dest.Left, dest.Top, width,
                 int64_t(dest.Bottom) - dest.Top);
  }
  return PlacedRadiographs(sec);
}

void DrawOverlay(const DrawSurface& surface, Model& model, int section, int left, int top, int width, int height) {
  DrawOpticalImage(surface, model, section, left, top, width, height);
  const PlotState& plot = model.Plot();
  RadiographDesc& rad = model.Section(section).Radiographs[size_t(model.CurRadiographSlot())];
  DisplayImage& image = RadiographDisplay(model, rad);
  if (image.Null()) return;
  const int y = Zoom(plot) * rad.TopOffset + top;
  const int drawn = FloorPixels(double(rad.HeightScale) * height);
  int first = 0, rows = 0;
  RadiographSourceRows(model, section, image.Height(), first, rows);
  // A printed page gets a plain copy, so it shows the radiograph in place of the
  // optical image rather than combined with it.  Kept: printed figures have always
  // looked like this and users rely on it.
  QPainter::CompositionMode mode = QPainter::CompositionMode_Source;
  if (!plot.Printing)
    mode = plot.OverlayOr ? QPainter::RasterOp_SourceOrDestination : QPainter::RasterOp_SourceAndDestination;
  StretchImage(surface, image, 0, first, image.Width(), rows, left, y, width, drawn, mode);
}

void DrawMovedRadiograph(const DrawSurface& surface, Model& model) {
  const PlotState& plot = model.Plot();
  RadiographDesc& rad = model.CurRadiograph();
  DisplayImage& image = RadiographDisplay(model, rad);
  if (image.Null()) return;
  const IntRect& r = plot.RadPlacement;
  int first = 0, rows = 0;
  RadiographSourceRows(model, model.CurSectionSlot(), image.Height(), first, rows);
  StretchImage(surface, image, 0, first, image.Width(), rows, r.Left, r.Top, r.Right - r.Left,
               int64_t(r.Bottom) - r.Top);
}

void DrawFocusOutline(QPainter& painter, const QRect& rect, QPoint phase, const QRegion* within) {
  if (rect.isEmpty()) return;
  QPaintEngine* engine = painter.paintEngine();
  const bool invert = engine && engine->hasFeature(QPaintEngine::RasterOpModes);
  // A 2 x 2 checker, dot on the diagonal, transparent between the dots: the pixels the
  // platform inverted, filled as four one-pixel strips.  Filling is far cheaper than a
  // dashed pen, which a drag pays for on every step.
  static const QBrush dots[2] = {CheckerBrush(Qt::black), CheckerBrush(Qt::white)};
  const int l = rect.left(), t = rect.top(), w = rect.width(), h = rect.height();
  const QRect edges[4] = {{l, t, w, 1},
                          {l, rect.bottom(), w, h > 1 ? 1 : 0},
                          {l, t + 1, 1, h - 2},
                          {rect.right(), t + 1, w > 1 ? 1 : 0, h - 2}};
  painter.save();
  painter.setBrushOrigin(phase);
  if (invert) painter.setCompositionMode(QPainter::RasterOp_SourceXorDestination);
  for (const QRect& edge : edges) {
    if (edge.isEmpty()) continue;
    if (!within) {
      painter.fillRect(edge, dots[invert]);
      continue;
    }
    for (const QRect& part : *within)
      if (const QRect piece = edge & part; !piece.isEmpty()) painter.fillRect(piece, dots[invert]);
  }
  painter.restore();
}

}  // namespace sedra
