#include "tools/import/rate_fits.h"

#include <array>
#include <cmath>

#include "thermo/species.h"
#include "tools/import/units.h"

namespace varpre {
namespace {

// Solves the normal equations of the unknowns that are asked for, by elimination with pivots on the diagonal,
// which are positive; the others are 0.
std::array<double, 3> solve(std::array<std::array<double, 4>, 3> m, const std::array<bool, 3>& wanted) {
  std::array<double, 3> x{};
  for (std::size_t k = 0; k < 3; ++k) {
    if (!wanted[k]) continue;
    for (std::size_t i = 0; i < 3; ++i) {
      if (i == k || !wanted[i]) continue;
      const double factor = m[i][k] / m[k][k];
      for (std::size_t j = k; j < 4; ++j) m[i][j] -= factor * m[k][j];
    }
  }
  for (std::size_t k = 0; k < 3; ++k) {
    if (wanted[k]) x[k] = m[k][3] / m[k][k];
  }
  return x;
}

// ln k = ln A + b ln(T/T0) - E/R (1/T - 1/T0): about the middle, where the three differ most.
struct Basis {
  static constexpr double T0 = 800;
  static std::array<double, 3> at(double T) {
    return {1, std::log(T / T0), -1000 / gas_constant * (1 / T - 1 / T0)};
  }
  static ArrheniusRate law(double at_T0, double b, double E) {
    return {std::exp(at_T0 - b * std::log(T0) + 1000 * E / (gas_constant * T0)), b, E};
  }
};

// To four decimals.
double rounded(double value) {
  return std::round(value * 1.0E4) / 1.0E4;
}

ArrheniusRate in_few_digits(const ArrheniusRate& law) {
  constexpr int digits = 6;
  return {without_noise(law.A, digits), law.b, law.E};
}

}  // namespace

double fit_temperature(int step) {
  const double part = static_cast<double>(step) / fit_steps;
  return 1 / ((1 - part) / fit_low + part / fit_high);
}

FittedRate compare_rates(const ArrheniusRate& law, const RateOfTemperature& rate) {
  FittedRate fitted{law, 0, fit_low};
  for (int step = 0; step <= fit_steps; ++step) {
    const double T = fit_temperature(step);
    const double deviation = std::abs(rate_constant(law, T) / rate(T) - 1);
    if (deviation > fitted.deviation || std::isnan(deviation)) {
      fitted.deviation = deviation;
      fitted.temperature = T;
    }
  }
  return fitted;
}

std::optional<FittedRate> fit_arrhenius(const RateOfTemperature& rate, std::optional<double> b,
                                        std::optional<double> E) {
  std::array<std::array<double, 4>, 3> normal{};
  for (int step = 0; step <= fit_steps; ++step) {
    const double T = fit_temperature(step);
    const double k = rate(T);
    if (!(k > 0) || !std::isfinite(k)) return std::nullopt;
    const auto basis = Basis::at(T);
    const double rest = std::log(k) - b.value_or(0) * basis[1] - E.value_or(0) * basis[2];
    for (std::size_t i = 0; i < 3; ++i) {
      for (std::size_t j = 0; j < 3; ++j) normal[i][j] += basis[i] * basis[j];
      normal[i][3] += basis[i] * rest;
    }
  }
  const auto x = solve(normal, {true, !b, !E});
  if (b && E) return compare_rates(in_few_digits(Basis::law(x[0], *b, *E)), rate);
  return fit_arrhenius(rate, b.value_or(rounded(x[1])), E.value_or(rounded(x[2])));
}

std::optional<FittedRate> through_two_points(const RateOfTemperature& rate, double b, double T1, double T2) {
  const double X1 = rate(T1) / std::pow(T1, b);
  const double X2 = rate(T2) / std::pow(T2, b);
  if (!(X1 > 0) || !(X2 > 0) || !std::isfinite(X1) || !std::isfinite(X2)) return std::nullopt;
  const double E = rounded(gas_constant * std::log(X1 / X2) / (1 / T2 - 1 / T1) / 1000);
  return compare_rates(in_few_digits({X2 * std::exp(1000 * E / (gas_constant * T2)), b, E}), rate);
}

}  // namespace varpre
