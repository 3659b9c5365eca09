#pragma once

#include <map>
#include <optional>
#include <string>

#include "tools/import/import.h"

namespace varpre {

// What became of a species of the phases that are imported.
struct KnownSpecies {
  enum class Fate { taken, not_chosen, left_out };
  Fate fate = Fate::taken;
  bool on_surface = false;
};

// What holds for all reactions of a phase.
struct ReactionScope {
  const std::map<std::string, KnownSpecies>& species;
  bool on_surface = false;
  bool skip_undeclared_third_bodies = false;
  bool Motz_Wise = false;
};

struct ReadReaction {
  bool of_phase = false;  // the phases have its species: it counts among their reactions
  std::optional<ImportedReaction> reaction;
};

// Reads a reaction. Its rate is multiplied by `multiplier`. No reaction, without a finding, when its species
// were not chosen or, with `declared_only`, when the phases do not have them; no reaction, after its
// findings, when it cannot be read or held.
ReadReaction read_reaction(const Value& entry, const ReactionScope& scope, bool declared_only,
                           double multiplier, Import& import);

}  // namespace varpre
