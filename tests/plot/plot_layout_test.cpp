// The plot layout as a value: page, margins, spans, columns and bands for the targets
// the plot is drawn on, worked out here from the rules rather than from the code.

#include <gtest/gtest.h>

#include <QImage>

#include "plot/plot_layout.h"
#include "plot_fixture.h"

namespace sedra::test {
namespace {

struct Case {
  const char* what;
  int width, height, dpi;
  int opticalWidth = 0, rows = 1200, zoom = 0;
  bool printing = false;
  int scroll = 0;
  bool countTimes = false, info = true, expanded = false;
};

// The page of the given size at `dpi`; fonts are measured on `device`.
LayoutTarget TargetFor(int width, int height, const QImage* device = nullptr, int dpi = 96) {
  LayoutTarget t;
  t.Page = {0, 0, width, height};
  t.DpiX = t.DpiY = dpi;
  t.ScreenHeight = 700;
  t.Device = device;
  return t;
}

TEST(PlotLayout, FollowsTheRulesOnEveryTarget) {
  // A radiograph 100 pixels wide and, when asked, an optical image of the same length.
  const Case cases[] = {
      {"a window", 1000, 700, 96},
      {"count times make room for the XRF row", 1000, 700, 96, 0, 1200, 0, false, 0, true},
      {"no information block", 800, 600, 96, 0, 1200, 0, false, 0, false, false},
      {"zoomed and scrolled", 640, 480, 96, 60, 1200, 8, false, 1500},
      {"a printed page follows the screen's scroll", 3000, 2000, 300, 60, 1200, 2, true, 350},
      {"an expanded range", 1000, 700, 96, 60, 1500, 0, false, 0, false, true, true},
  };
  for (const Case& c : cases) {
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
    LayoutTarget target = TargetFor(c.width, c.height, &device, c.dpi);
    target.Printing = c.printing;
    target.ScrollPos = c.scroll;
    const PlotLayout l = ComputePlotLayout(model, target);
    const CoreSection& s = model.CurSection();

    const int ch = CharHeight(MakePlotFont("MS Sans Serif", 11, 700, c.dpi).pixelSize());
    const int top = 2 * ch + 4;
    const int bottom = !p.ShowInfo ? top / 2 : s.CountTimeText[0] ? 2 * top : top * 3 / 2;
    const int zoom = std::max(1, p.ZoomFactor);
    EXPECT_EQ(l.CharHeight, ch);
    EXPECT_EQ(l.LeftMargin, 3 * ch);
    EXPECT_EQ(l.RightMargin, c.dpi / 8);
    EXPECT_EQ(l.TopMargin, top);
    EXPECT_EQ(l.BottomMargin, bottom);
    EXPECT_EQ(l.PlotHeight, c.height * zoom - bottom - top);
    EXPECT_EQ(l.Scroll, zoom == 1 ? 0 : c.printing ? int64_t(c.scroll) * c.height / 700 : c.scroll);
    ASSERT_TRUE(l.Drawable);
    const float span = p.Expanded ? p.ExpandBottom - p.ExpandTop : p.SectionLength[0];
    EXPECT_FLOAT_EQ(l.DepthSpan, span);
    EXPECT_EQ(l.DepthOffset, p.Expanded ? -50 : 0);

    // Columns from the left: a gap, the optical image, the radiograph, a gap, the bar.
    const int gap = c.dpi / 8;
    const RadiographDesc& rad = model.CurRadiograph();
    int x = 3 * ch + gap;
    if (s.Optical.Loaded()) {
      int64_t width = int64_t(s.Optical.CropRight - s.Optical.CropLeft) * l.PlotHeight /
                      (s.Optical.CropBottom - s.Optical.CropTop);
      if (p.Expanded) width = int64_t(std::floor(p.SectionLength[0] * double(width) / span));
      width = std::clamp<int64_t>(width, c.width / 40, c.width / 8);
      EXPECT_EQ(l.OpticalLeft, x);
      EXPECT_EQ(l.OpticalWidth, width);
      x += int(width) + gap;
    }
    int64_t radWidth = int64_t(rad.Width) * l.PlotHeight / rad.Height;
    if (p.Expanded) radWidth = int64_t(std::floor(p.SectionLength[0] * double(radWidth) / span));
    radWidth = std::max<int64_t>(radWidth, c.width / 40);
    EXPECT_EQ(l.RadiographLeft, x);
    EXPECT_EQ(l.RadiographWidth, radWidth);
    EXPECT_EQ(l.RadiographsPlaced, 1);
    const int columnLeft = x + int(radWidth) + gap + c.dpi * 3 / 16;
    EXPECT_EQ(l.ColumnLeft, columnLeft);
    EXPECT_EQ(l.DataAreaRight, c.width - c.dpi / 8 - columnLeft);
    EXPECT_EQ(l.ColumnWidth, l.DataAreaRight / 3);
    // The data region's columns, at the radiograph's scale on the plot.
    EXPECT_TRUE(l.DataRegionShown);
    EXPECT_EQ(l.DataRegion.Left, x + 10 * radWidth / rad.Width);
    EXPECT_EQ(l.DataRegion.Right, x + 50 * radWidth / rad.Width);
    EXPECT_EQ(l.DataRegion.Top, top);
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
  const PlotLayout l = ComputePlotLayout(model, TargetFor(1000, 700));
  EXPECT_FLOAT_EQ(l.LayoutSpan, 1000.0f);
  EXPECT_FLOAT_EQ(l.DepthSpan, 1000.0f);
  EXPECT_EQ(l.FirstSection, 0);
  EXPECT_EQ(l.LastSection, 1);
  const int h0 = int(std::floor(601.0 * l.PlotHeight / 1000)), h1 = int(std::floor(399.0 * l.PlotHeight / 1000));
  EXPECT_EQ(l.Bands[0].Top, l.Y0);
  EXPECT_EQ(l.Bands[0].Height, h0);
  EXPECT_EQ(l.Bands[1].Top, l.Y0 + h0);
  EXPECT_EQ(l.Bands[1].Height, h1);
  // Widths summed over the sections (not averaged), heights too.
  EXPECT_EQ(l.RadiographWidth, std::max(150 * (h0 + h1) / 1000, 25));
  EXPECT_FALSE(l.DataRegionShown) << "no data region over a whole core";
}

TEST(PlotLayout, WithoutASpanOnlyThePageIsLaidOutAndTheColumnsKeepTheirPlaces) {
  Model model;
  StartCore(model);
  PlotState& p = model.Plot();
  p.ColumnLeft = 321;
  p.PlotHeight = 77;
  const LayoutTarget t = TargetFor(500, 400);
  const PlotLayout l = ComputePlotLayout(model, t);
  EXPECT_FALSE(l.Drawable);
  ApplyLayout(l, p);
  EXPECT_EQ(p.PageWidth, 500);
  EXPECT_EQ(p.ColumnLeft, 321);
  EXPECT_EQ(p.PlotHeight, 77);
  p.SectionLength[0] = std::nanf("");
  EXPECT_FALSE(ComputePlotLayout(model, t).Drawable) << "an undefined span draws nothing";
}

}  // namespace
}  // namespace sedra::test
