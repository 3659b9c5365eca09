#pragma once

#include <array>
#include <span>
#include <vector>

#include "mechanism/reaction_line.h"
#include "textio/findings/findings.h"

// What an expert would notice about the reactions of a mechanism beyond the rules of the listing: warnings
// only.
namespace varpre {

// Warns of a rate that can hardly be meant: an activation energy of other units, A that is not positive, a
// rate of two gas species beyond that of their collisions, a sticking coefficient that is none or that of a
// surface species, falloff without a third body. The last NSURF of the species stand on the surface.
void warn_of_unusual_rate(const Phase& phase, const ReactionLine& line, const ReactionNames& names, int NSURF,
                          Findings& findings);

// Whether the comment behind a reaction says that it stands there again on purpose: "! dup", "! DUPLICATE".
bool is_meant_as_duplicate(const Place& line);

// Checks that the elements of a reaction balance.
class ElementBalance {
 public:
  explicit ElementBalance(std::span<const ElementFields> species);

  void check(const Phase& phase, const Reaction& reaction, Findings& findings) const;

 private:
  struct Atoms {
    std::array<int, 4> element{};  // numbers in symbols_, from 1
    std::array<int, 4> count{};    // 0: no atom
  };
  std::vector<ElementSymbol> symbols_;
  std::vector<Atoms> species_;
};

// Compares generated reverse rates with forward rate over equilibrium constant between 500 and 2500 K and
// keeps the worst.
class ReverseRateCheck {
 public:
  explicit ReverseRateCheck(std::span<const ThermoFit> fit);

  void compare(const Phase& phase, const Reaction& forward, const Reaction& reverse);

  // One line on the worst rate, when it is off by more than a factor of 2.
  void report(Findings& findings) const;

 private:
  static constexpr std::array<double, 6> temperatures{500, 750, 1000, 1500, 2000, 2500};

  std::span<const ThermoFit> fit_;
  std::vector<std::array<double, temperatures.size()>> g_;  // per species: Gibbs energy over RT
  double worst_ = 0;                                        // |ln(fitted / exact)|
  double worst_temperature_ = 0;
  Place worst_place_;
};

}  // namespace varpre
