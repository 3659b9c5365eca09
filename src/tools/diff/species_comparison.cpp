#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <span>
#include <string_view>

#include "textio/findings/findings.h"
#include "thermo/species.h"
#include "tools/diff/matching.h"

namespace varpre {
namespace {

// The largest deviation over temperature of a quantity, and its values there.
struct Worst {
  double size = 0;
  double T = 0;
  double before = 0;
  double after = 0;

  void see(double deviation, double T_, double before_, double after_) {
    const double size_ = std::isfinite(deviation) ? std::abs(deviation) : another_thing;
    if (size_ > size) *this = {size_, T_, before_, after_};
  }
  std::string at_T() const { return " at " + number_text(T) + " K"; }
};

// Where properties are compared: K, and its logarithm.
struct Temperature {
  double T;
  double log;
};
using Temperatures = std::array<Temperature, 45>;

const Temperatures& all_temperatures() {
  static const Temperatures list = [] {
    Temperatures all{};
    double T = 300;
    for (Temperature& one : all) {
      one = {T, std::log(T)};
      T += 50;
    }
    return all;
  }();
  return list;
}

// What an item of the file is, and its unit.
struct Label {
  const char* unit;
  const char* meaning;
};

// A species in both files: its name, its molar masses, kg/mol, and what differs.
struct SpeciesDifference {
  Difference difference;
  double M_before;
  double M_after;
};

void compare_item(SpeciesDifference& species, const Label& label, double before, double after) {
  add_if_changed(species.difference, label.meaning, before, after, label.unit);
}

// --- thermochemistry ---

struct Properties {
  double cp;  // J/(mol K)
  double h;   // J/mol
  double s;   // J/(mol K)
};
Properties properties(const StoredThermo& thermo, double M, double T, double log_T) {
  const auto& a = T < thermo.limits[1] ? thermo.lower : thermo.upper;
  return {M * ((((a[4] * T + a[3]) * T + a[2]) * T + a[1]) * T + a[0]),
          M * (((((a[4] / 5 * T + a[3] / 4) * T + a[2] / 3) * T + a[1] / 2) * T + a[0]) * T + a[5]),
          M * ((((a[4] / 4 * T + a[3] / 3) * T + a[2] / 2) * T + a[1]) * T + a[0] * log_T + a[6])};
}

void add_property(Difference& difference, const Worst& worst, const std::string& name,
                  const std::string& unit, const std::string& effect) {
  if (worst.size == 0) return;
  add(difference, change_of(name + worst.at_T(), worst.before, worst.after, unit),
      {worst.size, (effect.empty() ? name : effect) + worst.at_T()});
}

std::string shift_text(double before, double after, double scale, const std::string& name) {
  const double shift = (after - before) / scale;
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "%+.3g ", shift);
  return text.data() + name;
}

bool same_items(std::span<const double> before, std::span<const double> after) {
  return std::equal(before.begin(), before.end(), after.begin(), same);
}

// The coefficients themselves, where no property shows that they differ.
void add_coefficients(Difference& difference, std::span<const double> before, std::span<const double> after,
                      const std::string& letter, const std::string& range) {
  for (std::size_t k = 0; k < before.size(); ++k)
    add_if_changed(difference, message(letter, static_cast<int>(k) + 1, range), before[k], after[k]);
}

void compare_item(SpeciesDifference& species, const Label&, const StoredThermo& before,
                  const StoredThermo& after) {
  Difference& difference = species.difference;
  constexpr std::array limits{"lower limit less 20", "switch temperature", "upper limit"};
  for (std::size_t k = 0; k < limits.size(); ++k)
    add_if_changed(difference, limits[k], before.limits[k], after.limits[k], "K");
  if (same_items(before.lower, after.lower) && same_items(before.upper, after.upper)) return;
  Worst cp;
  Worst h;
  Worst s;
  for (const auto& [T, log_T] : all_temperatures()) {
    const Properties x = properties(before, species.M_before, T, log_T);
    const Properties y = properties(after, species.M_after, T, log_T);
    cp.see(2 * (y.cp - x.cp) / (std::abs(x.cp) + std::abs(y.cp) + 1E-300), T, x.cp, y.cp);
    h.see((y.h - x.h) / (gas_constant * T), T, x.h / 1000, y.h / 1000);
    s.see((y.s - x.s) / gas_constant, T, x.s, y.s);
  }
  add_property(difference, cp, "heat capacity", "J/(mol K)", relative_effect(cp.before, cp.after, "cp").text);
  add_property(difference, h, "enthalpy", "kJ/mol",
               "h " + shift_text(h.before, h.after, gas_constant * h.T / 1000, "RT"));
  add_property(difference, s, "entropy", "J/(mol K)",
               "s " + shift_text(s.before, s.after, gas_constant, "R"));
  if (cp.size + h.size + s.size > 0) return;
  add_coefficients(difference, before.lower, after.lower, "a", " below the switch temperature");
  add_coefficients(difference, before.upper, after.upper, "a", " from the switch temperature on");
}

// --- transport ---

// ln of a quantity at a temperature, whose logarithm is x.
double logarithm(const StoredFit& c, double x) {
  return c[0] + x * (c[1] + x * (c[2] + x * c[3]));
}

Worst worst_of(const StoredFit& before, const StoredFit& after) {
  Worst worst;
  for (const auto& [T, log_T] : all_temperatures()) {
    const double x = logarithm(before, log_T);
    const double y = logarithm(after, log_T);
    worst.see(y - x, T, x, y);
  }
  worst.before = std::exp(worst.before);
  worst.after = std::exp(worst.after);
  return worst;
}

void add_fit(Difference& difference, const std::string& name, const std::string& unit, const Worst& worst) {
  const std::string at_T = worst.at_T();
  difference.changes.push_back(change_of(name + at_T, worst.before, worst.after, unit));
  if (difference.changes.size() > 1 && worst.size <= difference.effect.size) return;
  const std::string ratio = ratio_text(worst.after / worst.before);
  difference.effect = {worst.size, name + (ratio.empty() ? "" : " " + ratio) + at_T};
}

void compare_item(SpeciesDifference& species, const Label& label, const StoredFit& before,
                  const StoredFit& after) {
  if (same_items(before, after)) return;
  const std::string name = label.meaning;
  const Worst worst = worst_of(before, after);
  if (worst.size > 0) return add_fit(species.difference, name, label.unit, worst);
  add_coefficients(species.difference, before, after, "c", " of " + name);
}

// A pair of species, as indices of those before, whose diffusion differs.
struct Pair {
  int i;
  int j;
  Worst worst;
};

std::size_t place(int i, int j) {
  const int low = std::min(i, j);
  const int high = std::max(i, j);
  return static_cast<std::size_t>(high * (high + 1) / 2 + low);
}

std::vector<Pair> changed_pairs(const Comparing& comparing) {
  const auto& before = comparing.before.transport.diffusion;
  const auto& after = comparing.after.transport.diffusion;
  const auto& matched = comparing.gas.after;
  std::vector<Pair> pairs;
  for (int i = 0; i < static_cast<int>(matched.size()); ++i) {
    for (int j = 0; j <= i; ++j) {
      const int i_after = matched[static_cast<std::size_t>(i)];
      const int j_after = matched[static_cast<std::size_t>(j)];
      if (i_after < 0 || j_after < 0) continue;
      const std::size_t here = place(i, j);
      const std::size_t there = place(i_after, j_after);
      if (here >= before.size() || there >= after.size() || same_items(before[here], after[there])) continue;
      pairs.push_back({i, j, worst_of(before[here], after[there])});
    }
  }
  return pairs;
}

// Tells each pair once, with the species that has most of those that are left: mostly it is the one that has
// changed.
void add_diffusion(std::vector<Pair> pairs, const std::string& unit,
                   std::vector<SpeciesDifference>& species) {
  std::stable_sort(pairs.begin(), pairs.end(),
                   [](const Pair& a, const Pair& b) { return a.worst.size > b.worst.size; });
  std::vector<std::vector<std::size_t>> of_species(species.size());  // the pairs of each, the largest first
  std::vector<int> left(species.size());                             // how many of them were not told
  const auto note = [&](int i, std::size_t pair) {
    of_species[static_cast<std::size_t>(i)].push_back(pair);
    ++left[static_cast<std::size_t>(i)];
  };
  for (std::size_t k = 0; k < pairs.size(); ++k) {
    note(pairs[k].i, k);
    if (pairs[k].j != pairs[k].i) note(pairs[k].j, k);
  }
  std::vector<bool> told(pairs.size());
  for (;;) {
    const auto most = std::max_element(left.begin(), left.end());
    if (most == left.end() || *most == 0) return;
    const auto i = static_cast<std::size_t>(most - left.begin());
    for (const std::size_t k : of_species[i]) {
      if (told[k]) continue;
      told[k] = true;
      const auto other = static_cast<std::size_t>(pairs[k].i + pairs[k].j) - i;
      --left[other];
      add_fit(species[i].difference, "diffusion times pressure with " + species[other].difference.which, unit,
              pairs[k].worst);
    }
    left[i] = 0;
  }
}

void compare_transport(const Comparing& comparing, std::vector<SpeciesDifference>& species) {
  const char* unit_of_diffusion = "";
  StoredTransport::fields([&](const char* name, auto member, const char* unit, const char* meaning) {
    if (std::string_view(name) == "diffusion") {
      unit_of_diffusion = unit;
      return;
    }
    const auto& before = comparing.before.transport.*member;
    const auto& after = comparing.after.transport.*member;
    for (std::size_t i = 0; i < species.size(); ++i) {
      const auto* x = item(before, static_cast<int>(i));
      const auto* y = item(after, comparing.gas.after[i]);
      if (x && y) compare_item(species[i], {unit, meaning}, *x, *y);
    }
  });
  add_diffusion(changed_pairs(comparing), unit_of_diffusion, species);
}

// --- a phase ---

double fraction(const StoredPhase& phase, int species, int element) {
  const auto* value =
      element < 0 ? nullptr
                  : item(phase.mass_fractions, species * static_cast<int>(phase.elements.size()) + element);
  return value ? *value : 0;
}

void compare_composition(const StoredPhase& before, const StoredPhase& after, const Matches& elements, int i,
                         int j, Difference& difference) {
  const auto see = [&](const ElementSymbol& symbol, int e, int f) {
    add_if_changed(difference, "mass fraction of " + std::string(trimmed(symbol.view())),
                   fraction(before, i, e), fraction(after, j, f));
  };
  for (std::size_t e = 0; e < before.elements.size(); ++e)
    see(before.elements[e], static_cast<int>(e), elements.after[e]);
  for (const int f : elements.only_after) see(after.elements[static_cast<std::size_t>(f)], -1, f);
}

Matches compare_elements(Comparing& comparing, const StoredPhase& before, const StoredPhase& after,
                         const std::string& kind) {
  Matches elements = match(names_of(before.elements), names_of(after.elements));
  for (std::size_t e = 0; e < before.elements.size(); ++e) {
    const std::string symbol(trimmed(before.elements[e].view()));
    const auto* x = item(before.element_masses, static_cast<int>(e));
    const auto* y = item(after.element_masses, elements.after[e]);
    if (elements.after[e] < 0) add_removed(comparing, kind, symbol);
    Difference difference{kind, symbol, {}, {}};
    if (x && y) add_if_changed(difference, "molar mass", *x, *y, "kg/mol");
    add(comparing, difference);
  }
  for (const int f : elements.only_after)
    add_added(comparing, kind, std::string(trimmed(after.elements[static_cast<std::size_t>(f)].view())));
  note_order(comparing, elements, kind == "element" ? "elements" : "elements of the surface");
  return elements;
}

Told flag_text(const int* flag) {
  static constexpr std::array<const char*, 4> flags{"none", "*", "+", ">"};
  if (!flag) return {};
  if (*flag < 0 || *flag > 3) return number_of(*flag);
  return flags.begin()[*flag];
}

void compare_flags(const StoreData& before, const StoreData& after, int i, int j, Difference& difference) {
  const int* x = item(before.flags, i);
  const int* y = item(after.flags, j);
  if (x && y && *x != *y)
    add(difference, {"flag", flag_text(x), flag_text(y), ""}, {another_thing, "another flag"});
}

// Compares what the species of a phase are; those of both files, in the order before.
std::vector<SpeciesDifference> compare_phase(Comparing& comparing, const StoredPhase& before,
                                             const StoredPhase& after, const Matches& matches,
                                             const std::string& kind) {
  const Matches elements =
      compare_elements(comparing, before, after, kind == "species" ? "element" : "element of the surface");
  const bool surface = &before == &comparing.before.surface;
  const int NG_before = surface ? static_cast<int>(comparing.before.gas.names.size()) : 0;
  const int NG_after = surface ? static_cast<int>(comparing.after.gas.names.size()) : 0;
  std::vector<SpeciesDifference> species;
  for (std::size_t k = 0; k < before.names.size(); ++k) {
    const int i = static_cast<int>(k);
    const int j = matches.after[k];
    const std::string name(trimmed(before.names[k].view()));
    const double* M = item(before.molar_masses, i);
    const double* M_after = item(after.molar_masses, j);
    species.push_back({{kind, name, {}, {}, i, j}, M ? *M : 0, M_after ? *M_after : 0});
    if (j < 0) {
      add_removed(comparing, kind, name, i);
      continue;
    }
    Difference& difference = species.back().difference;
    if (M && M_after) add_if_changed(difference, "molar mass", *M, *M_after, "kg/mol");
    compare_composition(before, after, elements, i, j, difference);
    const StoredThermo* x = item(before.thermo, i);
    const StoredThermo* y = item(after.thermo, j);
    if (x && y) compare_item(species.back(), {}, *x, *y);
    compare_flags(comparing.before, comparing.after, NG_before + i, NG_after + j, difference);
  }
  for (const int j : matches.only_after)
    add_added(comparing, kind, std::string(trimmed(after.names[static_cast<std::size_t>(j)].view())), j);
  note_order(comparing, matches, kind);
  return species;
}

}  // namespace

void compare_species(Comparing& comparing) {
  const StoreData& before = comparing.before;
  const StoreData& after = comparing.after;
  auto gas = compare_phase(comparing, before.gas, after.gas, comparing.gas, "species");
  compare_transport(comparing, gas);
  for (auto& species : gas) add(comparing, std::move(species.difference));
  auto surface =
      compare_phase(comparing, before.surface, after.surface, comparing.surface, "surface species");
  for (auto& species : surface) add(comparing, std::move(species.difference));
}

}  // namespace varpre
