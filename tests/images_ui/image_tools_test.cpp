// The size, position and data-region dialogs on a bare host, how every image dialog
// ends (which ends mark the plot modified), and what happens when the core is emptied
// or another tool opens while one is open.

#include <gtest/gtest.h>

#include <QPointer>

#include "image_fixture.h"
#include "images/ui/data_region_dialog.h"
#include "images/ui/image_size_dialogs.h"
#include "images/ui/image_windows.h"
#include "images/ui/optical_contrast_dialog.h"
#include "images/ui/rad_contrast_dialog.h"
#include "images/ui/up_down.h"

namespace sedra::test {
namespace {


// A section with both images: a 200 x 1000 radiograph and a 40 x 1000 optical image,
// labelled from 100 mm.
void LoadBoth(Model& m) {
  LoadRadiograph(m, 200, 1000, [](int x, int y) { return uint16_t(x + y); }, 0, 1200);
  LoadOptical(m, 40, 1000);
  m.CurSection().StartLabelDepth = 100;
}

// A bare host with both images loaded.
class ImageTools : public ::testing::Test {
 protected:
  void SetUp() override { LoadBoth(host.M); }
  ToolHost host;
};

TEST_F(ImageTools, OpticalSizeDialogSpinRangesAndTheBottomFollowingTheTop) {
  OpticalImageDesc& opt = host.M.CurOptical();
  std::tie(opt.OpticalTop, opt.OpticalLength) = std::pair(20, 30);
  opt.DrawnRect = {10, 40, 50, 640};
  OpticalSizeDialog* d = ShowTool<OpticalSizeDialog>(host);
  const PlotState& plot = host.M.Plot();
  EXPECT_EQ(std::tie(plot.ImageSizeMode, plot.OpticalPosMode, plot.Tracking), std::tuple(1u, 1u, 1u));
  EXPECT_EQ(plot.TrackRect.Bottom, 640) << "the band is the image as drawn";
  EXPECT_EQ(std::tuple(Text(d, 1476), Text(d, 1478)), std::tuple("120", "150"));
  auto* top = Control<UpDown>(d, 1512);
  EXPECT_EQ(std::tuple(top->Lower(), top->Upper()), std::tuple(-380, 620));
  EXPECT_EQ(std::tuple(Control<UpDown>(d, 1513)->Lower(), Control<UpDown>(d, 1513)->Upper()), std::tuple(75, 300));

  top->Click(true);  // the bottom moves with the top
  EXPECT_EQ(std::tuple(opt.OpticalTop, opt.OpticalLength, Text(d, 1478)), std::tuple(21, 30, "151"));
  // Typed after a spin: applied once, the bottom moving by the same amount.
  Type(d, 1476, "200");
  EXPECT_EQ(std::tuple(opt.OpticalTop, Text(d, 1478)), std::tuple(100, "230"));
  Type(d, 1476, "300");
  EXPECT_EQ(opt.OpticalTop, 100) << "typing alone is not applied";
  // The mouse dragged the band and wrote both depths: taken as they are.
  d->SetControlText(1476, "130");
  d->SetControlText(1478, "190");
  d->TrackChanged();
  EXPECT_EQ(std::tuple(opt.OpticalTop, opt.OpticalLength, Text(d, 1478)), std::tuple(30, 60, "190"));
}

TEST_F(ImageTools, DataRegionDialogSpinsTypingDragsAndTheCurveFollowing) {
  PlotState& plot = host.M.Plot();
  plot.DataRegionLeft = 40;
  plot.DataRegionRight = 160;
  DataRegionDialog* d = ShowTool<DataRegionDialog>(host);
  RadiographDesc& rad = host.M.CurRadiograph();
  RadImageWindow& window = RadImageWindow::Of(host);
  // The window shows the image 400 wide (ViewRect right 399): the band at 40 x 399 / 200.
  EXPECT_EQ(std::tuple(rad.EditRect.Left, rad.EditRect.Right, rad.EditRect.Bottom), std::tuple(79, 319, 589));
  auto* right = Control<UpDown>(d, 1513);
  EXPECT_EQ(std::tuple(right->Lower(), right->Upper()), std::tuple(200, 1)) << "counted from the far edge";
  plot.NeedLayout = 0;
  right->Click(true);  // up: toward column 1; the curve is summed over the new band
  EXPECT_EQ(std::tuple(plot.DataRegionRight, rad.EditRect.Right, plot.NeedLayout),
            std::tuple(159, 159 * 399 / 200, 1u));
  Type(d, 1481, "left");
  EXPECT_EQ(plot.DataRegionLeft, 40) << "text that is not a number leaves the band";
  // Dragging the band's left side on the window sets the column at once.
  for (int x = 79; x <= 100; x += 3) window.OnMouseMove(x, 300, true);
  EXPECT_EQ(std::tuple(plot.DataRegionLeft, Text(d, 1481)), std::tuple(100 * 200 / 399, "50"));
  // "Finished" with the right edge typed left of the left one: pushed to left + 1.
  Type(d, 1482, "10");
  Click(d, 1);
  EXPECT_EQ(std::tuple(plot.DataRegionLeft, plot.DataRegionRight, rad.EditRect.Right), std::tuple(50, 51, 0));
}

template <typename T>
ToolDialog* Open(ToolHost& host) { return ShowTool<T>(host); }

// How each image dialog ends, and whether that marks the plot modified.
TEST(ImageDialogs, EveryEndClearsTheModesAndOnlyTheStatedOnesMarkTheModified) {
  struct Row {
    const char* What;
    ToolDialog* (*Open)(ToolHost&);
    int Button;  // 0: the close box
    uint32_t Modified;
  } rows[] = {
      {"203 OK", Open<OpticalContrastDialog>, 1026, 1},    {"203 close box", Open<OpticalContrastDialog>, 0, 0},
      {"202 OK", Open<RadContrastDialog>, 1026, 1},        {"202 Cancel", Open<RadContrastDialog>, 2, 0},
      {"206 Finished", Open<OpticalSizeDialog>, 1, 1},     {"206 Cancel", Open<OpticalSizeDialog>, 2, 0},
      {"123 Finished", Open<RadiographSizeDialog>, 1, 1},  {"123 Cancel", Open<RadiographSizeDialog>, 2, 1},
      {"208 Finished", Open<DataRegionDialog>, 1, 1},      {"208 Cancel", Open<DataRegionDialog>, 2, 0},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.What);
    ToolHost host;
    LoadBoth(host.M);
    QPointer<ToolDialog> d = r.Open(host);
    r.Button ? Click(d, r.Button) : void(d->close());
    Flush();
    const PlotState& p = host.M.Plot();
    EXPECT_EQ(std::tuple(d.isNull(), host.Tool == nullptr, p.Modified, p.TrackRect.Right),
              std::tuple(true, true, r.Modified, 0));
    EXPECT_EQ(p.Tracking + p.ImageSizeMode + p.OpticalPosMode + p.DataRegionMode + p.RadContrastOpen, 0u);
    EXPECT_FALSE(RadImageWindow::Of(host).isVisible() || ImageWindow::Of(host).isVisible());
  }
}

TEST_F(ImageTools, RadiographSizeDialogCancelPutsTheBandBack) {
  RadiographDesc& rad = host.M.CurRadiograph();
  PlotState& plot = host.M.Plot();
  rad.DestRect = {300, 50, 420, 650};
  rad.ViewRect = {300, 50, 419, 649};
  rad.TopOffset = 3;
  RadiographSizeDialog* d = ShowTool<RadiographSizeDialog>(host);
  EXPECT_EQ(std::tuple(plot.TrackRect.Left, plot.TrackRect.Right), std::tuple(300, 419));
  // What the mouse does meanwhile.
  rad.HeightScale = 0.5f;
  rad.TopOffset = 40;
  plot.RadiographWidth = 77;
  Click(d, 2);
  EXPECT_EQ(std::tuple(rad.HeightScale, rad.TopOffset, plot.RadiographWidth), std::tuple(1.0f, 3, 120));
}

TEST_F(ImageTools, NewOrAnotherToolEndsTheOpenOneWithoutTouchingTheNewData) {
  QPointer<ToolDialog> contrast = ShowTool<RadContrastDialog>(host);
  // Another tool: the first ends as its close box ends it, keeping what it set.
  host.M.CurRadiograph().Regions[0].Upper = 900;
  QPointer<ToolDialog> region = ShowTool<DataRegionDialog>(host);
  Flush();
  EXPECT_EQ(std::tuple(contrast.isNull(), host.M.Plot().RadContrastOpen, host.M.CurRadiograph().Regions[0].Upper),
            std::tuple(true, 0u, 900));
  EXPECT_TRUE(RadImageWindow::Of(host).isVisible()) << "the data-region dialog shows it again";
  // New empties the core under the open dialog: it ends, and a late "Cancel" has no
  // dialog to reach.
  ASSERT_TRUE(NewCore(host.M, &host.Prompt));
  Flush();
  EXPECT_EQ(std::tuple(region.isNull(), host.M.Plot().DataRegionMode, RadImageWindow::Of(host).isVisible()),
            std::tuple(true, 0u, false));
  // A radiograph read while the size dialog is open.
  LoadBoth(host.M);
  host.M.CurOptical().OpticalTop = 20;
  QPointer<ToolDialog> size = ShowTool<OpticalSizeDialog>(host);
  Type(size, 1476, "400");
  LoadOptical(host.M, 60, 500);
  host.M.NotifyImagesReplaced();
  Flush();
  EXPECT_TRUE(size.isNull());
  EXPECT_EQ(host.M.CurOptical().OpticalTop, 0) << "the new image keeps its own placement";
}

}  // namespace
}  // namespace sedra::test
