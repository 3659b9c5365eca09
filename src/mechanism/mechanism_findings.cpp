#include "mechanism/mechanism_findings.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "math/elementary.h"
#include "mechanism/reverse_reaction.h"
#include "textio/findings/listing.h"
#include "thermo/elements.h"
#include "thermo/thermo_functions.h"

namespace varpre {
namespace {

constexpr double kJ_per_mol = 1000;

// Above the rate of collisions of any two gas species at 1500 K, some 3E+15 cm3/(mol s).
constexpr double log_fastest_rate = 36.84;  // of 1E+16

void warn_of_sticking(const ReactionLine& line, const ReactionNames& names, int NSURF, Findings& findings) {
  const Reaction& reaction = line.reaction;
  const double coefficient = line.sticking_coefficient;
  if (!(coefficient > 0 && coefficient <= 1)) {
    findings.warning(reaction.line, message("the sticking coefficient is read as ", coefficient),
                     "a sticking coefficient is above 0 and at most 1");
  }
  if (reaction.ISTICK > names.NS() - NSURF) {
    const SpeciesName& name = names[reaction.ISTICK];
    findings.warning(locate(reaction.line, name.view()),
                     message("'", name, "' is a surface species: it cannot stick"),
                     "the first name of a sticking reaction is the gas species that sticks");
  }
}

// A of the forms whose rate is computed from it, in cm, mol, s.
void warn_of_factor(const Phase& phase, const ReactionLine& line, const ReactionNames& names,
                    Findings& findings) {
  const Reaction& r = line.reaction;
  if (!(r.AFAC > 0) && !is_meant_as_duplicate(r.line)) {
    findings.warning(r.line, message("A of this reaction is read as ", r.AFAC),
                     "a pre-exponential factor is positive");
  }
  if (&phase != &Phase::gas) return;
  const auto educts = phase.educts(line.KSPEC);
  const bool partner = std::any_of(educts.begin(), educts.end(), [&](int k) { return k > names.NS(); });
  if (partner || educts[1] == 0 || educts[2] != 0) return;
  constexpr double T = 1500;
  static const double log_T = math::log(T);
  const double log_rate = math::log(r.AFAC) + r.TEXP * log_T - r.EXA / (gas_constant * T);
  if (!(log_rate > log_fastest_rate)) return;
  findings.warning(r.line,
                   message("the rate of this reaction is ", math::exp(log_rate), " cm3/(mol s) at 1500 K"),
                   "two gas species collide at some 1E+14 to 3E+15 cm3/(mol s)");
}

void warn_of_energy(double E, const Place& line, Findings& findings) {
  if (std::abs(E) <= 1000 * kJ_per_mol || !std::isfinite(E))
    return;  // what is not finite is an error of its own
  findings.warning(line, message("the activation energy is read as ", E / kJ_per_mol, " kJ/mol"),
                   "E is in kJ/mol: is this one in J/mol or cal/mol?");
}

// A surface reaction of one gas species whose A is at most 1: what comes out of a STIC line that is missing.
void warn_of_missing_keyword(const Phase& phase, const ReactionLine& line, const ReactionNames& names,
                             int NSURF, Findings& findings) {
  const Reaction& r = line.reaction;
  if (&phase != &Phase::surface || !(r.AFAC > 0 && r.AFAC <= 1) || r.TEXP != 0 || r.EXA != 0) return;
  const auto educts = phase.educts(line.KSPEC);
  if (std::none_of(educts.begin(), educts.end(), [&](int k) { return k >= 1 && k <= names.NS() - NSURF; }))
    return;
  findings.warning(r.line, message("A of this reaction, ", r.AFAC, ", looks like a sticking coefficient"),
                   "a line STIC in front of the reaction makes it one");
}

}  // namespace

bool is_meant_as_duplicate(const Place& line) {
  if (!line) return false;
  std::string_view comment = line.unit->origin(line.record).text;
  const auto is_letter = [](char c) { return upper(c) >= 'A' && upper(c) <= 'Z'; };
  for (std::size_t at = comment.find('!'); at < comment.size();) {
    const auto begin =
        std::find_if(comment.begin() + static_cast<std::ptrdiff_t>(at), comment.end(), is_letter);
    const auto end = std::find_if_not(begin, comment.end(), is_letter);
    const std::string_view word(begin, end);
    if (same_word(word, "DUP") || same_word(word, "DUPLICATE")) return true;
    at = static_cast<std::size_t>(end - comment.begin());
  }
  return false;
}

void warn_of_unusual_rate(const Phase& phase, const ReactionLine& line, const ReactionNames& names, int NSURF,
                          Findings& findings) {
  const Reaction& reaction = line.reaction;
  if (reaction.ISTICK != 0) return warn_of_sticking(line, names, NSURF, findings);
  warn_of_energy(reaction.EXA, reaction.line, findings);
  if (reaction.IARRH == coverage_dependent) warn_of_energy(reaction.VT6, reaction.line, findings);
  if (reaction.IARRH == falloff) warn_of_energy(reaction.FALL[2], reaction.line, findings);
  warn_of_missing_keyword(phase, line, names, NSURF, findings);
  if (reaction.IARRH != non_arrhenius) warn_of_factor(phase, line, names, findings);
  const auto is_partner = [&](int number) { return number > names.NS(); };
  if (reaction.IARRH == falloff && std::none_of(line.KSPEC.begin(), line.KSPEC.end(), is_partner)) {
    findings.warning(reaction.line, "this reaction has falloff parameters, but no third body",
                     "its third body stands on both sides: H+O2+M'=HO2+M'");
  }
}

ElementBalance::ElementBalance(std::span<const ElementFields> species) {
  const auto number_of = [&](const ElementSymbol& symbol) {
    for (int e = 1; e <= count_of(symbols_); ++e) {
      if (same_word(at(symbols_, e).view(), symbol.view())) return e;
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
  const double log_factors = math::log(forward.AFAC / reverse.AFAC);
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
    log_Kc -= dn * math::log(gas_constant_cm3_bar * T);
    const double error = std::abs(log_factors - log_Kc + (reverse.EXA - forward.EXA) / (R * T));
    if (!reliable || !(error > worst_)) continue;
    worst_ = error;
    worst_temperature_ = T;
    worst_place_ = forward.line;
  }
}

void ReverseRateCheck::report(Findings& findings) const {
  if (!(worst_ > math::log(2.0))) return;
  findings.warning(worst_place_,
                   message("the generated reverse rate of this reaction is off by a factor of ",
                           std::round(math::exp(std::min(worst_, 600.0)) * 10) / 10, " at ",
                           worst_temperature_, " K, the worst of the mechanism"),
                   "with the option RevSim the solver computes reverse rates from the equilibrium constant");
}

}  // namespace varpre
