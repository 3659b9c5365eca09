#include "tools/import/units.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>
#include <utility>

#include "thermo/species.h"
#include "tools/import/rate_laws.h"

namespace varpre {
namespace {

constexpr Dimensions none{};
constexpr Dimensions mass{1};
constexpr Dimensions length{0, 1};
constexpr Dimensions time{0, 0, 1};
constexpr Dimensions temperature{0, 0, 0, 1};
constexpr Dimensions current{0, 0, 0, 0, 1};
constexpr Dimensions quantity{0, 0, 0, 0, 0, 1};
constexpr Dimensions volume{0, 3};
constexpr Dimensions force{1, 1, -2};
constexpr Dimensions pressure{1, -1, -2};
constexpr Dimensions energy{1, 2, -2};
constexpr Dimensions molar_energy{1, 2, -2, 0, 0, -1};
constexpr Dimensions charge{0, 0, 1, 0, 1};
constexpr Dimensions voltage{1, 2, -3, 0, -1};

constexpr long double molecules = 6.02214076L;           // Avogadro's number, 10^23 / mol
constexpr long double elementary_charge = 1.602176634L;  // 10^-19 C

struct NamedUnit {
  std::string_view name;
  Unit unit;
};
const std::array named_units{
    NamedUnit{"1", {1, 0, none}},
    NamedUnit{"g", {1, -3, mass}},
    NamedUnit{"m", {1, 0, length}},
    NamedUnit{"micron", {1, -6, length}},
    NamedUnit{"angstrom", {1, -10, length}},
    NamedUnit{"\u00C5", {1, -10, length}},
    NamedUnit{"s", {1, 0, time}},
    NamedUnit{"min", {60, 0, time}},
    NamedUnit{"hr", {3600, 0, time}},
    NamedUnit{"K", {1, 0, temperature}},
    NamedUnit{"A", {1, 0, current}},
    NamedUnit{"mol", {1, 0, quantity}},
    NamedUnit{"gmol", {1, 0, quantity}},
    NamedUnit{"mole", {1, 0, quantity}},
    NamedUnit{"kmol", {1, 3, quantity}},
    NamedUnit{"kgmol", {1, 3, quantity}},
    NamedUnit{"molec", {1 / molecules, -23, quantity}},
    NamedUnit{"J", {1, 0, energy}},
    NamedUnit{"cal", {4.184L, 0, energy}},
    NamedUnit{"erg", {1, -7, energy}},
    NamedUnit{"eV", {elementary_charge, -19, energy}},
    NamedUnit{"N", {1, 0, force}},
    NamedUnit{"dyn", {1, -5, force}},
    NamedUnit{"Pa", {1, 0, pressure}},
    NamedUnit{"atm", {101325, 0, pressure}},
    NamedUnit{"bar", {1, 5, pressure}},
    NamedUnit{"liter", {1, -3, volume}},
    NamedUnit{"L", {1, -3, volume}},
    NamedUnit{"l", {1, -3, volume}},
    NamedUnit{"cc", {1, -6, volume}},
    NamedUnit{"ohm", {1, 0, {1, 2, -3, 0, -2}}},
    NamedUnit{"V", {1, 0, voltage}},
    NamedUnit{"coulomb", {1, 0, charge}},
    NamedUnit{"townsend", {1, -21, {1, 4, -3, 0, -1}}},
    NamedUnit{"Td", {1, -21, {1, 4, -3, 0, -1}}},
};

struct Prefix {
  std::string_view letter;
  int decades;
};
constexpr std::array prefixes{
    Prefix{"Y", 24},  Prefix{"Z", 21},  Prefix{"E", 18},  Prefix{"P", 15},      Prefix{"T", 12},
    Prefix{"G", 9},   Prefix{"M", 6},   Prefix{"k", 3},   Prefix{"h", 2},       Prefix{"d", -1},
    Prefix{"c", -2},  Prefix{"m", -3},  Prefix{"u", -6},  Prefix{"\u00B5", -6}, Prefix{"n", -9},
    Prefix{"p", -12}, Prefix{"f", -15}, Prefix{"a", -18}, Prefix{"z", -21},     Prefix{"y", -24},
};

std::optional<Unit> named_unit(std::string_view name) {
  const auto* const found = std::find_if(named_units.begin(), named_units.end(),
                                         [&](const NamedUnit& u) { return u.name == name; });
  if (found == named_units.end()) return std::nullopt;
  return found->unit;
}

// A base unit, with or without a prefix; whole names come first: "min" is no milli-inch.
std::optional<Unit> base_unit(std::string_view name) {
  if (const auto unit = named_unit(name)) return unit;
  for (const Prefix& prefix : prefixes) {
    if (!name.starts_with(prefix.letter)) continue;
    const std::string_view rest = name.substr(prefix.letter.size());
    auto unit = rest == "1" ? std::nullopt : named_unit(rest);
    if (!unit) continue;
    unit->decades += prefix.decades;
    return unit;
  }
  return std::nullopt;
}

// "cm^3", "s^-1", "K".
std::optional<Unit> unit_with_exponent(std::string_view text) {
  const std::size_t caret = text.find('^');
  auto unit = base_unit(text.substr(0, caret));
  if (!unit || caret == std::string_view::npos) return unit;
  const auto exponent = parse_number(text.substr(caret + 1));
  if (!exponent || std::abs(*exponent) > 50) return std::nullopt;
  return power(*unit, static_cast<double>(*exponent));
}

std::string replaced(std::string text, std::string_view what, std::string_view by) {
  for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size()) {
    text.replace(at, what.size(), by);
  }
  return text;
}

}  // namespace

