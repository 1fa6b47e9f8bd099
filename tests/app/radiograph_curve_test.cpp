// After "Read &Radiograph Image" the first data column shows the strip-sum curve and the
// coverage bar marks the loaded points.  The sums, the mask's gaps and the drawing at
// each row are the plot tests' own; here a read through the menu must reach the plot.
#include "app_fixture.h"

namespace sedra {
namespace {

using test::AppTest;

// How many of the points 10..489 have a pixel of `colour` between x0 and x1 in their row.
int PointsMarked(const Model& model, const PlotLayout& l, const QImage& image, int x0, int x1, QRgb colour) {
  int marked = 0;
  for (int k = 10; k < 490; ++k) {
    const int y = l.RowOfDepth(model.CurSection().Depth[k]);
    bool found = false;
    for (int x = std::max(0, x0); x < std::min(x1, image.width()); ++x) found = found || image.pixel(x, y) == colour;
    marked += found;
  }
  return marked;
}

TEST_F(AppTest, AReadRadiographShowsItsCurveAndCoverage) {
  const std::string core = MakeSampleCore("--length 500 --width 40 --raw-values 0");
  MainWindow& w = Start();
  model->Settings().ShowRadiographData = 1;
  prompt.ChooseFile(core + "/radiograph.tif");
  w.OnCommand(kCmdReadRadiograph);
  ASSERT_TRUE(prompt.Messages.empty()) << prompt.Messages[0].Text;
  ASSERT_EQ(model->CurSection().PointCount, 500);  // one point per radiograph row after a TIFF read

  PlotLayout l;
  const QImage image = test::Paint(*model, 900, 700, 0, &l);
  ASSERT_GT(l.ColumnWidth, 0);
  const QRgb curve = QColor(0, 128, 0).rgb();  // a first run's colour of the first curve
  EXPECT_GT(PointsMarked(*model, l, image, l.ColumnLeft + 1, l.ColumnLeft + l.ColumnWidth, curve), 400)
      << "the data column shows the radiograph curve";
  EXPECT_GT(PointsMarked(*model, l, image, l.ColumnLeft - 40, l.ColumnLeft, QColor(0, 255, 0).rgb()), 450)
      << "the coverage bar marks the loaded points";
}

}  // namespace
}  // namespace sedra
