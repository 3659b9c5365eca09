#pragma once

#include <cstdint>

#include "textio/channel/input.h"
#include "textio/findings/findings.h"
#include "thermo/species.h"

namespace varpre {

// Warns of each stretch of records of an input, INP or MEC, that no stage has read although it looks like
// data: a heading, a keyword or species with its value, a reaction with its numbers. `file` is the input as a
// section knows it. To be called when all stages have run.
void warn_of_unread_text(const Input& copy, std::uint8_t file, std::span<const SpeciesName> SYMB,
                         bool surface, Findings& findings);

// The same for a run that ended early: of the mechanism input, which is read from front to back, what stands
// before the last record that was read.
void warn_of_reactions_passed_over(const Input& mechanism, Findings& findings);

}  // namespace varpre
