#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "files/limits.h"
#include "textio/findings/findings.h"
#include "textio/record/numbered.h"
#include "textio/record/text.h"

namespace varpre {

// Gas constant, J/(mol K).
inline constexpr double gas_constant = 8.3143;

using ThermoCoefficients = std::array<double, 7>;

// Polynomial fit of one species over two temperature ranges. The coefficients a1..a7 of a range are
// multiplied by the gas constant: cp = a1 + a2 T + a3 T^2 + a4 T^3 + a5 T^4 in J/(mol K), a6 and a7 the
// constants of enthalpy (J/mol) and entropy (J/(mol K)).
struct ThermoFit {
  ThermoCoefficients HCPL{};     // below the switch temperature
  ThermoCoefficients HCPH{};     // from the switch temperature on
  std::array<double, 3> TLIM{};  // lower limit, switch temperature, upper limit of reliability, K
  Place entry;                   // its database entry
};

// Element symbols and atom counts of one species as its database entry gives them.
struct ElementFields {
  std::array<ElementSymbol, 4> ELSYM;
  std::array<int, 4> ELCNT{};
};

// A stretch of the species arrays: the species of one phase, or of several that follow each other.
struct SpeciesView {
  std::span<const SpeciesName> SYMB;
  std::span<const int> IFLAG;  // flag written after the name: 0 none, 1 "*", 2 "+", 3 ">"
  std::span<const ThermoFit> fit;
  std::span<const ElementFields> elements;
  std::span<const double> XMOL;   // molar mass, kg/mol
  std::span<const Place> listed;  // record of the species list that holds the name; none for what only stands
                                  // in the list because its END is missing, which was reported

  int size() const { return static_cast<int>(SYMB.size()); }
};

// The same to be filled.
struct SpeciesPlaces {
  std::span<SpeciesName> SYMB;
  std::span<int> IFLAG;
  std::span<ThermoFit> fit;
  std::span<ElementFields> elements;
  std::span<double> XMOL;
  std::span<Place> listed;

  int size() const { return static_cast<int>(SYMB.size()); }
  // NOLINTNEXTLINE(google-explicit-constructor): what may be filled may be read
  operator SpeciesView() const { return {SYMB, IFLAG, fit, elements, XMOL, listed}; }
};

// All species of a run: the gas species, the surface species after them, the particle species after those.
struct Species {
  std::array<SpeciesName, NSMAX> SYMB;
  std::array<int, NSMAX> IFLAG{};
  std::array<ThermoFit, NSMAX> fit{};
  std::array<ElementFields, NSMAX> elements{};
  std::array<double, NSMAX> XMOL{};
  std::array<Place, NSMAX> listed{};

  // The species first+1 .. first+count.
  SpeciesPlaces places(int first, int count) {
    const auto part = [&](auto& array) { return behind(array, first, count); };
    return {part(SYMB), part(IFLAG), part(fit), part(elements), part(XMOL), part(listed)};
  }
  SpeciesView view(int first, int count) const {
    const auto part = [&](const auto& array) { return behind(array, first, count); };
    return {part(SYMB), part(IFLAG), part(fit), part(elements), part(XMOL), part(listed)};
  }
};

// Finds a name in a list without regard to letter case, blanks at the end counting; of equal names the first.
class NameIndex {
 public:
  explicit NameIndex(std::span<const SpeciesName> names);
  // An empty list that takes up to so many names.
  explicit NameIndex(int most);

  // Appends a name; returns the number of an equal one before it, 0 when there is none.
  int add(const SpeciesName& name);
  // Its number in the list, from 1; 0 when it is not there.
  int find(const SpeciesName& name) const;

 private:
  struct Slot {
    std::uint64_t key = 0;
    int number = 0;  // 0: free
  };
  std::size_t slot(std::uint64_t key) const;

  int count_ = 0;
  std::vector<Slot> slots_;  // a power of two, at most half of them taken
};

}  // namespace varpre
