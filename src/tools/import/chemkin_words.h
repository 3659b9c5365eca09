#pragma once

#include <array>
#include <string>
#include <string_view>

#include "tools/import/units.h"

// The words of a REACTIONS line and of the lines behind a reaction.
namespace varpre {

// The units of A and E.
struct RateUnits {
  Unit energy = *parse_unit("cal/mol");
  bool molecules = false;  // else moles
};

// Sets what a word of a REACTIONS line, or of UNITS, says; the word is in capitals. False when it says
// nothing.
bool set_unit(const std::string& word, RateUnits& units);

// What lines behind a reaction can say.
inline constexpr std::array<std::string_view, 26> reaction_keywords{
    "DUPLICATE", "LOW",  "HIGH", "TROE",  "SRI",   "REV", "PLOG", "TCHEB", "PCHEB",
    "CHEB",      "FORD", "RORD", "UNITS", "LT",    "RLT", "JAN",  "FIT1",  "HV",
    "TDEP",      "EXCI", "MOME", "XSMI",  "STICK", "COV", "MWON", "MWOFF"};

// The keyword of a word: three letters are enough where no other has them, and of longer words the first
// four. Empty when it is none.
std::string_view keyword_of(std::string_view word);

}  // namespace varpre
