#include <gtest/gtest.h>

#include <cstring>

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
  r.Width = 4;
  r.Height = rows;
  r.Samples.assign(size_t(4) * size_t(rows), 100);
  m.CurSection().RadiographCount = 1;
  std::strcpy(m.CurSection().StepSizeText, stepText);
  UpdateMenusAfterLoad(m, true);
}

TEST(NewCore, AsksOnlyWithUnsavedChangesAndTheQuestionDependsOnTheSectionCount) {
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
    m.Plot().Modified = r.modified;
    m.Plot().SectionCount = r.sections;
    m.Plot().ZoomFactor = 8;
    m.Settings().DataSetOfPlot[0] = kRadiographDataSet;
    int toolsEnded = 0;
    m.ImagesReplaced = [&toolsEnded] { ++toolsEnded; };
    test::ScriptedPrompt prompt;
    prompt.Answers.push_back(r.answer);
    EXPECT_EQ(NewCore(m, &prompt), r.cleared);
    if (r.question) {
      ASSERT_EQ(prompt.Messages.size(), 1u);
      EXPECT_EQ(prompt.Messages[0].Text, r.question);
      EXPECT_EQ(prompt.Messages[0].Caption, "");
      EXPECT_EQ(prompt.Messages[0].ButtonSet, Buttons::YesNo);
    } else {
      EXPECT_TRUE(prompt.Messages.empty());
    }
    if (r.cleared) {
      EXPECT_EQ(m.CurSection().PointCount, 0);
      EXPECT_EQ(m.CurRadiograph().Height, 0);
      EXPECT_TRUE(m.CurRadiograph().Samples.empty());
      EXPECT_EQ(m.Plot().ZoomFactor, 1);
      EXPECT_EQ(m.Plot().SectionCount, 1);
      EXPECT_EQ(m.Settings().DataSetOfPlot[0], 0) << "a new core has no curve selected";
      EXPECT_EQ(toolsEnded, 1) << "an open tool is told its data is gone";
    } else {
      // A No changes nothing at all.
      EXPECT_EQ(m.CurSection().PointCount, 500);
      EXPECT_EQ(m.CurRadiograph().Samples.size(), 2000u);
      EXPECT_EQ(m.Plot().ZoomFactor, 8);
      EXPECT_EQ(m.Plot().SectionCount, r.sections);
      EXPECT_EQ(m.Settings().DataSetOfPlot[0], kRadiographDataSet);
      EXPECT_EQ(toolsEnded, 0);
    }
  }
}

TEST(NewCore, ResetsToTheStartingValuesAndKeepsTheFourDisplaySwitches) {
  Model m;
  LoadRadiograph(m, 100);
  m.Work().ShowRadiograph = 0;
  m.Work().ShowOptical = 1;
  m.Work().ShowCoreName = 1;
  m.Work().ShowSectionName = 0;
  m.Work().OpticalEnd = 55;
  m.Plot().OverlayOr = 1;
  test::ScriptedPrompt prompt;
  ASSERT_TRUE(NewCore(m, &prompt));
  EXPECT_EQ(m.Work().ShowRadiograph, 0u);
  EXPECT_EQ(m.Work().ShowOptical, 1u);
  EXPECT_EQ(m.Work().ShowCoreName, 1u);
  EXPECT_EQ(m.Work().ShowSectionName, 0u);
  EXPECT_EQ(m.Work().OpticalEnd, 0.0f);
  EXPECT_EQ(m.Work().SampleStep, 5);
  EXPECT_EQ(m.Work().SampleMode, 2);
  EXPECT_EQ(m.Plot().OverlayOr, 0u);
  EXPECT_EQ(m.Plot().HeaderHeight, 10);
  EXPECT_EQ(m.Plot().ShowInfo, 1u);
  EXPECT_EQ(m.Plot().ShowDividers, 1u);
  EXPECT_EQ(m.Plot().ShowSectionTitles, 1u);
  EXPECT_EQ(m.Plot().CurSectionIndex, 0);
}

