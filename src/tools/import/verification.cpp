#include "tools/import/verification.h"

#include <algorithm>
#include <cmath>

#include "mechanism/reverse_reaction.h"
#include "textio/record/numbered.h"
#include "tools/import/completion.h"
#include "tools/import/rate_fits.h"
#include "tools/import/short_names.h"
#include "tools/import/units.h"

namespace varpre {
namespace {

double difference(double found, double meant) {
  return found == meant ? 0 : std::abs(found / meant - 1);
}

// g/RT of a species at the temperatures of the fits, as it is meant and as it was read.
struct Gibbs {
  std::vector<double> meant;
  std::vector<double> found;
};

class Verifier {
 public:
  Verifier(const ImportedMechanism& mechanism, double pressure, const RunData& data)
      : mechanism_(mechanism),
        pressure_(pressure),
        site_density_(mechanism.site_density / 1.0E4),
        data_(data) {}

  Verification verify() {
    compare_species(mechanism_.gas, 0);
    compare_species(mechanism_.surface, data_.NGAS);
    for (const ImportedSpecies& species : mechanism_.bulk) {
      for (int step = 0; step <= fit_steps; ++step) {
        const ThermoValues values = evaluate(species.thermo, fit_temperature(step));
        gibbs_[species.name].meant.push_back(values.h - values.s);
      }
    }
    if (!result_.faults.empty()) return result_;
    compare_mechanism(mechanism_.gas_reactions, data_.gas_mechanism, false);
    compare_mechanism(mechanism_.surface_reactions, data_.surface_mechanism, true);
    if (data_.complex_reactions.size() != mechanism_.global_reactions.size())
      fault("the global reactions are not all there");
    return result_;
  }

 private:
  void fault(const std::string& what) { result_.faults.push_back(what); }

  void compare_species(const std::vector<ImportedSpecies>& all, int before) {
    for (std::size_t i = 0; i < all.size(); ++i) {
      const int number = before + static_cast<int>(i) + 1;
      if (number > NSMAX || at(data_.species.SYMB, number) != all[i].short_name) {
        fault(message("species ", all[i].name, " does not stand where it should"));
        return;
      }
      numbers_[all[i].name] = number;
      if (constexpr double noise = 1.0E-9;
          difference(1000 * at(data_.species.XMOL, number), molar_mass(all[i])) > noise)
        fault(message("species ", all[i].name, " is made of other atoms"));
      compare_thermo(all[i], at(data_.species.fit, number));
      if (all[i].molecule) compare_molecule(all[i], i);
      ++result_.species;
    }
  }

  void compare_thermo(const ImportedSpecies& species, const ThermoFit& fit) {
    const double shift = entropy_shift(species);
    Gibbs& gibbs = gibbs_[species.name];
    for (int step = 0; step <= fit_steps; ++step) {
      const double T = fit_temperature(step);
      ThermoValues meant = evaluate(species.thermo, T);
      meant.s += shift;
      std::array<double, 7> a = T < fit.TLIM[1] ? fit.HCPL : fit.HCPH;
      for (double& coefficient : a) coefficient /= gas_constant;
      const ThermoValues found = evaluate(a, T);
      gibbs.meant.push_back(meant.h - meant.s);
      gibbs.found.push_back(found.h - found.s);
      const auto& ranges = species.thermo.ranges;
      if (T < ranges.front().low || T > ranges.back().high) continue;
      result_.cp.take(difference(found.cp, meant.cp), T, species.name);
      result_.h.take(std::abs(found.h - meant.h), T, species.name);
      result_.s.take(difference(found.s, meant.s), T, species.name);
    }
  }

  void compare_molecule(const ImportedSpecies& species, std::size_t index) {
    if (index >= data_.molecules.size())
      return fault(message("species ", species.name, " has no transport data"));
    const Molecule& found = data_.molecules[index];
    const ImportedMolecule& meant = *species.molecule;
    for (const auto& [value, wanted] : {std::pair<double, double>(found.IGEOM, meant.geometry),
                                        {found.EPS, meant.well_depth},
                                        {found.SIGMA, meant.diameter},
                                        {found.DI1, meant.dipole},
                                        {found.DI2, meant.polarizability},
                                        {found.DI3, meant.rotational_relaxation}})
      result_.molecule.take(difference(value, wanted), fit_low, species.name);
  }

