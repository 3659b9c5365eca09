#include <algorithm>
#include <filesystem>

#include "mechanism/reaction.h"
#include "thermo/elements.h"
#include "tools/import/import.h"
#include "tools/import/named_partners.h"
#include "tools/import/reaction_reader.h"
#include "tools/import/selection.h"
#include "tools/import/short_names.h"
#include "tools/import/species_reader.h"
#include "tools/import/state_reader.h"

namespace varpre {
namespace {

// Factors of the rates of a phase, by the number of the reaction, from 0.
class Multipliers {
 public:
  explicit Multipliers(const Value& mapping) {
    for (const auto& [name, place, value] : mapping.members()) {
      const auto number = parse_number(name);
      const double factor = value.number().value_or(1);
      if (name == "default") {
        usual_ = factor;
      } else if (number) {
        of_[static_cast<int>(*number)] = factor;
      } else {
        mapping.findings().error(place, message("'", name, "' is no number of a reaction"));
      }
    }
  }

  double of(int index) const {
    const auto found = of_.find(index);
    return found == of_.end() ? usual_ : found->second;
  }

 private:
  double usual_ = 1;
  std::map<int, double> of_;
};

class PhaseReader {
 public:
  PhaseReader(const ImportOptions& options, YamlFiles& files, Findings& findings)
      : import_{options, findings, files} {}

  ImportedMechanism read() {
    const ImportOptions& options = import_.options;
    const Value root = import_.files.open(options.file);
    mechanism().file = std::filesystem::path(options.file).filename();
    if (!root) return mechanism();
    const Value surface = options.surface.empty() ? Value() : find_phase(root, options.surface);
    if (!options.surface.empty() && !surface) return mechanism();
    const Value gas = find_gas(root, surface);
    if (!gas) return mechanism();
    mechanism().gas_phase = gas["name"].string().value_or("");
    read_phase_species(gas, false);
    if (surface) {
      mechanism().surface_phase = options.surface;
      read_phase_species(surface, true);
    }
    choose_species();
    name_species();
    read_reactions(gas, false);
    if (surface) read_reactions(surface, true);
    put_inert_species_last();
    check_limits(gas);
    read_state(gas, surface, import_);
    return mechanism();
  }

 private:
  ImportedMechanism& mechanism() { return import_.mechanism; }
  Findings& findings() { return import_.findings; }

  Value find_phase(const Value& root, const std::string& name) {
    std::vector<std::string> names;
    const Value phases = root.require("phases");
    for (const Value& phase : phases.items()) {
      const std::string this_name = phase["name"].string().value_or("");
      if (this_name == name) return phase;
      names.push_back(this_name);
    }
    if (phases)
      findings().error(phases.place(), message("there is no phase '", name, "'"),
                       names.empty() ? "" : message("there are: ", list_of(names)));
    return {};
  }

  static bool is_interface(const Value& phase) {
    const std::string model = phase["thermo"].string().value_or("");
    return model == "ideal-surface" || model == "coverage-dependent-surface" || model == "edge";
  }

  // The phase that was asked for, the gas beside the surface, or the first that can be held.
  Value find_gas(const Value& root, const Value& surface) {
    if (!import_.options.phase.empty()) return find_phase(root, import_.options.phase);
    if (surface) {
      for (const Selection& adjacent : read_selections(surface["adjacent-phases"], "phases")) {
        if (Value gas = find_adjacent(adjacent, surface)) return gas;
      }
    }
    const std::vector<Value> phases = root.require("phases").items();
    const auto of_model = [&](const char* model) {
      return std::find_if(phases.begin(), phases.end(),
                          [&](const Value& phase) { return phase["thermo"].string() == model; });
    };
    if (const auto gas = of_model("ideal-gas"); gas != phases.end()) return *gas;
    if (!phases.empty()) findings().error(root["phases"].place(), "there is no phase of the model ideal-gas");
    return {};
  }

  Value find_adjacent(const Selection& adjacent, const Value& surface) {
    const Value section = import_.files.section(adjacent.section, surface);
    for (const Value& phase : section.items()) {
      const auto name = phase["name"].string();
      const bool named =
          adjacent.rule == "all" || std::any_of(adjacent.names.begin(), adjacent.names.end(),
                                                [&](const Value& value) { return value.string() == name; });
      if (named && !is_interface(phase)) return phase;
    }
    return {};
  }

