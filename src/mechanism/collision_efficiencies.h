#pragma once

#include "mechanism/reaction.h"
#include "textio/channel/statement.h"
#include "textio/findings/listing.h"

namespace varpre {

// Reads the "COLL" section, from NFIMEC or, when it is not there, from NFICON, lists its definitions and
// writes one row of efficiencies per third body of the mechanism to the store file. The first third body, M,
// counts every species with 1; the others count species that no definition names with 0, or with 1 behind a
// TROE record.
//
// NFIMEC is left behind the END record of the section, or at its end when the section is not there.
//
// False, after its message: more efficiencies than NEFMAX, no section, a block for a name that is no third
// body of the mechanism, more than 15 species in a block, efficiencies that cannot be read, no END, a third
// body that the mechanism uses but no block defines. Stops the run (RunStop) at a block without "=" behind
// its name and at what the scanning routines cannot cut.
[[nodiscard]] bool GENCEF(const ReactionNames& names, const Mechanism& mechanism, Input& NFIMEC,
                          Input& NFICON, Listing& MSGFIL, StoreFile& NFISTO);

}  // namespace varpre