  void compare_mechanism(const std::vector<ImportedReaction>& meant, const Mechanism& found,
                         bool on_surface) {
    std::size_t next = 0;
    const ImportedReaction* source = nullptr;  // the one that a reverse was made of
    for (const ImportedReaction& reaction : meant) {
      if (source == nullptr || !reaction.is_reverse) source = &reaction;
      if (next + (reaction.reversible ? 1 : 0) >= found.reactions.size())
        return fault(message("reaction ", reaction.equation, " is missing"));
      const Reaction& own = found.reactions[next++];
      if (!has_species(reaction, own, on_surface))
        return fault(message("reaction ", reaction.equation, " has other species"));
      compare_rate(reaction, *source, own, on_surface);
      if (reaction.reversible || reaction.is_reverse) compare_equilibrium(reaction);
      if (reaction.reversible) compare_reverse(reaction, own, found.reactions[next++], on_surface);
      ++result_.reactions;
    }
    if (next != found.reactions.size()) fault("there are more reactions than there should be");
  }

  bool has_species(const ImportedReaction& meant, const Reaction& found, bool on_surface) const {
    const std::size_t half = on_surface ? 6 : 3;
    const auto same = [&](const Names& names, std::size_t begin) {
      std::vector<int> wanted;
      for (const std::string& name : names) wanted.push_back(numbers_.at(name));
      std::vector<int> own;
      for (std::size_t i = begin; i < begin + half; ++i) {
        const int number = found.MAT[i];
        if (number > 0 && (on_surface || number <= data_.NGAS)) own.push_back(number);
      }
      std::sort(wanted.begin(), wanted.end());
      std::sort(own.begin(), own.end());
      return own == wanted;
    };
    return same(meant.educts, 0) && same(meant.products, half);
  }

  // What a rate constant is multiplied by where it leaves cm and mol for SI.
  double to_SI(const ImportedReaction& reaction, const Reaction& found, bool on_surface) const {
    if (!on_surface) {
      const std::size_t partner = reaction.efficiencies ? 1 : 0;
      return std::pow(1.0E-6, static_cast<double>(reaction.educts.size() + partner) - 1);
    }
    if (found.ISTICK != 0) return 1;
    double factor = 1.0E4;
    for (const std::string& name : reaction.educts)
      factor *= numbers_.at(name) > data_.NGAS ? 1.0E-4 : 1.0E-6;
    return factor;
  }

  ArrheniusRate law_of(const ImportedReaction& reaction, const Reaction& found, bool on_surface) const {
    return {found.AFAC / to_SI(reaction, found, on_surface), found.TEXP, found.EXA / 1000};
  }

  void take_rate(const FittedRate& comparison, const std::string& what) {
    result_.rate.take(comparison.deviation, comparison.temperature, what);
  }

  // What was not fitted loses no more than digits.
  void take_exact(const FittedRate& comparison, const std::string& what) {
    constexpr double most = 0.05;
    take_rate(comparison, what);
    if (comparison.deviation > most) fault(message("reaction ", what, " has another rate"));
  }

  // `source` has the law: of a reverse that was made, the forward reaction.
  void compare_rate(const ImportedReaction& reaction, const ImportedReaction& source, const Reaction& found,
                    bool on_surface) {
    const double sites = std::pow(site_density_, source.site_exponent);
    const RateOfTemperature meant = [&](double T) {
      const double k = sites * rate_constant(source.law, T, pressure_);
      return reaction.is_reverse ? k / equilibrium_constant(source, T) : k;
    };
    if ((found.ISTICK != 0) != reaction.sticking)
      return fault(message("reaction ", reaction.equation, " has a rate of another kind"));
    if (found.ISTICK != 0) {
      const StickingRate& sticking = *source.law.sticking;
      const double g = sticking.coefficient.A;
      take_parameter(found.AFAC, sticking.factor * (sticking.Motz_Wise ? g / (1 - g / 2) : g), reaction);
    } else {
      const bool fitted = reaction.is_reverse || !source.law.is_arrhenius();
      const FittedRate comparison = compare_rates(law_of(reaction, found, on_surface), meant);
      fitted ? take_rate(comparison, reaction.equation) : take_exact(comparison, reaction.equation);
    }
    if (reaction.low_pressure) compare_falloff(reaction, found);
    if (reaction.coverage) {
      const auto& [species, a, m, E] = *reaction.coverage;
      for (const auto& [value, wanted] :
           {std::pair(found.VT4, a), std::pair(found.VT5, m), std::pair(found.VT6, 1000 * E)})
        take_parameter(value, wanted, reaction);
      if (found.ICOV != numbers_.at(species))
        fault(message("reaction ", reaction.equation, " has another coverage"));
    }
    if (reaction.efficiencies) compare_efficiencies(reaction, found);
  }

