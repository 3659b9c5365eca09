#pragma once

#include "mechanism/phase.h"
#include "textio/channel/input.h"
#include "textio/channel/store_file.h"
#include "textio/findings/listing.h"

namespace varpre {

struct MechanismOptions {
  bool solver_reverses = false;  // IRVMOD: reverse rates are left to the solver instead of fitted here
  int most_reactions = NRMAX;
  int most_pointers = NRIMAX;
  int behind_record = 0;  // of NFIMEC: the heading is searched behind this one
};

// Reads the mechanism of a phase up to its END line. `species` are the species that its reactions may name,
// the last NSURF of them surface species; `names` are these and the collision partners. Every reversible
// reaction is followed by its reverse, generated here. Lists the reactions, checks them (duplicates, inert
// species: warnings), converts A to SI units and writes the mechanism block to the store file.
//
// False, after its message: no heading; a rejected reaction, or no END; more reactions, or reaction pointers,
// than the limit; a collision partner that does not stand on both sides. The block is not begun then, but for
// the pointers, which follow the reaction records.
[[nodiscard]] bool GENMEC(const Phase& phase, const SpeciesView& species, int NSURF,
                          const ReactionNames& names, const MechanismOptions& options, Input& NFIMEC,
                          Listing& MSGFIL, StoreFile& NFISTO, Mechanism& mechanism);

}  // namespace varpre
