#include "tools/import/completion.h"

#include <algorithm>
#include <cmath>

#include "files/limits.h"
#include "files/partners.h"
#include "tools/import/partners.h"
#include "tools/import/short_names.h"

namespace varpre {
namespace {

std::vector<ImportedSpecies>& list_of_phase(KnownSpecies::Phase phase, ImportedMechanism& mechanism) {
  switch (phase) {
    case KnownSpecies::Phase::gas: return mechanism.gas;
    case KnownSpecies::Phase::surface: return mechanism.surface;
    default: return mechanism.bulk;
  }
}

constexpr double atm = 1.01325;  // bar

bool fit_thermo(ImportedSpecies& species, Import& import) {
  if (!import.options.refit_thermo) {
    import.refuse(species.place, message("species ", species.name),
                  "its thermochemistry is not made of one or two ranges of seven coefficients",
                  "--refit-thermo fits such ranges to it");
    return false;
  }
  const FittedThermo fit = fit_seven_coefficients(species.thermo);
  species.limits = fit.limits;
  species.lower = fit.lower;
  species.upper = fit.upper;
  constexpr std::array<std::string_view, 3> properties{"cp", "h", "s"};
  for (std::size_t i = 0; i < properties.size(); ++i) {
    const std::string what = message(properties[i], " of ", species.name);
    import.mechanism.fitted.push_back({what, { fit.deviation[i], fit.temperature[i], what }});
  }
  return true;
}

bool settle_thermo(ImportedSpecies& species, Import& import) {
  const auto& ranges = species.thermo.ranges;
  if (species.thermo.are_of_seven_coefficients()) {
    constexpr double usual_switch = 1000;  // K
    const double low = ranges.front().low;
    const double high = ranges.back().high;
    const bool usual = low < usual_switch && usual_switch < high;
    const auto coefficients = [](const ThermoRange& r) {
      return std::array{r.a[2], r.a[3], r.a[4], r.a[5], r.a[6], r.h, r.s};
    };
    species.limits = {low, high,
                      ranges.size() == 2 ? ranges[1].low
                      : usual            ? usual_switch
                                         : (low + high) / 2};
    species.lower = coefficients(ranges.front());
    species.upper = coefficients(ranges.back());
  } else if (!fit_thermo(species, import)) {
    return false;
  }
  const double shift = entropy_shift(species);
  if (!species.on_surface && species.thermo.reference_pressure == atm)
    import.mechanism.at_one_atmosphere = true;
  species.lower[6] += shift;
  species.upper[6] += shift;
  const auto is_finite = [](double value) { return std::isfinite(value); };
  if (std::all_of(species.lower.begin(), species.lower.end(), is_finite) &&
      std::all_of(species.upper.begin(), species.upper.end(), is_finite)) {
    return true;
  }
  import.refuse(species.place, message("species ", species.name), "its thermochemistry is not finite");
  return false;
}

std::set<std::string> reacting_in(const std::vector<ImportedReaction>& reactions) {
  std::set<std::string> names;
  for (const ImportedReaction& reaction : reactions) {
    names.insert(reaction.educts.begin(), reaction.educts.end());
    names.insert(reaction.products.begin(), reaction.products.end());
  }
  return names;
}

// The solver takes the last species for those that do not react: behind those which do in the gas phase come
// those which do at the surface only, and then the others.
void put_inert_species_last(ImportedMechanism& mechanism) {
  const std::set<std::string> in_gas = reacting_in(mechanism.gas_reactions);
  const std::set<std::string> at_surface = reacting_in(mechanism.surface_reactions);
  const auto rank = [&](const ImportedSpecies& s) {
    return in_gas.count(s.name) > 0 ? 0 : at_surface.count(s.name) > 0 ? 1 : 2;
  };
  for (auto* species : {&mechanism.gas, &mechanism.surface}) {
    std::stable_sort(species->begin(), species->end(),
                     [&](const auto& a, const auto& b) { return rank(a) < rank(b); });
  }
}

// Reactions with the same efficiencies share a collision partner, of which there are only so many.
void limit_partners(Import& import) {
  ImportedMechanism& mechanism = import.mechanism;
  const auto most =
      std::min<std::size_t>(partner_count, NEFMAX / std::max<std::size_t>(mechanism.gas.size(), 1));
  std::set<EfficiencyRow> rows{EfficiencyRow(mechanism.gas.size(), 1.0)};
  std::erase_if(mechanism.gas_reactions, [&](const ImportedReaction& reaction) {
    if (!reaction.efficiencies) return false;
    EfficiencyRow row = efficiency_row(*reaction.efficiencies, mechanism.gas);
    if (rows.size() == most && rows.count(row) == 0) {
      import.refuse(reaction.place, message("reaction ", reaction.equation),
                    "it needs one more set of efficiencies than can be held",
                    message("at most ", static_cast<int>(most) - 1, " different sets can be"));
      return true;
    }
    rows.insert(std::move(row));
    return false;
  });
}

void check_limits(const Place& file, const ImportedMechanism& mechanism, Findings& findings) {
  const auto species = static_cast<int>(mechanism.gas.size() + mechanism.surface.size());
  if (species > NSMAX) {
    findings.error(file, message(species, " species are more than can be held"),
                   message("at most ", NSMAX, " can be; --species chooses some"));
  }
  for (const auto* reactions : {&mechanism.gas_reactions, &mechanism.surface_reactions}) {
    const auto reversible = std::count_if(reactions->begin(), reactions->end(),
                                          [](const ImportedReaction& r) { return r.reversible; });
    const auto number = static_cast<int>(reactions->size()) + static_cast<int>(reversible);
    if (number > NRMAX) {
      findings.error(reactions->front().place,
                     message(number, " reactions, reverse ones included, are more than can be held"),
                     message("at most ", NRMAX, " can be; --species leaves out those of other species"));
    }
  }
  std::set<std::string> elements;
  for (const ImportedSpecies& s : mechanism.gas) {
    for (const auto& [symbol, count] : s.atoms) elements.insert(symbol);
  }
  if (elements.size() > NEMAX) {
    findings.error(file, message(static_cast<int>(elements.size()), " elements are more than can be held"),
                   message("at most ", NEMAX, " can be: ", list_of(elements)));
  }
}

// From the names of all species of the phases, so that a choice of some does not change them.
void name_species(Import& import) {
  const auto names = short_names(import.declared);
  for (auto* species : {&import.mechanism.gas, &import.mechanism.surface}) {
    for (ImportedSpecies& one : *species) one.short_name = names.at(one.name);
  }
}

void check_choice(const Place& file, Import& import) {
  for (const std::string& name : import.options.species) {
    if (import.known.count(name) > 0) continue;
    import.findings.error(file, message("--species: there is no species '", name, "' in the phase"),
                          import.findings.errors() > most_helped
                              ? std::string()
                              : Nearest(name).offer_all(import.declared).help());
  }
  if (import.mechanism.gas.empty() && import.findings.errors() == 0) {
    import.findings.error(file, "no species of the phase can be taken");
  }
}

}  // namespace

bool Import::declare(const std::string& name, const KnownSpecies& species) {
  if (!known.try_emplace(name, species).second) return false;
  declared.push_back(name);
  const auto [found, first] = by_capitals.try_emplace(in_capitals(name), name);
  if (!first) found->second.clear();
  return true;
}

std::string Import::resolved(const std::string& name) const {
  if (known.count(name) > 0) return name;
  const auto found = by_capitals.find(in_capitals(name));
  return found == by_capitals.end() || found->second.empty() ? name : found->second;
}

const KnownSpecies* Import::find(const std::string& name) const {
  const auto found = known.find(name);
  return found == known.end() ? nullptr : &found->second;
}

const ImportedSpecies& Import::species(const std::string& name) const {
  const KnownSpecies& one = known.at(name);
  switch (one.phase) {
    case KnownSpecies::Phase::gas: return mechanism.gas[one.index];
    case KnownSpecies::Phase::surface: return mechanism.surface[one.index];
    default: return mechanism.bulk[one.index];
  }
}

void Import::refuse(const Place& place, const std::string& what, std::string_view reason,
                    std::string_view help, Findings::Site kind) {
  const bool skip = options.skip_unsupported;
  findings.report(skip ? Findings::Severity::warning : Findings::Severity::error, place,
                  skip ? message(what, " is left out: ", reason) : message(what, ": ", reason), help, kind);
  mechanism.left_out.push_back({what, std::string(reason), place});
}

double entropy_shift(const ImportedSpecies& species) {
  const double pressure = species.thermo.reference_pressure;
  return species.on_surface || pressure == atm ? 0 : std::log(pressure);
}

bool take_species(ImportedSpecies species, Import& import) {
  KnownSpecies& known = import.known[species.name];
  if (!settle_thermo(species, import)) {
    known.fate = KnownSpecies::Fate::left_out;
    return false;
  }
  auto& list = list_of_phase(known.phase, import.mechanism);
  known.fate = KnownSpecies::Fate::taken;
  known.index = list.size();
  list.push_back(std::move(species));
  return true;
}

void complete(const Place& file, Import& import) {
  check_choice(file, import);
  name_species(import);
  limit_partners(import);
  put_inert_species_last(import.mechanism);
  check_limits(file, import.mechanism, import.findings);
}

}  // namespace varpre
