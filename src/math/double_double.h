#pragma once

#include <cfloat>

// Exact sums and products of doubles as pairs of doubles (T. J. Dekker, Numer. Math. 18 (1971) 224). They
// need arithmetic of doubles rounded to nearest, operation by operation.
namespace varpre::math {

static_assert(FLT_EVAL_METHOD == 0, "doubles must be computed with as doubles");
#ifdef __FAST_MATH__
#error "sums of doubles must be computed in the order written"
#endif

// high + low, |low| at most half a unit in the last place of `high`.
struct DoubleDouble {
  double high;
  double low;
};

// a + b, exactly, where a is 0 or has no smaller exponent than b.
inline DoubleDouble quick_sum(double a, double b) {
  const double sum = a + b;
  return {sum, b - (sum - a)};
}

// a to a multiple of `unit` (a power of two), for |a| < 2^51 unit. The rest, a less the result, is exact.
inline double rounded_to(double a, double unit) {
  const double shift = 0x1.8p52 * unit;
  return (a + shift) - shift;
}

// a b, exactly, for factors below 2^900 and a product whose last bits do not underflow.
inline DoubleDouble exact_product(double a, double b) {
  constexpr double splitter = 0x1p27 + 1;
  const auto split = [](double x) {
    const double scaled = splitter * x;
    const double high = scaled - (scaled - x);
    return DoubleDouble{high, x - high};
  };
  const DoubleDouble x = split(a);
  const DoubleDouble y = split(b);
  const double product = a * b;
  const double rest = ((x.high * y.high - product) + x.high * y.low + x.low * y.high) + x.low * y.low;
  return {product, rest};
}

}  // namespace varpre::math
