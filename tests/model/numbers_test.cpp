#include <gtest/gtest.h>

#include <tuple>

#include "model/messages.h"
#include "model/numbers.h"
#include "support/german_numbers.h"
#include "support/scripted_prompt.h"

namespace sedra {
namespace {

TEST(RoundToInt, HalvesGoUpAndOverflowGivesTheIntegerIndefinite) {
  struct Row {
    double in;
    int32_t out;
  } rows[] = {{2.5, 3}, {-2.5, -2}, {-2.6, -3}, {0.49999, 0}, {1e10, INT32_MIN}, {-3e9, INT32_MIN},
              {2147483647.0, 2147483647}};
  for (const Row& r : rows) EXPECT_EQ(RoundToInt(r.in), r.out) << r.in;
}

TEST(ParseDate, AcceptsAndRejectsAsTheScannerSoftwareDid) {
  struct Row {
    const char* text;
    bool valid;
    int day, month, year;
    const char* message;  // shown when invalid
  } rows[] = {
      {"12/13/05", false, 0, 0, 0, msg::kDateInvalid},
      {"29-02-04", true, 29, 2, 2004, nullptr},
      {"29/02/1900", true, 29, 2, 1900, nullptr},  // every fourth year, centuries too
      {"29/02/2001", false, 0, 0, 0, msg::kDateInvalid},
      {"1.2.2005", false, 0, 0, 0, msg::kDateFormat},
      {"1/2", false, 0, 0, 0, msg::kDateFormat},  // only one separator
      {"31/04/99", false, 0, 0, 0, msg::kDateInvalid},
      {"30/04/99", true, 30, 4, 1999, nullptr},
      {"5/6/49", true, 5, 6, 2049, nullptr},
      {"5/6/50", true, 5, 6, 1950, nullptr},
      {"5/6/149", true, 5, 6, 2049, nullptr},
      {"5/6/2051", false, 0, 0, 0, msg::kDateInvalid},
      {"0/6/2000", false, 0, 0, 0, msg::kDateInvalid},
      {"1-6/2010", true, 1, 6, 2010, nullptr},
  };
  for (const Row& r : rows) {
    Date quiet;
    EXPECT_EQ(ParseDate(quiet, r.text, nullptr), r.valid) << "without a window nothing is shown: " << r.text;
    test::ScriptedPrompt prompt;
    Date d{7, 7, 7};
    EXPECT_EQ(ParseDate(d, r.text, &prompt), r.valid) << r.text;
    // An invalid date leaves the old value.
    EXPECT_EQ(std::tuple(d.Day, d.Month, d.Year), r.valid ? std::tuple(r.day, r.month, r.year) : std::tuple(7, 7, 7))
        << r.text;
    EXPECT_EQ(prompt.Texts(), r.valid ? std::vector<std::string>{} : std::vector<std::string>{r.message}) << r.text;
    for (const auto& shown : prompt.Messages) {
      EXPECT_EQ(shown.Caption, "");
      EXPECT_EQ(shown.IconKind, Icon::Exclamation);
    }
  }
}

TEST(FormatScaleValue, DigitsFollowTheRange) {
  struct Row {
    double x, r;
    const char* text;
  } rows[] = {
      {0.5, 0.005, "5.0e-1"}, {12.3, 50, " 12"},       {1.5, 2, " 1.5"},         {0.25, 0.5, "0.25"},
      {0, 1e9, "0"},          {1.5e6, 2e6, "1.5e+6"},  {1234.0, 5000, "1234"},   {-2.5, 3, "-2.5"},
      {1.0e12, 1e12, "1.0e+2"},  // an exponent of 012 loses a digit, as it always has
  };
  for (const Row& r : rows) EXPECT_EQ(FormatScaleValue(r.x, r.r), r.text) << r.x << " " << r.r;
}

// A German desktop switches the C library to a decimal comma; labels, files and typed
// depths keep the point.
TEST(Numbers, ReadAndWrittenWithAPointWhateverTheLocale) {
  test::GermanNumbers german;
  ASSERT_TRUE(german.Active()) << "no German locale could be made (localedef and the locales package)";
  EXPECT_EQ(Format("%3.1f cm", 1.5), "1.5 cm");
  EXPECT_EQ(FormatScaleValue(1.5, 2), " 1.5");
  EXPECT_EQ(FormatScaleValue(0.5, 0.005), "5.0e-1");
  struct Row {
    const char* text;
    bool read;
    double value;
  } rows[] = {{"100.5", true, 100.5}, {"  -2.25 mm", true, -2.25}, {"+7.5", true, 7.5}, {"1,5", true, 1.0},
              {"abc", false, 42.0},   {"", false, 42.0}};
  for (const Row& r : rows) {
    double d = 42.0;
    float f = 42.0f;
    EXPECT_EQ(LeadingReal(r.text, d), r.read) << r.text;
    EXPECT_EQ(LeadingReal(r.text, f), r.read) << r.text;
    EXPECT_DOUBLE_EQ(d, r.value) << r.text;
    EXPECT_FLOAT_EQ(f, float(r.value)) << r.text;
  }
}

}  // namespace
}  // namespace sedra
