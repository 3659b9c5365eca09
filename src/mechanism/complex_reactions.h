#pragma once

#include <vector>

#include "textio/channel/input.h"
#include "textio/channel/store_file.h"
#include "textio/findings/listing.h"
#include "thermo/species.h"

namespace varpre {

// Reads the complex (global) reactions of the "COMP" section of NFIMEC, lists them, numbered on from the NR
// elementary reactions, and writes their block to the store file: stoichiometric coefficients, species
// numbers, orders, and A (SI units), b, E (J/mol). No section is no error: the block holds a count of
// 0.
//
// False, after its message: count or reaction that cannot be read, a reaction without reactants (accepted
// when `reactants_optional`), an unknown species name; reactions behind it are read for what may be wrong
// with them. Stops the run (RunStop) with more than MNCRE reactions. `lines`: the first record of each
// reaction.
[[nodiscard]] bool GENCRE(const SpeciesView& species, int NR, bool reactants_optional, Input& NFIMEC,
                          Listing& MSGFIL, StoreFile& NFISTO, std::vector<Place>& lines);

}  // namespace varpre
