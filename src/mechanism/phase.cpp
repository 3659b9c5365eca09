#include "mechanism/phase.h"

#include "files/store_records.h"
#include "mechanism/integer_power.h"
#include "textio/channel/statement.h"

namespace varpre {
namespace {

// Educts with numbers from one to another.
int count_educts(const Phase& phase, const SpeciesVector& MAT, int first, int last) {
  const auto educts = phase.educts(MAT);
  return static_cast<int>(
      std::count_if(educts.begin(), educts.end(), [&](int k) { return k >= first && k <= last; }));
}

// A (1E-6)^(n-1), n the educts, collision partners included; n = 0 in a phase without species.
double gas_in_SI_units(const Reaction& reaction, int NS, int) {
  const int n = NS == 0 ? 0 : count_educts(Phase::gas, reaction.MAT, 1, NS + partner_count);
  return reaction.AFAC * integer_power(1.0E-6, n - 1);
}

// A (1E-4)^(s-1) (1E-6)^g, s surface and g gas species among the educts; sticking coefficients stay.
double surface_in_SI_units(const Reaction& reaction, int NS, int NSURF) {
  if (reaction.ISTICK != 0) return reaction.AFAC;
  const int g = count_educts(Phase::surface, reaction.MAT, 1, NS - NSURF);
  const int s = count_educts(Phase::surface, reaction.MAT, NS - NSURF + 1, NS);
  return reaction.AFAC * integer_power(1.0E-4, s - 1) * integer_power(1.0E-6, g);
}

void list_gas_reaction(int number, const EquationCells& cells, const Reaction& r, Listing& MSGFIL) {
  write<"(' ',I4,3X,5(A,A2),A,1PE9.2,0PF6.2,-3PF6.1)">(
      MSGFIL, number, zip(std::span(cells.names).first<5>(), std::span(cells.separators).first<5>()),
      at(cells.names, 6), r.AFAC, r.TEXP, r.EXA);
}

void list_surface_reaction(int number, const EquationCells& cells, const Reaction& r, Listing& MSGFIL) {
  write<"(1X,I4,3X,6(A,A2),/,8X,5(A,A2),A,1PE9.2,0PF6.2,-3PF6.1)">(
      MSGFIL, number, zip(std::span(cells.names).first<11>(), std::span(cells.separators).first<11>()),
      at(cells.names, 12), r.AFAC, r.TEXP, r.EXA);
}

void write_gas_reaction(const Reaction& r, StoreFile& NFISTO) {
  write<store_records::gas_reaction>(NFISTO, std::span(r.MAT).first<6>(), r.AFAC, r.TEXP, r.EXA, int(r.IARRH),
                                     r.VT4, r.VT5, r.VT6);
  write<store_records::falloff>(NFISTO, r.FALL);
}

void write_surface_reaction(const Reaction& r, StoreFile& NFISTO) {
  write<store_records::surface_reaction>(NFISTO, r.MAT, r.AFAC, r.TEXP, r.EXA, int(r.IARRH), r.ISTICK, r.ICOV,
                                         r.VT4, r.VT5, r.VT6);
}

}  // namespace

const Phase Phase::gas{.section = sections::named("the gas-phase mechanism"),
                       .MAXE = 3,
                       .most_names = 5,
                       .in_SI_units = gas_in_SI_units,
                       .list = list_gas_reaction,
                       .write = write_gas_reaction};

const Phase Phase::surface{.section = sections::named("the surface mechanism"),
                           .MAXE = 6,
                           .most_names = 10,
                           .in_SI_units = surface_in_SI_units,
                           .list = list_surface_reaction,
                           .write = write_surface_reaction};

}  // namespace varpre