Unit operator*(const Unit& a, const Unit& b) {
  Unit product{a.significand * b.significand, a.decades + b.decades, a.dimensions};
  for (std::size_t i = 0; i < product.dimensions.size(); ++i) product.dimensions[i] += b.dimensions[i];
  return product;
}

Unit operator/(const Unit& a, const Unit& b) {
  Unit quotient{a.significand / b.significand, a.decades - b.decades, a.dimensions};
  for (std::size_t i = 0; i < quotient.dimensions.size(); ++i) quotient.dimensions[i] -= b.dimensions[i];
  return quotient;
}

Unit power(const Unit& unit, double exponent) {
  Unit result{std::pow(unit.significand, static_cast<long double>(exponent)), unit.decades * exponent,
              unit.dimensions};
  for (double& dimension : result.dimensions) dimension *= exponent;
  return result;
}

double without_noise(double value, int digits) {
  std::array<char, 32> text{};
  const auto end =
      std::to_chars(text.begin(), text.end(), value, std::chars_format::scientific, digits - 1).ptr;
  std::from_chars(text.begin(), end, value);
  return value;
}

double converted(long double value, const Unit& from, const Unit& to) {
  if (from.significand == to.significand && from.decades == to.decades) return static_cast<double>(value);
  const double decades = from.decades - to.decades;
  const long double significand = value * (from.significand / to.significand);
  const long double factor = std::pow(10.0L, static_cast<long double>(std::abs(decades)));
  return without_noise(static_cast<double>(decades < 0 ? significand / factor : significand * factor));
}

std::optional<Unit> parse_unit(std::string_view text) {
  std::string packed = replaced(std::string(text), "\u00B3", "^3");
  packed = replaced(std::move(packed), "\u00B2", "^2");
  std::erase(packed, ' ');
  Unit unit;
  bool divide = false;
  for (std::string_view rest = packed;;) {
    const std::size_t end = rest.find_first_of("*/");
    const auto factor = unit_with_exponent(rest.substr(0, end));
    if (!factor) return std::nullopt;
    unit = divide ? unit / *factor : unit * *factor;
    if (end == std::string_view::npos) return unit;
    divide = rest[end] == '/';
    rest.remove_prefix(end + 1);
  }
}

std::optional<long double> parse_number(std::string_view text) {
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  long double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value)) return std::nullopt;
  if (!std::isfinite(static_cast<double>(value))) return std::nullopt;
  return value;
}

UnitSystem::UnitSystem()
    : mass{1, 0, varpre::mass},
      length{1, 0, varpre::length},
      time{1, 0, varpre::time},
      temperature{1, 0, varpre::temperature},
      current{1, 0, varpre::current},
      quantity{1, 3, varpre::quantity},
      pressure{1, 0, varpre::pressure},
      energy{1, 0, varpre::energy},
      activation_energy(energy / quantity) {}

Unit* UnitSystem::find(std::string_view name) {
  const std::array<std::pair<std::string_view, Unit*>, 9> all{{{"mass", &mass},
                                                               {"length", &length},
                                                               {"time", &time},
                                                               {"temperature", &temperature},
                                                               {"current", &current},
                                                               {"quantity", &quantity},
                                                               {"pressure", &pressure},
                                                               {"energy", &energy},
                                                               {"activation-energy", &activation_energy}}};
  const auto* const found =
      std::find_if(all.begin(), all.end(), [&](const auto& u) { return u.first == name; });
  return found == all.end() ? nullptr : found->second;
}

std::optional<double> activation_energy(long double value, const Unit& unit) {
  constexpr Unit kilojoule_per_mole{1, 3, molar_energy};
  constexpr auto R = static_cast<long double>(gas_constant);
  constexpr long double ratio = R / static_cast<long double>(molar_gas_constant);
  const auto in_kilojoules = [&](long double amount, const Unit& of) {
    constexpr int digits = 7;
    return without_noise(converted(amount, of, kilojoule_per_mole), digits);
  };
  if (unit.dimensions == molar_energy) return in_kilojoules(value * ratio, unit);
  if (unit.dimensions == energy) return in_kilojoules(value * ratio, unit / *named_unit("molec"));
  if (unit.dimensions != temperature) return std::nullopt;
  return in_kilojoules(value * R, {unit.significand, unit.decades, molar_energy});
}

}  // namespace varpre
