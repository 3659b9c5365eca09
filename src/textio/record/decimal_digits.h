#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>

// The decimal digits of a value, rounded to nearest, exact ties to the even digit: quickly where few are
// wanted and the rounding is certain, exactly where the quick way gave up.
namespace varpre::decimal {

// --- The quick way to a few digits -----------------------------------------------------------------
//
// |value| x 10^k as a product of integers: the 53 bits of the value times the leading 64 bits of 10^k. What
// is cut off 10^k bounds the error of the product. The rounded product is handed out only where no number
// within that bound rounds to another; everything else, exact ties included, is left to the exact way.

__extension__ using uint128 = unsigned __int128;

inline constexpr int widest_power = 128;
inline constexpr int most_quick_digits = 9;

// 10^k = (bits + f) x 2^exponent with 0 <= f < 1.01 and the highest bit set.
struct PowerOfTen {
  std::uint64_t bits;
  int exponent;
};

// All powers from 10^-widest_power to 10^widest_power, from one another in 128 bits: every step cuts off less
// than 2^-124 of the power, all together less than a hundredth of the last of the 64 bits kept.
inline constexpr auto powers_of_ten = [] {
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

inline constexpr auto small_powers_of_ten = [] {
  std::array<std::uint64_t, most_quick_digits + 1> table{1};
  for (std::size_t k = 1; k < table.size(); ++k) table[k] = 10 * table[k - 1];
  return table;
}();

// |value| = bits x 2^exponent, for a normal value; any other gets an exponent far out of the quick way's
// range.
struct Binary {
  explicit Binary(double value) {
    constexpr std::uint64_t fraction = (std::uint64_t{1} << 52) - 1;
    const auto word = std::bit_cast<std::uint64_t>(value);
    const int biased = static_cast<int>(word >> 52 & 0x7FF);
    bits = (word & fraction) | (fraction + 1);
    exponent = biased - 1075;
  }
  std::uint64_t bits;
  int exponent;
};

// |value| x 10^k rounded to an integer, where it is below 2^36 and the rounding is certain.
inline std::optional<std::uint64_t> quick_scaled(const Binary& value, int k) {
  if (k < -widest_power || k > widest_power) return std::nullopt;
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
inline constexpr auto digit_pairs = [] {
  std::array<char, 200> pairs{};
  for (std::size_t i = 0; i < 100; ++i) {
    pairs[2 * i] = static_cast<char>('0' + i / 10);
    pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
  }
  return pairs;
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

// --- The exact way ---------------------------------------------------------------------------------

constexpr int longest_double = 1100;  // room for the digits of any value under any descriptor

// The significand digits d1 d2 ... of a value, value = 0.d1d2... x 10^exponent.
struct Digits {
  std::array<char, longest_double> digit;
  int count = 0;
  int exponent = 0;
};

// Digits of |value| rounded to `count` >= 1 significant places. Zero has digits 0 and exponent 0.
void significant_digits(double value, int count, Digits& out);

// Digits of |value| rounded at the decimal place 10^-decimals, by either way: value = d1d2...dn x
// 10^-decimals, n = 0 for zero.
void digits_to_place(double value, int decimals, Digits& out);

}  // namespace varpre::decimal
