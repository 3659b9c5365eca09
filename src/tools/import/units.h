#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace varpre {

// Powers of mass, length, time, temperature, current and amount of substance.
using Dimensions = std::array<double, 6>;

// A unit: `significand` times 10^`decades` of the SI unit of its dimensions (kg, m, s, K, A, mol). Kept
// apart, so that conversions by powers of ten are exact.
struct Unit {
  long double significand = 1;
  double decades = 0;
  Dimensions dimensions{};

  friend Unit operator*(const Unit& a, const Unit& b);
  friend Unit operator/(const Unit& a, const Unit& b);
};
Unit power(const Unit& unit, double exponent);

// A calculated value to the fifteen digits that hold, 26.19184 for 26.191840000000003, or to fewer.
double without_noise(double value, int digits = 15);

// The value in other units of the same dimensions.
double converted(long double value, const Unit& from, const Unit& to);

// A unit as it is written, "cm^3/mol/s", "kcal/mol", "1/s"; none when it is not understood. Temperatures in
// C are none: they have another zero.
std::optional<Unit> parse_unit(std::string_view text);

// A number, of any decimals; none when it is not a finite one.
std::optional<long double> parse_number(std::string_view text);

// The units of values that are written without. Those of the format where no `units` say otherwise.
struct UnitSystem {
  UnitSystem();

  Unit mass;
  Unit length;
  Unit time;
  Unit temperature;
  Unit current;
  Unit quantity;
  Unit pressure;
  Unit energy;
  Unit activation_energy;
  bool activation_energy_given = false;  // else it follows energy and quantity

  // The unit that a `units` mapping names so; none for another name.
  Unit* find(std::string_view name);
};

// An activation energy in kJ/mol of the solver: what stays as it is is E/R, of one in kJ or kcal per mole, in
// eV of a single molecule or in K alike; it has seven digits. None for a unit that is no energy.
std::optional<double> activation_energy(long double value, const Unit& unit);

}  // namespace varpre
