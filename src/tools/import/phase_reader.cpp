#include <algorithm>
#include <cmath>
#include <filesystem>
#include <tuple>

#include "tools/import/completion.h"
#include "tools/import/reaction_reader.h"
#include "tools/import/selection.h"
#include "tools/import/species_reader.h"
#include "tools/import/state_reader.h"
#include "tools/import/yaml_reader.h"

namespace varpre {
namespace {

// Factors of the rates of a phase, by the number of the reaction, from 0.
class Multipliers {
 public:
  explicit Multipliers(const Value& mapping) {
    for (const auto& [name, place, value] : mapping.members()) {
      const auto number = parse_number(name);
      const double factor = value.number().value_or(1);
      constexpr long double most = 1.0E9L;
      if (name == "default") {
        usual_ = factor;
      } else if (number && *number >= 0 && *number < most && *number == std::floor(*number)) {
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
  PhaseReader(const ImportOptions& options, YamlFiles& files, const Molecules& molecules, Findings& findings)
      : import_{options, findings}, files_(files), molecules_(molecules) {}

  ImportedMechanism read() {
    const ImportOptions& options = import_.options;
    const Value root = files_.open(options.file);
    mechanism().file = std::filesystem::path(options.file).filename();
    if (!root) return mechanism();
    const Value surface = options.surface.empty() ? Value() : find_phase(root, options.surface);
    if (!options.surface.empty() && !surface) return mechanism();
    const Value gas = find_gas(root, surface);
    if (!gas || !has_model(gas, false) || (surface && !has_model(surface, true))) return mechanism();
    mechanism().gas_phase = gas["name"].string().value_or("");
    read_phase_species(gas, KnownSpecies::Phase::gas);
    if (surface) {
      mechanism().surface_phase = options.surface;
      read_phase_species(surface, KnownSpecies::Phase::surface);
      read_bulk_species(gas, surface);
      read_site_density(surface, mechanism());
    }
    settle_transport(molecules_, gas.place(), import_);
    if (files_.incomplete()) return mechanism();
    read_reactions(gas, false);
    if (surface) read_reactions(surface, true);
    list_other_phases(root);
    complete(gas.place(), import_);
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

  // The phase that was asked for, the gas beside the surface, or the first that can be held.
  Value find_gas(const Value& root, const Value& surface) {
    if (!import_.options.phase.empty()) return find_phase(root, import_.options.phase);
    if (surface) {
      for (const Value& phase : adjacent_phases(surface)) {
        if (phase["thermo"].string() == "ideal-gas") return phase;
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

  // The phases that touch the surface, each once.
  std::vector<Value> adjacent_phases(const Value& surface) {
    std::vector<Value> phases;
    SectionsTaken taken;
    for (const Selection& adjacent : read_selections(surface["adjacent-phases"], "phases")) {
      std::set<std::string> names;
      for (const Value& name : adjacent.names) names.insert(name.string().value_or(""));
      if (!is_new(adjacent, taken)) continue;
      for (const Value& phase : files_.section(adjacent.section, surface).items()) {
        if (adjacent.rule == "all" || names.count(phase["name"].string().value_or("")) > 0)
          phases.push_back(phase);
      }
    }
    return phases;
  }

  // Species of solids that touch the surface, whose activity is 1.
  void read_bulk_species(const Value& gas, const Value& surface) {
    for (const Value& phase : adjacent_phases(surface)) {
      if (phase.place() != gas.place() && phase["thermo"].string() == "fixed-stoichiometry")
        read_phase_species(phase, KnownSpecies::Phase::bulk);
    }
  }

  // Whether the laws of the phase are those of the solver. Without them nothing of it can be right.
  bool has_model(const Value& phase, bool surface) {
    phase.check_names({"name", "elements", "species", "skip-undeclared-elements",
                       "skip-undeclared-third-bodies", "explicit-third-body-duplicates", "state",
                       "adjacent-phases", "thermo", "kinetics", "rate-multipliers", "reactions", "Motz-Wise",
                       "transport", "site-density", "note", "description"});
    const auto model = phase.require("thermo").string();
    if (!model) return false;
    if (*model != (surface ? "ideal-surface" : "ideal-gas")) {
      findings().error(
          phase["thermo"].place(),
          message("phase ", phase["name"].string().value_or(""), ": its model is '", *model, "'"),
          surface ? "a surface is an ideal-surface" : "a gas is an ideal-gas");
      return false;
    }
    const std::string kinetics = phase["kinetics"].string().value_or("none");
    const bool held =
        kinetics == "none" || (surface ? kinetics == "surface" : kinetics == "gas" || kinetics == "bulk");
    if (!held)
      findings().error(phase["kinetics"].place(),
                       message("kinetics of the kind '", kinetics, "' cannot be held"));
    return held;
  }

  // The symbols a phase declares; nothing where it takes any.
  std::optional<std::set<std::string>> declared_elements(const Value& phase) {
    if (!phase["elements"]) return std::nullopt;
    std::set<std::string> symbols;
    std::set<std::string> taken;
    for (const Selection& selection : read_selections(phase["elements"], "elements")) {
      for (const Value& name : selection.names) symbols.insert(name.string().value_or(""));
      if (selection.rule.empty() || !taken.insert(selection.section).second) continue;
      for (const Value& element : files_.section(selection.section, selection.where).items()) {
        symbols.insert(element["symbol"].string().value_or(""));
      }
    }
    return symbols;
  }

  void read_phase_species(const Value& phase, KnownSpecies::Phase kind) {
    const auto elements = declared_elements(phase);
    const bool skip = phase["skip-undeclared-elements"].boolean().value_or(false);
    const Value list = phase["species"];
    std::vector<Selection> selections = read_selections(list, "species");
    if (!list) selections.push_back({"species", phase, {}, "all"});
    SectionsTaken taken;
    for (const Selection& selection : selections) {
      if (!is_new(selection, taken)) continue;
      for (const Value& entry : selected_species(selection, files_)) read_one(entry, kind, elements, skip);
    }
  }

  void list_other_phases(const Value& root) {
    for (const Value& phase : root["phases"].items()) {
      const std::string name = phase["name"].string().value_or("");
      if (name != mechanism().gas_phase && name != mechanism().surface_phase)
        mechanism().other_phases.push_back(message(name, " (", phase["thermo"].string().value_or(""), ")"));
    }
  }

  using SectionsTaken = std::set<std::tuple<const Input*, int, int>>;

  // False, after an error, when the section was named before.
  bool is_new(const Selection& selection, SectionsTaken& taken) {
    const Place place = files_.section(selection.section, selection.where).place();
    if (place.unit == nullptr || taken.insert({place.unit, place.record, place.column}).second) return true;
    findings().error(selection.where.place(), message("the section '", selection.section, "' comes twice"));
    return false;
  }

  void read_one(const Value& entry, KnownSpecies::Phase kind,
                const std::optional<std::set<std::string>>& elements, bool skip) {
    const auto name = entry.require("name").string();
    if (!name) return;
    if (elements) {
      for (const auto& [symbol, place, count] : entry["composition"].members()) {
        if (elements->count(symbol) > 0 || count.number() == 0) continue;
        if (!skip)
          findings().error(place,
                           message("the phase does not declare the element '", symbol, "' of ", *name));
        return;
      }
    }
    if (!import_.declare(*name, {KnownSpecies::Fate::left_out, kind, 0})) {
      findings().error(entry["name"].place(), message("species ", *name, " comes twice in the phases"));
      return;
    }
    if (kind == KnownSpecies::Phase::gas && !is_chosen(*name)) {
      import_.known[*name].fate = KnownSpecies::Fate::not_chosen;
    } else if (auto species = read_species(entry, kind, files_, import_)) {
      take_species(std::move(*species), import_);
    }
  }

  bool is_chosen(const std::string& name) const {
    const auto& chosen = import_.options.species;
    return chosen.empty() || std::find(chosen.begin(), chosen.end(), name) != chosen.end();
  }

  void read_reactions(const Value& phase, bool surface) {
    const Value list = phase["reactions"];
    if (phase["kinetics"].string().value_or("none") == "none") {
      if (list && list.string() != "none")
        findings().warning(list.place(), "the phase has no kinetics: its reactions are not taken");
      return;
    }
    if (list.is_scalar() && list.text() == "none") return;
    const ReactionScope scope{surface, phase["skip-undeclared-third-bodies"].boolean().value_or(false),
                              phase["Motz-Wise"].boolean().value_or(false)};
    const Multipliers multipliers(phase["rate-multipliers"]);
    int index = 0;
    SectionsTaken taken;
    for (const Selection& selection : read_reaction_selections(list, phase)) {
      if (selection.rule != "all" && selection.rule != "declared-species") {
        findings().error(selection.where.place(), message("'", selection.rule, "' is no choice of reactions"),
                         "all, declared-species or none");
        continue;
      }
      if (!is_new(selection, taken)) continue;
      for (const Value& entry : files_.section(selection.section, selection.where).items()) {
        if (read_reaction(entry, scope, selection.rule != "all", multipliers.of(index), import_)) ++index;
      }
    }
    if (!surface) settle_named_partners(phase["explicit-third-body-duplicates"]);
  }

  void settle_named_partners(const Value& choice) {
    const std::string action = choice ? choice.string().value_or("") : "warn";
    if (action == "warn" || action == "error" || action == "mark-duplicate" ||
        action == "modify-efficiency") {
      return compare_named_partners(action, import_);
    }
    findings().error(choice.place(),
                     message("'", action, "' is none of warn, error, mark-duplicate and modify-efficiency"));
  }

  Import import_;
  YamlFiles& files_;
  const Molecules& molecules_;
};

}  // namespace

ImportedMechanism read_yaml_mechanism(const ImportOptions& options, YamlFiles& files,
                                      const Molecules& molecules, Findings& findings) {
  return PhaseReader(options, files, molecules, findings).read();
}

}  // namespace varpre
