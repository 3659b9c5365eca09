#include <algorithm>
#include <array>

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
    const int* found = item(numbers_, n - 1);
    return found ? *found : std::min(-std::abs(n), -1);
  }

 private:
  std::vector<int> numbers_;
};

bool is_removed(const Matches& matches, int n) {
  const int* j = item(matches.after, n - 1);
  return j && *j < 0;
}

// The pointers of one list that the other lacks; both are in order.
Pointers without(const Pointers& pointers, const Pointers& others) {
  Pointers left;
  std::set_difference(pointers.begin(), pointers.end(), others.begin(), others.end(),
                      std::back_inserter(left));
  return left;
}

// A pointer that only one of the files has.
void tell(const Mechanisms& both, const std::array<int, 3>& pointer, bool is_gone, const std::string& kind,
          Comparing& comparing) {
  const auto& [species, reaction, net] = pointer;
  const bool is_known = reaction >= 1 && reaction <= both.before.count();
  Difference difference{
      kind + " pointers",
      is_known ? both.before.equation(reaction - 1, false) : "reaction " + std::to_string(reaction),
      {},
      {}};
  const Told coefficient = static_cast<double>(net);
  add(difference,
      {"coefficient of " + both.before.name(species), is_gone ? coefficient : Told{},
       is_gone ? Told{} : coefficient, ""},
      {another_thing, "another coefficient"});
  add(comparing, difference);
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
  for (const auto& p : without(before, after)) tell(both, p, true, kind, comparing);
  for (const auto& p : without(after, before)) tell(both, p, false, kind, comparing);
}

}  // namespace varpre
