// Drawing converts only the samples a stretch picks.  The pixels must be those of the
// fully converted image at each destination pixel's centre, at every zoom and band size.

#include <gtest/gtest.h>

#include <QPainter>

#include "image_fixture.h"
#include "images/conversion.h"
#include "images/draw/display_image.h"
#include "images/draw/image_draw.h"

namespace sedra::test {
namespace {

constexpr int kW = 300, kH = 5000;

// Grey levels that differ from row to row and column to column, through region 0 and
// two user regions (one clamped window, one overlapping it).
void LoadStripes(Model& m) {
  LoadRadiograph(m, kW, kH, [](int x, int y) { return uint16_t(1000 + (y * 7 + x * 3) % 997); }, 1000, 1900);
  RadiographDesc& r = m.CurRadiograph();
  r.Regions[2] = {40, 700, 200, 3100, 1200, 1700};
  r.Regions[5] = {150, 2000, 290, 4800, 900, 1300};
}

// The source pixel under the centre of destination pixel i of n drawn from s.
int CentrePick(int64_t i, int64_t s, int64_t n) { return int(((2 * i + 1) * s) / (2 * n)); }

TEST(DisplayEquivalence, PickedSamplesGiveTheFullyConvertedImagesPixels) {
  const struct {
    int Width;
    int64_t Height, Scroll;
    const char* What;
  } cases[] = {
      {120, 690, 0, "100%: 5000 rows into 690"},
      {120, 8 * 690, 2400, "800%, scrolled"},
      {120, 32 * 690, 15000, "3200%: each row drawn 4 or 5 times"},
      {600, 690, 0, "the radiograph window: twice as wide"},
      {77, 333, 0, "odd sizes"},
      {300, 5000, 1234, "one to one"},
  };
  Model model;
  LoadStripes(model);
  RadiographDesc& rad = model.CurRadiograph();
  UpdateRadiographDib(rad);
  const QImage full = DibAsImage(rad.Bitmap).convertToFormat(QImage::Format_RGB32);
  // Picking from the fully converted bits is the plot's image drawing tests.
  for (const auto& c : cases) {
    SCOPED_TRACE(c.What);
    const int rows = int(std::min<int64_t>(700, c.Height - c.Scroll)), columns = c.Width;
    QImage picked(columns, rows, QImage::Format_RGB32);
    QPainter p(&picked);
    StretchImage(DrawSurface{&p, c.Scroll, picked.rect()}, RadiographDisplay(model, rad), 0, 0, kW, kH, 0, 0, c.Width,
                 c.Height);
    p.end();
    // Every pixel is the fully converted image's under its centre.
    for (int y = 0; y < rows; ++y)
      for (int x = 0; x < columns; ++x) {
        const QRgb want = full.pixel(CentrePick(x, kW, c.Width), CentrePick(y + c.Scroll, kH, c.Height));
        ASSERT_EQ(picked.pixel(x, y), want) << x << "," << y;
      }
  }
}

TEST(DisplayEquivalence, AContrastChangeConvertsOnlyWhatIsShownAgain) {
  Model model;
  LoadStripes(model);
  RadiographDesc& rad = model.CurRadiograph();
  QImage image(200, 200, QImage::Format_RGB32);
  auto draw = [&] {
    QPainter p(&image);
    StretchImage(DrawSurface{&p, 0, image.rect()}, RadiographDisplay(model, rad), 0, 0, kW, kH, 0, 0, 150, 200);
  };
  draw();
  const uint64_t first = DisplayConversionCount(model);
  draw();
  EXPECT_EQ(DisplayConversionCount(model), first) << "unchanged: nothing converted";
  rad.Regions[0].Upper = 1500;
  draw();
  EXPECT_EQ(DisplayConversionCount(model), first + 1);
  // Pixel (1, 0) picks row 12 and column 3: sample 1000 + 12 x 7 + 3 x 3 = 1093.
  EXPECT_EQ(qGray(image.pixel(1, 0)), 93 * 255 / 500);
  // Lower = Upper: a window of one level, and region 0 folds back above it.
  rad.Regions[0].Lower = rad.Regions[0].Upper = 1000;
  draw();
  EXPECT_EQ(qGray(image.pixel(1, 0)), (93 * 255) & 0xFF);
}

}  // namespace
}  // namespace sedra::test
