#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "textio/findings/findings.h"
#include "thermo/species.h"

// A mechanism as the input files of the program can hold it, read from a YAML file.
namespace varpre {

// Transport data of a molecule in the units of MOLNEW: K, angstrom, debye, cubic angstrom.
struct ImportedMolecule {
  int geometry = 0;  // 0 atom, 1 linear, 2 non-linear
  double well_depth = 0;
  double diameter = 0;
  double dipole = 0;
  double polarizability = 0;
  double rotational_relaxation = 0;
};

struct ImportedSpecies {
  std::string name;  // in the YAML file
  SpeciesName short_name;
  Place place;
  bool on_surface = false;
  std::vector<std::pair<std::string, int>> atoms;  // element symbols in capitals, and counts
  std::array<double, 3> limits{};                  // lowest, highest and switch temperature, K
  std::array<double, 7> lower{};                   // a1 to a7 below and above the switch temperature
  std::array<double, 7> upper{};
  std::optional<ImportedMolecule> molecule;
};

struct ArrheniusRate {
  double A = 0;  // cm, mol, s
  double b = 0;
  double E = 0;  // kJ/mol
};

struct CoverageDependence {
  std::string species;
  double a = 0;
  double m = 0;
  double E = 0;  // kJ/mol
};

struct Efficiencies {
  double usual = 1;  // of species that are not named
  std::map<std::string, double> named;
};

struct ImportedReaction {
  Place place;
  std::string equation;             // in the YAML file
  std::vector<std::string> educts;  // species, each as often as it counts; the partner left out
  std::vector<std::string> products;
  bool reversible = false;
  bool duplicate = false;
  bool sticking = false;                      // then `rate.A` is the sticking coefficient as STIC means it
  ArrheniusRate rate;                         // of a falloff reaction the high-pressure limit
  std::optional<ArrheniusRate> low_pressure;  // of a falloff reaction
  std::array<double, 4> Troe{};               // a, T***, T*, T**; all zero: Lindemann
  std::optional<CoverageDependence> coverage;
  std::optional<Efficiencies> efficiencies;  // of a reaction with a collision partner
};

struct ImportedState {
  double temperature = 300;               // K
  double pressure = 1.01325;              // bar
  std::optional<double> enthalpy;         // J/kg, in place of the temperature
  std::map<std::string, double> amounts;  // mole
};

// A species or reaction that was left out, for a comment.
struct LeftOut {
  std::string what;
  std::string reason;
};

struct ImportedMechanism {
  std::string file;  // without its folder
  std::string gas_phase;
  std::string surface_phase;  // empty: none
  std::vector<ImportedSpecies> gas;
  std::vector<ImportedSpecies> surface;
  std::vector<ImportedReaction> gas_reactions;
  std::vector<ImportedReaction> surface_reactions;
  std::vector<LeftOut> left_out;
  ImportedState state;
  double site_density = 0;          // mol/m2
  double wall_temperature = 300;    // K
  bool at_one_atmosphere = false;   // entropies of gas species are meant so
  bool sticking_converted = false;  // some coefficients are meant without the correction that STIC makes
};

}  // namespace varpre
