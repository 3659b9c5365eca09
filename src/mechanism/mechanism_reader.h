#pragma once

#include "mechanism/reaction.h"
#include "textio/channel/statement.h"
#include "textio/findings/listing.h"

namespace varpre {

struct MechanismOptions {
  bool solver_reverses = false;  // IRVMOD: reverse rates are left to the solver instead of fitted here
  int most_reactions = NRMAX;
  int most_pointers = NRIMAX;
};

// Reads the mechanism of a phase ("MECH" or "SURF") from the current position of NFIMEC to its END line.
// `species` are the species that its reactions may name, the last NSURF of them surface species. Every
// reversible reaction is followed by its reverse, generated here. Lists the reactions, checks them
// (duplicates, inert species: warnings), converts A to SI units and writes the mechanism block to the store
// file:
//   gas:     A (1E-6)^(n-1), n the number of educts, collision partners included
//            (0 in a phase without species)
//   surface: A (1E-4)^(s-1) (1E-6)^g, s surface and g gas species among the educts; sticking coefficients
//   stay
// `names` are the species and the collision partners.
//
// False, after its message: no heading; a rejected reaction, or no END; more reactions, or reaction pointers,
// than the limit; a collision partner that does not stand on both sides. The block is not begun then, but for
// the pointers, which follow the reaction records.
[[nodiscard]] bool GENMEC(Phase phase, const SpeciesView& species, int NSURF, const ReactionNames& names,
                          const MechanismOptions& options, Input& NFIMEC, Listing& MSGFIL, StoreFile& NFISTO,
                          Mechanism& mechanism);

}  // namespace varpre
