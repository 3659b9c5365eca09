#include <algorithm>
#include <span>
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

template <class Reaction>
std::vector<std::string> equations(const std::vector<Reaction>& reactions, std::size_t reactants,
                                   const NumberedNames& name) {
  std::vector<std::string> list;
  list.reserve(reactions.size());
  for (const Reaction& r : reactions) list.push_back(equation_of(r.species, reactants, name));
  return list;
}

void compare_rates(const StoredComplexReaction& x, const StoredComplexReaction& y, Difference& difference) {
  for (std::size_t k = 0; k < x.orders.size(); ++k) {
    add_if_changed(difference, "order " + std::to_string(k + 1), x.orders[k], y.orders[k]);
  }
  for (std::size_t k = 0; k < x.coefficients.size(); ++k) {
    add_if_changed(difference, "coefficient " + std::to_string(k + 1), x.coefficients[k], y.coefficients[k]);
  }
  const std::size_t others = difference.changes.size();
  StoredComplexReaction::fields([&](const char* name, auto member, const char* unit, const char*) {
    if constexpr (std::is_same_v<decltype(member), double StoredComplexReaction::*>)
      add_change(difference, name, unit, x.*member, y.*member);
  });
  if (difference.changes.size() > others)
    difference.effect = larger(difference.effect, rate_effect("rate", {x.A, x.b, x.E}, {y.A, y.b, y.E}));
}
void compare_rates(const StoredPhotoReaction& x, const StoredPhotoReaction& y, Difference& difference) {
  if (!same(x.rate, y.rate))
    add(difference, change_of("rate", x.rate, y.rate), relative_effect(x.rate, y.rate, "rate"));
}

template <class Reaction>
Difference difference_of(const Reaction& x, const Reaction& y, const std::string& kind,
                         const std::string& equation) {
  Difference difference{kind, equation, {}, {}};
  compare_rates(x, y, difference);
  return difference;
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
  const auto& before = comparing.before.*member;
  const auto& after = comparing.after.*member;
  const auto names = equations(before, reactants, {comparing.before, StoredPhaseOf::surface});
  const auto names_after = equations(after, reactants, {comparing.after, StoredPhaseOf::surface});
  const Matches matches = match_nearest(names, names_after, [&](std::size_t i, std::size_t j) {
    const Difference difference = difference_of(before[i], after[j], kind, names[i]);
    return difference.changes.empty() ? -1 : difference.effect.size;
  });
  for (std::size_t i = 0; i < before.size(); ++i) {
    const auto* y = item(after, matches.after[i]);
    if (y) add(comparing, difference_of(before[i], *y, kind, names[i]));
    if (!y) add_removed(comparing, kind, names[i]);
  }
  for (const int j : matches.only_after) add_added(comparing, kind, names_after[static_cast<std::size_t>(j)]);
  if (!matches.same_order()) comparing.notes.push_back("the " + kind + "s stand in another order");
}

}  // namespace

void compare_global_reactions(Comparing& comparing) {
  compare_global(comparing, &StoreData::complex_reactions, 3, "complex reaction");
  compare_global(comparing, &StoreData::photo_reactions, 1, "photo reaction");
}

}  // namespace varpre
