#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/import/chemkin_lines.h"
#include "tools/import/import.h"

namespace varpre {

// An equation, taken apart.
struct ChemkinEquation {
  using Side =
      std::vector<std::pair<std::string, double>>;  // species as the phases have them, and coefficients
  std::vector<GlobalTerm> educts;                   // names as the phases have them
  std::vector<GlobalTerm> products;
  std::string partner;  // "M", or the species in "(+N2)"; empty: none
  bool in_parentheses = false;
  bool reversible = false;
  bool has_photon = false;
};

// Takes the first `length` characters of a line apart; blanks mean nothing. None after an error.
std::optional<ChemkinEquation> read_chemkin_equation(const ChemkinLine& line, std::size_t length,
                                                     Import& import);

}  // namespace varpre
