#include "mechanism/reaction_listing.h"

#include "textio/findings/record_findings.h"

namespace varpre {

void MXIMAN(Phase phase, const ReactionNames& names, int number, const SpeciesVector& KSPEC,
            const Reaction& reaction, Listing& MSGFIL) {
  const auto MAXE = static_cast<std::size_t>(most_educts(phase));
  std::array<SpeciesName, 12> cells;
  std::array<Text<2>, 12> separators;
  for (std::size_t slot = 0; slot < 2 * MAXE; ++slot) {
    if (KSPEC[slot] == 0) continue;
    cells[slot] = names[KSPEC[slot]];
    if (slot > 0) separators[slot - 1] = "+ ";
  }
  separators[MAXE - 1] = "->";

  const auto& [AFAC, TEXP, EXA, VT4, VT5, VT6, IARRH, ISTICK, ICOV, FALL, MARK, MAT, line] = reaction;
  if (phase == Phase::gas) {
    write<"(' ',I4,3X,5(A,A2),A,1PE9.2,0PF6.2,-3PF6.1)">(
        MSGFIL, number, zip(std::span(cells).first<5>(), std::span(separators).first<5>()), cells[5], AFAC,
        TEXP, EXA);
  } else {
    write<"(1X,I4,3X,6(A,A2),/,8X,5(A,A2),A,1PE9.2,0PF6.2,-3PF6.1)">(
        MSGFIL, number, zip(std::span(cells).first<11>(), std::span(separators).first<11>()), cells[11], AFAC,
        TEXP, EXA);
  }
  if (IARRH == coverage_dependent) {
    write<"(2X,'COV.-DEP. ACTIVATION ENERGY  ',14X,3(1PE10.3,2X))">(MSGFIL, VT4, VT5, VT6);
  } else if (IARRH == falloff) {
    write<"(2X,'FALLOFF  ',45X,1PE9.2,0PF6.2,-3PF6.1,/,32X,3(1PE9.2,1X),1X,1PE9.2,2X,0PF4.2)">(MSGFIL, FALL);
  } else if (IARRH < arrhenius || IARRH > falloff) {
    write<"(' ','CALC. OF REV. REACTION IN VARNOK',6X)">(MSGFIL);
  }
}

}  // namespace varpre
