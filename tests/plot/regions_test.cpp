// Highlighted regions and styled lines, painted into 96-dpi images and checked pixel by
// pixel against the pattern geometry computed here from the plot layout.

#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "plot/regions.h"
#include "plot_fixture.h"

namespace sedra::test {
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
    return PaintWith(*model_, draw, kWidth, kHeight, originY);
  }
  // Horizontal region 2 of section 0, from `top` to `bottom` mm.
  QImage PaintHRegion(float top, float bottom, int pattern, int originY = 0) {
    CoreSection& s = model_->Section(0);
    s.HRegionTop[2] = top;
    s.HRegionBottom[2] = bottom;
    s.HRegionPattern[2] = pattern;
    return Paint([&](PaintContext& ctx) { DrawRegion(ctx, 2, 0, 0, RegionKind::Horizontal); }, originY);
  }

  std::unique_ptr<Model> model_ = std::make_unique<Model>();
};

int Mod(int a, int m) { return ((a % m) + m) % m; }
QColor InkIf(bool on) { return on ? kInk : kWhite; }

TEST_F(RegionsTest, HorizontalRegionPatternsMatchTheirGeometry) {
  // 10 mm to 40 mm at 2 px per mm below y0; expected colour at (x, y) from the offsets
  // into the box: dx = x - left, dy = y - top, up = y - bottom.
  const int top = kY0 + 20, bottom = kY0 + 80;
  const struct {
    const char* name;
    std::function<bool(int dx, int dy, int up)> ink;  // nullptr: shading fills all
  } rows[] = {
      {"shading", nullptr},
      {"horizontal hatch", [](int, int dy, int) { return dy % kS == 0; }},
      {"vertical hatch", [](int dx, int, int) { return dx % kS == 0; }},
      {"upward hatch", [](int dx, int, int up) { return Mod(dx + up, kS) == 0; }},
      {"downward hatch", [](int dx, int dy, int) { return Mod(dx - dy, kS) == 0; }},
      {"crosshatch", [](int dx, int dy, int) { return dy % kS == 0 || dx % kS == 0; }},
      {"45-degree crosshatch", [](int dx, int dy, int up) { return Mod(dx + up, kS) == 0 || Mod(dx - dy, kS) == 0; }},
      {"stipple",
       [](int dx, int dy, int) {
         const int start = (dy / kT) % 2 == 0 ? kT / 2 : 0;
         return dy % kT == 0 && dx >= start && (dx - start) % kT == 0;
       }},
  };
  for (int pattern = 0; pattern < 8; ++pattern) {
    SCOPED_TRACE(rows[pattern].name);
    const QImage image = PaintHRegion(10, 40, pattern);
    int mismatches = 0;
    for (int y = top; y < bottom; ++y)
      for (int x = kLeft; x < kRight; ++x) {
        const QColor expected = pattern == 0 ? kFill : InkIf(rows[pattern].ink(x - kLeft, y - top, y - bottom));
        if (image.pixelColor(x, y) != expected && ++mismatches <= 5) ADD_FAILURE() << "pixel " << x << "," << y;
      }
    // Nothing above the box or left of it.
    for (int x = 0; x < kWidth; ++x) EXPECT_EQ(image.pixelColor(x, top - 1), kWhite) << x;
    for (int y = top; y < bottom; ++y) EXPECT_EQ(image.pixelColor(kLeft - 1, y), kWhite) << y;
    // Below and right of it only the crosshatch's closing edges.
    EXPECT_EQ(image.pixelColor(200, bottom), InkIf(pattern == 5));
    EXPECT_EQ(image.pixelColor(kRight, 100), InkIf(pattern == 5));
    EXPECT_EQ(image.pixelColor(200, bottom + 1), kWhite);
    EXPECT_EQ(image.pixelColor(kRight + 1, 100), kWhite);
  }
}

