#pragma once

#include <algorithm>
#include <span>

#include "files/sections.h"
#include "mechanism/reaction.h"
#include "textio/channel/store_file.h"
#include "textio/findings/listing.h"
#include "textio/record/numbered.h"

namespace varpre {

// The species of an equation and what stands behind each, by slots; blank where a slot is empty.
struct EquationCells {
  std::array<SpeciesName, 12> names;
  std::array<Text<2>, 12> separators;
};

// What differs between the mechanisms of the gas phase and of the surface.
struct Phase {
  static const Phase gas;
  static const Phase surface;

  const Section& section;
  int MAXE;        // educts, and products, that a reaction can have
  int most_names;  // names of an equation that count: the first ones
  // The pre-exponential factor of a reaction in m, mol, s instead of cm, mol, s; the last NSURF of the NS
  // species stand on the surface.
  double (*in_SI_units)(const Reaction& reaction, int NS, int NSURF);
  // The line of a reaction in the listing, and its records in the store file.
  void (*list)(int number, const EquationCells& cells, const Reaction& reaction, Listing& MSGFIL);
  void (*write)(const Reaction& reaction, StoreFile& NFISTO);

  std::span<const int> educts(const SpeciesVector& MAT) const { return first(MAT, MAXE); }

  // Educts and products exchanged.
  SpeciesVector exchanged(SpeciesVector MAT) const {
    std::swap_ranges(MAT.begin(), MAT.begin() + MAXE, MAT.begin() + MAXE);
    return MAT;
  }

  // Visits the species and collision partners of a reaction: their numbers, with -1 for an educt and +1 for a
  // product.
  template <class Visit>
  void for_each(const SpeciesVector& MAT, Visit visit) const {
    for (int slot = 1; slot <= 2 * MAXE; ++slot) {
      if (const int number = at(MAT, slot); number != 0) visit(number, slot <= MAXE ? -1 : +1);
    }
  }
};

}  // namespace varpre
