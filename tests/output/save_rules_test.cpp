// The file choice of "Save I&mage" and the page rectangle of a printed page.

#include <gtest/gtest.h>

#include <tuple>

#include "model/model.h"
#include "model/settings_blocks.h"
#include "output/page_rect.h"
#include "output/save_rules.h"

namespace sedra {
namespace {

TEST(WithImageExtension, AppendsOnlyWhenTheNameHasNoDot) {
  const struct {
    const char* Chosen;
    int Filter;
    const char* Written;
  } rows[] = {
      {"/data/plot", kBmpFilter, "/data/plot.bmp"},
      {"/data/plot", kTiffFilter, "/data/plot.tif"},
      {"/data/plot.x", kTiffFilter, "/data/plot.x"},  // kept as typed, TIFF inside
      {"/data/plot.bmp", kTiffFilter, "/data/plot.bmp"},
      {"/data/plot", kJpegFilter, "/data/plot"},
      {"/data/run.2/plot", kBmpFilter, "/data/run.2/plot"},  // a dot anywhere counts
  };
  for (const auto& r : rows) EXPECT_EQ(WithImageExtension(r.Chosen, r.Filter), r.Written) << r.Chosen;
}

// The title and the first folder and name are the desktop prompt's and the commands' tests.
TEST(SaveImageRequest, OffersBitmapThenTiff) {
  const FileRequest r = SaveImageRequest(*std::make_unique<Model>(), "/work/lab");
  ASSERT_EQ(r.Filters.size(), 2u);
  EXPECT_EQ(std::tie(r.Filters[0].Name, r.Filters[0].Pattern, r.Filters[1].Name, r.Filters[1].Pattern, r.FilterIndex),
            std::tuple("Bitmap (*.bmp)", "*.bmp", "Tiff (*.tif)", "*.tif", 1));
}

TEST(PrintPageRect, MarginsUseTheDivisor25AndTheBottomUsesTheHorizontalResolution) {
  DisplaySettings s{};
  const struct {
    int16_t Left, Right, Top, Bottom;
    int32_t DpiX, DpiY, Width, Height;
    std::tuple<int, int, int, int> Page;
  } rows[] = {
      // 10 mm at 600 dpi is 240 pixels (not 236, as 25.4 would give).
      {10, 10, 10, 10, 600, 600, 7016, 4961, {240, 240, 7016 - 240, 4961 - 240}},
      // The defaults on a 1200 x 600 dpi printer: the bottom margin follows x.
      {7, 10, 5, 10, 1200, 600, 14032, 4961, {336, 120, 14032 - 480, 4961 - 480}},
      // Truncation: 7 mm at 300 dpi is 84, 3 mm at 96 dpi is 11.52 -> 11.
      {7, 3, 3, 7, 300, 96, 3508, 1123, {84, 11, 3508 - 36, 1123 - 84}},
      // A negative margin truncates toward zero.
      {-3, 0, 0, 0, 96, 96, 1000, 700, {-11, 0, 1000, 700}},
  };
  for (const auto& r : rows) {
    std::tie(s.MarginLeft, s.MarginRight, s.MarginTop, s.MarginBottom) =
        std::tuple(r.Left, r.Right, r.Top, r.Bottom);
    const IntRect p = PrintPageRect(s, r.DpiX, r.DpiY, r.Width, r.Height);
    EXPECT_EQ(std::tie(p.Left, p.Top, p.Right, p.Bottom), r.Page) << r.DpiX << "x" << r.DpiY;
  }
}

}  // namespace
}  // namespace sedra
