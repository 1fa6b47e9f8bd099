// PaintPlot into 96-dpi images: colours at the positions of the layout it returns (the
// layout's own arithmetic is tested in plot_layout_test.cpp), labels, overlays,
// stacking and deep zoom.

#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <tuple>

#include "images/draw/display_image.h"
#include "plot_fixture.h"

namespace sedra::test {
namespace {

constexpr uint32_t kWhite = 0xFFFFFF;
constexpr uint32_t kBlue = 0x0000FF;  // the default axis colour 0xFF0000 (BGR)

TEST(PaintPlot, NothingToShowPaintsOnlyTheBackground) {
  Model model;
  StartCore(model);
  model.Plot().ColumnLeft = 321;
  model.Plot().PlotHeight = 77;
  EXPECT_TRUE(Blank(Paint(model, 320, 200))) << "nothing loaded";
  // Only the page is laid out; the columns keep their places.
  const PlotState& p = model.Plot();
  EXPECT_EQ(std::tuple(p.DepthSpan, p.PageWidth, p.ColumnLeft, p.PlotHeight), std::tuple(0.0f, 320, 321, 77));
  AddRadiograph(model, 0, 40, 300, 0x123456u);
  model.Plot().SectionLength[0] = std::nanf("");
  EXPECT_TRUE(Blank(Paint(model, 200, 150))) << "undefined span";
  // Degenerate targets paint without failing.
  model.Plot().SectionLength[0] = 300;
  for (QSize size : {QSize(1, 1), QSize(3, 500), QSize(500, 3)}) EXPECT_FALSE(Paint(model, size.width(), size.height()).isNull());
  QImage null;
  QPainter painter(&null);  // not active: nothing to paint on
  PaintPlot(model, painter, PaintTarget{});
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

TEST(PaintPlot, AxesAndRadiographsSideBySideUnderTheirWidthLabel) {
  // Each radiograph counts 2 cm in the label, whatever its pixels say.
  const uint32_t colours[3] = {0x804020u, 0x208040u, 0x402080u};
  for (int count = 1; count <= 3; ++count) {
    SCOPED_TRACE(count);
    Model model;
    StartCore(model);
    for (int i = 0; i < count; ++i) AddRadiograph(model, i, 150, 1500, colours[i]);
    PlotLayout l;
    const QImage image = Paint(model, 1000, 700, 0, &l);
    const int mid = l.Y0 + l.PlotHeight / 2, bottom = l.Y0 + l.PlotHeight;
    // The depth axis down the left edge and the top axis across to the right margin.
    EXPECT_EQ(Rgb(image, l.X0, mid + 1), kBlue);
    EXPECT_EQ(Rgb(image, (l.X0 + l.XRight) / 2, l.Y0), kBlue);
    EXPECT_EQ(Rgb(image, l.XRight + 2, l.Y0), kWhite);
    const int left = l.RadiographLeft, width = l.RadiographWidth, right = left + count * width;
    for (int i = 0; i < count; ++i)
      for (int x : {left + i * width, left + i * width + width / 2, left + (i + 1) * width - 1})
        EXPECT_EQ(Rgb(image, x, mid), colours[i]) << x;
    EXPECT_EQ(Rgb(image, left - 1, mid), kWhite);
    EXPECT_EQ(Rgb(image, right, mid), kWhite);
    EXPECT_EQ(Rgb(image, left + width / 2, bottom - 1), colours[0]);
    EXPECT_EQ(Rgb(image, left + width / 2, bottom), kWhite);
    const QRect box(QPoint(left, l.Y0 - l.CharHeight), QPoint(right - 1, l.Y0 - 1));
    EXPECT_TRUE(LabelMatches(image, box, QStringLiteral("%1 cm").arg(2 * count)));
    EXPECT_FALSE(LabelMatches(image, box, QStringLiteral("%1 cm").arg(2 * count + 2)));
  }
}

TEST(PaintPlot, OpticalColumnOverlayAndRadiographFollowEachOther) {
  // The optical column keeps at least a fortieth of the page (25 pixels here; the
  // eighth it keeps at most is checked in plot_layout_test.cpp).  The overlay combines its pixels with the radiograph's by OR or AND
  // on screen, and a printout gets a plain copy of the radiograph.
  const uint32_t optical = 0x3050F0u, radiograph = 0x9C2A55u;
  const struct {
    int opticalWidth, clampedTo;  // 0: not clamped
    bool orMode, andMode, printing;
    uint32_t overlay;             // 0: no overlay column
  } cases[] = {{8, 25, false, false, false, 0},
               {100, 0, true, false, false, optical | radiograph},
               {100, 0, false, true, false, optical & radiograph},
               {100, 0, true, false, true, radiograph}};
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.opticalWidth << " or " << c.orMode << " and " << c.andMode << " printing "
                                    << c.printing);
    Model model;
    StartCore(model);
    AddRadiograph(model, 0, 100, 1600, radiograph);
    AddOptical(model, c.opticalWidth, 1600, optical);
    PlotState& p = model.Plot();
    p.OverlayOr = c.orMode;
    p.OverlayAnd = c.andMode;
    if (c.printing) {
      p.Printing = 1;
      p.PageRect = {0, 0, 1000, 700};
    }
    PlotLayout l;
    const QImage image = Paint(model, 1000, 700, 0, &l);
    const int mid = l.Y0 + l.PlotHeight / 2;
    if (c.clampedTo) {
      EXPECT_EQ(l.OpticalWidth, c.clampedTo);
    }
    int run = 0;
    for (int x = l.OpticalLeft; x < 1000 && Rgb(image, x, mid) == optical; ++x) ++run;
    EXPECT_EQ(run, l.OpticalWidth);
    EXPECT_EQ(Rgb(image, l.OpticalLeft - 1, mid), kWhite);
    EXPECT_EQ(l.OverlayShown, c.overlay != 0);
    if (c.overlay) {
      EXPECT_EQ(Rgb(image, l.OverlayLeft + l.OpticalWidth / 2, mid), c.overlay);
    }
    EXPECT_EQ(Rgb(image, l.RadiographLeft + 1, mid), radiograph);
    EXPECT_EQ(Rgb(image, l.RadiographLeft - 1, mid), kWhite);
  }
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
  PlotLayout l;
  const QImage image = Paint(model, kW, kH, scroll, &l);
  ASSERT_GT(l.Y0 + l.PlotHeight, 32768);
  EXPECT_EQ(model.Plot().PlotHeight, l.PlotHeight) << "the rest of the program sees the layout drawn";
  const int x = l.RadiographLeft + 10;
  const int plotBottomDevice = l.Y0 + l.PlotHeight - scroll;
  ASSERT_GT(plotBottomDevice, 100);
  ASSERT_LE(plotBottomDevice, kH);
  for (int yd = 0; yd < plotBottomDevice; yd += 37) {
    const double expected = double(int64_t(yd) + scroll - l.Y0) * kRows / l.PlotHeight;
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
    PlotLayout l;
    const QImage image = Paint(model, 1000, 700, 0, &l);
    // The rule above each row and the frame's bottom line.
    const int h = CharHeight(11, false) + 4;
    std::set<int> expected, found;
    for (int r = 0; r < c.rows; ++r) expected.insert(700 - (c.rows - r) * h);
    if (c.rows) expected.insert(699);
    for (int y = l.Y0 + l.PlotHeight + 1; y < 700; ++y)
      if (Rgb(image, l.X0 + 2, y) != kWhite) found.insert(y);
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
  PlotLayout l;
  const QImage image = Paint(model, 600, 400, 500, &l);
  EXPECT_EQ(DisplayConversionCount(model), first + 2) << "new bits";
  EXPECT_EQ(Rgb(image, l.RadiographLeft + 5, 200), 0xEEEEEEu);
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