  // Whether the laws of the phase are those of the solver.
  void check_models(const Value& phase, bool surface) {
    phase.check_names({"name", "elements", "species", "skip-undeclared-elements",
                       "skip-undeclared-third-bodies", "explicit-third-body-duplicates", "state",
                       "adjacent-phases", "thermo", "kinetics", "rate-multipliers", "reactions", "Motz-Wise",
                       "transport", "site-density", "note", "description"});
    const auto model = phase.require("thermo").string();
    if (model && *model != (surface ? "ideal-surface" : "ideal-gas")) {
      import_.refuse(phase["thermo"].place(), message("phase ", phase["name"].string().value_or("")),
                     message("its model is '", *model, "'"),
                     surface ? "a surface is an ideal-surface" : "a gas is an ideal-gas");
    }
    const std::string kinetics = phase["kinetics"].string().value_or("none");
    const bool held =
        kinetics == "none" || (surface ? kinetics == "surface" : kinetics == "gas" || kinetics == "bulk");
    if (!held)
      findings().error(phase["kinetics"].place(),
                       message("kinetics of the kind '", kinetics, "' cannot be held"));
  }

  // The symbols a phase declares; nothing where it takes any.
  std::optional<std::vector<std::string>> declared_elements(const Value& phase) {
    if (!phase["elements"]) return std::nullopt;
    std::vector<std::string> symbols;
    for (const Selection& selection : read_selections(phase["elements"], "elements")) {
      for (const Value& name : selection.names) symbols.push_back(name.string().value_or(""));
      if (selection.rule.empty()) continue;
      for (const Value& element : import_.files.section(selection.section, selection.where).items()) {
        symbols.push_back(element["symbol"].string().value_or(""));
      }
    }
    return symbols;
  }

  void read_phase_species(const Value& phase, bool surface) {
    check_models(phase, surface);
    const auto elements = declared_elements(phase);
    const bool skip = phase["skip-undeclared-elements"].boolean().value_or(false);
    const Value list = phase["species"];
    std::vector<Selection> selections = read_selections(list, "species");
    if (!list) selections.push_back({"species", phase, {}, "all"});
    for (const Selection& selection : selections) {
      for (const Value& entry : selected_species(selection, import_.files))
        take_species(entry, surface, elements, skip);
    }
  }

  void take_species(const Value& entry, bool surface, const std::optional<std::vector<std::string>>& elements,
                    bool skip) {
    const auto name = entry.require("name").string();
    if (!name) return;
    if (elements) {
      for (const auto& [symbol, place, count] : entry["composition"].members()) {
        if (std::find(elements->begin(), elements->end(), symbol) != elements->end() || count.number() == 0)
          continue;
        if (!skip)
          findings().error(place,
                           message("the phase does not declare the element '", symbol, "' of ", *name));
        return;
      }
    }
    if (!known_.try_emplace(*name, KnownSpecies{KnownSpecies::Fate::taken, surface}).second) {
      findings().error(entry["name"].place(), message("species ", *name, " comes twice in the phases"));
      return;
    }
    declared_.push_back(*name);
    if (!surface && !is_chosen(*name)) {
      known_[*name].fate = KnownSpecies::Fate::not_chosen;
    } else if (const auto species = read_species(entry, surface, import_)) {
      (surface ? mechanism().surface : mechanism().gas).push_back(*species);
    } else {
      known_[*name].fate = KnownSpecies::Fate::left_out;
    }
  }

  bool is_chosen(const std::string& name) const {
    const auto& chosen = import_.options.species;
    return chosen.empty() || std::find(chosen.begin(), chosen.end(), name) != chosen.end();
  }

  // From the names of all species of the phases, so that a choice of some does not change them.
  void name_species() {
    const auto names = short_names(declared_);
    for (auto* species : {&mechanism().gas, &mechanism().surface}) {
      for (ImportedSpecies& one : *species) one.short_name = names.at(one.name);
    }
  }

  void choose_species() {
    std::vector<std::string> names;
    for (const auto& [name, species] : known_) names.push_back(name);
    for (const std::string& name : import_.options.species) {
      if (known_.count(name) > 0) continue;
      findings().error(whole(*import_.files.open(import_.options.file).file()),
                       message("--species: there is no species '", name, "' in the phase"),
                       Nearest(name).offer_all(names).help());
    }
    if (mechanism().gas.empty() && findings().errors() == 0) {
      findings().error(whole(*import_.files.open(import_.options.file).file()),
                       "no species of the phase can be taken");
    }
  }

