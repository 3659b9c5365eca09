#pragma once

#include <span>

#include "mechanism/phase.h"
#include "textio/findings/listing.h"

namespace varpre {

// The gas constant in cm3 bar/(mol K): the concentration of a gas at 1 bar is 1 / (83.143 T).
inline constexpr double gas_constant_cm3_bar = 83.143;

// Rate parameters of the reverse of `forward` (its MAT in place), both in cm, mol, s and J/mol: with the
// forward temperature exponent, A and E such that the reverse rate equals the forward rate divided by the
// equilibrium constant Kc = Kp / (83.143 T)^dn exactly at two temperatures,
//   T1 = largest lower limit + 400 K and T2 = smallest switch temperature + 1500 K of the educts
// (T1 at least 1000 K when T2 exceeds 6000 K).
// Kp comes from the thermochemical fits of the NS species; collision partners count nowhere. A
// coverage-dependent reaction is copied. A vanishing Kc, an equation without educts among the species, or a
// fit that is not finite gets the message; in the last two cases A and E of the reverse are 0.
//
// Returns AFAC, TEXP, EXA, VT4..VT6 and IARRH; the caller fills the rest.
Reaction INIMRP(const Phase& phase, const Reaction& forward, std::span<const ThermoFit> fit, Listing& MSGFIL);

}  // namespace varpre
