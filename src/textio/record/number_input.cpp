#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "textio/record/number_format.h"
#include "textio/record/text.h"

namespace varpre {
namespace {

// A number in the grammar of a real field, blanks left out: mantissa digits, exponent of the last of them.
struct Scanned {
  bool negative = false;
  std::array<char, 512> digit;
  int count = 0;
  std::int64_t exponent = 0;
  bool has_point = false;
  bool has_exponent = false;
};

// Scans the field's characters without its blanks; false when one does not belong there.
bool scan(std::string_view field, Scanned& out) {
  std::array<char, 512> compact;
  std::size_t length = 0;
  if (field.size() > compact.size()) return false;
  for (const char c : field) {
    if (c != ' ') compact[length++] = c;
  }
  const char* at = compact.data();
  const char* const end = at + length;

  if (at < end && (*at == '+' || *at == '-')) out.negative = *at++ == '-';
  bool any_digit = false;
  for (; at < end && (is_digit(*at) || *at == '.'); ++at) {
    if (*at == '.') {
      if (out.has_point) return false;
      out.has_point = true;
      continue;
    }
    any_digit = true;
    if (out.count > 0 || *at != '0') out.digit[static_cast<std::size_t>(out.count++)] = *at;
    if (out.has_point) --out.exponent;
  }
  if (!any_digit) return false;
  if (at == end) return true;

  out.has_exponent = true;
  if (*at == 'E' || *at == 'D' || *at == 'e' || *at == 'd') {
    ++at;
  } else if (*at != '+' && *at != '-') {
    return false;
  }
  bool negative = false;
  if (at < end && (*at == '+' || *at == '-')) negative = *at++ == '-';
  if (at == end) return false;
  std::int64_t exponent = 0;
  for (; at < end; ++at) {
    if (!is_digit(*at)) return false;
    exponent = std::min(exponent * 10 + (*at - '0'), std::int64_t{100000});  // far beyond any double already
  }
  out.exponent += negative ? -exponent : exponent;
  return true;
}

// The double nearest to the scanned decimal; nothing on overflow, a signed zero on underflow.
std::optional<double> nearest_double(const Scanned& number) {
  double value = 0;
  if (number.count > 0) {
    std::array<char, 544> text;
    char* at = std::copy_n(number.digit.data(), number.count, text.data());
    *at++ = 'e';
    at = std::to_chars(at, text.data() + text.size(), number.exponent).ptr;
    const auto result = std::from_chars(text.data(), at, value);
    if (result.ec != std::errc() || !std::isfinite(value)) {
      if (number.count + number.exponent > 0) return std::nullopt;
      value = 0;
    }
  }
  return number.negative ? -value : value;
}

}  // namespace

std::optional<int> read_integer(std::string_view field) {
  bool negative = false;
  bool signed_field = false;
  bool any_digit = false;
  std::int64_t value = 0;
  for (const char c : field) {
    if (c == ' ') continue;
    if ((c == '+' || c == '-') && !any_digit && !signed_field) {
      signed_field = true;
      negative = c == '-';
    } else if (is_digit(c)) {
      any_digit = true;
      value = value * 10 + (c - '0');
      if (value > 2147483648) return std::nullopt;
    } else {
      return std::nullopt;
    }
  }
  if (signed_field && !any_digit) return std::nullopt;
  if (negative) value = -value;
  if (value > 2147483647) return std::nullopt;
  return static_cast<int>(value);
}

// No blanks inside, no sign but a minus, the whole field consumed.
std::optional<double> read_plain_real(std::string_view field, int scale) {
  if (scale != 0 && field.find('E') == std::string_view::npos) return std::nullopt;
  const std::size_t first = field.find_first_not_of(' ');
  if (first == std::string_view::npos) return 0.0;
  const char* const begin = field.data() + first;
  const char* const end = field.data() + trimmed(field).size();
  const char* digits = begin + (*begin == '-');
  if (digits == end || (!is_digit(*digits) && *digits != '.')) return std::nullopt;
  while (digits < end && is_digit(*digits)) ++digits;
  if (digits == end || *digits != '.') return std::nullopt;
  double value = 0;
  const auto result = std::from_chars(begin, end, value);
  if (result.ec != std::errc() || result.ptr != end || !std::isfinite(value)) return std::nullopt;
  return value;
}

std::optional<double> read_real(std::string_view field, const RealEdit& edit) {
  if (const auto value = read_plain_real(field, edit.scale)) return value;
  if (trimmed(field).empty()) return 0.0;
  Scanned number;
  if (!scan(field, number)) return std::nullopt;
  if (!number.has_point) number.exponent -= edit.digits;
  if (!number.has_exponent) number.exponent -= edit.scale;
  return nearest_double(number);
}

std::optional<double> read_free_real(std::string_view token) {
  Scanned number;
  if (token.find(' ') != std::string_view::npos || !scan(token, number)) return std::nullopt;
  return nearest_double(number);
}

}  // namespace varpre
