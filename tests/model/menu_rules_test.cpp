// The menu's states after each event that changes them, as the user meets them.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "model/menu_rules.h"
#include "model/menu_state.h"

namespace sedra {
namespace {

std::vector<int> EnabledTops(const MenuState& m) {
  std::vector<int> on;
  for (int i = 0; i < kMenuPositions; ++i)
    if (m.IsTopEnabled(i)) on.push_back(i);
  return on;
}

TEST(MenuRules, EachEventLeavesTheMenuAsTheUserExpects) {
  using Event = std::function<void(MenuState&)>;
  const Event newCore = MenuAfterNewCore;
  const Event radiographCurve = [](MenuState& m) { MenuAfterLoad(m, LoadKind::Radiograph, true); };
  const Event radiographOnly = [](MenuState& m) { MenuAfterLoad(m, LoadKind::Radiograph, false); };
  const Event optical = [](MenuState& m) { MenuAfterLoad(m, LoadKind::Optical, false); };
  const Event opticalWithCurve = [](MenuState& m) { MenuAfterLoad(m, LoadKind::Optical, true); };
  const Event showAll = MenuAfterShowAll;
  const Event chooseWithCurve = [](MenuState& m) { MenuAfterSectionChosen(m, true); };
  const Event twoSections = [](MenuState& m) { MenuAfterSectionCount(m, 2); };
  const Event oneSection = [](MenuState& m) { MenuAfterSectionCount(m, 1); };
  struct Row {
    const char* what;
    std::vector<Event> events;
    std::vector<int> tops;
    bool sectionTitleAndDelete;
  } rows[] = {
      {"start, as the menu resource has it", {}, {0, 1, 3, 4, 5, 6, 8, 9, 10}, true},
      {"New", {newCore}, {0, 9, 10}, true},
      {"a radiograph giving the curve", {newCore, radiographCurve}, {0, 1, 2, 4, 5, 6, 8, 9, 10}, true},
      {"a radiograph without its curve", {newCore, radiographOnly}, {0, 1, 2, 4, 6, 8, 9, 10}, true},
      {"an optical image", {newCore, optical}, {0, 1, 2, 3, 6, 8, 9, 10}, true},
      {"optical after the radiograph keeps Element Data", {newCore, radiographCurve, opticalWithCurve},
       {0, 1, 2, 3, 4, 5, 6, 8, 9, 10}, true},
      {"all sections shown", {newCore, radiographCurve, twoSections, showAll}, {0, 1, 7, 8, 9, 10}, false},
      {"a section chosen again", {newCore, radiographCurve, twoSections, showAll, chooseWithCurve},
       {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}, true},
      {"back to one section", {newCore, radiographCurve, twoSections, oneSection}, {0, 1, 2, 4, 5, 6, 8, 9, 10}, true},
  };
  for (const Row& r : rows) {
    MenuState m = MenuState::Initial();
    for (const Event& e : r.events) e(m);
    EXPECT_EQ(EnabledTops(m), r.tops) << r.what;
    EXPECT_EQ(m.IsItemEnabled(kCmdSectionTitle), r.sectionTitleAndDelete) << r.what;
    EXPECT_EQ(m.IsItemEnabled(kCmdDeletePoints), r.sectionTitleAndDelete) << r.what;
    // Nothing enables Print or Set Main Title after a New; PDF output is always there.
    const bool afterNew = !r.events.empty();
    EXPECT_EQ(m.IsItemEnabled(kCmdPrint), !afterNew) << r.what;
    EXPECT_EQ(m.IsItemEnabled(kCmdMainTitle), !afterNew) << r.what;
    EXPECT_TRUE(m.IsItemEnabled(kCmdPrintPdf)) << r.what;
  }
}

TEST(MenuRules, ChecksAndTheImageSizeItem) {
  MenuState m = MenuState::Initial();
  EXPECT_TRUE(m.IsChecked(kCmdZoom100));
  EXPECT_FALSE(m.IsItemEnabled(kCmdImageSize));
  MenuAfterZoom(m, kCmdZoom800);
  for (int z : {kCmdZoom100, kCmdZoom200, kCmdZoom400, kCmdZoom800, kCmdZoom1600, kCmdZoom3200, kCmdExpand})
    EXPECT_EQ(m.IsChecked(z), z == kCmdZoom800) << z;
  MenuAfterOverlay(m, true, false);
  EXPECT_TRUE(m.IsChecked(kCmdOverlayOr));
  EXPECT_FALSE(m.IsChecked(kCmdOverlayAnd));
  MenuAfterInformationEditor(m, true);
  EXPECT_TRUE(m.IsItemEnabled(kCmdImageSize));
  MenuAfterInformationEditor(m, false);
  EXPECT_FALSE(m.IsItemEnabled(kCmdImageSize)) << "the box always starts unticked";
}

}  // namespace
}  // namespace sedra
