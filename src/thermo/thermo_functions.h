#pragma once

#include <span>

#include "textio/findings/listing.h"
#include "thermo/species.h"

namespace varpre {

// Molar enthalpy [J/mol], entropy [J/(mol K)] and heat capacity at constant pressure [J/(mol K)] that the
// coefficients a1..a7 of one range give at temperature T [K], by nested multiplication.
double enthalpy(const ThermoCoefficients& a, double T);
double entropy(const ThermoCoefficients& a, double T);
double heat_capacity(const ThermoCoefficients& a, double T);

// Molar enthalpy [J/mol], entropy [J/(mol K)] and heat capacity at constant pressure [J/(mol K)] of species I
// (from 1) at temperature T [K] by its polynomial fit. Below the switch temperature
// the lower range serves, from it on the upper one; above the upper limit of reliability a warning goes to
// the listing.
double CALHI(int I, double T, std::span<const ThermoFit> fit, Listing& MSGFIL);
double CALSI(int I, double T, std::span<const ThermoFit> fit, Listing& MSGFIL);
double CALCPI(int I, double T, std::span<const ThermoFit> fit, Listing& MSGFIL);

// Enthalpy of a mixture [J/mol] at T: sum of X(i) h(i, T). A temperature above the fit of a species is
// listed; whether it makes a finding is the caller's to say, who knows which species matter.
double mixture_enthalpy(double T, std::span<const double> X, std::span<const ThermoFit> fit, Listing& MSGFIL);

// Temperature [K] at which a gas mixture of mole fractions X and molar masses XMOL [kg/mol] has the specific
// enthalpy HSPEC [J/kg]: Newton iteration from 1200 K to a step below 1E-7 of the temperature. Stops the run
// (RunStop), with its message in the listing, after 61 steps without convergence.
// `mixture` is where it is defined.
double GETT(double HSPEC, std::span<const double> X, std::span<const ThermoFit> fit,
            std::span<const double> XMOL, const Place& mixture, Listing& MSGFIL);

}  // namespace varpre
