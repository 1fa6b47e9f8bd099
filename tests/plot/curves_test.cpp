// Data curves: the radiograph strip sums, the computed values, ranges and pixel
// offsets, and the painted curve, coverage bar and value scale.

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <tuple>
#include <vector>

#include "plot/curves.h"
#include "plot_fixture.h"

namespace sedra::test {
namespace {

const QColor kWhite(255, 255, 255), kRed(255, 0, 0), kGreen(0, 255, 0), kAxis(0, 0, 255), kText(0, 128, 0);
constexpr int kSet = 3;  // the fixture's curve shows data set 3 (Data[2])
constexpr int kAny = -100;

class CurvesTest : public ::testing::Test {
 protected:
  void SetUp() override {
    PlotState& plot = model_->Plot();
    plot.SectionCount = 1;
    plot.DataSetCount = 1;
    plot.ColumnWidth = 100;
    plot.RadiographDataSet = kRadiographDataSet;
    CopyField(plot.DataSetNames[kSet - 1], "Fe");
    CopyField(plot.DataSetNames[3], "Ti");
    model_->App.Settings.DataSetOfPlot[0] = kSet;
    model_->App.RatioSetOfPlot[0] = 4;
    DataColour(model_->Settings(), 0) = 0x000000FF;
    model_->Settings().Colours[kAxisColour] = 0x00FF0000;
    model_->Settings().Colours[kTextColour] = 0x00008000;
  }

  // Section s with the given values in data set 3, 1 mm apart, all points loaded.
  void Fill(int s, const std::vector<double>& values) {
    CoreSection& section = model_->Section(s);
    section.PointCount = int(values.size());
    for (size_t k = 0; k < values.size(); ++k) {
      section.Depth[k] = float(k);
      section.Data[0][k] = 1.0f;
      section.Data[kSet - 1][k] = float(values[k]);
    }
    PlotState& plot = model_->Plot();
    plot.ViewFirstPoint = 0;
    plot.ViewLastPoint = int(values.size());
    plot.SectionLength[s] = float(values.size());
    plot.DepthSpan = float(values.size());
  }
  // A new model whose section `slot` has a width x height radiograph of samples sample(i), summed
  // over the columns between 0 and `right`; sections 0 and 1 have `points` loaded points, of
  // which point `deleted` of section 0 is deleted when >= 0.  Returns the radiograph data set.
  const float* SumStrips(int slot, int width, int height, int points, int right, uint16_t (*sample)(size_t),
                         int deleted = -1) {
    model_ = std::make_unique<Model>();
    model_->Plot().RadiographDataSet = kRadiographDataSet;
    model_->Plot().DataRegionLeft = 0;
    model_->Plot().DataRegionRight = right;
    for (int s = 0; s < 2; ++s) {
      model_->Section(s).PointCount = points;
      for (int k = 0; k < points; ++k) model_->Section(s).Data[0][k] = 1;
    }
    if (deleted >= 0) model_->Section(0).Data[0][deleted] = -1;
    RadiographDesc& rad = model_->Section(slot).Radiographs[0];
    rad.Width = width;
    rad.Height = height;
    rad.Samples.resize(size_t(width) * size_t(height));
    for (size_t i = 0; i < rad.Samples.size(); ++i) rad.Samples[i] = sample(i);
    ComputeRadiographData(*model_);
    return model_->Section(slot).Data[kRadiographDataSet - 1];
  }
  int Offset(int slot) { return model_->Curves().Offsets[size_t(slot) * kMaxCurves]; }
  double Value(int k) { return model_->Curves().Value(0, k); }
  QImage Paint(const std::function<void(PaintContext&)>& draw, int width = 400, int height = 300) {
    return PaintWith(*model_, draw, width, height);
  }

