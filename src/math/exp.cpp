#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

#include "math/double_double.h"
#include "math/elementary.h"
#include "math/exact.h"
#include "math/exp_table.h"
#include "math/log_table.h"

namespace varpre::math {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double overflow = 710;    // e^x is infinite from here on,
constexpr double underflow = -746;  // and 0 below this
constexpr double largest_quick = 709;
constexpr double lowest_quick = -707;  // results are normal

// (high + low) 2^exponent, `high` from 0.99 to 2.01.
struct Exponential {
  DoubleDouble value;
  std::int64_t exponent;
};

// e^(x + rest), for x between lowest_quick and largest_quick and |rest| < 2^-40: off by less than 2^-67 in
// units of 2^exponent.
//
// x = k ln(2)/128 + r, |r| < 2^-8.5; r - its low part is exact, since it is a multiple of the last bit of x
// or of 2^-42 and has no more than 53 bits. T = 2^(k/128) = 2^exponent (t.high + t.low); with q = e^r - 1 -
// r, e^x/T = 1 + r + q. The product of t.high and the 26 leading bits of r is exact. q < 2^-18 is off by less
// than 2^-69, by the roundings of r, r r, its factor and the product; T < 2 doubles that, and the six sums
// and products below 2^-17 that follow are off by 2^-71 each. Taylor's series leaves out r^8/8! < 2^-83.
Exponential exponential(double x, double rest) {
  constexpr double steps_by_log = exp_steps / 0x1.62e42fefa39efp-1;
  const double k = rounded_to(x * steps_by_log, 1);
  const double head = x - k * log_of_step.high;
  const double tail = rest - k * log_of_step.low;
  const double r = head + tail;
  const double q =
      r * r * (1. / 2 + r * (1. / 6 + r * (1. / 24 + r * (1. / 120 + r * (1. / 720 + r * (1. / 5040))))));

  const auto steps = static_cast<std::int64_t>(k);
  const ExpStep& t = exp_table[static_cast<std::size_t>(steps & (exp_steps - 1))];
  const double leading = rounded_to(head, 0x1p-34);
  const double small = t.low + (t.high * (head - leading) + (t.low * head + (t.high + t.low) * (q + tail)));
  const DoubleDouble sum = quick_sum(t.high, t.high * leading);
  return {quick_sum(sum.high, sum.low + small), steps >> 7};
}

constexpr double error_of_exponential = 0x1p-67;

double power_of_two(std::int64_t exponent) {
  return std::bit_cast<double>(static_cast<std::uint64_t>(exponent + 1023) << 52);
}

}  // namespace

double exp(double x) {
  if (std::isnan(x)) return x;
  if (x >= overflow) return infinity;
  if (x <= underflow) return 0;
  if (x < lowest_quick || x > largest_quick) return exact_exp(x);
  const auto [value, exponent] = exponential(x, 0);
  const double result = value.high + (value.low + error_of_exponential);
  if (result != value.high + (value.low - error_of_exponential)) return exact_exp(x);
  return result * power_of_two(exponent);
}

// --- Powers ----------------------------------------------------------------------------------------

namespace {

// ln x = high + low, and how much that may be off.
struct Logarithm {
  DoubleDouble value;
  double error;
};

// With r = c z - 1, exact, as in log(): ln(1 + r) = r - r^2/2 + r^3 C, C = 1/3 - r/4 + ... With the 26
// leading bits a of r = a + b, a^2/2 is exact, and r^2/2 - a^2/2 = b (a + r)/2 is below 2^-35 |r|. The
// errors: of r^3 C, its sum with the others and what is left out, r^10/10: together below |r|^3 2^-51; of
// b (a + r)/2, below |r| 2^-86; of the rest, below (|high| + |r|) 2^-86, as there.
Logarithm logarithm(double x) {
  const bool is_normal = x >= std::numeric_limits<double>::min();
  const LogArgument argument(std::bit_cast<std::uint64_t>(is_normal ? x : x * 0x1p52));
  const LogPiece& piece = log_table[argument.piece];
  const double e = argument.exponent - (is_normal ? 0 : 52);
  const double r = reduced(piece.c, argument.z);
  const double cubic =
      r * r * r *
      (1. / 3 + r * (-1. / 4 + r * (1. / 5 + r * (-1. / 6 + r * (1. / 7 + r * (-1. / 8 + r * (1. / 9)))))));
  const double a = rounded_to(r, 0x1p-34);
  const double b = r - a;

  const double high = e * log_of_two.high + piece.minus_log.high;
  const DoubleDouble head = quick_sum(high, r);
  const DoubleDouble next = quick_sum(head.high, -0.5 * (a * a));
  const double low = (e * log_of_two.low + piece.minus_log.low) + (cubic - 0.5 * (b * (a + r)));
  const double error = std::abs(r) * (r * r * 0x1p-51 + 0x1p-85) + std::abs(high) * 0x1p-85;
  return {quick_sum(next.high, head.low + next.low + low), error};
}

// x^y = e^(y ln x), for positive, finite x that is not 1 and finite y that is not 0.
double pow_of_positive(double x, double y) {
  constexpr double no_less = 0x1p64;  // |ln x| is 2^-53 at least
  if (std::abs(y) >= no_less) return (x > 1) == (y > 0) ? infinity : 0;
  const Logarithm log_x = logarithm(x);
  const DoubleDouble product = exact_product(y, log_x.value.high);
  if (std::abs(product.high) < 0x1p-60) return 1;
  if (product.high >= overflow) return infinity;
  if (product.high <= underflow) return 0;
  if (product.high > lowest_quick && product.high < largest_quick) {
    const double rest = product.low + y * log_x.value.low;
    const double error_of_product = std::abs(y) * log_x.error + std::abs(product.high) * 0x1p-104;
    const double error = error_of_exponential + 2.1 * error_of_product;
    const auto [value, exponent] = exponential(product.high, rest);
    const double result = value.high + (value.low + error);
    if (result == value.high + (value.low - error)) return result * power_of_two(exponent);
  }
  return exact_pow(x, y, log_x.value.high);
}

bool is_integer(double y) {
  return y == std::trunc(y);
}

bool is_odd(double y) {
  return is_integer(y) && !is_integer(y / 2);
}

// x^y of the magnitude of x.
double pow_of_magnitude(double x, double y) {
  if (x == 1) return 1;
  if (x == 0 || std::isinf(x) || std::isinf(y)) return (x > 1) == (y > 0) ? infinity : 0;
  return pow_of_positive(x, y);
}

}  // namespace

double pow(double x, double y) {
  if (x == 1 || y == 0) return 1;
  if (std::isnan(x) || std::isnan(y)) return std::numeric_limits<double>::quiet_NaN();
  if (x < 0 && std::isfinite(x) && !is_integer(y)) return std::numeric_limits<double>::quiet_NaN();
  const double size = pow_of_magnitude(std::abs(x), y);
  return std::signbit(x) && is_odd(y) ? -size : size;
}

}  // namespace varpre::math
