#pragma once

#include <functional>
#include <optional>

#include "tools/import/rate_laws.h"

// Laws of Arrhenius that stand for something else.
namespace varpre {

// Rates are fitted and compared between these temperatures, K.
inline constexpr double fit_low = 300;
inline constexpr double fit_high = 2500;

// In so many even steps of 1/T, from the low one on.
inline constexpr int fit_steps = 60;
double fit_temperature(int step);

using RateOfTemperature = std::function<double(double)>;  // of K, cm, mol, s

struct FittedRate {
  ArrheniusRate rate;
  double deviation = 0;    // the largest, as a fraction of what was fitted, 300 to 2500 K
  double temperature = 0;  // where, K
};

// The law that comes nearest in ln k, by least squares over 300 to 2500 K in even steps of 1/T; with `b` or
// `E`, that value is kept. What is found has six digits and E four decimals. None when the rate is not
// positive everywhere.
std::optional<FittedRate> fit_arrhenius(const RateOfTemperature& rate, std::optional<double> b = {},
                                        std::optional<double> E = {});

// The law with this exponent that goes through the rate at two temperatures, as the program makes its reverse
// rates. None when the rate is not positive there.
std::optional<FittedRate> through_two_points(const RateOfTemperature& rate, double b, double T1, double T2);

// How far a law is from a rate at most.
FittedRate compare_rates(const ArrheniusRate& law, const RateOfTemperature& rate);

}  // namespace varpre
