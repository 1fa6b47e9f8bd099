// The RAW reader: interpolation, line grouping with its 16-bit wrap, the resolution
// fallbacks and their messages, offset correction, and text of every kind parsed as a
// plain parse does it.

#include "import/raw_reader.h"

#include <random>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "import/sample_files.h"
#include "model/messages.h"
#include "support/raw_reference.h"

namespace sedra {
namespace {

// `lines` lines of n tabs each.
std::string Tabs(int n, int lines = 1) {
  std::string s;
  for (int i = 0; i < lines; ++i) s += std::string(size_t(n), '\t') + "\n";
  return s;
}

struct ParseCase {
  const char* Name;
  std::string Text;
  bool MaxRes;
  std::vector<std::string> Messages;
  int Expand, Group;  // rows per value and lines per column the reader settles on
  int Result = 1;
  int Width = 0, Height = 0, Max = 0;           // checked where At lists samples
  std::vector<std::pair<size_t, uint16_t>> At = {};  // Samples[index] (row-major) = value
};

class RawParse : public test::ReaderTest, public ::testing::WithParamInterface<ParseCase> {};

TEST_P(RawParse, SamplesFallbacksAndRefusals) {
  const ParseCase& c = GetParam();
  EXPECT_EQ(ParseRawRadiograph(model, prompt, c.Text, c.MaxRes).Result, c.Result);
  EXPECT_EQ(prompt.Texts(), c.Messages);
  for (const auto& m : prompt.Messages) EXPECT_EQ(m.Caption, msg::kDefaultCaption);
  EXPECT_EQ(std::pair(model.App.Work.SampleStep, model.App.Work.RawLineGroup), std::pair(c.Expand, c.Group));
  const RadiographDesc& r = model.CurRadiograph();
  EXPECT_EQ(r.Loaded(), c.Result == 1);
  if (c.At.empty()) return;
  ASSERT_EQ(std::pair(r.Width, r.Height), std::pair(c.Width, c.Height));
  EXPECT_EQ(std::pair(r.MaxValue, model.CurSection().RadiographCount), std::pair(c.Max, 1));
  for (auto [index, value] : c.At) EXPECT_EQ(r.Samples.at(index), value) << index;
}

INSTANTIATE_TEST_SUITE_P(
    Rows, RawParse,
    ::testing::Values(
        // MaxRes: 10 rows per value, stepping toward the next; the value after the last tab is not used.
        ParseCase{"Interpolates", "10\t20\t30\n", true, {}, 10, 1, 1, 1, 20, 20,
                  {{0, 10}, {1, 11}, {9, 19}, {10, 20}, {19, 20}}},
        // Two lines summed in 16 bits; the seventh line makes no whole group.
        ParseCase{"HighResSumsTwoLinesWrappingIn16Bits",
                  "40000\t\r\n40000\t\r\n1\t\r\n2\t\r\n3\t\r\n4\t\r\n99\t\r\n", false, {}, 5, 2, 1, 3, 5, 14464,
                  {{0, 7}, {1, 3}, {2, 14464}, {14, 14464}}},
        ParseCase{"OffsetDataIsShiftedDown", "40000\t33000\t\n", true, {}, 10, 1, 1, 1, 20, 40000 - 32768,
                  {{0, 40000 - 32768}}},
        ParseCase{"OneValueAt32768KeepsTheData", "40000\t32768\t\n", true, {}, 10, 1, 1, 1, 20, 40000, {{0, 40000}}},
        ParseCase{"Empty", "", true, {msg::kNoNewLines}, 10, 1, 0},
        ParseCase{"CrOnly", "1\t2\t\r3\t4\t\r", false, {msg::kNoNewLines}, 5, 2, 0},
        ParseCase{"NoTabs", "1 2 3\n4\t5\n", true, {msg::kNoTabs}, 10, 1, 0},
        ParseCase{"FourThousandAtMaxRes", Tabs(4000, 2), true, {msg::kTooLargeMaxRes}, 5, 2},
        ParseCase{"SevenThousandAtHighRes", Tabs(7000, 3), false, {}, 3, 3},
        ParseCase{"TwentyThousand", Tabs(20000, 10), false, {}, 1, 10},
        ParseCase{"TooLong", Tabs(32761), true, {msg::kTooLargeMaxRes, msg::kTooLargeRaw}, 1, 10, 0},
        ParseCase{"LongestAllowed", Tabs(32760) + Tabs(1, 9), false, {}, 1, 10}),
    [](const auto& i) { return std::string(i.param.Name); });

using RawReader = test::ReaderTest;

// Text a scanner would never write but a damaged or foreign file may hold: counts of
// any length, odd separators, every kind of line end, lines far longer than the first,
// and sometimes no line end at the close.
std::string UnusualRaw(std::mt19937& rng, int firstTabs, int lines) {
  const auto pick = [&](int n) { return int(rng() % unsigned(n)); };
  static const char* const kSeparators[] = {"\t", "\t", "\t", " ", "-", ".", std::string_view("\0", 1).data(), "\xC3"};
  static const char* const kLineEnds[] = {"\n", "\r\n", "\r", "\n\n", "\r\r\n", "\n\r"};
  std::string text;
  for (int i = 0; i < firstTabs; ++i) text += std::to_string(rng() % 70000) + "\t";
  text += "\r\n";
  for (int line = 0; line < lines; ++line) {
    const int values = pick(4) == 0 ? pick(3 * firstTabs + 2) : firstTabs + pick(2);
    for (int v = 0; v < values; ++v) {
      const int digits = pick(10) == 0 ? pick(14) : 1 + pick(5);
      for (int d = 0; d < digits; ++d) text += char('0' + pick(10));
      const int s = pick(8);
      text += s == 6 ? std::string(1, '\0') : std::string(kSeparators[s]);
    }
    if (line + 1 < lines || pick(3) != 0) text += kLineEnds[pick(6)];
  }
  return text;
}

// The reader parses blocks of bytes and bands of columns at a time, and a file of
// several megabytes is read and parsed in bands on several threads.  The bands meet
// where the line feeds say; where blank or CR-only lines make lines and line feeds
// disagree, the rest is parsed again from where a band really ended.  Whatever the text,
// every sample must be what a plain character-by-character parse gives.
TEST_F(RawReader, MatchesAPlainParseOfUnusualText) {
  std::mt19937 rng(11);
  const std::filesystem::path path = test::ScratchFolder() / "unusual.raw";
  for (int round = 0; round < 83; ++round) {
    // Mostly short lines; now and then one long enough to step the resolution down; last,
    // files of several megabytes.
    const bool large = round >= 80;
    const int firstTabs = large ? 1200 : round % 20 == 19 ? 3300 + int(rng() % 8000) : 1 + int(rng() % 300);
    const std::string text = UnusualRaw(rng, firstTabs, large ? 700 : 1 + int(rng() % 90));
    if (large) test::WriteBytes(path, text);
    for (bool maxRes : {true, false}) {
      model.CurSection().RadiographCount = 0;
      if (large) prompt.ChooseFile(path.string());
      const ReadOutcome out =
          large ? ReadRawRadiograph(model, prompt, maxRes) : ParseRawRadiograph(model, prompt, text, maxRes);
      ASSERT_TRUE(out.PixelsRead || !large) << round;
      if (!out.PixelsRead) continue;
      const RadiographDesc& r = model.CurRadiograph();
      const int n = int(std::count(text.begin(), text.begin() + int64_t(text.find('\n')), '\t'));
      const test::RawReference expect = test::ReferenceRawParse(text, n, model.App.Work.SampleStep,
                                                                model.App.Work.RawLineGroup, r.Width);
      ASSERT_EQ(size_t(r.Width) * size_t(r.Height), expect.Samples.size()) << round;
      ASSERT_TRUE(std::equal(expect.Samples.begin(), expect.Samples.end(), r.Samples.begin())) << round << maxRes;
      EXPECT_EQ(r.MaxValue, expect.MaxValue) << round;
    }
  }
  // A file that cannot be opened is passed over quietly.
  const size_t messages = prompt.Messages.size();
  prompt.ChooseFile((path.parent_path() / "none.raw").string());
  const ReadOutcome out = ReadRawRadiograph(model, prompt, false);
  EXPECT_EQ(std::tuple(out.Result, out.PixelsRead, prompt.Messages.size()), std::tuple(1, false, messages));
  EXPECT_EQ(prompt.OpenRequests.at(0).InitialName, "*.raw");
}

}  // namespace
}  // namespace sedra
