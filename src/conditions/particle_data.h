#pragma once

#include "textio/channel/input.h"
#include "textio/channel/store_file.h"
#include "textio/findings/listing.h"

namespace varpre {

// Reads the particle section of NFICON (grid size, list of particle species, their initial fractions),
// fetches the data of each species from the particle database `thermliq`, which it opens, and appends the
// particle block to the store file, behind its end marker. NPART is the number of particle species that the
// driver read.
//
// Every error is reported in the listing, and as a finding, and ends the stage; what was appended before it
// stays. Throws std::system_error when the database cannot be opened or read.
void GENPART(int NPART, Input& NFICON, Input& thermliq, Listing& MSGFIL, StoreFile& NFISTO);

}  // namespace varpre
