#include "tools/import/state_reader.h"

#include <algorithm>

#include "tools/import/composition.h"

namespace varpre {
namespace {

// The first of some members that mean the same.
Value first_of(const Value& state, std::initializer_list<const char*> names) {
  for (const char* const name : names) {
    if (Value value = state[name]) return value;
  }
  return {};
}

const ImportedSpecies* find(const std::vector<ImportedSpecies>& all, const std::string& name) {
  const auto found =
      std::find_if(all.begin(), all.end(), [&](const ImportedSpecies& s) { return s.name == name; });
  return found == all.end() ? nullptr : &*found;
}

struct Amount {
  std::string name;
  Place place;
  std::optional<double> value;
};

// A mapping, or a text like "H2:2, O2:1".
std::vector<Amount> read_amounts(const Value& composition) {
  std::vector<Amount> amounts;
  if (!composition.is_scalar()) {
    for (const auto& [name, place, value] : composition.members())
      amounts.push_back({name, place, value.number()});
    return amounts;
  }
  const auto parsed = parse_composition(composition.text());
  if (!parsed)
    composition.findings().error(composition.place(), "names and amounts are due here, H2:2, O2:1");
  for (const auto& [name, amount] : parsed.value_or(Composition()))
    amounts.push_back({name, composition.place(), amount});
  return amounts;
}

// Adds the amounts of a composition; those of species that were not taken are left out, with a warning.
void read_composition(const Value& composition, const std::vector<ImportedSpecies>& all, bool by_mass,
                      Import& import) {
  ImportedState& state = import.mechanism.state;
  for (const auto& [given, place, amount] : read_amounts(composition)) {
    const std::string name = import.resolved(given);
    const ImportedSpecies* const species = find(all, name);
    if (!amount || *amount == 0) continue;
    if (species == nullptr) {
      composition.findings().warning(
          place, message("'", name, "' is none of the species that are taken: the mixtures go without it"));
    } else {
      state.amounts[name] += by_mass ? *amount / molar_mass(*species) : *amount;
    }
  }
}

// Pressure, and temperature or enthalpy; or density in place of the pressure.
void read_gas_state(const Value& given, const ImportedMechanism& mechanism, ImportedState& state) {
  const UnitSystem& units = given.units();
  const Unit bar = *parse_unit("bar");
  const Unit specific = *parse_unit("J/kg");
  const Unit density = *parse_unit("kg/m^3");
  const Value T = first_of(given, {"T", "temperature"});
  const Value P = first_of(given, {"P", "pressure"});
  const Value H = first_of(given, {"H", "enthalpy"});
  const Value D = first_of(given, {"D", "density"});
  const Value other =
      first_of(given, {"V", "specific-volume", "U", "int-energy", "internal-energy", "S", "entropy"});
  if (const auto value = T.quantity(units.temperature, *parse_unit("K"))) state.temperature = *value;
  if (const auto value = P.quantity(units.pressure, bar)) state.pressure = *value;
  if (!T && H) state.enthalpy = H.quantity(units.energy / units.mass, specific);
  if (const auto value = D.quantity(units.mass / power(units.length, 3), density); value && T && !P) {
    double moles = 0;
    double mass = 0;  // kg
    for (const auto& [name, amount] : state.amounts) {
      moles += amount;
      mass += amount * molar_mass(*find(mechanism.gas, name)) / 1000;
    }
    if (mass > 0) state.pressure = *value * gas_constant * state.temperature * moles / mass / 1.0E5;
  } else if (D || other || (T && H)) {
    given.findings().warning((D       ? D
                              : other ? other
                                      : H)
                                 .place(),
                             "this part of the state cannot stand in a mixture and was not read",
                             "a mixture has a pressure, and a temperature or an enthalpy");
  }
}

}  // namespace

void read_state(const Value& gas, const Value& surface, Import& import) {
  ImportedMechanism& mechanism = import.mechanism;
  ImportedState& state = mechanism.state;
  if (const Value given = gas["state"]) {
    given.check_names({"T", "temperature", "P", "pressure", "H", "enthalpy", "D", "density", "V",
                       "specific-volume", "U", "int-energy", "internal-energy", "S", "entropy", "X",
                       "mole-fractions", "Y", "mass-fractions"});
    read_composition(first_of(given, {"X", "mole-fractions"}), mechanism.gas, false, import);
    read_composition(first_of(given, {"Y", "mass-fractions"}), mechanism.gas, true, import);
    read_gas_state(given, mechanism, state);
  }
  if (state.amounts.empty() && !mechanism.gas.empty()) state.amounts[mechanism.gas.front().name] = 1;
  if (!surface) return;
  const Value given = surface["state"];
  given.check_names({"T", "temperature", "P", "pressure", "coverages"});
  mechanism.wall_temperature = first_of(given, {"T", "temperature"})
                                   .quantity(surface.units().temperature, *parse_unit("K"))
                                   .value_or(state.temperature);
  read_composition(given["coverages"], mechanism.surface, false, import);
  const auto of_surface = [&](const auto& amount) {
    return find(mechanism.surface, amount.first) != nullptr;
  };
  if (std::none_of(state.amounts.begin(), state.amounts.end(), of_surface) && !mechanism.surface.empty()) {
    state.amounts[mechanism.surface.front().name] = 1;
  }
}

void read_site_density(const Value& surface, ImportedMechanism& mechanism) {
  const UnitSystem& units = surface.units();
  const auto density = surface.require("site-density")
                           .quantity(units.quantity / power(units.length, 2), *parse_unit("mol/m^2"));
  mechanism.site_density = density.value_or(0);
}

}  // namespace varpre
