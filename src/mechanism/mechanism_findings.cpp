#include "mechanism/mechanism_findings.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "math/elementary.h"
#include "mechanism/reverse_reaction.h"
#include "textio/findings/listing.h"
#include "textio/names/words.h"
#include "textio/record/number_format.h"
#include "thermo/elements.h"
#include "thermo/thermo_functions.h"

namespace varpre {
namespace {

const double least_told = math::log(2.0);  // of a reverse rate that is off

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

Place place_of_parameters(const Place& line, int first, int last) {
  if (!line) return line;
  const std::string_view text = line.unit->origin(line.record).text;
  const std::vector<Word> words = words_of(text.substr(0, text.find('!')));
  constexpr int parameters = 3;
  if (count_of(words) < parameters || !read_free_real(words.back().text)) return line;
  const auto* const of_A = &words.back() - (parameters - 1);
  Place place = line;
  place.column = of_A[first].column;
  place.width = of_A[last].last() - place.column + 1;
  return place;
}

bool follows_from_a_fit(const Phase& phase, const SpeciesVector& MAT, std::span<const ThermoFit> fit,
                        Findings& findings) {
  bool explained = false;
  phase.for_each(MAT, [&](int number, int) {
    if (explained || number > count_of(fit)) return;
    const Place& entry = at(fit, number).entry;
    explained = entry.unit == nullptr || findings.follows(entry, "reverse rate");
  });
  return explained;
}

namespace {

// Whether the entry of one of the species has been told of; it is counted there then.
bool follows_from_elements(const Phase& phase, const SpeciesVector& MAT, const SpeciesView& species,
                           Findings& findings) {
  bool explained = false;
  phase.for_each(MAT, [&](int number, int) {
    if (explained || number > species.size()) return;
    explained = findings.follows(at(species.fit, number).entry, "unbalanced reaction");
  });
  return explained;
}

}  // namespace

ElementBalance::ElementBalance(const SpeciesView& species, int NSURF) {
  const auto number_of = [&](const ElementSymbol& symbol) {
    const auto found = std::find_if(symbols_.begin(), symbols_.end(), [&](const ElementSymbol& other) {
      return same_word(other.view(), symbol.view());
    });
    const auto number = static_cast<std::size_t>(found - symbols_.begin());
    if (found == symbols_.end()) symbols_.push_back(symbol);
    return number;
  };
  for (std::size_t i = 0; i < species.elements.size(); ++i) {
    const ElementFields& fields = species.elements[i];
    Atoms atoms;
    atoms.known = species.fit[i].entry.unit != nullptr;
    for (std::size_t j = 0; j < fields.ELSYM.size(); ++j) {
      if (is_empty_field(fields.ELSYM[j])) continue;
      atoms.element[j] = number_of(fields.ELSYM[j]);
      atoms.count[j] = fields.ELCNT[j];
      for (std::size_t before = 0; before < j; ++before) {  // a later field of the same element counts
        if (atoms.element[before] == atoms.element[j]) atoms.count[before] = 0;
      }
    }
    const bool surface = i + static_cast<std::size_t>(NSURF) >= species.elements.size();
    const bool has_atoms = std::any_of(atoms.count.begin(), atoms.count.end(), [](int n) { return n != 0; });
    atoms.known = atoms.known && (surface || has_atoms);
    species_.push_back(atoms);
  }
  sums_.resize(std::max(symbols_.size(), std::size_t{1}));
}

bool ElementBalance::check(const Phase& phase, const Reaction& reaction) {
  std::fill(sums_.begin(), sums_.end(), 0);
  bool known = true;
  const auto add = [&](int number, int sign, std::vector<int>& sums) {
    if (number > count_of(species_)) return;
    const Atoms& atoms = at(species_, number);
    known = known && atoms.known;
    for (std::size_t j = 0; j < atoms.count.size(); ++j) sums[atoms.element[j]] += sign * atoms.count[j];
  };
  phase.for_each(reaction.MAT, [&](int number, int sign) { add(number, sign, sums_); });
  const auto odd = std::find_if(sums_.begin(), sums_.end(), [](int sum) { return sum != 0; });
  if (!known || odd == sums_.end()) return true;
  const auto element = static_cast<std::size_t>(odd - sums_.begin());
  std::vector<int> left(sums_.size());
  phase.for_each(reaction.MAT, [&](int number, int sign) { add(number, sign < 0 ? 1 : 0, left); });
  unbalanced_.push_back({reaction.MAT, reaction.line,
                         message("the reaction does not balance: ", left[element], " ", symbols_[element],
                                 " on the left, ", left[element] + *odd, " on the right")});
  return false;
}

// The species that all unbalanced reactions have, if there is but one; 0: none.
int ElementBalance::common_species(const Phase& phase) const {
  constexpr std::size_t least = 3;
  if (unbalanced_.size() < least) return 0;
  std::vector<std::size_t> count(species_.size() + 1, 0);
  for (const Unbalanced& reaction : unbalanced_) {
    std::vector<int> seen;
    phase.for_each(reaction.MAT, [&](int number, int) {
      if (number > count_of(species_) || std::find(seen.begin(), seen.end(), number) != seen.end()) return;
      seen.push_back(number);
      ++count[static_cast<std::size_t>(number)];
    });
  }
  const auto in_all = [&](std::size_t k) { return k == unbalanced_.size(); };
  const auto found = std::find_if(count.begin(), count.end(), in_all);
  const bool one = found != count.end() && std::find_if(found + 1, count.end(), in_all) == count.end();
  return one ? static_cast<int>(found - count.begin()) : 0;
}

void ElementBalance::report(const Phase& phase, const SpeciesView& species, Findings& findings) const {
  const int common = common_species(phase);
  if (common == 0) {
    for (const Unbalanced& reaction : unbalanced_) {
      if (!follows_from_elements(phase, reaction.MAT, species, findings)) {
        findings.warning(reaction.line, reaction.what);
      }
    }
    return;
  }
  const Place& entry = at(species.fit, common).entry;
  if (findings.is_told(entry)) {
    for (std::size_t k = 0; k < unbalanced_.size(); ++k) findings.follows(entry, "unbalanced reaction");
    return;
  }
  findings.warning(entry,
                   message(count_of(unbalanced_), " reactions do not balance, all of them with ",
                           at(species.SYMB, common)),
                   message("its elements stand in columns 25-44; the first reaction stands in line ",
                           unbalanced_.front().line.unit->origin(unbalanced_.front().line.record).line));
}

void ElementSums::add(int number, double coefficient) {
  if (number == 0 || coefficient == 0) return;
  known_ = known_ && at(species_.fit, number).entry.unit != nullptr;
  const ElementFields& fields = at(species_.elements, number);
  for (std::size_t j = 0; j < fields.ELSYM.size(); ++j) {
    const ElementSymbol& symbol = fields.ELSYM[j];
    if (is_empty_field(symbol)) continue;
    auto sum = std::find_if(sums_.begin(), sums_.end(),
                            [&](const Sum& s) { return EQUSYM(2, s.symbol.view(), symbol.view()); });
    if (sum == sums_.end()) sum = sums_.insert(sum, {symbol});
    (coefficient < 0 ? sum->left : sum->right) += std::abs(coefficient) * fields.ELCNT[j];
  }
}

void ElementSums::report(const Place& line, Findings& findings) const {
  constexpr double tolerated = 0.01;
  for (const Sum& sum : sums_) {
    if (!known_ || std::abs(sum.left - sum.right) <= tolerated * std::max(sum.left, sum.right)) continue;
    findings.warning(line, message("the reaction does not balance: ", about(sum.left), " ", sum.symbol,
                                   " on the left, ", about(sum.right), " on the right"));
    return;
  }
}

ReverseRateCheck::ReverseRateCheck(std::span<const ThermoFit> fit) : fit_(fit) {
  std::ranges::transform(temperatures, log_RT_.begin(),
                         [](double T) { return math::log(gas_constant_cm3_bar * T); });
}

void ReverseRateCheck::compare(const Phase& phase, const Reaction& forward, const Reaction& reverse,
                               Findings& findings) {
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
  std::array<double, temperatures.size()> log_Kc{};
  int dn = 0;
  double reliable_up_to = temperatures.back();
  phase.for_each(forward.MAT, [&](int number, int sign) {
    if (number > count_of(fit_)) return;
    for (std::size_t k = 0; k < log_Kc.size(); ++k) log_Kc[k] -= sign * at(g_, number)[k];
    dn += sign;
    reliable_up_to = std::min(reliable_up_to, at(fit_, number).TLIM[2]);
  });
  for (std::size_t k = 0; k < temperatures.size() && temperatures[k] <= reliable_up_to; ++k) {
    const double T = temperatures[k];
    log_Kc[k] -= dn * log_RT_[k];
    const double error = std::abs(log_factors - log_Kc[k] + (reverse.EXA - forward.EXA) / (R * T));
    if (!(error > worst_)) continue;
    if (error > least_told && follows_from_a_fit(phase, forward.MAT, fit_, findings)) return;
    worst_ = error;
    worst_temperature_ = T;
    worst_place_ = forward.line;
  }
}

void ReverseRateCheck::report(Findings& findings) const {
  if (!(worst_ > least_told) || findings.is_told(worst_place_)) return;
  findings.warning(worst_place_,
                   message("the generated reverse rate of this reaction is off by a factor of ",
                           about(math::exp(std::min(worst_, 600.0))), " at ", worst_temperature_,
                           " K, the worst of the mechanism"),
                   "with the option RevSim the solver computes reverse rates from the equilibrium constant");
}

}  // namespace varpre
