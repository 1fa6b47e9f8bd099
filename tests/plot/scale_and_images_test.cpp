// The depth scale's ticks and labels, the layout-unit conversions, and the radiograph
// band drawing on its own (the stretch beneath it is checked in display_equivalence_test.cpp).

#include <gtest/gtest.h>

#include <tuple>

#include "images/draw/image_draw.h"
#include "plot/depth_scale.h"
#include "plot_fixture.h"

namespace sedra::test {
namespace {

constexpr uint32_t kWhite = 0xFFFFFF;
constexpr uint32_t kBlue = 0x0000FF;

// True when any pixel of the rectangle has the text colour (black).
bool HasText(const QImage& image, QRect r) {
  r &= image.rect();
  for (int y = r.top(); y <= r.bottom(); ++y)
    for (int x = r.left(); x <= r.right(); ++x)
      if (Rgb(image, x, y) == 0) return true;
  return false;
}

// A 1000 x 700 plot of a core `length` mm long (one point per mm), ticks every 10 mm.
QImage PaintScale(Model& model, int length, int zoom, int tick = 10) {
  StartCore(model);
  AddRadiograph(model, 0, 50, length, 0x777777u);
  model.Plot().DepthTick = tick;
  model.Plot().ZoomFactor = zoom;
  return Paint(model, 1000, 700);
}

TEST(DepthScale, TicksEveryTickSpacingMajorEveryFifthUnzoomedEveryOneZoomed) {
  // 200 mm over about 600 rows leaves label boxes far apart; 1000 mm at 200% puts
  // the 10 mm ticks closer than one character height, so only every other is labelled.
  const struct {
    int length, zoom, depth;  // mm of core, zoom, depth of the tick in mm
    bool major, labelled;
  } cases[] = {{200, 1, 10, false, false}, {200, 1, 50, true, true},    {200, 1, 140, false, false},
               {200, 2, 30, true, true},   {1000, 2, 10, true, false}, {1000, 2, 20, true, true}};
  for (const auto& c : cases) {
    Model model;
    const QImage image = PaintScale(model, c.length, c.zoom);
    const PlotState& p = model.Plot();
    const int x0 = p.LeftMargin, y0 = p.TopMargin;
    const float scale = float(p.PlotHeight) / float(c.length);
    const int y = y0 + int(std::floor(float(c.depth) * scale));
    SCOPED_TRACE(testing::Message() << c.length << " mm, zoom " << c.zoom << ", depth " << c.depth);
    ASSERT_LT(y, 690);
    // Minor ticks are 96/32 = 3 pixels long, major ones (96/32*3)/2 = 4; both point
    // into the plot from the axis.  Between ticks nothing.
    EXPECT_EQ(Rgb(image, x0 + 2, y), kBlue);
    EXPECT_EQ(Rgb(image, x0 + 3, y), c.major ? kBlue : kWhite);
    EXPECT_EQ(Rgb(image, x0 + 4, y), kWhite);
    EXPECT_EQ(Rgb(image, x0 + 2, y0 + int(std::floor(float(c.depth + 5) * scale))), kWhite);
    // Labels sit in the margin left of the axis, centred on their tick.
    EXPECT_EQ(HasText(image, QRect(0, y - 3, x0 - 1, 7)), c.labelled) << "label";
  }
}

TEST(DepthScale, CaptionAppearsOnlyWhenALabelIsBelowTheTop) {
  // With labels every 50 mm of a 1000 mm core the 50 label lies well below the top; a
  // 10 000 mm spacing leaves only the 0 label, and no caption.
  for (int tick : {10, 10000}) {
    Model model;
    const QImage image = PaintScale(model, 1000, 1, tick);
    EXPECT_EQ(HasText(image, QRect(0, 0, model.Plot().LeftMargin, 2 * model.Plot().CharHeight)), tick == 10);
  }
}

TEST(LayoutUnits, ConversionsAndTheirKeptAsymmetry) {
  PlotState p{};
  p.PageRect = {0, 0, 1000, 700};
  p.LeftMargin = 51;
  p.TopMargin = 38;
  p.PlotHeight = 600;
  p.ColumnLeft = 351;  // 300 pixels right of x0 = 51
  p.LayoutSpan = 1200;
  // {PageRect.top, y, LayoutFromY(y), YFromLayout of that}: YFromLayout adds the page
  // top that LayoutFromY ignores, so it is the inverse only at top 0.
  for (auto [top, y, layoutY, yBack] : {std::tuple{0, 338, 600, 338}, {0, 38, 0, 38}, {0, 37, -2, 37}, {100, 338, 600, 438}}) {
    p.PageRect.Top = top;
    EXPECT_EQ(LayoutFromY(p, y), layoutY);
    EXPECT_EQ(YFromLayout(p, layoutY), yBack);
  }
  p.PageRect.Top = 0;
  EXPECT_EQ(LayoutFromX(p, 201), 600);
  EXPECT_EQ(XFromLayout(p, 600), 201);
  EXPECT_EQ(LayoutFromX(p, 50), -4);
  p.LayoutSpan = 0;
  EXPECT_EQ(YFromLayout(p, 123), 123);
  EXPECT_EQ(XFromLayout(p, 77), 77);
}

TEST(ImageDrawing, RadiographsSideBySideWithOffsetAndHeightScaleUnlessTheContrastDialogOwnsThem) {
  Model model;
  StartCore(model);
  const uint32_t colours[3] = {0xAA1100u, 0x11AA00u, 0x0011AAu};
  for (int i = 0; i < 3; ++i) AddRadiograph(model, i, 40, 400, colours[i]);
  for (auto& r : model.CurSection().Radiographs) {
    r.TopOffset = 5;
    r.HeightScale = 0.5f;
  }
  model.Plot().ZoomFactor = 2;
  int drawn = 0;
  auto draw = [&] {
    QImage image = MakeImage(400, 300);
    image.fill(Qt::white);
    QPainter painter(&image);
    drawn = DrawRadiographs(DrawSurface{&painter, 0, image.rect()}, model, 0, 10, 20, 120, 200);
    return image;
  };
  const QImage image = draw();
  EXPECT_EQ(drawn, 3);
  // Band top 20, shifted by zoom x TopOffset = 10, half the band's 200 rows drawn.
  for (int i = 0; i < 3; ++i) {
    const int left = 10 + 120 * i, x = left + 60;
    SCOPED_TRACE(i);
    EXPECT_EQ(Rgb(image, x, 29), kWhite);
    EXPECT_EQ(Rgb(image, x, 30), colours[i]);
    EXPECT_EQ(Rgb(image, x, 129), colours[i]);
    EXPECT_EQ(Rgb(image, x, 130), kWhite);
    EXPECT_EQ(Rgb(image, left, 60), colours[i]);
    const IntRect& view = model.CurSection().Radiographs[size_t(i)].ViewRect;
    EXPECT_EQ(std::tie(view.Left, view.Top, view.Right, view.Bottom), std::tuple(left, 30, left + 119, 129));
  }
  EXPECT_EQ(Rgb(image, 370, 60), kWhite);
  // Nothing is drawn while the contrast dialog owns the radiograph.
  model.Plot().RadContrastOpen = 1;
  const QImage hidden = draw();
  for (int y = 0; y < 300; y += 10) EXPECT_EQ(Rgb(hidden, 70, y), kWhite) << y;
}

}  // namespace
}  // namespace sedra::test
