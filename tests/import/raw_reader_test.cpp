// The RAW reader: interpolation, line grouping with its 16-bit wrap, the resolution
// fallbacks and their messages, rightmost-column-first placement, offset correction.

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
        // HighRes: 5 rows per value, 2 lines per column; d = (107 - 100) / 5 = 1.
        ParseCase{"DescendingStepTruncatesTowardZero", "107\t100\t\r\n0\t0\t\r\n", false, {}, 5, 2, 1, 1, 10, 107,
                  {{0, 107}, {1, 106}, {4, 103}, {5, 100}, {9, 100}}},
        ParseCase{"FirstLineGroupLandsInTheRightmostColumn", "1\t\n2\t\n3\t\n", true, {}, 10, 1, 1, 3, 10, 3,
                  {{0, 3}, {1, 2}, {2, 1}}},
        // Two lines summed in 16 bits; the seventh line makes no whole group.
        ParseCase{"HighResSumsTwoLinesWrappingIn16Bits",
                  "40000\t\r\n40000\t\r\n1\t\r\n2\t\r\n3\t\r\n4\t\r\n99\t\r\n", false, {}, 5, 2, 1, 3, 5, 14464,
                  {{0, 7}, {1, 3}, {2, 14464}, {14, 14464}}},
        // Numbers are built digit by digit in 16 bits: 70000 is 4464.
        ParseCase{"DigitsWrapIn16Bits", "70000\t5\t\n", true, {}, 10, 1, 1, 1, 20, 4464, {{0, 4464}, {10, 5}}},
        ParseCase{"SpacesAndSignsSeparateValuesToo", "1\t2\t3\t\n4 5-6\t\n", true, {}, 10, 1, 1, 2, 30, 6,
                  {{0, 4}, {20, 5}, {40, 6}}},
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
std::string UnusualRaw(std::mt19937& rng, int firstTabs) {
  const auto pick = [&](int n) { return int(rng() % unsigned(n)); };
  static const char* const kSeparators[] = {"\t", "\t", "\t", " ", "-", ".", std::string_view("\0", 1).data(), "\xC3"};
  static const char* const kLineEnds[] = {"\n", "\r\n", "\r", "\n\n", "\r\r\n", "\n\r"};
  std::string text;
  for (int i = 0; i < firstTabs; ++i) text += std::to_string(rng() % 70000) + "\t";
  text += "\r\n";
  const int lines = 1 + pick(90);
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

// The reader parses blocks of bytes and bands of columns at a time; whatever the text,
// every sample must be what a plain character-by-character parse gives.
TEST_F(RawReader, MatchesAPlainParseOfUnusualText) {
  std::mt19937 rng(11);
  for (int round = 0; round < 80; ++round) {
    // Mostly short lines; now and then one long enough to step the resolution down.
    const int firstTabs = round % 20 == 19 ? 3300 + int(rng() % 8000) : 1 + int(rng() % 300);
    const std::string text = UnusualRaw(rng, firstTabs);
    for (bool maxRes : {true, false}) {
      model.CurSection().RadiographCount = 0;
      if (!ParseRawRadiograph(model, prompt, text, maxRes).PixelsRead) continue;
      const RadiographDesc& r = model.CurRadiograph();
      const int n = int(std::count(text.begin(), text.begin() + int64_t(text.find('\n')), '\t'));
      const test::RawReference expect = test::ReferenceRawParse(text, n, model.App.Work.SampleStep,
                                                                model.App.Work.RawLineGroup, r.Width);
      ASSERT_EQ(size_t(r.Width) * size_t(r.Height), expect.Samples.size()) << round;
      ASSERT_TRUE(std::equal(expect.Samples.begin(), expect.Samples.end(), r.Samples.begin())) << round << " " << maxRes;
      EXPECT_EQ(r.MaxValue, expect.MaxValue) << round;
    }
  }
}

struct LargeCase {
  const char* Name;
  const char* LineEnd;
  const char* ThirdLineEnd;  // a line end that makes LFs and lines disagree, early on
  int Lowest;                // counts run from here for 15 000; from 16 500 every sum of
                             // two lines is above 32 768: offset data
};

class RawLarge : public test::ReaderTest, public ::testing::WithParamInterface<LargeCase> {};

// A file of several megabytes is read and parsed in bands on several threads.  The
// bands meet where the line feeds say; when blank or CR-only lines make lines and line
// feeds disagree, the rest is parsed again from where a band really ended.  Either way,
// from memory or from the file, every sample is what the plain parse gives.
TEST_P(RawLarge, BandsGiveWhatOnePassGives) {
  std::mt19937 rng(5);
  std::string text;
  for (int line = 0; line < 700; ++line) {
    for (int v = 0; v < 1200; ++v) text += std::to_string(GetParam().Lowest + int(rng() % 15000)) + "\t";
    text += line == 2 ? GetParam().ThirdLineEnd : GetParam().LineEnd;
  }
  ASSERT_GT(text.size(), size_t(4) << 20);
  const std::filesystem::path path = test::ScratchFolder() / (std::string(GetParam().Name) + ".raw");
  test::WriteBytes(path, text);
  for (bool fromFile : {false, true}) {
    model.CurSection().RadiographCount = 0;
    const ReadOutcome out = fromFile ? ReadRawFile(model, prompt, path.string(), false)
                                     : ParseRawRadiograph(model, prompt, text, false);
    ASSERT_TRUE(out.PixelsRead);
    const RadiographDesc& r = model.CurRadiograph();
    const test::RawReference expect = test::ReferenceRawParse(text, 1200, 5, 2, r.Width);
    ASSERT_EQ(size_t(r.Width) * size_t(r.Height), expect.Samples.size());
    EXPECT_TRUE(std::equal(expect.Samples.begin(), expect.Samples.end(), r.Samples.begin())) << fromFile;
    EXPECT_EQ(r.MaxValue, expect.MaxValue);
  }
  EXPECT_TRUE(prompt.Messages.empty());
}

INSTANTIATE_TEST_SUITE_P(Rows, RawLarge,
                         ::testing::Values(LargeCase{"CrLf", "\r\n", "\r\n", 100},
                                           LargeCase{"Lf", "\n", "\n", 100},
                                           LargeCase{"BlankLine", "\r\n", "\n\n", 100},
                                           LargeCase{"CrOnlyLine", "\r\n", "\r", 100},
                                           LargeCase{"OffsetData", "\r\n", "\r\n", 16500}),
                         [](const auto& i) { return std::string(i.param.Name); });

TEST_F(RawReader, UnopenableFileIsPassedOverQuietly) {
  prompt.ChooseFile((test::ScratchFolder() / "none.raw").string());
  const ReadOutcome out = ReadRawRadiograph(model, prompt, false);
  EXPECT_EQ(std::tuple(out.Result, out.PixelsRead, prompt.Messages.size()), std::tuple(1, false, 0u));
  EXPECT_EQ(std::tuple(prompt.OpenRequests.at(0).Title, prompt.OpenRequests.at(0).InitialName),
            std::tuple("Open Raw Radiograph file", "*.raw"));
}

}  // namespace
}  // namespace sedra
