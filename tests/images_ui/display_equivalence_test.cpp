// Drawing converts only the samples a stretch picks.  The pixels must be those of the
// fully converted image drawn without smoothing, at every zoom and band size.

#include <gtest/gtest.h>

#include <QPainter>
#include <cstdio>

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

struct Case {
  int Width;
  int64_t Height, Scroll;
  const char* What;
};

// The source index the painter's own stretch (drawImage without smoothing) picks for
// each of `shown` destination pixels from `first` on, read back from an image whose
// pixels name their own index.
std::vector<int> PainterPicks(int sourceCount, int64_t destCount, int64_t first, int shown) {
  QImage index(1, sourceCount, QImage::Format_RGB32), out(1, shown, QImage::Format_RGB32);
  for (int i = 0; i < sourceCount; ++i) index.setPixel(0, i, qRgb(i & 0xFF, i >> 8, 0));
  {
    QPainter p(&out);
    p.drawImage(QRectF(0, double(-first), 1, double(destCount)), index, QRectF(0, 0, 1, sourceCount));
  }
  std::vector<int> picks;
  for (int i = 0; i < shown; ++i) picks.push_back(qRed(out.pixel(0, i)) | qGreen(out.pixel(0, i)) << 8);
  return picks;
}

// Where the painter's pick differs from this drawing's, the destination pixel's centre
// lies on a boundary between two source pixels or just past it.  The painter walks the
// source in 16.16 fixed point: it starts a 65536th below the first centre (ceil - 1)
// and its step is truncated, so it falls behind by less than one unit more at every
// pixel, and takes the pixel before a boundary its position has not quite reached.
// This drawing takes each centre exactly.  Returns how many differ.
int BoundaryPicks(const std::vector<int>& painter, int sourceCount, int64_t destCount, int64_t first) {
  int differing = 0;
  for (size_t k = 0; k < painter.size(); ++k) {
    const int64_t i = first + int64_t(k);
    const int ours = int(SourceIndex(0, sourceCount, i, destCount));
    if (painter[k] == ours) continue;
    ++differing;
    EXPECT_EQ(ours - painter[k], 1) << "destination " << i;
    // How far past the boundary the centre lies, in 65536ths of a source pixel.
    const double past = double((2 * i + 1) * sourceCount % (2 * destCount)) / double(2 * destCount) * 65536;
    EXPECT_LE(past, double(k + 1)) << "destination " << i << ": beyond the painter's drift";
  }
  return differing;
}

TEST(DisplayEquivalence, PickedSamplesGiveTheFullyConvertedImagesPixels) {
  const Case cases[] = {
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
  // The same display bits drawn as bits, not from the samples.
  RadiographDesc fromBits = rad;
  fromBits.DisplayFromSamples = 0;

  for (const Case& c : cases) {
    SCOPED_TRACE(c.What);
    const int rows = int(std::min<int64_t>(700, c.Height - c.Scroll)), columns = c.Width;
    QImage picked(columns, rows, QImage::Format_RGB32), bits = picked, painter = picked;
    for (QImage* image : {&picked, &bits, &painter}) image->fill(Qt::white);
    for (auto [into, from] : {std::pair(&picked, &rad), std::pair(&bits, &fromBits)}) {
      QPainter p(into);
      StretchImage(DrawSurface{&p, c.Scroll, into->rect()}, RadiographDisplay(model, *from), 0, 0, kW, kH, 0, 0,
                   c.Width, c.Height);
    }
    {
      QPainter p(&painter);  // no smoothing: nearest neighbour
      p.drawImage(QRectF(0, double(-c.Scroll), c.Width, double(c.Height)), full, QRectF(0, 0, kW, kH));
    }
    EXPECT_EQ(picked, bits) << "the same picks from the samples as from the fully converted bits";

    const std::vector<int> rowPicks = PainterPicks(kH, c.Height, c.Scroll, rows);
    const std::vector<int> columnPicks = PainterPicks(kW, c.Width, 0, columns);
    const int rowsOff = BoundaryPicks(rowPicks, kH, c.Height, c.Scroll);
    const int columnsOff = BoundaryPicks(columnPicks, kW, c.Width, 0);
    std::printf("[   info   ] %s: %d of %d rows and %d of %d columns lie on (or within the painter's fixed-point "
                "drift past) a source boundary; the painter shows the pixel before it\n",
                c.What, rowsOff, rows, columnsOff, columns);
    // Every pixel is the fully converted image's at this drawing's pick, and the
    // painter's stretch shows the same pixel wherever the two picks agree.
    for (int y = 0; y < rows; y += 3)
      for (int x = 0; x < columns; x += 2) {
        const int sy = int(SourceIndex(0, kH, y + c.Scroll, c.Height)), sx = int(SourceIndex(0, kW, x, c.Width));
        ASSERT_EQ(picked.pixel(x, y), full.pixel(sx, sy)) << x << "," << y;
        ASSERT_EQ(painter.pixel(x, y), full.pixel(columnPicks[size_t(x)], rowPicks[size_t(y)])) << x << "," << y;
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
