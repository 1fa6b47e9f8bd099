// Highlighted regions and styled lines, painted into 96-dpi images and checked pixel by
// pixel against the pattern geometry computed here from the plot layout.

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <functional>
#include <memory>

#include "model/model.h"
#include "plot/paint_context.h"
#include "plot/regions.h"

// Readable colours in failure messages.
static void PrintTo(const QColor& c, std::ostream* os) { *os << c.name().toStdString(); }

namespace sedra {
namespace {

constexpr int kWidth = 400;
constexpr int kHeight = 300;
const QColor kWhite(255, 255, 255);
const QColor kFill(0, 0xCC, 0xFF);  // settings hold 0x00BBGGRR
const QColor kInk(0xFF, 0, 0);

// Plot box of the fixture: x 20..388 (right exclusive), plot top y0 = 40, 2 px per mm.
constexpr int kLeft = 20;
constexpr int kRight = 388;
constexpr int kY0 = 40;
constexpr int kS = 96 / 10;  // hatch spacing at 96 dpi
constexpr int kT = 96 / 26;  // stipple pitch at 96 dpi

class RegionsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    model_ = std::make_unique<Model>();
    PlotState& plot = model_->Plot();
    plot.PageRect = {0, 0, kWidth, kHeight};
    plot.LeftMargin = kLeft;
    plot.RightMargin = kWidth - kRight;
    plot.TopMargin = kY0;
    plot.PlotHeight = 200;
    plot.DepthSpan = 100;
    plot.ColumnLeft = 100;
    plot.DataAreaRight = 200;
    plot.SectionLength[0] = 50;
    model_->Settings().Colours[kShadedRegionColour] = 0x00FFCC00;
    model_->Settings().Colours[kHighlightColour] = 0x000000FF;
  }

  QImage Paint(const std::function<void(PaintContext&)>& draw, int originY = 0) {
    QImage image(kWidth, kHeight, QImage::Format_RGB32);
    image.setDotsPerMeterX(3780);
    image.setDotsPerMeterY(3780);
    image.fill(kWhite);
    QPainter painter(&image);
    PaintContext ctx(painter, *model_, originY, image.rect());
    draw(ctx);
    painter.end();
    return image;
  }

  QImage PaintHRegion(float top, float bottom, int pattern, int offsetMm = 0, int originY = 0) {
    CoreSection& s = model_->Section(0);
    s.HRegionTop[2] = top;
    s.HRegionBottom[2] = bottom;
    s.HRegionPattern[2] = pattern;
    return Paint([&](PaintContext& ctx) { DrawRegion(ctx, 2, offsetMm, 0, RegionKind::Horizontal); }, originY);
  }

  std::unique_ptr<Model> model_;
};

int Mod(int a, int m) { return ((a % m) + m) % m; }

struct PatternRow {
  const char* name;
  int pattern;
  // Expected colour at (x, y) inside the box [left, right) x [top, bottom).
  std::function<QColor(int x, int y, int left, int top, int bottom)> expect;
};

QColor InkIf(bool on) { return on ? kInk : kWhite; }

TEST_F(RegionsTest, HorizontalRegionPatternsMatchTheirGeometry) {
  const PatternRow rows[] = {
      {"shading", 0, [](int, int, int, int, int) { return kFill; }},
      {"horizontal hatch", 1, [](int, int y, int, int top, int) { return InkIf((y - top) % kS == 0); }},
      {"vertical hatch", 2, [](int x, int, int left, int, int) { return InkIf((x - left) % kS == 0); }},
      {"upward hatch", 3,
       [](int x, int y, int left, int, int bottom) { return InkIf(Mod(x + y - left - bottom, kS) == 0); }},
      {"downward hatch", 4,
       [](int x, int y, int left, int top, int) { return InkIf(Mod(x - y - left + top, kS) == 0); }},
      {"crosshatch", 5,
       [](int x, int y, int left, int top, int) { return InkIf((y - top) % kS == 0 || (x - left) % kS == 0); }},
      {"45-degree crosshatch", 6,
       [](int x, int y, int left, int top, int bottom) {
         return InkIf(Mod(x + y - left - bottom, kS) == 0 || Mod(x - y - left + top, kS) == 0);
       }},
      {"stipple", 7,
       [](int x, int y, int left, int top, int) {
         if ((y - top) % kT != 0) return kWhite;
         const int start = left + (((y - top) / kT) % 2 == 0 ? kT / 2 : 0);
         return InkIf(x >= start && (x - start) % kT == 0);
       }},
  };
  // 10 mm to 40 mm at 2 px per mm below y0.
  const int top = kY0 + 20, bottom = kY0 + 80;
  for (const PatternRow& row : rows) {
    SCOPED_TRACE(row.name);
    const QImage image = PaintHRegion(10, 40, row.pattern);
    int mismatches = 0;
    for (int y = top; y < bottom; ++y)
      for (int x = kLeft; x < kRight; ++x)
        if (image.pixelColor(x, y) != row.expect(x, y, kLeft, top, bottom) && ++mismatches <= 5)
          ADD_FAILURE() << "pixel " << x << "," << y;
    // Nothing above the box or left of it.
    for (int x = 0; x < kWidth; ++x) EXPECT_EQ(image.pixelColor(x, top - 1), kWhite) << x;
    for (int y = top; y < bottom; ++y) EXPECT_EQ(image.pixelColor(kLeft - 1, y), kWhite) << y;
    // Below and right of it only the crosshatch's closing edges.
    const bool closed = row.pattern == 5;
    EXPECT_EQ(image.pixelColor(200, bottom), closed ? kInk : kWhite);
    EXPECT_EQ(image.pixelColor(kRight, 100), closed ? kInk : kWhite);
    EXPECT_EQ(image.pixelColor(200, bottom + 1), kWhite);
    EXPECT_EQ(image.pixelColor(kRight + 1, 100), kWhite);
  }
}

