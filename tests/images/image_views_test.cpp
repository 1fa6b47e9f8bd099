// The image windows' arithmetic: where a window stands, how its pixels map to image
// columns and rows, and the rectangle dragged on the radiograph.

#include "images/image_views.h"

#include <gtest/gtest.h>

#include <tuple>

namespace sedra {
namespace {

auto Tie(const IntRect& r) { return std::tie(r.Left, r.Top, r.Right, r.Bottom); }

TEST(RadiographView, TwiceTheImagesWidthLeftOfTheDialog) {
  RadiographDesc rad{};
  rad.Width = 500;
  rad.Height = 6900;
  const RadiographView v = LayOutRadiographView(rad, 700, 1400, 2);
  EXPECT_FLOAT_EQ(v.ViewScale, 10.0f) << "6900 rows over 690 pixels";
  EXPECT_EQ(std::tuple(v.DrawnWidth, v.WindowX, v.WindowWidth, v.WindowHeight),
            std::tuple(1000, 1400 - 1000 - 25, 1004, 694));
  EXPECT_EQ(Tie(v.ViewRect), std::tuple(0, 0, 999, 689));
  // Shown 1000 wide (ViewRect right 999): x 500 is column 500 x 500 / 999 = 250.
  rad.ViewRect = v.ViewRect;
  rad.ViewScale = v.ViewScale;
  EXPECT_EQ(std::pair(ColumnAt(rad, 500), ColumnAt(rad, 999)), std::pair(250, 500));
}

TEST(OpticalView, HeightFollowsTheZoomAndTheCropIsScaledByTheHeight) {
  OpticalImageDesc opt{};
  opt.Width = 240;
  opt.Height = 1551;
  std::tie(opt.CropLeft, opt.CropTop, opt.CropRight, opt.CropBottom) = std::tuple(10, 20, 239, 1550);
  const OpticalView v = LayOutOpticalView(opt, 710, 2, 1);
  EXPECT_EQ(std::tuple(v.AvailableHeight, v.DrawnHeight, v.DrawnWidth), std::tuple(700, 2 * 698, 240 * 1396 / 1551));
  EXPECT_EQ(std::pair(v.WindowWidth, v.WindowX), std::pair(v.DrawnWidth + 2, v.DrawnWidth + 2 + 50));
  // Each edge times 700 / 1550, rounded down, across as well as along.
  EXPECT_EQ(Tie(v.Focus), std::tuple(4, 9, 107, 700));
}

TEST(RegionRectangle, StartHitMoveAndCommit) {
  EXPECT_EQ(Tie(StartRegionRect(1, 1)), std::tuple(0, 0, 1, 1));
  EXPECT_EQ(Tie(StartRegionRect(0, 2)), std::tuple(0, 0, 1, 2));
  EXPECT_EQ(Tie(StartRegionRect(40, 30)), std::tuple(38, 28, 40, 30));

  const IntRect edit{100, 100, 200, 160};
  struct Row {
    int X, Y, Edges;
  } rows[] = {
      {96, 130, kEdgeLeft},    {105, 130, kEdgeLeft},   {106, 130, 0},           {195, 130, kEdgeRight},
      {204, 130, kEdgeRight},  {205, 130, 0},           {150, 95, kEdgeTop},     {150, 164, kEdgeBottom},
      {100, 100, kEdgeLeft | kEdgeTop}, {150, 130, 0}, {94, 130, 0},
  };
  for (const Row& r : rows) EXPECT_EQ(HitRegionEdges(edit, r.X, r.Y), r.Edges) << r.X << "," << r.Y;
  // A narrow rectangle keeps a middle: its inner edges are only half its width in.
  EXPECT_EQ(HitRegionEdges({100, 100, 104, 160}, 102, 130), kEdgeLeft);
  EXPECT_EQ(HitRegionEdges({100, 100, 104, 160}, 103, 130), kEdgeRight);
  IntRect moved = edit;
  MoveRegionEdges(moved, kEdgeRight | kEdgeBottom, 250, 300);
  EXPECT_EQ(Tie(moved), std::tuple(100, 100, 250, 300));

  RadiographDesc rad{};
  rad.Width = 500;
  rad.Height = 6900;
  rad.ViewRect = {0, 0, 999, 689};
  rad.ViewScale = 10.0f;
  ASSERT_TRUE(CommitRegion(rad, 3, {-4, 20, 500, 700}));
  const RadiographRegion& r3 = rad.Regions[3];
  EXPECT_EQ(std::tie(r3.X1, r3.Y1, r3.X2, r3.Y2), std::tuple(0, 200, 250, 6900)) << "limited to the image";
  EXPECT_EQ(Tie(EditRectOfRegion(rad, 3)), std::tuple(0, 20, 499, 690));
  EXPECT_FALSE(CommitRegion(rad, 4, {-10, 0, 1, 5})) << "ends at column 0: left undefined";
  EXPECT_EQ(Tie(EditRectOfRegion(rad, 4)), std::tuple(0, 0, 0, 0));
  EXPECT_EQ(Tie(DataRegionMarker(rad, 100, 400)), std::tuple(199, 0, 799, 689));
}

}  // namespace
}  // namespace sedra