TEST_F(RegionsTest, RegionsAreCutAtThePlotsTopRunOnBelowItAndNeedAPositiveEnd) {
  constexpr RegionKind kH = RegionKind::Horizontal, kV = RegionKind::Vertical;
  const struct {
    const char* name;
    RegionKind kind;
    float start, end;
    int offsetMm;
    QRect filled;  // image coordinates; empty: nothing drawn
  } rows[] = {
      {"negative top depth", kH, -10, 30, 0, QRect(QPoint(kLeft, kY0), QPoint(kRight - 1, kY0 + 59))},
      {"expanded offset moves it above the top", kH, 5, 30, -10,
       QRect(QPoint(kLeft, kY0), QPoint(kRight - 1, kY0 + 39))},
      {"ends below the plot (plot bottom is 240)", kH, 50, 150, 0,
       QRect(QPoint(kLeft, kY0 + 100), QPoint(kRight - 1, kHeight - 1))},
      {"inside", kH, 1, 2, 0, QRect(QPoint(kLeft, kY0 + 2), QPoint(kRight - 1, kY0 + 3))},
      // Section 50 mm long over a 200 px data area from x = 100: 4 px per unit.
      {"vertical over the plot's height", kV, 10, 30, 0, QRect(QPoint(140, kY0), QPoint(219, kY0 + 199))},
      {"horizontal, bottom 0", kH, 10, 0, 0, {}},
      {"horizontal, bottom negative", kH, 10, -5, 0, {}},
      {"vertical, right 0", kV, 10, 0, 0, {}},
      {"horizontal, bottom above top", kH, 30, 20, 0, {}},
  };
  CoreSection& s = model_->Section(0);
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    s.HRegionTop[0] = s.VRegionLeft[0] = row.start;
    s.HRegionBottom[0] = s.VRegionRight[0] = row.end;
    s.HRegionPattern[0] = s.VRegionPattern[0] = 0;
    const QImage image = Paint([&](PaintContext& ctx) { DrawRegion(ctx, 0, row.offsetMm, 0, row.kind); });
    const QRect& f = row.filled;
    if (f.isEmpty()) {
      EXPECT_TRUE(Blank(image));
      continue;
    }
    // Filled at the corners, white just outside each side (where the image has one).
    for (QPoint corner : {f.topLeft(), f.topRight(), f.bottomLeft(), f.bottomRight()})
      EXPECT_EQ(image.pixelColor(corner), kFill) << corner.x() << "," << corner.y();
    const QPoint mid = f.center();
    for (QPoint out : {QPoint(mid.x(), f.top() - 1), QPoint(mid.x(), f.bottom() + 1), QPoint(f.left() - 1, mid.y()),
                       QPoint(f.right() + 1, mid.y())}) {
      if (image.rect().contains(out)) {
        EXPECT_EQ(image.pixelColor(out), kWhite) << out.x() << "," << out.y();
      }
    }
  }
  s.HRegionTop[0] = s.VRegionLeft[0] = 0;
  s.HRegionBottom[0] = s.VRegionRight[0] = 30;
  EXPECT_TRUE(Blank(Paint([&](PaintContext& ctx) {
    DrawRegion(ctx, -1, 0, 0, RegionKind::Horizontal);
    DrawRegion(ctx, kAnnotationSlots, 0, 0, RegionKind::Horizontal);
    DrawRegion(ctx, 0, 0, kMaxSections, RegionKind::Horizontal);
    DrawRegion(ctx, 0, 0, -1, RegionKind::Vertical);
  }))) << "out of range indices";
}

TEST_F(RegionsTest, ZoomedDocumentIsDrawnAtItsScrolledPosition) {
  // 1000 px per mm: a band at 100 mm lies 100 000 rows down the document.
  model_->Plot().PlotHeight = 1000000;
  model_->Plot().DepthSpan = 1000;
  const int origin = 100000;
  const QImage image = PaintHRegion(100.02f, 100.2f, 1, origin);
  // Rows are computed in single precision depth + offset, as the region placement does.
  const int top = kY0 + int(double(100.02f) * 1000), bottom = kY0 + int(double(100.2f) * 1000);
  for (int y = top - origin; y < bottom - origin; ++y)
    EXPECT_EQ(image.pixelColor(200, y), InkIf((y + origin - top) % kS == 0)) << y;
  EXPECT_EQ(image.pixelColor(200, top - origin - 1), kWhite);
  EXPECT_EQ(image.pixelColor(200, bottom - origin), kWhite);
}

TEST_F(RegionsTest, LineStylesAndWidthsInBothDirectionsStayPutWhileScrolling) {
  const struct {
    const char* name;
    int style, width;
    bool gaps;
  } rows[] = {
      {"solid", 0, 1, false},   {"dashes", 1, 3, true},       {"dots", 2, 1, true},
      {"dash-dot", 3, 4, true}, {"dash-dot-dot", 4, 1, true}, {"unknown style is solid", 9, 1, false},
  };
  // The line runs from 60 to 250 along, from 50 across, `width` strokes wide.
  for (const auto& row : rows) {
    for (bool vertical : {true, false}) {
      SCOPED_TRACE(testing::Message() << row.name << (vertical ? " vertical" : " horizontal"));
      const auto draw = [&](PaintContext& ctx) {
        if (vertical)
          DrawVerticalStyledLine(ctx, 50, 60, 250, row.style, row.width, kInk);
        else
          DrawHorizontalStyledLine(ctx, 60, 250, 50, row.style, row.width, kInk);
      };
      const QImage image = Paint(draw);
      auto at = [&](int along, int across) { return vertical ? image.pixelColor(across, along) : image.pixelColor(along, across); };
      for (int a = 50; a < 50 + row.width; ++a) {
        int gaps = 0;
        for (int l = 60; l < 250; ++l) {
          gaps += at(l, a) != kInk;
          EXPECT_EQ(at(l, a), at(l, 50)) << "strokes are the same pattern side by side, " << l << "," << a;
        }
        EXPECT_EQ(gaps > 10, row.gaps) << gaps << " gaps in stroke " << a;
        EXPECT_LT(gaps, 150) << "the stroke has ink, " << a;
        EXPECT_EQ(at(59, a), kWhite);
        EXPECT_EQ(at(250, a), kWhite) << "the end point is not drawn";
      }
      for (int l = 0; l < kHeight; ++l) {
        EXPECT_EQ(at(l, 49), kWhite);
        EXPECT_EQ(at(l, 50 + row.width), kWhite);
      }
      if (vertical) {
        // The pattern stays put on the document while it scrolls.
        const QImage scrolled = Paint(draw, 37);
        for (int y = 37; y < kHeight; ++y) EXPECT_EQ(image.pixelColor(50, y), scrolled.pixelColor(50, y - 37)) << y;
      }
    }
  }
}

}  // namespace
}  // namespace sedra::test
