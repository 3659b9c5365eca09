#pragma once

#include <string>
#include <vector>

#include "files/store_equations.h"
#include "tools/diff/matching.h"

// The mechanisms of two store files that are compared, and what their reactions are called.
namespace varpre {

// The reactions of a phase in one of the files.
struct MechanismSide {
  const StoreData& data;
  const StoredMechanism& mechanism;
  StoredPhaseOf phase;
  NumberedNames name;
  std::vector<Sides> sides;
  std::vector<int> reverses;
  std::vector<bool> is_reverse;
  std::vector<std::string> keys;  // the equations without the names of partners and the order of species

  MechanismSide(const StoreData& data_, StoredPhaseOf phase_);

  int count() const { return static_cast<int>(sides.size()); }
  const StoredReaction& reaction(int i) const { return mechanism.reactions[static_cast<std::size_t>(i)]; }
  int reverse(int i) const { return reverses[static_cast<std::size_t>(i)]; }

  // A collision partner of the gas phase, from 1; 0: the reaction has none.
  int partner(int i) const;
  std::string name_of(int number) const { return number == 0 ? "none" : name(number); }
  std::string equation(int i, bool with_reverse) const;

 private:
  std::string key_of(int i) const;
};

struct Mechanisms {
  MechanismSide before;
  MechanismSide after;
  const Matches& gas;  // the species
};

// Calls see(species before, efficiency before, efficiency after) for those of two partners that differ.
template <class See>
void for_each_efficiency(const Mechanisms& both, int before, int after, See see) {
  const auto* x = item(both.before.data.efficiencies, before - 1);
  const auto* y = item(both.after.data.efficiencies, after - 1);
  if (!x || !y) return;
  for (std::size_t i = 0; i < both.gas.after.size(); ++i) {
    const double* e = item(*x, static_cast<int>(i));
    const double* f = item(*y, both.gas.after[i]);
    if (e && f && !same(*e, *f)) see(static_cast<int>(i), *e, *f);
  }
}

// Which reaction is which: pairs of forward and reverse together, of duplicates those that agree best.
Matches match_reactions(const Mechanisms& both);

// The parts.
void compare_pointers(const Mechanisms& both, const Matches& reactions, const std::string& kind,
                      Comparing& comparing);

}  // namespace varpre
