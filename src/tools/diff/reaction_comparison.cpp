#include <array>
#include <map>
#include <type_traits>

#include "files/partners.h"
#include "tools/diff/mechanisms.h"
#include "tools/diff/rate_effect.h"

namespace varpre {
namespace {

// Numbers of species are compared by the species they mean.
void add_species(Difference& difference, const std::string& name, const std::string& before,
                 const std::string& after) {
  if (before != after) difference.changes.push_back({name, before, after, ""});
}

// What differs in the rate of two reactions.
void add_changes(const Mechanisms& both, int i, int j, const std::string& prefix, Difference& difference) {
  using R = StoredReaction;
  const R& x = both.before.reaction(i);
  const R& y = both.after.reaction(j);
  R::fields([&](const char* name, auto member, const char* unit, const char*) {
    if constexpr (std::is_same_v<decltype(member), int R::*>) {
      if (member == &R::form)
        return add_change(difference, prefix + name, unit, number_of(x.form), number_of(y.form));
      add_species(difference, prefix + name, both.before.name_of(x.*member), both.after.name_of(y.*member));
    } else if constexpr (std::is_same_v<decltype(member), double R::*>) {
      add_change(difference, prefix + name, unit, x.*member, y.*member);
    } else if constexpr (std::is_same_v<decltype(member), decltype(&R::values)>) {
      for (std::size_t k = 0; k < x.values.size(); ++k)
        add_change(difference, prefix + "VT" + std::to_string(k + 4), unit, x.values[k], y.values[k]);
    } else if constexpr (std::is_same_v<decltype(member), decltype(&R::falloff)>) {
      for (std::size_t k = 0; k < x.falloff.size(); ++k)
        add_change(difference, prefix + "FALL" + std::to_string(k + 1), k == 2 ? "J/mol" : unit, x.falloff[k],
                   y.falloff[k]);
    } else {
      static_assert(std::is_same_v<decltype(member), decltype(&R::species)>);  // they are the equation
    }
  });
}

// The code of a pair means something beside its neighbours only; in another order what is left is the mark.
void add_pair_code(const Mechanisms& both, int i, int j, bool same_order, const std::string& prefix,
                   Difference& difference) {
  const int* x = item(both.before.mechanism.pair_codes, i);
  const int* y = item(both.after.mechanism.pair_codes, j);
  if (!x || !y || *x == *y || (!same_order && (*x < 0) == (*y < 0))) return;
  add(difference, change_of(prefix + "IREVER", number_of(*x), number_of(*y)),
      {another_thing, (*x < 0) != (*y < 0) ? "another mark" : "another pair code"});
}

void add_reaction(const Mechanisms& both, int i, int j, bool same_order, const std::string& prefix,
                  Difference& difference) {
  const std::size_t changes = difference.changes.size();
  add_changes(both, i, j, prefix, difference);
  if (difference.changes.size() > changes) {
    Effect effect = effect_of(both, i, j);
    if (!effect.text.empty()) effect.text = prefix + effect.text;
    difference.effect = changes == 0 ? effect : larger(difference.effect, effect);
  }
  add_pair_code(both, i, j, same_order, prefix, difference);
}

void compare_matched(const Mechanisms& both, const Matches& matches, const std::string& kind,
                     Comparing& comparing) {
  const bool same_order =
      matches.same_order() && matches.only_after.empty() && both.before.count() == both.after.count();
  for (int i = 0; i < both.before.count(); ++i) {
    const int j = matches.after[static_cast<std::size_t>(i)];
    const int reverse = both.before.reverse(i);
    const int reverse_after = reverse < 0 ? -1 : matches.after[static_cast<std::size_t>(reverse)];
    const bool pair = reverse >= 0 && (j < 0 ? reverse_after < 0
                                             : reverse_after >= 0 && reverse_after == both.after.reverse(j));
    const std::string equation = both.before.equation(i, pair);
    if (j < 0) {
      add_removed(comparing, kind, equation, i);
    } else {
      Difference difference{kind, equation, {}, {}, i, j};
      add_reaction(both, i, j, same_order, "", difference);
      if (pair) add_reaction(both, reverse, reverse_after, same_order, "reverse ", difference);
      add(comparing, difference);
    }
    if (pair) ++i;
  }
  for (std::size_t k = 0; k < matches.only_after.size(); ++k) {
    const int j = matches.only_after[k];
    const bool pair = k + 1 < matches.only_after.size() && both.after.reverse(j) == matches.only_after[k + 1];
    add_added(comparing, kind, both.after.equation(j, pair), j);
    if (pair) ++k;
  }
  note_order(comparing, matches, kind + "s");
}

// Collision partners that take each other's place, and the reactions before that have them.
using UsedPartners = std::map<std::array<int, 2>, std::vector<int>>;

// Those of matched reactions, then those that no reaction has.
UsedPartners used_partners(const Mechanisms& both, const Matches& matches) {
  UsedPartners used;
  std::array<bool, partner_count + 1> known_before{};
  std::array<bool, partner_count + 1> known_after{};
  for (int i = 0; i < both.before.count(); ++i) {
    const int j = matches.after[static_cast<std::size_t>(i)];
    if (j < 0 || both.before.is_reverse[static_cast<std::size_t>(i)] || both.before.partner(i) == 0) continue;
    used[{both.before.partner(i), both.after.partner(j)}].push_back(i);
    known_before.at(static_cast<std::size_t>(both.before.partner(i))) = true;
    known_after.at(static_cast<std::size_t>(both.after.partner(j))) = true;
  }
  for (int c = 1; c <= partner_count; ++c) {
    const auto place = static_cast<std::size_t>(c);
    if (!known_before.at(place) && !known_after.at(place)) used[{c, c}];
  }
  return used;
}

std::string partner_text(const Mechanisms& both, const std::array<int, 2>& partners,
                         const std::vector<int>& reactions) {
  const auto name = [](int c) { return std::string(MCOLLI[static_cast<std::size_t>(c - 1)]); };
  const std::string names =
      name(partners[0]) + (partners[0] == partners[1] ? "" : " -> " + name(partners[1]));
  if (reactions.empty()) return names + ", in no reaction";
  if (reactions.size() > 1) return names + ", in " + std::to_string(reactions.size()) + " reactions";
  return names + ", in " + both.before.equation(reactions[0], both.before.reverse(reactions[0]) >= 0);
}

// Collision partners by their efficiencies.
void compare_partners(const Mechanisms& both, const Matches& matches, Comparing& comparing) {
  for (const auto& [partners, reactions] : used_partners(both, matches)) {
    Difference difference{"collision partner", partner_text(both, partners, reactions), {}, {}};
    for_each_efficiency(both, partners[0], partners[1], [&](int species, double e, double f) {
      const std::string of = "efficiency of " + both.before.name(species + 1);
      add(difference, change_of(of, e, f), relative_effect(e, f, of));
    });
    add(comparing, std::move(difference));
  }
}

std::vector<int> places_before(const Mechanisms& both, const Matches& matches) {
  std::vector<int> before(static_cast<std::size_t>(both.after.count()), -1);
  for (int i = 0; i < both.before.count(); ++i) {
    const int j = matches.after[static_cast<std::size_t>(i)];
    if (j >= 0) before[static_cast<std::size_t>(j)] = i;
  }
  return before;
}

void compare_mechanism(Comparing& comparing, StoredPhaseOf phase, const std::string& kind) {
  const Mechanisms both{{comparing.before, phase}, {comparing.after, phase}, comparing.gas};
  const Matches matches = match_reactions(both);
  const bool gas = phase == StoredPhaseOf::gas;
  (gas ? comparing.gas_reactions : comparing.surface_reactions) = places_before(both, matches);
  compare_matched(both, matches, kind, comparing);
  if (gas) compare_partners(both, matches, comparing);
  compare_pointers(both, matches, kind, comparing);
  const StoredMechanism& x = both.before.mechanism;
  const StoredMechanism& y = both.after.mechanism;
  Difference difference{kind + "s", "all", {}, {}};
  add_if_changed(difference, "number of inert species", x.inert, y.inert);
  if (!gas) {
    add_if_changed(difference, "number of third bodies", x.partners, y.partners);
  } else if (x.partners != y.partners) {
    comparing.notes.push_back("the " + kind + "s have another number of third bodies: " +
                              std::to_string(x.partners) + " -> " + std::to_string(y.partners));
  }
  add(comparing, difference);
}

}  // namespace

void compare_reactions(Comparing& comparing) {
  compare_mechanism(comparing, StoredPhaseOf::gas, "reaction");
  compare_mechanism(comparing, StoredPhaseOf::surface, "surface reaction");
  compare_global_reactions(comparing);
}

}  // namespace varpre
