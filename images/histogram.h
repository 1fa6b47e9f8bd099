#pragma once
// The arithmetic of the two contrast dialogs' histograms: what is counted, how counts
// and levels map to the histogram's pixels, where the markers stand and which one a
// click moves.  The dialogs draw what these say.

#include <cstdint>
#include <vector>

#include "model/model.h"

namespace sedra {

// ------------------------------------------------------------------ optical image

// 256 levels, and a 257th that stays 0: the widest histograms reach one level past
// the last.
using OpticalCounts = uint32_t[257];

// Counts every third byte of the pixel block from its start, while the byte index is
// below (Width + 1) x Height.  Only about the first third of the image is sampled,
// blue bytes first and drifting with the row padding: the histogram has always looked
// so and users read their settings against it.
void CountOpticalLevels(const OpticalImageDesc& opt, OpticalCounts& counts);

struct OpticalScale {
  int PeakBin = 0;             // the first level with the largest count
  uint32_t PeakCount = 1;      // at least 1
  float LevelsPerPixel = 0;    // 257 / width
  float PixelsPerCount = 0;    // height x 0.75 / peak count
  // The level under histogram pixel x.
  int LevelAt(int x) const;
  // The curve's height above the bottom for a count.
  int CurveHeight(uint32_t count) const;
  // The pixel of a level (where its marker stands).
  int PixelOf(int level) const;
};
OpticalScale ScaleOpticalHistogram(const OpticalCounts& counts, int width, int height);
// The count of a level, 0 outside the counted levels (typed values are not checked).
uint32_t CountOf(const OpticalCounts& counts, int level);

// Which marker (0 lower, 1 upper) a click at x moves: within 25 pixels of a marker the
// nearer one (the lower on a tie); elsewhere the lower one left of the peak's pixel
// (at it included) and the upper one right of it.
int PickOpticalMarker(int x, const int32_t markerX[2], int peakX);

// ------------------------------------------------------------------ radiograph

// Counts every sample of the region's rows Y1 .. Y2 - 1 and columns X1 .. X2 - 1 (cut
// to the image) into 65536 counters.
void CountRegionSamples(const RadiographDesc& rad, const RadiographRegion& region, std::vector<uint32_t>& counts);

struct RadiographScale {
  int32_t Range = 0;     // Upper + Upper / 2, at most MaxValue, at least 32
  int32_t BinWidth = 1;  // Range / 1024, at least 1
  int32_t Bars = 0;      // Range / BinWidth
  uint64_t Peak = 1;     // the largest bar, at least 1
  float PixelsPerBar = 0;    // (width - 1) / Bars
  float PixelsPerCount = 0;  // height x 0.75 / floor(sqrt(Peak))
  // The sum of the counters of the bar that starts at `first` (BinWidth of them).
  uint64_t BarFrom(const std::vector<uint32_t>& counts, int64_t first) const;
  int BarX(int bar) const;
  // The row of a bar's top: one above the bottom for an empty bar.  The square root
  // keeps small counts visible beside the peak.
  int BarY(uint64_t sum, int height) const;
  // Where a level's marker stands.
  int MarkerX(int32_t level) const;
  // The row a marker dragged to a bar of `sum` stands on.
  int DragY(uint64_t sum, int height) const;
};
RadiographScale ScaleRadiographHistogram(const std::vector<uint32_t>& counts, int32_t upper, int32_t maxValue,
                                         int width, int height);

// A marker dragged to x: which (0 lower, 1 upper: the upper when x is nearer to it),
// the bar's sum and the level, one bar beyond the bar under x.
struct RadiographDrag {
  int Marker = 0;
  uint64_t Sum = 0;
  int32_t Level = 0;
};
RadiographDrag DragRadiographMarker(const RadiographScale& scale, const std::vector<uint32_t>& counts, int x,
                                    const int32_t markerX[2]);

}  // namespace sedra
