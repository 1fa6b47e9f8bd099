// The window's paint: the plot kept in a back buffer without the rubber band, the band
// drawn over the copy, band-only rectangles served from the buffer.
#include <gtest/gtest.h>

#include "plot/plot_fixture.h"
#include "plot/screen_buffer.h"

namespace sedra {
namespace {

using namespace test;

// The changed pixels of row y between x0 and x1.
int Changed(const QImage& a, const QImage& b, int y, int x0 = 310, int x1 = 590) {
  int n = 0;
  for (int x = x0; x < x1; ++x) n += a.pixel(x, y) != b.pixel(x, y);
  return n;
}

QRegion Outline(const QRect& r) { return QRegion(r) - QRegion(r.adjusted(1, 1, -1, -1)); }

TEST(ScreenBuffer, ABandMovesOverTheKeptPlotWithoutTrails) {
  Model m;
  StartCore(m);
  AddOptical(m, 60, 1000, 0x806040);
  AddRadiograph(m, 0, 40, 1500, uint32_t(0x808080));
  QImage screen = MakeImage(1000, 700);
  ScreenBuffer buffer;
  PaintTarget target;
  target.Client = screen.rect();
  const auto paint = [&](const QRegion& region, bool bandOnly) {
    if (bandOnly)
      for (const QRect& r : region) buffer.MarkBandOnly(r);
    QPainter painter(&screen);
    return buffer.Paint(m, painter, region, target).PageWidth > 0;
  };
  ASSERT_TRUE(paint(screen.rect(), true)) << "nothing kept yet: the first paint paints";
  const QImage plain = screen.copy();
  const QRect first(300, 200, 300, 200), second(300, 250, 300, 200);  // rows 200..399, 250..449
  const struct {
    QRect band;
    QRegion region;
    bool bandOnly, paintsPlot;
    int row, changed;  // pixels of the row that differ from the plain plot
  } rows[] = {
      {first, Outline(first), true, false, 200, 140},    // the dotted top edge: every other pixel
      {first, Outline(first), true, false, 300, 0},      // nothing inside the band is touched
      {second, Outline(first) + Outline(second), true, false, 200, 0},  // the old edge is gone
      {second, Outline(second), true, false, 250, 140},
      {second, QRect(0, 240, 1000, 20), false, true, 250, 140},  // a plot repaint keeps the band on top
      {{}, QRect(0, 240, 1000, 20), true, false, 250, 0},        // the buffer never held the band
  };
  for (const auto& row : rows) {
    m.Plot().TrackRect = {row.band.left(), row.band.top(), row.band.right() + 1, row.band.bottom() + 1};
    EXPECT_EQ(paint(row.region, row.bandOnly), row.paintsPlot) << "row " << row.row;
    EXPECT_EQ(Changed(screen, plain, row.row), row.changed) << "row " << row.row;
  }
}

}  // namespace
}  // namespace sedra
