#include "tools/import/species_reader.h"

#include <algorithm>
#include <cmath>

#include "thermo/elements.h"
#include "tools/import/short_names.h"

namespace varpre {
namespace {

const Unit kelvin = *parse_unit("K");
const Unit bar = *parse_unit("bar");
const Unit molar_energy = *parse_unit("J/mol");
const Unit molar_entropy = *parse_unit("J/mol/K");

bool is_whole(double value, double most) {
  return value == std::floor(value) && std::abs(value) <= most;
}

// Where an element of the file is made heavier or lighter than it is here.
bool has_own_weight(const Value& entry, const std::string& symbol, YamlFiles& files) {
  const auto& weights = files.atomic_weights(entry.file()->name);
  const auto weight = weights.find(symbol);
  constexpr double tolerance = 0.001;
  const double usual = 1000 * element_mass(symbol);
  return weight != weights.end() && std::abs(weight->second - usual) > tolerance * usual;
}

bool read_atoms(const Value& entry, ImportedSpecies& species, YamlFiles& files, Import& import) {
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
    if (has_own_weight(entry, symbol, files)) {
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

std::optional<std::vector<double>> read_coefficients(const Value& list, std::size_t count) {
  const std::vector<Value> items = list.items();
  std::vector<double> coefficients;
  if (items.size() != count) {
    if (list.is_list()) {
      list.findings().error(list.place(),
                            message(count == 9 ? "nine" : "seven", " coefficients are due here, not ",
                                    static_cast<int>(items.size())));
    }
    return std::nullopt;
  }
  for (const Value& item : items) {
    const auto value = item.number();
    if (!value) return std::nullopt;
    coefficients.push_back(*value);
  }
  return coefficients;
}

using Coefficients = std::vector<double>;

ThermoRange nasa7(const Coefficients& c) {
  return {0, 0, {0, 0, c[0], c[1], c[2], c[3], c[4]}, c[5], c[6]};
}

ThermoRange nasa9(const Coefficients& c) {
  return {0, 0, {c[0], c[1], c[2], c[3], c[4], c[5], c[6]}, c[7], c[8]};
}

// A to G in J/(mol K) and kJ/mol, with t = T / 1000 K:
//   cp = A + B t + C t^2 + D t^3 + E/t^2, h = A t + ... - E/t + F, s = A ln t + ... - E/(2 t^2) + G
ThermoRange shomate(const Coefficients& c) {
  constexpr double R = molar_gas_constant;
  return {0,
          0,
          {c[4] * 1.0E6 / R, 0, c[0] / R, c[1] / 1.0E3 / R, c[2] / 1.0E6 / R, c[3] / 1.0E9 / R, 0},
          1000 * c[5] / R,
          (c[6] - c[0] * std::log(1000.0)) / R};
}

// Ranges of temperature and the coefficients of each: at most so many ranges.
bool read_polynomials(const Value& thermo, std::size_t count, std::size_t most,
                      ThermoRange (*range_of)(const Coefficients&), ThermoRanges& result) {
  thermo.check_names({"model", "temperature-ranges", "data", "reference-pressure", "note"});
  std::vector<double> limits;
  const Value ranges = thermo.require("temperature-ranges");
  for (const Value& limit : ranges.items()) {
    const auto T = limit.quantity(thermo.units().temperature, kelvin);
    if (!T) return false;
    limits.push_back(*T);
  }
  const Value lists = thermo.require("data");
  for (const Value& list : lists.items()) {
    const auto coefficients = read_coefficients(list, count);
    if (!coefficients) return false;
    result.ranges.push_back(range_of(*coefficients));
  }
  if (!ranges || !lists) return false;
  const std::size_t n = result.ranges.size();
  if (n == 0 || n > most || limits.size() != n + 1) {
    thermo.findings().error(ranges.place(),
                            message(most == 2 ? "one or two ranges are" : "some ranges are",
                                    " due here, their limits and a list of coefficients for each"));
    return false;
  }
  if (!std::is_sorted(limits.begin(), limits.end(), std::less_equal<>()) || limits.front() < 0) {
    thermo.findings().error(ranges.place(), "the limits of the ranges must rise");
    return false;
  }
  for (std::size_t i = 0; i < n; ++i) {
    result.ranges[i].low = limits[i];
    result.ranges[i].high = limits[i + 1];
  }
  return true;
}

// T-max may be .inf.
double highest_temperature(const Value& thermo, double usual) {
  const Value highest = thermo["T-max"];
  const bool endless = !highest || (highest.is_scalar() && highest.text() == ".inf");
  return endless ? usual : highest.quantity(thermo.units().temperature, kelvin).value_or(usual);
}

// cp is constant: h and s follow from their values at T0.
ThermoRange constant_heat_capacity(double cp, double T0, double h0, double s0) {
  return {0, 0, {0, 0, cp, 0, 0, 0, 0}, h0 - cp * T0, s0 - cp * std::log(T0)};
}

bool read_constant_heat_capacity(const Value& thermo, ThermoRanges& result) {
  thermo.check_names({"model", "T0", "h0", "s0", "cp0", "T-min", "T-max", "reference-pressure", "note"});
  const UnitSystem& units = thermo.units();
  const Unit usual = units.energy / units.quantity;
  const int errors = thermo.findings().errors();
  constexpr double R = molar_gas_constant;
  const double T0 = thermo["T0"].quantity(units.temperature, kelvin).value_or(298.15);
  const double h0 = thermo["h0"].quantity(usual, molar_energy).value_or(0) / R;
  const double s0 = thermo["s0"].quantity(usual / units.temperature, molar_entropy).value_or(0) / R;
  const double cp0 = thermo["cp0"].quantity(usual / units.temperature, molar_entropy).value_or(0) / R;
  ThermoRange range = constant_heat_capacity(cp0, T0, h0, s0);
  range.low = thermo["T-min"].quantity(units.temperature, kelvin).value_or(0);
  range.high = highest_temperature(thermo, 5000);
  if (thermo.findings().errors() > errors) return false;
  if (T0 <= 0 || range.high <= range.low) {
    thermo.findings().error(thermo.place(),
                            "the temperatures of a constant heat capacity must be positive and rise");
    return false;
  }
  result.ranges.push_back(range);
  return true;
}

// Gibbs energies g/R at some temperatures, K.
std::optional<std::map<double, double>> read_gibbs_table(const Value& thermo) {
  const UnitSystem& units = thermo.units();
  const bool over_RT = thermo["dimensionless"].boolean().value_or(false);
  const Unit usual = units.energy / units.quantity;
  std::map<double, double> table;
  const Value data = thermo.require("data");
  for (const auto& [name, place, value] : data.members()) {
    const auto T = parse_number(name);
    if (!T || *T <= 0) {
      thermo.findings().error(place, message("'", name, "' is no temperature"));
      return std::nullopt;
    }
    const auto temperature = static_cast<double>(*T);
    const auto g = over_RT ? value.number() : value.quantity(usual, molar_energy);
    if (!g) return std::nullopt;
    table[temperature] = over_RT ? *g * temperature : *g / molar_gas_constant;
  }
  return table;
}

// Between the temperatures of the table cp is constant, and h and s follow from h at 298.15 K.
bool read_piecewise_gibbs(const Value& thermo, ThermoRanges& result) {
  thermo.check_names(
      {"model", "h0", "dimensionless", "data", "T-min", "T-max", "reference-pressure", "note"});
  constexpr double standard = 298.15;
  const UnitSystem& units = thermo.units();
  const auto table = read_gibbs_table(thermo);
  if (!table) return false;
  const auto start = table->find(standard);
  if (start == table->end() || table->size() < 2) {
    thermo.findings().error(thermo["data"].place(),
                            "values at two temperatures are due here, and 298.15 K must be one of them");
    return false;
  }
  const double h0 =
      thermo["h0"].quantity(units.energy / units.quantity, molar_energy).value_or(0) / molar_gas_constant;
  const double s0 = (h0 - start->second) / standard;
  const auto interval = [](double T1, double h, double s, double T2, double g) {
    const double cp = (g - h + T2 * s) / (T2 - T1 - T2 * std::log(T2 / T1));
    ThermoRange range = constant_heat_capacity(cp, T1, h, s);
    range.low = std::min(T1, T2);
    range.high = std::max(T1, T2);
    return range;
  };
  const auto step = [&](double& T, double& h, double& s, const std::pair<const double, double>& next) {
    const ThermoRange range = interval(T, h, s, next.first, next.second);
    T = next.first;
    const ThermoValues values = evaluate(range, T);
    h = values.h * T;
    s = values.s;
    return range;
  };
  double T = standard;
  double h = h0;
  double s = s0;
  for (auto below = std::make_reverse_iterator(start); below != table->rend(); ++below)
    result.ranges.insert(result.ranges.begin(), step(T, h, s, *below));
  T = standard;
  h = h0;
  s = s0;
  for (auto above = std::next(start); above != table->end(); ++above)
    result.ranges.push_back(step(T, h, s, *above));
  ThermoRange& first = result.ranges.front();
  first.low = thermo["T-min"].quantity(units.temperature, kelvin).value_or(first.low);
  ThermoRange& last = result.ranges.back();
  last.high = highest_temperature(thermo, last.high);
  return true;
}

bool read_thermo(const Value& entry, ImportedSpecies& species, Import& import) {
  const Value thermo = entry.require("thermo");
  if (!thermo) return false;
  const auto model = thermo.require("model").string();
  if (!model) return false;
  bool read = false;
  ThermoRanges& ranges = species.thermo;
  constexpr std::size_t any = 1000;
  if (*model == "NASA7") {
    read = read_polynomials(thermo, 7, 2, nasa7, ranges);
  } else if (*model == "NASA9") {
    read = read_polynomials(thermo, 9, any, nasa9, ranges);
  } else if (*model == "Shomate") {
    read = read_polynomials(thermo, 7, 2, shomate, ranges);
  } else if (*model == "constant-cp") {
    read = read_constant_heat_capacity(thermo, ranges);
  } else if (*model == "piecewise-Gibbs") {
    read = read_piecewise_gibbs(thermo, ranges);
  } else {
    import.refuse(thermo["model"].place(), message("species ", species.name),
                  message("its thermochemistry is of the model '", *model, "'"),
                  "NASA7 and constant-cp come in; --refit-thermo takes NASA9, Shomate and piecewise-Gibbs");
  }
  if (!read) return false;
  const Value pressure = thermo["reference-pressure"];
  if (!pressure) return true;
  const auto value = pressure.quantity(thermo.units().pressure, bar);
  if (value && *value <= 0) thermo.findings().error(pressure.place(), "a pressure is greater than zero");
  if (value) ranges.reference_pressure = *value;
  return value && *value > 0;
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

// Nothing where there are none. False after a finding.
bool read_transport(const Value& entry, ImportedSpecies& species, Import& import) {
  const Value transport = entry["transport"];
  if (!transport) return true;
  if (const auto model = transport.require("model").string(); model != "gas") {
    if (model) {
      import.refuse(transport["model"].place(), message("species ", species.name),
                    message("its transport data are of the model '", *model, "'"));
    }
    return false;
  }
  species.molecule = read_molecule(transport);
  return species.molecule.has_value();
}

}  // namespace

std::optional<ImportedMolecule> read_molecule(const Value& transport) {
  transport.check_names({"model", "geometry", "diameter", "well-depth", "dipole", "polarizability",
                         "rotational-relaxation", "acentric-factor", "dispersion-coefficient",
                         "quadrupole-polarizability", "note"});
  ImportedMolecule molecule;
  const int errors = transport.findings().errors();
  const auto number = [&](const char* name) { return transport[name].number().value_or(0); };
  const auto well_depth = transport.require("well-depth").number();
  const auto diameter = transport.require("diameter").number();
  molecule.dipole = number("dipole");
  molecule.polarizability = number("polarizability");
  molecule.rotational_relaxation = number("rotational-relaxation");
  if (!read_geometry(transport, molecule) || transport.findings().errors() > errors) return std::nullopt;
  molecule.well_depth = *well_depth;
  molecule.diameter = *diameter;
  return molecule;
}

Molecules read_transport_file(const std::string& path, SourceFiles& sources, YamlFiles& files,
                              Findings& findings) {
  Molecules molecules;
  if (!path.ends_with(".yaml") && !path.ends_with(".yml")) {
    constexpr auto transport = ChemkinSection::Kind::transport;
    for (const ChemkinSection& section : sections_of(sources.open(path), transport, findings)) {
      if (section.kind == transport) molecules.lines.add(section);
    }
    return molecules;
  }
  for (const Value& entry : files.open(path)["species"].items()) {
    const Value transport = entry["transport"];
    const auto molecule = transport["model"].string() == "gas" ? read_molecule(transport) : std::nullopt;
    if (molecule) molecules.by_name[in_capitals(entry["name"].string().value_or(""))] = *molecule;
  }
  return molecules;
}

std::optional<ImportedSpecies> read_species(const Value& entry, KnownSpecies::Phase phase, YamlFiles& files,
                                            Import& import) {
  entry.check_names({"name", "composition", "thermo", "transport", "equation-of-state", "critical-parameters",
                     "coverage-dependencies", "sites", "Debye-Huckel", "note", "description"});
  ImportedSpecies species;
  species.name = entry["name"].string().value_or("");
  species.place = entry["name"].place();
  species.on_surface = phase == KnownSpecies::Phase::surface;
  const double sites = entry["sites"].number().value_or(1);
  if (species.on_surface && sites != 1) {
    import.refuse(entry["sites"].place(), message("species ", species.name),
                  message("it occupies ", sites, " sites"), "a surface species occupies one site");
    return std::nullopt;
  }
  const bool with_transport = phase == KnownSpecies::Phase::gas && !import.options.without_transport;
  if (!read_atoms(entry, species, files, import) || !read_thermo(entry, species, import) ||
      (with_transport && !read_transport(entry, species, import))) {
    return std::nullopt;
  }
  return species;
}

}  // namespace varpre
