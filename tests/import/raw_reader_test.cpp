// The RAW reader: interpolation, line grouping with its 16-bit wrap, the resolution
// fallbacks and their messages, rightmost-column-first placement, offset correction.

#include "import/raw_reader.h"

#include <string>

#include <gtest/gtest.h>

#include "import/sample_files.h"
#include "model/messages.h"
#include "model/model.h"
#include "support/scripted_prompt.h"

namespace sedra {
namespace {

using test::ScriptedPrompt;

struct ParseCase {
  const char* Name;
  std::string Text;
  bool MaxRes;
  int Width, Height, Max;
  std::vector<std::pair<size_t, uint16_t>> At;  // Samples[index] (row-major) = value
};

class RawParse : public ::testing::TestWithParam<ParseCase> {};

TEST_P(RawParse, SamplesInPlace) {
  const ParseCase& c = GetParam();
  Model model;
  ScriptedPrompt prompt;
  EXPECT_EQ(ParseRawRadiograph(model, prompt, c.Text, c.MaxRes).Result, 1);
  EXPECT_TRUE(prompt.Messages.empty());
  const RadiographDesc& r = model.CurRadiograph();
  ASSERT_EQ(r.Width, c.Width);
  if (c.Width == 0) return;
  ASSERT_EQ(r.Height, c.Height);
  EXPECT_EQ(r.MaxValue, c.Max);
  EXPECT_EQ(model.CurSection().RadiographCount, 1);
  for (auto [index, value] : c.At) EXPECT_EQ(r.Samples.at(index), value) << index;
}

INSTANTIATE_TEST_SUITE_P(
    Rows, RawParse,
    ::testing::Values(
        // MaxRes: 10 rows per value, stepping toward the next; the value after the last tab is not used.
        ParseCase{"Interpolates", "10\t20\t30\n", true, 1, 20, 20, {{0, 10}, {1, 11}, {9, 19}, {10, 20}, {19, 20}}},
        // HighRes: 5 rows per value, 2 lines per column; d = (107 - 100) / 5 = 1.
        ParseCase{"DescendingStepTruncatesTowardZero", "107\t100\t\r\n0\t0\t\r\n", false, 1, 10, 107,
                  {{0, 107}, {1, 106}, {4, 103}, {5, 100}, {9, 100}}},
        ParseCase{"OneLineIsNoWholeGroup", "107\t100\t\r\n", false, 0, 0, 0, {}},
        ParseCase{"FirstLineGroupLandsInTheRightmostColumn", "1\t\n2\t\n3\t\n", true, 3, 10, 3, {{0, 3}, {1, 2}, {2, 1}}},
        // Two lines summed in 16 bits; the seventh line makes no whole group.
        ParseCase{"HighResSumsTwoLinesWrappingIn16Bits", "40000\t\r\n40000\t\r\n1\t\r\n2\t\r\n3\t\r\n4\t\r\n99\t\r\n", false,
                  3, 5, 14464, {{0, 7}, {1, 3}, {2, 14464}, {14, 14464}}},
        ParseCase{"SpacesAndSignsSeparateValuesToo", "1\t2\t3\t\n4 5-6\t\n", true, 2, 30, 6, {{0, 4}, {20, 5}, {40, 6}}},
        ParseCase{"OffsetDataIsShiftedDown", "40000\t33000\t\n", true, 1, 20, 40000 - 32768, {{0, 40000 - 32768}}},
        ParseCase{"OneValueAt32768KeepsTheData", "40000\t32768\t\n", true, 1, 20, 40000, {{0, 40000}}}),
    [](const auto& i) { return std::string(i.param.Name); });

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
                                           NumberCase{"0042", 42}, NumberCase{"65535", 65535},
                                           NumberCase{"\xC3\xB1" "7", 0}));

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
  EXPECT_EQ(model.CurRadiograph().Loaded(), c.Result == 1);
}

// `lines` lines of n tabs each.
std::string Tabs(int n, int lines = 1) {
  std::string s;
  for (int i = 0; i < lines; ++i) s += std::string(size_t(n), '\t') + "\n";
  return s;
}

INSTANTIATE_TEST_SUITE_P(
    Rows, RawMessages,
    ::testing::Values(RefusalCase{"Empty", "", true, 0, {msg::kNoNewLines}, 10, 1},
                      RefusalCase{"CrOnly", "1\t2\t\r3\t4\t\r", false, 0, {msg::kNoNewLines}, 5, 2},
                      RefusalCase{"NoTabs", "1 2 3\n4\t5\n", true, 0, {msg::kNoTabs}, 10, 1},
                      RefusalCase{"FourThousandAtMaxRes", Tabs(4000), true, 1, {msg::kTooLargeMaxRes}, 5, 2},
                      RefusalCase{"SevenThousandAtHighRes", Tabs(7000), false, 1, {}, 3, 3},
                      RefusalCase{"TwentyThousand", Tabs(20000), false, 1, {}, 1, 10},
                      RefusalCase{"TooLong", Tabs(32761), true, 0, {msg::kTooLargeMaxRes, msg::kTooLargeRaw}, 1, 10},
                      RefusalCase{"LongestAllowed", Tabs(32760) + Tabs(1, 9), false, 1, {}, 1, 10}),
    [](const auto& i) { return std::string(i.param.Name); });

TEST(RawReader, ManyEmptyLinesCannotClaimMoreThanTheCapacity) {
  Model model;
  ScriptedPrompt prompt;
  const std::string text = Tabs(3000) + std::string(1 << 16, '\n');
  EXPECT_EQ(ParseRawRadiograph(model, prompt, text, true, 1 << 20).Result, 0);
  EXPECT_EQ(prompt.Texts(), std::vector<std::string>{msg::kCouldNotAllocate});
  EXPECT_EQ(prompt.Messages[0].ButtonSet, Buttons::OkCancel);
  EXPECT_FALSE(model.CurRadiograph().Loaded());
}

TEST(RawReader, UnopenableFileIsPassedOverQuietly) {
  Model model;
  ScriptedPrompt prompt;
  prompt.ChooseFile((test::ScratchFolder() / "none.raw").string());
  const ReadOutcome out = ReadRawRadiograph(model, prompt, false);
  EXPECT_EQ(out.Result, 1);
  EXPECT_FALSE(out.PixelsRead);
  EXPECT_TRUE(prompt.Messages.empty());
  EXPECT_EQ(prompt.OpenRequests.at(0).Title, "Open Raw Radiograph file");
  EXPECT_EQ(prompt.OpenRequests.at(0).InitialName, "*.raw");
}

}  // namespace
}  // namespace sedra
