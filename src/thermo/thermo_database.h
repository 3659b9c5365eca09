#pragma once

#include <span>

#include "textio/channel/input.h"
#include "textio/channel/store_file.h"
#include "textio/findings/listing.h"
#include "thermo/species.h"

namespace varpre {

// Reads the thermochemical database NFITHE from its first record to its end and takes the entries of the
// species: polynomial fits, scaled by the gas constant, temperature limits (the lower one less 20 K, a switch
// temperature of 0 meaning 1000 K) and element fields. Names are compared over 8 characters without regard to
// letter case; a later entry replaces an earlier one, and of equal species names only the first receives
// data. With `print` every fit is listed.
//
// False, after one message each, when a species has no entry. An entry that cannot be read is reported and
// ends the reading there.
[[nodiscard]] bool GENTHE(Input& NFITHE, Listing& MSGFIL, const SpeciesPlaces& species, bool print);

// Warns of a gas with less entropy at 298 K and 1 bar than the motion of its molecules through space has
// alone: R (3/2 ln M + 5/2 ln T) and a constant, M in g/mol (Sackur and Tetrode). Its molar mass is known.
void warn_of_low_entropies(const SpeciesView& gas, Findings& findings);

// Writes the " HL,HH(" group of each species, three records: the two coefficient sets divided by the molar
// mass, per kg, and the temperature limits. A species without molar mass gets coefficients 0.
void PRTHD(const SpeciesView& species, StoreFile& NFISTO);

}  // namespace varpre
