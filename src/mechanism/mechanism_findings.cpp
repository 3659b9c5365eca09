#include "mechanism/mechanism_findings.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "mechanism/reverse_reaction.h"
#include "textio/names/scanning.h"
#include "thermo/elements.h"
#include "thermo/thermo_functions.h"

namespace varpre {

ElementBalance::ElementBalance(std::span<const ElementFields> species) {
  const auto number_of = [&](const ElementSymbol& symbol) {
    for (int e = 1; e <= count_of(symbols_); ++e) {
      if (EQUSYM(2, at(symbols_, e).view(), symbol.view())) return e;
    }
    symbols_.push_back(symbol);
    return count_of(symbols_);
  };
  for (const ElementFields& fields : species) {
    Atoms atoms;
    for (std::size_t j = 0; j < fields.ELSYM.size(); ++j) {
      if (is_empty_field(fields.ELSYM[j])) continue;
      atoms.element[j] = number_of(fields.ELSYM[j]);
      atoms.count[j] = fields.ELCNT[j];
      for (std::size_t before = 0; before < j; ++before) {  // a later field of the same element counts
        if (atoms.element[before] == atoms.element[j]) atoms.count[before] = 0;
      }
    }
    species_.push_back(atoms);
  }
}

void ElementBalance::check(const Phase& phase, const Reaction& reaction, Findings& findings) const {
  std::array<int, 96> left{};  // a phase has some ten elements, its database entries at most a few more
  std::array<int, 96> right{};
  if (symbols_.size() > left.size()) return;
  phase.for_each(reaction.MAT, [&](int number, int sign) {
    if (number > count_of(species_)) return;
    const Atoms& atoms = at(species_, number);
    for (std::size_t j = 0; j < atoms.count.size(); ++j) {
      if (atoms.count[j] != 0) at(sign < 0 ? left : right, atoms.element[j]) += atoms.count[j];
    }
  });
  for (int e = 1; e <= count_of(symbols_); ++e) {
    if (at(left, e) == at(right, e)) continue;
    findings.warning(reaction.line,
                     message("the reaction does not balance: ", at(left, e), " ", at(symbols_, e),
                             " on the left, ", at(right, e), " on the right"));
    return;
  }
}

ReverseRateCheck::ReverseRateCheck(std::span<const ThermoFit> fit) : fit_(fit) {}

void ReverseRateCheck::compare(const Phase& phase, const Reaction& forward, const Reaction& reverse) {
  constexpr double R = gas_constant;
  if (!(forward.AFAC > 0) || !(reverse.AFAC > 0)) return;
  if (g_.empty()) {
    Listing silent;
    for (int i = 1; i <= count_of(fit_); ++i) {
      auto& g = g_.emplace_back();
      std::transform(temperatures.begin(), temperatures.end(), g.begin(), [&](double T) {
        return (CALHI(i, T, fit_, silent) - T * CALSI(i, T, fit_, silent)) / (R * T);
      });
    }
  }
  const double log_factors = std::log(forward.AFAC / reverse.AFAC);
  for (std::size_t k = 0; k < temperatures.size(); ++k) {
    const double T = temperatures[k];
    double log_Kc = 0;
    int dn = 0;
    bool reliable = true;
    phase.for_each(forward.MAT, [&](int number, int sign) {
      if (number > count_of(fit_)) return;
      log_Kc -= sign * at(g_, number)[k];
      dn += sign;
      reliable = reliable && T <= at(fit_, number).TLIM[2];
    });
    log_Kc -= dn * std::log(gas_constant_cm3_bar * T);
    const double error = std::abs(log_factors - log_Kc + (reverse.EXA - forward.EXA) / (R * T));
    if (!reliable || !(error > worst_)) continue;
    worst_ = error;
    worst_temperature_ = T;
    worst_place_ = forward.line;
  }
}

void ReverseRateCheck::report(Findings& findings) const {
  if (!(worst_ > std::log(2.0))) return;
  findings.warning(worst_place_,
                   message("the generated reverse rate of this reaction is off by a factor of ",
                           std::round(std::exp(std::min(worst_, 600.0)) * 10) / 10, " at ",
                           worst_temperature_, " K, the worst of the mechanism"),
                   "with the option RevSim the solver computes reverse rates from the equilibrium constant");
}

}  // namespace varpre
