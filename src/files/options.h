#pragma once

#include <algorithm>
#include <array>
#include <string_view>

#include "files/limits.h"
#include "textio/record/numbered.h"
#include "textio/record/text.h"

// The options: what the slots of the option vector are called. Only the first four characters of a name take
// part in matching; names of dashes are free slots.
namespace varpre {

using OptionName = Text<8>;
using OptionNames = std::array<std::string_view, NUMOPT>;

inline constexpr OptionNames NTOPT{
    "PConst. ", "Impulse ", "Energy  ", "T_uni   ", "InnerBou", "Mech.An.", "Photo C.", "Profiles",
    "Source  ", "Reduced ", "Infinte ", "FuSoret ", "ReGrid  ", "Equi    ", "Store   ", "Output  ",
    "TSO     ", "Plot    ", "Vectori.", "Extrap. ", "p_inner ", "p_outer ", "T_inner ", "T_outer ",
    "w_inner ", "w_outer ", "Fix     ", "Kalei   ", "Cyclic  ", "Global  ", "OutSen  ", "VSens   ",
    "TecNO   ", "RevSim  ", "Relax   ", "BLAA    ", "Tecplot ", "------- ", "Analyse ", "OldRes  ",
    "v_inner ", "v_outer ", "G_inner ", "G_outer ", "J_inner ", "J_outer ", "------- ", "------- ",
    "------- ", "Solid   ", "PLN2D   ", "REFIGRID", "------- ", "------- ", "------- ", "------- ",
    "------- ", "------- ", "------- ", "------- "};

// Those of the two-dimensional options.
inline constexpr OptionNames N2TOPT{
    "EXTRAP  ", "IMPULSE ", "------- ", "WALLREA ", "------- ", "SOURCE  ", "REYOUT  ", "------- ",
    "OUTERBOU", "------- ", "REGRID  ", "FUSORET ", "------- ", "VARDRO  ", "TECPLOT ", "STORE   ",
    "OUTPUT  ", "TINHOM  ", "WALL    ", "PLOT    ", "------- ", "------- ", "------- ", "------- ",
    "------- ", "------- ", "------- ", "------- ", "------- ", "--------", "------- ", "------- ",
    "------- ", "------- ", "------- ", "------- ", "------- ", "------- ", "------- ", "------- ",
    "------- ", "------- ", "------- ", "------- ", "------- ", "------- ", "------- ", "------- ",
    "------- ", "SOLID   ", "PLN2D   ", "------- ", "------- ", "------- ", "------- ", "------- ",
    "------- ", "------- ", "------- ", "------- "};

// Option vector: slot n (from 1) belongs to the n-th name.
struct OptionVector {
  std::array<int, NUMOPT> slots{};
  int operator()(int n) const { return at(slots, n); }
};

constexpr bool names_option(std::string_view word, std::string_view option) {
  return word.substr(0, 4) == option.substr(0, 4);
}

// Whether a word is the name of an option.
constexpr bool is_option(std::string_view word) {
  return word.size() >= 4 &&
         std::ranges::any_of(NTOPT, [&](std::string_view option) { return names_option(word, option); });
}

// The slot of a name; one that the options do not have does not compile.
consteval int option_slot(std::string_view name) {
  const auto found =
      std::ranges::find_if(NTOPT, [&](std::string_view option) { return trimmed(option) == name; });
  if (found == NTOPT.end()) throw "no such option";
  return static_cast<int>(found - NTOPT.begin()) + 1;
}

// Slots that this program itself looks at.
inline constexpr int IMPULSE = option_slot("Impulse");
inline constexpr int PROFILES = option_slot("Profiles");
inline constexpr int REDUCED = option_slot("Reduced");
inline constexpr int OUTPUT = option_slot("Output");
inline constexpr int REVSIM = option_slot("RevSim");
inline constexpr int SOLID = option_slot("Solid");
inline constexpr int PLN2D = option_slot("PLN2D");

}  // namespace varpre
