#pragma once

#include "textio/record/text.h"

// The fixed sizes of the system.
namespace varpre {

using SpeciesName = Text<8>;
using ElementSymbol = Text<2>;

inline constexpr int NSMAX = 300;     // species, all phases together
inline constexpr int NRMAX = 4000;    // reactions of a mechanism, generated reverses included
inline constexpr int NEMAX = 10;      // elements of a phase
inline constexpr int NPMAX = 10;      // photo reactions
inline constexpr int MNCRE = 10;      // complex reactions
inline constexpr int NUMOPT = 60;     // option slots
inline constexpr int NRIMAX = 48000;  // reaction pointers (triples of NRVEC)
inline constexpr int NEFMAX = 7500;   // collision efficiencies (third bodies times species)

}  // namespace varpre
