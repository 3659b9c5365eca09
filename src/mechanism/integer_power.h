#pragma once

#include <cstdlib>

namespace varpre {

// x^n by repeated squaring (x^3 = x (x x), x^6 = x^2 x^4); a negative exponent is the reciprocal of the
// positive one.
inline double integer_power(double x, int n) {
  double result = 1;
  for (unsigned left = static_cast<unsigned>(std::abs(n)); left > 0; left /= 2, x *= x) {
    if (left % 2 == 1) result *= x;
  }
  return n < 0 ? 1 / result : result;
}

}  // namespace varpre