  void take_parameter(double value, double wanted, const ImportedReaction& reaction) {
    take_exact({{}, difference(value, wanted), fit_low}, reaction.equation);
  }

  void compare_falloff(const ImportedReaction& reaction, const Reaction& found) {
    const auto& F = found.FALL;
    const RateOfTemperature meant = [&](double T) { return rate_constant(*reaction.low_pressure, T); };
    take_exact(compare_rates({F[0], F[1], F[2] / 1000}, meant), reaction.equation + " (low pressure)");
    for (std::size_t i = 0; i < reaction.Troe.size(); ++i)
      take_parameter(F[i + 3], reaction.Troe[i], reaction);
  }

  void compare_efficiencies(const ImportedReaction& reaction, const Reaction& found) {
    const auto partner =
        std::find_if(found.MAT.begin(), found.MAT.end(), [&](int number) { return number > data_.NGAS; });
    const auto& rows = data_.efficiencies.EFF;
    const auto row =
        partner == found.MAT.end() ? rows.size() : static_cast<std::size_t>(*partner - data_.NGAS - 1);
    if (row >= rows.size())
      return fault(message("reaction ", reaction.equation, " has no collision partner"));
    const auto& [usual, named] = *reaction.efficiencies;
    for (const ImportedSpecies& species : mechanism_.gas) {
      const auto own = named.find(species.name);
      take_parameter(rows[row][static_cast<std::size_t>(numbers_.at(species.name) - 1)],
                     own == named.end() ? usual : own->second, reaction);
    }
  }

  // Sum of g/RT of the products less that of the educts.
  template <class Values>
  double change(const ImportedReaction& reaction, Values values) const {
    double sum = 0;
    for (const Names* names : {&reaction.products, &reaction.bulk_products})
      for (const std::string& name : *names) sum += values(gibbs_.at(name));
    for (const Names* names : {&reaction.educts, &reaction.bulk_educts})
      for (const std::string& name : *names) sum -= values(gibbs_.at(name));
    return sum;
  }

  void compare_equilibrium(const ImportedReaction& reaction) {
    if (!reaction.bulk_educts.empty() || !reaction.bulk_products.empty()) return;
    for (std::size_t step = 0; step <= fit_steps; ++step) {
      const double moved = change(reaction, [&](const Gibbs& g) { return g.found[step] - g.meant[step]; });
      result_.equilibrium.take(std::abs(std::expm1(moved)), fit_temperature(static_cast<int>(step)),
                               reaction.equation);
    }
  }

  // In cm and mol, from what was meant.
  double equilibrium_constant(const ImportedReaction& reaction, double T) const {
    std::size_t step = 0;
    while (fit_temperature(static_cast<int>(step)) < T) ++step;
    double constant = std::exp(-change(reaction, [&](const Gibbs& g) { return g.meant[step]; }));
    const auto count = [&](const Names& names, int sign) {
      for (const std::string& name : names) {
        const double concentration =
            numbers_.at(name) > data_.NGAS ? site_density_ : 1 / (gas_constant_cm3_bar * T);
        constant *= std::pow(concentration, sign);
      }
    };
    count(reaction.products, 1);
    count(reaction.educts, -1);
    return constant;
  }

