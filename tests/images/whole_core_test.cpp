// A whole core built section by section from generated folders: the slots it fills,
// its depth axis, the refusals that leave it as it was, and removal.

#include "images/whole_core.h"

#include <gtest/gtest.h>

#include "import/sample_files.h"
#include "model/core.h"
#include "model/menu_state.h"
#include "model/messages.h"
#include "model/numbers.h"

namespace sedra {
namespace {

namespace fs = std::filesystem;

class WholeCore : public test::ReaderTest {
 protected:
  void SetUp() override {
    folder = test::ScratchFolder();
    // Three 60 mm sections (300 rows of 0.2 mm) lying end to end from 100 mm.
    test::MakeSampleCore(folder, "--sections 3 --length 300 --width 40 --optical-length 320 --raw-values 0");
  }
  fs::path Section(int n) const { return folder / Format("section-%02d", n); }
  bool Add(int n) {
    prompt.ChooseFile((Section(n) / "radiograph.tif").string());
    return CommandAddSection(model, prompt);
  }
  static void Replace(const fs::path& file, const std::string& from, const std::string& to) {
    std::string text = test::ReadFile(file);
    ASSERT_NE(text.find(from), std::string::npos) << from;
    text.replace(text.find(from), from.size(), to);
    test::WriteBytes(file, text);
  }
  fs::path folder;
};

TEST_F(WholeCore, SectionsFillTheSlotsInOrderAlongOneDepthAxis) {
  for (int n = 1; n <= 3; ++n) ASSERT_TRUE(Add(n)) << n;
  EXPECT_TRUE(prompt.Messages.empty());
  EXPECT_EQ(model.Plot().SectionCount, 3);
  EXPECT_EQ(model.Plot().CurSectionIndex, 2) << "the section just read is current";
  EXPECT_TRUE(model.App.Menu.IsTopEnabled(kMenuSection));
  for (int s = 0; s < 3; ++s) {
    const CoreSection& section = model.Section(s);
    EXPECT_EQ(std::string(section.SectionName), std::to_string(s + 1));
    EXPECT_EQ(section.Optical.Height, 320) << "the folder's optical image comes with it";
    EXPECT_FLOAT_EQ(model.Plot().SectionLength[s], 60.0f);
    EXPECT_FLOAT_EQ(section.StartDepth, 100.0f + 60.0f * float(s)) << "each starts where the one before ends";
  }
  model.Plot().SectionCount = kMaxSections;
  prompt = {};
  EXPECT_FALSE(Add(1));
  EXPECT_EQ(prompt.Texts(), std::vector<std::string>{msg::kAllSectionsUsed});
  EXPECT_TRUE(prompt.OpenRequests.empty()) << "a thirteenth is refused before any file is asked for";
}

// Each bad third folder is told why and leaves the core of two sections as it was.
TEST_F(WholeCore, RefusedFoldersLeaveTheCoreAsItWas) {
  const struct {
    std::function<void(const fs::path&)> Spoil;  // none: the file dialog is cancelled
    std::vector<std::string> Told;
  } cases[] = {
      {[](const fs::path& f) { fs::remove(f / "document.txt"); }, {msg::kDocumentNotFound, msg::kSectionWithoutDocument}},
      {[](const fs::path& f) { Replace(f / "document.txt", "coordinate\t220.0", "coordinate\t200.0"); },
       {Format(msg::kSectionOverlaps, 2)}},
      {[](const fs::path& f) { test::MakeSampleCore(f, "--start 220 --length 300 --width 36 --raw-values 0"); },
       {Format(msg::kSectionWidthDiffers, 36, 2, 40)}},
      {nullptr, {}},
  };
  for (const auto& c : cases) {
    NewCore(model, nullptr);
    ASSERT_TRUE(Add(1) && Add(2));
    test::MakeSampleCore(Section(3), "--section 3 --start 220 --length 300 --width 40 --raw-values 0");
    if (c.Spoil) c.Spoil(Section(3));
    const PlotState before = model.Plot();
    const MenuState menuBefore = model.App.Menu;
    prompt = {};
    if (c.Spoil) prompt.ChooseFile((Section(3) / "radiograph.tif").string());
    EXPECT_FALSE(CommandAddSection(model, prompt));
    EXPECT_EQ(prompt.Texts(), c.Told);
    EXPECT_EQ(std::tuple(model.Plot().SectionCount, model.Plot().CurSectionIndex, model.Plot().DepthSpan),
              std::tuple(2, before.CurSectionIndex, before.DepthSpan));
    EXPECT_EQ(model.App.Menu.TopEnabled, menuBefore.TopEnabled);
    EXPECT_FALSE(SectionLoaded(model.Section(2)));
  }
}

TEST_F(WholeCore, ChangedScanConditionsAreToldAndTheSectionIsRead) {
  model.Settings().ShowWarnings = 1;
  Replace(Section(2) / "document.txt", "Tube Voltage\t30", "Tube Voltage\t35");
  Replace(Section(2) / "document.txt", "Tube\tMo", "Tube\tCu");
  ASSERT_TRUE(Add(1) && Add(2));
  EXPECT_EQ(prompt.Texts(), (std::vector<std::string>{msg::kWarnVoltage, msg::kWarnTube}));
  EXPECT_EQ(model.Section(1).TubeVoltage, 35);
}

// The later sections move up; the question comes only with unsaved changes.
TEST_F(WholeCore, RemovingASectionClosesUpTheSlots) {
  for (int n = 1; n <= 3; ++n) ASSERT_TRUE(Add(n)) << n;
  const struct {
    uint32_t Modified;
    Answer Reply;
    std::vector<std::string> NamesAfter;
    int CurrentAfter;
  } cases[] = {{1, Answer::No, {"1", "2", "3"}, 1}, {1, Answer::Yes, {"1", "3"}, 1}, {0, Answer::Cancel, {"1"}, 0}};
  for (const auto& c : cases) {
    model.SelectSection(1);
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
  EXPECT_EQ(model.Section(0).Radiographs[0].Height, 300);
  EXPECT_FALSE(model.App.Menu.IsTopEnabled(kMenuSection)) << "one section left: nothing to choose";
}

}  // namespace
}  // namespace sedra
