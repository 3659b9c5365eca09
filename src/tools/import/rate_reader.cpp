#include "tools/import/rate_reader.h"

#include <algorithm>
#include <cmath>

namespace varpre {
namespace {

const Unit bar = *parse_unit("bar");
const Unit kelvin = *parse_unit("K");

const UnitSystem& solver_units() {
  static const UnitSystem units = [] {
    UnitSystem in_cm;
    in_cm.length = *parse_unit("cm");
    in_cm.quantity = *parse_unit("mol");
    return in_cm;
  }();
  return units;
}

Unit unit_of(const RateOrder& order, const UnitSystem& units) {
  const Unit in_volume = units.quantity / power(units.length, 3);
  const Unit on_area = units.quantity / power(units.length, 2);
  return (order.on_surface ? on_area : in_volume) / units.time / power(in_volume, order.gas) /
         power(on_area, order.surface);
}

// Reads A, b and Ea, in a list or by name; A without a unit where `order` is none.
std::optional<ArrheniusRate> read_parameters(const Value& entry, const Value& value, const RateOrder* order,
                                             bool with_pressure = false) {
  if (!value) return std::nullopt;
  const std::vector<Value> list = value.is_list() ? value.items() : std::vector<Value>();
  if (value.is_list() && list.size() != 3) {
    value.findings().error(value.place(), "A, b and Ea are due here");
    return std::nullopt;
  }
  if (!value.is_list()) value.check_names({"A", "b", "Ea", with_pressure ? "P" : "A"});
  const Value A = value.is_list() ? list[0] : value.require("A");
  const Value b = value.is_list() ? list[1] : value.require("b");
  const Value E = value.is_list() ? list[2] : value.require("Ea");
  const auto read_A = order == nullptr
                          ? A.number()
                          : A.quantity(unit_of(*order, value.units()), unit_of(*order, solver_units()));
  const auto read_b = b.number();
  const auto read_E = E.energy();
  if (!read_A || !read_b || !read_E) return std::nullopt;
  if (*read_A < 0 && !entry["negative-A"].boolean().value_or(false)) {
    value.findings().error(A.place(), "A is negative", "negative-A: true says that it is meant");
    return std::nullopt;
  }
  return ArrheniusRate{*read_A, *read_b, *read_E};
}

// Two limits, the first below the second and positive.
std::optional<std::pair<double, double>> read_limits(const Value& list, const Unit& usual,
                                                     const Unit& wanted) {
  const std::vector<Value> items = list.items();
  if (items.size() == 2) {
    const auto low = items[0].quantity(usual, wanted);
    const auto high = items[1].quantity(usual, wanted);
    if (!low || !high) return std::nullopt;
    if (0 < *low && *low < *high) return std::pair(*low, *high);
  }
  if (list) list.findings().error(list.place(), "two limits are due here, positive ones that rise");
  return std::nullopt;
}

}  // namespace

std::optional<ArrheniusRate> read_arrhenius(const Value& entry, const char* name, const RateOrder& order) {
  return read_parameters(entry, entry.require(name), &order);
}

std::optional<StickingRate> read_sticking(const Value& entry) {
  const Value value = entry["sticking-coefficient"];
  const auto coefficient = read_parameters(entry, value, nullptr);
  if (!coefficient) return std::nullopt;
  if (coefficient->b == 0 && coefficient->E == 0 && coefficient->A > 1) {
    value.findings().warning(value.place(), message("the sticking coefficient is ", coefficient->A),
                             "of the molecules that meet the surface no more than all can stick");
  }
  return StickingRate{*coefficient};
}

std::optional<std::vector<RatesAtPressure>> read_pressure_table(const Value& entry, const RateOrder& order) {
  const Value list = entry.require("rate-constants");
  std::vector<RatesAtPressure> table;
  for (const Value& item : list.items()) {
    const auto pressure = item.require("P").quantity(item.units().pressure, bar);
    const auto rate = read_parameters(entry, item, &order, true);
    if (!pressure || !rate) return std::nullopt;
    if (*pressure <= 0) {
      list.findings().error(item["P"].place(), "a pressure is greater than zero");
      return std::nullopt;
    }
    const auto row = std::find_if(table.begin(), table.end(),
                                  [&](const RatesAtPressure& one) { return one.pressure == *pressure; });
    if (row == table.end()) {
      table.push_back({*pressure, {*rate}});
    } else {
      row->rates.push_back(*rate);
    }
  }
  if (table.empty()) {
    if (list.is_list()) list.findings().error(list.place(), "rates of some pressures are due here");
    return std::nullopt;
  }
  std::sort(table.begin(), table.end(),
            [](const auto& first, const auto& second) { return first.pressure < second.pressure; });
  return table;
}

std::optional<ChebyshevRate> read_chebyshev(const Value& entry, const RateOrder& order) {
  const auto T = read_limits(entry.require("temperature-range"), entry.units().temperature, kelvin);
  const auto P = read_limits(entry.require("pressure-range"), entry.units().pressure, bar);
  const Value data = entry.require("data");
  if (!T || !P || !data) return std::nullopt;
  ChebyshevRate rate{T->first, T->second, P->first, P->second, 0, {}, 1};
  for (const Value& row : data.items()) {
    const std::vector<Value> items = row.items();
    if (rate.columns == 0) rate.columns = items.size();
    if (items.empty() || items.size() != rate.columns) {
      row.findings().error(row.place(), "rows of the same number of coefficients are due here");
      return std::nullopt;
    }
    for (const Value& item : items) {
      const auto coefficient = item.number();
      if (!coefficient) return std::nullopt;
      rate.coefficients.push_back(*coefficient);
    }
  }
  if (rate.columns == 0) {
    data.findings().error(data.place(), "rows of the same number of coefficients are due here");
    return std::nullopt;
  }
  rate.factor = converted(1, unit_of(order, entry.units()), unit_of(order, solver_units()));
  return rate;
}

std::optional<std::array<double, 4>> read_troe(const Value& entry) {
  const Value Troe = entry["Troe"];
  std::array<double, 4> parameters{};
  if (!Troe) return parameters;
  Troe.check_names({"A", "T3", "T1", "T2"});
  const Unit& usual = Troe.units().temperature;
  const std::array values{Troe.require("A").number(), Troe.require("T3").quantity(usual, kelvin),
                          Troe.require("T1").quantity(usual, kelvin),
                          Troe["T2"] ? Troe["T2"].quantity(usual, kelvin) : std::optional(0.0)};
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (!values[i]) return std::nullopt;
    parameters[i] = *values[i];
  }
  return parameters;
}

}  // namespace varpre
