#include "tools/export/mechanism_yaml.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "mechanism/phase.h"
#include "textio/record/numbered.h"
#include "tools/export/given_number.h"
#include "tools/export/held_mechanism.h"
#include "tools/export/yaml_text.h"

namespace varpre {
namespace {

// "Ar" from "AR" or "ar".
std::string capitalised(const ElementSymbol& symbol) {
  std::string text(trimmed(symbol.view()));
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char capital = upper(text[i]);
    text[i] = i == 0 || capital < 'A' || capital > 'Z' ? capital : static_cast<char>(capital - 'A' + 'a');
  }
  return text;
}

// The elements that nobody but this system knows.
bool is_made_up(const ElementSymbol& symbol) {
  return symbol.view() == "YY";
}

// E/R in K, by which rates stay as they are whatever gas constant a reader has, from E in J/mol.
std::string temperature_text(double E) {
  const auto rounded = [](double value) {
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.begin(), text.end(), value, std::chars_format::scientific, 14);
    std::from_chars(text.begin(), end.ptr, value);
    return value;
  };
  return yaml_number(
      given_number(rounded(E), E / gas_constant, [&](double T) { return rounded(T * gas_constant); }));
}

class YamlWriter {
 public:
  YamlWriter(const RunData& data, const HeldMechanism& held) : data_(data), held_(held) {}

  std::string write() {
    write_heading();
    write_phases();
    write_elements();
    write_species("species", 1, data_.NGAS);
    if (data_.NSURF > 0) write_species("surface-species", data_.NGAS + 1, data_.NGAS + data_.NSURF);
    write_reactions("reactions", held_.gas_reactions);
    write_reactions("surface-reactions", held_.surface_reactions);
    return std::move(text_);
  }

 private:
  template <class... Parts>
  void line(const Parts&... parts) {
    text_ += message(parts...) + "\n";
  }

  std::string name_of(int number) const { return yaml_text(trimmed(at(data_.species.SYMB, number).view())); }

  // --- the whole, the phases ---

  void write_heading() {
    text_ += yaml_description(data_.titles);
    line("generator: varpre-export");
    line("");
    line("units: {length: cm, time: s, quantity: mol, pressure: Pa, activation-energy: K}");
    line("");
  }

  // The phases of the mixture on the left, then those of the one on the right that are different.
  void write_phases() {
    const auto& [left, right] = data_.mixtures;
    const auto same = [&left = left, &right = right](int first, int last) {
      return std::equal(left.amounts.begin() + first, left.amounts.begin() + last,
                        right.amounts.begin() + first);
    };
    const bool same_gas =
        left.values.T == right.values.T && left.values.P == right.values.P && same(0, data_.NGAS);
    line("phases:");
    write_gas_phase("gas", left);
    if (data_.NSURF > 0) write_surface_phase("surface", "gas", left);
    if (!same_gas) write_gas_phase("gas-right", right);
    if (data_.NSURF > 0 && !(same_gas && same(data_.NGAS, data_.NGAS + data_.NSURF)))
      write_surface_phase("surface-right", same_gas ? "gas" : "gas-right", right);
  }

  void write_gas_phase(std::string_view name, const MixtureState& state) {
    line("- name: ", name);
    line("  thermo: ideal-gas");
    write_elements_of(data_.gas_elements);
    text_ += yaml_list_lines("  species", names(1, data_.NGAS));
    line("  kinetics: gas");
    line("  reactions: ", held_.gas_reactions.empty() ? "none" : "all");
    if (has_colliding_species()) line("  explicit-third-body-duplicates: mark-duplicate");
    line("  transport: mixture-averaged");
    if (state.values.P <= 0) return;  // its block is not there
    line("  state:");
    line("    T: ", yaml_number(state.values.T));
    line("    P: ", yaml_number(state.values.P));
    text_ += yaml_map_lines("    X", amounts(state, 1, data_.NGAS));
  }

  void write_surface_phase(std::string_view name, std::string_view gas, const MixtureState& state) {
    line("- name: ", name);
    line("  thermo: ideal-surface");
    line("  adjacent-phases: [", gas, "]");
    write_elements_of(data_.surface_elements);
    line("  species:");
    text_ += yaml_list_lines("  - surface-species", names(data_.NGAS + 1, data_.NGAS + data_.NSURF));
    line("  kinetics: surface");
    line("  reactions: ", held_.surface_reactions.empty() ? "none" : "[surface-reactions]");
    line("  site-density: ", yaml_number(data_.wall.SITE), " mol/m^2");
    line("  state:");
    line("    T: ", yaml_number(data_.wall.TW));
    text_ += yaml_map_lines("    coverages", amounts(state, data_.NGAS + 1, data_.NGAS + data_.NSURF));
  }

