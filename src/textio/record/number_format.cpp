#include "textio/record/number_format.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "textio/record/text.h"

namespace varpre {
namespace {

constexpr int exact_digits = 800;     // significant digits that hold every double exactly (767 are enough)
constexpr int longest_double = 1100;  // room for the digits of any value under any descriptor

// --- The quick way to a few digits -----------------------------------------------------------------
//
// |value| x 10^k as a product of integers: the 53 bits of the value times the leading 64 bits of 10^k. What
// is cut off 10^k bounds the error of the product. The rounded product is handed out only where no number
// within that bound rounds to another; everything else, exact ties included, is left to the exact way.

__extension__ using uint128 = unsigned __int128;

constexpr int widest_power = 128;
constexpr int most_quick_digits = 9;

// 10^k = (bits + f) x 2^exponent with 0 <= f < 1.01 and the highest bit set.
struct PowerOfTen {
  std::uint64_t bits;
  int exponent;
};

// All powers from 10^-widest_power to 10^widest_power, from one another in 128 bits: every step cuts off less
// than 2^-124 of the power, all together less than a hundredth of the last of the 64 bits kept.
constexpr auto powers_of_ten = [] {
  std::array<PowerOfTen, 2 * widest_power + 1> table{};
  const auto set = [&](int k, uint128 bits, int exponent) {
    table[static_cast<std::size_t>(k + widest_power)] = {static_cast<std::uint64_t>(bits >> 64),
                                                         exponent + 64};
  };
  constexpr uint128 one = uint128{1} << 127;
  uint128 bits = one;
  int exponent = -127;
  set(0, bits, exponent);
  for (int k = 1; k <= widest_power; ++k) {  // times 10/16, then the highest bit is set again
    bits = (bits >> 1) + (bits >> 3);
    exponent += 4;
    for (; bits < one; bits <<= 1) --exponent;
    set(k, bits, exponent);
  }
  bits = one;
  exponent = -127;
  for (int k = 1; k <= widest_power; ++k) {
    const uint128 rest = bits % 10;
    bits /= 10;
    int shift = 0;
    for (; bits < one; bits <<= 1) ++shift;
    bits += (rest << shift) / 10;  // the bits that the division moved out on the right
    exponent -= shift;
    set(-k, bits, exponent);
  }
  return table;
}();

constexpr auto small_powers_of_ten = [] {
  std::array<std::uint64_t, most_quick_digits + 1> table{1};
  for (std::size_t k = 1; k < table.size(); ++k) table[k] = 10 * table[k - 1];
  return table;
}();

// |value| = bits x 2^exponent, for a normal value.
struct Binary {
  explicit Binary(double value) {
    constexpr std::uint64_t fraction = (std::uint64_t{1} << 52) - 1;
    const auto word = std::bit_cast<std::uint64_t>(value);
    const int biased = static_cast<int>(word >> 52 & 0x7FF);
    normal = biased != 0 && biased != 0x7FF;
    bits = (word & fraction) | (fraction + 1);
    exponent = biased - 1075;
  }
  std::uint64_t bits;
  int exponent;
  bool normal;
};

// |value| x 10^k rounded to an integer, where it is below 2^36 and the rounding is certain.
inline std::optional<std::uint64_t> quick_scaled(const Binary& value, int k) {
  if (!value.normal || k < -widest_power || k > widest_power) return std::nullopt;
  const PowerOfTen& power = powers_of_ten[static_cast<std::size_t>(k + widest_power)];
  const int point = -(value.exponent + power.exponent + 54);  // bits of `product` behind the binary point
  if (point < 26 || point > 62) return std::nullopt;
  // The leading 61 to 63 bits; the true product lies in [product, product + 2): one for what is cut off here,
  // and 2^53 x 1.01 / 2^54 for what is cut off the power.
  const auto product = static_cast<std::uint64_t>(uint128{value.bits << 10} * power.bits >> 64);
  const std::uint64_t one = std::uint64_t{1} << point;
  const std::uint64_t rounded = product + one / 2;
  const std::uint64_t rest = rounded & (one - 1);
  if (rest == 0 || rest > one - 2) return std::nullopt;  // a tie, or a carry that is not excluded
  return rounded >> point;
}

// |value| rounded to `count` significant places, as digits x 10^(exponent - count); zero has exponent 0.
struct QuickDigits {
  std::uint32_t digits;
  int exponent;
};

inline std::optional<QuickDigits> quick_digits(double value, int count) {
  if (count > most_quick_digits) return std::nullopt;
  if (value == 0) return QuickDigits{0, 0};
  const Binary binary(value);
  // From the highest bit alone: exact, or one too low.
  int exponent = ((binary.exponent + 52) * 315653 >> 20) + 1;  // log10(2) = 315653/2^20
  auto digits = quick_scaled(binary, count - exponent);
  if (digits && *digits >= small_powers_of_ten[static_cast<std::size_t>(count)]) {
    ++exponent;
    digits = quick_scaled(binary, count - exponent);
  }
  if (!digits) return std::nullopt;
  return QuickDigits{static_cast<std::uint32_t>(*digits), exponent};
}

// "00" to "99".
constexpr auto digit_pairs = [] {
  std::array<char, 200> pairs{};
  for (std::size_t i = 0; i < 100; ++i) {
    pairs[2 * i] = static_cast<char>('0' + i / 10);
    pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
  }
  return pairs;
}();

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

inline void put_pair(char* at, std::uint32_t below_100) {
  std::memcpy(at, &digit_pairs[2 * std::size_t{below_100}], 2);
}

// Writes a number with exactly `count` digits.
inline void put_digits(char* at, std::uint32_t digits, int count) {
  for (; count > 1; count -= 2) {
    put_pair(at + count - 2, digits % 100);
    digits /= 100;
  }
  if (count > 0) *at = static_cast<char>('0' + digits % 10);
}

// " 0" to "99".
constexpr auto blank_led_pairs = [] {
  std::array<char, 200> pairs = digit_pairs;
  for (std::size_t i = 0; i < 10; ++i) pairs[2 * i] = ' ';
  return pairs;
}();

// Iw of at most four digits, for w from 4 to 8.
inline void quick_edit_integer(char* field, int width, int value) {
  const auto high = static_cast<std::size_t>(value / 100);
  const auto low = static_cast<std::size_t>(value % 100);
  constexpr std::array two_blanks{' ', ' '};
  std::memset(field, ' ', 4);
  field += width - 4;
  std::memcpy(field, high > 0 ? &blank_led_pairs[2 * high] : two_blanks.data(), 2);
  std::memcpy(field + 2, (high > 0 ? digit_pairs : blank_led_pairs).data() + 2 * low, 2);
}

// --- The exact way ---------------------------------------------------------------------------------

// The significand digits d1 d2 ... of a value rounded to `count` significant digits, value = 0.d1d2... x
// 10^exponent.
struct Digits {
  std::array<char, longest_double> digit;
  int count = 0;
  int exponent = 0;
};

bool all_zeros(const char* digits, int count) {
  return std::all_of(digits, digits + count, [](char c) { return c == '0'; });
}

// Digits of |value| rounded to `count` >= 1 significant places. Zero has digits 0 and exponent 0.
void significant_digits(double value, int count, Digits& out) {
  if (const auto quick = quick_digits(value, count)) {
    out.count = count;
    out.exponent = quick->exponent;
    put_digits(out.digit.data(), quick->digits, count);
    return;
  }
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

// The power of ten above the leading digit of a value that is not 0: 10^(exponent-1) <= |value| <
// 10^exponent.
int decimal_exponent(double value) {
  Digits digits;
  significant_digits(value, 17, digits);
  const bool power_of_ten = digits.digit[0] == '1' && all_zeros(digits.digit.data() + 1, digits.count - 1);
  if (power_of_ten) significant_digits(value, exact_digits, digits);  // rounding may have carried into it
  return digits.exponent;
}

// Digits of |value| rounded at the decimal place 10^-decimals: value = d1d2...dn x 10^-decimals, n = 0 for
// zero.
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

void fill(char*& at, char c, int count) {
  std::memset(at, c, static_cast<std::size_t>(std::max(count, 0)));
  at += std::max(count, 0);
}

void copy(char*& at, const char* from, int count) {
  std::memcpy(at, from, static_cast<std::size_t>(count));
  at += count;
}

void right_justify(char* field, int width, std::string_view text) {
  fill(field, ' ', width - static_cast<int>(text.size()));
  copy(field, text.data(), static_cast<int>(text.size()));
}

void asterisks(char* field, int width) {
  fill(field, '*', width);
}

// NaN, Infinity or Inf, whichever the width leaves room for.
void edit_not_finite(char* field, int width, double value) {
  const bool negative = value < 0;
  for (const std::string_view word : std::isnan(value) ? std::array<std::string_view, 2>{"NaN", "NaN"}
                                     : negative        ? std::array<std::string_view, 2>{"-Infinity", "-Inf"}
                                                       : std::array<std::string_view, 2>{"Infinity", "Inf"}) {
    if (static_cast<int>(word.size()) <= width) return right_justify(field, width, word);
  }
  asterisks(field, width);
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
  const auto quick = quick_digits(value, d + 1);
  if (!quick) return false;
  const int exponent = value == 0 ? 0 : quick->exponent - 1;
  if (exponent < -99 || exponent > 99) return false;
  if (blanks > 0) fill(field, ' ', blanks);
  *field++ = std::signbit(value) ? '-' : ' ';
  put_digits(field + 1, quick->digits, d + 1);
  field[0] = field[1];
  field[1] = '.';
  std::memcpy(field + d + 2, &exponents[4 * static_cast<std::size_t>(exponent + 99)], 4);
  return true;
}

// Any other Ew.d; a function of its own, so that the quick way needs no room for so many digits.
[[gnu::noinline]] void edit_exponent_exactly(char* field, const RealEdit& edit, double value) {
  if (!std::isfinite(value)) return edit_not_finite(field, edit.width, value);
  const auto parts = significand(edit);
  if (!parts) return asterisks(field, edit.width);
  const int sign = std::signbit(value) ? 1 : 0;
  const int length = sign + parts->before + 1 + parts->zeros_after + parts->after + 4;
  const auto zero = leading_zero_fits(edit.width, length, parts->before == 0);
  if (!zero) return asterisks(field, edit.width);

  Digits digits;
  significant_digits(value, parts->before + parts->after, digits);
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
}

// A number in the grammar of a real field, blanks left out: mantissa digits, exponent of the last of them.
struct Scanned {
  bool negative = false;
  std::array<char, 512> digit;
  int count = 0;
  long exponent = 0;
  bool has_point = false;
  bool has_exponent = false;
};

// Scans the field's characters without its blanks; false when one does not belong there.
bool scan(std::string_view field, Scanned& out) {
  std::array<char, 512> compact;
  std::size_t length = 0;
  if (field.size() > compact.size()) return false;
  for (const char c : field) {
    if (c != ' ') compact[length++] = c;
  }
  const char* at = compact.data();
  const char* const end = at + length;

  if (at < end && (*at == '+' || *at == '-')) out.negative = *at++ == '-';
  bool any_digit = false;
  for (; at < end && (is_digit(*at) || *at == '.'); ++at) {
    if (*at == '.') {
      if (out.has_point) return false;
      out.has_point = true;
      continue;
    }
    any_digit = true;
    if (out.count > 0 || *at != '0') out.digit[static_cast<std::size_t>(out.count++)] = *at;
    if (out.has_point) --out.exponent;
  }
  if (!any_digit) return false;
  if (at == end) return true;

  out.has_exponent = true;
  if (*at == 'E' || *at == 'D' || *at == 'e' || *at == 'd') {
    ++at;
  } else if (*at != '+' && *at != '-') {
    return false;
  }
  bool negative = false;
  if (at < end && (*at == '+' || *at == '-')) negative = *at++ == '-';
  if (at == end) return false;
  long exponent = 0;
  for (; at < end; ++at) {
    if (!is_digit(*at)) return false;
    exponent = std::min(exponent * 10 + (*at - '0'), 100000L);  // far beyond any double already
  }
  out.exponent += negative ? -exponent : exponent;
  return true;
}

// The double nearest to the scanned decimal; nothing on overflow, a signed zero on underflow.
std::optional<double> nearest_double(const Scanned& number) {
  double value = 0;
  if (number.count > 0) {
    std::array<char, 544> text;
    char* at = text.data();
    copy(at, number.digit.data(), number.count);
    *at++ = 'e';
    at = std::to_chars(at, text.data() + text.size(), number.exponent).ptr;
    const auto result = std::from_chars(text.data(), at, value);
    if (result.ec != std::errc() || !std::isfinite(value)) {
      if (number.count + number.exponent > 0) return std::nullopt;
      value = 0;
    }
  }
  return number.negative ? -value : value;
}

// The common case: an explicit point, no blanks inside, no sign but a minus, the whole field consumed.
std::optional<double> read_plain_real(std::string_view field) {
  const std::size_t first = field.find_first_not_of(' ');
  if (first == std::string_view::npos) return 0.0;
  const char* const begin = field.data() + first;
  const char* const end = field.data() + trimmed(field).size();
  const char* digits = begin + (*begin == '-');
  if (digits == end || (!is_digit(*digits) && *digits != '.')) return std::nullopt;
  while (digits < end && is_digit(*digits)) ++digits;
  if (digits == end || *digits != '.') return std::nullopt;
  double value = 0;
  const auto result = std::from_chars(begin, end, value);
  if (result.ec != std::errc() || result.ptr != end || !std::isfinite(value)) return std::nullopt;
  return value;
}

}  // namespace

void edit_integer(char* field, int width, int value) {
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
}

void edit_fixed(char* field, const RealEdit& edit, double value) {
  if (!std::isfinite(value)) return edit_not_finite(field, edit.width, value);
  const int sign = std::signbit(value) ? 1 : 0;
  Digits digits;
  digits_to_place(value, edit.digits + edit.scale, digits);
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
}

void edit_exponent(char* field, const RealEdit& edit, double value) {
  if (!quick_edit_exponent(field, edit, value)) edit_exponent_exactly(field, edit, value);
}

std::optional<int> read_integer(std::string_view field) {
  bool negative = false;
  bool signed_field = false;
  bool any_digit = false;
  long value = 0;
  for (const char c : field) {
    if (c == ' ') continue;
    if ((c == '+' || c == '-') && !any_digit && !signed_field) {
      signed_field = true;
      negative = c == '-';
    } else if (is_digit(c)) {
      any_digit = true;
      value = value * 10 + (c - '0');
      if (value > 2147483648L) return std::nullopt;
    } else {
      return std::nullopt;
    }
  }
  if (signed_field && !any_digit) return std::nullopt;
  if (negative) value = -value;
  if (value > 2147483647L) return std::nullopt;
  return static_cast<int>(value);
}

std::optional<double> read_real(std::string_view field, const RealEdit& edit) {
  if (const auto value = read_plain_real(field); value && edit.scale == 0) return value;
  if (trimmed(field).empty()) return 0.0;
  Scanned number;
  if (!scan(field, number)) return std::nullopt;
  if (!number.has_point) number.exponent -= edit.digits;
  if (!number.has_exponent) number.exponent -= edit.scale;
  return nearest_double(number);
}

std::optional<double> read_free_real(std::string_view token) {
  Scanned number;
  if (token.find(' ') != std::string_view::npos || !scan(token, number)) return std::nullopt;
  return nearest_double(number);
}

}  // namespace varpre
