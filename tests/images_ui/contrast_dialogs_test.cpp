// The two contrast dialogs driven through their controls on a bare host: regions,
// "Auto", "Clear", "Cancel", the spins, the trackbars and the histogram markers.

#include <gtest/gtest.h>

#include <QPointer>
#include <QRadioButton>
#include <QSlider>
#include <cstring>

#include "image_fixture.h"
#include "images/ui/histogram_view.h"
#include "images/ui/image_windows.h"
#include "images/ui/optical_contrast_dialog.h"
#include "images/ui/rad_contrast_dialog.h"
#include "images/ui/up_down.h"
#include "model/messages.h"

namespace sedra::test {
namespace {


// A drag with the left button held from (x0, y0) to (x1, y1) in steps of a few pixels,
// as the mouse reports it.
void Drag(RadImageWindow& window, int x0, int y0, int x1, int y1) {
  const int steps = std::max(std::abs(x1 - x0), std::abs(y1 - y0)) / 3 + 1;
  for (int k = 1; k <= steps; ++k) window.OnMouseMove(x0 + (x1 - x0) * k / steps, y0 + (y1 - y0) * k / steps, true);
}

// 100 x 100 samples, each row one value (0..99), window 5..60: "Auto" on region 0, whose
// far row and column are not counted, gives 0 and 98.
class RadiographContrast : public ::testing::Test {
 protected:
  void SetUp() override { LoadRadiograph(host.M, 100, 100, [](int, int y) { return uint16_t(y); }, 5, 60); }
  ToolHost host;
  RadiographDesc& rad = host.M.CurRadiograph();
};

TEST_F(RadiographContrast, CancelPutsBackAllEightRegionsAfterAutoEditsAndDrags) {
  rad.Regions[6] = {10, 10, 50, 50, 30, 40};
  rad.CurRegion = 6;
  const RadiographDesc before = rad;
  QPointer<RadContrastDialog> d = ShowTool<RadContrastDialog>(host);
  EXPECT_EQ(rad.CurRegion, 0) << "the dialog starts on the remainder of the radiograph";
  EXPECT_EQ(Text(d, 1030), "5");
  EXPECT_EQ(d->windowTitle(), "Region 0, X: 0 0, Y: 0 0");

  Click(d, 1445);  // Auto
  EXPECT_EQ(std::tuple(rad.Regions[0].Lower, rad.Regions[0].Upper, Text(d, 1031)), std::tuple(0, 98, "98"));

  // A region cannot be chosen before the radiograph window has painted.
  Click(d, 1388);
  EXPECT_EQ(rad.CurRegion, 0);
  EXPECT_TRUE(Control<QRadioButton>(d, 1384)->isChecked());
  RadImageWindow& window = RadImageWindow::Of(host);
  window.grab();
  ASSERT_FLOAT_EQ(rad.ViewScale, 100.0f / 590) << "600-pixel client less 10";
  Click(d, 1388);
  EXPECT_EQ(rad.CurRegion, 4);

  // Drag a region 4 on the window from (1, 1), the bottom right corner following:
  // committed in image pixels.
  window.OnButtonDown();
  window.OnMouseMove(1, 1, true);
  Drag(window, 1, 1, 99, 296);
  EXPECT_EQ(d->windowTitle(), "Region 4, X: 0 99, Y: 0 296");
  window.OnButtonUp();
  EXPECT_EQ(std::tuple(rad.Regions[4].X2, rad.Regions[4].Y2), std::tuple(100 * 99 / 199, 50));
  EXPECT_EQ(host.M.Plot().RadWndCapture, 0u);

  Type(d, 1030, "1234");
  Type(d, 1031, "no number");
  Click(d, 1203);
  // Text that is not a number leaves the value.
  EXPECT_EQ(std::tuple(rad.Regions[4].Lower, rad.Regions[4].Upper), std::tuple(1234, 98));
  Click(d, 1519);  // Clear
  EXPECT_EQ(rad.Regions[4].X2, 0);

  Click(d, 2);  // Cancel
  Flush();
  EXPECT_TRUE(d.isNull());
  EXPECT_EQ(0, std::memcmp(rad.Regions, before.Regions, sizeof rad.Regions));
  EXPECT_EQ(rad.CurRegion, 0) << "as it was when the dialog opened";
}

TEST_F(RadiographContrast, RegionDragNeedsARegionAndClearNeedsAUserRegion) {
  RadContrastDialog* d = ShowTool<RadContrastDialog>(host);
  RadImageWindow& window = RadImageWindow::Of(host);
  window.OnMouseMove(30, 30, true);
  EXPECT_EQ(host.Prompt.Texts(), std::vector<std::string>{msg::kSelectRegionFirst});
  EXPECT_EQ(host.Prompt.Messages[0].Caption, "");
  EXPECT_EQ(rad.EditRect.Right, 0);
  const RadiographDesc before = rad;
  Click(d, 1519);  // Clear with region 0: nothing
  EXPECT_EQ(0, std::memcmp(rad.Regions, before.Regions, sizeof rad.Regions));
  // A rectangle of no height is not committed: the region stays undefined.
  window.grab();
  Click(d, 1386);
  window.OnButtonDown();
  window.OnMouseMove(0, 0, true);
  window.OnButtonUp();
  EXPECT_EQ(rad.Regions[2].X2, 0);
  EXPECT_EQ(host.M.Plot().RadWndCapture, 1u) << "the drag goes on";
  // On out of the window past its far corner: limited to the image.
  Drag(window, 1, 0, 500, 900);
  window.OnButtonUp();
  EXPECT_EQ(std::tie(rad.Regions[2].X2, rad.Regions[2].Y2), std::tuple(100, 100));
}

TEST_F(RadiographContrast, MarkersSpinsAndTheSwappedCountBoxes) {
  // Region 0 counts rows 0..98 and columns 0..98: 99 of each value 0..98.
  RadContrastDialog* d = ShowTool<RadContrastDialog>(host);
  auto* view = Control<HistogramView>(d, 1459);
  // Upper 60: range 90 in bars of 1 over the frame's width.
  const float perBar = float(view->width() - 1) / 90;
  EXPECT_EQ(Text(d, 1518), "99") << "the count under Lower";
  emit view->Mouse(HistogramView::MouseKind::Move, QPoint(int(30 * perBar) + 1, 20));
  EXPECT_EQ(rad.Regions[0].Lower, 31) << "one bar past the one under the pointer";
  EXPECT_EQ(Text(d, 1515), "99") << "the lower marker's count goes to the upper box while dragging";
  EXPECT_EQ(Text(d, 1030), "31");
  // Lower typed above Upper, then the upper marker dragged: Lower is pushed below it.
  Type(d, 1030, "70");
  Click(d, 1203);
  emit view->Mouse(HistogramView::MouseKind::Up, QPoint(int(58 * perBar) + 1, 20));
  EXPECT_EQ(std::tuple(rad.Regions[0].Lower, rad.Regions[0].Upper), std::tuple(57, 59));
  emit view->Mouse(HistogramView::MouseKind::Move, QPoint(-3, 20));
  EXPECT_EQ(rad.Regions[0].Upper, 59) << "outside the frame nothing moves";
  // A spin click steps the edit and applies it.
  Control<UpDown>(d, 1462)->Click(true);
  EXPECT_EQ(std::tuple(Text(d, 1031), rad.Regions[0].Upper), std::tuple("60", 60));
}

TEST(OpticalContrast, TrackbarsApplyHistogramAndMarkers) {
  ToolHost host;
  LoadOptical(host.M, 30, 900);  // rows of levels 0..255: a flat histogram, peak at level 0
  OpticalImageDesc& opt = host.M.CurOptical();
  opt.RedLevel = 100;
  opt.Lower = 10;
  QPointer<OpticalContrastDialog> d = ShowTool<OpticalContrastDialog>(host);
  EXPECT_TRUE(ImageWindow::Of(host).isVisible());
  auto* red = Control<QSlider>(d, 1184);
  EXPECT_EQ(red->value(), 156) << "256 less the level";
  EXPECT_EQ(Control<QSlider>(d, 1186)->value(), 256);
  red->setValue(0);
  EXPECT_EQ(opt.RedLevel, 256) << "the top of the trackbar is the strongest emphasis";
  Type(d, 1030, "40");
  Type(d, 1031, "x");
  Click(d, 1203);
  EXPECT_EQ(std::tuple(opt.Lower, opt.Upper), std::tuple(40, 256));

  auto* view = Control<HistogramView>(d, 1459);
  const QImage& picture = view->Picture();
  const float levelsPerPixel = 257.0f / float(view->width());
  // The curve: two dots above each column's count.
  OpticalCounts counts;
  CountOpticalLevels(opt, counts);
  const OpticalScale scale = ScaleOpticalHistogram(counts, view->width(), view->height());
  const int h = scale.CurveHeight(counts[int(levelsPerPixel * 100)]);
  EXPECT_EQ(picture.pixel(100, view->height() - 1 - h) & 0xFFFFFF, 0x007FFFu);
  // A click far from both markers, right of the peak, moves the upper one.
  const int x = int(200 / levelsPerPixel);
  emit view->Mouse(HistogramView::MouseKind::Down, QPoint(x, 30));
  EXPECT_EQ(std::tuple(opt.Lower, opt.Upper), std::tuple(40, scale.LevelAt(x)));
  EXPECT_EQ(picture.pixel(x, host.M.Plot().MarkerY[1] - 5) & 0xFFFFFF, 0xFFFFFFu) << "its white line";
  // Near the lower marker the lower one follows.
  const int nearLower = host.M.Plot().MarkerX[0] + 10;
  emit view->Mouse(HistogramView::MouseKind::Up, QPoint(nearLower, 30));
  EXPECT_EQ(std::tuple(opt.Lower, opt.Upper), std::tuple(scale.LevelAt(nearLower), scale.LevelAt(x)));
  EXPECT_EQ(Text(d, 1030), QString::number(opt.Lower));
}

}  // namespace
}  // namespace sedra::test
