#pragma once

#include "mechanism/phase.h"
#include "textio/findings/listing.h"

namespace varpre {

// Lists one reaction: its number, its equation from the species vector in order of appearance (reversible or
// not, the arrow is "->"), A, b and E in the units of the input (cm, mol, s, kJ/mol), and a line for special
// rate forms.
void MXIMAN(const Phase& phase, const ReactionNames& names, int number, const SpeciesVector& KSPEC,
            const Reaction& reaction, Listing& MSGFIL);

}  // namespace varpre