TEST(NewCore, WithAWindowGreysTheMenusAndNeverGivesPrintBack) {
  Model m;
  LoadRadiograph(m, 100);
  int repaints = 0;
  m.Invalidate = [&] { ++repaints; };
  test::ScriptedPrompt prompt;
  ASSERT_TRUE(NewCore(m, &prompt));
  EXPECT_EQ(repaints, 1);
  const MenuState& menu = m.App.Menu;
  EXPECT_TRUE(menu.IsTopEnabled(kMenuFile));
  for (int pos = kMenuZoom; pos <= kMenuEdit; ++pos) EXPECT_FALSE(menu.IsTopEnabled(pos)) << pos;
  EXPECT_TRUE(menu.IsTopEnabled(kMenuColourSetup));
  EXPECT_TRUE(menu.IsTopEnabled(kMenuAbout));
  EXPECT_TRUE(menu.IsItemEnabled(kCmdSectionTitle));
  EXPECT_TRUE(menu.IsItemEnabled(kCmdDeletePoints));
  EXPECT_FALSE(menu.IsItemEnabled(kCmdMainTitle));
  EXPECT_FALSE(menu.IsItemEnabled(kCmdPrint));
  EXPECT_TRUE(menu.IsItemEnabled(kCmdPrintPdf));

  LoadRadiograph(m, 100);
  EXPECT_FALSE(m.App.Menu.IsItemEnabled(kCmdPrint)) << "a load does not give Print back";

  // Start-up's New (no window) leaves the menu alone.
  Model fresh;
  const uint64_t before = fresh.App.Menu.Generation;
  NewCore(fresh, nullptr);
  EXPECT_EQ(fresh.App.Menu.Generation, before);
}

TEST(UpdateMenusAfterLoad, DerivesTheDepthAxisFromTheStepSizeText) {
  struct Row {
    const char* step;
    int rows, sampleStep;
    int points;
    float span;
    int tick;
  } rows[] = {
      {"200 um", 1500, 1, 1500, 300.0f, 10},  // exactly 300 mm: 10 mm ticks
      {"200 um", 3000, 1, 3000, 600.0f, 25},  // exactly 600 mm: 25 mm ticks
      {"100 um", 1000, 5, 200, 20.0f, 5},
      {"200", 250, 1, 250, 250.0f, 5},  // no blank: 1.0 mm per point
      {"0 um", 250, 1, 250, 250.0f, 5},
      {"200 um", 4, 5, 0, 0.0f, 5},  // four rows at step 5: no points
  };
  for (const Row& r : rows) {
    Model m;
    NewCore(m, nullptr);
    m.Work().SampleStep = r.sampleStep;
    m.Work().StartCoordinate = 1234.6f;
    RadiographDesc& rad = m.CurRadiograph();
    rad.Width = 2;
    rad.Height = r.rows;
    std::strcpy(m.CurSection().StepSizeText, r.step);
    UpdateMenusAfterLoad(m, true);
    const CoreSection& s = m.CurSection();
    EXPECT_EQ(s.PointCount, r.points) << r.step << " " << r.rows;
    EXPECT_FLOAT_EQ(m.Plot().DepthSpan, r.span) << r.step << " " << r.rows;
    EXPECT_FLOAT_EQ(m.Plot().SectionLength[0], r.span);
    EXPECT_FLOAT_EQ(m.Plot().AxisLength, r.span);
    EXPECT_EQ(m.Plot().DepthTick, r.tick) << r.step << " " << r.rows;
    EXPECT_EQ(s.StartLabelDepth, 1235);
    EXPECT_FLOAT_EQ(m.Work().EndCoordinate, r.span + 1234.6f);
    EXPECT_EQ(m.Plot().ViewLastPoint, r.points);
    if (r.points > 1) {
      EXPECT_FLOAT_EQ(s.Depth[1] - s.Depth[0], r.span / float(r.points));
      EXPECT_EQ(s.Data[0][r.points - 1], 1.0f) << "every loaded point is valid";
    }
  }
}

