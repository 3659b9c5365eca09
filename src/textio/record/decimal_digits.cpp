#include "textio/record/decimal_digits.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace varpre::decimal {
namespace {

constexpr int exact_digits = 800;  // significant digits that hold every double exactly (767 are enough)

bool all_zeros(const char* digits, int count) {
  return std::all_of(digits, digits + count, [](char c) { return c == '0'; });
}

// The power of ten above the leading digit of a value that is not 0: 10^(exponent-1) <= |value| <
// 10^exponent.
int decimal_exponent(double value) {
  Digits digits;
  significant_digits(value, 17, digits);
  const bool power_of_ten = digits.digit[0] == '1' && all_zeros(digits.digit.data() + 1, digits.count - 1);
  if (power_of_ten) significant_digits(value, exact_digits, digits);  // rounding may have carried into it
  return digits.exponent;
}

}  // namespace

void significant_digits(double value, int count, Digits& out) {
  std::array<char, longest_double> text;
  const auto end = std::to_chars(text.data(), text.data() + text.size(), std::abs(value),
                                 std::chars_format::scientific, count - 1)
                       .ptr;
  const char* exponent = end - 1;
  while (*exponent != 'e') --exponent;
  out.count = count;
  out.digit[0] = text[0];
  if (count > 1) std::memcpy(&out.digit[1], &text[2], static_cast<std::size_t>(count - 1));
  const bool negative = exponent[1] == '-';
  int magnitude = 0;
  std::from_chars(exponent + 2, end, magnitude);
  out.exponent = value == 0 ? 0 : (negative ? -magnitude : magnitude) + 1;
}

void digits_to_place(double value, int decimals, Digits& out) {
  out.count = 0;
  if (value == 0) return;
  if (const auto scaled = quick_scaled(Binary(value), decimals); scaled) {
    while (out.count <= most_quick_digits &&
           *scaled >= small_powers_of_ten[static_cast<std::size_t>(out.count)])
      ++out.count;
    if (out.count <= most_quick_digits) {
      return put_digits(out.digit.data(), static_cast<std::uint32_t>(*scaled), out.count);
    }
    out.count = 0;
  }
  const int exponent = decimal_exponent(value);
  const int places = exponent + decimals;
  if (places > 0) {
    significant_digits(value, places, out);
    if (out.exponent > exponent) out.digit[static_cast<std::size_t>(out.count++)] = '0';
  } else if (places == 0) {  // the leading digit stands just behind the last place: the value becomes 0 or 1
    significant_digits(value, exact_digits, out);
    const bool tie = out.digit[0] == '5' && all_zeros(out.digit.data() + 1, out.count - 1);
    out.count = out.digit[0] >= '5' && !tie ? 1 : 0;
    out.digit[0] = '1';
  }
}

}  // namespace varpre::decimal
