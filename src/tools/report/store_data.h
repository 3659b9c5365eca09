#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "files/limits.h"
#include "thermo/species.h"

// The contents of a store file as plain data. Units are those of the file, SI; a value that the file shows as
// asterisks is not a number here.
namespace varpre {

// cp, h, s per mass: seven coefficients below and above the switch temperature; lower limit, switch and upper
// limit, K.
struct StoredThermo {
  std::array<double, 7> lower{};
  std::array<double, 7> upper{};
  std::array<double, 3> limits{};
};

struct StoredPhase {
  std::vector<SpeciesName> names;
  std::vector<double> molar_masses;  // kg/mol
  std::vector<ElementSymbol> elements;
  std::vector<double> element_masses;  // kg/mol
  std::vector<double> mass_fractions;  // of the elements in the species, species by species
  std::vector<StoredThermo> thermo;
};

using StoredFit = std::array<double, 4>;  // of a logarithm in powers of ln T

struct StoredTransport {
  std::vector<StoredFit> conductivity;             // J/(m K s)
  std::vector<StoredFit> monoatomic_conductivity;  // J/(m K s)
  std::vector<StoredFit> viscosity;                // kg/(m s)
  std::vector<StoredFit> diffusion;                // Pa m2/s, of the pairs 1 1, 2 1, 2 2, 3 1, ...
  std::vector<double> well_depths;                 // K
  std::vector<double> diameters;                   // angstrom
  std::vector<double> dipole_moments;              // debye
  std::vector<double> polarizabilities;            // cubic angstrom
  std::vector<double> collision_numbers;
};

struct StoredReaction {
  std::array<int, 12> species{};  // educts, then products, half of the slots each; 0: none
  double A = 0;
  double b = 0;
  double E = 0;
  int form = 0;      // IARRH
  int sticking = 0;  // ISTICK, ICOV: numbers of species, 0: none
  int coverage = 0;
  std::array<double, 3> values{};   // VT4 to VT6
  std::array<double, 8> falloff{};  // FALL1 to FALL8
};

struct StoredMechanism {
  std::vector<StoredReaction> reactions;
  int partners = 0;
  std::vector<std::array<int, 3>> pointers;  // species, reaction, net coefficient
  std::vector<int> pair_codes;               // IREVER
  int inert = 0;
};

struct StoredComplexReaction {
  std::array<double, 6> coefficients{};
  std::array<int, 6> species{};
  std::array<double, 6> orders{};
  std::array<double, 3> rate{};  // A, b, E
};

struct StoredPhotoReaction {
  std::array<int, 4> species{};  // the reactant, then products
  double rate = 0;
};

struct StoredMixture {
  double temperature = 0;  // K
  double enthalpy = 0;     // J/kg
  double pressure = 0;     // Pa
  std::vector<double> gas_fractions;
  std::vector<double> surface_fractions;
  std::array<double, 6> given{};  // PHI, G, v, FREQ, FAC, OMEG
};

// A value under the keyword that gave it.
struct StoredValue {
  std::string name;
  double value = 0;
};

struct StoredParticles {
  int grid = 0;
  std::vector<SpeciesName> names;
  std::vector<std::array<double, 24>> data;
  std::vector<double> fractions;
};

struct StoreData {
  std::vector<int> options;  // the slots
  StoredPhase gas;
  StoredTransport transport;
  StoredPhase surface;
  std::vector<StoredValue> surface_conditions;
  StoredMechanism gas_mechanism;
  std::vector<std::vector<double>> efficiencies;  // of the gas species, by partner
  StoredMechanism surface_mechanism;
  std::vector<StoredComplexReaction> complex_reactions;
  std::vector<StoredPhotoReaction> photo_reactions;
  std::vector<StoredMixture> mixtures;  // left, right
  std::vector<StoredValue> flame_conditions;
  std::vector<StoredValue> two_dimensional;
  std::vector<int> flags;
  std::optional<StoredParticles> particles;

  int lines = 0;  // of the file
  bool complete = false;
  std::string stopped;  // why no more could be read; empty: all was
  int stopped_at = 0;   // the line
};

}  // namespace varpre
