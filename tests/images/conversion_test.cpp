// Display conversion and automatic contrast: the arithmetic rows users see on screen.

#include <algorithm>
#include <map>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "images/auto_contrast.h"
#include "images/conversion.h"
#include "import/read_support.h"
#include "model/model.h"

namespace sedra {
namespace {

// A one-row radiograph of the given samples, bitmap allocated.
void MakeRadiograph(RadiographDesc& r, const std::vector<uint16_t>& samples, int width) {
  std::tie(r.Width, r.Height) = std::pair(width, int32_t(samples.size()) / width);
  r.Samples.assign(samples.begin(), samples.end());
  AllocateDib(r.Bitmap, r.Width, r.Height);
  r.MaxValue = *std::max_element(samples.begin(), samples.end());
}

uint8_t Grey(const RadiographDesc& r, int x, int y) {
  const uint8_t* p = &r.Bitmap.Bits[size_t(y) * r.Bitmap.Stride + size_t(x) * 3];
  EXPECT_TRUE(p[0] == p[1] && p[1] == p[2]) << "grey at " << x << "," << y;
  return p[0];
}

// Region 0's window over one row of samples: ((s - Lower) * 255) / (Upper - Lower),
// truncated toward zero, negatives to 0, the low 8 bits kept (no upper clamp: values
// above Upper fold back), a range of 1 when Lower = Upper.  Eight or more samples take
// the word-at-a-time path.
struct WindowCase {
  int Lower, Upper;
  std::vector<std::pair<uint16_t, uint8_t>> SampleGrey;
};

class RegionZero : public ::testing::TestWithParam<WindowCase> {};

TEST_P(RegionZero, LinearWindowWithoutUpperClamp) {
  const WindowCase& c = GetParam();
  std::vector<uint16_t> samples;
  for (auto [sample, grey] : c.SampleGrey) samples.push_back(sample);
  RadiographDesc r{};
  MakeRadiograph(r, samples, int(samples.size()));
  r.Regions[0] = {0, 0, 0, 0, c.Lower, c.Upper};
  const uint64_t before = r.Bitmap.Generation;
  EXPECT_EQ(UpdateRadiographDib(r), 1);
  for (size_t x = 0; x < samples.size(); ++x) EXPECT_EQ(Grey(r, int(x), 0), c.SampleGrey[x].second) << samples[x];
  EXPECT_GT(r.Bitmap.Generation, before);
  r.Bitmap.Release();
  EXPECT_EQ(UpdateRadiographDib(r), 0) << "without a bitmap there is nothing to convert";
}

INSTANTIATE_TEST_SUITE_P(
    Rows, RegionZero,
    ::testing::Values(
        // 2004: 256 folds back to 0; 2010: (1010 * 255) / 1000 = 257 -> 1.
        WindowCase{1000, 2000, {{2000, 255}, {2004, 0}, {2010, 1}, {500, 0}, {1500, 127}, {1000, 0}, {1999, 254}, {65535, 72}, {3000, 254}}},
        WindowCase{5, 5, {{6, 255}, {7, 254}, {5, 0}, {4, 0}}},  // range 1: 510 & 255
        WindowCase{2000, 1000, {{1500, 127}, {2500, 0}, {0, 254}}},  // inverted window: both signs flip
        WindowCase{-300, 40000, {{0, 1}, {40000, 255}, {65535, 160}}},
        WindowCase{-70000, -1000, {{0, 2}, {65535, 244}}},
        WindowCase{65535, 65536, {{65535, 0}, {65534, 0}}},
        WindowCase{60000, 70000, {{65535, 141}}}));

// User regions clamp to 255, are limited to the image less its last row and column,
// and a later one overwrites an earlier one; unused ones take region 0's window.
TEST(RadiographDib, UserRegionsClampLimitAndOverwrite) {
  RadiographDesc r{};
  MakeRadiograph(r, std::vector<uint16_t>(44, 3000), 11);  // 11 x 4: 3 padding bytes a row
  r.Regions[0] = {0, 0, 10, 3, 0, 1000};                   // '.': 765 folds back to 253
  r.Regions[1] = {-3, 0, 9, 2, 0, 1000};                   // 'A': 255
  r.Regions[2] = {2, 1, 5, 99, 4000, 5000};                // 'B': 0
  r.Regions[3] = {4, 0, 99, 1, 0, 1000};                   // 'A' again, same window as region 1
  r.Regions[4] = {7, 2, 7, 3, 2000, 4000};                 // empty
  r.Regions[5] = {0, 0, 0, 0, 7, 8};                       // unused
  r.Regions[6] = {6, 2, 20, 20, 2000, 4000};               // 'C': 127
  r.Regions[7] = {3, 1, 4, 2, 2000, 4000};                 // 'C' over 'B'
  UpdateRadiographDib(r);
  const std::map<char, uint8_t> grey{{'.', 253}, {'A', 255}, {'B', 0}, {'C', 127}};
  ByteBuffer expect;
  for (const char* row : {"AAAAAAAAAA.", "AABCBAAAA..", "..BBB.CCCC.", "..........."}) {
    for (const char* p = row; *p; ++p) expect.insert(expect.end(), 3, grey.at(*p));
    expect.insert(expect.end(), 3, 0);
  }
  EXPECT_EQ(r.Bitmap.Bits, expect);
  EXPECT_EQ(r.Regions[5].Lower, 0);
  EXPECT_EQ(r.Regions[5].Upper, 1000);
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
  std::tie(o.Lower, o.Upper, o.RedLevel, o.GreenLevel, o.BlueLevel) =
      std::tuple(c.Lower, c.Upper, c.Red, c.Green, c.Blue);
  UpdateOpticalDib(o);
  const uint8_t* bgr = o.Bitmap.Bits.data();
  EXPECT_EQ(std::tuple(bgr[0], bgr[1], bgr[2]), std::tuple(c.ExpectB, c.ExpectG, c.ExpectR));
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
  RadiographDesc& r = model.CurRadiograph();
  MakeRadiograph(r, c.Samples, c.Width);
  r.Regions[2] = c.Region;
  std::tie(r.Regions[2].Lower, r.Regions[2].Upper) = std::tuple(-5, -6);
  model.Work().SampleStep = c.Step;
  model.App.Histogram.assign(65536, 77);  // stale counts must not matter
  AutoContrast(model, 2);
  EXPECT_EQ(std::tuple(r.Regions[2].Lower, r.Regions[2].Upper, model.App.HistBinWidth),
            std::tuple(c.ExpectLower, c.ExpectUpper, c.ExpectBinWidth));
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
