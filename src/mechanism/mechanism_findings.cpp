#include "mechanism/mechanism_findings.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "textio/names/scanning.h"
#include "thermo/elements.h"
#include "thermo/thermo_functions.h"

namespace varpre {

ElementBalance::ElementBalance(std::span<const ElementFields> species) {
  const auto number_of = [&](const ElementSymbol& symbol) {
    for (std::size_t i = 0; i < symbols_.size(); ++i) {
      if (EQUSYM(2, symbols_[i].view(), symbol.view())) return static_cast<int>(i);
    }
    symbols_.push_back(symbol);
    return static_cast<int>(symbols_.size()) - 1;
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

void ElementBalance::check(Phase phase, const Reaction& reaction, Findings& findings) const {
  const auto MAXE = static_cast<std::size_t>(most_educts(phase));
  std::array<int, 96> net{};  // a phase has some ten elements, its database entries at most a few more
  if (symbols_.size() > net.size()) return;
  const auto visit = [&](auto action) {
    for (std::size_t slot = 0; slot < 2 * MAXE; ++slot) {
      const int number = reaction.MAT[slot];
      if (number < 1 || number > static_cast<int>(species_.size())) continue;
      const Atoms& atoms = species_[static_cast<std::size_t>(number - 1)];
      for (std::size_t j = 0; j < atoms.count.size(); ++j) {
        if (atoms.count[j] != 0) action(atoms.element[j], atoms.count[j], slot < MAXE);
      }
    }
  };
  visit([&](int element, int count, bool educt) {
    net[static_cast<std::size_t>(element)] += educt ? -count : count;
  });
  const auto wrong = std::find_if(net.begin(), net.end(), [](int n) { return n != 0; });
  if (wrong == net.end()) return;
  int left = 0;
  int right = 0;
  visit([&](int element, int count, bool educt) {
    if (element == wrong - net.begin()) (educt ? left : right) += count;
  });
  findings.warning(reaction.line, message("the reaction does not balance: ", left, " ",
                                          symbols_[static_cast<std::size_t>(wrong - net.begin())],
                                          " on the left, ", right, " on the right"));
}

ReverseRateCheck::ReverseRateCheck(std::span<const ThermoFit> fit) : fit_(fit) {}

void ReverseRateCheck::compare(Phase phase, const Reaction& forward, const Reaction& reverse) {
  constexpr double R = gas_constant;
  if (!(forward.AFAC > 0) || !(reverse.AFAC > 0)) return;
  if (g_.empty()) {
    Listing silent;
    for (int i = 1; i <= static_cast<int>(fit_.size()); ++i) {
      auto& g = g_.emplace_back();
      std::transform(temperatures.begin(), temperatures.end(), g.begin(), [&](double T) {
        return (CALHI(i, T, fit_, silent) - T * CALSI(i, T, fit_, silent)) / (R * T);
      });
    }
  }
  const int MAXE = most_educts(phase);
  const double log_factors = std::log(forward.AFAC / reverse.AFAC);
  for (std::size_t k = 0; k < temperatures.size(); ++k) {
    const double T = temperatures[k];
    double log_Kc = 0;
    int dn = 0;
    bool reliable = true;
    for (int slot = 0; slot < 2 * MAXE; ++slot) {
      const int number = forward.MAT[static_cast<std::size_t>(slot)];
      if (number < 1 || number > static_cast<int>(fit_.size())) continue;
      const int sign = slot < MAXE ? -1 : +1;
      const auto i = static_cast<std::size_t>(number - 1);
      log_Kc -= sign * g_[i][k];
      dn += sign;
      reliable = reliable && T <= fit_[i].TLIM[2];
    }
    log_Kc -= dn * std::log(83.143 * T);
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
