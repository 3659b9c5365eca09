#include "tools/import/mixtures.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "tools/import/composition.h"
#include "tools/import/short_names.h"
#include "tools/import/units.h"

namespace varpre {
namespace {

[[noreturn]] void refuse(const std::string& option, const std::string& reason) {
  throw std::runtime_error(message(option, ": ", reason));
}

struct Quantity {
  long double value;
  Unit unit;
};

// "300 K", "1atm".
std::optional<Quantity> parse_quantity(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  const std::size_t end = std::min(text.find_first_not_of("0123456789.+-eE"), text.size());
  const auto value = parse_number(text.substr(0, end));
  std::string_view rest = text.substr(end);
  rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
  const auto unit = parse_unit(rest);
  if (!value || !(*value > 0) || !unit) return std::nullopt;
  return Quantity{*value, *unit};
}

const ImportedSpecies& find(const ImportedMechanism& mechanism, const std::string& option,
                            const std::string& name) {
  for (const auto* all : {&mechanism.gas, &mechanism.surface}) {
    for (const ImportedSpecies& species : *all) {
      if (in_capitals(species.name) == in_capitals(name) || trimmed(species.short_name.view()) == name)
        return species;
    }
  }
  refuse(option, message("there is no species '", name, "' in the mechanism"));
}

// Amounts by the names of the mechanism; a name alone counts once.
std::map<std::string, double> read_amounts(const ImportedMechanism& mechanism, const std::string& option,
                                           const std::string& text) {
  auto composition = parse_composition(text);
  if (!composition && text.find_first_of(": ,") == std::string::npos)
    composition = parse_composition(text + ":1");
  if (!composition) refuse(option, "names and amounts are due, like \"O2:1, N2:3.76\"");
  std::map<std::string, double> amounts;
  for (const auto& [name, amount] : *composition) {
    if (amount < 0) refuse(option, message("the amount of ", name, " is negative"));
    amounts[find(mechanism, option, name).name] += amount;
  }
  return amounts;
}

// Adds what the state has at the surface, which a mixture of the gas does not name.
void set_amounts(ImportedState& state, const std::map<std::string, double>& amounts,
                 const ImportedMechanism& mechanism) {
  const auto at_surface = [&](const auto& amount) {
    return std::any_of(mechanism.surface.begin(), mechanism.surface.end(),
                       [&](const ImportedSpecies& species) { return species.name == amount.first; });
  };
  if (std::none_of(amounts.begin(), amounts.end(), at_surface)) {
    std::erase_if(state.amounts, [&](const auto& amount) { return !at_surface(amount); });
  } else {
    state.amounts.clear();
  }
  for (const auto& [name, amount] : amounts) state.amounts[name] = amount;
}

void read_side(const ImportedMechanism& mechanism, const std::string& option, std::string_view text,
               ImportedState& state) {
  const std::size_t end = std::min(text.find(';'), text.size());
  set_amounts(state, read_amounts(mechanism, option, std::string(text.substr(0, end))), mechanism);
  const Unit kelvin = *parse_unit("K");
  const Unit bar = *parse_unit("bar");
  for (text.remove_prefix(end); !text.empty();) {
    text.remove_prefix(1);
    const std::size_t next = std::min(text.find(';'), text.size());
    const auto quantity = parse_quantity(text.substr(0, next));
    text.remove_prefix(next);
    if (quantity && quantity->unit.dimensions == kelvin.dimensions) {
      state.temperature = converted(quantity->value, quantity->unit, kelvin);
      state.enthalpy.reset();
    } else if (quantity && quantity->unit.dimensions == bar.dimensions) {
      state.pressure = converted(quantity->value, quantity->unit, bar);
    } else {
      refuse(option, "behind the amounts a temperature and a pressure are due, like \"; 300 K; 1 atm\"");
    }
  }
}

// The moles of O2 that a mixture takes to burn to CO2, H2O and SO2; negative where it has them to give.
double oxygen_demand(const ImportedMechanism& mechanism, const std::map<std::string, double>& amounts) {
  double demand = 0;
  for (const auto& [name, amount] : amounts) {
    for (const auto& [element, count] : find(mechanism, "", name).atoms) {
      const double each = element == "C" || element == "S" ? 1
                          : element == "H"                 ? 0.25
                          : element == "O"                 ? -0.5
                                                           : 0;
      demand += amount * count * each;
    }
  }
  return demand;
}

std::map<std::string, double> mixed(const ImportedMechanism& mechanism, const GivenMixtures& given,
                                    const std::map<std::string, double>& fuel,
                                    const std::map<std::string, double>& oxidizer) {
  const auto phi = parse_number(given.phi.empty() ? "1" : given.phi);
  if (!phi || !(*phi > 0)) refuse("--phi", "a number greater than zero is due");
  const double demand = oxygen_demand(mechanism, fuel);
  const double supply = -oxygen_demand(mechanism, oxidizer);
  if (!(demand > 0)) refuse("--fuel", "this does not burn");
  if (!(supply > 0)) refuse("--oxidizer", "this has no oxygen to give");
  std::map<std::string, double> amounts;
  for (const auto& [name, amount] : fuel) amounts[name] += amount * static_cast<double>(*phi);
  for (const auto& [name, amount] : oxidizer) amounts[name] += amount * demand / supply;
  return amounts;
}

}  // namespace

double read_pressure(const std::string& option, const std::string& text) {
  const Unit bar = *parse_unit("bar");
  const auto quantity = parse_quantity(text);
  if (!quantity || quantity->unit.dimensions != bar.dimensions)
    refuse(option, "a pressure with its unit is due, like \"1 bar\"");
  return converted(quantity->value, quantity->unit, bar);
}

std::array<ImportedState, 2> mixtures_of(const ImportedMechanism& mechanism, const GivenMixtures& given,
                                         bool apart) {
  std::array<ImportedState, 2> sides{mechanism.state, mechanism.state};
  if (given.fuel.empty() != given.oxidizer.empty()) refuse("--fuel", "this and --oxidizer belong together");
  if (given.fuel.empty() && !given.phi.empty()) refuse("--phi", "this needs --fuel and --oxidizer");
  if (!given.fuel.empty()) {
    const auto fuel = read_amounts(mechanism, "--fuel", given.fuel);
    const auto oxidizer = read_amounts(mechanism, "--oxidizer", given.oxidizer);
    if (apart && !given.phi.empty()) refuse("--phi", "fuel and oxidizer stand apart in a counterflow");
    const auto mixture = apart ? fuel : mixed(mechanism, given, fuel, oxidizer);
    set_amounts(sides[0], mixture, mechanism);
    set_amounts(sides[1], apart ? oxidizer : mixture, mechanism);
  }
  if (!given.left.empty()) read_side(mechanism, "--left", given.left, sides[0]);
  if (!given.right.empty()) read_side(mechanism, "--right", given.right, sides[1]);
  return sides;
}

}  // namespace varpre
