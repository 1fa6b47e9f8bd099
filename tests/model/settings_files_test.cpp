#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "model/messages.h"
#include "model/model.h"
#include "model/settings_files.h"
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
  EXPECT_EQ(U32(d, 800), 9u);
  EXPECT_EQ(U32(d, 804), 6u);
  EXPECT_EQ(U32(d, 808), 8u);
  EXPECT_EQ(U32(d, 976), 5u);
  EXPECT_EQ(U32(d, 980), 5u);
  EXPECT_EQ(U32(d, 984), 1000u);
  EXPECT_EQ(U32(d, 988), 700u);
  EXPECT_EQ(I16(d, 1000), 7);
  EXPECT_EQ(I16(d, 1002), 10);
  EXPECT_EQ(I16(d, 1004), 5);
  EXPECT_EQ(I16(d, 1006), 10);
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

  struct Row {
    const char* what;
    std::vector<uint8_t> bytes;
    bool ok;
  };
  std::vector<Row> rows;
  auto changed = [&](size_t at, uint8_t x) {
    auto b = good;
    b[at] ^= x;
    return b;
  };
  rows.push_back({"low nibble changed", changed(300, 0x01), false});
  rows.push_back({"high nibble changed", changed(300, 0x10), true});
  rows.push_back({"checksum itself changed", changed(1012, 0x01), false});
  rows.push_back({"1015 bytes", std::vector<uint8_t>(good.begin(), good.end() - 1), false});
  auto longer = good;
  longer.push_back(0x5A);
  rows.push_back({"1017 bytes read as its first 1016", longer, true});
  rows.push_back({"empty", {}, false});

  for (const Row& r : rows) {
    WriteAll(folder_ / "defaults.def", r.bytes);
    Model m;
    test::ScriptedPrompt prompt;
    EXPECT_EQ(ReadSettings(m, folder_, &prompt), r.ok) << r.what;
    if (!r.ok) {
      ASSERT_EQ(prompt.Messages.size(), 1u) << r.what;
      EXPECT_EQ(prompt.Messages[0].Text, msg::kErrorReadingDefaults);
      EXPECT_EQ(prompt.Messages[0].Caption, msg::kSupportCaption);
      EXPECT_EQ(prompt.Messages[0].IconKind, Icon::Hand);
    } else {
      EXPECT_TRUE(prompt.Messages.empty()) << r.what;
    }
  }

  fs::remove(folder_ / "defaults.def");
  Model m;
  test::ScriptedPrompt prompt;
  EXPECT_FALSE(ReadSettings(m, folder_, &prompt));
  ASSERT_EQ(prompt.Messages.size(), 1u);
  EXPECT_EQ(prompt.Messages[0].Text, msg::kCouldNotOpenDefaults);
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

TEST_F(SettingsFilesTest, WritingReplacesTheFilesWholeAndLeavesNoTemporaries) {
  Model m;
  SetDefaultSettings(m.Settings());
  std::strcpy(m.Settings().SectionFolder, "/cores/GC-12/section 3");
  m.Settings().Reserved256[7] = 0xAB;  // reserved bytes are kept as they are
  m.Work().ShowCoreName = 1;
  m.Work().Scratch[1000] = 0x77;
  WriteSettings(m, folder_);
  WriteSettings(m, folder_);
  for (const auto& entry : fs::directory_iterator(folder_))
    EXPECT_NE(entry.path().extension(), ".tmp") << entry.path();
  EXPECT_EQ(fs::file_size(folder_ / "elements.def"), 320u);

  Model back;
  test::ScriptedPrompt prompt;
  ASSERT_TRUE(ReadSettings(back, folder_, &prompt));
  EXPECT_STREQ(back.Settings().SectionFolder, "/cores/GC-12/section 3");
  EXPECT_EQ(back.Settings().Reserved256[7], 0xAB);
  EXPECT_EQ(back.Work().ShowCoreName, 1u);
  EXPECT_EQ(back.Work().Scratch[1000], 0x77);
}

TEST_F(SettingsFilesTest, AnUnwritableFolderIsSilent) {
  Model m;
  SetDefaultSettings(m.Settings());
  EXPECT_TRUE(WriteSettings(m, folder_ / "does" / "not" / "exist"));
}

}  // namespace
}  // namespace sedra
