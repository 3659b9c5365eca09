#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <iterator>
#include <optional>
#include <random>
#include <string>

#include "textio/record/number_format.h"

// Values of all magnitudes, written and read back; the fields are checked against the exact decimal digits.
namespace varpre {
namespace {

// |value| x 10^places rounded to a whole number, ties to the even one; no digits for 0.
std::string rounded(double value, int places) {
  char text[1500];
  std::snprintf(text, sizeof text, "%.1074f", std::abs(value));  // every double ends before that place
  std::string digits = std::string(10, '0') + text;
  const std::size_t point = digits.find('.');
  digits.erase(point, 1);
  const auto keep = static_cast<std::size_t>(static_cast<int>(point) + places);
  std::string half(digits.size() - keep, '0');
  half.front() = '5';
  const int excess = digits.compare(keep, std::string::npos, half);
  const bool up = excess > 0 || (excess == 0 && (digits[keep - 1] - '0') % 2 == 1);
  digits.resize(keep);
  if (up) {
    while (digits.back() == '9') digits.pop_back();
    ++digits.back();
    digits.resize(keep, '0');
  }
  return digits.erase(0, std::min(digits.find_first_not_of('0'), keep));
}

// Sign, digits before the point and the rest in their columns. A zero before the point is the first to go.
std::string in_columns(int width, double value, std::string number) {
  const auto columns = static_cast<std::size_t>(width);
  const std::string sign = std::signbit(value) ? "-" : "";
  if (number.starts_with("0.") && number.size() > 2 && sign.size() + number.size() > columns)
    number.erase(0, 1);
  number.insert(0, sign);
  return number.size() > columns ? std::string(columns, '*')
                                 : std::string(columns - number.size(), ' ') + number;
}

std::string expected_fixed(const RealEdit& edit, double value) {
  std::string digits = rounded(value, edit.digits + edit.scale);
  const auto decimals = static_cast<std::size_t>(edit.digits);
  if (digits.size() <= decimals) digits.insert(0, decimals + 1 - digits.size(), '0');
  return in_columns(edit.width, value, digits.insert(digits.size() - decimals, 1, '.'));
}

std::string expected_exponent(const RealEdit& edit, double value) {
  char text[64];
  const int count = edit.digits + (edit.scale > 0 ? 1 : 0);
  std::snprintf(text, sizeof text, "%.*e", count - 1, std::abs(value));
  std::string digits = text;
  const int exponent = value == 0 ? 0 : std::atoi(text + digits.find('e') + 1) + 1 - edit.scale;
  digits.resize(digits.find('e'));
  if (count > 1) digits.erase(1, 1);
  digits.insert(static_cast<std::size_t>(edit.scale), edit.scale > 0 ? "." : "0.");
  std::snprintf(text, sizeof text, std::abs(exponent) < 100 ? "E%+03d" : "%+04d", exponent);
  return in_columns(edit.width, value, digits + text);
}

// The nearest double to the decimal in a field. A scale factor moves the point of a field without exponent.
double nearest(std::string field, int scale) {
  const std::size_t sign = field.find_last_of("+-");
  if (sign == std::string::npos || field.find_first_not_of(' ') == sign) {
    field.append(1, 'e').append(std::to_string(-scale));
  } else if (field[sign - 1] != 'E') {
    field.insert(sign, 1, 'e');
  }
  return std::strtod(field.c_str(), nullptr);
}

void expect_round_trip(decltype(edit_fixed)* write, const RealEdit& edit, double value) {
  SCOPED_TRACE(testing::Message() << edit.scale << "P " << edit.width << "." << edit.digits << " of "
                                  << std::hexfloat << value);
  std::string field(static_cast<std::size_t>(edit.width) + 1, '|');  // the last one shall stay
  write(field.data(), edit, value);
  ASSERT_EQ(field, (write == edit_fixed ? expected_fixed : expected_exponent)(edit, value) + "|");
  field.pop_back();

  const std::optional<double> read_back = read_real(field, edit);
  const double expected = nearest(field, edit.scale);
  const bool readable = field.front() != '*' && std::isfinite(expected);
  ASSERT_EQ(read_back.has_value(), readable) << field;
  if (!readable) return;
  EXPECT_EQ(std::bit_cast<std::uint64_t>(*read_back), std::bit_cast<std::uint64_t>(expected)) << field;
  if (edit.width > 20) return;  // more digits than name one double
  std::string again = field;
  write(again.data(), edit, *read_back);
  EXPECT_EQ(again, field);
}

int random_integer(std::mt19937_64& random, int least, int most) {
  return std::uniform_int_distribution(least, most)(random);
}

// Short decimals and their neighbours, which are as close to ties as can be, ties, and any finite bit
// pattern.
double random_value(std::mt19937_64& random) {
  const int n = random_integer(random, -999999, 999999);
  const double decimal = n * std::pow(10.0, random_integer(random, -20, 20));
  const auto pattern = std::bit_cast<double>(random());
  const double values[] = {decimal,
                           std::nextafter(decimal, 0),
                           std::nextafter(decimal, 1e300),
                           n * 50.0,
                           n * std::pow(2.0, random_integer(random, -30, 10)),
                           std::isfinite(pattern) ? pattern : 0.0};
  return values[random() % std::size(values)];
}

TEST(RoundTrip, WrittenCorrectlyRoundedAndReadBack) {
  constexpr RealEdit exponent_forms[] = {{11, 4, 1}, {20, 13, 1}, {11, 4, 0}, {9, 2, 3}};
  constexpr RealEdit fixed_forms[] = {{12, 4, 0}, {10, 1, -3}};
  std::mt19937_64 random(1);
  for (int i = 0; i < 8000 && !HasFailure(); ++i) {
    const double value = random_value(random);
    for (const RealEdit& edit : exponent_forms) expect_round_trip(edit_exponent, edit, value);
    for (const RealEdit& edit : fixed_forms) expect_round_trip(edit_fixed, edit, value);

    const int width = random_integer(random, 1, 40);
    const int digits = random_integer(random, 1, 20);
    expect_round_trip(edit_fixed, {width, digits - 1, random_integer(random, -6, 6)}, value);
    expect_round_trip(edit_exponent, {width, digits, random_integer(random, 0, std::min(digits + 1, 6))},
                      value);
  }
}

}  // namespace
}  // namespace varpre
