#pragma once

#include <array>
#include <vector>

namespace varpre {

// cp/R = sum of a_k T^k with k from -2 to 4 within some temperatures; h/RT and s/R follow with a constant
// each. Polynomials of seven or nine coefficients, those of Shomate and heat capacities that are constant are
// all of this form.
struct ThermoRange {
  double low = 0;  // K
  double high = 0;
  std::array<double, 7> a{};  // of T^-2 to T^4
  double h = 0;               // K
  double s = 0;
};

struct ThermoRanges {
  std::vector<ThermoRange> ranges;      // one after the other
  double reference_pressure = 1.01325;  // bar

  // Whether these are polynomials of seven coefficients in one or two ranges.
  bool are_of_seven_coefficients() const;
  // Sets the range from a1 to a7, T^0 to T^4 and the constants.
  void add(double low, double high, const std::array<double, 7>& a);
};

// cp/R, h/RT and s/R at the reference pressure.
struct ThermoValues {
  double cp = 0;
  double h = 0;
  double s = 0;
};
ThermoValues evaluate(const ThermoRange& range, double T);
ThermoValues evaluate(const ThermoRanges& thermo, double T);
ThermoValues evaluate(const std::array<double, 7>& a, double T);

// Two ranges of seven coefficients that come nearest in cp, by least squares; cp, h and s are continuous at
// the switch, h and s exact at 298.15 K or, where that is outside, the nearest limit.
struct FittedThermo {
  std::array<double, 3> limits{};  // lowest, highest and switch temperature, K
  std::array<double, 7> lower{};
  std::array<double, 7> upper{};
  std::array<double, 3> deviation{};    // of cp, h and s, the largest: fractions, h in RT
  std::array<double, 3> temperature{};  // where, K
};
FittedThermo fit_seven_coefficients(const ThermoRanges& thermo);

}  // namespace varpre