  std::unique_ptr<Model> model_ = std::make_unique<Model>();
};

// ---------------------------------------------------------------- computation

TEST_F(CurvesTest, RangeSmoothingAndOffsets) {
  const struct {
    const char* name;
    std::vector<double> values;
    int smoothPoints, filterType;
    double offset, yMax;
    std::vector<int> offsets;  // kAny: not checked
    int deleted = -1;
    bool fixedScale = false;  // offset and yMax are then the column's own, kept
    int set = kSet;
    int radiographRows = 0;
  } rows[] = {
      // Range 2..10 over 100 px: 12.5 px per unit, then 24/25 of it.
      {"plain range", {2, 4, 6, 10, 8}, 0, 0, 2, 10, {0, 24, 48, 96, 72}},
      // Window of 3: each mean already holds the previous smoothed value:
      // (0+9+0)/3 = 3, (3+0+9)/3 = 4, (4+9+0)/3 = 13/3, (13/3+0+0)/3 = 13/9.
      {"recursive running mean", {0, 9, 0, 9, 0, 0}, 3, 0, 13.0 / 9, 13.0 / 3, {0, 50, 84, kAny, 0, 0}},
      // Window of 5 with a derivative filter: no smoothing, but the two points at each
      // end stay out of the range; above the maximum they are pinned at 96 px.
      {"window of 5 keeps the ends out of the range", {100, 100, 1, 2, 3, 100, 100}, 5, 1, 1, 3,
       {96, 96, 0, 48, 96, 96, 96}},
      {"all zero shows nothing", {0, 0, 0, 0}, 0, 0, 0, 0, {0, 0, 0, 0}},
      {"deleted point is a gap and outside the range", {1, 2, 50, 3, 5}, 0, 0, 1, 5, {kAny, kAny, -1, kAny, 96}, 2},
      // 48 = floor(10 px x 5) x 24/25
      {"a fixed scale pins values above its maximum", {20, 5, -3}, 0, 0, 0, 10, {96, 48, 0}, -1, true},
      // The mask is no curve, and a section without a radiograph has no radiograph
      // data: neither draws a point (not even a line of zeros at the column's edge).
      {"the mask", {0, 0, 0, 0}, 0, 0, 0, 0, {-1, -1, -1, -1}, -1, false, 1},
      {"radiograph data without a radiograph", {0, 0, 0, 0}, 0, 0, 0, 0, {-1, -1, -1, -1}, -1, false, kRadiographDataSet},
      {"radiograph data of a radiograph", {0, 0, 0, 0}, 0, 0, 0, 0, {0, 0, 0, 0}, -1, false, kRadiographDataSet, 4},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    model_->App.SmoothPoints[0] = row.smoothPoints;
    model_->App.FilterType[0] = row.filterType;
    model_->Plot().NeedLayout = 1;
    model_->Plot().ColumnFixedScale[0] = row.fixedScale;
    model_->App.Settings.DataSetOfPlot[0] = row.set;
    model_->Section(0).Radiographs[0].Height = row.radiographRows;
    if (row.fixedScale) {
      model_->Plot().ColumnOffset[0] = row.offset;
      model_->Plot().ColumnYMax[0] = row.yMax;
    }
    Fill(0, row.values);
    if (row.deleted >= 0) model_->Section(0).Data[0][row.deleted] = -1;
    ComputeCurves(*model_);
    for (size_t k = 0; k < row.offsets.size(); ++k) {
      if (row.offsets[k] != kAny) {
        EXPECT_EQ(Offset(int(k)), row.offsets[k]) << "point " << k;
      }
    }
    EXPECT_EQ(model_->Plot().NeedLayout, 0u);
    EXPECT_NEAR(model_->Plot().ColumnOffset[0], row.offset, 1e-9);
    EXPECT_NEAR(model_->Plot().ColumnYMax[0], row.yMax, 1e-9);
  }
}

TEST_F(CurvesTest, RatiosLogsCountsPerSecondAndTheirTitles) {
  const struct {
    const char* name;
    double numerator, denominator;
    int ratioOn, filterType, countTime;
    uint32_t countsPerSecond;
    const char* setName;
    double expected;
    const char* title;
    int normaliseBy = 0;
    float sectionFactor = 0, curveFactor = 0;
  } rows[] = {
      {"plain counts", 40, 0, 0, 0, 4, 0, "Fe", 40, "Fe int."},
      {"counts per second of an element", 40, 0, 0, 0, 4, 1, "Fe", 10, "Fe cps"},
      {"count time 0 means 10 s", 40, 0, 0, 0, 0, 1, "Fe", 4, "Fe cps"},
      {"derived channel is not per second", 40, 0, 0, 0, 4, 1, "Radiograph", 40, "Radiograph"},
      {"mean is per second", 40, 0, 0, 0, 4, 1, "mean", 10, "mean cps"},
      {"so is the incoherent scatter", 40, 0, 0, 0, 4, 1, "Inc", 10, "Inc cps"},
      {"a surface channel is named by its surface", 40, 0, 0, 0, 4, 1, "MSsurface", 40, "surface"},
      {"a filter's column shows its label value", 40, 0, 0, 2, 4, 0, "Fe", 40, "Fe: 7"},
      {"ratio", 40, 8, 1, 0, 4, 1, "Fe", 5, "Fe/Ti"},
      {"ratio with zero denominator stays undivided, per second", 40, 0, 1, 0, 4, 1, "Fe", 10, "Fe/Ti"},
      {"ratio with negative denominator", 40, -2, 1, 0, 4, 0, "Fe", 40, "Fe/Ti"},
      {"ratio to the coherent scatter", 40, 8, 1, 0, 4, 0, "Fe", 5, "Fe/Coh", 2},
      {"log ratio, both normalised by Inc", 40 * std::exp(2.0), 40, 1, -1, 4, 1, "Fe", 2, "ln(Fe/Inc)", 1},
      {"log of a negative quotient keeps the numerator", -40, 8, 1, -1, 4, 1, "Fe", -40, "ln(Fe/Ti)"},
      {"a section's correction factor", 12, 0, 0, 0, 4, 0, "Fe", 24, "Fe int.", 0, 2},
      {"the curve's own factor replaces the section's", 12, 0, 0, 0, 4, 0, "Fe", 36, "Fe int.", 0, 2, 3},
      {"normalised by Inc", 12, 0, 0, 0, 4, 0, "Fe", 9, "Fe int.", 1, 2, 3},
  };
  model_->Plot().CurveLabelValue[0] = 7;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    Fill(0, {row.numerator, 1});
    model_->Section(0).Data[3][0] = float(row.denominator);  // data set 4
    model_->Section(0).CountTime = row.countTime;
    model_->Section(0).CorrectionFactor = row.sectionFactor;
    model_->Section(0).CurveCorrection[0] = row.curveFactor;
    model_->Section(0).Data[9][0] = 4;  // "Inc" in data set 10, which IncSet counts from 0
    model_->Plot().IncSet = 9;
    model_->App.NormaliseBy[0] = row.normaliseBy;
    CopyField(model_->Plot().DataSetNames[kSet - 1], row.setName);
    model_->App.RatioOn[0] = row.ratioOn;
    model_->App.FilterType[0] = row.filterType;
    model_->App.CountsPerSecond = row.countsPerSecond;
    ComputeCurves(*model_);
    EXPECT_NEAR(Value(0), row.expected, 1e-4 * std::fabs(row.expected) + 1e-6);
    EXPECT_EQ(CurveTitle(*model_, 0).toStdString(), row.title);
  }
  model_->App.Settings.DataSetOfPlot[0] = 1;
  EXPECT_EQ(CurveTitle(*model_, 0).toStdString(), "") << "the mask's column has no title";
}

TEST_F(CurvesTest, DisplayAllIsThinnedToAboutAThousandPoints) {
  // One section alone is never thinned; two sections of 600 points draw every second.
  Fill(0, std::vector<double>(1500, 1.0));
  ComputeCurves(*model_);
  EXPECT_EQ(model_->Plot().PointStep, 0);
  Fill(0, std::vector<double>(600, 1.0));
  Fill(1, std::vector<double>(600, 3.0));
  PlotState& plot = model_->Plot();
  plot.ShowAllSections = 1;
  plot.SectionCount = 2;
  // Deleting point 1 of section 1 makes the drawn point 0 before it an edge point
  // (0), while the deleted point itself is not drawn at all.
  model_->Section(1).Data[0][1] = -1;
  ComputeCurves(*model_);
  EXPECT_EQ(plot.PointStep, 2);
  // Section 0's point 598 is the minimum; section 1's points 0, 2 and 598 follow.
  EXPECT_EQ(std::tuple(Offset(299), Offset(300), Offset(301), Offset(599)), std::tuple(0, 0, 96, 96));
}

TEST_F(CurvesTest, BadSetUpNeverReadsOutOfBounds) {
  Fill(0, {1, std::numeric_limits<double>::quiet_NaN(), 3});
  AppState& app = model_->App;
  PlotState& plot = model_->Plot();
  for (int set : {0, -4, kMaxChannels + 1, 1000}) {
    SCOPED_TRACE(set);
    app.Settings.DataSetOfPlot[0] = set;
    app.RatioOn[0] = 0;
    ComputeCurves(*model_);
    EXPECT_EQ(plot.ColumnOffset[0], 0) << "nothing counted";
    EXPECT_EQ(CurveTitle(*model_, 0).toStdString(), " int.");
    // A ratio whose denominator set does not exist is no ratio.
    app.Settings.DataSetOfPlot[0] = kSet;
    app.RatioOn[0] = 1;
    app.RatioSetOfPlot[0] = set;
    ComputeCurves(*model_);
    EXPECT_EQ(Value(2), 3);
  }
  app.RatioOn[0] = 0;
  plot.DataSetCount = 25;
  app.SmoothPoints[0] = -7;
  plot.RadiographDataSet = 99;
  ComputeCurves(*model_);
  EXPECT_EQ(Offset(1), -1) << "a NaN value is a gap";
  model_->Section(0).PointCount = 0;
  plot.DataSetCount = 1;
  ComputeCurves(*model_);
  for (float span : {10.0f, 0.0f, std::numeric_limits<float>::quiet_NaN()}) {
    plot.DepthSpan = span;
    Paint([&](PaintContext& ctx) {
      DrawCoverageBar(ctx, 10, 10, 100);
      for (int curve : {0, -1, kMaxCurves}) DrawCurve(ctx, curve, 10, 10, 100);
    });
  }
}

// ---------------------------------------------------------------- radiograph data

TEST_F(CurvesTest, RadiographStripSumsFillTheRadiographDataSet) {
  // Samples row * 10 + column, 4 columns; the region 0..4 sums columns 1 to 3:
  // S(r) = 30 r + 6.  10 rows onto 5 points: point p takes the row 2 (p + 1).
  const struct {
    const char* name;
    int slot;                     // section holding the radiograph
    int deletedInCurrent;         // mask index set negative in the current section 0, or -1
    std::vector<float> expected;  // data set 2 of that section, 5 points
  } rows[] = {
      {"current section", 0, -1, {66, 126, 186, 246, 0}},
      {"a deleted point in the mask is skipped", 0, 2, {66, 0, 186, 246, 0}},
      {"another section follows the current one's mask", 1, 2, {66, 0, 186, 246, 0}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const float* data = SumStrips(row.slot, 4, 10, 5, 4, [](size_t i) { return uint16_t(i / 4 * 10 + i % 4); },
                                  row.deletedInCurrent);
    EXPECT_EQ(std::vector<float>(data, data + 5), row.expected);
  }
  // Two million samples are summed in bands of rows: every point, those at the bands'
  // edges among them, still takes the row at which the next point begins.
  const float* data = SumStrips(0, 1024, 2048, 1024, 1024, [](size_t i) { return uint16_t(i / 1024); });
  int wrong = 0;
  for (int p = 0; p < 1023; ++p) wrong += data[p] != float(1023 * 2 * (p + 1));
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(data[1023], 0.0f);
}

// ---------------------------------------------------------------- drawing

// Ten points 1 mm apart over a 200 px plot from y = 40: point k at row 40 + 20 k.
constexpr int kTop = 40;
constexpr int kColumn = 100;

TEST_F(CurvesTest, CurvePointsLinesAndCoverageBarAtTheirRows) {
  Fill(0, {0, 10, 10, 10, 5, 5, 10, 0, 10, 10});
  model_->Section(0).Data[0][3] = 0;   // not loaded: no mark, still computed
  model_->Section(0).Data[0][5] = -1;  // deleted
  ComputeCurves(*model_);
  // Range 0..10 over 100 px: value 10 at 96, value 5 at 48.
  const int x10 = kColumn + 96, x5 = kColumn + 48, bar = 50, length = 96 / 16;
  for (uint32_t lines : {0u, 1u}) {
    SCOPED_TRACE(lines ? "lines" : "points");
    model_->App.DrawLines = lines;
    const QImage image = Paint([&](PaintContext& ctx) {
      DrawCurve(ctx, 0, kColumn, kTop, 200);
      DrawCoverageBar(ctx, bar, kTop, 200);
    });
    EXPECT_EQ(image.pixelColor(x10, kTop + 20), kRed);
    EXPECT_EQ(image.pixelColor(x5, kTop + 80), kRed);
    EXPECT_EQ(image.pixelColor(kColumn, kTop), kRed);
    // Between points 1 and 2 (both at 96) only a line draws.
    EXPECT_EQ(image.pixelColor(x10, kTop + 30), lines ? kRed : kWhite);
    // The deleted point 5 leaves its row empty and breaks the line on either side.
    for (int x = kColumn; x < kColumn + 100; ++x) {
      EXPECT_NE(image.pixelColor(x, kTop + 100), kRed) << x;
      EXPECT_NE(image.pixelColor(x, kTop + 110), kRed) << x;
    }
    EXPECT_EQ(image.pixelColor(x10, kTop + 120), kRed);
    const IntRect& r = model_->App.CurveRect[0][0];
    EXPECT_EQ(std::tie(r.Top, r.Bottom, r.Right), std::tuple(kTop, kTop + 180, kColumn + 99));
    // The bar: point k marks the rows from below point k - 1 down to its own row.
    for (int k = 1; k < 10; ++k) {
      const QColor mark = k != 3 && k != 5 ? kGreen : kWhite;
      for (int y = kTop + 20 * (k - 1) + 1; y <= kTop + 20 * k; ++y) {
        EXPECT_EQ(image.pixelColor(bar, y), mark) << y;
        EXPECT_EQ(image.pixelColor(bar + length - 1, y), mark) << y;
        EXPECT_EQ(image.pixelColor(bar + length, y), kWhite) << y;
      }
    }
    EXPECT_EQ(image.pixelColor(bar, kTop), kWhite);
    EXPECT_EQ(image.pixelColor(bar, kTop + 181), kWhite);
  }
}

TEST_F(CurvesTest, ValueScaleTicksFollowTheWholeDevicesWidth) {
  // Range 0..10 over 96 px: 9.6 px per unit.  Ticks are at least a 400th of the whole
  // device apart: the screen's width for a window painted through a smaller buffer.
  struct Row {
    int imageWidth, horzRes;
    double step;
    int labelEvery;
  } rows[] = {
      {1600, 0, 0.5, 2},     // 4 px: half units, the whole units labelled
      {400, 1600, 0.5, 2},   // the buffer's own 400 px would give a comb of 1 px
      {1600, 4000, 2.0, 5},  // 10 px: steps of 2, labels on 0 and 10
  };
  const int x = 100, y = 60;
  const int minor = 96 / 32, major = minor * 3 / 2;
  for (const Row& r : rows) {
    SCOPED_TRACE(r.horzRes);
    const QImage image = Paint(
        [&](PaintContext& ctx) {
          ctx.HorzRes = r.horzRes;
          DrawValueScale(ctx, 0, 10, 9.6, x, y);
        },
        r.imageWidth, 100);
    std::vector<int> ticks;
    for (int px = x; px <= x + 96; ++px)
      if (image.pixelColor(px, y - 1) == kAxis) ticks.push_back(px);
    std::vector<int> expected;
    for (int i = 0; i * r.step <= 10; ++i) expected.push_back(x + int(std::floor(i * r.step * 9.6 + 0.5)));
    EXPECT_EQ(ticks, expected);
    for (size_t i = 0; i < expected.size(); ++i)
      EXPECT_EQ(image.pixelColor(expected[i], y - major), i % size_t(r.labelEvery) == 0 ? kAxis : kWhite) << i;
    int text = 0;
    for (int yy = 0; yy < y - major; ++yy)
      for (int xx = x - 10; xx < x + 110; ++xx) text += image.pixelColor(xx, yy) == kText;
    EXPECT_GT(text, 20) << "labels above the ticks";
  }
}

}  // namespace
}  // namespace sedra::test
