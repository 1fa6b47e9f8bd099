// A generated three-section core read section by section and painted whole: its
// dividing lines and section titles where each section lies, at every zoom.

#include <gtest/gtest.h>

#include <set>

#include "images/whole_core.h"
#include "import/sample_files.h"
#include "plot_fixture.h"

namespace sedra::test {
namespace {

// Rows in which two paintings differ.
std::set<int> RowsThatDiffer(const QImage& a, const QImage& b) {
  std::set<int> rows;
  for (int y = 0; y < a.height(); ++y)
    for (int x = 0; x < a.width(); ++x)
      if (a.pixel(x, y) != b.pixel(x, y)) {
        rows.insert(y);
        break;
      }
  return rows;
}

class WholeCorePaint : public ::testing::Test {
 protected:
  void SetUp() override {
    StartCore(model);
    model.Work().ShowSectionName = 1;
    const auto folder = ScratchFolder();
    // Three 60 mm sections from 100 mm, end to end.
    MakeSampleCore(folder, "--sections 3 --length 300 --width 40 --optical-length 320 --optical-width 48 --raw-values 0");
    for (const char* name : {"section-01", "section-02", "section-03"}) {
      prompt.ChooseFile((folder / name / "radiograph.tif").string());
      ASSERT_TRUE(CommandAddSection(model, prompt)) << name;
    }
    model.Plot().ShowAllSections = 1;
  }
  // Paints with `field` off and on; the rows that changed.
  std::set<int> RowsDrawnBy(uint32_t PlotState::*field, int zoom, int scroll, PlotLayout& layout) {
    model.Plot().ZoomFactor = zoom;
    model.Plot().*field = 0;
    const QImage without = Paint(model, 900, 600, scroll);
    model.Plot().*field = 1;
    const QImage with = Paint(model, 900, 600, scroll, &layout);
    return RowsThatDiffer(without, with);
  }
  Model model;
  ScriptedPrompt prompt;
};

// A divider at the end of each section, floor(60 k mm) down a 180 mm axis.
TEST_F(WholeCorePaint, DividersLieAtTheSectionEndsAtEveryZoom) {
  for (int zoom : {1, 2, 4}) {
    SCOPED_TRACE(zoom);
    PlotLayout l;
    // Scrolled so that the second divider is in view.
    const int scroll = zoom == 1 ? 0 : (zoom * 600) * 2 / 3 - 300;
    const std::set<int> rows = RowsDrawnBy(&PlotState::ShowDividers, zoom, scroll, l);
    ASSERT_FLOAT_EQ(l.DepthSpan, 180.0f);
    std::set<int> expected;
    for (int k = 1; k <= 3; ++k) {
      const int y = l.Y0 + int(int64_t(60 * k) * l.PlotHeight / 180) - (zoom == 1 ? 0 : scroll);
      if (y >= 0 && y < 600 && k < 3) expected.insert(y);
    }
    ASSERT_FALSE(expected.empty());
    for (int y : expected) EXPECT_TRUE(rows.count(y)) << "no divider at row " << y;
    for (int y : rows) EXPECT_TRUE(expected.count(y) || y == l.Y0 + l.PlotHeight - (zoom == 1 ? 0 : scroll)) << y;
  }
}

// Each section's title rides with its section, "Section: n" counted from its start.
TEST_F(WholeCorePaint, EachSectionTitleIsDrawnInItsOwnSection) {
  for (int s = 0; s < 3; ++s) {
    model.Section(s).SectionTitleFontSize = 8;
    model.Section(s).HeaderRect = {20, 5, 0, 0};
  }
  PlotLayout l;
  const std::set<int> rows = RowsDrawnBy(&PlotState::ShowSectionTitles, 1, 0, l);
  // An 8-point bold title is 11 pixels high at 96 dpi, its text box 2 pixels larger.
  const int textHeight = CharHeight(11) + 4;
  auto titleTop = [&](int s) { return (5 + 60 * s) * l.PlotHeight / 180 + l.TopMargin - 2; };
  for (int s = 0; s < 3; ++s) {
    int inside = 0;
    for (int y : rows) inside += y >= titleTop(s) && y < titleTop(s) + textHeight;
    EXPECT_GT(inside, 3) << "section " << s + 1 << ": rows " << titleTop(s) << " .. " << titleTop(s) + textHeight;
  }
  for (int y : rows) {
    bool inTitle = false;
    for (int s = 0; s < 3; ++s) inTitle = inTitle || (y >= titleTop(s) && y < titleTop(s) + textHeight);
    EXPECT_TRUE(inTitle) << "row " << y << " is outside every title";
  }
}

}  // namespace
}  // namespace sedra::test
