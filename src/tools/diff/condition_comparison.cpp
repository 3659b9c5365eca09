#include <array>
#include <type_traits>

#include "files/options.h"
#include "tools/diff/matching.h"

namespace varpre {
namespace {

void compare_options(Comparing& comparing) {
  const OptionNames& names = comparing.after.two_dimensional.empty() ? NTOPT : N2TOPT;
  for (std::size_t k = 0; k < std::min(comparing.before.options.size(), comparing.after.options.size());
       ++k) {
    const int before = comparing.before.options[k];
    const int after = comparing.after.options[k];
    if (before == after) continue;
    const std::string name(trimmed(names[k]));
    Difference difference{"option", name.starts_with("---") ? "slot " + std::to_string(k + 1) : name, {}, {}};
    add(difference, change_of("", number_of(before), number_of(after)), {another_thing, ""});
    add(comparing, difference);
  }
}

std::vector<std::string> names_of(const std::vector<StoredValue>& values) {
  std::vector<std::string> names;
  names.reserve(values.size());
  for (const StoredValue& value : values) names.push_back(value.name);
  return names;
}

// Values under keywords; of a keyword that only one file has the other has none.
void compare_values(Comparing& comparing, const std::string& kind, const std::string& of,
                    const std::vector<StoredValue>& before, const std::vector<StoredValue>& after) {
  const Matches matches = match(names_of(before), names_of(after));
  const auto tell = [&](const StoredValue& value, const Told& x, const Told& y, const Effect& effect) {
    const std::string name = value.name.empty() ? "a place that is not used" : value.name;
    const bool says_more = !value.name.empty() && !value.meaning.starts_with(value.name);
    Difference difference{kind, of + name, {}, {}};
    add(difference, {says_more ? std::string(value.meaning) : "", x, y, std::string(value.unit)}, effect);
    add(comparing, difference);
  };
  for (std::size_t k = 0; k < before.size(); ++k) {
    const double x = before[k].value;
    const StoredValue* y = item(after, matches.after[k]);
    if (!y) tell(before[k], x, {}, {another_thing, "removed"});
    if (y && !same(x, y->value)) tell(before[k], x, y->value, relative_effect(x, y->value));
  }
  for (const int k : matches.only_after) {
    const StoredValue& value = after[static_cast<std::size_t>(k)];
    tell(value, {}, value.value, {another_thing, "added"});
  }
  note_order(comparing, matches, kind + "s");
}

void compare_fractions(Comparing& comparing, const std::string& kind,
                       const std::vector<SpeciesName>& names_before,
                       const std::vector<SpeciesName>& names_after, const std::vector<double>& before,
                       const std::vector<double>& after, const Matches& species) {
  const auto see = [&](const SpeciesName& name, const double* x, const double* y) {
    Difference difference{kind, std::string(trimmed(name.view())), {}, {}};
    add_if_changed(difference, "mole fraction", x ? *x : 0, y ? *y : 0);
    add(comparing, difference);
  };
  for (std::size_t k = 0; k < names_before.size(); ++k)
    see(names_before[k], item(before, static_cast<int>(k)), item(after, species.after[k]));
  for (const int k : species.only_after)
    see(names_after[static_cast<std::size_t>(k)], nullptr, item(after, k));
}

void compare_mixture(Comparing& comparing, const StoredMixture& before, const StoredMixture& after,
                     const std::string& kind) {
  StoredMixture::fields([&](const char* name, auto member, const char* unit, const char* meaning) {
    if constexpr (std::is_same_v<decltype(member), double StoredMixture::*>) {
      Difference difference{kind, name, {}, {}};
      add_if_changed(difference, meaning, before.*member, after.*member, unit);
      add(comparing, difference);
    } else {
      const bool gas = member == &StoredMixture::gas;
      const auto phase = gas ? &StoreData::gas : &StoreData::surface;
      compare_fractions(comparing, kind, (comparing.before.*phase).names, (comparing.after.*phase).names,
                        before.*member, after.*member, gas ? comparing.gas : comparing.surface);
    }
  });
}

void compare_mixtures(Comparing& comparing) {
  constexpr std::array kinds{"left mixture", "right mixture"};
  for (std::size_t k = 0; k < std::min(comparing.before.mixtures.size(), comparing.after.mixtures.size());
       ++k)
    compare_mixture(comparing, comparing.before.mixtures[k], comparing.after.mixtures[k], kinds.at(k));
}

void compare_particles(Comparing& comparing) {
  const std::string kind = "particle";
  if (!comparing.before.particles && !comparing.after.particles) return;
  if (!comparing.after.particles) return add_removed(comparing, kind, "data");
  if (!comparing.before.particles) return add_added(comparing, kind, "data");
  const StoredParticles& before = *comparing.before.particles;
  const StoredParticles& after = *comparing.after.particles;
  Difference grid{kind, "grid size", {}, {}};
  add_if_changed(grid, "", number_of(before.grid), number_of(after.grid));
  add(comparing, grid);
  const Matches species = match(names_of(before.names), names_of(after.names));
  for (std::size_t k = 0; k < before.names.size(); ++k) {
    const std::string name(trimmed(before.names[k].view()));
    const auto* x = item(before.data, static_cast<int>(k));
    const auto* y = item(after.data, species.after[k]);
    if (species.after[k] < 0) add_removed(comparing, kind, name);
    if (x && y) compare_values(comparing, kind, name + " ", *x, *y);
  }
  for (const int k : species.only_after)
    add_added(comparing, kind, std::string(trimmed(after.names[static_cast<std::size_t>(k)].view())));
  note_order(comparing, species, "particle species");
  compare_fractions(comparing, kind + " fraction", before.names, after.names, before.fractions,
                    after.fractions, species);
}

}  // namespace

void compare_conditions(Comparing& comparing) {
  const StoreData& before = comparing.before;
  const StoreData& after = comparing.after;
  compare_options(comparing);
  compare_mixtures(comparing);
  compare_values(comparing, "flame condition", "", before.flame_conditions, after.flame_conditions);
  compare_values(comparing, "surface condition", "", before.surface_conditions, after.surface_conditions);
  compare_values(comparing, "two-dimensional", "", before.two_dimensional, after.two_dimensional);
  compare_particles(comparing);
}

}  // namespace varpre
