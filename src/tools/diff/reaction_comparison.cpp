#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <map>
#include <span>
#include <type_traits>

#include "files/partners.h"
#include "files/store_equations.h"
#include "mechanism/reaction.h"
#include "tools/diff/matching.h"

namespace varpre {
namespace {

// --- rates ---

struct Rate {
  double A;
  double b;
  double E;
};

double logarithm(const Rate& rate, double T) {
  return std::log(std::abs(rate.A)) + rate.b * std::log(T) - rate.E / (gas_constant * T);
}

std::string at_temperature(double T) {
  return " at " + number_text(T) + " K";
}

// The largest factor between two quantities over temperature, told by their logarithms.
template <class Before, class After>
Effect largest_factor(const std::string& name, Before before, After after) {
  constexpr double rounding = 1E-9;
  double largest = 0;
  double T_largest = 0;
  bool constant = true;
  for (int T = 300; T <= 2500; T += 50) {
    const double factor = after(T) - before(T);
    if (!std::isfinite(factor)) return {another_thing, name + " cannot be told"};
    constant = constant && (T == 300 || std::abs(factor - largest) < rounding);
    if (std::abs(factor) <= std::abs(largest) + rounding) continue;
    largest = factor;
    T_largest = T;
  }
  const std::string ratio = ratio_text(std::exp(largest));
  if (ratio.empty()) return {std::abs(largest), name};
  return {std::abs(largest), name + " " + ratio + (constant ? "" : at_temperature(T_largest))};
}

Effect rate_effect(const std::string& name, const Rate& before, const Rate& after) {
  if (before.A == 0 && after.A == 0) return {};
  if (before.A == after.A && before.b == after.b && before.E == after.E) return {};
  if (before.A == 0) return {another_thing, name + " was 0"};
  if (after.A == 0) return {another_thing, name + " is 0 now"};
  if ((before.A < 0) != (after.A < 0)) return {another_thing, name + " has another sign"};
  return largest_factor(
      name, [&](double T) { return logarithm(before, T); }, [&](double T) { return logarithm(after, T); });
}

// ln of the broadening factor of a falloff reaction in its centre.
double broadening(const std::array<double, 8>& fall, double T) {
  const double a = fall[3];
  const double centre =
      (1 - a) * std::exp(-T / fall[4]) + a * std::exp(-T / fall[5]) + std::exp(-fall[6] / T);
  return std::log(std::max(centre, 1E-30));
}

Effect falloff_effect(const StoredReaction& before, const StoredReaction& after) {
  const auto low = [](const StoredReaction& r) { return Rate{r.falloff[0], r.falloff[1], r.falloff[2]}; };
  const Effect limit = rate_effect("low-pressure rate", low(before), low(after));
  if (std::equal(before.falloff.begin() + 3, before.falloff.end(), after.falloff.begin() + 3, same))
    return limit;
  const Effect centre = largest_factor(
      "broadening", [&](double T) { return broadening(before.falloff, T); },
      [&](double T) { return broadening(after.falloff, T); });
  return centre.size > limit.size ? centre : limit;
}

Effect larger(const Effect& a, const Effect& b) {
  return b.size > a.size ? b : a;
}

// --- a mechanism of one of the files ---

struct Side {
  const StoreData& data;
  const StoredMechanism& mechanism;
  StoredPhaseOf phase;
  NumberedNames name{data, phase};
  std::vector<Sides> sides;
  std::vector<int> reverses;
  std::vector<bool> is_reverse;
  std::vector<std::string> keys;

  Side(const StoreData& data_, StoredPhaseOf phase_)
      : data(data_),
        mechanism(phase_ == StoredPhaseOf::gas ? data_.gas_mechanism : data_.surface_mechanism),
        phase(phase_) {
    for (const StoredReaction& r : mechanism.reactions) sides.push_back(sides_of(r, phase));
    reverses = reverses_of(sides);
    is_reverse.resize(sides.size());
    for (const int r : reverses) {
      if (r >= 0) is_reverse[static_cast<std::size_t>(r)] = true;
    }
    for (int i = 0; i < count(); ++i) keys.push_back(key_of(i));
  }

