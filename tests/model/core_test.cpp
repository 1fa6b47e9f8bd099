#include <gtest/gtest.h>

#include <cstring>
#include <tuple>

#include "model/core.h"
#include "model/messages.h"
#include "model/model.h"
#include "support/scripted_prompt.h"

namespace sedra {
namespace {

// A model as after start-up, with one radiograph of `rows` rows loaded.
void LoadRadiograph(Model& m, int rows, const char* stepText = "200 um") {
  NewCore(m, nullptr);
  m.Work().SampleStep = 1;
  RadiographDesc& r = m.CurRadiograph();
  std::tie(r.Width, r.Height) = std::pair(4, rows);
  r.Samples.assign(size_t(4) * size_t(rows), 100);
  m.CurSection().RadiographCount = 1;
  std::strcpy(m.CurSection().StepSizeText, stepText);
  UpdateMenusAfterLoad(m, true);
}

TEST(NewCore, AsksOnlyWithUnsavedChangesThenStartsAgainKeepingTheFourDisplaySwitches) {
  struct Row {
    bool modified;
    int sections;
    Answer answer;
    const char* question;  // nullptr: no question
    bool cleared;
  } rows[] = {
      {false, 1, Answer::No, nullptr, true},
      {true, 1, Answer::Yes, msg::kContinueWithoutSaving, true},
      {true, 1, Answer::No, msg::kContinueWithoutSaving, false},
      {true, 3, Answer::Yes, msg::kClearAllSections, true},
      {true, 2, Answer::No, msg::kClearAllSections, false},
  };
  for (const Row& r : rows) {
    Model m;
    LoadRadiograph(m, 500);
    PlotState& p = m.Plot();
    WorkingBlock& w = m.Work();
    std::tie(p.Modified, p.SectionCount, p.ZoomFactor, p.OverlayOr) = std::tuple(r.modified, r.sections, 8, 1u);
    w.OpticalEnd = 55;
    std::tie(w.ShowRadiograph, w.ShowOptical, w.ShowCoreName, w.ShowSectionName) = std::tuple(0u, 1u, 1u, 0u);
    m.Settings().DataSetOfPlot[0] = kRadiographDataSet;
    int toolsEnded = 0, repaints = 0;
    m.ImagesReplaced = [&toolsEnded] { ++toolsEnded; };
    m.Invalidate = [&repaints] { ++repaints; };
    test::ScriptedPrompt prompt;
    prompt.Answers.push_back(r.answer);
    EXPECT_EQ(NewCore(m, &prompt), r.cleared);
    EXPECT_EQ(prompt.Texts(), r.question ? std::vector<std::string>{r.question} : std::vector<std::string>{});
    for (const auto& shown : prompt.Messages)
      EXPECT_EQ(std::tuple(shown.Caption, shown.ButtonSet), std::tuple("", Buttons::YesNo));
    // A No changes nothing at all.
    EXPECT_EQ(std::tuple(m.CurSection().PointCount, m.CurRadiograph().Samples.size(), p.ZoomFactor, p.SectionCount),
              r.cleared ? std::tuple(0, size_t(0), 1, 1) : std::tuple(500, size_t(2000), 8, r.sections));
    EXPECT_EQ(std::pair(p.OverlayOr, w.OpticalEnd), r.cleared ? std::pair(0u, 0.0f) : std::pair(1u, 55.0f));
    EXPECT_EQ(m.Settings().DataSetOfPlot[0], r.cleared ? 0 : kRadiographDataSet) << "a new core has no curve selected";
    // An open tool is told its data is gone.
    EXPECT_EQ(std::pair(toolsEnded, repaints), std::pair(int(r.cleared), int(r.cleared)));
    EXPECT_EQ(m.App.Menu.IsTopEnabled(kMenuZoom), !r.cleared) << "New greys the menus (menu_rules_test.cpp)";
    EXPECT_EQ(std::tuple(w.ShowRadiograph, w.ShowOptical, w.ShowCoreName, w.ShowSectionName),
              std::tuple(0u, 1u, 1u, 0u));
    if (r.cleared) {
      EXPECT_EQ(std::tuple(m.CurRadiograph().Height, w.SampleStep, w.SampleMode, p.HeaderHeight),
                std::tuple(0, 5, 2, 10));
      EXPECT_EQ(std::tuple(p.ShowInfo, p.ShowDividers, p.ShowSectionTitles), std::tuple(1u, 1u, 1u));
    }
  }
  // Start-up's New (no window) leaves the menu alone.
  Model fresh;
  const uint64_t before = fresh.App.Menu.Generation;
  NewCore(fresh, nullptr);
  EXPECT_EQ(fresh.App.Menu.Generation, before);
}

// A radiograph longer than the point arrays is sampled more coarsely, and the depth
// axis still spans all its rows: 40 000 rows of 0.2 mm plot 8 000 mm, not 2 667.
TEST(UpdateMenusAfterLoad, DerivesTheDepthAxisAndTheFirstCurveFromTheStepSizeTextAndTheRows) {
  struct Row {
    const char* step;
    int rows, sampleStep, wantStep;
    int points;
    float span;
    int tick;
    bool curve;  // "Display Radiograph Data": the first data column shows the radiograph's curve
  } rows[] = {
      {"200 um", 1500, 1, 1, 1500, 300.0f, 10, true},   // exactly 300 mm: 10 mm ticks
      {"200 um", 3000, 1, 1, 3000, 600.0f, 25, false},  // exactly 600 mm: 25 mm ticks
      {"100 um", 1000, 5, 5, 200, 20.0f, 5, true},
      {"200", 250, 1, 1, 250, 250.0f, 5, false},  // no blank: 1.0 mm per point
      {"0 um", 250, 1, 1, 250, 250.0f, 5, true},
      {"200 um", 4, 5, 5, 0, 0.0f, 5, false},  // four rows at step 5: no points
      {"200 um", 18000, 1, 1, 18000, 3600, 25, true},
      {"200 um", 18001, 1, 2, 9000, 3600, 25, false},
      {"200 um", 36000, 1, 2, 18000, 7200, 25, true},
      {"200 um", 40000, 1, 3, 13333, 7999.8f, 25, false},
      {"200 um", 100000, 5, 6, 16666, 3999.84f, 25, true},
      {"200 um", 90000, 10, 10, 9000, 1800, 25, false},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(testing::Message() << r.step << ", " << r.rows << " rows at step " << r.sampleStep);
    Model m;
    NewCore(m, nullptr);
    m.Work().SampleStep = r.sampleStep;
    m.Work().StartCoordinate = 1234.6f;
    m.Settings().ShowRadiographData = r.curve;
    RadiographDesc& rad = m.CurRadiograph();
    std::tie(rad.Width, rad.Height) = std::pair(2, r.rows);
    std::strcpy(m.CurSection().StepSizeText, r.step);
    UpdateMenusAfterLoad(m, true);
    const CoreSection& s = m.CurSection();
    EXPECT_EQ(std::pair(m.Work().SampleStep, s.PointCount), std::pair(r.wantStep, r.points));
    const PlotState& p = m.Plot();
    for (const float length : {p.DepthSpan, p.SectionLength[0], p.AxisLength, m.Work().EndCoordinate - 1234.6f})
      EXPECT_NEAR(length, r.span, 0.01f);
    EXPECT_EQ(std::tuple(p.DepthTick, s.StartLabelDepth, p.ViewLastPoint), std::tuple(r.tick, 1235, r.points));
    EXPECT_EQ(m.App.Settings.DataSetOfPlot[0], r.curve ? kRadiographDataSet : 1);
    EXPECT_EQ(m.App.Menu.IsTopEnabled(kMenuElementData), r.curve) << "point deletion goes with the curve";
    // The curve's name "Radiograph" shows in the value read-out tests.
    EXPECT_EQ(std::tuple(p.DataSetCount, p.RadiographDataSet), std::tuple(1, kRadiographDataSet));
    if (r.points > 1) {
      EXPECT_FLOAT_EQ(s.Depth[1] - s.Depth[0], r.span / float(r.points));
      EXPECT_EQ(s.Data[0][r.points - 1], 1.0f) << "every loaded point is valid";
    }
  }
}

TEST(UpdateMenusAfterLoad, OpticalLoadKeepsARadiographsPointsAndLabelsTheWidth) {
  Model m;
  LoadRadiograph(m, 1000, "100 um");  // 1000 points of 0.1 mm
  OpticalImageDesc& o = m.CurOptical();
  std::tie(o.Width, o.Height) = std::pair(300, 2000);
  m.App.Menu.EnableTop(kMenuOptical, false);
  UpdateMenusAfterLoad(m, false);
  EXPECT_EQ(m.CurSection().PointCount, 1000);
  EXPECT_TRUE(m.App.Menu.IsTopEnabled(kMenuOptical));
  // 100 mm of core over 2000 rows, 300 columns wide: 1.5 cm.
  EXPECT_NEAR(m.CurSection().OpticalWidthLabel, 1.5f, 1e-5);

  Model opticalOnly;
  NewCore(opticalOnly, nullptr);
  std::tie(opticalOnly.CurOptical().Width, opticalOnly.CurOptical().Height) = std::pair(10, 20000);
  UpdateMenusAfterLoad(opticalOnly, false);
  EXPECT_EQ(opticalOnly.CurSection().PointCount, kMaxPoints) << "never beyond the section's arrays";
}

}  // namespace
}  // namespace sedra
