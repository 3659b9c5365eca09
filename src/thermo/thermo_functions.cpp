#include "thermo/thermo_functions.h"

#include <algorithm>
#include <cmath>

#include "math/elementary.h"
#include "textio/channel/run_stop.h"
#include "textio/record/numbered.h"

namespace varpre {

double enthalpy(const ThermoCoefficients& a, double T) {
  const auto& [a1, a2, a3, a4, a5, a6, a7] = a;
  return ((((a5 / 5 * T + a4 / 4) * T + a3 / 3) * T + a2 / 2) * T + a1) * T + a6;
}

double entropy(const ThermoCoefficients& a, double T) {
  const auto& [a1, a2, a3, a4, a5, a6, a7] = a;
  return T * (((0.25 * a5 * T + a4 / 3) * T + 0.5 * a3) * T + a2) + math::log(T) * a1 + a7;
}

double heat_capacity(const ThermoCoefficients& a, double T) {
  const auto& [a1, a2, a3, a4, a5, a6, a7] = a;
  return (((a5 * T + a4) * T + a3) * T + a2) * T + a1;
}

namespace {

// Coefficients of the range that T lies in; a temperature above that range is listed.
const ThermoCoefficients& range_at(int I, double T, std::span<const ThermoFit> fits, Listing& MSGFIL) {
  const ThermoFit& fit = at(fits, I);
  if (T < fit.TLIM[1]) return fit.HCPL;
  if (T > fit.TLIM[2]) {
    write<
        "('0','WARNING: Temperature (',F6.0,') exceeds upper limit', ' of reliability (',F6.0,')',/, "
        "' for fit of thermodynamic properties of species no.',I3)">(MSGFIL, T, fit.TLIM[2], I);
  }
  return fit.HCPH;
}

// Whether the limits of a fit, or those of another one which decide how far all are evaluated, have been told
// of.
bool limits_are_told(const ThermoFit& fit, std::span<const ThermoFit> fits, const Findings& findings) {
  return !fit.entry || findings.is_told(fit.entry) ||
         std::any_of(fits.begin(), fits.end(), [&](const ThermoFit& other) {
           return other.TLIM[0] >= other.TLIM[2] && findings.is_told(other.entry);
         });
}

// The same, with a finding.
const ThermoCoefficients& range_for(int I, double T, std::span<const ThermoFit> fits, Listing& MSGFIL) {
  const ThermoFit& fit = at(fits, I);
  if (T >= fit.TLIM[1] && T > fit.TLIM[2] && !limits_are_told(fit, fits, MSGFIL.findings)) {
    MSGFIL.findings.warning(
        fit.entry, message("this fit is evaluated above its upper limit of ", fit.TLIM[2], " K"),
        "the transport fits need values up to 2600 K; reverse rates are fitted up to 1500 K above "
        "the switch temperature");
  }
  return range_at(I, T, fits, MSGFIL);
}

}  // namespace

double CALHI(int I, double T, std::span<const ThermoFit> fit, Listing& MSGFIL) {
  return enthalpy(range_for(I, T, fit, MSGFIL), T);
}

double CALSI(int I, double T, std::span<const ThermoFit> fit, Listing& MSGFIL) {
  return entropy(range_for(I, T, fit, MSGFIL), T);
}

double CALCPI(int I, double T, std::span<const ThermoFit> fit, Listing& MSGFIL) {
  return heat_capacity(range_for(I, T, fit, MSGFIL), T);
}

double mixture_enthalpy(double T, std::span<const double> X, std::span<const ThermoFit> fit,
                        Listing& MSGFIL) {
  double H = 0;
  for (std::size_t i = 0; i < X.size(); ++i) {
    H += X[i] * enthalpy(range_at(static_cast<int>(i) + 1, T, fit, MSGFIL), T);
  }
  return H;
}

double GETT(double HSPEC, std::span<const double> X, std::span<const ThermoFit> fit,
            std::span<const double> XMOL, const Place& mixture, Listing& MSGFIL) {
  constexpr int most_steps = 61;
  double M = 0;
  for (std::size_t i = 0; i < X.size(); ++i) M += X[i] * XMOL[i];

  double T = 1200.0;
  for (int step = 0; step < most_steps; ++step) {
    double h = 0;
    double cp = 0;
    for (std::size_t i = 0; i < X.size(); ++i) {
      const int I = static_cast<int>(i) + 1;
      h += X[i] * enthalpy(range_at(I, T, fit, MSGFIL), T);
      cp += X[i] * heat_capacity(range_at(I, T, fit, MSGFIL), T);
    }
    h = h / M;
    cp = cp / M;
    const double dT = (HSPEC - h) / cp;
    const double Tnew = T + dT;
    if (std::abs(dT) < 1.0e-7 * Tnew) return Tnew;
    T = Tnew;
  }
  write<"('0','ERROR  : NO CONVERGENCE OF NEWTON ITERATION')">(MSGFIL);
  MSGFIL.findings.error(mixture,
                        message("no temperature gives this mixture its enthalpy of ", HSPEC, " J/kg"),
                        "H(T0) is the specific enthalpy in J/kg");
  throw RunStop{};
}

}  // namespace varpre
