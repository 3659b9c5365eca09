#include <algorithm>
#include <array>
#include <span>
#include <tuple>
#include <type_traits>

#include "files/store_equations.h"
#include "tools/diff/matching.h"
#include "tools/diff/rate_effect.h"

namespace varpre {
namespace {

std::string equation_of(std::span<const int> species, std::size_t reactants, const NumberedNames& name) {
  std::string text;
  for (std::size_t k = 0; k < species.size(); ++k) {
    if (k == reactants) text += " > ";
    if (species[k] == 0) continue;
    if (!text.empty() && !text.ends_with("> ")) text += " + ";
    text += name(species[k]);
  }
  return text;
}

std::string name_in(int number, const NumberedNames& name) {
  return number == 0 ? "" : name(number);
}

// The species of both sides, whatever the slots that they stand in.
std::string key_of(std::span<const int> species, std::size_t reactants, const NumberedNames& name) {
  std::vector<std::string> names;
  for (const int number : species) names.push_back(name_in(number, name));
  std::sort(names.begin(), names.begin() + static_cast<std::ptrdiff_t>(reactants));
  std::sort(names.begin() + static_cast<std::ptrdiff_t>(reactants), names.end());
  std::string key;
  for (const std::string& one : names) key += one + " ";
  return key;
}

// What a complex reaction says of a species in a slot.
struct Slot {
  std::string name;
  double coefficient = 0;
  double order = 0;

  bool operator<(const Slot& other) const {
    return std::tie(name, coefficient, order) < std::tie(other.name, other.coefficient, other.order);
  }
};
using Slots = std::array<Slot, 6>;

// On each side in the order of their names.
Slots slots_of(const StoredComplexReaction& r, const NumberedNames& name) {
  Slots slots;
  for (std::size_t k = 0; k < slots.size(); ++k)
    slots.at(k) = {name_in(r.species.at(k), name), r.coefficients.at(k), r.orders.at(k)};
  std::sort(slots.begin(), slots.begin() + 3);
  std::sort(slots.begin() + 3, slots.end());
  return slots;
}

// The reactions of one of the files.
template <class Reaction>
struct GlobalSide {
  const std::vector<Reaction>& reactions;
  NumberedNames name;
  std::vector<std::string> equations;
  std::vector<std::string> keys;

  GlobalSide(const StoreData& data, std::vector<Reaction> StoreData::*member, std::size_t reactants)
      : reactions(data.*member), name(data, StoredPhaseOf::surface) {
    for (const Reaction& r : reactions) {
      equations.push_back(equation_of(r.species, reactants, name));
      keys.push_back(key_of(r.species, reactants, name));
    }
  }
};

using ComplexSide = GlobalSide<StoredComplexReaction>;
void compare_rates(const ComplexSide& before, std::size_t i, const ComplexSide& after, std::size_t j,
                   Difference& difference) {
  const StoredComplexReaction& x = before.reactions[i];
  const StoredComplexReaction& y = after.reactions[j];
  const Slots slots = slots_of(x, before.name);
  const Slots slots_after = slots_of(y, after.name);
  for (std::size_t k = 0; k < slots.size(); ++k) {
    const auto& [name, coefficient, order] = slots.at(k);
    const std::string of = name.empty() ? " of an empty slot" : " of " + name;
    add_if_changed(difference, "order" + of, order, slots_after.at(k).order);
    add_if_changed(difference, "coefficient" + of, coefficient, slots_after.at(k).coefficient);
  }
  const std::size_t others = difference.changes.size();
  StoredComplexReaction::fields([&](const char* name, auto member, const char* unit, const char*) {
    if constexpr (std::is_same_v<decltype(member), double StoredComplexReaction::*>)
      add_change(difference, name, unit, x.*member, y.*member);
  });
  if (difference.changes.size() > others)
    difference.effect = larger(difference.effect, rate_effect("rate", {x.A, x.b, x.E}, {y.A, y.b, y.E}));
}
using PhotoSide = GlobalSide<StoredPhotoReaction>;
void compare_rates(const PhotoSide& before, std::size_t i, const PhotoSide& after, std::size_t j,
                   Difference& difference) {
  const double x = before.reactions[i].rate;
  const double y = after.reactions[j].rate;
  if (!same(x, y)) add(difference, change_of("rate", x, y), relative_effect(x, y, "rate"));
}

// Of reactions of one equation those that are nearest to each other are the same.
template <class Distance>
Matches match_nearest(const std::vector<std::string>& before, const std::vector<std::string>& after,
                      Distance distance) {
  struct Pair {
    double apart;
    std::size_t i;
    std::size_t j;
  };
  std::vector<Pair> pairs;
  for (std::size_t i = 0; i < before.size(); ++i) {
    for (std::size_t j = 0; j < after.size(); ++j) {
      if (before[i] == after[j]) pairs.push_back({distance(i, j), i, j});
    }
  }
  std::stable_sort(pairs.begin(), pairs.end(),
                   [](const Pair& a, const Pair& b) { return a.apart < b.apart; });
  Matches matches{std::vector<int>(before.size(), -1), {}};
  std::vector<bool> taken(after.size());
  for (const auto& [apart, i, j] : pairs) {
    if (matches.after[i] >= 0 || taken[j]) continue;
    matches.after[i] = static_cast<int>(j);
    taken[j] = true;
  }
  for (std::size_t j = 0; j < after.size(); ++j) {
    if (!taken[j]) matches.only_after.push_back(static_cast<int>(j));
  }
  return matches;
}

template <class Reaction>
void compare_global(Comparing& comparing, std::vector<Reaction> StoreData::*member, std::size_t reactants,
                    const std::string& kind) {
  const GlobalSide<Reaction> before(comparing.before, member, reactants);
  const GlobalSide<Reaction> after(comparing.after, member, reactants);
  const auto difference_of = [&](std::size_t i, std::size_t j) {
    Difference difference{kind, before.equations[i], {}, {}};
    compare_rates(before, i, after, j, difference);
    return difference;
  };
  const Matches matches = match_nearest(before.keys, after.keys, [&](std::size_t i, std::size_t j) {
    const Difference difference = difference_of(i, j);
    return difference.changes.empty() ? -1 : difference.effect.size;
  });
  for (std::size_t i = 0; i < before.reactions.size(); ++i) {
    const int j = matches.after[i];
    if (j >= 0) add(comparing, difference_of(i, static_cast<std::size_t>(j)));
    if (j < 0) add_removed(comparing, kind, before.equations[i]);
  }
  for (const int j : matches.only_after)
    add_added(comparing, kind, after.equations[static_cast<std::size_t>(j)]);
  note_order(comparing, matches, kind + "s");
}

}  // namespace

void compare_global_reactions(Comparing& comparing) {
  compare_global(comparing, &StoreData::complex_reactions, 3, "complex reaction");
  compare_global(comparing, &StoreData::photo_reactions, 1, "photo reaction");
}

}  // namespace varpre
