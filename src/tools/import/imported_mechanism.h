#pragma once

#include <array>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "textio/findings/findings.h"
#include "thermo/species.h"
#include "tools/import/rate_laws.h"
#include "tools/import/thermo_ranges.h"

// A mechanism as the files it comes from mean it and, beside that, as the input files of the program can hold
// it. Whatever the format, a reader fills in what its files say; settle_thermo, take_reaction and complete
// (completion.h) make the rest of it. Both are kept: what was written is compared with what was meant.
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
  std::string name;  // in the file
  Place place;
  bool on_surface = false;
  std::vector<std::pair<std::string, int>> atoms;  // element symbols in capitals, and counts
  ThermoRanges thermo;                             // as the file gives it
  std::optional<ImportedMolecule> molecule;

  SpeciesName short_name;
  std::array<double, 3> limits{};  // lowest, highest and switch temperature, K
  std::array<double, 7> lower{};   // a1 to a7 below and above the switch temperature
  std::array<double, 7> upper{};
};

// The sum of its atoms, g/mol.
double molar_mass(const ImportedSpecies& species);

// The rate is multiplied by 10^(a theta) theta^m exp(-E theta / RT).
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

using Names = std::vector<std::string>;

struct ImportedReaction {
  Place place;
  std::string equation;  // in the file
  Names educts;          // species, each as often as it counts; the partner left out
  Names products;
  Names bulk_educts;  // the same of solids with the activity 1, which stand in no equation that is written
  Names bulk_products;
  std::map<std::string, double> orders;  // other than those of mass action, of surface species
  bool reversible = false;
  bool duplicate = false;
  RateLaw law;                                // of a falloff reaction that at high pressure
  std::optional<ArrheniusRate> low_pressure;  // of a falloff reaction
  std::array<double, 4> Troe{};  // a, T***, T*, T** (0: its term is missing); all zero: Lindemann
  std::optional<CoverageDependence> coverage;
  std::optional<Efficiencies> efficiencies;  // of a reaction with a collision partner

  ArrheniusRate rate;       // that is written; with `sticking`, A as STIC means it
  bool sticking = false;    // written behind STIC
  bool is_reverse = false;  // made of the reaction before it, which stands without its reverse
  double site_exponent =
      0;  // power of the site density, mol/cm2, by which the law of a surface was multiplied
};

// A global reaction: coefficients that are no whole numbers, or orders of its own.
struct GlobalTerm {
  std::string species;
  double coefficient = 0;
  double order = 0;  // of an educt
};
struct GlobalReaction {
  Place place;
  std::string equation;
  std::vector<GlobalTerm> educts;
  std::vector<GlobalTerm> products;
  ArrheniusRate rate;
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
  Place place;
};

// A deviation of what is written from what was meant: the fraction, at which temperature, and of what.
struct Deviation {
  double size = 0;
  double temperature = 0;  // K
  std::string of;

  void take(double other, double T, const std::string& what) {
    if (other > size) *this = {other, T, what};
  }
  bool operator==(const Deviation&) const = default;
};

// What was fitted to something else, for the summary.
struct FittedPart {
  std::string what;  // "the rate of H+O2=HO2 at 1 bar"
  Deviation deviation;
};

struct ImportedMechanism {
  std::string file;  // without its folder
  std::string gas_phase;
  std::string surface_phase;  // empty: none
  std::vector<ImportedSpecies> gas;
  std::vector<ImportedSpecies> surface;
  std::vector<ImportedSpecies> bulk;  // of adjacent phases of one solid, which have the activity 1
  std::vector<ImportedReaction> gas_reactions;
  std::vector<ImportedReaction> surface_reactions;
  std::vector<GlobalReaction> global_reactions;
  std::vector<std::string> other_phases;  // that the file has, with their models
  std::vector<LeftOut> left_out;
  std::vector<FittedPart> fitted;
  std::set<std::string> bulk_dropped;  // from equations
  ImportedState state;
  double site_density = 0;          // mol/m2
  double wall_temperature = 300;    // K
  bool at_one_atmosphere = false;   // entropies of gas species are meant so
  bool sticking_converted = false;  // some coefficients are meant without the correction that STIC makes
};

}  // namespace varpre
