#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "textio/record/decimal_digits.h"
#include "textio/record/number_format.h"

namespace varpre {
namespace {

// "E-99" to "E+99".
constexpr auto exponents = [] {
  std::array<char, 199 * 4> texts{};
  for (std::size_t i = 0; i < 199; ++i) {
    const std::size_t magnitude = i < 99 ? 99 - i : i - 99;
    texts[4 * i] = 'E';
    texts[4 * i + 1] = i < 99 ? '-' : '+';
    texts[4 * i + 2] = static_cast<char>('0' + magnitude / 10);
    texts[4 * i + 3] = static_cast<char>('0' + magnitude % 10);
  }
  return texts;
}();

// " 0" to "99".
constexpr auto blank_led_pairs = [] {
  std::array<char, 200> pairs = decimal::digit_pairs;
  for (std::size_t i = 0; i < 10; ++i) pairs[2 * i] = ' ';
  return pairs;
}();

// Iw of at most four digits, for w from 4 to 8.
inline bool quick_edit_integer(char* field, int width, int value) {
  const auto high = static_cast<std::size_t>(value / 100);
  const auto low = static_cast<std::size_t>(value % 100);
  constexpr std::array two_blanks{' ', ' '};
  std::memset(field, ' ', 4);
  field += width - 4;
  std::memcpy(field, high > 0 ? &blank_led_pairs[2 * high] : two_blanks.data(), 2);
  std::memcpy(field + 2, (high > 0 ? decimal::digit_pairs : blank_led_pairs).data() + 2 * low, 2);
  return true;
}

void fill(char*& at, char c, int count) {
  std::memset(at, c, static_cast<std::size_t>(std::max(count, 0)));
  at += std::max(count, 0);
}

void copy(char*& at, const char* from, int count) {
  std::memcpy(at, from, static_cast<std::size_t>(count));
  at += count;
}

bool right_justify(char* field, int width, std::string_view text) {
  fill(field, ' ', width - static_cast<int>(text.size()));
  copy(field, text.data(), static_cast<int>(text.size()));
  return true;
}

// What a value that does not fit looks like.
bool asterisks(char* field, int width) {
  fill(field, '*', width);
  return false;
}

// NaN, Infinity or Inf, whichever the width leaves room for.
bool edit_not_finite(char* field, int width, double value) {
  const bool negative = value < 0;
  for (const std::string_view word : std::isnan(value) ? std::array<std::string_view, 2>{"NaN", "NaN"}
                                     : negative        ? std::array<std::string_view, 2>{"-Infinity", "-Inf"}
                                                       : std::array<std::string_view, 2>{"Infinity", "Inf"}) {
    if (static_cast<int>(word.size()) <= width) return right_justify(field, width, word);
  }
  return asterisks(field, width);
}

// What a real field is made of: sign, then `before` digits (or the optional zero), the point, and the rest.
// Returns whether the zero before the point is written, or nothing when the field is too narrow.
std::optional<bool> leading_zero_fits(int width, int length_without_zero, bool zero_wanted) {
  if (length_without_zero > width) return std::nullopt;
  return zero_wanted && length_without_zero < width;
}

// The scale factor moves the point of the digits 0.d1d2... by k; which digits stand before and after it.
struct Significand {
  int before;       // digits before the point
  int zeros_after;  // zeros between the point and the first digit
  int after;        // digits after those zeros
};

std::optional<Significand> significand(const RealEdit& edit) {
  const auto [width, d, k] = edit;
  if (k > 0 && k < d + 2) return Significand{k, 0, d - k + 1};
  if (k <= 0 && k > -d) return Significand{0, -k, d + k};
  return std::nullopt;
}

// 1PEw.d of a number that the quick way can round, in a field wide enough: what most of the store file is.
inline bool quick_edit_exponent(char* field, const RealEdit& edit, double value) {
  const auto [width, d, k] = edit;
  const int blanks = width - (d + 7);  // sign, digit, point, d digits, E+00
  if (k != 1 || blanks < 0) return false;
  const auto quick = decimal::quick_digits(value, d + 1);
  if (!quick) return false;
  const int exponent = value == 0 ? 0 : quick->exponent - 1;
  if (exponent < -99 || exponent > 99) return false;
  if (blanks > 0) fill(field, ' ', blanks);
  *field++ = std::signbit(value) ? '-' : ' ';
  decimal::put_digits(field + 1, quick->digits, d + 1);
  field[0] = field[1];
  field[1] = '.';
  std::memcpy(field + d + 2, &exponents[4 * static_cast<std::size_t>(exponent + 99)], 4);
  return true;
}

// Any other Ew.d; a function of its own, so that the quick way needs no room for so many digits.
[[gnu::noinline]] bool edit_exponent_exactly(char* field, const RealEdit& edit, double value) {
  if (!std::isfinite(value)) return edit_not_finite(field, edit.width, value);
  const auto parts = significand(edit);
  if (!parts) return asterisks(field, edit.width);
  const int sign = std::signbit(value) ? 1 : 0;
  const int length = sign + parts->before + 1 + parts->zeros_after + parts->after + 4;
  const auto zero = leading_zero_fits(edit.width, length, parts->before == 0);
  if (!zero) return asterisks(field, edit.width);

  decimal::Digits digits;
  decimal::significant_digits(value, parts->before + parts->after, digits);
  const int exponent = value == 0 ? 0 : digits.exponent - edit.scale;
  const int magnitude = std::abs(exponent);

  fill(field, ' ', edit.width - length - (*zero ? 1 : 0));
  fill(field, '-', sign);
  fill(field, '0', *zero ? 1 : 0);
  copy(field, digits.digit.data(), parts->before);
  *field++ = '.';
  fill(field, '0', parts->zeros_after);
  copy(field, digits.digit.data() + parts->before, parts->after);
  if (magnitude < 100) *field++ = 'E';
  *field++ = exponent < 0 ? '-' : '+';
  if (magnitude >= 100) *field++ = static_cast<char>('0' + magnitude / 100);
  *field++ = static_cast<char>('0' + magnitude / 10 % 10);
  *field++ = static_cast<char>('0' + magnitude % 10);
  return true;
}

}  // namespace

bool edit_integer(char* field, int width, int value) {
  if (width >= 4 && width <= 8 && value >= 0 && value < 10000) return quick_edit_integer(field, width, value);
  char* at = field + width;
  auto rest = static_cast<unsigned>(value);
  if (value < 0) rest = 0 - rest;
  do {
    if (at == field) return asterisks(field, width);
    *--at = static_cast<char>('0' + rest % 10);
    rest /= 10;
  } while (rest > 0);
  if (value < 0) {
    if (at == field) return asterisks(field, width);
    *--at = '-';
  }
  while (at != field) *--at = ' ';
  return true;
}

bool edit_fixed(char* field, const RealEdit& edit, double value) {
  if (!std::isfinite(value)) return edit_not_finite(field, edit.width, value);
  const int sign = std::signbit(value) ? 1 : 0;
  decimal::Digits digits;
  decimal::digits_to_place(value, edit.digits + edit.scale, digits);
  const int before = std::max(digits.count - edit.digits, 0);
  const bool zero_needed = edit.digits == 0 && before == 0;
  const int length = sign + before + (zero_needed ? 1 : 0) + 1 + edit.digits;
  const auto zero = leading_zero_fits(edit.width, length, before == 0 && !zero_needed);
  if (!zero) return asterisks(field, edit.width);

  fill(field, ' ', edit.width - length - (*zero ? 1 : 0));
  fill(field, '-', sign);
  fill(field, '0', *zero || zero_needed ? 1 : 0);
  copy(field, digits.digit.data(), before);
  *field++ = '.';
  fill(field, '0', edit.digits - (digits.count - before));
  copy(field, digits.digit.data() + before, digits.count - before);
  return true;
}

bool edit_exponent(char* field, const RealEdit& edit, double value) {
  return quick_edit_exponent(field, edit, value) || edit_exponent_exactly(field, edit, value);
}

}  // namespace varpre
