// The contrast dialogs' histogram arithmetic: ranges, bins, square-root heights, where
// markers stand and which one a click moves.

#include "images/histogram.h"

#include <gtest/gtest.h>

#include <numeric>
#include <tuple>

namespace sedra {
namespace {

TEST(RadiographHistogram, RangeBinsAndBars) {
  struct Row {
    int32_t Upper, MaxValue;
    int Range, BinWidth, Bars;
  } rows[] = {
      {10, 50000, 32, 1, 32},          // the range is at least 32
      {2000, 60000, 3000, 2, 1500},    // Upper and half again
      {60000, 50000, 50000, 48, 1041},  // no further than the largest sample
      {0, 20, 32, 1, 32},              // at least 32 even beyond the largest sample
  };
  const std::vector<uint32_t> counts(65536, 0);
  for (const Row& r : rows) {
    const RadiographScale s = ScaleRadiographHistogram(counts, r.Upper, r.MaxValue, 513, 100);
    EXPECT_EQ(std::tuple(s.Range, s.BinWidth, s.Bars), std::tuple(r.Range, r.BinWidth, r.Bars)) << r.Upper;
    EXPECT_EQ(s.Peak, 1u) << "an empty histogram still has a peak of 1";
  }
}

TEST(RadiographHistogram, SquareRootHeightsAndMarkers) {
  // Upper 1400: a range of 2100 counters in 1050 bars of 2, one pixel a bar across a
  // 1051-pixel frame.  The peak bar (400) has root 20, so a count unit is
  // 100 x 0.75 / 20 = 3.75 pixels.
  std::vector<uint32_t> counts(65536, 0);
  counts[10] = 300;
  counts[11] = 100;  // bar 5: 400
  counts[40] = 9;    // bar 20: 9
  const RadiographScale s = ScaleRadiographHistogram(counts, 1400, 2100, 1051, 100);
  ASSERT_EQ(std::tuple(s.BinWidth, s.Bars, s.Peak), std::tuple(2, 1050, 400u));
  EXPECT_FLOAT_EQ(s.PixelsPerCount, 3.75f);
  // 9 is 3 x 3.75 high: small counts stay visible; an empty bar sits one above the bottom.
  EXPECT_EQ(std::tuple(s.BarY(400, 100), s.BarY(9, 100), s.BarY(0, 100)), std::tuple(99 - 75, 99 - 11, 98));
  // Under a marker, the bar that starts at its level.
  EXPECT_EQ(std::tuple(s.BarFrom(counts, 10), s.BarFrom(counts, 11)), std::tuple(400u, 100u));
  EXPECT_EQ(s.MarkerX(41), 20) << "level 41 is in bar 20";
}

TEST(RadiographHistogram, DragMovesTheNearerMarkerToOneBarPastThePointer) {
  std::vector<uint32_t> counts(65536, 0);
  counts[8] = 16;
  const RadiographScale s = ScaleRadiographHistogram(counts, 10, 50000, 65, 100);  // 32 bars, 2 px each
  const int32_t markers[2] = {10, 40};
  struct Row {
    int X, Marker;
    int32_t Level;
    uint64_t Sum;
  } rows[] = {{8, 0, 5, 0}, {16, 0, 9, 16}, {25, 0, 13, 0}, {26, 1, 14, 0}, {60, 1, 31, 0}};
  for (const Row& r : rows) {
    const RadiographDrag d = DragRadiographMarker(s, counts, r.X, markers);
    // The upper marker only when strictly nearer.
    EXPECT_EQ(std::tuple(d.Marker, d.Level, d.Sum), std::tuple(r.Marker, r.Level, r.Sum)) << r.X;
  }
}

TEST(OpticalHistogram, CountsTheFirstThirdEveryThirdByte) {
  // 2 x 3 pixels, rows padded to 8 bytes: bytes 0, 3 and 6 are below (2 + 1) x 3 = 9.
  OpticalImageDesc opt{};
  std::tie(opt.Width, opt.Height) = std::pair(2, 3);
  opt.Pixels = {10, 11, 12, 13, 14, 15, 16, 17, 20, 21, 22, 23, 24, 25, 26, 27, 30, 31, 32, 33, 34, 35, 36, 37};
  OpticalCounts counts;
  CountOpticalLevels(opt, counts);
  EXPECT_EQ(std::accumulate(std::begin(counts), std::end(counts), 0u), 3u);
  EXPECT_EQ(counts[10] + counts[13] + counts[16], 3u);
  const OpticalScale s = ScaleOpticalHistogram(counts, 257, 200);
  // The peak is the first of the equal largest.
  EXPECT_EQ(std::tuple(s.PeakBin, s.LevelsPerPixel, s.CurveHeight(1)), std::tuple(10, 1.0f, 150));
  EXPECT_EQ(CountOf(counts, 300), 0u) << "a typed level beyond the counters";
}

TEST(OpticalHistogram, ClickMovesTheNearerMarkerOrTheOneOnThePeaksSide) {
  const int32_t markers[2] = {50, 150};
  struct Row {
    int X, Peak, Marker;
  } rows[] = {
      {70, 100, 0},   // within 25 of the lower one
      {130, 100, 1},  // within 25 of the upper one
      {100, 40, 1},   // 50 from each: far from both, right of the peak
      {10, 100, 0},   // far left of the peak
      {190, 100, 1},  // far right of the peak
      {100, 100, 0},  // on the peak
      {101, 100, 1},
  };
  for (const Row& r : rows) EXPECT_EQ(PickOpticalMarker(r.X, markers, r.Peak), r.Marker) << r.X << " peak " << r.Peak;
  const int32_t close[2] = {100, 110};
  EXPECT_EQ(PickOpticalMarker(105, close, 0), 0) << "a tie goes to the lower marker";
}

}  // namespace
}  // namespace sedra
