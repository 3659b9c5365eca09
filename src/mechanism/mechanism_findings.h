#pragma once

#include <array>
#include <span>
#include <string>
#include <vector>

#include "mechanism/reaction_line.h"
#include "textio/findings/findings.h"

// What an expert would notice about the reactions of a mechanism beyond the rules of the listing: warnings
// only.
namespace varpre {

// Whether the comment behind a reaction says that it stands there again on purpose: "! dup", "! DUPLICATE".
bool is_meant_as_duplicate(const Place& line);

// Where the parameters A, b and E (0, 1, 2) of a reaction line stand, from `first` to `last`; the line itself
// in a form without them at its end.
Place place_of_parameters(const Place& line, int first, int last);

// Whether what is found about a reaction follows from the fit of one of its species: that of a species
// without entry, or one that has been told of, where it is counted then (Findings::follows).
bool follows_from_a_fit(const Phase& phase, const SpeciesVector& MAT, std::span<const ThermoFit> fit,
                        Findings& findings);

// Checks that the elements of a reaction balance.
class ElementBalance {
 public:
  // Nothing is known of species without an entry, or of a gas without elements; an empty site has none.
  ElementBalance(const SpeciesView& species, int NSURF);

  // Whether they do, as far as is known.
  bool check(const Phase& phase, const Reaction& reaction);
  // Tells of the reactions that do not balance, or of the species whose elements explain all of them.
  void report(const Phase& phase, const SpeciesView& species, Findings& findings) const;

 private:
  struct Atoms {
    std::array<std::size_t, 4> element{};  // places in symbols_
    std::array<int, 4> count{};            // 0: no atom
    bool known = false;
  };
  std::vector<ElementSymbol> symbols_;
  struct Unbalanced {
    SpeciesVector MAT;
    Place line;
    std::string what;
  };
  int common_species(const Phase& phase) const;

  std::vector<Atoms> species_;
  std::vector<int> sums_;  // of the elements in a reaction: those on the right less those on the left
  std::vector<Unbalanced> unbalanced_;
};

// The atoms of a reaction with coefficients that need not be whole: those of the products less those of the
// reactants.
class ElementSums {
 public:
  explicit ElementSums(const SpeciesView& species) : species_(species) {}

  // A species by its number, 0 for none.
  void add(int number, double coefficient);
  // Warns of the first element that is not conserved; not where a species has no entry.
  void report(const Place& line, Findings& findings) const;

 private:
  struct Sum {
    ElementSymbol symbol;
    double left = 0;
    double right = 0;
  };
  const SpeciesView& species_;
  std::vector<Sum> sums_;
  bool known_ = true;
};

// Compares generated reverse rates with forward rate over equilibrium constant between 500 and 2500 K and
// keeps the worst.
class ReverseRateCheck {
 public:
  explicit ReverseRateCheck(std::span<const ThermoFit> fit);

  void compare(const Phase& phase, const Reaction& forward, const Reaction& reverse, Findings& findings);

  // One line on the worst rate, when it is off by more than a factor of 2.
  void report(Findings& findings) const;

 private:
  static constexpr std::array<double, 6> temperatures{500, 750, 1000, 1500, 2000, 2500};

  std::span<const ThermoFit> fit_;
  std::array<double, temperatures.size()> log_RT_{};        // R in cm3 bar
  std::vector<std::array<double, temperatures.size()>> g_;  // per species: Gibbs energy over RT
  double worst_ = 0;                                        // |ln(fitted / exact)|
  double worst_temperature_ = 0;
  Place worst_place_;
};

}  // namespace varpre