// A radiograph longer than the point arrays is sampled more coarsely, and the depth
// axis still spans all its rows: 40 000 rows of 0.2 mm plot 8 000 mm, not 2 667.
TEST(UpdateMenusAfterLoad, ALongRadiographCoarsensTheStepAndKeepsItsLength) {
  struct Row {
    int rows, step, wantStep, wantPoints;
    float wantSpan;  // mm, 0.2 mm per row as the reader gave them
  } rows[] = {{18000, 1, 1, 18000, 3600}, {18001, 1, 2, 9000, 3600},    {36000, 1, 2, 18000, 7200},
              {40000, 1, 3, 13333, 7999.8f}, {100000, 5, 6, 16666, 3999.84f}, {90000, 10, 10, 9000, 1800}};
  for (const Row& r : rows) {
    SCOPED_TRACE(r.rows);
    Model m;
    LoadRadiograph(m, 1);
    m.Work().SampleStep = r.step;
    m.Work().StartCoordinate = 100;
    m.CurRadiograph().Height = r.rows;
    UpdateMenusAfterLoad(m, true);
    EXPECT_EQ(m.Work().SampleStep, r.wantStep);
    EXPECT_EQ(m.CurSection().PointCount, r.wantPoints);
    EXPECT_NEAR(m.Plot().SectionLength[0], r.wantSpan, 0.01f);
    EXPECT_NEAR(m.Work().EndCoordinate, 100 + r.wantSpan, 0.01f);
  }
}

TEST(UpdateMenusAfterLoad, SetsUpTheRadiographCurveAndEnablesTheMenus) {
  // "Display Radiograph Data" decides what the first data column shows.
  for (uint32_t show : {0u, 1u}) {
    Model m;
    m.Settings().ShowRadiographData = show;
    LoadRadiograph(m, 500);
    EXPECT_EQ(m.App.Settings.DataSetOfPlot[0], show ? kRadiographDataSet : 1);
    EXPECT_EQ(m.App.Menu.IsTopEnabled(kMenuElementData), show != 0) << "point deletion goes with the curve";
  }
  Model m;
  LoadRadiograph(m, 500);
  const PlotState& p = m.Plot();
  EXPECT_EQ(p.DataSetCount, 1);
  EXPECT_EQ(p.RadiographDataSet, kRadiographDataSet);
  EXPECT_STREQ(p.DataSetNames[kRadiographDataSet - 1], "Radiograph");
  EXPECT_STREQ(p.CurveLabel, "Radiograph");
  EXPECT_EQ(p.CurveLayout[0], 5);
  EXPECT_EQ(p.CurveLayout[1], 2);
  EXPECT_EQ(p.CurveLayout[2], 32);
  const MenuState& menu = m.App.Menu;
  for (int pos : {kMenuZoom, kMenuExpand, kMenuRadiograph, kMenuDefineRegion, kMenuEdit})
    EXPECT_TRUE(menu.IsTopEnabled(pos)) << pos;
}

TEST(UpdateMenusAfterLoad, OpticalLoadKeepsARadiographsPointsAndLabelsTheWidth) {
  Model m;
  LoadRadiograph(m, 1000, "100 um");  // 1000 points of 0.1 mm
  OpticalImageDesc& o = m.CurOptical();
  o.Width = 300;
  o.Height = 2000;
  m.App.Menu.EnableTop(kMenuOptical, false);
  UpdateMenusAfterLoad(m, false);
  EXPECT_EQ(m.CurSection().PointCount, 1000);
  EXPECT_TRUE(m.App.Menu.IsTopEnabled(kMenuOptical));
  // 100 mm of core over 2000 rows, 300 columns wide: 1.5 cm.
  EXPECT_NEAR(m.CurSection().OpticalWidthLabel, 1.5f, 1e-5);

  Model opticalOnly;
  NewCore(opticalOnly, nullptr);
  opticalOnly.CurOptical().Width = 10;
  opticalOnly.CurOptical().Height = 20000;
  UpdateMenusAfterLoad(opticalOnly, false);
  EXPECT_EQ(opticalOnly.CurSection().PointCount, kMaxPoints) << "never beyond the section's arrays";
}

}  // namespace
}  // namespace sedra
