// After "Read &Radiograph Image" the first data column shows the strip-sum curve and the
// coverage bar marks the loaded points; deleting points (a negative mask) leaves a gap
// that restoring fills again.
#include <cstdlib>

#include "app_fixture.h"

namespace sedra {
namespace {

using test::AppTest;

// Rows of the image that hold at least one pixel of `colour` between x0 and x1.
std::vector<bool> RowsWith(const QImage& image, int x0, int x1, QRgb colour) {
  std::vector<bool> rows(size_t(image.height()), false);
  for (int y = 0; y < image.height(); ++y)
    for (int x = std::max(0, x0); x < std::min(x1, image.width()); ++x)
      if (image.pixel(x, y) == colour) rows[size_t(y)] = true;
  return rows;
}

TEST_F(AppTest, TheRadiographCurveFollowsTheMaskThroughDeletionAndRestoring) {
  const std::string command = std::string("\"") + SEDRA_SAMPLE_TOOL + "\" \"" + (folder / "core").string() +
                              "\" --length 500 --width 40 --raw-values 0 > /dev/null";
  ASSERT_EQ(std::system(command.c_str()), 0);
  MainWindow& w = Start();
  model->Settings().ShowRadiographData = 1;
  prompt.ChooseFile((folder / "core" / "radiograph.tif").string());
  w.OnCommand(kCmdReadRadiograph);
  ASSERT_TRUE(prompt.Messages.empty()) << prompt.Messages[0].Text;

  CoreSection& s = model->CurSection();
  ASSERT_EQ(s.PointCount, 500);  // one point per radiograph row after a TIFF read

  // The strip sums' values are checked in the plot tests; here they must reach the plot.
  PlotLayout l;
  const QImage before = test::Paint(*model, 900, 700, 0, &l);
  ASSERT_GT(l.ColumnWidth, 0);
  const QRgb curve = QColor(0, 128, 0).rgb();  // a first run's colour of the first curve
  const QRgb green = QColor(0, 255, 0).rgb();
  auto curveRows = [&](const QImage& image) { return RowsWith(image, l.ColumnLeft + 1, l.ColumnLeft + l.ColumnWidth, curve); };
  auto barRows = [&](const QImage& image) { return RowsWith(image, l.ColumnLeft - 40, l.ColumnLeft, green); };
  auto rowOf = [&](int k) { return size_t(l.RowOfDepth(s.Depth[k])); };
  const auto drawnRows = curveRows(before), coveredRows = barRows(before);
  int covered = 0, drawn = 0;
  for (int k = 0; k < 500; ++k) covered += coveredRows[rowOf(k)];
  for (int k = 10; k < 490; ++k) drawn += drawnRows[rowOf(k)];
  EXPECT_GT(covered, 450) << "the coverage bar marks the loaded points";
  EXPECT_GT(drawn, 400) << "the data column shows the radiograph curve";

  // Delete points 200..299 as the delete tool does (the mask goes negative).
  for (int k = 200; k < 300; ++k) s.Data[0][k] = -2.0f;
  model->Plot().NeedLayout = 1;
  const QImage deleted = test::Paint(*model, 900, 700);
  const auto gapRows = curveRows(deleted), gapBar = barRows(deleted);
  for (int k = 205; k < 295; ++k) {
    EXPECT_FALSE(gapRows[rowOf(k)]) << "no curve at a deleted point " << k;
    EXPECT_FALSE(gapBar[rowOf(k)]) << "no coverage at a deleted point " << k;
  }

  // Restoring makes the mask 1.0 again and the curve comes back.
  for (int k = 200; k < 300; ++k) s.Data[0][k] = 1.0f;
  model->Plot().NeedLayout = 1;
  EXPECT_EQ(test::Paint(*model, 900, 700), before);
}

}  // namespace
}  // namespace sedra