TEST_F(RegionsTest, RegionAbovePlotIsCutAtTopButRunsOnBelowBottom) {
  struct Row {
    const char* name;
    float top, bottom;
    int offsetMm;
    int firstRow, lastRow;  // first and last filled row, image coordinates
  };
  const Row rows[] = {
      {"negative top depth", -10, 30, 0, kY0, kY0 + 59},
      {"expanded offset moves it above the top", 5, 30, -10, kY0, kY0 + 39},
      {"ends below the plot (plot bottom is 240)", 50, 150, 0, kY0 + 100, kHeight - 1},
      {"inside", 1, 2, 0, kY0 + 2, kY0 + 3},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const QImage image = PaintHRegion(row.top, row.bottom, 0, row.offsetMm);
    EXPECT_EQ(image.pixelColor(200, row.firstRow), kFill);
    EXPECT_EQ(image.pixelColor(200, row.lastRow), kFill);
    EXPECT_EQ(image.pixelColor(200, row.firstRow - 1), kWhite);
    if (row.lastRow + 1 < kHeight) {
      EXPECT_EQ(image.pixelColor(200, row.lastRow + 1), kWhite);
    }
  }
}

TEST_F(RegionsTest, RegionWithoutPositiveEndIsNotDrawn) {
  struct Row {
    const char* name;
    RegionKind kind;
    float start, end;
  };
  const Row rows[] = {
      {"horizontal, bottom 0", RegionKind::Horizontal, 10, 0},
      {"horizontal, bottom negative", RegionKind::Horizontal, 10, -5},
      {"vertical, right 0", RegionKind::Vertical, 10, 0},
      {"horizontal, bottom above top", RegionKind::Horizontal, 30, 20},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    CoreSection& s = model_->Section(0);
    s.HRegionTop[0] = s.VRegionLeft[0] = row.start;
    s.HRegionBottom[0] = s.VRegionRight[0] = row.end;
    s.HRegionPattern[0] = s.VRegionPattern[0] = 0;
    const QImage image = Paint([&](PaintContext& ctx) { DrawRegion(ctx, 0, 0, 0, row.kind); });
    QImage blank(image.size(), image.format());
    blank.fill(kWhite);
    EXPECT_EQ(image, blank);
  }
}

TEST_F(RegionsTest, OutOfRangeIndicesDrawNothing) {
  CoreSection& s = model_->Section(0);
  s.HRegionBottom[0] = 30;
  const QImage image = Paint([&](PaintContext& ctx) {
    DrawRegion(ctx, -1, 0, 0, RegionKind::Horizontal);
    DrawRegion(ctx, kAnnotationSlots, 0, 0, RegionKind::Horizontal);
    DrawRegion(ctx, 0, 0, kMaxSections, RegionKind::Horizontal);
    DrawRegion(ctx, 0, 0, -1, RegionKind::Vertical);
  });
  QImage blank(image.size(), image.format());
  blank.fill(kWhite);
  EXPECT_EQ(image, blank);
}

