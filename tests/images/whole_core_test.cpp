// A whole core built section by section from generated folders: the slots it fills,
// the depth axis it makes, what each kind of bad folder is told, and removal.

#include "images/whole_core.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "images/load.h"
#include "import/sample_files.h"
#include "model/core.h"
#include "model/menu_state.h"
#include "model/messages.h"
#include "model/numbers.h"

namespace sedra {
namespace {

namespace fs = std::filesystem;

// Three 60 mm sections (300 rows of 0.2 mm) lying end to end from 100 mm.
constexpr const char* kCore = "--sections 3 --length 300 --width 40 --optical-length 320 --optical-width 48 --raw-values 0";

class WholeCore : public test::ReaderTest {
 protected:
  void SetUp() override {
    folder = test::ScratchFolder();
    test::MakeSampleCore(folder, kCore);
  }
  fs::path Section(int n) const { return folder / Format("section-%02d", n); }
  bool Add(const fs::path& section) {
    prompt.ChooseFile((section / "radiograph.tif").string());
    return CommandAddSection(model, prompt);
  }
  void AddAll() {
    for (int n = 1; n <= 3; ++n) ASSERT_TRUE(Add(Section(n))) << n;
    ASSERT_TRUE(prompt.Messages.empty()) << prompt.Messages[0].Text;
  }
  static void Replace(const fs::path& file, const std::string& from, const std::string& to) {
    std::string text = test::ReadFile(file);
    const size_t at = text.find(from);
    ASSERT_NE(at, std::string::npos) << from;
    text.replace(at, from.size(), to);
    test::WriteBytes(file, text);
  }
  fs::path folder;
};

TEST_F(WholeCore, SectionsFillTheSlotsInOrderAlongOneDepthAxis) {
  AddAll();
  const PlotState& plot = model.Plot();
  EXPECT_EQ(plot.SectionCount, 3);
  EXPECT_EQ(plot.CurSectionIndex, 2) << "the section just read is current";
  EXPECT_TRUE(model.App.Menu.IsTopEnabled(kMenuSection));
  for (int s = 0; s < 3; ++s) {
    SCOPED_TRACE(s);
    const CoreSection& section = model.Section(s);
    EXPECT_EQ(std::string(section.SectionName), std::to_string(s + 1));
    EXPECT_EQ(section.Radiographs[0].Height, 300);
    EXPECT_EQ(section.Optical.Height, 320) << "the folder's optical image comes with it";
    EXPECT_FLOAT_EQ(plot.SectionLength[s], 60.0f);
    // Each section starts where the one before it ends.
    EXPECT_FLOAT_EQ(section.StartDepth, 100.0f + 60.0f * float(s));
  }
  EXPECT_FALSE(SectionLoaded(model.Section(3)));
}

// Each bad folder is told why and leaves the core of two sections as it was.
TEST_F(WholeCore, RefusedFoldersLeaveTheCoreAsItWas) {
  struct Case {
    const char* Name;
    std::function<void(const fs::path&)> Spoil;  // none: the file dialog is cancelled
    std::vector<std::string> Told;
  };
  const std::vector<Case> cases = {
      {"no document.txt", [](const fs::path& f) { fs::remove(f / "document.txt"); },
       {msg::kDocumentNotFound, msg::kSectionWithoutDocument}},
      {"depths overlap section 2",
       [](const fs::path& f) { Replace(f / "document.txt", "Start coordinate\t220.0", "Start coordinate\t200.0"); },
       {Format(msg::kSectionOverlaps, 2)}},
      {"narrower radiograph",
       [](const fs::path& f) {
         test::MakeSampleCore(f, "--section 3 --start 220 --length 300 --width 36 --raw-values 0");
       },
       {Format(msg::kSectionWidthDiffers, 36, 2, 40)}},
      {"cancelled file dialog", nullptr, {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.Name);
    NewCore(model, nullptr);
    prompt = {};
    ASSERT_TRUE(Add(Section(1)));
    ASSERT_TRUE(Add(Section(2)));
    test::MakeSampleCore(Section(3), "--section 3 --start 220 --length 300 --width 40 --raw-values 0");
    if (c.Spoil) c.Spoil(Section(3));
    const PlotState plotBefore = model.Plot();
    const MenuState menuBefore = model.App.Menu;
    prompt.Messages.clear();
    if (c.Spoil) prompt.ChooseFile((Section(3) / "radiograph.tif").string());
    EXPECT_FALSE(CommandAddSection(model, prompt));
    EXPECT_EQ(prompt.Texts(), c.Told);
    EXPECT_EQ(model.Plot().SectionCount, 2);
    EXPECT_EQ(model.Plot().CurSectionIndex, plotBefore.CurSectionIndex);
    EXPECT_EQ(model.Plot().DepthSpan, plotBefore.DepthSpan);
    EXPECT_EQ(model.App.Menu.TopEnabled, menuBefore.TopEnabled);
    EXPECT_FALSE(SectionLoaded(model.Section(2)));
    EXPECT_EQ(model.Section(1).Radiographs[0].Height, 300) << "the sections already read stay";
  }
}

TEST_F(WholeCore, AThirteenthSectionIsRefusedBeforeAnyFileIsAskedFor) {
  AddAll();
  model.Plot().SectionCount = kMaxSections;
  EXPECT_FALSE(Add(Section(1)));
  EXPECT_EQ(prompt.Texts(), std::vector<std::string>{msg::kAllSectionsUsed});
  EXPECT_EQ(prompt.OpenRequests.size(), 3u);
  EXPECT_EQ(model.Plot().SectionCount, kMaxSections);
}

TEST_F(WholeCore, ChangedScanConditionsAreToldAndTheSectionIsRead) {
  model.Settings().ShowWarnings = 1;
  Replace(Section(2) / "document.txt", "Tube Voltage\t30", "Tube Voltage\t35");
  Replace(Section(2) / "document.txt", "Tube\tMo", "Tube\tCu");
  ASSERT_TRUE(Add(Section(1)));
  ASSERT_TRUE(Add(Section(2)));
  EXPECT_EQ(prompt.Texts(), (std::vector<std::string>{msg::kWarnVoltage, msg::kWarnTube}));
  EXPECT_EQ(model.Plot().SectionCount, 2);
  EXPECT_EQ(model.Section(1).TubeVoltage, 35);
}

// Removing a section: the later ones move up, the question comes only with unsaved
// changes, and No keeps everything.
TEST_F(WholeCore, RemovingASectionClosesUpTheSlots) {
  AddAll();
  struct Case {
    int Current;
    uint32_t Modified;
    Answer Reply;
    std::vector<std::string> NamesAfter;
    int CurrentAfter;
  };
  const std::vector<Case> cases = {
      {1, 1, Answer::No, {"1", "2", "3"}, 1},
      {1, 1, Answer::Yes, {"1", "3"}, 1},
      {1, 0, Answer::Cancel, {"1"}, 0},
  };
  for (const Case& c : cases) {
    model.SelectSection(c.Current);
    model.Plot().Modified = c.Modified;
    prompt = {};
    prompt.Answers.push_back(c.Reply);
    RemoveCurrentSection(model, prompt);
    EXPECT_EQ(prompt.Texts().size(), size_t(c.Modified));
    std::vector<std::string> names;
    for (int s = 0; s < model.Plot().SectionCount; ++s) names.push_back(model.Section(s).SectionName);
    EXPECT_EQ(names, c.NamesAfter);
    EXPECT_EQ(model.Plot().CurSectionIndex, c.CurrentAfter);
    EXPECT_FALSE(SectionLoaded(model.Section(int(c.NamesAfter.size()))));
  }
  // The moved section keeps its images and its place on the depth axis.
  EXPECT_EQ(model.Section(0).Radiographs[0].Height, 300);
  EXPECT_FLOAT_EQ(model.Plot().SectionLength[0], 60.0f);
  EXPECT_FALSE(model.App.Menu.IsTopEnabled(kMenuSection)) << "one section left: nothing to choose";
}

}  // namespace
}  // namespace sedra
