#include "plot/depth_scale.h"

#include <algorithm>
#include <cstdint>

#include "model/model.h"
#include "plot/paint_context.h"

namespace sedra {

namespace {

// The next millimetre after `i` that the scale must look at: a tick's (a depth that is
// a multiple of `tick`) or the end of a section.  A whole core is tens of metres long;
// the millimetres in between would only be passed over one by one.
int64_t NextStop(int64_t i, int origin, int tick, int64_t limit) {
  // The remainder is negative above depth 0; (tick - r) % tick is the step either way.
  const int64_t r = (i + 1 + origin) % tick;
  const int64_t nextTick = i + 1 + (tick - r) % tick;
  return limit > i ? std::min(limit, nextTick) : nextTick;
}

}  // namespace

void DrawDepthScale(PaintContext& ctx, int x, int top, int height, bool labels) {
  Model& model = ctx.M;
  const PlotState& plot = model.Plot();
  const DisplaySettings& settings = model.App.Settings;
  if (!(plot.DepthSpan > 0)) return;

  const int fontPoints = settings.DepthFontSize > 0 ? settings.DepthFontSize : 8;
  ctx.Painter.setFont(ctx.MakeFont("Arial", fontPoints, 700));
  ctx.SetPen(ctx.Colour(kAxisColour));
  const QColor textColour = ctx.Colour(kTextColour);
  const QColor axisColour = ctx.Colour(kAxisColour);

  // Pixels per mm, in single precision as the scale has always been computed: the
  // ticks land on exactly the rows the curves and regions use.
  const float scale = float(height) / plot.DepthSpan;
  const int sectionCount = std::clamp(plot.SectionCount, 0, kMaxSections);
  int origin = plot.ShowAllSections ? model.Section(0).StartLabelDepth : model.CurSection().StartLabelDepth;
  if (plot.Expanded) origin += FloorInt(plot.ExpandTop);
  const int tick = plot.DepthTick > 0 ? plot.DepthTick : 50;
  const bool allMajor = plot.ZoomFactor >= 2 || plot.Expanded;
  const int minorLength = ctx.DpiX / 32;
  const int majorLength = (ctx.DpiX / 32 * 3) / 2;
  const int charHeight = plot.CharHeight;
  const int pageLeft = plot.PageRect.Left;

  // A damaged span must not keep the paint busy for minutes.
  const int64_t end = std::min<int64_t>(FloorInt(plot.DepthSpan), 20000000);
  int64_t limit = 0;
  int passed = 0;
  int64_t lastTickY = top;
  int64_t nextLabelY = INT64_MIN;
  int firstLabelHalf = -1;  // half the distance of the first label below 1 mm from the top
  for (int64_t i = 0; i < end; i = NextStop(i, origin, tick, limit)) {
    // The scale stops at the end of the last loaded section.  The limit adds the last
    // point depth of the sections in slot order from slot 0, whichever is shown: kept
    // as it is, the single-section scale of a later section ends where slot 0 ends.
    if (i == limit) {
      if (passed >= sectionCount) break;
      const CoreSection& next = model.Section(passed);
      if (next.PointCount >= 1 && next.PointCount <= kMaxPoints) limit += FloorInt(next.Depth[next.PointCount - 1]);
      ++passed;
    }
    const int64_t y = top + int64_t(FloorInt(float(i) * scale));
    const int64_t d = i + origin;
    if (y < lastTickY || d % tick != 0) continue;
    lastTickY = y;
    const bool major = allMajor || d % (int64_t(5) * tick) == 0;
    const int length = major ? majorLength : minorLength;
    if (major && labels && y >= nextLabelY) {
      if (ctx.RowVisible(y) || ctx.BandVisible(y - charHeight, y + charHeight)) {
        ctx.Painter.setPen(textColour);
        ctx.Text(pageLeft, y - charHeight / 2, x, y + charHeight / 2,
                 Qt::AlignCenter | Qt::TextSingleLine | Qt::TextDontClip, QString::number(d));
        ctx.SetPen(axisColour);
      }
      nextLabelY = y + charHeight;
      if (i >= 1 && firstLabelHalf < 0) firstLabelHalf = int((y - top) / 2);
    }
    if (!ctx.RowVisible(y)) continue;
    if (labels)
      ctx.Line(x, y, x + length, y);
    else
      ctx.Line(x, y, x - length, y);
  }

  // The "Z (mm)" caption in the top left corner, once a label shows below the top.
  if (firstLabelHalf >= 1) {
    ctx.Painter.setFont(ctx.PlotFont);
    ctx.Painter.setPen(textColour);
    const int pageTop = plot.PageRect.Top;
    const int flags = Qt::AlignCenter | Qt::TextSingleLine | Qt::TextDontClip;
    ctx.Text(pageLeft, pageTop, x, pageTop + charHeight, flags, QStringLiteral("Z"));
    ctx.Text(pageLeft, pageTop + charHeight, x, pageTop + 2 * charHeight, flags, QStringLiteral("(mm)"));
  }
}

}  // namespace sedra
