#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

#include "math/double_double.h"
#include "math/elementary.h"
#include "math/exact.h"
#include "math/log_table.h"
#include "math/wide_vectors.h"

namespace varpre::math {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double smallest_normal = std::numeric_limits<double>::min();

// ln(1 + r) = r + r^2 S, S = -1/2 + r/3 - r^2/4 + ..., for |r| <= 2^-8. What is left out of r^2 S, r^9/9, is
// below r^2 2^-59; its rounding errors are below r^2 (2^-54 + 2^-53 + 2^-59). All together: less than r^2
// 2^-52.
inline double log_series(double r) {
  return r * r *
         (-1. / 2 +
          r * (1. / 3 + r * (-1. / 4 + r * (1. / 5 + r * (-1. / 6 + r * (1. / 7 + r * (-1. / 8)))))));
}

// ln x as a sum, e ln 2 - ln c = high + low. The errors: of log_series, r^2 2^-52; of the sums that take it
// in, r^2/2 (1 + 2^-7) 2^-53 each; and what `low` and the rests of `high` add to both, which is below |high|
// 2^-85. All together less than r^2 2^-51 + |high| 2^-85.
inline DoubleDouble log_sum(double high, double low, double r) {
  const DoubleDouble head = quick_sum(high, r);
  return quick_sum(head.high, head.low + (low + log_series(r)));
}

double log_of_normal(double x, int shifted_by) {
  const LogArgument argument(std::bit_cast<std::uint64_t>(x));
  const LogPiece& piece = log_table[argument.piece];
  const double e = argument.exponent - shifted_by;
  const double r = reduced(piece.c, argument.z);
  const double high = e * log_of_two.high + piece.minus_log.high;
  const DoubleDouble sum = log_sum(high, e * log_of_two.low + piece.minus_log.low, r);
  const double error = r * r * 0x1p-51 + std::abs(high) * 0x1p-85;
  const double result = sum.high + (sum.low + error);
  if (result == sum.high + (sum.low - error)) return result;
  return exact_log(x * std::ldexp(1, -shifted_by), result);
}

}  // namespace

double log(double x) {
  if (x >= smallest_normal && x < infinity) return log_of_normal(x, 0);
  if (x > 0 && x < smallest_normal) return log_of_normal(x * 0x1p52, 52);
  if (x == 0) return -infinity;
  return x > 0 || std::isnan(x) ? x : std::numeric_limits<double>::quiet_NaN();
}

// --- Several at a time -----------------------------------------------------------------------------

namespace {

constexpr std::size_t at_a_time = 64;

// What log_sum takes, of several arguments.
struct Parts {
  std::array<double, at_a_time> z;
  std::array<double, at_a_time> c;
  std::array<double, at_a_time> high;
  std::array<double, at_a_time> low;
  std::array<std::int32_t, at_a_time> exponent;
};

void look_up(std::span<const double> x, Parts& parts) {
  for (std::size_t k = 0; k < x.size(); ++k) {
    const LogArgument argument(std::bit_cast<std::uint64_t>(x[k]));
    const LogPiece& piece = log_table[argument.piece];
    parts.z[k] = argument.z;
    parts.c[k] = piece.c;
    parts.high[k] = piece.minus_log.high;
    parts.low[k] = piece.minus_log.low;
    parts.exponent[k] = argument.exponent;
  }
}

// The logarithms that are certain; the others become NaN, and are counted. The error is the bound of log_sum
// for the largest r and exponent.
VARPRE_WIDE_VECTORS
std::int64_t certain_logs(std::span<const double> x, const Parts& parts, std::span<double> result) {
  constexpr double error = 0x1.01p-67;
  std::int64_t others = 0;
  for (std::size_t k = 0; k < x.size(); ++k) {
    const double e = parts.exponent[k];
    const double high = e * log_of_two.high + parts.high[k];
    const DoubleDouble sum =
        log_sum(high, e * log_of_two.low + parts.low[k], reduced(parts.c[k], parts.z[k]));
    const double upper = sum.high + (sum.low + error);
    const double lower = sum.high + (sum.low - error);
    const double argument = x[k];
    const bool certain = (upper == lower) & (argument >= smallest_normal) & (argument < infinity);
    result[k] = certain ? upper : std::numeric_limits<double>::quiet_NaN();
    others += certain ? 0 : 1;
  }
  return others;
}

}  // namespace

void log(std::span<const double> x, std::span<double> result) {
  Parts parts;  // NOLINT(cppcoreguidelines-pro-type-member-init)
  for (; !x.empty(); x = x.subspan(std::min(at_a_time, x.size()))) {
    const auto some = x.first(std::min(at_a_time, x.size()));
    look_up(some, parts);
    if (certain_logs(some, parts, result) > 0) {
      for (std::size_t k = 0; k < some.size(); ++k) {
        if (std::isnan(result[k])) result[k] = log(some[k]);
      }
    }
    result = result.subspan(some.size());
  }
}

}  // namespace varpre::math