  void read_reactions(const Value& phase, bool surface) {
    const Value list = phase["reactions"];
    if (phase["kinetics"].string().value_or("none") == "none") {
      if (list && list.string() != "none")
        findings().warning(list.place(), "the phase has no kinetics: its reactions are not taken");
      return;
    }
    if (list.is_scalar() && list.text() == "none") return;
    const ReactionScope scope{known_, surface,
                              phase["skip-undeclared-third-bodies"].boolean().value_or(false),
                              phase["Motz-Wise"].boolean().value_or(false)};
    const Multipliers multipliers(phase["rate-multipliers"]);
    auto& reactions = surface ? mechanism().surface_reactions : mechanism().gas_reactions;
    int index = 0;
    for (const Selection& selection : read_reaction_selections(list, phase)) {
      if (selection.rule != "all" && selection.rule != "declared-species") {
        findings().error(selection.where.place(), message("'", selection.rule, "' is no choice of reactions"),
                         "all, declared-species or none");
        continue;
      }
      for (const Value& entry : import_.files.section(selection.section, selection.where).items()) {
        const auto [of_phase, reaction] =
            read_reaction(entry, scope, selection.rule != "all", multipliers.of(index), import_);
        if (of_phase) ++index;
        if (reaction) reactions.push_back(*reaction);
      }
    }
    if (!surface) compare_named_partners(phase, mechanism());
  }

  // The solver takes the last species for those that do not react: behind those which do in the gas phase
  // come those which do at the surface only, and then the others.
  void put_inert_species_last() {
    const auto reacting_in = [](const std::vector<ImportedReaction>& reactions) {
      std::set<std::string> names;
      for (const ImportedReaction& reaction : reactions) {
        names.insert(reaction.educts.begin(), reaction.educts.end());
        names.insert(reaction.products.begin(), reaction.products.end());
      }
      return names;
    };
    const std::set<std::string> in_gas = reacting_in(mechanism().gas_reactions);
    const std::set<std::string> at_surface = reacting_in(mechanism().surface_reactions);
    const auto rank = [&](const ImportedSpecies& s) {
      return in_gas.count(s.name) > 0 ? 0 : at_surface.count(s.name) > 0 ? 1 : 2;
    };
    for (auto* species : {&mechanism().gas, &mechanism().surface}) {
      std::stable_sort(species->begin(), species->end(),
                       [&](const auto& a, const auto& b) { return rank(a) < rank(b); });
    }
  }

  void check_limits(const Value& gas) {
    const auto species = static_cast<int>(mechanism().gas.size() + mechanism().surface.size());
    if (species > NSMAX) {
      findings().error(gas.place(), message(species, " species are more than can be held"),
                       message("at most ", NSMAX, " can be; --species chooses some"));
    }
    for (const auto* reactions : {&mechanism().gas_reactions, &mechanism().surface_reactions}) {
      const auto reversible = std::count_if(reactions->begin(), reactions->end(),
                                            [](const ImportedReaction& r) { return r.reversible; });
      const auto number = static_cast<int>(reactions->size()) + static_cast<int>(reversible);
      if (number > NRMAX) {
        findings().error(reactions->front().place,
                         message(number, " reactions, reverse ones included, are more than can be held"),
                         message("at most ", NRMAX, " can be; --species leaves out those of other species"));
      }
    }
    std::set<std::string> elements;
    for (const ImportedSpecies& s : mechanism().gas) {
      for (const auto& [symbol, count] : s.atoms) elements.insert(symbol);
    }
    if (elements.size() > NEMAX) {
      findings().error(gas.place(),
                       message(static_cast<int>(elements.size()), " elements are more than can be held"),
                       message("at most ", NEMAX, " can be: ", list_of(elements)));
    }
  }

  Import import_;
  std::map<std::string, KnownSpecies> known_;
  std::vector<std::string> declared_;  // in order
};

}  // namespace

void Import::refuse(const Place& place, const std::string& what, std::string_view reason,
                    std::string_view help, Findings::Site kind) {
  const bool skip = options.skip_unsupported;
  findings.report(skip ? Findings::Severity::warning : Findings::Severity::error, place,
                  skip ? message(what, " is left out: ", reason) : message(what, ": ", reason), help, kind);
  mechanism.left_out.push_back({what, std::string(reason)});
}

ImportedMechanism read_mechanism(const ImportOptions& options, YamlFiles& files, Findings& findings) {
  return PhaseReader(options, files, findings).read();
}

}  // namespace varpre
