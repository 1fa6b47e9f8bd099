#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <functional>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <vector>

#include "model/file_replace.h"
#include "model/messages.h"
#include "model/model.h"
#include "model/settings_files.h"
#include "support/permissions.h"
#include "support/scripted_prompt.h"

namespace sedra {
namespace {

namespace fs = std::filesystem;

std::vector<uint8_t> ReadAll(const fs::path& p) {
  std::ifstream in(p, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}
void WriteAll(const fs::path& p, const std::vector<uint8_t>& bytes) {
  std::ofstream out(p, std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
}
uint32_t U32(const std::vector<uint8_t>& b, size_t at) {
  return uint32_t(b[at]) | uint32_t(b[at + 1]) << 8 | uint32_t(b[at + 2]) << 16 | uint32_t(b[at + 3]) << 24;
}
int16_t I16(const std::vector<uint8_t>& b, size_t at) { return int16_t(b[at] | b[at + 1] << 8); }

class SettingsFilesTest : public ::testing::Test {
 protected:
  void SetUp() override {
    folder_ = fs::temp_directory_path() / ("sedra-settings-" + std::to_string(::getpid()) + "-" +
                                           ::testing::UnitTest::GetInstance()->current_test_info()->name());
    fs::remove_all(folder_);
    fs::create_directories(folder_);
  }
  void TearDown() override { fs::remove_all(folder_); }
  // A first run in the folder, then the read that start-up does.
  bool FirstStart(Model& model, test::ScriptedPrompt& prompt) {
    CreateSettingsIfMissing(model, folder_);
    return ReadSettings(model, folder_, &prompt);
  }
  fs::path folder_;
};

TEST_F(SettingsFilesTest, FirstRunWritesTheDefaultsByteForByte) {
  Model model;
  test::ScriptedPrompt prompt;
  ASSERT_TRUE(FirstStart(model, prompt));
  EXPECT_TRUE(prompt.Messages.empty());

  const auto d = ReadAll(folder_ / "defaults.def");
  ASSERT_EQ(d.size(), 1016u);
  EXPECT_EQ(d[0], 0) << "no folder yet";
  const uint32_t colours[9] = {0xFFFFFF, 0xFF0000, 0, 0x008000, 0x008000, 0xC0C0C0, 0x800080, 0x008000, 0xFF00FF};
  for (int i = 0; i < 9; ++i) EXPECT_EQ(U32(d, 576 + 4 * size_t(i)), colours[i]) << i;
  EXPECT_EQ(U32(d, 792), 0u) << "the format mark is set in memory only, after reading";
  // Font sizes, window place and printer margins.
  const std::pair<size_t, uint32_t> words[] = {{800, 9}, {804, 6},    {808, 8},  {976, 5},
                                               {980, 5}, {984, 1000}, {988, 700}};
  for (const auto& [at, value] : words) EXPECT_EQ(U32(d, at), value) << at;
  const std::pair<size_t, int16_t> margins[] = {{1000, 7}, {1002, 10}, {1004, 5}, {1006, 10}};
  for (const auto& [at, value] : margins) EXPECT_EQ(I16(d, at), value) << at;
  uint32_t sum = 0;
  for (size_t i = 0; i < 1012; ++i) sum += d[i] & 0x0F;
  EXPECT_EQ(U32(d, 1012), sum);

  // The element block does not exist yet on a first run: elements.def is empty and the
  // element settings start all zero; miscdata.def is the zero working block.
  EXPECT_EQ(fs::file_size(folder_ / "elements.def"), 0u);
  for (const auto& entry : model.App.Elements.Entries) EXPECT_EQ(entry[0], 0);
  const auto misc = ReadAll(folder_ / "miscdata.def");
  ASSERT_EQ(misc.size(), 75456u);
  EXPECT_EQ(std::count(misc.begin(), misc.end(), 0), 75456);
  EXPECT_EQ(model.Work().ShowCoreName, 0u);
  EXPECT_EQ(model.Settings().FormatMark, 608u);
}

TEST_F(SettingsFilesTest, OptionalFilesFallBackSilently) {
  Model first;
  test::ScriptedPrompt prompt;
  ASSERT_TRUE(FirstStart(first, prompt));
  // A missing elements.def brings the element defaults; a missing or short
  // miscdata.def turns the four display switches on.
  fs::remove(folder_ / "elements.def");
  for (const size_t miscBytes : {size_t(0), size_t(100)}) {
    if (miscBytes == 0)
      fs::remove(folder_ / "miscdata.def");
    else
      WriteAll(folder_ / "miscdata.def", std::vector<uint8_t>(miscBytes, 0));
    Model m;
    ASSERT_TRUE(ReadSettings(m, folder_, &prompt));
    EXPECT_TRUE(prompt.Messages.empty());
    for (const auto& entry : m.App.Elements.Entries) {
      EXPECT_EQ(entry[0], 1);
      EXPECT_EQ(entry[15], 0);
    }
    EXPECT_EQ(m.Work().ShowRadiograph + m.Work().ShowOptical + m.Work().ShowCoreName + m.Work().ShowSectionName, 4u);
  }
}

TEST_F(SettingsFilesTest, CorruptOrShortDefaultsStopTheStartWithTheMessage) {
  Model first;
  test::ScriptedPrompt firstPrompt;
  ASSERT_TRUE(FirstStart(first, firstPrompt));
  const auto good = ReadAll(folder_ / "defaults.def");

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
    test::ScriptedPrompt prompt;
    EXPECT_EQ(ReadSettings(m, folder_, &prompt), r.message == nullptr) << r.what;
    if (r.message) {
      ASSERT_EQ(prompt.Messages.size(), 1u) << r.what;
      EXPECT_EQ(prompt.Messages[0].Text, r.message);
      EXPECT_EQ(prompt.Messages[0].Caption, msg::kSupportCaption);
      EXPECT_EQ(prompt.Messages[0].IconKind, Icon::Hand);
    } else {
      EXPECT_TRUE(prompt.Messages.empty()) << r.what;
    }
  }
}

TEST_F(SettingsFilesTest, FontSizesBelowSixAreClamped) {
  struct Row {
    int32_t element, hscale, depth;
    int32_t wantElement, wantHScale, wantDepth;
  } rows[] = {{5, 5, 5, 11, 8, 8}, {6, 6, 6, 6, 6, 6}, {-3, 0, 12, 11, 8, 12}};
  for (const Row& r : rows) {
    Model m;
    SetDefaultSettings(m.Settings());
    m.Settings().ElementFontSize = r.element;
    m.Settings().HScaleFontSize = r.hscale;
    m.Settings().DepthFontSize = r.depth;
    WriteSettings(m, folder_);
    Model back;
    test::ScriptedPrompt prompt;
    ASSERT_TRUE(ReadSettings(back, folder_, &prompt));
    EXPECT_EQ(back.Settings().ElementFontSize, r.wantElement);
    EXPECT_EQ(back.Settings().HScaleFontSize, r.wantHScale);
    EXPECT_EQ(back.Settings().DepthFontSize, r.wantDepth);
  }
}

// Settings files as other people and other programs leave them.  Each row starts from a
// first run's files, changes something, then starts (reads) and closes (writes) again.
struct SettingsState {
  const char* Name;
  std::function<void(const fs::path& folder)> Change;  // before the start, or before the close
  bool WhileRunning;
  const char* NotSaved;  // the file WriteSettings could not write; null when all were
  int Error;
  std::function<void(const fs::path& folder, const Model& read)> Check;
};

class SettingsStates : public SettingsFilesTest, public ::testing::WithParamInterface<SettingsState> {};

void PatchWindow(const fs::path& folder, int32_t x, int32_t y, int32_t w, int32_t h) {
  Model m;
  SetDefaultSettings(m.Settings());
  m.Settings().WindowX = x;
  m.Settings().WindowY = y;
  m.Settings().WindowWidth = w;
  m.Settings().WindowHeight = h;
  WriteSettings(m, folder);  // with a valid checksum
}

void ExpectWindow(const Model& m, int32_t x, int32_t y, int32_t w, int32_t h) {
  const DisplaySettings& s = m.App.Settings;
  EXPECT_EQ((WindowPlace{s.WindowX, s.WindowY, s.WindowWidth, s.WindowHeight}), (WindowPlace{x, y, w, h}));
}

TEST_P(SettingsStates, StartAndCloseAgain) {
  const SettingsState& c = GetParam();
  Model first;
  test::ScriptedPrompt prompt;
  ASSERT_TRUE(FirstStart(first, prompt));
  if (!c.WhileRunning) c.Change(folder_);
  const auto defaultsBefore = ReadAll(folder_ / "defaults.def");

  Model m;
  EXPECT_TRUE(ReadSettings(m, folder_, &prompt));
  EXPECT_TRUE(prompt.Messages.empty());
  if (c.WhileRunning) c.Change(folder_);
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
    if (!c.WhileRunning) {
      EXPECT_EQ(ReadAll(folder_ / "defaults.def"), defaultsBefore) << "a file not saved is left as it was";
    }
  }
  // Nothing half-written is left behind, whatever happened.
  std::error_code ec;
  for (const auto& entry : fs::directory_iterator(folder_, ec))
    EXPECT_EQ(entry.path().filename().string().find(".tmp-"), std::string::npos) << entry.path();
  if (c.Check) c.Check(folder_, m);
  if (save.Saved) {
    Model back;
    ASSERT_TRUE(ReadSettings(back, folder_, &prompt));
    EXPECT_EQ(back.Settings().MarginLeft, 42);
    EXPECT_STREQ(back.Settings().SectionFolder, "/cores/GC-12/section 3");
    EXPECT_EQ(back.Settings().Reserved256[7], 0xAB);
    EXPECT_EQ(back.Work().ShowCoreName, 1u);
    EXPECT_EQ(back.Work().Scratch[1000], 0x77);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Rows, SettingsStates,
    ::testing::Values(
        SettingsState{"ZeroWindowOpensAtTheDefaultPlace", [](const fs::path& f) { PatchWindow(f, 0, 0, 0, 0); },
                      false, nullptr, 0, [](const fs::path&, const Model& m) { ExpectWindow(m, 5, 5, 1000, 700); }},
        SettingsState{"UsableWindowIsKept", [](const fs::path& f) { PatchWindow(f, -1800, 40, 1600, 900); }, false,
                      nullptr, 0, [](const fs::path&, const Model& m) { ExpectWindow(m, -1800, 40, 1600, 900); }},
        SettingsState{"ReadOnlyDefaultsAreKeptAndTheOthersWritten",
                      [](const fs::path& f) { fs::permissions(f / "defaults.def", fs::perms::owner_read); }, false,
                      "defaults.def", EACCES,
                      [](const fs::path& f, const Model&) { EXPECT_EQ(fs::file_size(f / "elements.def"), 320u); }},
        SettingsState{"ReadOnlyFolder",
                      [](const fs::path& f) { fs::permissions(f, fs::perms::owner_read | fs::perms::owner_exec); },
                      false, "defaults.def", EACCES,
                      [](const fs::path& f, const Model&) { fs::permissions(f, fs::perms::owner_all); }},
        SettingsState{"LinkedDefaultsAreWrittenThroughTheLink",
                      [](const fs::path& f) {
                        fs::create_directories(f / "shared");
                        fs::rename(f / "defaults.def", f / "shared" / "lab.def");
                        fs::create_symlink(fs::path("shared") / "lab.def", f / "defaults.def");
                      },
                      false, nullptr, 0,
                      [](const fs::path& f, const Model&) {
                        EXPECT_TRUE(fs::is_symlink(f / "defaults.def"));
                        EXPECT_EQ(I16(ReadAll(f / "shared" / "lab.def"), 1000), 42);
                      }},
        SettingsState{"StaleTemporaryFolderDoesNotBlock",
                      [](const fs::path& f) { fs::create_directories(f / "defaults.def.tmp" / "x"); }, false, nullptr,
                      0, nullptr},
        SettingsState{"FolderVanishedWhileRunning", [](const fs::path& f) { fs::remove_all(f); }, true, "defaults.def",
                      ENOENT, nullptr}),
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
  // Without screens to ask (before any window exists) only absurd rectangles change.
  EXPECT_EQ(VisibleWindowPlace({3500, 100, 1000, 700}, {}, 0), (WindowPlace{3500, 100, 1000, 700}));
  EXPECT_EQ(VisibleWindowPlace({0, 0, 0, 0}, {}, 0), (WindowPlace{5, 5, 1000, 700}));
  EXPECT_EQ(VisibleWindowPlace({10, 10, INT32_MAX, INT32_MAX}, {}, 0), (WindowPlace{5, 5, 1000, 700}));
}

// A build keeps its settings in the working folder; an installed program in the
// user's configuration folder, unless the working folder already has them.
TEST_F(SettingsFilesTest, SettingsFolderOfABuildAndOfAnInstalledProgram) {
  const fs::path prefix = folder_ / "usr";
  fs::create_directories(prefix / "lib" / "sedra-plot");
  fs::create_directories(prefix / "share" / "applications");
  WriteAll(prefix / "share" / "applications" / "sedra-plot.desktop", {});
  const fs::path installed = prefix / "lib" / "sedra-plot" / "sedra-plot";
  const fs::path build = folder_ / "build" / "release" / "sedra-plot";
  const fs::path work = folder_ / "work", settled = folder_ / "settled", home = folder_ / "home";
  fs::create_directories(work);
  fs::create_directories(settled);
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
