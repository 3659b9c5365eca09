#pragma once

#include "tools/import/import.h"
#include "tools/import/yaml_value.h"

namespace varpre {

// What holds for all reactions of a phase.
struct ReactionScope {
  bool on_surface = false;
  bool skip_undeclared_third_bodies = false;
  bool Motz_Wise = false;
};

// Reads a reaction and takes it into its mechanism. Its rate is multiplied by `multiplier`. Nothing is taken,
// without a finding, when its species were not chosen or, with `declared_only`, when the phases do not have
// them; nothing, after its findings, when it cannot be read or held.
//
// True when the phases have its species: it counts among their reactions.
bool read_reaction(const Value& entry, const ReactionScope& scope, bool declared_only, double multiplier,
                   Import& import);

}  // namespace varpre
