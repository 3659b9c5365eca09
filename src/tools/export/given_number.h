#pragma once

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace varpre {

// The number of fewest digits from which a stage makes `value`: `make(given) == value`. `near` is about that
// number, exact but for the rounding of a few operations; it is the answer where no number close to it will
// do.
template <class Make>
double given_number(double value, double near, Make make) {
  constexpr int all_digits = std::numeric_limits<double>::max_digits10;
  for (int digits = 1; digits <= all_digits; ++digits) {
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.begin(), text.end(), near, std::chars_format::scientific, digits - 1);
    double given = 0;
    std::from_chars(text.begin(), end.ptr, given);
    if (make(given) == value) return given;
  }
  double below = near;
  double above = near;
  constexpr int steps = 4;
  for (int k = 0; k < steps; ++k) {
    below = std::nextafter(below, -std::numeric_limits<double>::infinity());
    above = std::nextafter(above, std::numeric_limits<double>::infinity());
    for (const double given : {below, above}) {
      if (make(given) == value) return given;
    }
  }
  return near;
}

}  // namespace varpre
