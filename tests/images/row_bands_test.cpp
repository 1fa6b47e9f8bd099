// The whole-image passes in bands of rows on several threads: the display bitmap and
// the automatic window must come out exactly as they do on one thread.

#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "images/auto_contrast.h"
#include "images/conversion.h"
#include "import/read_support.h"
#include "model/model.h"

namespace sedra {
namespace {

struct BandCase {
  const char* Name;
  int Width, Height;
  int Step;   // SampleStep for the automatic window
  int Bands;  // 0: the plain AutoContrast and UpdateRadiographDib, as many as they choose
  RadiographRegion Counted;  // region whose window AutoContrast sets
};

// Noise over a few bright and dark blocks, so that the histogram has a shape of its
// own and the 2% tails fall somewhere in particular.
void FillRadiograph(RadiographDesc& r, int width, int height) {
  r.Width = width;
  r.Height = height;
  r.Samples.resize(size_t(width) * size_t(height));
  std::mt19937 random(20240611);
  std::uniform_int_distribution<int> noise(0, 3000);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      int base = 9000;
      if ((x / 211 + y / 97) % 3 == 0) base = 30000;
      if (x % 401 < 20) base = 1000;
      r.Samples[size_t(y) * size_t(width) + size_t(x)] = uint16_t(base + noise(random));
    }
  r.MaxValue = 33000;
  AllocateDib(r.Bitmap, width, height);
  r.Regions[0] = {0, 0, width - 1, height - 1, 8000, 12500};
  // Overlapping user regions whose edges fall inside and on the bands' first rows
  // (a half of 1201 rows starts at 600, a third at 400); region 3 reaches past the
  // image and is cut back, region 4 is unused and follows region 0.
  r.Regions[1] = {100, 250, 900, 1000, 9000, 10000};
  r.Regions[2] = {500, 600, 1700, 801, 20000, 31000};
  r.Regions[3] = {1300, 400, 99999, 99999, 31000, 20000};
  r.Regions[4] = {0, 0, 0, 0, 1, 2};
  r.Regions[5] = {0, 1, 3, 2, 9000, 9000};
}

class RowBands : public ::testing::TestWithParam<BandCase> {};

TEST_P(RowBands, SameBitmapAndWindowAsOneThread) {
  const BandCase& c = GetParam();
  Model model;
  model.Work().SampleStep = c.Step;
  RadiographDesc& r = model.CurRadiograph();
  FillRadiograph(r, c.Width, c.Height);
  r.Regions[6] = c.Counted;

  // One thread first.  The bitmap starts from the same junk both times, so a byte that
  // one run leaves alone and the other writes shows up too.
  std::fill(r.Bitmap.Bits.begin(), r.Bitmap.Bits.end(), uint8_t(0x5A));
  ASSERT_EQ(UpdateRadiographDibInBands(r, 1), c.Height);
  const auto oneBitmap = r.Bitmap.Bits;
  AutoContrastInBands(model, 6, 1);
  const RadiographRegion oneWindow = r.Regions[6];
  const std::vector<uint32_t> oneHistogram = model.App.Histogram;

  std::fill(r.Bitmap.Bits.begin(), r.Bitmap.Bits.end(), uint8_t(0x5A));
  std::fill(model.App.Histogram.begin(), model.App.Histogram.end(), 77u);  // stale counts
  std::fill(model.App.HistogramScratch.begin(), model.App.HistogramScratch.end(), 55u);
  r.Regions[6] = c.Counted;
  if (c.Bands == 0) {
    ASSERT_EQ(UpdateRadiographDib(r), c.Height);
    AutoContrast(model, 6);
  } else {
    ASSERT_EQ(UpdateRadiographDibInBands(r, c.Bands), c.Height);
    AutoContrastInBands(model, 6, c.Bands);
  }
  EXPECT_TRUE(r.Bitmap.Bits == oneBitmap);
  EXPECT_EQ(std::pair(r.Regions[6].Lower, r.Regions[6].Upper), std::pair(oneWindow.Lower, oneWindow.Upper));
  EXPECT_TRUE(model.App.Histogram == oneHistogram);
  // The window is a real one, not the fall-through of an empty count.
  EXPECT_GT(oneWindow.Lower, 0);
  EXPECT_LT(oneWindow.Lower, oneWindow.Upper);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, RowBands,
    ::testing::Values(BandCase{"TwoBands", 1999, 1201, 1, 2, {0, 0, 1998, 1200, 0, 0}},
                      BandCase{"ThreeBandsUnevenRows", 1999, 1201, 1, 3, {0, 0, 1998, 1200, 0, 0}},
                      BandCase{"FourBandsPartOfTheImage", 1999, 1201, 1, 4, {37, 101, 1501, 1150, 0, 0}},
                      BandCase{"EveryThirdRowAndColumn", 1999, 1201, 3, 4, {1, 2, 1998, 1200, 0, 0}},
                      BandCase{"MoreBandsThanRows", 5000, 3, 1, 4, {0, 0, 4999, 3, 0, 0}},
                      BandCase{"AsTheMachineChooses", 1999, 1201, 1, 0, {0, 0, 1998, 1200, 0, 0}}),
    [](const auto& i) { return std::string(i.param.Name); });

}  // namespace
}  // namespace sedra
