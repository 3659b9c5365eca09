#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "files/limits.h"

// The contents of a store file as plain data, and what each item is: its name, unit and meaning, once. From
// here follow the JSON, the comparison, the labels of the page and the tables of the documents. Units are SI,
// as in the file. Where the file shows asterisks a real is not a number and an integer the least one
// (record.h).
namespace varpre {

// cp, h, s per mass.
struct StoredThermo {
  std::array<double, 7> lower{};
  std::array<double, 7> upper{};
  std::array<double, 3> limits{};

  template <class See>
  static void fields(See see) {
    using S = StoredThermo;
    see("lower", &S::lower, "J/(kg K)", "coefficients a1 to a7 below the switch temperature");
    see("upper", &S::upper, "J/(kg K)", "coefficients a1 to a7 from the switch temperature on");
    see("limits", &S::limits, "K", "lower limit less 20, switch temperature, upper limit");
  }
};

struct StoredPhase {
  std::vector<SpeciesName> names;
  std::vector<double> molar_masses;
  std::vector<ElementSymbol> elements;
  std::vector<double> element_masses;
  std::vector<double> mass_fractions;  // species by species
  std::vector<StoredThermo> thermo;

  template <class See>
  static void fields(See see) {
    using S = StoredPhase;
    see("species", &S::names, "", "species names");
    see("molar_masses", &S::molar_masses, "kg/mol", "molar masses of the species");
    see("elements", &S::elements, "", "element symbols");
    see("element_masses", &S::element_masses, "kg/mol", "molar masses of the elements");
    see("mass_fractions", &S::mass_fractions, "", "mass fraction of each element in each species");
    see("thermo", &S::thermo, "", "heat capacity, enthalpy and entropy");
  }
};

using StoredFit = std::array<double, 4>;  // of a logarithm in powers of ln T

// Of the gas species; diffusion of the pairs 1 1, 2 1, 2 2, 3 1, ...
struct StoredTransport {
  std::vector<StoredFit> conductivity;
  std::vector<StoredFit> monoatomic_conductivity;
  std::vector<StoredFit> viscosity;
  std::vector<StoredFit> diffusion;
  std::vector<double> well_depths;
  std::vector<double> diameters;
  std::vector<double> dipole_moments;
  std::vector<double> polarizabilities;
  std::vector<double> collision_numbers;

  template <class See>
  static void fields(See see) {
    using S = StoredTransport;
    see("conductivity", &S::conductivity, "J/(m K s)", "heat conductivity");
    see("monoatomic_conductivity", &S::monoatomic_conductivity, "J/(m K s)", "monoatomic heat conductivity");
    see("viscosity", &S::viscosity, "kg/(m s)", "viscosity");
    see("diffusion", &S::diffusion, "Pa m²/s", "binary diffusion coefficient times pressure");
    see("well_depths", &S::well_depths, "K", "well depth over Boltzmann constant");
    see("diameters", &S::diameters, "Å", "collision diameter");
    see("dipole_moments", &S::dipole_moments, "debye", "dipole moment");
    see("polarizabilities", &S::polarizabilities, "Å³", "polarizability");
    see("collision_numbers", &S::collision_numbers, "", "rotational collision number");
  }
};

struct StoredReaction {
  std::array<int, 12> species{};  // educts, then products, half of the slots each; 0: none
  double A = 0;
  double b = 0;
  double E = 0;
  int form = 0;
  int sticking = 0;
  int coverage = 0;
  std::array<double, 3> values{};
  std::array<double, 8> falloff{};

  template <class See>
  static void fields(See see) {
    using S = StoredReaction;
    see("species", &S::species, "", "numbers of the educts and products");
    see("A", &S::A, "m, mol, s", "pre-exponential factor");
    see("b", &S::b, "", "temperature exponent");
    see("E", &S::E, "J/mol", "activation energy");
    see("form", &S::form, "", "rate form, IARRH");
    see("sticking", &S::sticking, "", "number of the gas species that sticks, ISTICK");
    see("coverage", &S::coverage, "", "number of the species whose coverage counts, ICOV");
    see("values", &S::values, "as read", "further rate values, VT4 to VT6");
    see("falloff", &S::falloff, "as read", "falloff parameters, FALL1 to FALL8");
  }
};

struct StoredMechanism {
  std::vector<StoredReaction> reactions;
  int partners = 0;
  std::vector<std::array<int, 3>> pointers;
  std::vector<int> pair_codes;
  int inert = 0;

