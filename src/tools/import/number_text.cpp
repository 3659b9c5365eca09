#include "tools/import/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <vector>

#include "textio/record/number_format.h"
#include "tools/import/rate_fits.h"

namespace varpre {
namespace {

constexpr int all_digits = 17;  // of a double

std::string edited(double value, std::chars_format format, int digits) {
  std::array<char, 512> buffer{};
  const auto result = digits < 0 ? std::to_chars(buffer.begin(), buffer.end(), value, format)
                                 : std::to_chars(buffer.begin(), buffer.end(), value, format, digits);
  return {buffer.begin(), result.ptr};
}

// "1.2E+05" from "1.2e+05", "1.0E+05" from "1e+05".
std::string with_point(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](char c) { return c == 'e' ? 'E' : c; });
  const std::size_t exponent = std::min(text.find('E'), text.size());
  if (text.find('.') == std::string::npos) text.insert(exponent, ".0");
  return text;
}

// The same value in fewer columns: no zeros that count for nothing, no plus sign, no zero before the point.
std::vector<std::string> shorter_forms(const std::string& text) {
  std::vector<std::string> forms{text};
  const auto then = [&](auto change) {
    std::string form = forms.back();
    change(form);
    if (form != forms.back()) forms.push_back(form);
  };
  then([](std::string& form) {
    const std::size_t exponent = form.find('E');
    if (exponent != std::string::npos && form[exponent + 2] == '0') form.erase(exponent + 2, 1);
  });
  then([](std::string& form) {
    const std::size_t plus = form.find('+');
    if (plus != std::string::npos) form.erase(plus, 1);
  });
  then([](std::string& form) {
    const std::size_t zero = form.find(".0E");
    if (zero != std::string::npos) form.erase(zero + 1, 1);
    if (form.ends_with(".0")) form.pop_back();
  });
  then([](std::string& form) {
    const std::size_t zero = form.find("0.");
    if ((zero == 0 && form.size() > 2) || (zero == 1 && form.front() == '-')) form.erase(zero, 1);
  });
  return forms;
}

// A text of so many significant digits (-1: as many as it takes) within the columns; empty when none fits.
std::string fitting(double value, int digits, std::size_t width) {
  const double size = std::abs(value);
  const bool plain = value == 0 || (size >= 1.0E-3 && size < 1.0E6);
  const int exponent = value == 0 ? 0 : static_cast<int>(std::floor(std::log10(size)));
  const int decimals = digits < 0 ? -1 : std::max(digits - 1 - exponent, 0);
  std::vector<std::string> texts;
  if (size < 1.0E15 && size >= 1.0E-6) texts.push_back(edited(value, std::chars_format::fixed, decimals));
  if (value == 0) texts.emplace_back("0.0");
  texts.insert(plain ? texts.end() : texts.begin(),
               edited(value, std::chars_format::scientific, digits < 0 ? -1 : digits - 1));
  for (const std::string& text : texts) {
    for (const std::string& form : shorter_forms(with_point(text))) {
      if (form.size() <= width) return form;
    }
  }
  return {};
}

}  // namespace

std::string number_text(double value, std::size_t width, LostDigits& lost) {
  std::string best = fitting(value, -1, width);
  for (int digits = all_digits; best.empty() && digits > 0; --digits) best = fitting(value, digits, width);
  const double read = read_free_real(best).value_or(0);
  constexpr int stored_digits = 5;
  const auto stored = [](double x) { return edited(x, std::chars_format::scientific, stored_digits - 1); };
  if (stored(value) != stored(read)) {
    ++lost.numbers;
    const double change = std::abs(read / value - 1);
    if (change > lost.largest) {
      lost.largest = change;
      lost.of_largest = lost.place;
      lost.text = message(with_point(stored(value)), " is ", with_point(stored(read)), " there");
    }
  }
  return std::string(width - std::min(best.size(), width), ' ') + best;
}

double value_in_columns(double value, std::size_t width) {
  LostDigits ignored;
  return read_real(number_text(value, width, ignored), {static_cast<int>(width), 0, 0}).value_or(0);
}

ArrheniusRate rate_in_columns(const ArrheniusRate& rate, std::size_t b_width, std::size_t E_width) {
  const RateOfTemperature meant = [&](double T) { return std::abs(rate_constant(rate, T)); };
  ArrheniusRate result = rate;
  const auto take = [&](const std::optional<FittedRate>& fit) {
    if (fit) result = {std::copysign(fit->rate.A, rate.A), fit->rate.b, fit->rate.E};
  };
  if (const double b = b_width == 0 ? rate.b : value_in_columns(rate.b, b_width); b != rate.b)
    take(fit_arrhenius(meant, b));
  if (const double E = E_width == 0 ? result.E : value_in_columns(result.E, E_width); E != result.E)
    take(fit_arrhenius(meant, result.b, E));
  return result;
}

}  // namespace varpre