  int count() const { return static_cast<int>(sides.size()); }
  const StoredReaction& reaction(int i) const { return mechanism.reactions[static_cast<std::size_t>(i)]; }
  int reverse(int i) const { return reverses[static_cast<std::size_t>(i)]; }

  // A collision partner of the gas phase, from 1; 0: the reaction has none.
  int partner(int i) const {
    if (phase == StoredPhaseOf::surface) return 0;
    for (const int number : sides[static_cast<std::size_t>(i)][0]) {
      if (number > name.species_count()) return number - name.species_count();
    }
    return 0;
  }
  std::string name_of(int number) const { return number == 0 ? "none" : name(number); }

  // The equation without the names of the partners and the order in which species stand.
  std::string key_of(int i) const {
    std::string text;
    for (const auto& numbers : sides[static_cast<std::size_t>(i)]) {
      std::vector<std::string> names;
      for (const int n : numbers) {
        const bool is_partner = phase == StoredPhaseOf::gas && n > name.species_count();
        names.push_back(!is_partner ? name(n) : n - name.species_count() == partner(i) ? "M" : "another M");
      }
      std::sort(names.begin(), names.end());
      for (const std::string& one : names) text += one + " + ";
      text += "> ";
    }
    return text;
  }
  std::string equation(int i, bool with_reverse) const {
    const Sides& both = sides[static_cast<std::size_t>(i)];
    return side_text(both[0], name) + (with_reverse ? " = " : " > ") + side_text(both[1], name);
  }
};

// What is compared of two reactions.
struct Mechanisms {
  Side before;
  Side after;
  const Matches& gas;
};

const std::vector<double>* efficiencies(const Side& side, int partner) {
  return partner == 0 ? nullptr : item(side.data.efficiencies, partner - 1);
}

// Calls see(species before, efficiency before, efficiency after) for those of two partners that differ.
template <class See>
void for_each_efficiency(const Mechanisms& both, int before, int after, See see) {
  const auto* x = efficiencies(both.before, before);
  const auto* y = efficiencies(both.after, after);
  if (!x || !y) return;
  for (std::size_t i = 0; i < both.gas.after.size(); ++i) {
    const double* e = item(*x, static_cast<int>(i));
    const double* f = item(*y, both.gas.after[i]);
    if (e && f && !same(*e, *f)) see(static_cast<int>(i), *e, *f);
  }
}

// What differs in the rate of two reactions.
std::string element_name(const std::string& name, std::size_t k) {
  return name == "values" ? "VT" + std::to_string(k + 4) : "FALL" + std::to_string(k + 1);
}

void add_value(Difference& difference, const std::string& name, const std::string& unit, double before,
               double after) {
  if (!same(before, after)) difference.changes.push_back(change_of(name, before, after, unit));
}
void add_value(Difference& difference, const std::string& name, const std::string& unit, int before,
               int after) {
  if (before != after) difference.changes.push_back(change_of(name, before, after, unit));
}
template <std::size_t N>
void add_value(Difference& difference, const std::string& name, const std::string& unit,
               const std::array<double, N>& before, const std::array<double, N>& after) {
  for (std::size_t k = 0; k < N; ++k) add_value(difference, element_name(name, k), unit, before[k], after[k]);
}
// Numbers of species are compared by the species they mean.
void add_species(Difference& difference, const std::string& name, const std::string& before,
                 const std::string& after) {
  if (before != after) difference.changes.push_back({name, before, after, ""});
}

// The size of the effect of all that a reaction's record holds.
Effect effect_of(const Mechanisms& both, int i, int j) {
  const StoredReaction& x = both.before.reaction(i);
  const StoredReaction& y = both.after.reaction(j);
  if (x.form != y.form) return {another_thing, "another rate form"};
  if (both.before.name_of(x.sticking) != both.after.name_of(y.sticking))
    return {another_thing, "another species sticks"};
  if (both.before.name_of(x.coverage) != both.after.name_of(y.coverage))
    return {another_thing, "the coverage of another species"};
  Effect effect;
  for (std::size_t k = 0; k < x.values.size(); ++k) {
    const std::string name = "VT" + std::to_string(k + 4);
    effect = larger(effect, relative_effect(x.values[k], y.values[k], name));
  }
  if (x.falloff != y.falloff) effect = larger(effect, falloff_effect(x, y));
  const std::string name = std::abs(x.form) == falloff ? "high-pressure rate" : "rate";
  return larger(effect, rate_effect(name, {x.A, x.b, x.E}, {y.A, y.b, y.E}));
}

void add_changes(const Mechanisms& both, int i, int j, const std::string& prefix, Difference& difference) {
  const StoredReaction& x = both.before.reaction(i);
  const StoredReaction& y = both.after.reaction(j);
  StoredReaction::fields([&](const std::string& name, auto member, const char* unit, const char*) {
    if constexpr (std::is_same_v<decltype(member), int StoredReaction::*>) {
      if (member != &StoredReaction::form)
        return add_species(difference, prefix + name, both.before.name_of(x.*member),
                           both.after.name_of(y.*member));
    }
    if constexpr (!std::is_same_v<decltype(member), std::array<int, 12> StoredReaction::*>)
      add_value(difference, prefix + name, unit, x.*member, y.*member);
  });
}

// --- which reaction is which ---

// How far two reactions of one equation are from each other; 0: nothing differs.
double distance(const Mechanisms& both, int i, int j) {
  double size = std::min(effect_of(both, i, j).size, 1000.0);
  for_each_efficiency(both, both.before.partner(i), both.after.partner(j), [&](int, double e, double f) {
    size = std::max(size, std::min(relative_effect(e, f).size, 1.0));
  });
  return size;
}

class ReactionMatching {
 public:
  explicit ReactionMatching(const Mechanisms& both)
      : both_(both),
        after_(static_cast<std::size_t>(both.before.count()), -1),
        taken_(static_cast<std::size_t>(both.after.count())) {}

