#pragma once

#include <vector>

#include "textio/channel/input.h"
#include "textio/channel/store_file.h"
#include "textio/findings/listing.h"
#include "thermo/species.h"

namespace varpre {

// Reads the first-order photo reactions of the "PHOT" section of NFIMEC, lists them and writes their block to
// the store file: the numbers of the reactant and of up to three products (0 for none), and the rate.
// No section is no error: the block holds a count of 0.
//
// False, after its message: count or reaction that cannot be read, more than NPMAX reactions, an unknown
// species, no ">" behind the reactant. The records before that stand in the store file; those behind it are
// read for what may be wrong with them. `lines`: the record of each reaction.
[[nodiscard]] bool INIPHO(const SpeciesView& species, Input& NFIMEC, Listing& MSGFIL, StoreFile& NFISTO,
                          std::vector<Place>& lines);

}  // namespace varpre
