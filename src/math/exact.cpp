#include "math/exact.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>

#include "math/fixed_point.h"

namespace varpre::math {
namespace {

// --- Between doubles and fixed point ---------------------------------------------------------------

// |x| = significand x 2^exponent, for a finite x that is not 0.
struct Binary {
  std::int64_t significand;  // below 2^53
  int exponent;
};

Binary binary(double x) {
  int exponent = 0;
  const double fraction = std::frexp(std::abs(x), &exponent);
  return {static_cast<std::int64_t>(std::ldexp(fraction, 53)), exponent - 53};
}

// x itself where its last bit has a place, as in all that is put in here.
template <std::size_t F>
Fixed<F> fixed(double x) {
  if (x == 0) return {};
  const Binary b = binary(x);
  const Fixed<F> result = shifted(Fixed<F>::integer(b.significand), b.exponent);
  return x < 0 ? -result : result;
}

// value x 2^exponent to the nearest double, ties to even, for a value > 0.
template <std::size_t F>
double nearest(const Fixed<F>& value, int exponent) {
  constexpr int lowest_place = -1074;
  const int units = exponent - Fixed<F>::fraction_bits;  // 2^units is the unit of `value`
  if (highest_bit(value) + units < lowest_place - 1) return 0;
  const int place = std::max(highest_bit(value) + units - 52, lowest_place);  // of the last bit of the double
  const int cut = place - units;
  const Fixed<F> kept = shifted(value, -cut);
  const auto bits = static_cast<std::int64_t>(kept.word[0]);
  // Twice what was cut off, against 2^cut.
  const Fixed<F> twice_rest = shifted(value - shifted(kept, cut), 1);
  Fixed<F> unit;
  unit.word[0] = 1;
  const Fixed<F> difference = twice_rest - shifted(unit, cut);
  const bool up = difference.is_zero() ? bits % 2 != 0 : !difference.is_negative();
  return std::ldexp(static_cast<double>(bits + (up ? 1 : 0)), place);
}

// --- The functions in fixed point ------------------------------------------------------------------

// e^x = value 2^exponent, value in [1/2, 2].
template <std::size_t F>
struct Power {
  Fixed<F> value;
  int exponent;
};

template <std::size_t F>
Power<F> exp_of(const Fixed<F>& x) {
  const auto head = static_cast<double>(static_cast<std::int64_t>(x.word[F]));
  const double next = std::ldexp(static_cast<double>(x.word[F - 1]), -64);
  const auto k = static_cast<std::int64_t>(std::floor((head + next) * 1.4427 + 0.5));
  return {exp_of_fraction(x - Fixed<F>::integer(k) * ln2<F>), static_cast<int>(k)};
}

// ln x = estimate + ln(1 + d), d = x e^-estimate - 1; the number of terms depends on the estimate, the result
// does not. Off by less than 2^32 units.
template <std::size_t F>
Fixed<F> log_of(double x, double estimate) {
  int exponent = 0;
  const double fraction = std::frexp(x, &exponent);
  const auto start = fixed<F>(estimate - exponent * 0x1.62e42fefa39efp-1);
  const Fixed<F> d = fixed<F>(fraction) * exp_of_fraction(-start) - Fixed<F>::integer(1);
  Fixed<F> power = d;
  Fixed<F> sum = d;
  for (std::uint64_t n = 2; !power.is_zero(); ++n) {
    power = -(power * d);
    sum = sum + power / n;
  }
  return Fixed<F>::integer(exponent) * ln2<F> + start + sum;
}

// y ln x. What y multiplies is below 2^10 and off by less than 2^32 units, y below 2^64: off by less than
// 2^100 units.
template <std::size_t F>
Fixed<F> product_with_log(double x, double y, double estimate) {
  const Binary b = binary(y);
  const Fixed<F> fraction = shifted(Fixed<F>::integer(b.significand), -53);
  const Fixed<F> product = shifted(log_of<F>(x, estimate) * fraction, b.exponent + 53);
  return y < 0 ? -product : product;
}

// --- Powers that are doubles, or in the middle between two -----------------------------------------

// The odd root m of x = m^2 2^(2 k) replaces m 2^exponent, if there is one.
bool take_square_root(std::int64_t& odd, int& exponent) {
  const auto root =
      static_cast<std::int64_t>(std::sqrt(static_cast<double>(odd)));  // exact for a square < 2^53
  if (exponent % 2 != 0 || root * root != odd) return false;
  odd = root;
  exponent /= 2;
  return true;
}

void make_odd(Binary& b) {
  for (; b.significand % 2 == 0; b.significand /= 2) ++b.exponent;
}

// x^y where it has no more than the 54 bits of a middle between two doubles. With x = m 2^e and y = n 2^f, m
// and n odd, it is m^y 2^(e y); for f < 0 both factors must have that root, which is known to be no fraction,
// and unless m = 1 the exponent y is then a positive integer, at most 34 as 3^34 has 54 bits.
std::optional<double> short_power(double x, double y) {
  Binary base = binary(x);
  Binary power = binary(y);
  make_odd(base);
  make_odd(power);
  for (; power.exponent < 0; ++power.exponent) {
    if (!take_square_root(base.significand, base.exponent)) return std::nullopt;
  }
  constexpr double beyond = 1 << 14;  // all exponents of doubles
  const double n = std::copysign(std::ldexp(static_cast<double>(power.significand), power.exponent), y);
  const double exponent = std::clamp(base.exponent * n, -beyond, beyond);
  if (base.significand > 1 && (n < 0 || n > 34)) return std::nullopt;
  uint128 value = 1;
  for (int i = 0; base.significand > 1 && i < static_cast<int>(n); ++i) {
    value *= static_cast<std::uint64_t>(base.significand);
    if (value >> 54 != 0) return std::nullopt;
  }
  Fixed<2> integer;
  integer.word[0] = static_cast<std::uint64_t>(value);
  return nearest(integer, Fixed<2>::fraction_bits + static_cast<int>(exponent));
}

// --- As many bits as it takes ----------------------------------------------------------------------

// No result of exp or log comes closer to the middle between two doubles than 2^-118 of itself, next to e^0
// 2^-158 (V. Lefevre and J.-M. Muller, ARITH 15 (2001) 111): six words, less 53 bits for the smallest
// logarithm and 32 of error, are far more. Nobody has proved such a bound for powers; they get 900 bits.
constexpr std::size_t words = 6;
constexpr std::size_t words_of_power = 16;

}  // namespace

double exact_exp(double x) {
  const auto power = exp_of(fixed<words>(x));
  return nearest(power.value, power.exponent);
}

double exact_log(double x, double estimate) {
  const auto value = log_of<words>(x, estimate);
  return value.is_negative() ? -nearest(-value, 0) : nearest(value, 0);
}

double exact_pow(double x, double y, double estimate) {
  if (const auto result = short_power(x, y)) return *result;
  const auto power = exp_of(product_with_log<words_of_power>(x, y, estimate));
  return nearest(power.value, power.exponent);
}

}  // namespace varpre::math