  Matches match() {
    match_all(true);
    match_all(false);
    Matches matches{after_, {}};
    for (std::size_t j = 0; j < taken_.size(); ++j) {
      if (!taken_[j]) matches.only_after.push_back(static_cast<int>(j));
    }
    return matches;
  }

 private:
  struct Group {
    std::vector<int> before;
    std::vector<int> after;
  };

  // Those of one equation; first pairs of forward and reverse, then what is left, one by one.
  void match_all(bool pairs) {
    std::map<std::string, Group> groups;
    for (int i = 0; i < both_.before.count(); ++i) {
      if (after_[static_cast<std::size_t>(i)] < 0 && (!pairs || both_.before.reverse(i) >= 0))
        groups[both_.before.keys[static_cast<std::size_t>(i)]].before.push_back(i);
    }
    for (int j = 0; j < both_.after.count(); ++j) {
      if (!taken_[static_cast<std::size_t>(j)] && (!pairs || both_.after.reverse(j) >= 0))
        groups[both_.after.keys[static_cast<std::size_t>(j)]].after.push_back(j);
    }
    for (auto& [key, group] : groups) match_group(group, pairs);
  }

  void match_group(Group& group, bool pairs) {
    if (group.before.size() == 1 && group.after.size() == 1)
      return take(group.before[0], group.after[0], pairs);
    take_equal(group, pairs);
    constexpr std::size_t most = 10000;  // of more duplicates the first is the first
    if (group.before.size() * group.after.size() > most) {
      for (std::size_t k = 0; k < std::min(group.before.size(), group.after.size()); ++k)
        take(group.before[k], group.after[k], pairs);
      return;
    }
    while (!group.before.empty() && !group.after.empty()) take_nearest(group, pairs);
  }

