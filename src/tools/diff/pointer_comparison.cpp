#include <algorithm>
#include <array>
#include <map>

#include "tools/diff/mechanisms.h"

namespace varpre {
namespace {

// Species, reaction and net coefficient, as they are stored.
using Pointers = std::vector<std::array<int, 3>>;

// All that reactions of a phase are made of, by their numbers.
Matches all_species(const Comparing& comparing, StoredPhaseOf phase) {
  Matches species = comparing.gas;
  if (phase == StoredPhaseOf::gas) return species;
  const int NG = static_cast<int>(comparing.after.gas.names.size());
  for (const int j : comparing.surface.after) species.after.push_back(j < 0 ? -1 : NG + j);
  for (const int j : comparing.surface.only_after) species.only_after.push_back(NG + j);
  return species;
}

// The numbers in the file before of what has a number in the file after.
class NumbersBefore {
 public:
  explicit NumbersBefore(const Matches& matches) : numbers_(matches.only_after.size() + matches.matched()) {
    for (std::size_t k = 0; k < matches.after.size(); ++k) {
      if (matches.after[k] >= 0)
        numbers_[static_cast<std::size_t>(matches.after[k])] = static_cast<int>(k) + 1;
    }
  }

  // 0: it is new; negative: it is none at all.
  int operator()(int n) const {
    if (n < 1) return n == 0 ? -1 : n;
    const int* found = item(numbers_, n - 1);
    return found ? *found : -n;
  }

 private:
  std::vector<int> numbers_;
};

bool is_removed(const Matches& matches, int n) {
  const int* j = n < 1 ? nullptr : item(matches.after, n - 1);
  return j && *j < 0;
}

// The net coefficients of a species in a reaction.
using Coefficients = std::map<std::array<int, 2>, std::array<Told, 2>>;

// Those that only one of the files has, by reaction and species; both lists are in order.
Coefficients changed_coefficients(const Pointers& before, const Pointers& after) {
  Coefficients changed;
  const auto see = [&](const Pointers& pointers, const Pointers& others, std::size_t side) {
    Pointers left;
    std::set_difference(pointers.begin(), pointers.end(), others.begin(), others.end(),
                        std::back_inserter(left));
    for (const auto& [species, reaction, net] : left) changed[{reaction, species}][side] = number_of(net);
  };
  see(before, after, 0);
  see(after, before, 1);
  return changed;
}

}  // namespace

void compare_pointers(const Mechanisms& both, const Matches& reactions, const std::string& kind,
                      Comparing& comparing) {
  const Matches species = all_species(comparing, both.before.phase);
  const NumbersBefore species_before(species);
  const NumbersBefore reaction_before(reactions);
  Pointers before = both.before.mechanism.pointers;
  Pointers after = both.after.mechanism.pointers;
  for (auto& [s, r, net] : after) {
    s = species_before(s);
    r = reaction_before(r);
  }
  std::erase_if(before,
                [&](const auto& p) { return is_removed(species, p[0]) || is_removed(reactions, p[1]); });
  std::erase_if(after, [](const auto& p) { return p[0] == 0 || p[1] == 0; });
  std::sort(before.begin(), before.end());
  std::sort(after.begin(), after.end());
  if (before == after) return;
  for (const auto& [place, coefficients] : changed_coefficients(before, after)) {
    const auto& [reaction, species_number] = place;
    const bool is_known = reaction >= 1 && reaction <= both.before.count();
    const std::string which = is_known ? both.before.equation(reaction - 1, false) : "no reaction";
    Difference difference{kind + " pointers", which, {}, {}};
    add(difference,
        {"coefficient of " + both.before.name(species_number), coefficients[0], coefficients[1], ""},
        {another_thing, "another coefficient"});
    add(comparing, std::move(difference));
  }
}

}  // namespace varpre
