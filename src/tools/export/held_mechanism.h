#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "driver/run_data.h"

namespace varpre {

// A reaction that the exported file holds.
struct HeldReaction {
  const Reaction* reaction;
  bool on_surface = false;
  bool reversible = false;
  int partner = 0;         // number of its collision partner, from 1; 0: none
  bool duplicate = false;  // another one has the same educts and products
};

// Species by their number, with their counts: one side of an equation, collision partners left out.
using Side = std::map<int, int>;
std::pair<Side, Side> sides_of(const RunData& data, const HeldReaction& held);

// What of a case the format can hold.
struct HeldMechanism {
  std::vector<bool> species;  // of the gas phase, then of the surface: whether it is held
  std::vector<HeldReaction> gas_reactions;
  std::vector<HeldReaction> surface_reactions;

  bool holds(int number) const { return number >= 1 && species[static_cast<std::size_t>(number - 1)]; }
};

// An equation as the format writes it: "2 H + M <=> H2 + M".
std::string yaml_equation(const RunData& data, const HeldReaction& held);

// Finds out what can be held. The rest is an error each; a warning with `skip_unsupported`, which leaves out
// a species together with its reactions.
HeldMechanism held_mechanism(const RunData& data, bool skip_unsupported, Findings& findings);

}  // namespace varpre