  void take_equal(Group& group, bool pairs) {
    std::erase_if(group.before, [&](int i) {
      const auto found =
          std::find_if(group.after.begin(), group.after.end(), [&](int j) { return is_equal(i, j, pairs); });
      if (found == group.after.end()) return false;
      take(i, *found, pairs);
      group.after.erase(found);
      return true;
    });
  }

  void take_nearest(Group& group, bool pairs) {
    double least = another_thing;
    std::size_t a = 0;
    std::size_t b = 0;
    for (std::size_t k = 0; k < group.before.size(); ++k) {
      for (std::size_t l = 0; l < group.after.size(); ++l) {
        const double size = apart(group.before[k], group.after[l], pairs);
        if (size >= least) continue;
        least = size;
        a = k;
        b = l;
      }
    }
    take(group.before[a], group.after[b], pairs);
    group.before.erase(group.before.begin() + static_cast<std::ptrdiff_t>(a));
    group.after.erase(group.after.begin() + static_cast<std::ptrdiff_t>(b));
  }

  double apart(int i, int j, bool pairs) const {
    const double forward = distance(both_, i, j);
    return pairs ? std::max(forward, distance(both_, both_.before.reverse(i), both_.after.reverse(j)))
                 : forward;
  }
  bool is_equal(int i, int j, bool pairs) const {
    const StoredReaction& x = both_.before.reaction(i);
    const StoredReaction& y = both_.after.reaction(j);
    return x.A == y.A && x.b == y.b && x.E == y.E && apart(i, j, pairs) == 0;
  }

  void take(int i, int j, bool pairs) {
    after_[static_cast<std::size_t>(i)] = j;
    taken_[static_cast<std::size_t>(j)] = true;
    if (pairs) take(both_.before.reverse(i), both_.after.reverse(j), false);
  }

