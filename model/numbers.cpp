#include "model/numbers.h"

#include <locale.h>

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>

#include "model/messages.h"
#include "model/prompt.h"

namespace sedra {

int32_t RoundToInt(double x) {
  const double r = std::floor(x + 0.5);
  if (!(r >= -2147483648.0 && r <= 2147483647.0)) return INT32_MIN;
  return static_cast<int32_t>(r);
}

namespace {

// Formatting in the "C" locale for the length of one call.  The desktop's toolkit
// switches the C library to the user's locale at start-up, where 1.5 prints as "1,5".
class CNumbers {
 public:
  CNumbers() {
#if defined(__unix__) || defined(__APPLE__)
    static const locale_t c = newlocale(LC_ALL_MASK, "C", locale_t(0));
    if (c) previous_ = uselocale(c);
#endif
  }
  ~CNumbers() {
#if defined(__unix__) || defined(__APPLE__)
    if (previous_) uselocale(previous_);
#endif
  }
  CNumbers(const CNumbers&) = delete;
  CNumbers& operator=(const CNumbers&) = delete;

 private:
#if defined(__unix__) || defined(__APPLE__)
  locale_t previous_ = locale_t(0);
#endif
};

}  // namespace

std::string Format(const char* fmt, ...) {
  const CNumbers cLocale;
  char buf[512];
  va_list ap;
  va_start(ap, fmt);
  const int n = std::vsnprintf(buf, sizeof buf, fmt, ap);
  va_end(ap);
  if (n < 0) return {};
  if (static_cast<size_t>(n) < sizeof buf) return std::string(buf, static_cast<size_t>(n));
  std::string out(static_cast<size_t>(n) + 1, '\0');
  va_start(ap, fmt);
  std::vsnprintf(out.data(), out.size(), fmt, ap);
  va_end(ap);
  out.resize(static_cast<size_t>(n));
  return out;
}

bool LeadingInt(const std::string& text, int32_t& value) {
  const char* p = text.c_str();
  while (*p == ' ' || *p == '\t') ++p;
  char* end = nullptr;
  const long long v = std::strtoll(p, &end, 10);
  if (end == p) return false;
  value = static_cast<int32_t>(std::clamp<long long>(v, INT32_MIN, INT32_MAX));
  return true;
}

int32_t LeadingInt(const std::string& text) {
  int32_t v = 0;
  LeadingInt(text, v);
  return v;
}

namespace {
template <typename Real, typename Parse>
bool ParseLeading(std::string_view text, Real& value, Parse parse) {
  const CNumbers cLocale;
  const std::string copy(text);
  char* end = nullptr;
  const Real v = parse(copy.c_str(), &end);
  if (end == copy.c_str()) return false;
  value = v;
  return true;
}
}  // namespace

bool LeadingReal(std::string_view text, double& value) {
  return ParseLeading(text, value, [](const char* s, char** end) { return std::strtod(s, end); });
}

bool LeadingReal(std::string_view text, float& value) {
  return ParseLeading(text, value, [](const char* s, char** end) { return std::strtof(s, end); });
}

bool ParseDate(Date& out, const std::string& text, Prompt* prompt) {
  std::string s = text.substr(0, 15);
  for (int pass = 0; pass < 2; ++pass) {
    size_t at = s.find('-');
    if (at == std::string::npos) at = s.find('/');
    if (at == std::string::npos) {
      if (prompt) prompt->Tell(msg::kDateFormat, "", Icon::Exclamation);
      return false;
    }
    s[at] = ' ';
  }
  int day = 0, month = 0, year = 0;
  const int got = std::sscanf(s.c_str(), "%d %d %d", &day, &month, &year);
  bool valid = got == 3 && day >= 1 && month >= 1 && year >= 0 && year <= 2050;
  if (valid) {
    if (year < 50) year += 100;
    if (year < 150) year += 1900;
    static const int kDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (month > 12) {
      valid = false;
    } else {
      // Every fourth year is a leap year here, 1900 and 2100 included.
      const int days = (month == 2 && year % 4 == 0) ? 29 : kDays[month - 1];
      valid = day <= days;
    }
  }
  if (!valid) {
    if (prompt) prompt->Tell(msg::kDateInvalid, "", Icon::Exclamation);
    return false;
  }
  out = {day, month, year};
  return true;
}

std::string TrimExponent(std::string s) {
  for (size_t i = 0; i < s.size(); ++i) {
    if (s[i] != 'e') continue;
    const size_t digit = i + 2;  // skip the sign
    if (digit < s.size() && s[digit] == '0') s.erase(digit, 2);
  }
  return s;
}

// The scanner's software wrote exponents with three digits ("1.5e+006"); TrimExponent
// and everything that reads these labels expect that form, so widen the C library's.
std::string ThreeDigitExponent(std::string s) {
  const size_t e = s.find('e');
  if (e == std::string::npos || e + 2 >= s.size()) return s;
  const size_t digits = e + 2;
  const size_t count = s.size() - digits;
  if (count < 3) s.insert(digits, 3 - count, '0');
  return s;
}

std::string FormatScaleValue(double x, double r) {
  if (x == 0) return "0";
  if (r >= 1000000 || r < 0.01) return TrimExponent(ThreeDigitExponent(Format("%7.1e", x)));
  if (r >= 10) return Format("%3.0lf", x);
  if (r >= 1) return Format("%4.1lf", x);
  return Format("%4.2lf", x);
}

}  // namespace sedra
