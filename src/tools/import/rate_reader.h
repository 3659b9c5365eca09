#pragma once

#include <array>
#include <optional>
#include <vector>

#include "tools/import/rate_laws.h"
#include "tools/import/yaml_value.h"

namespace varpre {

// Of a reaction, the sums of the orders in gas and in surface species, on which the unit of its rate depends:
// amount per time and volume, or area, over the concentrations.
struct RateOrder {
  double gas = 0;
  double surface = 0;
  bool on_surface = false;
};

// Read the rate of an entry, in cm, mol, s and kJ/mol. None after an error.
std::optional<ArrheniusRate> read_arrhenius(const Value& entry, const char* name, const RateOrder& order);
std::optional<StickingRate> read_sticking(const Value& entry);  // its coefficient
std::optional<std::vector<RatesAtPressure>> read_pressure_table(const Value& entry, const RateOrder& order);
std::optional<ChebyshevRate> read_chebyshev(const Value& entry, const RateOrder& order);
// a, T***, T*, T** of a falloff reaction, 0 where it has none of them.
std::optional<std::array<double, 4>> read_troe(const Value& entry);

}  // namespace varpre
