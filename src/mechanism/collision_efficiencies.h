#pragma once

#include <vector>

#include "mechanism/reaction.h"
#include "textio/channel/input.h"
#include "textio/channel/store_file.h"
#include "textio/findings/listing.h"

namespace varpre {

struct CollisionEfficiencies {
  bool LOK = false;
  // Of each third body of the mechanism the efficiency of every species.
  std::vector<std::vector<double>> EFF = {};
  double of_others = 0;              // of species that no definition names
  int last_record = 0;               // of NFIMEC that was looked at: the surface mechanism stands behind it
  std::vector<Place> cut_text = {};  // records about whose text beyond column 80 all has been said
};

// Reads the collision efficiencies, from NFIMEC or, when they are not there, from NFICON, lists their
// definitions and writes one row of efficiencies per third body of the mechanism to the store file. The first
// third body, M, counts every species with 1; the others count species that no definition names with 0, or
// with 1 behind a TROE record.
//
// The last record of NFIMEC looked at is the END of the section, or that of the file when the section is not
// there.
//
// Fails, after its message: more efficiencies than NEFMAX, no section, a block for a name that is no third
// body of the mechanism, more than 15 species in a block, efficiencies that cannot be read, no END, a third
// body that the mechanism uses but no block defines. Stops the run (RunStop) at a block without "=" behind
// its name and at what the scanning routines cannot cut.
CollisionEfficiencies GENCEF(const ReactionNames& names, const Mechanism& mechanism, Input& NFIMEC,
                             Input& NFICON, Listing& MSGFIL, StoreFile& NFISTO);

}  // namespace varpre
