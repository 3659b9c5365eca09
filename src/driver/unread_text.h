#pragma once

#include <cstdint>

#include "textio/channel/input.h"
#include "textio/findings/findings.h"
#include "thermo/species.h"

namespace varpre {

// Warns of what no stage has read of an input, INP or MEC, although it looks like data: a heading, a keyword
// or species with its value, a reaction with its numbers; of the same behind a heading, an END or a line
// STIC; and of a conflict of two versions of the file that stopped no stage. `file` is the input as a section
// knows it, `surface` whether there are surface species. To be called when all stages have run. Of a run that
// was `stopped` early only those records count that a stage passed over.
void warn_of_unread_text(const Input& copy, std::uint8_t file, std::span<const SpeciesName> SYMB,
                         bool stopped, bool surface, Findings& findings);

}  // namespace varpre
