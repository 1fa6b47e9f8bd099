#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <functional>
#include <optional>
#include <tuple>

#include "model/file_replace.h"
#include "model/messages.h"
#include "model/model.h"
#include "model/settings_files.h"
#include "output/file_bytes.h"
#include "support/permissions.h"
#include "support/scripted_prompt.h"

namespace sedra {
namespace {

namespace fs = std::filesystem;
using test::ReadBytes;

void WriteAll(const fs::path& path, const std::vector<uint8_t>& bytes) {
  test::WriteAllText(path, {bytes.begin(), bytes.end()});
}

// A folder of the test's own where a first run has written its settings, read as start-up
// reads them into `first`.
class SettingsFilesTest : public ::testing::Test {
 protected:
  void SetUp() override {
    CreateSettingsIfMissing(first, folder_);
    ASSERT_TRUE(ReadSettings(first, folder_, &prompt));
  }
  test::TempFolder temp_{"settings"};
  const fs::path& folder_ = temp_.Path();
  Model first;
  test::ScriptedPrompt prompt;
};

TEST_F(SettingsFilesTest, FirstRunWritesTheDefaultsByteForByteAndTheOptionalFilesFallBackSilently) {
  EXPECT_TRUE(prompt.Messages.empty());
  const auto d = ReadBytes(folder_ / "defaults.def");
  ASSERT_EQ(d.size(), 1016u);
  EXPECT_EQ(d[0], 0) << "no folder yet";
  // The nine colours; the format mark, set in memory only, after reading; font sizes,
  // window place and printer margins.
  test::ExpectFields(d, {{576, 4, 0xFFFFFF}, {580, 4, 0xFF0000}, {584, 4, 0}, {588, 4, 0x008000}, {592, 4, 0x008000},
                         {596, 4, 0xC0C0C0}, {600, 4, 0x800080}, {604, 4, 0x008000}, {608, 4, 0xFF00FF}, {792, 4, 0},
                         {800, 4, 9}, {804, 4, 6}, {808, 4, 8}, {976, 4, 5}, {980, 4, 5}, {984, 4, 1000}, {988, 4, 700},
                         {1000, 2, 7}, {1002, 2, 10}, {1004, 2, 5}, {1006, 2, 10}});
  // The checksum's rule is checked by the corrupt files below.

  // The element block does not exist yet on a first run: elements.def is empty and the
  // element settings start all zero; miscdata.def is the zero working block.
  EXPECT_EQ(fs::file_size(folder_ / "elements.def"), 0u);
  for (const auto& entry : first.App.Elements.Entries) EXPECT_EQ(entry[0], 0);
  const auto misc = ReadBytes(folder_ / "miscdata.def");
  ASSERT_EQ(misc.size(), 75456u);
  EXPECT_EQ(std::count(misc.begin(), misc.end(), 0), 75456);
  EXPECT_EQ(first.Work().ShowCoreName, 0u);
  EXPECT_EQ(first.Settings().FormatMark, 608u);

  // A missing elements.def brings the element defaults; a short miscdata.def turns the
  // four display switches on.
  fs::remove(folder_ / "elements.def");
  WriteAll(folder_ / "miscdata.def", std::vector<uint8_t>(100, 0));
  Model m;
  ASSERT_TRUE(ReadSettings(m, folder_, &prompt));
  EXPECT_TRUE(prompt.Messages.empty());
  for (const auto& entry : m.App.Elements.Entries) EXPECT_EQ(std::pair(int(entry[0]), int(entry[15])), std::pair(1, 0));
  const WorkingBlock& w = m.Work();
  EXPECT_EQ(std::tuple(w.ShowRadiograph, w.ShowOptical, w.ShowCoreName, w.ShowSectionName), std::tuple(1u, 1u, 1u, 1u));
}

TEST_F(SettingsFilesTest, CorruptOrShortDefaultsStopTheStartWithTheMessage) {
  const auto good = ReadBytes(folder_ / "defaults.def");

  auto changed = [&](size_t at, uint8_t x) {
    auto b = good;
    b[at] ^= x;
    return b;
  };
  auto longer = good;
  longer.push_back(0x5A);
  const struct {
    const char* what;
    std::optional<std::vector<uint8_t>> bytes;  // none: no defaults.def at all
    const char* message;                        // null: read
  } rows[] = {
      {"low nibble changed", changed(300, 0x01), msg::kErrorReadingDefaults},
      {"high nibble changed", changed(300, 0x10), nullptr},
      {"checksum itself changed", changed(1012, 0x01), msg::kErrorReadingDefaults},
      {"1015 bytes", std::vector<uint8_t>(good.begin(), good.end() - 1), msg::kErrorReadingDefaults},
      {"1017 bytes read as its first 1016", longer, nullptr},
      {"empty", std::vector<uint8_t>{}, msg::kErrorReadingDefaults},
      {"missing", std::nullopt, msg::kCouldNotOpenDefaults},
  };
  for (const auto& r : rows) {
    if (r.bytes)
      WriteAll(folder_ / "defaults.def", *r.bytes);
    else
      fs::remove(folder_ / "defaults.def");
    Model m;
    prompt.Messages.clear();
    EXPECT_EQ(ReadSettings(m, folder_, &prompt), r.message == nullptr) << r.what;
    EXPECT_EQ(prompt.Texts(), r.message ? std::vector<std::string>{r.message} : std::vector<std::string>{}) << r.what;
    for (const auto& shown : prompt.Messages) {
      EXPECT_EQ(shown.Caption, msg::kSupportCaption);
      EXPECT_EQ(shown.IconKind, Icon::Hand);
    }
  }
}

// What is read back is put right where it could not be used: font sizes below six take
// their defaults, a window that could not be shown opens at the default place.
TEST_F(SettingsFilesTest, FontSizesBelowSixAndUnusableWindowsTakeTheDefaults) {
  for (const bool usable : {false, true}) {
    Model m;
    DisplaySettings& s = m.Settings();
    SetDefaultSettings(s);
    const int32_t size = usable ? 6 : 5;
    const WindowPlace window = usable ? WindowPlace{-1800, 40, 1600, 900} : WindowPlace{0, 0, 0, 0};
    std::tie(s.ElementFontSize, s.HScaleFontSize, s.DepthFontSize) = std::tuple(size, size, size);
    std::tie(s.WindowX, s.WindowY, s.WindowWidth, s.WindowHeight) =
        std::tuple(window.X, window.Y, window.Width, window.Height);
    WriteSettings(m, folder_);  // with a valid checksum
    Model back;
    ASSERT_TRUE(ReadSettings(back, folder_, &prompt));
    const DisplaySettings& b = back.Settings();
    EXPECT_EQ(std::tuple(b.ElementFontSize, b.HScaleFontSize, b.DepthFontSize),
              (usable ? std::tuple(6, 6, 6) : std::tuple(11, 8, 8)));
    EXPECT_EQ((WindowPlace{b.WindowX, b.WindowY, b.WindowWidth, b.WindowHeight}),
              (usable ? window : WindowPlace{5, 5, 1000, 700}));
  }
}

// Settings files as other people and other programs leave them.  Each row starts from a
// first run's files, changes something, then starts (reads) and closes (writes) again.
struct SettingsState {
  const char* Name;
  std::function<void(const fs::path& folder)> Change;  // before the start
  const char* NotSaved;  // the file WriteSettings could not write; null when all were
  int Error;
};

class SettingsStates : public SettingsFilesTest, public ::testing::WithParamInterface<SettingsState> {};

TEST_P(SettingsStates, StartAndCloseAgain) {
  const SettingsState& c = GetParam();
  c.Change(folder_);
  const auto defaultsBefore = ReadBytes(folder_ / "defaults.def");
  const bool linked = fs::is_symlink(folder_ / "defaults.def");

  Model m;
  EXPECT_TRUE(ReadSettings(m, folder_, &prompt));
  EXPECT_TRUE(prompt.Messages.empty());
  // Changes the close saves; reserved and scratch bytes are kept as they are.
  m.Settings().MarginLeft = 42;
  std::strcpy(m.Settings().SectionFolder, "/cores/GC-12/section 3");
  m.Settings().Reserved256[7] = 0xAB;
  m.Work().ShowCoreName = 1;
  m.Work().Scratch[1000] = 0x77;
  SettingsSave check, save;
  test::WithoutPermissionOverride([&] {
    check = CheckSettingsWritable(folder_);
    save = WriteSettings(m, folder_);
  });
  EXPECT_EQ(save.Saved, c.NotSaved == nullptr);
  EXPECT_EQ(check.Saved, save.Saved) << "the start-up check foresees the close";
  if (c.NotSaved) {
    EXPECT_EQ(save.File.filename(), c.NotSaved);
    EXPECT_EQ(save.Error, c.Error);
    const std::string message = SettingsNotSavedMessage(save);
    EXPECT_NE(message.find(WriteFailureReason(c.Error)), std::string::npos) << message;
    EXPECT_NE(message.find(c.NotSaved), std::string::npos) << message;
    EXPECT_EQ(ReadBytes(folder_ / "defaults.def"), defaultsBefore) << "a file not saved is left as it was";
  }
  // Nothing half-written is left behind, whatever happened.
  std::error_code ec;
  for (const auto& entry : fs::directory_iterator(folder_, ec))
    EXPECT_EQ(entry.path().filename().string().find(".tmp-"), std::string::npos) << entry.path();
  EXPECT_EQ(fs::file_size(folder_ / "elements.def"), 320u) << "written whatever became of defaults.def";
  EXPECT_EQ(fs::is_symlink(folder_ / "defaults.def"), linked) << "written through a link, which stays";
  if (save.Saved) {
    Model back;
    ASSERT_TRUE(ReadSettings(back, folder_, &prompt));
    EXPECT_STREQ(back.Settings().SectionFolder, "/cores/GC-12/section 3");
    EXPECT_EQ(std::tuple(back.Settings().MarginLeft, back.Settings().Reserved256[7], back.Work().ShowCoreName,
                         back.Work().Scratch[1000]),
              std::tuple(42, 0xAB, 1u, 0x77));
  }
}

INSTANTIATE_TEST_SUITE_P(
    Rows, SettingsStates,
    ::testing::Values(
        SettingsState{"ReadOnlyDefaultsAreKeptAndTheOthersWritten",
                      [](const fs::path& f) { fs::permissions(f / "defaults.def", fs::perms::owner_read); },
                      "defaults.def", EACCES},
        SettingsState{"LinkedDefaults",
                      [](const fs::path& f) {
                        fs::create_directories(f / "shared");
                        fs::rename(f / "defaults.def", f / "shared" / "lab.def");
                        fs::create_symlink(fs::path("shared") / "lab.def", f / "defaults.def");
                      },
                      nullptr, 0},
        SettingsState{"StaleTemporaryFolderDoesNotBlock",
                      [](const fs::path& f) { fs::create_directories(f / "defaults.def.tmp" / "x"); }, nullptr, 0}),
    [](const auto& i) { return std::string(i.param.Name); });

// Where the window opens on the screens there are: the stored place when its title bar
// can be grabbed there, shrunk onto a screen smaller than it, moved to the current
// screen when it is on none.
TEST(VisibleWindowPlace, KeepsShrinksOrMovesTheStoredRectangle) {
  const std::vector<WindowPlace> two = {{0, 0, 1920, 1040}, {1920, 0, 1280, 984}};
  const struct {
    const char* What;
    WindowPlace Stored;
    size_t Current;
    WindowPlace Expect;
  } rows[] = {
      {"on the first screen", {5, 5, 1000, 700}, 0, {5, 5, 1000, 700}},
      {"on the second screen", {2000, 100, 1000, 700}, 0, {2000, 100, 1000, 700}},
      {"mostly off the right edge, title still there", {1850, 100, 800, 600}, 0, {1850, 100, 800, 600}},
      {"monitor unplugged", {3500, 100, 1000, 700}, 1, {1925, 5, 1000, 700}},
      {"title above the screen", {100, -50, 1000, 700}, 0, {5, 5, 1000, 700}},
      {"larger than its screen", {1930, 10, 1600, 1200}, 0, {1920, 0, 1280, 984}},
      {"empty", {0, 0, 0, 0}, 0, {5, 5, 1000, 700}},
      {"absurd size", {10, 10, INT32_MAX, INT32_MAX}, 1, {1925, 5, 1000, 700}},
      {"absurd position", {INT32_MIN, 10, 800, 600}, 0, {5, 5, 1000, 700}},
  };
  for (const auto& r : rows) EXPECT_EQ(VisibleWindowPlace(r.Stored, two, r.Current), r.Expect) << r.What;
}

// A build keeps its settings in the working folder; an installed program in the
// user's configuration folder, unless the working folder already has them.
TEST_F(SettingsFilesTest, SettingsFolderOfABuildAndOfAnInstalledProgram) {
  const fs::path prefix = folder_ / "usr";
  const fs::path installed = prefix / "lib" / "sedra-plot" / "sedra-plot";
  const fs::path build = folder_ / "build" / "release" / "sedra-plot";
  const fs::path work = folder_ / "work", settled = folder_ / "settled", home = folder_ / "home";
  for (const fs::path& dir : {prefix / "lib" / "sedra-plot", prefix / "share" / "applications", work, settled})
    fs::create_directories(dir);
  WriteAll(prefix / "share" / "applications" / "sedra-plot.desktop", {});
  WriteAll(settled / "defaults.def", {});
  const struct {
    const char* What;
    fs::path Executable, Working;
    std::string ConfigHome;
    fs::path Expect;
  } rows[] = {
      {"build", build, work, (folder_ / "config").string(), work},
      {"installed", installed, work, (folder_ / "config").string(), folder_ / "config" / "sedra-plot"},
      {"installed, no XDG_CONFIG_HOME", installed, work, "", home / ".config" / "sedra-plot"},
      {"installed, relative XDG_CONFIG_HOME", installed, work, "cfg", home / ".config" / "sedra-plot"},
      {"installed, started where settings are", installed, settled, (folder_ / "config").string(), settled},
  };
  for (const auto& r : rows) {
    EXPECT_EQ(ChooseSettingsFolder(r.Executable, r.Working, r.ConfigHome, home.string()), r.Expect) << r.What;
    EXPECT_TRUE(fs::is_directory(r.Expect)) << r.What;
  }
  EXPECT_EQ(ChooseSettingsFolder(installed, work, "", ""), work) << "no home: the working folder";
}

}  // namespace
}  // namespace sedra
