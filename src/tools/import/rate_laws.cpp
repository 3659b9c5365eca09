#include "tools/import/rate_laws.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "thermo/species.h"

namespace varpre {
namespace {

double sum_of(const std::vector<ArrheniusRate>& rates, double T) {
  double k = 0;
  for (const ArrheniusRate& rate : rates) k += rate_constant(rate, T);
  return k;
}

double rate_constant(const std::vector<RatesAtPressure>& table, double T, double pressure) {
  const auto above = std::find_if(table.begin(), table.end(),
                                  [&](const RatesAtPressure& row) { return row.pressure > pressure; });
  if (above == table.begin()) return sum_of(table.front().rates, T);
  const RatesAtPressure& below = *(above - 1);
  const double k = sum_of(below.rates, T);
  if (above == table.end() || below.pressure == pressure) return k;
  const double part = std::log(pressure / below.pressure) / std::log(above->pressure / below.pressure);
  return k * std::pow(sum_of(above->rates, T) / k, part);
}

// sum c_i T_i(x)
template <class Coefficient>
double chebyshev_sum(std::size_t count, double x, Coefficient coefficient) {
  double sum = 0;
  double last = 1;
  double next = x;
  for (std::size_t i = 0; i < count; ++i) {
    sum += coefficient(i) * last;
    const double after = 2 * x * next - last;
    last = next;
    next = after;
  }
  return sum;
}

// Mean speed towards a wall, cm/s at 1 K: sqrt(R / (2 pi M)).
double speed_at_1_K(double molar_mass) {
  constexpr double erg = 1.0E7;  // per J
  return std::sqrt(erg * gas_constant / (2 * std::numbers::pi * molar_mass));
}

}  // namespace

double rate_constant(const ArrheniusRate& rate, double T) {
  return rate.A * std::pow(T, rate.b) * std::exp(-1000 * rate.E / (gas_constant * T));
}

double rate_constant(const ChebyshevRate& rate, double T, double pressure) {
  const double t = (2 / T - 1 / rate.low_T - 1 / rate.high_T) / (1 / rate.high_T - 1 / rate.low_T);
  const double low = std::log10(rate.low_P);
  const double high = std::log10(rate.high_P);
  const double p = (2 * std::log10(pressure) - low - high) / (high - low);
  const auto row = [&](std::size_t i) {
    return chebyshev_sum(rate.columns, p,
                         [&](std::size_t j) { return rate.coefficients[i * rate.columns + j]; });
  };
  return rate.factor * std::pow(10.0, chebyshev_sum(rate.coefficients.size() / rate.columns, t, row));
}

double rate_constant(const StickingRate& rate, double T) {
  double g = rate_constant(rate.coefficient, T);
  if (rate.Motz_Wise) g /= 1 - g / 2;
  return rate.factor * g * speed_at_1_K(rate.molar_mass) * std::sqrt(T) /
         std::pow(rate.site_density, rate.sites);
}

double rate_constant(const RateLaw& law, double T, double pressure) {
  if (law.sticking) return rate_constant(*law.sticking, T);
  if (law.chebyshev) return rate_constant(*law.chebyshev, T, pressure);
  if (!law.table.empty()) return rate_constant(law.table, T, pressure);
  return rate_constant(law.arrhenius, T);
}

void RateLaw::scale(double factor) {
  arrhenius.A *= factor;
  for (RatesAtPressure& row : table) {
    for (ArrheniusRate& rate : row.rates) rate.A *= factor;
  }
  if (chebyshev) chebyshev->factor *= factor;
  if (sticking) sticking->factor *= factor;
}

ArrheniusRate as_arrhenius(const StickingRate& rate) {
  const auto& [A, b, E] = rate.coefficient;
  return {rate.factor * A * speed_at_1_K(rate.molar_mass) / std::pow(rate.site_density, rate.sites), b + 0.5,
          E};
}

}  // namespace varpre
