// PaintPlot into 96-dpi images: layout fields, colours at computed positions, labels,
// overlays, stacking and deep zoom.

#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "images/draw/display_image.h"
#include "plot_fixture.h"

namespace sedra::test {
namespace {

constexpr uint32_t kWhite = 0xFFFFFF;
constexpr uint32_t kBlue = 0x0000FF;  // the default axis colour 0xFF0000 (BGR)
constexpr int kGap = 96 / 8;          // gap and right margin at 96 dpi

// Plot box expected from the fonts and margins: x0, y0 its top left corner, xr its
// right edge; mid the row half way down.
struct Geometry {
  int ch, x0, y0, xr, plotHeight, mid;
};
Geometry Expect(const Model& model, int width, int height, int zoom = 1) {
  const int ch = CharHeight(), top = 2 * ch + 4;
  int bottom = top / 2;
  if (model.Plot().ShowInfo) bottom = model.CurSection().CountTimeText[0] ? 2 * top : top * 3 / 2;
  const int plotHeight = height * zoom - bottom - top;
  return {ch, 3 * ch, top, width - kGap, plotHeight, top + plotHeight / 2};
}

bool AllWhite(const QImage& image) {
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      if (Rgb(image, x, y) != kWhite) return false;
  return true;
}

TEST(PaintPlot, NothingToShowPaintsOnlyTheBackground) {
  Model model;
  StartCore(model);
  EXPECT_TRUE(AllWhite(Paint(model, 320, 200))) << "nothing loaded";
  EXPECT_EQ(model.Plot().DepthSpan, 0.0f);
  AddRadiograph(model, 0, 40, 300, 0x123456u);
  model.Plot().SectionLength[0] = std::nanf("");
  EXPECT_TRUE(AllWhite(Paint(model, 200, 150))) << "undefined span";
  // Degenerate targets paint without failing.
  model.Plot().SectionLength[0] = 300;
  for (QSize size : {QSize(1, 1), QSize(3, 500), QSize(500, 3)}) EXPECT_FALSE(Paint(model, size.width(), size.height()).isNull());
  QImage null;
  QPainter painter(&null);  // not active: nothing to paint on
  PaintPlot(model, painter, PaintTarget{});
}

TEST(PaintPlot, AxesAndRadiographColumnAtComputedPositions) {
  Model model;
  StartCore(model);
  AddRadiograph(model, 0, 200, 2000, 0x204080u);
  const QImage image = Paint(model, 1000, 700);
  const Geometry g = Expect(model, 1000, 700);
  // The depth axis down the left edge and the top axis across.
  EXPECT_EQ(Rgb(image, g.x0, g.mid + 1), kBlue);
  EXPECT_EQ(Rgb(image, (g.x0 + g.xr) / 2, g.y0), kBlue);
  EXPECT_EQ(Rgb(image, g.xr + 2, g.y0), kWhite);
  const int width = std::max(200 * g.plotHeight / 2000, 25), left = g.x0 + kGap;
  for (int x : {left, left + width / 2, left + width - 1}) EXPECT_EQ(Rgb(image, x, g.mid), 0x204080u) << x;
  EXPECT_EQ(Rgb(image, left - 1, g.mid), kWhite);
  EXPECT_EQ(Rgb(image, left + width, g.mid), kWhite);
  EXPECT_EQ(Rgb(image, left + width / 2, g.y0 + g.plotHeight - 1), 0x204080u);
  EXPECT_EQ(Rgb(image, left + width / 2, g.y0 + g.plotHeight), kWhite);
}

// The label box region of `image` compared with the text drawn alone in the same box.
bool LabelMatches(const QImage& image, QRect box, const QString& text) {
  QImage ref = MakeImage(image.width(), image.height());
  ref.fill(Qt::white);
  {
    QPainter p(&ref);
    QFont f(QStringLiteral("Liberation Sans"));
    f.setPixelSize(11);
    f.setStyleStrategy(QFont::NoAntialias);
    p.setFont(f);
    p.setPen(Qt::black);
    p.drawText(box, Qt::AlignCenter | Qt::TextSingleLine | Qt::TextDontClip, text);
  }
  const QRect area = box.adjusted(-20, 0, 20, 0) & image.rect();
  for (int y = area.top(); y <= area.bottom(); ++y)
    for (int x = area.left(); x <= area.right(); ++x)
      if (Rgb(image, x, y) != Rgb(ref, x, y)) return false;
  return true;
}

TEST(PaintPlot, RadiographWidthLabelCountsTwoCentimetresEach) {
  const uint32_t colours[3] = {0x804020u, 0x208040u, 0x402080u};
  for (int count = 1; count <= 3; ++count) {
    Model model;
    StartCore(model);
    for (int i = 0; i < count; ++i) AddRadiograph(model, i, 150, 1500, colours[i]);
    const QImage image = Paint(model, 1000, 700);
    const Geometry g = Expect(model, 1000, 700);
    const int width = std::max(150 * g.plotHeight / 1500, 25), left = g.x0 + kGap;
    SCOPED_TRACE(count);
    for (int i = 0; i < count; ++i) EXPECT_EQ(Rgb(image, left + i * width + width / 2, g.y0 + 40), colours[i]);
    const QRect box(QPoint(left, g.y0 - g.ch), QPoint(left + count * width - 1, g.y0 - 1));
    EXPECT_TRUE(LabelMatches(image, box, QStringLiteral("%1 cm").arg(2 * count)));
    EXPECT_FALSE(LabelMatches(image, box, QStringLiteral("%1 cm").arg(2 * count + 2)));
  }
}

TEST(PaintPlot, OpticalColumnIsClampedBetweenAFortiethAndAnEighthOfThePage) {
  for (auto [opticalWidth, expected] : {std::pair{8, 1000 / 40}, {100, -1}, {1600, 1000 / 8}}) {
    Model model;
    StartCore(model);
    AddRadiograph(model, 0, 100, 1600, 0x606060u);
    AddOptical(model, opticalWidth, 1600, 0xC08040u);
    const QImage image = Paint(model, 1000, 700);
    const Geometry g = Expect(model, 1000, 700);
    if (expected < 0) expected = (opticalWidth - 1) * g.plotHeight / 1599;  // the natural width w0 * H / h0
    SCOPED_TRACE(opticalWidth);
    int run = 0;
    for (int x = g.x0 + kGap; x < 1000 && Rgb(image, x, g.mid) == 0xC08040u; ++x) ++run;
    EXPECT_EQ(run, expected);
    // The radiograph column follows one gap later.
    EXPECT_EQ(Rgb(image, g.x0 + kGap + expected + kGap + 1, g.mid), 0x606060u);
    EXPECT_EQ(Rgb(image, g.x0 + kGap + expected + kGap - 1, g.mid), kWhite);
  }
}

TEST(PaintPlot, OverlayCombinesPixelsByOrAndAndButPrintsAPlainCopy) {
  const uint32_t optical = 0x3050F0u, radiograph = 0x9C2A55u;
  const struct {
    bool orMode, printing;
    uint32_t expected;
  } cases[] = {{true, false, optical | radiograph}, {false, false, optical & radiograph}, {true, true, radiograph}};
  for (const auto& c : cases) {
    Model model;
    StartCore(model);
    AddRadiograph(model, 0, 100, 2000, radiograph);
    AddOptical(model, 100, 2000, optical);
    PlotState& p = model.Plot();
    p.OverlayOr = c.orMode;
    p.OverlayAnd = !c.orMode;
    if (c.printing) {
      p.Printing = 1;
      p.PageRect = {0, 0, 1000, 700};
    }
    const QImage image = Paint(model, 1000, 700);
    const Geometry g = Expect(model, 1000, 700);
    const int ow = std::clamp(99 * g.plotHeight / 1999, 25, 125);
    const int overlayLeft = g.x0 + kGap + ow + kGap;
    SCOPED_TRACE(testing::Message() << "or " << c.orMode << " printing " << c.printing);
    EXPECT_EQ(Rgb(image, g.x0 + kGap + ow / 2, g.mid), optical);
    EXPECT_EQ(Rgb(image, overlayLeft + ow / 2, g.mid), c.expected);
    EXPECT_EQ(Rgb(image, overlayLeft + ow + kGap + 2, g.mid), radiograph);
  }
}

TEST(PaintPlot, DisplayAllStacksSectionsByTheirFlooredLengths) {
  Model model;
  StartCore(model);
  AddRadiograph(model, 0, 100, 600, 0xAA0000u);
  model.Plot().SectionCount = 2;
  model.SelectSection(1);
  AddRadiograph(model, 0, 100, 400, 0x00AA00u);
  PlotState& p = model.Plot();
  p.ShowAllSections = 1;
  p.ShowDividers = 1;
  const QImage image = Paint(model, 1000, 700);
  const Geometry g = Expect(model, 1000, 700);
  EXPECT_FLOAT_EQ(p.LayoutSpan, 1000.0f);
  EXPECT_FLOAT_EQ(p.DepthSpan, 1000.0f);
  const int h0 = 600 * g.plotHeight / 1000, h1 = 400 * g.plotHeight / 1000;
  // Widths are summed over the sections, heights too.
  const int x = g.x0 + kGap + std::max(200 * (h0 + h1) / 1000, 25) / 2;
  EXPECT_EQ(Rgb(image, x, g.y0 + 1), 0xAA0000u);
  EXPECT_EQ(Rgb(image, x, g.y0 + h0 - 1), 0xAA0000u);
  EXPECT_EQ(Rgb(image, x, g.y0 + h0), 0x00AA00u);
  EXPECT_EQ(Rgb(image, x, g.y0 + h0 + h1 - 1), 0x00AA00u);
  // The divider between the sections crosses the plot outside the image column.
  EXPECT_EQ(Rgb(image, g.xr - 3, g.y0 + h0), kBlue);
  EXPECT_EQ(Rgb(image, g.xr - 3, g.y0 + h0 + 1), kWhite);
}

TEST(PaintPlot, DeepZoomScrolledToTheEndDrawsTheRowsThatBelongThere) {
  // 32 x 1100 pixels is a document beyond the 32768 the rasteriser guarantees.  Each
  // radiograph row carries its own number in red and green.
  constexpr int kRows = 4000, kW = 1000, kH = 1100, kZoom = 32;
  auto rowOf = [](uint32_t rgb) { return int((rgb >> 16) & 0xFF) | int((rgb >> 8) & 0xFF) << 8; };
  Model model;
  StartCore(model);
  AddRadiograph(model, 0, 60, kRows, [](int row) { return uint32_t((row & 0xFF) << 16 | ((row >> 8) & 0xFF) << 8 | 0x40); });
  model.Plot().ZoomFactor = kZoom;
  const int scroll = (kZoom - 1) * kH;
  const QImage image = Paint(model, kW, kH, scroll);
  const Geometry g = Expect(model, kW, kH, kZoom);
  ASSERT_GT(g.y0 + g.plotHeight, 32768);
  EXPECT_EQ(model.Plot().PlotHeight, g.plotHeight);
  const int x = g.x0 + kGap + 10;
  const int plotBottomDevice = g.y0 + g.plotHeight - scroll;
  ASSERT_GT(plotBottomDevice, 100);
  ASSERT_LE(plotBottomDevice, kH);
  for (int yd = 0; yd < plotBottomDevice; yd += 37) {
    const double expected = double(int64_t(yd) + scroll - g.y0) * kRows / g.plotHeight;
    EXPECT_NEAR(rowOf(Rgb(image, x, yd)), expected, 1.0) << "device row " << yd;
  }
  EXPECT_EQ(rowOf(Rgb(image, x, plotBottomDevice - 1)), kRows - 1);
  EXPECT_EQ(Rgb(image, x, plotBottomDevice), kWhite);
}

TEST(PaintPlot, InformationBlockHasThreeRowsOrFourWithCountTimeAndNoneWithoutRadiographData) {
  const struct {
    const char* countTime;
    int radiographDataSet, rows;
  } cases[] = {{"", kRadiographDataSet, 3}, {"20 s", kRadiographDataSet, 4}, {"", 0, 0}};
  for (const auto& c : cases) {
    Model model;
    StartCore(model);
    AddRadiograph(model, 0, 100, 900, 0x777777u);
    CopyField(model.CurSection().CountTimeText, c.countTime);
    model.Plot().RadiographDataSet = c.radiographDataSet;
    const QImage image = Paint(model, 1000, 700);
    const Geometry g = Expect(model, 1000, 700);
    // The rule above each row and the frame's bottom line.
    const int h = CharHeight(11, false) + 4;
    std::set<int> expected, found;
    for (int r = 0; r < c.rows; ++r) expected.insert(700 - (c.rows - r) * h);
    if (c.rows) expected.insert(699);
    for (int y = g.y0 + g.plotHeight + 1; y < 700; ++y)
      if (Rgb(image, g.x0 + 2, y) != kWhite) found.insert(y);
    EXPECT_EQ(found, expected) << "count time '" << c.countTime << "', data set " << c.radiographDataSet;
  }
}

TEST(PaintPlot, ImagesAreConvertedAgainOnlyWhenTheirBitsOrTheViewChange) {
  Model model;
  StartCore(model);
  AddRadiograph(model, 0, 80, 800, 0x101010u);
  Paint(model, 600, 400);
  const uint64_t first = DisplayConversionCount(model);
  EXPECT_GE(first, 1u);
  Paint(model, 600, 400);
  EXPECT_EQ(DisplayConversionCount(model), first) << "the same view again converts nothing";
  model.Plot().ZoomFactor = 4;
  Paint(model, 600, 400, 500);
  EXPECT_EQ(DisplayConversionCount(model), first + 1) << "another part of the image";
  FillDib(model.CurRadiograph().Bitmap, 80, 800, 0xEEEEEEu);
  const QImage image = Paint(model, 600, 400, 500);
  EXPECT_EQ(DisplayConversionCount(model), first + 2) << "new bits";
  const Geometry g = Expect(model, 600, 400, 4);
  EXPECT_EQ(Rgb(image, g.x0 + kGap + 5, 200), 0xEEEEEEu);
}

TEST(PaintPlot, PlotOfDataSetInvertsTheMapButNeverNamesTheMask) {
  Model model;
  StartCore(model);
  AddRadiograph(model, 0, 50, 500, 0x555555u);
  model.Plot().DataSetCount = 3;
  const int plotted[3] = {2, 1, 5};  // set 1 is the mask: no entry
  std::copy(plotted, plotted + 3, model.App.Settings.DataSetOfPlot);
  model.App.PlotOfDataSet[40] = 7;
  Paint(model, 500, 400);
  EXPECT_EQ(model.App.PlotOfDataSet[1], 0);
  EXPECT_EQ(model.App.PlotOfDataSet[4], 2);
  EXPECT_EQ(model.App.PlotOfDataSet[0], 0);
  EXPECT_EQ(model.App.PlotOfDataSet[40], 0);
}

}  // namespace
}  // namespace sedra::test
