#pragma once
// Number routines shared by every layer: rounding, dates, scale labels.

#include <cstdint>
#include <string>
#include <string_view>

namespace sedra {

class Prompt;

// floor(x + 0.5) as a signed 32-bit integer; halves go upward (-2.5 gives -2).
// Values outside the 32-bit range (and NaN) give INT32_MIN, as the x87 conversion did.
int32_t RoundToInt(double x);

struct Date {
  int Day = 0, Month = 0, Year = 0;
};
// Reads "dd/mm/yy" or "dd-mm-yyyy" style text.  With a prompt, failures are explained
// to the user.  Returns false and leaves `out` alone when the date is not valid.
bool ParseDate(Date& out, const std::string& text, Prompt* prompt);

// Formats a scale value with digits suited to the range r.
std::string FormatScaleValue(double x, double r);
// Removes the leading zero of a three-digit exponent ("1.5e+006" -> "1.5e+6").
std::string TrimExponent(std::string s);
// Widens the exponent that ends a number written with "%e" to three digits ("1.5e+06" ->
// "1.5e+006"), as the scanner's software wrote them.
std::string ThreeDigitExponent(std::string s);

// printf into a std::string.  Numbers are written with a decimal point whatever the
// user's locale: plot labels and files never take a comma.
std::string Format(const char* fmt, ...) __attribute__((format(printf, 1, 2)));

// Leading signed integer of a text (GetDlgItemInt semantics): 0 when there is none.
int32_t LeadingInt(const std::string& text);
// The same as "%d" reads it: false, and `value` untouched, when the text does not start
// with a whole number.  Numbers beyond the 32-bit range are clamped to it.
bool LeadingInt(const std::string& text, int32_t& value);

// The leading real number of a text, as "%f" reads it (blanks skipped, a sign, digits,
// a decimal point): false, and `value` untouched, when the text does not start with
// one.  The decimal point is always ".", whatever the user's locale.
bool LeadingReal(std::string_view text, double& value);
bool LeadingReal(std::string_view text, float& value);

}  // namespace sedra
