// Display conversion and automatic contrast: the arithmetic rows users see on screen.

#include <string>

#include <gtest/gtest.h>

#include "images/auto_contrast.h"
#include "images/conversion.h"
#include "import/read_support.h"
#include "model/model.h"

namespace sedra {
namespace {

// A one-row radiograph of the given samples, bitmap allocated.
void MakeRadiograph(RadiographDesc& r, const std::vector<uint16_t>& samples, int width) {
  r.Width = width;
  r.Height = int32_t(samples.size()) / width;
  r.Samples.assign(samples.begin(), samples.end());
  AllocateDib(r.Bitmap, r.Width, r.Height);
  int m = 0;
  for (uint16_t s : samples) m = std::max<int>(m, s);
  r.MaxValue = m;
}

uint8_t Grey(const RadiographDesc& r, int x, int y) {
  const uint8_t* p = &r.Bitmap.Bits[size_t(y) * r.Bitmap.Stride + size_t(x) * 3];
  EXPECT_EQ(p[0], p[1]);
  EXPECT_EQ(p[1], p[2]);
  return p[0];
}

struct WindowCase {
  int Lower, Upper;
  uint16_t Sample;
  uint8_t Expect;
};

class RegionZero : public ::testing::TestWithParam<WindowCase> {};

TEST_P(RegionZero, LinearWindowWithoutUpperClamp) {
  const WindowCase& c = GetParam();
  RadiographDesc r{};
  MakeRadiograph(r, {c.Sample}, 1);
  r.Regions[0] = {0, 0, 0, 0, c.Lower, c.Upper};
  const uint64_t before = r.Bitmap.Generation;
  EXPECT_EQ(UpdateRadiographDib(r), 1);
  EXPECT_EQ(Grey(r, 0, 0), c.Expect);
  EXPECT_GT(r.Bitmap.Generation, before);
}

INSTANTIATE_TEST_SUITE_P(Rows, RegionZero,
                         ::testing::Values(WindowCase{1000, 2000, 2000, 255}, WindowCase{1000, 2000, 2004, 0},  // 256 folds back
                                           WindowCase{1000, 2000, 2010, 1},  // (1010 * 255) / 1000 = 257
                                           WindowCase{1000, 2000, 500, 0}, WindowCase{1000, 2000, 1500, 127},
                                           WindowCase{5, 5, 6, 255}, WindowCase{5, 5, 7, 254},  // range 1: 510 & 255
                                           WindowCase{2000, 1000, 1500, 127},  // inverted window: both signs flip
                                           WindowCase{2000, 1000, 2500, 0}));

TEST(RadiographDib, UserRegionsClampLimitAndOverwrite) {
  RadiographDesc r{};
  // 4 x 3, every sample 3000 (above region 0's window: folds back).
  MakeRadiograph(r, std::vector<uint16_t>(12, 3000), 4);
  r.Regions[0] = {0, 0, 3, 2, 0, 1000};
  r.Regions[1] = {0, 0, 99, 99, 0, 1000};  // limited to x < 3, y < 2
  r.Regions[2] = {1, 1, 2, 2, 2999, 2999};  // Lower = Upper: above Lower -> 255
  r.Regions[3] = {0, 0, 0, 0, 7, 8};        // unused: takes region 0's window
  UpdateRadiographDib(r);
  const uint8_t folded = uint8_t((3000 * 255 / 1000) & 0xFF);
  for (int y = 0; y < 3; ++y)
    for (int x = 0; x < 4; ++x) {
      uint8_t expect = folded;
      if (x < 3 && y < 2) expect = 255;
      EXPECT_EQ(Grey(r, x, y), expect) << x << "," << y;
    }
  EXPECT_EQ(r.Regions[3].Lower, 0);
  EXPECT_EQ(r.Regions[3].Upper, 1000);
  // Padding bytes stay zero: 4 * 3 = 12 bytes, no padding; a 1-wide image has 1.
  RadiographDesc narrow{};
  MakeRadiograph(narrow, {100, 200}, 1);
  narrow.Regions[0] = {0, 0, 0, 1, 0, 200};
  UpdateRadiographDib(narrow);
  EXPECT_EQ(narrow.Bitmap.Bits, (ByteBuffer{127, 127, 127, 0, 255, 255, 255, 0}));
}

// The straightforward conversion: region 0 over everything, then each user region
// painted over it in turn.  The real one writes each pixel once; both must agree.
ByteBuffer PaintedByRegions(const RadiographDesc& r) {
  ByteBuffer bits(size_t(r.Bitmap.Stride) * size_t(r.Height), 0);
  auto grey = [](int64_t s, int64_t lower, int64_t upper, bool clamp) {
    const int64_t range = upper == lower ? 1 : upper - lower;
    int64_t v = ((s - lower) * 255) / range;
    if (v < 0) v = 0;
    if (clamp && v > 255) v = 255;
    return uint8_t(v & 0xFF);
  };
  auto paint = [&](int x1, int y1, int x2, int y2, int64_t lower, int64_t upper, bool clamp) {
    for (int y = y1; y < y2; ++y)
      for (int x = x1; x < x2; ++x) {
        const uint8_t g = grey(r.Samples[size_t(y) * r.Width + x], lower, upper, clamp);
        uint8_t* o = &bits[size_t(y) * r.Bitmap.Stride + size_t(x) * 3];
        o[0] = o[1] = o[2] = g;
      }
  };
  paint(0, 0, r.Width, r.Height, r.Regions[0].Lower, r.Regions[0].Upper, false);
  for (int k = 1; k < kRegionCount; ++k) {
    const RadiographRegion& g = r.Regions[k];
    if (g.X2 <= 0) continue;
    paint(std::max(g.X1, 0), std::max(g.Y1, 0), std::min(g.X2, r.Width - 1), std::min(g.Y2, r.Height - 1), g.Lower,
          g.Upper, true);
  }
  return bits;
}

TEST(RadiographDib, OverlappingRegionsMatchPaintingInTurn) {
  uint32_t seed = 99;
  auto next = [&seed](uint32_t n) {
    seed = seed * 1664525u + 1013904223u;
    return (seed >> 8) % n;
  };
  const int windows[][2] = {{1000, 2000}, {2000, 1000}, {5, 5}, {-300, 40000}, {0, 65535}, {60000, 70000},
                            {30000, 30001}, {-70000, -1000}, {65535, 65536}, {40000, 100}};
  for (int round = 0; round < 60; ++round) {
    RadiographDesc r{};
    const int width = 1 + int(next(37)), height = 1 + int(next(23));
    std::vector<uint16_t> samples(size_t(width) * height);
    for (auto& s : samples) s = uint16_t(next(4) == 0 ? next(65536) : 800 + next(2400));
    MakeRadiograph(r, samples, width);
    const auto& w0 = windows[next(10)];
    r.Regions[0] = {0, 0, width - 1, height - 1, w0[0], w0[1]};
    for (int k = 1; k < kRegionCount; ++k) {
      const auto& w = windows[next(10)];
      if (next(3) == 0) {
        r.Regions[k] = {0, 0, 0, 0, w[0], w[1]};
        continue;
      }
      const int x1 = int(next(uint32_t(width + 4))) - 2, y1 = int(next(uint32_t(height + 4))) - 2;
      r.Regions[k] = {x1, y1, x1 + int(next(uint32_t(width + 3))), y1 + int(next(uint32_t(height + 3))), w[0], w[1]};
    }
    const ByteBuffer expect = PaintedByRegions(r);
    UpdateRadiographDib(r);
    ASSERT_EQ(r.Bitmap.Bits, expect) << "round " << round;
    for (int k = 1; k < kRegionCount; ++k)
      if (r.Regions[k].X2 <= 0) {
        EXPECT_EQ(r.Regions[k].Lower, w0[0]);
        EXPECT_EQ(r.Regions[k].Upper, w0[1]);
      }
  }
}

TEST(RadiographDib, DoesNothingWithoutABitmap) {
  RadiographDesc r{};
  r.Width = 2;
  r.Height = 2;
  r.Samples.assign(4, 1);
  EXPECT_EQ(UpdateRadiographDib(r), 0);
}

struct OpticalCase {
  const char* Name;
  int Lower, Upper, Red, Green, Blue;
  uint8_t Source;
  uint8_t ExpectB, ExpectG, ExpectR;
  int ExpectUpper;
};

class OpticalDib : public ::testing::TestWithParam<OpticalCase> {};

TEST_P(OpticalDib, WindowAndColourEmphasis) {
  const OpticalCase& c = GetParam();
  OpticalImageDesc o{};
  o.Width = 1;
  o.Height = 1;
  o.Pixels = {c.Source, c.Source, c.Source, 9};  // padding byte 9 must not be copied...
  AllocateDib(o.Bitmap, 1, 1);
  o.Lower = c.Lower;
  o.Upper = c.Upper;
  o.RedLevel = c.Red;
  o.GreenLevel = c.Green;
  o.BlueLevel = c.Blue;
  UpdateOpticalDib(o);
  EXPECT_EQ(o.Bitmap.Bits[0], c.ExpectB);
  EXPECT_EQ(o.Bitmap.Bits[1], c.ExpectG);
  EXPECT_EQ(o.Bitmap.Bits[2], c.ExpectR);
  EXPECT_EQ(o.Upper, c.ExpectUpper);
  const bool shortcut = c.Lower <= 0 && c.Upper == 256 && c.Red == 256 && c.Green == 256 && c.Blue == 256;
  EXPECT_EQ(o.Bitmap.Bits[3], shortcut ? 9 : 0);  // ...except by the plain copy
}

INSTANTIATE_TEST_SUITE_P(
    Rows, OpticalDib,
    ::testing::Values(OpticalCase{"Neutral", 0, 256, 0, 0, 0, 200, 200, 200, 200, 256},
                      OpticalCase{"ClosedWindowOpensBy8", 40, 40, 0, 0, 0, 44, 128, 128, 128, 48},
                      OpticalCase{"ClosedWindowClamps", 40, 40, 0, 0, 0, 60, 255, 255, 255, 48},
                      OpticalCase{"BelowWindow", 100, 200, 0, 0, 0, 50, 0, 0, 0, 200},
                      // 200 * 156 / 256 = 121 for blue and green; red unchanged.
                      OpticalCase{"RedEmphasis", 0, 256, 100, 0, 0, 200, 121, 121, 200, 256},
                      // Green level subtracts from blue and red.
                      OpticalCase{"GreenEmphasis", 0, 256, 0, 56, 0, 200, 156, 200, 156, 256},
                      OpticalCase{"RedAtTopBlanksBlueAndGreen", 0, 256, 256, 0, 0, 200, 0, 0, 200, 256},
                      OpticalCase{"AllLevels256CopiesPixels", 0, 256, 256, 256, 256, 200, 200, 200, 200, 256}),
    [](const auto& i) { return std::string(i.param.Name); });

struct AutoCase {
  const char* Name;
  std::vector<uint16_t> Samples;
  int Width;
  int Step;
  RadiographRegion Region;
  int ExpectLower, ExpectUpper, ExpectBinWidth;
};

class AutoContrastRows : public ::testing::TestWithParam<AutoCase> {};

std::vector<uint16_t> EachTimes(int values, int times) {
  std::vector<uint16_t> out;
  for (int v = 0; v < values; ++v)
    for (int t = 0; t < times; ++t) out.push_back(uint16_t(v));
  return out;
}

TEST_P(AutoContrastRows, TwoPercentEachSide) {
  const AutoCase& c = GetParam();
  Model model;
  model.Plot().CurRadiographIndex = 0;
  RadiographDesc& r = model.CurRadiograph();
  MakeRadiograph(r, c.Samples, c.Width);
  r.Regions[2] = c.Region;
  r.Regions[2].Lower = -5;
  r.Regions[2].Upper = -6;
  model.Work().SampleStep = c.Step;
  model.App.Histogram.assign(65536, 77);  // stale counts must not matter
  AutoContrast(model, 2);
  EXPECT_EQ(r.Regions[2].Lower, c.ExpectLower);
  EXPECT_EQ(r.Regions[2].Upper, c.ExpectUpper);
  EXPECT_EQ(model.App.HistBinWidth, c.ExpectBinWidth);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, AutoContrastRows,
    ::testing::Values(
        // All samples equal: the lower pass finds nothing, the upper one stops at v.
        AutoCase{"AllEqual", std::vector<uint16_t>(50, 700), 10, 1, {0, 0, 10, 5, 0, 0}, -5, 701, 1},
        // 0..99, 100 each: lower stops at b = 1 (9800 left), upper at b = 98 (9600 <= 9604).
        AutoCase{"Uniform", EachTimes(100, 100), 100, 1, {0, 0, 100, 100, 0, 0}, 0, 99, 1},
        // Far edges exclusive: 99 x 99 samples of 0..98; upper stops at 97 (9405 <= 9408).
        AutoCase{"FarEdgesExcluded", EachTimes(100, 100), 100, 1, {0, 0, 99, 99, 0, 0}, 0, 98, 1},
        // Step 2 counts every other row: the even values 0..198, n = 100.  Lower stops at
        // b = 2; with 98 left the upper threshold is 0, reached at b = 4.
        AutoCase{"SampledEverySecond", EachTimes(200, 1), 1, 2, {0, 0, 1, 200, 0, 0}, 1, 5, 1},
        AutoCase{"BinWidth", {5000, 4000, 3000, 2000}, 2, 1, {0, 0, 2, 2, 0, 0}, -5, 5001, 4}),
    [](const auto& i) { return std::string(i.param.Name); });

}  // namespace
}  // namespace sedra
