#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <string>

#include "textio/record/number_format.h"

// The quick way to a few digits against the exact conversion of the library, laid out anew.
namespace varpre {
namespace {

std::string library_text(double value, std::chars_format form, int digits) {
  std::array<char, 400> text;
  const char* const end =
      std::to_chars(text.data(), text.data() + text.size(), std::abs(value), form, digits).ptr;
  return std::string(std::signbit(value) ? "-" : "").append(static_cast<const char*>(text.data()), end);
}

std::string right_justified(const std::string& text, std::size_t width) {
  return text.size() > width ? std::string(width, '*') : std::string(width - text.size(), ' ') + text;
}

void expect_exponent(double value, int d) {
  const auto width = static_cast<std::size_t>(d + 7);
  std::string expected = library_text(value, std::chars_format::scientific, d);
  const std::size_t e = expected.find('e');
  expected[e] = 'E';
  if (expected.size() - e > 4) expected.erase(e, 1);
  if (d == 0) expected.insert(e, 1, '.');
  std::string field(width, '?');
  edit_exponent(field.data(), {static_cast<int>(width), d, 1}, value);
  ASSERT_EQ(field, right_justified(expected, width)) << std::hexfloat << value;
}

void expect_fixed(double value, int d) {
  constexpr std::size_t width = 28;
  std::string field(width, '?');
  edit_fixed(field.data(), {static_cast<int>(width), d, 0}, value);
  const std::string expected = library_text(value, std::chars_format::fixed, d) + (d == 0 ? "." : "");
  ASSERT_EQ(field, right_justified(expected, width)) << std::hexfloat << value;
}

void expect_all(double value) {
  const auto any = std::bit_cast<std::uint64_t>(value);
  expect_exponent(value, 4);
  expect_exponent(value, static_cast<int>(any % 9));
  if (std::abs(value) < 1e17) expect_fixed(value, static_cast<int>(any % 7));
}

void expect_all_beside(double value) {
  for (const double v : {value, std::nextafter(value, 0.0), std::nextafter(value, 1e308)}) expect_all(v);
}

TEST(QuickFormat, AgreesOnAnyBits) {
  std::mt19937_64 random(1);
  for (int i = 0; i < 200'000 && !HasFatalFailure(); ++i) {
    const auto value = std::bit_cast<double>(random());
    if (std::isfinite(value)) expect_all(value);
  }
}

TEST(QuickFormat, AgreesOnUsualMagnitudes) {
  std::mt19937_64 random(2);
  std::uniform_real_distribution<double> mantissa(-10, 10);
  for (int i = 0; i < 1'000'000 && !HasFatalFailure(); ++i) {
    expect_exponent(std::ldexp(mantissa(random), static_cast<int>(random() % 120) - 60), 4);
  }
  for (int i = 0; i < 300'000 && !HasFatalFailure(); ++i) {
    expect_all(mantissa(random) * static_cast<double>(random() % 1000));
  }
}

TEST(QuickFormat, AgreesBesideDecimalsAndHalfwayCases) {
  std::mt19937_64 random(3);
  for (int i = 0; i < 100'000 && !HasFatalFailure(); ++i) {
    const std::string text = std::to_string(random() % 1'000'000) + (i % 2 == 0 ? "5e" : "e") +
                             std::to_string(static_cast<int>(random() % 250) - 125);
    double value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    expect_all_beside(value);
  }
  for (int k = -320; k <= 307 && !HasFatalFailure(); ++k) {
    expect_all_beside(std::strtod(std::string("1e").append(std::to_string(k)).c_str(), nullptr));
  }
  for (int i = 0; i < 100'000 && !HasFatalFailure(); ++i) expect_all(i / 64.0);  // exact ties
  for (const double v : {0.0, -0.0, 12345.5, 12346.5, 99999.5, 9.99995, -0.04, 4.9e-324}) expect_all(v);
}

TEST(QuickFormat, IntegersAgreeInEveryWidth) {
  for (int width = 1; width <= 12; ++width) {
    for (int value = -1100; value <= 11000; ++value) {
      std::string field(static_cast<std::size_t>(width) + 1, '?');
      edit_integer(field.data(), width, value);
      ASSERT_EQ(field, right_justified(std::to_string(value), field.size() - 1) + '?');
    }
  }
}

}  // namespace
}  // namespace varpre
