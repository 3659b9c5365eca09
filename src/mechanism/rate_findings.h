#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "mechanism/reaction_line.h"
#include "textio/findings/findings.h"

namespace varpre {

// Judges the rates of a mechanism by what mechanisms of combustion have: each by itself, and all together,
// since a mechanism that is written in other units is one fault and not one of each reaction. Warnings only.
//
// Where nothing tells a wrong value from an unusual one it counts as meant: the bounds lie two decades beyond
// what has been seen.
class RateCheck {
 public:
  // The last NSURF of the species stand on the surface.
  RateCheck(const Phase& phase, const ReactionNames& names, int NSURF, std::span<const ThermoFit> fit,
            Findings& findings);

  // Judges a reaction that was read. What depends on the others waits for `report`.
  void examine(const ReactionLine& line);
  // Tells, when all reactions are read, in which units the mechanism seems to be written, or else which rates
  // stand out. `heading` is where it begins.
  void report(const Place& heading);

 private:
  struct Doubt {
    Place place;
    std::string what;
    std::string help;
  };

  void examine_sticking(const ReactionLine& line);
  void examine_coverage(const ReactionLine& line);
  void examine_surface_factor(const ReactionLine& line);
  void examine_falloff(const ReactionLine& line);
  void examine_energy(double E, const Place& line);
  void examine_gas_factor(const ReactionLine& line);
  void examine_reaction_heat(const ReactionLine& line);
  // Whether it is beyond what is usual.
  bool compare(double log_factor, double b, double E, const struct UsualFactor& usual, const Place& line);
  bool report_factors_of_all(const Place& heading);
  bool report_energies_of_all(const Place& heading);

  bool is_species(int number) const { return number >= 1 && number <= names_.NS(); }
  bool is_partner(int number) const { return number > names_.NS(); }
  bool is_gas(int number) const { return number >= 1 && number <= names_.NS() - NSURF_; }
  std::optional<double> reaction_heat(const SpeciesVector& KSPEC);

  const Phase& phase_;
  const ReactionNames& names_;
  int NSURF_;
  std::span<const ThermoFit> fit_;
  Findings& findings_;
  std::vector<std::optional<double>> heats_;  // of formation of the species, J/mol; when one was asked for
  std::vector<double> log_rates_;             // A T^b of the reactions of two gas species, decadic
  std::vector<double> energy_ratios_;         // E over the heat of reaction, where that is large
  int too_large_energies_ = 0;
  int reactions_ = 0;
  std::vector<Doubt> factors_;
  std::vector<Doubt> energies_;
};

}  // namespace varpre
