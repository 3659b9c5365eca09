#pragma once

#include <span>
#include <vector>

#include "textio/channel/input.h"
#include "textio/findings/listing.h"
#include "thermo/species.h"

namespace varpre {

// What the molecular database says of one gas species.
struct Molecule {
  int IGEOM = 0;     // 0 atom, 1 linear, 2 non-linear molecule
  double XMDB = 0;   // molar mass, g/mol; listed only
  double EPS = 0;    // Lennard-Jones well depth over the Boltzmann constant, K
  double SIGMA = 0;  // collision diameter, angstrom
  double DI1 = 0;    // dipole moment, debye
  double DI2 = 0;    // polarizability, cubic angstrom
  double DI3 = 0;    // rotational relaxation collision number at 298 K
  Place record;      // where the database says it
};

// Reads the molecular database NFIMOL from its first record to its end and takes the records of the species
// names (any letter case, over 8 characters; a later record replaces an earlier one) into `molecules`,
// one per species. With `print` the properties are listed. False, after one message each, when a species is
// missing; a record that cannot be read is reported with its number and ends the reading there.
[[nodiscard]] bool GENSPE(const SpeciesView& gas, Input& NFIMOL, Listing& MSGFIL,
                          std::vector<Molecule>& molecules, bool print);

}  // namespace varpre