  template <class See>
  static void fields(See see) {
    using S = StoredMechanism;
    see("reactions", &S::reactions, "", "reactions, generated reverses included");
    see("partners", &S::partners, "", "number of third bodies");
    see("pointers", &S::pointers, "", "species, reaction, net coefficient, NRVEC");
    see("pair_code", &S::pair_codes, "", "forward and reverse of a pair, IREVER");
    see("inert", &S::inert, "", "number of inert species");
  }
};

struct StoredComplexReaction {
  std::array<double, 6> coefficients{};
  std::array<int, 6> species{};
  std::array<double, 6> orders{};
  double A = 0;
  double b = 0;
  double E = 0;

  template <class See>
  static void fields(See see) {
    using S = StoredComplexReaction;
    see("coefficients", &S::coefficients, "", "coefficients of three reactants and three products");
    see("species", &S::species, "", "their species numbers, 0 for none");
    see("orders", &S::orders, "", "their reaction orders");
    see("A", &S::A, "m, mol, s", "pre-exponential factor");
    see("b", &S::b, "", "temperature exponent");
    see("E", &S::E, "J/mol", "activation energy");
  }
};

struct StoredPhotoReaction {
  std::array<int, 4> species{};
  double rate = 0;

  template <class See>
  static void fields(See see) {
    using S = StoredPhotoReaction;
    see("species", &S::species, "", "species numbers of the reactant and three products");
    see("rate", &S::rate, "as read", "rate");
  }
};

struct StoredMixture {
  double T = 0;
  double H = 0;
  double P = 0;
  std::vector<double> gas;
  std::vector<double> surface;
  double PHI = 0;
  double G = 0;
  double v = 0;
  double FREQ = 0;
  double FAC = 0;
  double OMEG = 0;

  template <class See>
  static void fields(See see) {
    using S = StoredMixture;
    see("T", &S::T, "K", "temperature");
    see("H", &S::H, "J/kg", "specific enthalpy");
    see("P", &S::P, "Pa", "pressure");
    see("gas", &S::gas, "", "mole fractions of the gas species");
    see("surface", &S::surface, "", "mole fractions of the surface species");
    see("PHI", &S::PHI, "", "as given");
    see("G", &S::G, "", "as given");
    see("v", &S::v, "", "as given");
    see("FREQ", &S::FREQ, "", "as given");
    see("FAC", &S::FAC, "", "as given");
    see("OMEG", &S::OMEG, "", "as given");
  }
};

// A value under the keyword that gave it.
struct StoredValue {
  std::string name;
  double value = 0;
  std::string_view unit;
  std::string_view meaning;
};

struct StoredParticles {
  int grid = 0;
  std::vector<SpeciesName> names;
  std::vector<std::vector<StoredValue>> data;  // of each species
  std::vector<double> fractions;

  template <class See>
  static void fields(See see) {
    using S = StoredParticles;
    see("grid", &S::grid, "", "grid size");
    see("species", &S::names, "", "their names");
    see("data", &S::data, "", "the 24 values of THERMLIQ");
    see("fractions", &S::fractions, "", "initial fractions");
  }
};

struct StoreData {
  std::vector<int> options;
  StoredPhase gas;
  StoredTransport transport;
  StoredPhase surface;
  std::vector<StoredValue> surface_conditions;
  StoredMechanism gas_mechanism;
  std::vector<std::vector<double>> efficiencies;  // of the gas species, by partner
  StoredMechanism surface_mechanism;
  std::vector<StoredComplexReaction> complex_reactions;
  std::vector<StoredPhotoReaction> photo_reactions;
  std::vector<StoredMixture> mixtures;
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
