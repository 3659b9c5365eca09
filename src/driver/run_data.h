#pragma once

#include <array>
#include <string>
#include <vector>

#include "conditions/mixtures.h"
#include "files/keywords.h"
#include "mechanism/collision_efficiencies.h"
#include "mechanism/reaction.h"
#include "textio/findings/findings.h"
#include "thermo/elements.h"
#include "thermo/species.h"
#include "transport/molecular_database.h"

namespace varpre {

// What the stages of a run read and hand on, as far as the run came: the input files as data.
struct RunData {
  std::vector<std::string> titles;  // of the case, a line each
  int NGAS = 0;
  int NSURF = 0;
  int NPART = 0;
  Species species;
  Elements gas_elements;
  Elements surface_elements;
  std::vector<Molecule> molecules;  // of the gas species
  SurfaceConditions wall;
  Mechanism gas_mechanism;      // A in SI units
  Mechanism surface_mechanism;  // A in SI units
  CollisionEfficiencies efficiencies;
  std::vector<Place> complex_reactions;  // the first record of each
  std::vector<Place> photo_reactions;
  std::array<MixtureState, 2> mixtures;  // on the left, on the right

  SpeciesView gas() const { return species.view(0, NGAS); }
  SpeciesView surface() const { return species.view(NGAS, NSURF); }
  SpeciesView all() const { return species.view(0, NGAS + NSURF); }
  SpeciesPlaces places_of_gas() { return species.places(0, NGAS); }
  SpeciesPlaces places_of_surface() { return species.places(NGAS, NSURF); }
  SpeciesPlaces places_after(int count) { return species.places(count, NSMAX - count); }
};

}  // namespace varpre
