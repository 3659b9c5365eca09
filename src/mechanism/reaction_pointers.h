#pragma once

#include <span>

#include "mechanism/phase.h"
#include "textio/channel/store_file.h"
#include "textio/findings/listing.h"

// The net coefficients of reactions, products less educts: of the collision partners all must be 0, those of
// the species go to the store file as pointers.
namespace varpre {

// False, after the message, at a collision partner (a number above NS) that stands on one side only.
[[nodiscard]] bool third_bodies_balance(const Phase& phase, std::span<const Reaction> reactions, int NS,
                                        Listing& MSGFIL);

// Fills NRVEC with the net coefficients of the NS species that are not 0, by species and then by reaction.
// False, after the message, when there are more than most_pointers.
[[nodiscard]] bool set_pointers(const Phase& phase, int NS, int most_pointers, Mechanism& mechanism,
                                Listing& MSGFIL);

// The records behind the reactions: pointers, pair codes and the number of inert species.
void write_pointers(const Mechanism& mechanism, StoreFile& NFISTO);

}  // namespace varpre