  void write_elements_of(const Elements& elements) {
    std::vector<std::string> symbols;
    for (const ElementSymbol& symbol : first(elements.SYME, elements.NE))
      symbols.push_back(capitalised(symbol));
    text_ += yaml_list_lines("  elements", symbols);
  }

  std::vector<std::string> names(int first, int last) const {
    std::vector<std::string> list;
    for (int number = first; number <= last; ++number) {
      if (held_.holds(number)) list.push_back(name_of(number));
    }
    return list;
  }

  YamlMembers amounts(const MixtureState& state, int first, int last) const {
    YamlMembers members;
    for (int number = first; number <= last; ++number) {
      const double amount = at(state.amounts, number);
      if (amount != 0 && held_.holds(number)) members.emplace_back(name_of(number), yaml_number(amount));
    }
    return members;
  }

  // Whether an equation has a species on both sides: readers may take it for a collision partner, whose
  // collisions then seem to be there twice.
  bool has_colliding_species() const {
    return std::any_of(held_.gas_reactions.begin(), held_.gas_reactions.end(), [&](const HeldReaction& held) {
      const auto [educts, products] = sides_of(data_, held);
      return std::any_of(educts.begin(), educts.end(), [&products = products](const auto& educt) {
        return products.contains(educt.first);
      });
    });
  }

  void write_elements() {
    const auto symbols = first(data_.gas_elements.SYME, data_.gas_elements.NE);
    const auto found = std::find_if(symbols.begin(), symbols.end(), is_made_up);
    line("");
    if (found == symbols.end()) return;
    const double mass = data_.gas_elements.EMOL.begin()[found - symbols.begin()];
    line("elements:");
    line("- symbol: ", capitalised(*found));
    line("  atomic-weight: ", yaml_number(1000 * mass));
    line("");
  }

  // --- species ---

  void write_species(std::string_view section, int first, int last) {
    line(section, ":");
    for (int number = first; number <= last; ++number) {
      if (!held_.holds(number)) continue;
      line("- name: ", name_of(number));
      line("  composition: ", yaml_map(composition(number)));
      write_thermo(number);
      if (number <= data_.NGAS) write_transport(at(data_.molecules, number));
    }
    line("");
  }

  YamlMembers composition(int number) const {
    const bool on_surface = number > data_.NGAS;
    const Elements& elements = on_surface ? data_.surface_elements : data_.gas_elements;
    const auto& counts = at(elements.NCOMP, on_surface ? number - data_.NGAS : number);
    YamlMembers members;
    for (int e = 1; e <= elements.NE; ++e) {
      if (at(counts, e) != 0) members.emplace_back(capitalised(at(elements.SYME, e)), message(at(counts, e)));
    }
    return members;
  }

  void write_thermo(int number) {
    constexpr double below = 20;  // K, that a run puts the lower limit down
    const ThermoFit& fit = at(data_.species.fit, number);
    const auto& [low, common, high] = fit.TLIM;
    const double given_low = given_number(low, low + below, [](double T) { return T - below; });
    line("  thermo:");
    line("    model: NASA7");
    if (number <= data_.NGAS) line("    reference-pressure: 1 bar");
    line("    temperature-ranges: [", yaml_number(given_low), ", ", yaml_number(common), ", ",
         yaml_number(high), "]");
    line("    data:");
    for (const auto* const range : {&fit.HCPL, &fit.HCPH}) {
      std::vector<std::string> coefficients;
      for (const double a : *range) {
        coefficients.push_back(
            yaml_number(given_number(a, a / gas_constant, [](double x) { return x * gas_constant; })));
      }
      text_ += yaml_item_lines("    - ", coefficients);
    }
  }

  void write_transport(const Molecule& molecule) {
    constexpr std::array<std::string_view, 3> geometries{"atom", "linear", "nonlinear"};
    line("  transport:");
    line("    model: gas");
    line("    geometry: ", geometries[static_cast<std::size_t>(molecule.IGEOM)]);
    line("    well-depth: ", yaml_number(molecule.EPS));
    line("    diameter: ", yaml_number(molecule.SIGMA));
    if (molecule.DI1 != 0) line("    dipole: ", yaml_number(molecule.DI1));
    if (molecule.DI2 != 0) line("    polarizability: ", yaml_number(molecule.DI2));
    if (molecule.DI3 != 0) line("    rotational-relaxation: ", yaml_number(molecule.DI3));
  }

  // --- reactions ---

