// The plot layout as a value: page, margins, spans, columns and bands for the targets
// the plot is drawn on, worked out here from the rules rather than from the code.

#include <gtest/gtest.h>

#include <QImage>
#include <array>
#include <cmath>
#include <tuple>

#include "plot/plot_layout.h"
#include "plot_fixture.h"

namespace sedra::test {
namespace {

// The rules, with ch the bold plot font's character height at the target's dpi:
// margins 3 ch left, dpi/8 right, 2 ch + 4 on top, and below half the top margin without
// the information block, 3/2 of it with, twice it with count times.  The plot is zoom
// pages high less the margins; a print scrolls by the screen's position scaled to the
// page.  Columns from the left, dpi/8 apart: the optical image (cropped width at the
// plot's scale, kept between a fortieth and an eighth of the page), the radiograph (at
// least a fortieth of the page), then 3/16 inch on the coverage bar and the data area up
// to the right margin, in three columns.  An expanded range scales the images' widths
// by section length over the range, floored, and starts the depths at its whole-mm top.
TEST(PlotLayout, FollowsTheRulesOnEveryTarget) {
  // A radiograph 100 pixels wide and, when asked, an optical image of the same length;
  // the data region is the radiograph's columns 10 to 50.
  const struct {
    const char* what;
    // ch, margins left top bottom, plot height, scroll, optical left and width,
    // radiograph left and width, first column's left, data area's width, data region's columns
    std::array<int64_t, 14> expected;
    int width, height, dpi;
    int opticalWidth = 0, rows = 1200, zoom = 0;
    bool printing = false;
    int scroll = 0;
    bool countTimes = false, info = true, expanded = false;
  } cases[] = {
      {"a window", {17, 51, 38, 57, 605, 0, 0, 0, 63, 50, 143, 845, 68, 88}, 1000, 700, 96},
      {"count times make room for the XRF row", {17, 51, 38, 76, 586, 0, 0, 0, 63, 48, 141, 847, 67, 87}, 1000, 700, 96,
       0, 1200, 0, false, 0, true},
      {"no information block", {17, 51, 38, 19, 543, 0, 0, 0, 63, 45, 138, 650, 67, 85}, 800, 600, 96, 0, 1200, 0,
       false, 0, false, false},
      {"zoomed and scrolled: the optical image kept to an eighth",
       {17, 51, 38, 57, 3745, 1500, 63, 80, 155, 312, 497, 131, 186, 311}, 640, 480, 96, 60, 1200, 8, false, 1500},
      {"a printed page follows the screen's scroll: 350 of 700 rows is 1000 of 2000",
       {52, 156, 108, 162, 3730, 1000, 193, 183, 413, 310, 816, 2147, 444, 568}, 3000, 2000, 300, 60, 1200, 2, true,
       350},
      {"an expanded range: 1500 mm shown over 99.6 widen the images",
       {17, 51, 38, 57, 605, 0, 63, 125, 200, 602, 832, 156, 260, 501}, 1000, 700, 96, 60, 1500, 0, false, 0, false,
       true, true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    Model model;
    StartCore(model);
    AddRadiograph(model, 0, 100, c.rows, 0x808080u);
    if (c.opticalWidth) AddOptical(model, c.opticalWidth, c.rows + 1, 0xC08040u);
    if (c.countTimes) CopyField(model.CurSection().CountTimeText, "10 s");
    PlotState& p = model.Plot();
    if (!c.info) p.ShowInfo = 0;
    if (c.zoom) p.ZoomFactor = c.zoom;
    if (c.expanded) {
      p.Expanded = 1;
      p.ExpandTop = 50.4f;
      p.ExpandBottom = 150;
    }
    p.DataRegionLeft = 10;
    p.DataRegionRight = 50;
    QImage device = MakeImage(1, 1);
    device.setDotsPerMeterX(qRound(c.dpi / 0.0254));
    device.setDotsPerMeterY(qRound(c.dpi / 0.0254));
    LayoutTarget target;
    target.Page = {0, 0, c.width, c.height};
    target.DpiX = target.DpiY = c.dpi;
    target.ScreenHeight = 700;
    target.Device = &device;
    target.Printing = c.printing;
    target.ScrollPos = c.scroll;
    const PlotLayout l = ComputePlotLayout(model, target);
    ASSERT_TRUE(l.Drawable);
    EXPECT_EQ((std::array<int64_t, 14>{l.CharHeight, l.LeftMargin, l.TopMargin, l.BottomMargin, l.PlotHeight, l.Scroll,
                                       l.OpticalLeft, l.OpticalWidth, l.RadiographLeft, l.RadiographWidth, l.ColumnLeft,
                                       l.DataAreaRight, l.DataRegion.Left, l.DataRegion.Right}),
              c.expected);
    EXPECT_EQ(std::tuple(l.RightMargin, l.ColumnWidth, l.RadiographsPlaced, l.DataRegionShown, l.DataRegion.Top),
              std::tuple(c.dpi / 8, l.DataAreaRight / 3, 1, true, l.TopMargin));
    EXPECT_FLOAT_EQ(l.DepthSpan, c.expanded ? p.ExpandBottom - p.ExpandTop : p.SectionLength[0]);
    EXPECT_EQ(l.DepthOffset, c.expanded ? -50 : 0);
  }
}

TEST(PlotLayout, DisplayAllStacksFlooredBandsAndSumsTheRadiographWidths) {
  Model model;
  StartCore(model);
  AddRadiograph(model, 0, 100, 601, 0xAA0000u);
  model.Plot().SectionCount = 2;
  model.SelectSection(1);
  AddRadiograph(model, 0, 50, 399, 0x00AA00u);
  model.Plot().ShowAllSections = 1;
  model.Plot().ShowDividers = 1;
  PlotLayout l;
  const QImage image = Paint(model, 1000, 700, 0, &l);
  EXPECT_FLOAT_EQ(l.LayoutSpan, 1000.0f);
  EXPECT_FLOAT_EQ(l.DepthSpan, 1000.0f);
  EXPECT_EQ(std::tie(l.FirstSection, l.LastSection), std::tuple(0, 1));
  const int h0 = int(std::floor(601.0 * l.PlotHeight / 1000)), h1 = int(std::floor(399.0 * l.PlotHeight / 1000));
  const int split = l.Y0 + h0;
  EXPECT_EQ(std::tuple(l.Bands[0].Top, l.Bands[0].Height, l.Bands[1].Top, l.Bands[1].Height),
            std::tuple(l.Y0, h0, split, h1));
  // Widths summed over the sections (not averaged), heights too.
  EXPECT_EQ(l.RadiographWidth, std::max(150 * (h0 + h1) / 1000, 25));
  EXPECT_FALSE(l.DataRegionShown) << "no data region over a whole core";
  // Each section's radiograph in its own band, and the divider across the plot outside it.
  const int x = l.RadiographLeft + l.RadiographWidth / 2;
  for (auto [y, colour] : {std::pair{l.Y0 + 1, 0xAA0000u}, {split - 1, 0xAA0000u}, {split, 0x00AA00u},
                           {split + h1 - 1, 0x00AA00u}, {split + 1, 0x00AA00u}}) {
    EXPECT_EQ(Rgb(image, x, y), colour) << y;
  }
  EXPECT_EQ(Rgb(image, l.XRight - 3, split), 0x0000FFu);
  EXPECT_EQ(Rgb(image, l.XRight - 3, split + 1), 0xFFFFFFu);
}

}  // namespace
}  // namespace sedra::test