  const Mechanisms& both_;
  std::vector<int> after_;
  std::vector<bool> taken_;
};

// --- the parts of a mechanism ---

// The code of a pair means something beside its neighbours only; in another order what is left is the mark.
void add_pair_code(const Mechanisms& both, int i, int j, bool same_order, const std::string& prefix,
                   Difference& difference) {
  const int* x = item(both.before.mechanism.pair_codes, i);
  const int* y = item(both.after.mechanism.pair_codes, j);
  if (!x || !y || *x == *y || (!same_order && (*x < 0) == (*y < 0))) return;
  add(difference, change_of(prefix + "IREVER", *x, *y),
      {another_thing, (*x < 0) != (*y < 0) ? "another mark" : "another pair code"});
}

void add_reaction(const Mechanisms& both, int i, int j, bool same_order, const std::string& prefix,
                  Difference& difference) {
  const std::size_t changes = difference.changes.size();
  add_changes(both, i, j, prefix, difference);
  if (difference.changes.size() > changes) {
    Effect effect = effect_of(both, i, j);
    effect.text = prefix + effect.text;
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
  if (!matches.same_order()) comparing.notes.push_back("the " + kind + "s stand in another order");
}

// Collision partners by their efficiencies: those of matched reactions, then those that no reaction has.
void compare_partners(const Mechanisms& both, const Matches& matches, Comparing& comparing) {
  std::map<std::array<int, 2>, std::vector<int>> used;  // by partners before and after: the reactions
  for (int i = 0; i < both.before.count(); ++i) {
    const int j = matches.after[static_cast<std::size_t>(i)];
    if (j >= 0 && !both.before.is_reverse[static_cast<std::size_t>(i)] && both.before.partner(i) > 0)
      used[{both.before.partner(i), both.after.partner(j)}].push_back(i);
  }
  std::array<bool, 2 * partner_count + 2> known{};
  for (const auto& [partners, reactions] : used) {
    known[static_cast<std::size_t>(partners[0])] = true;
    known[static_cast<std::size_t>(partner_count + partners[1])] = true;
  }
  for (int c = 1; c <= partner_count; ++c) {
    if (!known[static_cast<std::size_t>(c)] && !known[static_cast<std::size_t>(partner_count + c)])
      used[{c, c}];
  }
  for (const auto& [partners, reactions] : used) {
    const auto name = [](int c) { return std::string(MCOLLI[static_cast<std::size_t>(c - 1)]); };
    std::string which = name(partners[0]) + (partners[0] == partners[1] ? "" : " -> " + name(partners[1]));
    const std::string equation =
        reactions.empty() ? "" : both.before.equation(reactions[0], both.before.reverse(reactions[0]) >= 0);
    which += reactions.empty()       ? ", in no reaction"
             : reactions.size() == 1 ? ", in " + equation
                                     : ", in " + std::to_string(reactions.size()) + " reactions";
    Difference difference{"collision partner", which, {}, {}};
    for_each_efficiency(both, partners[0], partners[1], [&](int species, double e, double f) {
      const std::string of = both.before.name(species + 1);
      add(difference, change_of("efficiency of " + of, e, f), relative_effect(e, f, "efficiency of " + of));
    });
    add(comparing, difference);
  }
}

// Net coefficients of the species in the reactions, as they are stored: species and reactions of the file
// before.
using Coefficients = std::vector<std::array<int, 3>>;

void compare_pointers(const Mechanisms& both, const Matches& species, const Matches& reactions,
                      const std::string& kind, Comparing& comparing) {
  Coefficients before = both.before.mechanism.pointers;
  Coefficients after = both.after.mechanism.pointers;
  if (before == after && species.same_order() && reactions.same_order() && species.only_after.empty() &&
      reactions.only_after.empty())
    return;
  const auto renumbered = [](const Matches& matches) {
    std::vector<int> numbers;
    for (std::size_t k = 0; k < matches.after.size(); ++k) {
      const auto j = static_cast<std::size_t>(matches.after[k] + 1);
      if (j >= numbers.size()) numbers.resize(j + 1);
      if (j > 0) numbers[j] = static_cast<int>(k) + 1;
    }
    return numbers;
  };
  const std::vector<int> species_numbers = renumbered(species);
  const std::vector<int> reaction_numbers = renumbered(reactions);
  // The number before of one after; 0: it is new; negative: it is none at all.
  const auto number = [](const std::vector<int>& numbers, std::size_t count, int n) {
    if (n < 1 || n > static_cast<int>(count)) return std::min(-std::abs(n), -1);
    const int* found = item(numbers, n);
    return found ? *found : 0;
  };
  const std::size_t species_count = species.only_after.size() + species.matched();
  for (auto& [s, r, coefficient] : after) {
    s = number(species_numbers, species_count, s);
    r = number(reaction_numbers, both.after.sides.size(), r);
  }
  const auto is_removed = [](const Matches& matches, int n) {
    const int* j = item(matches.after, n - 1);
    return j && *j < 0;
  };
  std::erase_if(before,
                [&](const auto& p) { return is_removed(species, p[0]) || is_removed(reactions, p[1]); });
  std::erase_if(after, [&](const auto& p) { return p[0] == 0 || p[1] == 0; });
  std::sort(before.begin(), before.end());
  std::sort(after.begin(), after.end());
  if (before == after) return;
  Coefficients gone;
  Coefficients come;
  std::set_difference(before.begin(), before.end(), after.begin(), after.end(), std::back_inserter(gone));
  std::set_difference(after.begin(), after.end(), before.begin(), before.end(), std::back_inserter(come));
  const auto tell = [&](const std::array<int, 3>& p, bool is_gone) {
    const bool known = p[1] >= 1 && p[1] <= both.before.count();
    Difference difference{kind + " pointers",
                          known ? both.before.equation(p[1] - 1, false) : "reaction " + std::to_string(p[1]),
                          {},
                          {}};
    const Told coefficient = static_cast<double>(p[2]);
    add(difference,
        {"coefficient of " + both.before.name(p[0]), is_gone ? coefficient : Told{},
         is_gone ? Told{} : coefficient, ""},
        {another_thing, "another coefficient"});
    add(comparing, difference);
  };
  for (const auto& p : gone) tell(p, true);
  for (const auto& p : come) tell(p, false);
}

Matches all_species(const Comparing& comparing, StoredPhaseOf phase) {
  Matches species = comparing.gas;
  if (phase == StoredPhaseOf::gas) return species;
  const int NG = static_cast<int>(comparing.after.gas.names.size());
  for (const int j : comparing.surface.after) species.after.push_back(j < 0 ? -1 : NG + j);
  for (const int j : comparing.surface.only_after) species.only_after.push_back(NG + j);
  return species;
}

void compare_mechanism(Comparing& comparing, StoredPhaseOf phase, const std::string& kind) {
  const Mechanisms both{{comparing.before, phase}, {comparing.after, phase}, comparing.gas};
  const Matches matches = ReactionMatching(both).match();
  compare_matched(both, matches, kind, comparing);
  if (phase == StoredPhaseOf::gas) compare_partners(both, matches, comparing);
  compare_pointers(both, all_species(comparing, phase), matches, kind, comparing);
  const StoredMechanism& x = both.before.mechanism;
  const StoredMechanism& y = both.after.mechanism;
  Difference difference{kind + "s", "all", {}, {}};
  add_if_changed(difference, "number of inert species", x.inert, y.inert);
  if (phase == StoredPhaseOf::surface) {
    add_if_changed(difference, "number of third bodies", x.partners, y.partners);
  } else if (x.partners != y.partners) {
    comparing.notes.push_back("the " + kind + "s have another number of third bodies: " +
                              std::to_string(x.partners) + " -> " + std::to_string(y.partners));
  }
  add(comparing, difference);
}

// --- complex and photo reactions ---

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
      add_value(difference, name, unit, x.*member, y.*member);
  });
  if (difference.changes.size() > others)
    difference.effect = larger(difference.effect, rate_effect("rate", {x.A, x.b, x.E}, {y.A, y.b, y.E}));
}
void compare_rates(const StoredPhotoReaction& x, const StoredPhotoReaction& y, Difference& difference) {
  if (!same(x.rate, y.rate))
    add(difference, change_of("rate", x.rate, y.rate), relative_effect(x.rate, y.rate, "rate"));
}

