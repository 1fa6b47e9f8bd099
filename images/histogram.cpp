#include "images/histogram.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace sedra {

namespace {

int FloorInt(double v) {
  if (!(v == v)) return 0;
  return int(std::clamp(std::floor(v), -1.0e9, 1.0e9));
}

}  // namespace

void CountOpticalLevels(const OpticalImageDesc& opt, OpticalCounts& counts) {
  std::fill(std::begin(counts), std::end(counts), 0u);
  if (opt.Width < 0 || opt.Height < 0) return;
  const size_t end = std::min(opt.Pixels.size(), (size_t(opt.Width) + 1) * size_t(opt.Height));
  for (size_t i = 0; i < end; i += 3) ++counts[opt.Pixels[i]];
}

uint32_t CountOf(const OpticalCounts& counts, int level) { return level >= 0 && level < 257 ? counts[level] : 0; }

OpticalScale ScaleOpticalHistogram(const OpticalCounts& counts, int width, int height) {
  OpticalScale s;
  uint32_t peak = 0;
  for (int b = 0; b < 256; ++b)
    if (counts[b] > peak) {
      peak = counts[b];
      s.PeakBin = b;
    }
  s.PeakCount = std::max(peak, 1u);
  s.LevelsPerPixel = 257.0f / float(std::max(width, 1));
  s.PixelsPerCount = float(height) * 0.75f / float(s.PeakCount);
  return s;
}

int OpticalScale::LevelAt(int x) const { return FloorInt(double(LevelsPerPixel) * x); }
int OpticalScale::CurveHeight(uint32_t count) const { return FloorInt(double(count) * PixelsPerCount); }
int OpticalScale::PixelOf(int level) const { return FloorInt(double(level) / LevelsPerPixel); }

int PickOpticalMarker(int x, const int32_t markerX[2], int peakX) {
  const int64_t d0 = std::llabs(int64_t(x) - markerX[0]), d1 = std::llabs(int64_t(x) - markerX[1]);
  if (d0 <= 25 || d1 <= 25) return d1 < d0 ? 1 : 0;
  return x <= peakX ? 0 : 1;
}

void CountRegionSamples(const RadiographDesc& rad, const RadiographRegion& region, std::vector<uint32_t>& counts) {
  counts.assign(65536, 0);
  if (rad.Samples.size() < size_t(std::max(rad.Width, 0)) * size_t(std::max(rad.Height, 0))) return;
  const int64_t x1 = std::max(region.X1, 0), x2 = std::min(region.X2, rad.Width);
  const int64_t y1 = std::max(region.Y1, 0), y2 = std::min(region.Y2, rad.Height);
  for (int64_t y = y1; y < y2; ++y) {
    const uint16_t* row = rad.Samples.data() + y * rad.Width;
    for (int64_t x = x1; x < x2; ++x) ++counts[row[x]];
  }
}

RadiographScale ScaleRadiographHistogram(const std::vector<uint32_t>& counts, int32_t upper, int32_t maxValue,
                                         int width, int height) {
  RadiographScale s;
  int64_t range = int64_t(upper) + upper / 2;
  range = std::max<int64_t>(std::min<int64_t>(range, maxValue), 32);
  s.Range = int32_t(std::min<int64_t>(range, 65536));
  s.BinWidth = std::max(s.Range / 1024, 1);
  s.Bars = s.Range / s.BinWidth;
  uint64_t peak = 0;
  for (int i = 0; i < s.Bars; ++i) peak = std::max(peak, s.BarFrom(counts, int64_t(i) * s.BinWidth));
  s.Peak = std::max<uint64_t>(peak, 1);
  s.PixelsPerBar = float(width - 1) / float(s.Bars);
  s.PixelsPerCount = float(height) * 0.75f / float(std::floor(std::sqrt(double(s.Peak))));
  return s;
}

uint64_t RadiographScale::BarFrom(const std::vector<uint32_t>& counts, int64_t first) const {
  uint64_t sum = 0;
  const int64_t last = std::min<int64_t>(first + BinWidth, int64_t(counts.size()));
  for (int64_t v = std::max<int64_t>(first, 0); v < last; ++v) sum += counts[size_t(v)];
  return sum;
}

int RadiographScale::BarX(int bar) const { return FloorInt(double(PixelsPerBar) * bar); }

int RadiographScale::BarY(uint64_t sum, int height) const {
  const int bottom = height - 1;
  if (sum == 0) return bottom - 1;
  return bottom - FloorInt(std::sqrt(double(sum)) * PixelsPerCount);
}

int RadiographScale::MarkerX(int32_t level) const { return FloorInt(double(level / BinWidth) * PixelsPerBar); }

int RadiographScale::DragY(uint64_t sum, int height) const {
  return height - FloorInt(std::sqrt(double(sum)) * PixelsPerCount);
}

RadiographDrag DragRadiographMarker(const RadiographScale& scale, const std::vector<uint32_t>& counts, int x,
                                    const int32_t markerX[2]) {
  RadiographDrag d;
  const int bar = scale.PixelsPerBar > 0 ? FloorInt(double(x) / scale.PixelsPerBar) : 0;
  d.Sum = scale.BarFrom(counts, int64_t(bar) * scale.BinWidth);
  d.Level = int32_t(std::min<int64_t>((int64_t(bar) + 1) * scale.BinWidth, INT32_MAX));
  d.Marker = std::llabs(int64_t(x) - markerX[1]) < std::llabs(int64_t(x) - markerX[0]) ? 1 : 0;
  return d;
}

}  // namespace sedra
