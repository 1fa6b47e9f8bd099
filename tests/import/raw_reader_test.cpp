// The RAW reader: interpolation, line grouping with its 16-bit wrap, the resolution
// fallbacks and their messages, rightmost-column-first placement, offset correction.

#include "import/raw_reader.h"

#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "import/sample_files.h"
#include "model/messages.h"
#include "model/model.h"
#include "support/scripted_prompt.h"

namespace sedra {
namespace {

using test::ScriptedPrompt;

std::vector<uint16_t> Column(const RadiographDesc& r, int col) {
  std::vector<uint16_t> out;
  for (int y = 0; y < r.Height; ++y) out.push_back(r.Samples[size_t(y) * r.Width + col]);
  return out;
}

std::vector<uint16_t> Seq(std::initializer_list<std::pair<int, int>> runs) {  // {first, count} counting up
  std::vector<uint16_t> out;
  for (auto [first, count] : runs)
    for (int i = 0; i < count; ++i) out.push_back(uint16_t(first + i));
  return out;
}

std::vector<uint16_t> Repeat(int v, int count) { return std::vector<uint16_t>(size_t(count), uint16_t(v)); }

TEST(RawReader, InterpolatesTowardTheNextValueAndIgnoresTheOneAfterTheLastTab) {
  Model model;
  ScriptedPrompt prompt;
  const ReadOutcome out = ParseRawRadiograph(model, prompt, "10\t20\t30\n", true);
  EXPECT_EQ(out.Result, 1);
  const RadiographDesc& r = model.CurRadiograph();
  ASSERT_EQ(r.Width, 1);
  ASSERT_EQ(r.Height, 20);
  std::vector<uint16_t> expect = Seq({{10, 10}});
  for (uint16_t v : Repeat(20, 10)) expect.push_back(v);
  EXPECT_EQ(Column(r, 0), expect);
  EXPECT_EQ(r.MaxValue, 20);
  EXPECT_EQ(model.CurSection().RadiographCount, 1);
  EXPECT_EQ(r.Bitmap.Width, 1);
  EXPECT_EQ(r.Bitmap.Height, 20);
}

TEST(RawReader, DescendingStepTruncatesTowardZero) {
  Model model;
  ScriptedPrompt prompt;
  ParseRawRadiograph(model, prompt, "107\t100\t\r\n", false);  // HighRes: 5 rows per value, 2 lines per column
  // One line only: no whole group, so the image is 0 wide.
  EXPECT_EQ(model.CurRadiograph().Width, 0);
  ParseRawRadiograph(model, prompt, "107\t100\t\r\n0\t0\t\r\n", false);
  // d = (107 - 100) / 5 = 1.
  EXPECT_EQ(Column(model.CurRadiograph(), 0), (std::vector<uint16_t>{107, 106, 105, 104, 103, 100, 100, 100, 100, 100}));
}

TEST(RawReader, FirstLineGroupLandsInTheRightmostColumn) {
  Model model;
  ScriptedPrompt prompt;
  ParseRawRadiograph(model, prompt, "1\t\n2\t\n3\t\n", true);
  const RadiographDesc& r = model.CurRadiograph();
  ASSERT_EQ(r.Width, 3);
  EXPECT_EQ(r.Samples[0], 3);
  EXPECT_EQ(r.Samples[1], 2);
  EXPECT_EQ(r.Samples[2], 1);
}

TEST(RawReader, HighResSumsTwoLinesWrappingIn16Bits) {
  Model model;
  ScriptedPrompt prompt;
  // Seven lines give three columns; the seventh is ignored.
  ParseRawRadiograph(model, prompt, "40000\t\r\n40000\t\r\n1\t\r\n2\t\r\n3\t\r\n4\t\r\n99\t\r\n", false);
  const RadiographDesc& r = model.CurRadiograph();
  ASSERT_EQ(r.Width, 3);
  EXPECT_EQ(model.App.Work.SampleStep, 5);
  EXPECT_EQ(model.App.Work.RawLineGroup, 2);
  EXPECT_EQ(Column(r, 2), Repeat(14464, 5));
  EXPECT_EQ(Column(r, 1), Repeat(3, 5));
  EXPECT_EQ(Column(r, 0), Repeat(7, 5));
}

struct NumberCase {
  std::string Text;
  uint16_t Expect;
};

class RawNumbers : public ::testing::TestWithParam<NumberCase> {};

// Numbers are built digit by digit in 16 bits and end at any non-digit, whether they
// sit near the end of the text or well before it.
TEST_P(RawNumbers, SixteenBitDigitArithmetic) {
  for (const std::string& tail : std::vector<std::string>{"", std::string(40, '\n')}) {
    Model model;
    ScriptedPrompt prompt;
    ParseRawRadiograph(model, prompt, GetParam().Text + "\t5\t\n" + tail, true);
    const RadiographDesc& r = model.CurRadiograph();
    EXPECT_EQ(r.Samples.at(size_t(r.Width) - 1), GetParam().Expect) << GetParam().Text;
  }
}

INSTANTIATE_TEST_SUITE_P(Rows, RawNumbers,
                         ::testing::Values(NumberCase{"70000", 4464}, NumberCase{"12345678901", uint16_t(12345678901ULL % 65536)},
                                           NumberCase{"0042", 42}, NumberCase{"65535", 65535}, NumberCase{"1234567", uint16_t(1234567 % 65536)},
                                           NumberCase{"\xC3\xB1" "7", 0}));

TEST(RawReader, SpacesAndSignsSeparateValuesToo) {
  Model model;
  ScriptedPrompt prompt;
  ParseRawRadiograph(model, prompt, "1\t2\t3\t\n4 5-6\t\n", true);
  const RadiographDesc& r = model.CurRadiograph();
  EXPECT_EQ(r.Samples[size_t(0) * 2 + 0], 4);
  EXPECT_EQ(r.Samples[size_t(10) * 2 + 0], 5);
  EXPECT_EQ(r.Samples[size_t(20) * 2 + 0], 6);
}

TEST(RawReader, OffsetDataIsShiftedDown) {
  Model model;
  ScriptedPrompt prompt;
  ParseRawRadiograph(model, prompt, "40000\t33000\t\n", true);
  EXPECT_EQ(model.CurRadiograph().Samples[0], 40000 - 32768);
  EXPECT_EQ(model.CurRadiograph().MaxValue, 40000 - 32768);
  ParseRawRadiograph(model, prompt, "40000\t32768\t\n", true);
  EXPECT_EQ(model.CurRadiograph().Samples[0], 40000);
}

struct RefusalCase {
  const char* Name;
  std::string Text;
  bool MaxRes;
  int Result;
  std::vector<std::string> Messages;
  int Expand, Group;
};

class RawMessages : public ::testing::TestWithParam<RefusalCase> {};

TEST_P(RawMessages, FallbacksAndRefusals) {
  const RefusalCase& c = GetParam();
  Model model;
  ScriptedPrompt prompt;
  EXPECT_EQ(ParseRawRadiograph(model, prompt, c.Text, c.MaxRes).Result, c.Result);
  EXPECT_EQ(prompt.Texts(), c.Messages);
  for (const auto& m : prompt.Messages) EXPECT_EQ(m.Caption, msg::kDefaultCaption);
  EXPECT_EQ(model.App.Work.SampleStep, c.Expand);
  EXPECT_EQ(model.App.Work.RawLineGroup, c.Group);
  if (c.Result == 0) {
    EXPECT_FALSE(model.CurRadiograph().Loaded());
  }
}

std::string Tabs(int n) { return std::string(size_t(n), '\t') + "\n"; }

INSTANTIATE_TEST_SUITE_P(
    Rows, RawMessages,
    ::testing::Values(RefusalCase{"Empty", "", true, 0, {msg::kNoNewLines}, 10, 1},
                      RefusalCase{"CrOnly", "1\t2\t\r3\t4\t\r", false, 0, {msg::kNoNewLines}, 5, 2},
                      RefusalCase{"NoTabs", "1 2 3\n4\t5\n", true, 0, {msg::kNoTabs}, 10, 1},
                      RefusalCase{"FourThousandAtMaxRes", Tabs(4000), true, 1, {msg::kTooLargeMaxRes}, 5, 2},
                      RefusalCase{"SevenThousandAtHighRes", Tabs(7000), false, 1, {}, 3, 3},
                      RefusalCase{"TwentyThousand", Tabs(20000), false, 1, {}, 1, 10},
                      RefusalCase{"TooLong", Tabs(32761), true, 0, {msg::kTooLargeMaxRes, msg::kTooLargeRaw}, 1, 10},
                      RefusalCase{"LongestAllowed", Tabs(32760) + Tabs(1) + Tabs(1) + Tabs(1) + Tabs(1) + Tabs(1) + Tabs(1) +
                                                       Tabs(1) + Tabs(1) + Tabs(1),
                                  false, 1, {}, 1, 10}),
    [](const auto& i) { return std::string(i.param.Name); });

TEST(RawReader, ManyEmptyLinesCannotClaimMoreThanTheCapacity) {
  Model model;
  ScriptedPrompt prompt;
  const std::string text = Tabs(3000) + std::string(1 << 16, '\n');
  EXPECT_EQ(ParseRawRadiograph(model, prompt, text, true, 1 << 20).Result, 0);
  EXPECT_EQ(prompt.Texts(), std::vector<std::string>{msg::kCouldNotAllocate});
  EXPECT_EQ(prompt.Messages[0].ButtonSet, Buttons::OkCancel);
  EXPECT_FALSE(model.CurRadiograph().Loaded());
  EXPECT_EQ(model.CurSection().RadiographCount, 1);
}

// The generated file, parsed independently with a string stream, must match.
TEST(RawReader, GeneratedFileMatchesAnIndependentParse) {
  const auto folder = test::ScratchFolder();
  test::MakeSampleCore(folder, "--raw-values 257 --raw-lines 61 --raw-offset --missing optical.tif --missing radiograph.tif");
  const std::string text = test::ReadBytes(folder / "radiograph.raw");
  std::vector<std::vector<int>> lines;
  std::istringstream in(text);
  std::string line;
  while (std::getline(in, line)) {
    std::istringstream fields(line);
    std::vector<int> v;
    int x;
    while (fields >> x) v.push_back(x - 32768);
    lines.push_back(v);
  }
  ASSERT_EQ(lines.size(), 61u);
  Model model;
  ScriptedPrompt prompt;
  prompt.ChooseFile((folder / "radiograph.raw").string());
  int zoomResets = 0;
  EXPECT_EQ(ReadRawRadiograph(model, prompt, true, [&] { ++zoomResets; }).Result, 1);
  EXPECT_EQ(zoomResets, 1);
  EXPECT_EQ(prompt.OpenRequests.at(0).Title, "Open Raw Radiograph file");
  EXPECT_EQ(prompt.OpenRequests.at(0).InitialName, "*.raw");
  const RadiographDesc& r = model.CurRadiograph();
  ASSERT_EQ(r.Width, 61);
  ASSERT_EQ(r.Height, 2570);
  for (int l = 0; l < 61; ++l)
    for (int j = 0; j < 257; ++j) ASSERT_EQ(r.Samples[size_t(j) * 10 * 61 + size_t(60 - l)], lines[size_t(l)][size_t(j)]);
}

TEST(RawReader, UnopenableFileIsPassedOverQuietly) {
  Model model;
  ScriptedPrompt prompt;
  prompt.ChooseFile((test::ScratchFolder() / "none.raw").string());
  const ReadOutcome out = ReadRawRadiograph(model, prompt, false);
  EXPECT_EQ(out.Result, 1);
  EXPECT_FALSE(out.PixelsRead);
  EXPECT_TRUE(prompt.Messages.empty());
}

}  // namespace
}  // namespace sedra