template <class Reaction>
void compare_global(Comparing& comparing, std::vector<Reaction> StoreData::*member, std::size_t reactants,
                    const std::string& kind) {
  const NumberedNames name_before(comparing.before, StoredPhaseOf::surface);
  const NumberedNames name_after(comparing.after, StoredPhaseOf::surface);
  const auto before = equations(comparing.before.*member, reactants, name_before);
  const auto after = equations(comparing.after.*member, reactants, name_after);
  const Matches matches = match(before, after);
  for (std::size_t k = 0; k < before.size(); ++k) {
    if (matches.after[k] < 0) {
      add_removed(comparing, kind, before[k]);
      continue;
    }
    Difference difference{kind, before[k], {}, {}};
    compare_rates((comparing.before.*member)[k],
                  (comparing.after.*member)[static_cast<std::size_t>(matches.after[k])], difference);
    add(comparing, difference);
  }
  for (const int j : matches.only_after) add_added(comparing, kind, after[static_cast<std::size_t>(j)]);
}

}  // namespace

void compare_reactions(Comparing& comparing) {
  compare_mechanism(comparing, StoredPhaseOf::gas, "reaction");
  compare_mechanism(comparing, StoredPhaseOf::surface, "surface reaction");
  compare_global(comparing, &StoreData::complex_reactions, 3, "complex reaction");
  compare_global(comparing, &StoreData::photo_reactions, 1, "photo reaction");
}

}  // namespace varpre
