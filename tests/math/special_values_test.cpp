#include <bit>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <vector>

#include "math/elementary.h"

namespace varpre::math {
namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double largest = std::numeric_limits<double>::max();
constexpr double smallest = std::numeric_limits<double>::denorm_min();

// Signs of zeros count, of NaNs they do not.
void expect_same(double value, double expected, double x, double y) {
  const bool both_nan = value != value && expected != expected;
  EXPECT_TRUE(both_nan || std::bit_cast<std::uint64_t>(value) == std::bit_cast<std::uint64_t>(expected))
      << value << " for " << expected << " at " << x << ", " << y;
}

struct Case {
  double x;
  double y;
  double expected;
};

TEST(SpecialValues, OfExp) {
  for (const auto& [x, unused, expected] : {Case{0, 0, 1},
                                            {-0.0, 0, 1},
                                            {inf, 0, inf},
                                            {-inf, 0, 0},
                                            {nan, 0, nan},
                                            {largest, 0, inf},
                                            {-largest, 0, 0},
                                            {smallest, 0, 1},
                                            {0x1.62e42fefa39efp+9, 0, 0x1.fffffffffff2ap+1023},
                                            {0x1.62e42fefa39fp+9, 0, inf},
                                            {-0x1.74910d52d3051p+9, 0, smallest},
                                            {-0x1.74910d52d3052p+9, 0, 0}}) {
    expect_same(exp(x), expected, x, unused);
  }
}

TEST(SpecialValues, OfLog) {
  for (const auto& [x, unused, expected] : {Case{1, 0, 0},
                                            {0, 0, -inf},
                                            {-0.0, 0, -inf},
                                            {-1, 0, nan},
                                            {-smallest, 0, nan},
                                            {-inf, 0, nan},
                                            {inf, 0, inf},
                                            {nan, 0, nan},
                                            {smallest, 0, -0x1.74385446d71c3p+9},
                                            {largest, 0, 0x1.62e42fefa39efp+9}}) {
    expect_same(log(x), expected, x, unused);
  }
}

TEST(SpecialValues, OfPow) {
  for (const auto& [x, y, expected] : {Case{nan, 0, 1},
                                       {1, nan, 1},
                                       {nan, 1, nan},
                                       {2, nan, nan},
                                       {nan, nan, nan},
                                       // zeros
                                       {0, -3, inf},
                                       {-0.0, -3, -inf},
                                       {-0.0, -2, inf},
                                       {-0.0, -0.5, inf},
                                       {-0.0, -inf, inf},
                                       {0, 3, 0},
                                       {-0.0, 3, -0.0},
                                       {-0.0, 2, 0},
                                       {-0.0, 0.5, 0},
                                       {-0.0, 0x1p53, 0},
                                       {-0.0, 0x1p53 - 1, -0.0},
                                       // infinities
                                       {-1, inf, 1},
                                       {-1, -inf, 1},
                                       {0.5, -inf, inf},
                                       {-0.5, inf, 0},
                                       {-2, inf, inf},
                                       {2, -inf, 0},
                                       {-inf, -3, -0.0},
                                       {-inf, -2, 0},
                                       {-inf, 3, -inf},
                                       {-inf, 2, inf},
                                       {-inf, 0.5, inf},
                                       {inf, -smallest, 0},
                                       {inf, smallest, inf},
                                       {-inf, -inf, 0},
                                       {-inf, inf, inf},
                                       // signs
                                       {-2, 0.5, nan},
                                       {-smallest, 1.5, nan},
                                       {-2, 3, -8},
                                       {-2, 2, 4},
                                       {-2, -1, -0.5},
                                       {-1, 0x1p53 + 2, 1},
                                       {-1, 0x1p53 - 1, -1},
                                       {-largest, 3, -inf},
                                       {-largest, -3, -0.0},
                                       // the ends of the range
                                       {2, 1024, inf},
                                       {2, 1023, 0x1p1023},
                                       {2, -1074, smallest},
                                       {2, -1075, 0},
                                       {0.5, 1074, smallest},
                                       {largest, largest, inf},
                                       {largest, -largest, 0},
                                       {smallest, largest, 0},
                                       {0.5, -largest, inf},
                                       {largest, smallest, 1},
                                       {smallest, smallest, 1},
                                       {smallest, 1, smallest},
                                       {1 + 0x1p-52, 0x1p62, inf},
                                       {1 - 0x1p-53, 0x1p63, 0},
                                       {1 - 0x1p-53, 0x1p64, 0},
                                       {1 - 0x1p-53, -0x1p64, inf},
                                       {1 + 0x1p-52, -0x1p63, 0},
                                       // middles between two doubles go to the even one
                                       {0x1p26 + 1, 2, 0x1p52 + 0x1p27 + 1},
                                       {0x1p27 + 1, 2, 0x1p54 + 0x1p28},
                                       {0x1p27 + 3, 2, 0x1p54 + 0x1.8p29 + 8},
                                       {3, 33, 5559060566555523},
                                       {3, 34, 16677181699666568},
                                       {0x1.8p-537, 2, 2 * smallest},
                                       {0x1.8p-538, 2, smallest},
                                       {9, 16.5, 5559060566555523},
                                       {81, 8.5, 16677181699666568},
                                       {0x1.4p-537, 2, 2 * smallest}}) {
    expect_same(pow(x, y), expected, x, y);
  }
}

TEST(SeveralLogarithms, AreThoseOfSingleNumbers) {
  std::mt19937_64 random(3);
  for (std::size_t count = 0; count < 200; ++count) {
    std::vector<double> x(count);
    for (double& value : x) {
      const std::uint64_t bits = random();
      value =
          std::bit_cast<double>(bits % 5 == 0 ? bits : 0x3FF0000000000000 + bits % 0x0100000000000000 * 2);
    }
    std::vector<double> result(count);
    log(x, result);
    for (std::size_t k = 0; k < count; ++k) expect_same(result[k], log(x[k]), x[k], 0);
  }
}

}  // namespace
}  // namespace varpre::math
