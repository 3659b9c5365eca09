#pragma once

#include <optional>
#include <vector>

namespace varpre {

// The molar gas constant. Activation energies keep E/R: one in J/mol or cal/mol is multiplied by the ratio of
// the solver's constant to this one, one in K by the solver's.
inline constexpr double molar_gas_constant = 8.31446261815324;  // J/(mol K)

// k = A T^b exp(-E/RT) with the gas constant of the solver.
struct ArrheniusRate {
  double A = 0;  // cm, mol, s
  double b = 0;
  double E = 0;  // kJ/mol
};

// Rates of a pressure, which add up.
struct RatesAtPressure {
  double pressure = 0;  // bar
  std::vector<ArrheniusRate> rates;
};

// log10 k is a polynomial in Chebyshev polynomials of a reduced temperature, linear in 1/T, and a reduced
// pressure, linear in log10 P, both from -1 to 1 between their limits.
struct ChebyshevRate {
  double low_T = 0;  // K
  double high_T = 0;
  double low_P = 0;  // bar
  double high_P = 0;
  std::size_t columns = 0;           // of powers of the pressure
  std::vector<double> coefficients;  // row by row, one row for each power of the temperature
  double factor = 1;                 // that makes it cm, mol, s
};

// A molecule of the gas sticks to the surface:
//   k = g sqrt(RT / 2 pi M) / (site density)^sites, g = A T^b exp(-E/RT), with `Motz_Wise` g/(1 - g/2).
struct StickingRate {
  ArrheniusRate coefficient;
  bool Motz_Wise = false;
  double factor = 1;        // of k
  double molar_mass = 0;    // of the molecule, g/mol
  double sites = 0;         // order of the reaction in surface species
  double site_density = 0;  // mol/cm2
};

// A rate constant as a file gives it. One of the four.
struct RateLaw {
  ArrheniusRate arrhenius;
  std::vector<RatesAtPressure>
      table;  // pressures rise; log k is linear in log P between them, constant outside
  std::optional<ChebyshevRate> chebyshev;
  std::optional<StickingRate> sticking;

  bool is_arrhenius() const { return table.empty() && !chebyshev && !sticking; }
  bool depends_on_pressure() const { return table.size() > 1 || (chebyshev && chebyshev->columns > 1); }
  // Multiplies the rate.
  void scale(double factor);
};

// The rate constant at a temperature, K, and a pressure, bar, in cm, mol, s.
double rate_constant(const ArrheniusRate& rate, double T);
double rate_constant(const ChebyshevRate& rate, double T, double pressure);
double rate_constant(const StickingRate& rate, double T);
double rate_constant(const RateLaw& law, double T, double pressure);

// Without the correction of Motz and Wise the law of a sticking molecule is one of Arrhenius.
ArrheniusRate as_arrhenius(const StickingRate& rate);

}  // namespace varpre
