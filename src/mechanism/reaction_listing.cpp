#include "mechanism/reaction_listing.h"

#include "textio/findings/listing.h"

namespace varpre {

void MXIMAN(const Phase& phase, const ReactionNames& names, int number, const SpeciesVector& KSPEC,
            const Reaction& reaction, Listing& MSGFIL) {
  EquationCells cells;
  for (int slot = 1; slot <= 2 * phase.MAXE; ++slot) {
    if (at(KSPEC, slot) == 0) continue;
    at(cells.names, slot) = names[at(KSPEC, slot)];
    if (slot > 1) at(cells.separators, slot - 1) = "+ ";
  }
  at(cells.separators, phase.MAXE) = "->";
  phase.list(number, cells, reaction, MSGFIL);

  const RateForm IARRH = reaction.IARRH;
  if (IARRH == coverage_dependent) {
    write<"(2X,'COV.-DEP. ACTIVATION ENERGY  ',14X,3(1PE10.3,2X))">(MSGFIL, reaction.VT4, reaction.VT5,
                                                                    reaction.VT6);
  } else if (IARRH == falloff) {
    write<"(2X,'FALLOFF  ',45X,1PE9.2,0PF6.2,-3PF6.1,/,32X,3(1PE9.2,1X),1X,1PE9.2,2X,0PF4.2)">(MSGFIL,
                                                                                               reaction.FALL);
  } else if (is_reverse(IARRH) || IARRH == reversible_arrhenius || IARRH == non_arrhenius) {
    write<"(' ','CALC. OF REV. REACTION IN VARNOK',6X)">(MSGFIL);
  }
}

}  // namespace varpre