  void write_reactions(std::string_view section, const std::vector<HeldReaction>& reactions) {
    if (reactions.empty()) return;
    line(section, ":");
    for (const HeldReaction& held : reactions) write_reaction(held);
    line("");
  }

  void write_reaction(const HeldReaction& held) {
    const Reaction& reaction = *held.reaction;
    line("- equation: ", yaml_text(yaml_equation(data_, held)));
    if (held.duplicate) line("  duplicate: true");
    if (reaction.IARRH == falloff) {
      write_falloff(held);
    } else if (reaction.ISTICK != 0) {
      write_sticking(held);
    } else {
      if (held.partner > 0) line("  type: three-body");
      line("  rate-constant: ", rate(given_A(held), reaction.TEXP, reaction.EXA));
    }
    if (given_A(held) < 0) line("  negative-A: true");
    if (held.partner > 0) write_efficiencies(held.partner);
    if (reaction.IARRH == coverage_dependent) write_coverage(reaction);
  }

  static std::string rate(double A, double b, double E) {
    return yaml_map({{"A", yaml_number(A)}, {"b", yaml_number(b)}, {"Ea", temperature_text(E)}});
  }

  // A as the mechanism file gives it: in cm, mol and s, or the coefficient of a sticking reaction.
  double given_A(const HeldReaction& held) const {
    const double A = held.reaction->AFAC;
    if (held.reaction->ISTICK != 0) {
      return given_number(A, A / (1 + 0.5 * A), [](double g) { return g / (1 - 0.5 * g); });
    }
    const Phase& phase = held.on_surface ? Phase::surface : Phase::gas;
    const int NS = held.on_surface ? data_.NGAS + data_.NSURF : data_.NGAS;
    Reaction given = *held.reaction;
    const auto in_SI_units = [&](double x) {
      given.AFAC = x;
      return phase.in_SI_units(given, NS, data_.NSURF);
    };
    return given_number(A, A / in_SI_units(1), in_SI_units);
  }

  void write_falloff(const HeldReaction& held) {
    const Reaction& reaction = *held.reaction;
    const auto& [low_A, low_b, low_E, a, T3, T1, T2, unused] = reaction.FALL;
    line("  type: falloff");
    line("  low-P-rate-constant: ", rate(low_A, low_b, low_E));
    line("  high-P-rate-constant: ", rate(given_A(held), reaction.TEXP, reaction.EXA));
    if (a == 0 && T3 == 0 && T1 == 0 && T2 == 0) return;  // Lindemann
    YamlMembers Troe{{"A", yaml_number(a)}, {"T3", yaml_number(T3)}, {"T1", yaml_number(T1)}};
    constexpr double none = 1.0E30;  // the term with T2 is 0
    if (T2 != none) Troe.emplace_back("T2", yaml_number(T2));
    line("  Troe: ", yaml_map(Troe));
  }

  void write_sticking(const HeldReaction& held) {
    line("  sticking-coefficient: ", rate(given_A(held), 0, 0));
    line("  Motz-Wise: true");
    const Side educts = sides_of(data_, held).first;
    const auto gas_species =
        std::count_if(educts.begin(), educts.end(), [&](const auto& e) { return e.first <= data_.NGAS; });
    if (gas_species > 1) line("  sticking-species: ", name_of(held.reaction->ISTICK));
  }

  void write_efficiencies(int partner) {
    const auto& row = at(data_.efficiencies.EFF, partner);
    YamlMembers members;
    for (int number = 1; number <= data_.NGAS; ++number) {
      if (at(row, number) != 1 && held_.holds(number))
        members.emplace_back(name_of(number), yaml_number(at(row, number)));
    }
    if (!members.empty()) text_ += yaml_map_lines("  efficiencies", members);
  }

  void write_coverage(const Reaction& reaction) {
    line("  coverage-dependencies:");
    line("    ", name_of(reaction.ICOV), ": ",
         yaml_map({{"a", yaml_number(reaction.VT4)},
                   {"m", yaml_number(reaction.VT5)},
                   {"E", temperature_text(reaction.VT6)}}));
  }

  const RunData& data_;
  const HeldMechanism& held_;
  std::string text_;
};

}  // namespace

std::string mechanism_yaml(const RunData& data, const Input& conditions, bool skip_unsupported,
                           Findings& findings) {
  const HeldMechanism held = held_mechanism(data, skip_unsupported, findings);
  if (data.NSURF > 0 && data.wall.SITE <= 0) {
    findings.error(whole(conditions), "the surface has no site density",
                   "the surface conditions give it behind SITE");
  }
  return findings.errors() > 0 ? std::string() : YamlWriter(data, held).write();
}

}  // namespace varpre
