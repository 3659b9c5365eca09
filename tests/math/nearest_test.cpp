#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <gtest/gtest.h>
#include <mpfr.h>
#include <random>

#include "math/elementary.h"
#include "math/log_table.h"

// Every result is the nearest double: the one that MPFR finds with as many bits as it takes.
namespace varpre::math {
namespace {

constexpr mpfr_prec_t precision = 53;

// A number of MPFR with the precision and the range of doubles.
class Reference {
 public:
  Reference() {
    mpfr_set_emin(-1073);
    mpfr_set_emax(1024);
    mpfr_init2(x_, precision);
    mpfr_init2(y_, precision);
  }
  ~Reference() {
    mpfr_clear(x_);
    mpfr_clear(y_);
  }
  Reference(const Reference&) = delete;
  Reference& operator=(const Reference&) = delete;

  double exp(double x) {
    mpfr_set_d(x_, x, MPFR_RNDN);
    return rounded(mpfr_exp(x_, x_, MPFR_RNDN));
  }
  double log(double x) {
    mpfr_set_d(x_, x, MPFR_RNDN);
    return rounded(mpfr_log(x_, x_, MPFR_RNDN));
  }
  double pow(double x, double y) {
    mpfr_set_d(x_, x, MPFR_RNDN);
    mpfr_set_d(y_, y, MPFR_RNDN);
    return rounded(mpfr_pow(x_, x_, y_, MPFR_RNDN));
  }

 private:
  double rounded(int direction) {
    mpfr_subnormalize(x_, direction, MPFR_RNDN);
    return mpfr_get_d(x_, MPFR_RNDN);
  }

  mpfr_t x_;
  mpfr_t y_;
};

class NearestDouble : public testing::Test {
 protected:
  void expect_exp(double x) { expect_same("exp", exp(x), reference_.exp(x), x, 0); }
  void expect_log(double x) { expect_same("log", log(x), reference_.log(x), x, 0); }
  void expect_pow(double x, double y) { expect_same("pow", pow(x, y), reference_.pow(x, y), x, y); }

  double uniform(double from, double to) { return std::uniform_real_distribution<double>(from, to)(random_); }
  double any() { return std::bit_cast<double>(random_()); }  // of any size, NaN and infinities too
  int below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
  double near_one() { return 1 + std::ldexp(uniform(-1, 1), -below(54)); }

  // How many random arguments each function gets: a long run says it in the environment.
  static long arguments() {
    const char* many = std::getenv("VARPRE_RANDOM_ARGUMENTS");
    return many != nullptr ? std::atol(many) : 100'000;
  }

 private:
  static void expect_same(const char* name, double value, double expected, double x, double y) {
    const bool both_nan = std::isnan(value) && std::isnan(expected);
    if (both_nan || std::bit_cast<std::uint64_t>(value) == std::bit_cast<std::uint64_t>(expected)) return;
    ADD_FAILURE() << std::hexfloat << name << " of " << x << ", " << y << " is " << value << ", not "
                  << expected;
  }

  Reference reference_;
  std::mt19937_64 random_{1};
};

TEST_F(NearestDouble, OfExpAtRandom) {
  for (long i = 0; i < arguments(); i += 5) {
    expect_exp(uniform(-746, 710));
    expect_exp(uniform(-746, -700));
    expect_exp(uniform(-1, 1));
    expect_exp(std::ldexp(uniform(-1, 1), -below(60)));
    expect_exp(any());
  }
}

TEST_F(NearestDouble, OfLogAtRandom) {
  for (long i = 0; i < arguments(); i += 4) {
    expect_log(std::abs(any()));
    expect_log(uniform(0, 2));
    expect_log(uniform(0, 1e5));
    expect_log(near_one());
  }
}

TEST_F(NearestDouble, OfPowAtRandom) {
  for (long i = 0; i < arguments(); i += 6) {
    expect_pow(std::exp(uniform(-10, 10)), uniform(-70, 70));
    expect_pow(any(), any());
    const double x = std::abs(any());
    expect_pow(x, uniform(-750, 710) / std::log(x));
    expect_pow(near_one(), std::ldexp(uniform(-4, 4), below(60)));
    expect_pow(uniform(1, 2), -1.0F / 6.0F);
    expect_pow(below(3000), below(160) / 4.0 - 20);  // many are doubles or in the middle between two
  }
}

// The closest to a middle between two doubles that any result comes, and others that are close (V. Lefevre
// and J.-M. Muller, Worst cases for correct rounding of the elementary functions in double precision, ARITH
// 15 (2001)).
TEST_F(NearestDouble, OfHardCases) {
  for (const double x : {0x1.9e9cbbfd6080bp-31, 0x1.fffffffffffffp-53, 0x1p-53, -0x1p-53, -0x1p-54,
                         0x1.83d4bcdebb3f4p+2, -0x1.12d31a20fb38bp+5}) {
    expect_exp(x);
    expect_exp(-x);
  }
  for (const double x : {0x1.62a88613629b6p+678, 0x1.ac50b409c8aeep+8, 0x1.de7cd6751029ap+16}) expect_log(x);
  for (int k = 30; k < 54; ++k) {
    for (const double x : {1 + std::ldexp(1.0, 1 - k), 1 - std::ldexp(1.0, -k)}) {
      expect_log(x);
      for (const double y : {0.5, -0.5, 1.5, 1 / 3.0, 2.0, 3.0, 1 + 0x1p-52, 0x1p-7}) expect_pow(x, y);
    }
  }
}

TEST_F(NearestDouble, NextToTheBordersOfTheTables) {
  const auto around = [](double x, auto expect) {
    for (const double next : {std::nextafter(x, -1e308), x, std::nextafter(x, 1e308)}) expect(next);
  };
  for (int i = 0; i <= log_pieces; ++i) {
    for (const int exponent : {-1060, -1022, -10, -1, 0, 1, 40, 1023}) {
      around(std::ldexp(begin_of_piece(i), exponent), [&](double x) {
        expect_log(x);
        expect_pow(x, 0.7);
      });
    }
  }
  const double step = std::log(2.0) / 256;
  for (int i = -257; i <= 257; ++i) around(i * step, [&](double x) { expect_exp(x); });
  for (const double x : {-746.0, -745.2, -709.0, -708.4, -707.0, 709.0, 709.8, 710.0}) {
    around(x, [&](double next) {
      expect_exp(next);
      for (const double base : {2.0, 10.0, 1.0001, 0.3}) expect_pow(base, next / std::log(base));
    });
  }
}

}  // namespace
}  // namespace varpre::math
