// A whole core built section by section from generated folders: the slots it fills, the
// refusals that leave it as it was, removal, the radiographs placed by "Set Radiograph
// Position", and the core painted whole with each section's own edits in its stretch.

#include "images/whole_core.h"

#include <gtest/gtest.h>

#include <QRadioButton>
#include <set>

#include "images/load.h"
#include "images/ui/radiograph_position_dialog.h"
#include "import/sample_files.h"
#include "interact/data_dialogs.h"
#include "model/core.h"
#include "model/menu_rules.h"
#include "model/messages.h"
#include "model/numbers.h"
#include "plot/curves.h"
#include "plot/plot_fixture.h"
#include "ui/controls.h"

namespace sedra::test {
namespace {

// Sections of 60, 40 and 60 mm (rows of 0.2 mm) lying end to end from 100 mm.
constexpr const char* kSection = "--length 300 --width 40 --optical-length 320 --raw-values 0";
constexpr float kStarts[] = {0, 60, 100, 160};

class WholeCore : public ::testing::Test {
 protected:
  void SetUp() override {
    StartCore(model);
    MakeSampleCore(folder, std::string("--sections 3 ") + kSection);
    MakeSampleCore(Section(2), std::string(kSection) + " --section 2 --start 160 --length 200");
    MakeSampleCore(Section(3), std::string(kSection) + " --section 3 --start 200");
  }
  std::filesystem::path Section(int n) const { return folder / Format("section-%02d", n); }
  bool Add(const std::filesystem::path& section) {
    prompt.ChooseFile((section / "radiograph.tif").string());
    return CommandAddSection(model, prompt);
  }
  bool AddAll() { return Add(Section(1)) && Add(Section(2)) && Add(Section(3)); }
  void ShowAll() {
    model.Plot().ShowAllSections = 1;
    MenuAfterShowAll(model.App.Menu);
  }
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (int s = 0; s < model.Plot().SectionCount; ++s) names.push_back(model.Section(s).SectionName);
    return names;
  }
  const std::filesystem::path folder = ScratchFolder();
  Model model;
  ScriptedPrompt prompt;
};

TEST_F(WholeCore, SectionsFillTheSlotsInOrderAlongOneDepthAxis) {
  // The second section's tube ran harder: told on reading it and again on the third.
  model.Settings().ShowWarnings = 1;
  std::string document = ReadFile(Section(2) / "document.txt");
  WriteBytes(Section(2) / "document.txt", document.replace(document.find("Voltage\t30"), 10, "Voltage\t35"));
  ASSERT_TRUE(Add(Section(1)) && Add(Section(2)));
  ShowAll();  // a core shown whole stays whole, its single-section tools still off
  const auto itemsShownWhole = model.App.Menu.ItemEnabled;
  ASSERT_TRUE(Add(Section(3)));
  EXPECT_TRUE(model.Plot().ShowAllSections && model.App.Menu.ItemEnabled == itemsShownWhole);
  EXPECT_EQ(prompt.Texts(), (std::vector<std::string>{msg::kWarnVoltage, msg::kWarnVoltage}));
  EXPECT_EQ(Names(), (std::vector<std::string>{"1", "2", "3"}));
  EXPECT_EQ(model.Plot().CurSectionIndex, 2) << "the section just read is current";
  EXPECT_TRUE(model.App.Menu.IsTopEnabled(kMenuSection));
  for (int s = 0; s < 3; ++s) {
    EXPECT_EQ(model.Section(s).Optical.Height, 320) << "the folder's optical image comes with it";
    EXPECT_FLOAT_EQ(model.Plot().SectionLength[s], kStarts[s + 1] - kStarts[s]);
    EXPECT_FLOAT_EQ(model.Section(s).StartDepth, 100.0f + kStarts[s]) << "where the one before ends";
  }
  model.Plot().SectionCount = kMaxSections;
  prompt = {};
  EXPECT_FALSE(Add(Section(1)));
  EXPECT_EQ(prompt.Texts(), std::vector<std::string>{msg::kAllSectionsUsed});
  EXPECT_TRUE(prompt.OpenRequests.empty()) << "a thirteenth is refused before any file is asked for";
}

// Each bad third folder is told why and leaves the core of two sections as it was.
TEST_F(WholeCore, RefusedFoldersLeaveTheCoreAsItWas) {
  const std::pair<const char*, std::vector<std::string>> cases[] = {
      {"--missing document.txt --start 200", {msg::kDocumentNotFound, msg::kSectionWithoutDocument}},
      {"--start 180", {Format(msg::kSectionOverlaps, 2)}},
      {"--start 200 --width 36", {Format(msg::kSectionWidthDiffers, 36, 2, 40)}},
      {nullptr, {}},  // the file dialog cancelled
  };
  ASSERT_TRUE(Add(Section(1)) && Add(Section(2)));
  ShowAll();
  const PlotState before = model.Plot();
  const MenuState menu = model.App.Menu;
  for (const auto& [options, told] : cases) {
    prompt = {};
    if (options) MakeSampleCore(folder / "bad", std::string(kSection) + " --section 3 " + options);
    EXPECT_FALSE(options ? Add(folder / "bad") : CommandAddSection(model, prompt));
    EXPECT_EQ(prompt.Texts(), told);
    EXPECT_EQ(std::memcmp(&model.Plot(), &before, sizeof before), 0) << (options ? options : "cancelled");
    EXPECT_EQ(std::tie(model.App.Menu.TopEnabled, model.App.Menu.ItemEnabled, model.App.Menu.ItemChecked),
              std::tie(menu.TopEnabled, menu.ItemEnabled, menu.ItemChecked));
    EXPECT_FALSE(SectionLoaded(model.Section(2)));
  }
}

// The later sections move up; the question comes only with unsaved changes.
TEST_F(WholeCore, RemovingASectionClosesUpTheSlots) {
  ASSERT_TRUE(AddAll());
  model.Plot().ShowAllSections = 1;
  const struct {
    uint32_t Modified;
    Answer Reply;
    std::vector<std::string> NamesAfter;
    float SecondLength;
  } cases[] = {{1, Answer::No, {"1", "2", "3"}, 40}, {1, Answer::Yes, {"1", "3"}, 60}, {0, Answer::Cancel, {"1"}, 0}};
  for (const auto& c : cases) {
    model.SelectSection(1);
    model.Plot().Modified = c.Modified;
    prompt = {};
    prompt.Answers.push_back(c.Reply);
    RemoveCurrentSection(model, prompt);
    EXPECT_EQ(prompt.Texts().size(), size_t(c.Modified));
    EXPECT_EQ(std::pair(Names(), model.Plot().SectionLength[1]), std::pair(c.NamesAfter, c.SecondLength));
    EXPECT_EQ(model.Plot().CurSectionIndex, std::min(1, int(c.NamesAfter.size()) - 1));
    EXPECT_FALSE(SectionLoaded(model.Section(int(c.NamesAfter.size()))));
  }
  EXPECT_EQ(model.Section(0).Radiographs[0].Height, 300);
  EXPECT_FALSE(model.App.Menu.IsTopEnabled(kMenuSection) || model.Plot().ShowAllSections) << "one section left";
}

// Radiographs told apart by their lengths.  The dialog offers "Centre" with two and
// "Right" with three; the one added goes to the chosen place.
TEST_F(WholeCore, AddedRadiographsTakeThePlacesChosen) {
  constexpr int kLeft = 1458, kCentre = 1459, kRight = 1460;
  for (const char* length : {"200", "100", "50"}) MakeSampleCore(folder / length, std::string(kSection) + " --length " + length);
  const struct {
    const char* Name;  // a folder, or "" to take the last radiograph out
    int Button;        // 0: the default
    std::vector<int> Lengths;
  } steps[] = {{"200", kRight, {300, 200}},  {"100", kLeft, {100, 300, 200}}, {"50", kRight, {100, 300, 200}},
               {"", 0, {100, 300}},          {"200", kCentre, {100, 200, 300}}, {"", 0, {100, 200}},
               {"section-03", kLeft, {100, 200}}, {"", 0, {100}},         {"50", 0, {100, 50}}};
  ASSERT_TRUE(Add(Section(1)));
  MakeSampleCore(Section(3), "--width 44 --raw-values 0");
  for (const auto& step : steps) {
    CoreSection& section = model.CurSection();
    prompt.Files.clear();  // a fourth is refused before its file is asked for
    prompt.ChooseFile((folder / step.Name / "radiograph.tif").string());
    if (!*step.Name) model.Radiograph(--section.RadiographCount).Clear();
    else CommandAddRadiograph(model, prompt, [&step](int count) {
        RadiographPositionDialog dialog(nullptr, count);
        EXPECT_TRUE(Control<QRadioButton>(&dialog, count == 2 ? kCentre : kRight)->isChecked()) << "the default";
        if (step.Button) Control<QRadioButton>(&dialog, step.Button)->click();
        dialog.OnOk();
        return dialog.Place();
      });
    std::vector<int> lengths;
    for (int i = 0; i < section.RadiographCount; ++i) lengths.push_back(model.Radiograph(i).Height);
    EXPECT_EQ(lengths, step.Lengths) << step.Name;
  }
  EXPECT_EQ(prompt.Texts(), (std::vector<std::string>{msg::kOnlyThreeRadiographs, Format(msg::kRadiographWidthDiffers, 44, 40)}));
}

// Rows in which two paintings differ.
std::set<int> RowsThatDiffer(const QImage& a, const QImage& b) {
  std::set<int> rows;
  for (int y = 0; y < a.height(); ++y)
    for (int x = 0; x < a.width() && !rows.count(y); ++x)
      if (a.pixel(x, y) != b.pixel(x, y)) rows.insert(y);
  return rows;
}

// The whole core painted: dividers at the section ends at 100%, and scrolled to at 200%
// and 400%; an edit of one section in that section's stretch and nowhere else.
TEST_F(WholeCore, PaintedWholeEachSectionKeepsToItsStretch) {
  model.Settings().ShowRadiographData = 1;
  ASSERT_TRUE(AddAll());
  model.Plot().ShowAllSections = model.Plot().ShowSectionTitles = model.Work().ShowSectionName = 1;
  model.CurSection().SectionTitleFontSize = 8;  // the current section's size is every title's
  PlotLayout l;
  auto rowsChangedBy = [&](const std::function<void()>& change, int zoom, int scroll) {
    model.Plot().ZoomFactor = zoom;
    const QImage before = Paint(model, 900, 600, scroll, &l);
    change();
    return RowsThatDiffer(before, Paint(model, 900, 600, scroll));
  };
  auto row = [&](float mm, int scroll) { return l.Y0 + int(mm * float(l.PlotHeight) / l.DepthSpan) - scroll; };
  for (int zoom : {1, 2, 4}) {
    const int scroll = zoom == 1 ? 0 : zoom * 600 * 2 / 3 - 300;
    auto rows = rowsChangedBy([&] { model.Plot().ShowDividers ^= 1; }, zoom, scroll);
    rows.erase(row(160, scroll));  // the core's end may repaint its own axis line
    std::set<int> expected;
    for (float end : {kStarts[1], kStarts[2]})
      if (row(end, scroll) >= 0 && row(end, scroll) < 600) expected.insert(row(end, scroll));
    EXPECT_EQ(rows, expected) << "zoom " << zoom;
  }
  const std::pair<const char*, std::function<void(CoreSection&)>> edits[] = {
      {"region", [](CoreSection& s) { s.HRegionTop[0] = 10, s.HRegionBottom[0] = 30, s.HRegionPattern[0] = 1; }},
      {"line", [](CoreSection& s) { s.HLineDepth[0] = 20, s.HLineWidth[0] = 2; }},
      {"optical contrast", [](CoreSection& s) { s.Optical.Lower = 120, ++s.Optical.Bitmap.Generation; }},
      {"title moved", [](CoreSection& s) { s.HeaderRect = {20, 5, 0, 0}; }},
      {"deleted points", [](CoreSection& s) { MarkPoints(s, 10.0, 30.0, true); }},
  };
  for (const auto& [name, edit] : edits)
    for (int s : {1, 2}) {
      const auto rows = rowsChangedBy([&] { edit(model.Section(s)); }, 1, 0);
      ASSERT_FALSE(rows.empty()) << name << " in section " << s + 1;
      EXPECT_GE(*rows.begin(), row(kStarts[s], 0) - 1) << name << " in section " << s + 1;
      EXPECT_LE(*rows.rbegin(), row(kStarts[s + 1], 0) + 1) << name << " in section " << s + 1;
    }
  // The coverage bar over a 4000-row core, whole and in a window scrolled into its third section.
  auto bar = [&](int height, int originY) {
    return PaintWith(model, [](PaintContext& ctx) { DrawCoverageBar(ctx, 0, 0, 4000); }, 8, height, originY);
  };
  EXPECT_EQ(bar(4000, 0).copy(0, 2700, 8, 300), bar(300, 2700));
}

}  // namespace
}  // namespace sedra::test
