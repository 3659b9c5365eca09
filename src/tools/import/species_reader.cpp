#include "tools/import/species_reader.h"

#include <algorithm>
#include <cmath>

#include "thermo/elements.h"

namespace varpre {
namespace {

const Unit kelvin = *parse_unit("K");
const Unit pascal = *parse_unit("Pa");
const Unit molar_energy = *parse_unit("J/mol");
const Unit molar_entropy = *parse_unit("J/mol/K");

bool is_whole(double value, double most) {
  return value == std::floor(value) && std::abs(value) <= most;
}

// Where an element of the file is made heavier or lighter than it is here.
bool has_own_weight(const Value& entry, const std::string& symbol, Import& import) {
  for (const Value& element : import.files.open(entry.file()->name)["elements"].items()) {
    const auto name = element["symbol"].string();
    const auto weight = element["atomic-weight"].number();
    constexpr double tolerance = 0.001;
    const double usual = 1000 * element_mass(symbol);
    if (name == symbol && weight && std::abs(*weight - usual) > tolerance * usual) return true;
  }
  return false;
}

bool read_atoms(const Value& entry, ImportedSpecies& species, Import& import) {
  const auto refuse = [&](const Place& place, std::string_view reason, std::string_view help) {
    import.refuse(place, message("species ", species.name), reason, help);
    return false;
  };
  for (const auto& [symbol, place, value] : entry.require("composition").members()) {
    const auto count = value.number();
    if (!count) return false;
    if (*count == 0) continue;
    if (element_mass(symbol) == 0) {
      return refuse(
          place, message("'", symbol, "' is not an element that is known here"),
          symbol == "E" ? "charged species and electrons cannot be held" : "isotopes are no elements here");
    }
    if (has_own_weight(entry, symbol, import)) {
      return refuse(place, message("the file gives '", symbol, "' another weight than the element has"), {});
    }
    if (!is_whole(*count, 999) || *count < 0) {
      return refuse(value.place(), message(*count, " atoms of ", symbol, " cannot be held"),
                    "a count is a whole number up to 999");
    }
    std::string capitals = symbol;
    std::transform(capitals.begin(), capitals.end(), capitals.begin(), upper);
    species.atoms.emplace_back(capitals, static_cast<int>(*count));
  }
  if (species.atoms.size() <= 4) return entry["composition"].is_map();
  return refuse(species.place, "it is made of more than four elements", {});
}

// The entropies of an entry are those at its reference pressure, at 1 bar here. One of 1 atm is what most
// files mean; it is left as it is.
double entropy_shift(const Value& thermo, const ImportedSpecies& species, Import& import) {
  constexpr double bar = 1.0E5;
  constexpr double atm = 101325;
  if (species.on_surface) return 0;
  const double pressure =
      thermo["reference-pressure"].quantity(thermo.units().pressure, pascal).value_or(atm);
  if (pressure == atm) import.mechanism.at_one_atmosphere = true;
  if (pressure == bar || pressure == atm) return 0;
  if (pressure > 0) return std::log(pressure / bar);
  thermo.findings().error(thermo["reference-pressure"].place(), "a pressure is greater than zero");
  return 0;
}

std::optional<std::array<double, 7>> read_coefficients(const Value& list) {
  const std::vector<Value> items = list.items();
  std::array<double, 7> coefficients{};
  if (items.size() != coefficients.size()) {
    if (list.is_list())
      list.findings().error(list.place(),
                            message("seven coefficients are due here, not ", static_cast<int>(items.size())));
    return std::nullopt;
  }
  for (std::size_t i = 0; i < items.size(); ++i) {
    const auto value = items[i].number();
    if (!value) return std::nullopt;
    coefficients[i] = *value;
  }
  return coefficients;
}

bool read_polynomials(const Value& thermo, ImportedSpecies& species) {
  thermo.check_names({"model", "temperature-ranges", "data", "reference-pressure", "note"});
  std::vector<double> limits;
  const Value ranges = thermo.require("temperature-ranges");
  for (const Value& limit : ranges.items()) {
    const auto T = limit.quantity(thermo.units().temperature, kelvin);
    if (!T) return false;
    limits.push_back(*T);
  }
  std::vector<std::array<double, 7>> data;
  const Value lists = thermo.require("data");
  for (const Value& list : lists.items()) {
    const auto coefficients = read_coefficients(list);
    if (!coefficients) return false;
    data.push_back(*coefficients);
  }
  if (!ranges || !lists) return false;
  if (data.empty() || data.size() > 2 || limits.size() != data.size() + 1) {
    thermo.findings().error(
        ranges.place(), "one or two ranges are due here, their limits and a list of coefficients for each");
    return false;
  }
  if (!std::is_sorted(limits.begin(), limits.end(), std::less_equal<>()) || limits.front() < 0) {
    thermo.findings().error(ranges.place(), "the limits of the ranges must rise");
    return false;
  }
  constexpr double usual_switch = 1000;  // K
  const double low = limits.front();
  const double high = limits.back();
  const bool usual = low < usual_switch && usual_switch < high;
  species.limits = {low, high, data.size() == 2 ? limits[1] : usual ? usual_switch : (low + high) / 2};
  species.lower = data.front();
  species.upper = data.back();
  return true;
}

// cp is constant: h and s follow from their values at T0.
bool read_constant_heat_capacity(const Value& thermo, ImportedSpecies& species) {
  thermo.check_names({"model", "T0", "h0", "s0", "cp0", "T-min", "T-max", "reference-pressure", "note"});
  const UnitSystem& units = thermo.units();
  const Unit usual = units.energy / units.quantity;
  const int errors = thermo.findings().errors();
  const double T0 = thermo["T0"].quantity(units.temperature, kelvin).value_or(298.15);
  const double h0 = thermo["h0"].quantity(usual, molar_energy).value_or(0);
  const double s0 = thermo["s0"].quantity(usual / units.temperature, molar_entropy).value_or(0);
  const double cp0 = thermo["cp0"].quantity(usual / units.temperature, molar_entropy).value_or(0);
  const double low = thermo["T-min"].quantity(units.temperature, kelvin).value_or(0);
  const Value highest = thermo["T-max"];
  const bool endless = !highest || (highest.is_scalar() && highest.text() == ".inf");
  constexpr double usual_high = 5000;  // K
  const double high = endless ? usual_high : highest.quantity(units.temperature, kelvin).value_or(usual_high);
  if (thermo.findings().errors() > errors) return false;
  if (T0 <= 0 || high <= low) {
    thermo.findings().error(thermo.place(),
                            "the temperatures of a constant heat capacity must be positive and rise");
    return false;
  }
  constexpr double R = gas_constant;
  species.limits = {low, high, low < 1000 && 1000 < high ? 1000 : (low + high) / 2};
  species.lower = {cp0 / R, 0, 0, 0, 0, h0 / R - cp0 / R * T0, s0 / R - cp0 / R * std::log(T0)};
  species.upper = species.lower;
  return true;
}

bool read_thermo(const Value& entry, ImportedSpecies& species, Import& import) {
  const Value thermo = entry.require("thermo");
  if (!thermo) return false;
  const auto model = thermo.require("model").string();
  if (!model) return false;
  bool read = false;
  if (*model == "NASA7") {
    read = read_polynomials(thermo, species);
  } else if (*model == "constant-cp") {
    read = read_constant_heat_capacity(thermo, species);
  } else {
    import.refuse(
        thermo["model"].place(), message("species ", species.name),
        message("its thermochemistry is of the model '", *model, "'"),
        "polynomials of seven coefficients (NASA7) in one or two ranges are needed: fit some to this model");
  }
  if (!read) return false;
  const double shift = entropy_shift(thermo, species, import);
  species.lower[6] += shift;
  species.upper[6] += shift;
  return true;
}

bool read_geometry(const Value& transport, ImportedMolecule& molecule) {
  constexpr std::array<std::string_view, 3> geometries{"atom", "linear", "nonlinear"};
  const Value value = transport.require("geometry");
  const auto name = value.string();
  if (!name) return false;
  const auto* const found = std::find(geometries.begin(), geometries.end(), *name);
  molecule.geometry = static_cast<int>(found - geometries.begin());
  if (found != geometries.end()) return true;
  transport.findings().error(value.place(),
                             message("'", *name, "' is no geometry: atom, linear or nonlinear is due here"));
  return false;
}

bool read_transport(const Value& entry, ImportedSpecies& species, Import& import) {
  const Value transport = entry["transport"];
  if (!transport) {
    import.refuse(species.place, message("species ", species.name), "it has no transport data",
                  "--without-transport takes none from the file; MOLNEW is yours then");
    return false;
  }
  if (const auto model = transport.require("model").string(); model != "gas") {
    if (model) {
      import.refuse(transport["model"].place(), message("species ", species.name),
                    message("its transport data are of the model '", *model, "'"));
    }
    return false;
  }
  transport.check_names({"model", "geometry", "diameter", "well-depth", "dipole", "polarizability",
                         "rotational-relaxation", "acentric-factor", "dispersion-coefficient",
                         "quadrupole-polarizability", "note"});
  ImportedMolecule molecule;
  const int errors = import.findings.errors();
  const auto number = [&](const char* name) { return transport[name].number().value_or(0); };
  const auto well_depth = transport.require("well-depth").number();
  const auto diameter = transport.require("diameter").number();
  molecule.dipole = number("dipole");
  molecule.polarizability = number("polarizability");
  molecule.rotational_relaxation = number("rotational-relaxation");
  if (!read_geometry(transport, molecule) || import.findings.errors() > errors) return false;
  molecule.well_depth = *well_depth;
  molecule.diameter = *diameter;
  species.molecule = molecule;
  return true;
}

}  // namespace

std::optional<ImportedSpecies> read_species(const Value& entry, bool on_surface, Import& import) {
  entry.check_names({"name", "composition", "thermo", "transport", "equation-of-state", "critical-parameters",
                     "coverage-dependencies", "sites", "Debye-Huckel", "note", "description"});
  ImportedSpecies species;
  species.name = entry["name"].string().value_or("");
  species.place = entry["name"].place();
  species.on_surface = on_surface;
  const double sites = entry["sites"].number().value_or(1);
  if (on_surface && sites != 1) {
    import.refuse(entry["sites"].place(), message("species ", species.name),
                  message("it occupies ", sites, " sites"), "a surface species occupies one site");
    return std::nullopt;
  }
  const bool with_transport = !on_surface && !import.options.without_transport;
  if (!read_atoms(entry, species, import) || !read_thermo(entry, species, import) ||
      (with_transport && !read_transport(entry, species, import))) {
    return std::nullopt;
  }
  return species;
}

}  // namespace varpre