TEST_F(RegionsTest, VerticalRegionSpansDataAreaAndPlotHeight) {
  // Section 50 mm long over a 200 px data area from x = 100: 4 px per unit.
  CoreSection& s = model_->Section(0);
  s.VRegionLeft[1] = 10;
  s.VRegionRight[1] = 30;
  s.VRegionPattern[1] = 0;
  const QImage image = Paint([&](PaintContext& ctx) { DrawRegion(ctx, 1, 0, 0, RegionKind::Vertical); });
  EXPECT_EQ(image.pixelColor(140, kY0), kFill);
  EXPECT_EQ(image.pixelColor(219, kY0 + 199), kFill);
  EXPECT_EQ(image.pixelColor(139, 100), kWhite);
  EXPECT_EQ(image.pixelColor(220, 100), kWhite);
  EXPECT_EQ(image.pixelColor(180, kY0 - 1), kWhite);
  EXPECT_EQ(image.pixelColor(180, kY0 + 200), kWhite);
}

TEST_F(RegionsTest, ZoomedDocumentIsDrawnAtItsScrolledPosition) {
  // 1000 px per mm: a band at 100 mm lies 100 000 rows down the document.
  PlotState& plot = model_->Plot();
  plot.PlotHeight = 1000000;
  plot.DepthSpan = 1000;
  const int origin = 100000;
  const QImage image = PaintHRegion(100.02f, 100.2f, 1, 0, origin);
  // Rows are computed in single precision depth + offset, as the region placement does.
  const int top = kY0 + int(double(100.02f) * 1000);
  const int bottom = kY0 + int(double(100.2f) * 1000);
  for (int y = top - origin; y < bottom - origin; ++y)
    EXPECT_EQ(image.pixelColor(200, y), InkIf((y + origin - top) % kS == 0)) << y;
  EXPECT_EQ(image.pixelColor(200, top - origin - 1), kWhite);
  EXPECT_EQ(image.pixelColor(200, bottom - origin), kWhite);
}

TEST_F(RegionsTest, WideDashedLineIsParallelDashedStrokes) {
  const QImage image =
      Paint([&](PaintContext& ctx) { DrawHorizontalStyledLine(ctx, 20, 300, 100, 1, 3, kInk); });
  for (int y = 100; y < 103; ++y) {
    int ink = 0, gaps = 0;
    for (int x = 20; x < 300; ++x) {
      const QColor c = image.pixelColor(x, y);
      ink += c == kInk;
      gaps += c == kWhite;
      // The three strokes are the same dash pattern one row apart.
      EXPECT_EQ(c, image.pixelColor(x, 100)) << x << "," << y;
    }
    EXPECT_GT(ink, 100) << y;
    EXPECT_GT(gaps, 20) << y;
    EXPECT_EQ(image.pixelColor(20, y), kInk) << "a dash starts the line";
  }
  for (int x = 0; x < kWidth; ++x) {
    EXPECT_EQ(image.pixelColor(x, 99), kWhite);
    EXPECT_EQ(image.pixelColor(x, 103), kWhite);
  }
  EXPECT_EQ(image.pixelColor(300, 100), kWhite) << "the end point is not drawn";
}

TEST_F(RegionsTest, LineStylesAndWidths) {
  struct Row {
    const char* name;
    int style, width;
    bool gaps;
  };
  const Row rows[] = {
      {"solid", 0, 1, false}, {"dashes", 1, 2, true},       {"dots", 2, 1, true},
      {"dash-dot", 3, 4, true}, {"dash-dot-dot", 4, 1, true}, {"unknown style is solid", 9, 1, false},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const QImage image = Paint([&](PaintContext& ctx) {
      DrawVerticalStyledLine(ctx, 50, 60, 250, row.style, row.width, kInk);
    });
    for (int x = 50; x < 50 + row.width; ++x) {
      int gaps = 0;
      for (int y = 60; y < 250; ++y) gaps += image.pixelColor(x, y) != kInk;
      if (row.gaps)
        EXPECT_GT(gaps, 10) << x;
      else
        EXPECT_EQ(gaps, 0) << x;
      EXPECT_EQ(image.pixelColor(x, 59), kWhite);
      EXPECT_EQ(image.pixelColor(x, 250), kWhite);
    }
    for (int y = 0; y < kHeight; ++y) {
      EXPECT_EQ(image.pixelColor(49, y), kWhite);
      EXPECT_EQ(image.pixelColor(50 + row.width, y), kWhite);
    }
  }
}

TEST_F(RegionsTest, DashesStayPutWhileScrolling) {
  const int scroll = 37;
  const QImage still =
      Paint([&](PaintContext& ctx) { DrawVerticalStyledLine(ctx, 50, 10, 600, 1, 1, kInk); });
  const QImage scrolled =
      Paint([&](PaintContext& ctx) { DrawVerticalStyledLine(ctx, 50, 10, 600, 1, 1, kInk); }, scroll);
  for (int y = scroll; y < kHeight; ++y)
    EXPECT_EQ(still.pixelColor(50, y), scrolled.pixelColor(50, y - scroll)) << "document row " << y;
}

}  // namespace
}  // namespace sedra
