#include "plot/regions.h"

#include <QPen>
#include <QPoint>
#include <algorithm>
#include <cmath>
#include <vector>

#include "model/model.h"
#include "plot/paint_context.h"

namespace sedra {

namespace {

enum Pattern : int {
  kShading = 0,
  kHorizontalHatch = 1,
  kVerticalHatch = 2,
  kUpwardHatch = 3,
  kDownwardHatch = 4,
  kCrosshatch = 5,
  kDiagonalCrosshatch = 6,
  kStipple = 7,
};

struct Box {
  int Left, Right;
  int64_t Top, Bottom;
};

// Restores the painter's pen when a drawing routine returns.
class PenGuard {
 public:
  explicit PenGuard(QPainter& p) : painter_(p), pen_(p.pen()) {}
  ~PenGuard() { painter_.setPen(pen_); }
  PenGuard(const PenGuard&) = delete;
  PenGuard& operator=(const PenGuard&) = delete;

 private:
  QPainter& painter_;
  QPen pen_;
};

QPen OnePixelPen(const QColor& colour, Qt::PenStyle style = Qt::SolidLine) {
  QPen pen(colour, 1, style, Qt::SquareCap);
  pen.setCosmetic(true);
  return pen;
}

// A depth in mm to a document row: the expanded display's offset is applied in single
// precision, as the regions were always placed, then the product is taken wide so a
// 32x zoomed plot does not lose rows.
bool DepthToRow(float depth, float offset, const PlotState& plot, int64_t y0, int64_t& row) {
  const double d = double(depth + offset) * double(plot.PlotHeight) / double(plot.DepthSpan);
  if (!std::isfinite(d) || std::fabs(d) > 1e15) return false;
  row = y0 + int64_t(std::floor(d));
  return true;
}

// First value of top, top + step, ... that is not above `from`.
int64_t FirstOnGrid(int64_t top, int64_t step, int64_t from) {
  if (from <= top) return top;
  return top + (from - top + step - 1) / step * step;
}

void HorizontalHatch(PaintContext& ctx, const Box& b, int s) {
  const int64_t last = std::min(b.Bottom, ctx.VisibleBottom());
  for (int64_t y = FirstOnGrid(b.Top, s, ctx.VisibleTop()); y < last; y += s) ctx.Line(b.Left, y, b.Right - 1, y);
}

void VerticalHatch(PaintContext& ctx, const Box& b, int s) {
  if (b.Bottom <= b.Top) return;
  for (int x = b.Left; x < b.Right; x += s) ctx.Line(x, b.Top, x, b.Bottom - 1);
}

// 45-degree hatch lines inside the box, s pixels apart.  Every line is a set of points
// with x + y constant (rising to the right) or x - y constant (falling); the lines
// that start on the bottom edge and those that start on the left edge form one family
// anchored at the bottom-left corner (rising) or the top-left corner (falling).  Only
// the part of each line inside the box and the visible band is drawn, so cost follows
// the window, not the zoom.
void DiagonalHatch(PaintContext& ctx, const Box& b, int s, bool rising) {
  if (b.Bottom <= b.Top || b.Right <= b.Left) return;
  const int64_t yLo = std::max(b.Top, ctx.VisibleTop());
  const int64_t yHi = std::min(b.Bottom - 1, ctx.VisibleBottom());
  if (yHi < yLo) return;
  const int64_t xLo = b.Left, xHi = b.Right - 1;
  // For a rising line x = c - y, for a falling one x = c + y.
  const int64_t anchor = rising ? b.Left + b.Bottom : b.Left - b.Top;
  const int64_t cMin = rising ? xLo + yLo : xLo - yHi;
  const int64_t cMax = rising ? xHi + yHi : xHi - yLo;
  // First member of the family at or above cMin.
  int64_t c = cMin + ((anchor - cMin) % s + s) % s;
  for (; c <= cMax; c += s) {
    int64_t y1, y2;  // y range of the line inside the box and the band
    if (rising) {
      y1 = std::max(yLo, c - xHi);
      y2 = std::min(yHi, c - xLo);
    } else {
      y1 = std::max(yLo, xLo - c);
      y2 = std::min(yHi, xHi - c);
    }
    if (y2 < y1) continue;
    const int64_t x1 = rising ? c - y1 : c + y1;
    const int64_t x2 = rising ? c - y2 : c + y2;
    ctx.Line(int(x1), y1, int(x2), y2);
  }
}

void Stipple(PaintContext& ctx, const Box& b, int t) {
  if (b.Top >= b.Bottom) return;
  const int64_t last = std::min(b.Bottom, ctx.VisibleBottom());
  std::vector<QPoint> points;
  for (int64_t y = FirstOnGrid(b.Top, t, ctx.VisibleTop()); y < last; y += t) {
    // The first row and every second one after it are shifted by half a pitch.
    const bool shifted = ((y - b.Top) / t) % 2 == 0;
    const int deviceY = ctx.DeviceY(y);
    for (int x = b.Left + (shifted ? t / 2 : 0); x < b.Right; x += t) points.emplace_back(x, deviceY);
  }
  if (!points.empty()) ctx.Painter.drawPoints(points.data(), int(points.size()));
}

Qt::PenStyle LineStyle(int style) {
  switch (style) {
    case 1: return Qt::DashLine;
    case 2: return Qt::DotLine;
    case 3: return Qt::DashDotLine;
    case 4: return Qt::DashDotDotLine;
    default: return Qt::SolidLine;
  }
}

}  // namespace

void DrawRegion(PaintContext& ctx, int index, int offsetMm, int sectionIndex, RegionKind kind) {
  if (index < 0 || index >= kAnnotationSlots || sectionIndex < 0 || sectionIndex >= kMaxSections) return;
  Model& model = ctx.M;
  const PlotState& plot = model.Plot();
  const CoreSection& section = model.Section(sectionIndex);

  Box box{plot.PageRect.Left + plot.LeftMargin, plot.PageRect.Right - plot.RightMargin, 0, 0};
  const int64_t y0 = int64_t(plot.PageRect.Top) + plot.TopMargin;
  int pattern = 0;

  if (kind == RegionKind::Horizontal) {
    if (!(section.HRegionBottom[index] > 0) || !(plot.DepthSpan > 0)) return;
    const float offset = float(offsetMm);
    if (!DepthToRow(section.HRegionTop[index], offset, plot, y0, box.Top) ||
        !DepthToRow(section.HRegionBottom[index], offset, plot, y0, box.Bottom))
      return;
    // A band that starts above the shown depth range is cut at the plot's top edge.
    // Its bottom is left alone: a band may run on below the plot.
    if (box.Top < y0) box.Top = y0;
    pattern = section.HRegionPattern[index];
  } else {
    const float length = plot.SectionLength[sectionIndex];
    if (!(section.VRegionRight[index] > 0) || !(length > 0)) return;
    const double l = double(section.VRegionLeft[index]) * plot.DataAreaRight / length;
    const double r = double(section.VRegionRight[index]) * plot.DataAreaRight / length;
    if (!std::isfinite(l) || !std::isfinite(r) || std::fabs(l) > 1e8 || std::fabs(r) > 1e8) return;
    box.Left = plot.ColumnLeft + int(std::floor(l));
    box.Right = plot.ColumnLeft + int(std::floor(r));
    box.Top = y0;
    box.Bottom = y0 + plot.PlotHeight;
    pattern = section.VRegionPattern[index];
  }
  if (box.Bottom - box.Top < 0) return;

  const DisplaySettings& settings = model.Settings();
  const QColor fill = FromColorRef(settings.Colours[kShadedRegionColour]);
  const QColor ink = FromColorRef(settings.Colours[kHighlightColour]);
  // Hatch spacing about 2.5 mm, stipple pitch about 1 mm, whatever the device.
  const int s = std::max(1, ctx.DpiX / 10);
  const int t = std::max(1, ctx.DpiX / 26);

  PenGuard guard(ctx.Painter);
  ctx.Painter.setPen(OnePixelPen(ink));
  switch (pattern) {
    case kShading:
      ctx.FillRect(box.Left, box.Top, box.Right, box.Bottom, fill);
      break;
    case kHorizontalHatch:
      HorizontalHatch(ctx, box, s);
      break;
    case kVerticalHatch:
      VerticalHatch(ctx, box, s);
      break;
    case kUpwardHatch:
      DiagonalHatch(ctx, box, s, true);
      break;
    case kDownwardHatch:
      DiagonalHatch(ctx, box, s, false);
      break;
    case kCrosshatch:
      HorizontalHatch(ctx, box, s);
      VerticalHatch(ctx, box, s);
      // The closing edges lie on the right and bottom lines themselves.
      ctx.Line(box.Right, box.Top, box.Right, box.Bottom);
      ctx.Line(box.Right, box.Bottom, box.Left + 1, box.Bottom);
      break;
    case kDiagonalCrosshatch:
      DiagonalHatch(ctx, box, s, true);
      DiagonalHatch(ctx, box, s, false);
      break;
    case kStipple:
      Stipple(ctx, box, t);
      break;
    default:
      break;  // an unknown pattern from an old settings file draws nothing
  }
}

void DrawHorizontalStyledLine(PaintContext& ctx, int x1, int x2, int64_t y, int style, int width,
                              const QColor& colour) {
  if (x2 <= x1) return;
  PenGuard guard(ctx.Painter);
  ctx.Painter.setPen(OnePixelPen(colour, LineStyle(style)));
  // Styled pens are one pixel wide, so a wide line is that many strokes, each one
  // row further down.  The width is typed without a limit: only the strokes that can
  // show are drawn.
  const int64_t first = std::max<int64_t>(0, ctx.VisibleTop() - y);
  const int64_t last = std::min<int64_t>(width, ctx.VisibleBottom() - y);
  for (int64_t i = first; i < last; ++i) ctx.Line(x1, y + i, x2 - 1, y + i);
}

void DrawVerticalStyledLine(PaintContext& ctx, int x, int64_t y1, int64_t y2, int style, int width,
                            const QColor& colour) {
  if (y2 <= y1) return;
  // Only the visible part goes to the painter, starting on the device's first row: the
  // dash pattern is shifted by what was cut off above, so dashes stay where they belong
  // while the plot scrolls (the painter's own clipping does not keep the phase exactly).
  const int64_t top = std::max(y1, ctx.OriginY + ctx.Device.top());
  const int64_t bottom = std::min(y2 - 1, ctx.VisibleBottom());
  if (bottom < top) return;
  QPen pen = OnePixelPen(colour, LineStyle(style));
  if (pen.style() != Qt::SolidLine) {
    qreal period = 0;
    for (qreal d : pen.dashPattern()) period += d;
    if (period > 0) pen.setDashOffset(std::fmod(qreal(top - y1), period));
  }
  PenGuard guard(ctx.Painter);
  ctx.Painter.setPen(pen);
  const int64_t first = std::max<int64_t>(0, int64_t(ctx.Device.left()) - x);
  const int64_t last = std::min<int64_t>(width, int64_t(ctx.Device.right()) + 1 - x);
  for (int64_t i = first; i < last; ++i) ctx.Line(int(x + i), top, int(x + i), bottom);
}

}  // namespace sedra
