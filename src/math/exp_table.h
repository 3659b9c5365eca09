#pragma once

#include <array>
#include <cstdint>

#include "math/fixed_point.h"
#include "math/log_table.h"

// What the exponential function knows beforehand: x = k ln(2)/128 + r, e^x = 2^(k/128) e^r (P. T. P. Tang,
// ACM Trans. Math. Software 15 (1989) 144).
namespace varpre::math {

inline constexpr int exp_steps = 128;

// 2^(j/128) = high + low, `high` of 26 bits.
struct ExpStep {
  double high;
  double low;
};

inline constexpr std::array<ExpStep, exp_steps> exp_table = [] {
  constexpr int places = 25;
  const Fixed<2> step = exp_of_fraction(ln2<2> / exp_steps);
  Fixed<2> power = Fixed<2>::integer(1);
  std::array<ExpStep, exp_steps> table{};
  for (ExpStep& entry : table) {
    const std::uint64_t units = power.word[2] << places | power.word[1] >> (64 - places);
    const std::uint64_t rest = power.word[1] << places | power.word[0] >> (64 - places);
    entry = {static_cast<double>(units) * 0x1p-25, static_cast<double>(rest) * 0x1p-89};
    power = power * step;
  }
  return table;
}();

inline constexpr LogValue log_of_step = log_value(ln2<2> / exp_steps);

}  // namespace varpre::math
