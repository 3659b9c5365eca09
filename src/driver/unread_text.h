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

// The same for a run that ended early: what stands behind an END, and, of the mechanism input, which is read
// from front to back, what stands before the last record that was read.
void warn_of_text_passed_over(const Input& copy, std::uint8_t file, std::span<const SpeciesName> SYMB,
                              Findings& findings);

// Warns of the first line of a conflict of two versions of a file that stopped no stage.
void warn_of_conflict(const Input& copy, Findings& findings);

// Warns of what looks like data behind a heading, an END or a line STIC, where nothing is read.
void warn_of_text_behind_words(const Input& copy, std::uint8_t file, std::span<const SpeciesName> SYMB,
                               Findings& findings);

}  // namespace varpre
