#include "mechanism/reverse_reaction.h"

#include <algorithm>
#include <cmath>

#include "math/elementary.h"
#include "mechanism/integer_power.h"
#include "mechanism/mechanism_findings.h"
#include "textio/findings/listing.h"
#include "textio/findings/record_findings.h"
#include "thermo/thermo_functions.h"

namespace varpre {
namespace {

constexpr double R = gas_constant;

// Tells once of each reaction what the listing may tell several times.
class BadParameters {
 public:
  BadParameters(const Phase& phase, const Reaction& forward, std::span<const ThermoFit> fit, Listing& MSGFIL)
      : phase_(phase), forward_(forward), fit_(fit), MSGFIL_(MSGFIL) {}

  void report() {
    write<"('0',5X,'INCORRECT REVERSE REACT. ARRH. PARAM. ','DUE TO BAD THERMODYN. OR INPUT DATA')">(MSGFIL_);
    if (told_) return;
    told_ = true;
    constexpr double most_E = 1.0E+6;  // J/mol; a larger one is told of by itself
    if (std::abs(forward_.EXA) > most_E) return;
    if (follows_from_a_fit(phase_, forward_.MAT, fit_, MSGFIL_.findings)) return;
    MSGFIL_.findings.warning(forward_.line, "no sound rate of the reverse of this reaction can be generated",
                             "look at its A and E, and at the thermochemistry of its species");
  }

 private:
  const Phase& phase_;
  const Reaction& forward_;
  std::span<const ThermoFit> fit_;
  Listing& MSGFIL_;
  bool told_ = false;
};

struct FitTemperatures {
  double T1 = 0;       // K
  double T2 = 1.0E30;  // K
  bool any_educt = false;
};

FitTemperatures fit_temperatures(const Phase& phase, const SpeciesVector& MAT,
                                 std::span<const ThermoFit> fit) {
  FitTemperatures t;
  for (const int number : phase.educts(MAT)) {
    if (number < 1 || number > count_of(fit)) continue;
    const auto& TLIM = at(fit, number).TLIM;
    t.T1 = std::max(t.T1, TLIM[0] + 400);
    t.T2 = std::min(t.T2, TLIM[1] + 1500);
    t.any_educt = true;
  }
  if (t.T2 > 6000) t.T1 = std::max(t.T1, 1000.0);
  return t;
}

// Changes of enthalpy, entropy and mole number by the reaction at one temperature.
struct ReactionSums {
  double dH = 0;  // J/mol
  double dS = 0;  // J/(mol K)
  int dn = 0;
};

ReactionSums reaction_sums(const Phase& phase, const SpeciesVector& MAT, double T,
                           std::span<const ThermoFit> fit, Listing& MSGFIL) {
  ReactionSums sums;
  phase.for_each(MAT, [&](int number, int sign) {
    if (number > count_of(fit)) return;
    sums.dH += sign * CALHI(number, T, fit, MSGFIL);
    sums.dS += sign * CALSI(number, T, fit, MSGFIL);
    sums.dn += sign;
  });
  return sums;
}

// Equilibrium constant in (mol/cm^3)^dn.
double equilibrium_constant(const ReactionSums& sums, double T) {
  const double Kp = math::exp(-(sums.dH - T * sums.dS) / (R * T));
  return Kp / integer_power(gas_constant_cm3_bar * T, sums.dn);
}

double without_zero(double Kc, BadParameters& bad) {
  if (Kc != 0) return Kc;
  bad.report();
  return 1.0E-35F;
}

}  // namespace

Reaction INIMRP(const Phase& phase, const Reaction& forward, std::span<const ThermoFit> fit,
                Listing& MSGFIL) {
  Reaction reverse;
  reverse.TEXP = forward.TEXP;
  reverse.IARRH = forward.IARRH;
  if (forward.IARRH == coverage_dependent) {
    reverse.AFAC = forward.AFAC;
    reverse.EXA = forward.EXA;
    reverse.VT4 = forward.VT4;
    reverse.VT5 = forward.VT5;
    reverse.VT6 = forward.VT6;
    reverse.IARRH = reverse_of(coverage_dependent);
    return reverse;
  }

  const auto [T1, T2, any_educt] = fit_temperatures(phase, forward.MAT, fit);
  BadParameters bad(phase, forward, fit, MSGFIL);
  if (!any_educt) {
    bad.report();
    return reverse;
  }
  const ReactionSums at_T2 = reaction_sums(phase, forward.MAT, T2, fit, MSGFIL);
  const ReactionSums at_T1 = reaction_sums(phase, forward.MAT, T1, fit, MSGFIL);
  const double Kc2 = without_zero(equilibrium_constant(at_T2, T2), bad);
  const double Kc1 = without_zero(equilibrium_constant(at_T1, T1), bad);
  const double X2 = forward.AFAC * math::exp(-forward.EXA / (R * T2)) / Kc2;
  const double X1 = forward.AFAC * math::exp(-forward.EXA / (R * T1)) / Kc1;
  reverse.EXA = R * math::log(X1 / X2) / (1 / T2 - 1 / T1);
  reverse.AFAC = X2 * math::exp(reverse.EXA / (R * T2));
  if (!std::isfinite(reverse.EXA) || !std::isfinite(reverse.AFAC)) {
    bad.report();
    reverse.AFAC = reverse.EXA = 0;
  }
  return reverse;
}

}  // namespace varpre