  // The program fits a reverse where the solver does not work it out.
  void compare_reverse(const ImportedReaction& reaction, const Reaction& forward, const Reaction& reverse,
                       bool on_surface) {
    if (reverse.IARRH != arrhenius || reverse.AFAC == 0) return;
    ImportedReaction back = reaction;
    std::swap(back.educts, back.products);
    const ArrheniusRate law = law_of(reaction, forward, on_surface);
    const FittedRate comparison = compare_rates(law_of(back, reverse, on_surface), [&](double T) {
      return rate_constant(law, T) / equilibrium_constant(reaction, T);
    });
    result_.reverse.take(comparison.deviation, comparison.temperature, reaction.equation);
  }

  const ImportedMechanism& mechanism_;
  double pressure_;
  double site_density_;  // mol/cm2
  const RunData& data_;
  std::map<std::string, int> numbers_;
  std::map<std::string, Gibbs> gibbs_;
  Verification result_;
};

// Three digits are enough to tell how large a deviation is.
std::string in_percent(double fraction) {
  return message(without_noise(100 * fraction, 3), " %");
}

std::string told(std::string_view what, const Deviation& deviation) {
  constexpr double noise = 1.0E-9;
  if (deviation.size < noise) return message(what, " exact");
  return message(what, " within ", in_percent(deviation.size), " (", deviation.of, " at ",
                 std::round(deviation.temperature), " K)");
}

int count(const auto& list) {
  return static_cast<int>(list.size());
}

void list_names(const ImportedMechanism& mechanism, std::vector<std::string>& lines) {
  int raised = 0;
  for (const auto* all : {&mechanism.gas, &mechanism.surface}) {
    for (const ImportedSpecies& species : *all) {
      const std::string name(trimmed(species.short_name.view()));
      if (name == species.name) continue;
      if (in_capitals(name) == in_capitals(species.name)) {
        ++raised;
      } else {
        lines.push_back(message(name, " stands for ", species.name));
      }
    }
  }
  if (raised > 0) lines.push_back(message(counted(raised, "name"), " written in capitals"));
}

}  // namespace

Verification verify(const ImportedMechanism& mechanism, double pressure, const RunData& data) {
  return Verifier(mechanism, pressure, data).verify();
}

std::vector<std::string> summary_lines(const ImportedMechanism& mechanism, const Verification* verification) {
  std::vector<std::string> lines{message("gas phase ", mechanism.gas_phase, ": ", count(mechanism.gas),
                                         " species, ", counted(count(mechanism.gas_reactions), "reaction"))};
  if (!mechanism.global_reactions.empty())
    lines.back() += message(", ", counted(count(mechanism.global_reactions), "global reaction"));
  if (!mechanism.surface_phase.empty()) {
    lines.push_back(message("surface ", mechanism.surface_phase, ": ", count(mechanism.surface), " species, ",
                            counted(count(mechanism.surface_reactions), "reaction")));
  }
  for (const std::string& phase : mechanism.other_phases)
    lines.push_back(message("not taken: phase ", phase));
  for (const auto& [what, reason, place] : mechanism.left_out) {
    const std::string line =
        place.unit == nullptr ? "" : message(" (", place.unit->name, ":", place.record, ")");
    lines.push_back(message("left out: ", what, ": ", reason, line));
  }
  list_names(mechanism, lines);
  for (const std::string& name : mechanism.bulk_dropped)
    lines.push_back(message(name, " has the activity 1 and stands in no equation"));
  for (const auto& [what, deviation] : mechanism.fitted) {
    lines.push_back(message("fitted: ", what, ", off by up to ", in_percent(deviation.size), " at ",
                            std::round(deviation.temperature), " K"));
  }
  if (verification == nullptr) return lines;
  const Verification& v = *verification;
  lines.push_back(message("compared with the file from 300 to 2500 K: ", told("rates", v.rate)));
  lines.push_back(message("  ", told("equilibria", v.equilibrium), ", ", told("cp", v.cp)));
  lines.push_back(message("  ", told("h/RT", v.h), ", ", told("s", v.s)));
  if (v.molecule.size > 0) lines.push_back(message("  ", told("transport data", v.molecule)));
  if (!v.reverse.of.empty())
    lines.push_back(message("  ", told("reverse rates that varpre fits from equilibrium", v.reverse)));
  return lines;
}

}  // namespace varpre
