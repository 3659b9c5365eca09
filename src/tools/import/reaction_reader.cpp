#include "tools/import/reaction_reader.h"

#include <algorithm>
#include <cmath>

#include "tools/import/completion.h"
#include "tools/import/equation.h"
#include "tools/import/rate_reader.h"

namespace varpre {
namespace {

enum class Kind { arrhenius, three_body, falloff, pressure_table, chebyshev };

// The kind of a type of the gas phase; none for another.
std::optional<Kind> kind_in_gas(std::string_view type) {
  constexpr std::array<std::pair<std::string_view, Kind>, 8> kinds{
      {{"", Kind::arrhenius},
       {"elementary", Kind::arrhenius},
       {"Arrhenius", Kind::arrhenius},
       {"three-body", Kind::three_body},
       {"three-body-Arrhenius", Kind::three_body},
       {"falloff", Kind::falloff},
       {"pressure-dependent-Arrhenius", Kind::pressure_table},
       {"Chebyshev", Kind::chebyshev}}};
  const auto* const found =
      std::find_if(kinds.begin(), kinds.end(), [&](const auto& kind) { return kind.first == type; });
  return found == kinds.end() ? std::nullopt : std::optional(found->second);
}

std::optional<Kind> kind_at_surface(std::string_view type) {
  const bool known = type.empty() || type == "elementary" || type == "Arrhenius" ||
                     type == "interface-Arrhenius" || type == "sticking-Arrhenius";
  return known ? std::optional(Kind::arrhenius) : std::nullopt;
}

class ReactionReader {
 public:
  ReactionReader(const Value& entry, const ReactionScope& scope, Import& import)
      : entry_(entry), scope_(scope), import_(import) {}

  // Whether it counts among the reactions of the phase.
  bool read(bool declared_only, double multiplier) {
    const Value text = entry_.require("equation");
    reaction_.place = text.place();
    reaction_.equation = text.string().value_or("");
    const auto equation = read_equation(text, import_);
    if (!equation) return false;
    equation_ = *equation;
    if (!is_of_phase(declared_only)) return false;
    if (!is_of_taken_species() || !is_of_a_form_that_is_held()) return true;
    reaction_.educts = equation_.educts;
    reaction_.products = equation_.products;
    reaction_.reversible = equation_.reversible;
    reaction_.duplicate = entry_["duplicate"].boolean().value_or(false);
    if (!read_orders()) return true;
    if (!equation_.whole || gas_orders_) return read_global_reaction(multiplier), true;
    if (read_efficiencies() && read_law(multiplier) && read_coverage())
      take_reaction(std::move(reaction_), scope_.on_surface, import_);
    return true;
  }

 private:
  using Fate = KnownSpecies::Fate;

  bool refuse(const Place& place, std::string_view reason, std::string_view help = {},
              Findings::Site kind = Findings::Site::current()) {
    import_.refuse(place, message("reaction ", reaction_.equation), reason, help, kind);
    return false;
  }
  bool fail(const Place& place, std::string_view what, std::string_view help = {}) {
    import_.findings.error(place, what, help);
    return false;
  }

  const KnownSpecies* find(const std::string& name) const { return import_.find(name); }

  bool is_of_phase(bool declared_only) {
    for (const std::string& name : equation_.names()) {
      if (find(name) == nullptr) return !declared_only && report_unknown(name);
    }
    return true;
  }

  bool is_of_taken_species() {
    const std::vector<std::string> all = equation_.names();
    const auto is = [&](Fate fate) {
      return [this, fate](const std::string& name) { return find(name)->fate == fate; };
    };
    if (std::any_of(all.begin(), all.end(), is(Fate::not_chosen))) return false;
    if (const auto left_out = std::find_if(all.begin(), all.end(), is(Fate::left_out));
        left_out != all.end()) {
      return refuse(reaction_.place, message("its species ", *left_out, " was left out"));
    }
    for (const std::string& name : all) {
      if (scope_.on_surface || !find(name)->on_surface()) continue;
      return fail(reaction_.place, message("the surface species ", name, " cannot react in the gas phase"));
    }
    return true;
  }

  bool report_unknown(const std::string& name) {
    return fail(locate(reaction_.place, name), message("'", name, "' is no species of the phase"),
                import_.findings.errors() > most_helped ? std::string()
                                                        : Nearest(name).offer_all(import_.declared).help());
  }

  bool is_of_a_form_that_is_held() {
    const Value type = entry_["type"];
    const std::string name = type.string().value_or("");
    const auto kind = scope_.on_surface ? kind_at_surface(name) : kind_in_gas(name);
    if (!kind) {
      return refuse(
          type.place(), message("a rate of the type '", name, "' cannot be held"),
          "elementary, three-body and falloff rates (Lindemann, Troe) are, tables over pressure and "
          "Chebyshev polynomials, and sticking coefficients");
    }
    kind_ = *kind;
    for (const char* const other : {"beta", "exchange-current-density-formulation"}) {
      if (entry_[other]) return refuse(entry_[other].place(), message("'", other, "' cannot be held"));
    }
    check_names();
    return check_partner() && (kind_ != Kind::falloff || !import_.options.no_falloff ||
                               refuse(reaction_.place, "a falloff reaction, which --no-falloff refuses"));
  }

  bool check_partner() {
    const bool of_pressure = kind_ == Kind::pressure_table || kind_ == Kind::chebyshev;
    if (of_pressure && equation_.partner == "M") {  // the pressure says it all
      equation_.partner.clear();
      equation_.in_parentheses = false;
    }
    if ((kind_ == Kind::falloff) != equation_.in_parentheses) {
      return fail(reaction_.place, kind_ == Kind::falloff
                                       ? "a falloff reaction has a collision partner in parentheses, (+M)"
                                       : "a collision partner in parentheses belongs to the type falloff");
    }
    if (scope_.on_surface && !equation_.partner.empty())
      return fail(reaction_.place, "a surface reaction has no collision partner");
    const auto is_partner = [&](const std::string& name) { return is_on_both_sides(name); };
    if (kind_ == Kind::three_body && equation_.partner.empty() &&
        std::none_of(equation_.educts.begin(), equation_.educts.end(), is_partner)) {
      return fail(reaction_.place, "a three-body reaction has a collision partner on both sides");
    }
    return true;
  }

  double count_among_educts(const std::string& name) const {
    double count = 0;
    for (const GlobalTerm& term : equation_.educt_terms) count += term.species == name ? term.coefficient : 0;
    return count;
  }

  // One of the gas with orders of its own, or coefficients that are no whole numbers.
  void read_global_reaction(double multiplier) {
    if (scope_.on_surface || kind_ != Kind::arrhenius || !equation_.partner.empty() || equation_.reversible) {
      refuse(reaction_.place, "orders and coefficients that are no whole numbers cannot be held here",
             "an irreversible reaction of the gas with a rate of A, b and Ea can have them");
      return;
    }
    const auto rate = read_arrhenius(entry_, "rate-constant", order(0));
    if (!rate) return;
    GlobalReaction global{reaction_.place, reaction_.equation, equation_.educt_terms, equation_.product_terms,
                          *rate};
    global.rate.A *= multiplier;
    take_global_reaction(std::move(global), reaction_.orders, import_);
  }

  // An order may be given that the species has anyway.
  bool read_orders() {
    for (const auto& [given, place, value] : entry_["orders"].members()) {
      const std::string name = import_.resolved(given);
      const auto order = value.number();
      if (!order) return false;
      if (*order == count_among_educts(name)) continue;
      const KnownSpecies* const species = find(name);
      const bool of_gas = species != nullptr && !species->on_surface();
      if (species == nullptr || species->fate != Fate::taken || of_gas == scope_.on_surface)
        return refuse(place, message("the order ", *order, " of ", name, " cannot be held"));
      reaction_.orders[name] = *order;
      gas_orders_ = gas_orders_ || of_gas;
    }
    return true;
  }

  bool is_on_both_sides(const std::string& name) const {
    const auto is_among = [&](const std::vector<std::string>& names) {
      return std::find(names.begin(), names.end(), name) != names.end();
    };
    return is_among(equation_.educts) && is_among(equation_.products);
  }

  void check_names() const {
    if (scope_.on_surface) {
      entry_.check_names({"equation", "type", "duplicate", "orders", "rate-constant", "negative-A",
                          "sticking-coefficient", "Motz-Wise", "sticking-species", "coverage-dependencies",
                          "beta", "negative-orders", "nonreactant-orders",
                          "exchange-current-density-formulation", "note", "id"});
    } else if (kind_ == Kind::falloff) {
      entry_.check_names({"equation", "type", "duplicate", "orders", "high-P-rate-constant",
                          "low-P-rate-constant", "negative-A", "Troe", "SRI", "Tsang", "efficiencies",
                          "default-efficiency", "negative-orders", "nonreactant-orders", "note", "id"});
    } else if (kind_ == Kind::pressure_table) {
      entry_.check_names({"equation", "type", "duplicate", "rate-constants", "negative-A", "note", "id"});
    } else if (kind_ == Kind::chebyshev) {
      entry_.check_names(
          {"equation", "type", "duplicate", "temperature-range", "pressure-range", "data", "note", "id"});
    } else {
      entry_.check_names({"equation", "type", "duplicate", "orders", "rate-constant", "negative-A",
                          "efficiencies", "default-efficiency", "negative-orders", "nonreactant-orders",
                          "note", "id"});
    }
  }

  bool read_efficiencies() {
    const Value named = entry_["efficiencies"];
    const Value usual = entry_["default-efficiency"];
    if (equation_.partner != "M") return read_efficiency_of_partner(named, usual);
    Efficiencies efficiencies;
    if (usual) {
      const auto value = usual.number();
      if (!value) return false;
      efficiencies.usual = *value;
    }
    for (const auto& [given, place, value] : named.members()) {
      const std::string name = import_.resolved(given);
      const auto efficiency = value.number();
      if (!efficiency) return false;
      const KnownSpecies* const species = find(name);
      if (species == nullptr && !scope_.skip_undeclared_third_bodies) {
        return fail(place, message("'", name, "' is no species of the phase"),
                    "skip-undeclared-third-bodies in the phase leaves its efficiency out");
      }
      if (species != nullptr && species->fate == Fate::taken) efficiencies.named[name] = *efficiency;
    }
    reaction_.efficiencies = efficiencies;
    return true;
  }

  // A species is the partner: others do not count, and it may count other than once.
  bool read_efficiency_of_partner(const Value& named, const Value& usual) {
    double own = 1;
    bool of_others = usual && (!named || usual.number() != 0);
    for (const auto& [given, place, value] : named.members()) {
      const auto efficiency = value.number();
      if (!efficiency) return false;
      const std::string name = import_.resolved(given);
      const bool is_partner = equation_.partner.empty() ? is_on_both_sides(name) : name == equation_.partner;
      own *= is_partner ? *efficiency : 1;
      of_others = of_others || !is_partner;
    }
    if (of_others) {
      return refuse((named ? named : usual).place(),
                    "efficiencies without the collision partner M cannot be held");
    }
    if (equation_.partner.empty()) {
      efficiency_ = own;
    } else {
      reaction_.efficiencies = Efficiencies{0, {{equation_.partner, own}}};
    }
    return true;
  }

  RateOrder order(double more_gas) const {
    RateOrder order{more_gas, 0, scope_.on_surface};
    const auto add = [&](const std::string& name, double count) {
      const KnownSpecies::Phase phase = find(name)->phase;
      if (phase == KnownSpecies::Phase::gas) order.gas += count;
      if (phase == KnownSpecies::Phase::surface) order.surface += count;
    };
    for (const GlobalTerm& term : equation_.educt_terms) add(term.species, term.coefficient);
    for (const auto& [name, of_species] : reaction_.orders) add(name, of_species - count_among_educts(name));
    return order;
  }

  template <class Value, class Read>
  static bool take(Value& value, const Read& read) {
    if (read) value = *read;
    return read.has_value();
  }

  bool read_law(double multiplier) {
    RateLaw& law = reaction_.law;
    bool read = false;
    if (scope_.on_surface && entry_["sticking-coefficient"]) {
      read = read_sticking_law();
    } else if (kind_ == Kind::pressure_table) {
      read = take(law.table, read_pressure_table(entry_, order(0)));
    } else if (kind_ == Kind::chebyshev) {
      read = take(law.chebyshev, read_chebyshev(entry_, order(0)));
    } else if (kind_ == Kind::falloff) {
      read = read_falloff(multiplier);
    } else {
      const double partner = equation_.partner.empty() ? 0 : 1;
      read = take(law.arrhenius, read_arrhenius(entry_, "rate-constant", order(partner)));
    }
    law.scale(multiplier * efficiency_);
    return read;
  }

  bool read_falloff(double multiplier) {
    if (!take(reaction_.law.arrhenius, read_arrhenius(entry_, "high-P-rate-constant", order(0))) ||
        !take(reaction_.low_pressure, read_arrhenius(entry_, "low-P-rate-constant", order(1)))) {
      return false;
    }
    reaction_.low_pressure->A *= multiplier;
    for (const char* const name : {"SRI", "Tsang"}) {
      if (entry_[name])
        return refuse(entry_[name].place(), message("a falloff of the form ", name, " cannot be held"));
    }
    return take(reaction_.Troe, read_troe(entry_));
  }

  bool read_sticking_law() {
    auto sticking = read_sticking(entry_);
    if (!sticking || !put_sticking_species_first()) return false;
    const Value own = entry_["Motz-Wise"];
    sticking->Motz_Wise = own ? own.boolean().value_or(false) : scope_.Motz_Wise;
    sticking->molar_mass = molar_mass(import_.species(equation_.educts.front()));
    sticking->sites = order(0).surface;
    sticking->site_density = import_.mechanism.site_density / 1.0E4;
    reaction_.educts = equation_.educts;
    reaction_.law.sticking = sticking;
    return true;
  }

  bool put_sticking_species_first() {
    auto& educts = equation_.educts;
    const auto named = entry_["sticking-species"].string();
    const auto is_gas = [&](const std::string& name) {
      return find(name)->phase == KnownSpecies::Phase::gas;
    };
    const auto sticks = [&](const std::string& name) {
      return is_gas(name) && (!named || name == import_.resolved(*named));
    };
    const auto first = std::find_if(educts.begin(), educts.end(), sticks);
    if (first == educts.end()) return fail(reaction_.place, "no gas species of the equation can stick");
    const auto others = std::count_if(educts.begin(), educts.end(), [&](const std::string& name) {
      return is_gas(name) && name != *first;
    });
    if (!named && others > 0)
      return fail(reaction_.place, "'sticking-species' must say which of the gas species sticks");
    std::rotate(educts.begin(), first, first + 1);
    return true;
  }

  bool read_coverage() {
    const std::vector<Value::Member> members = entry_["coverage-dependencies"].members();
    if (members.empty()) return true;
    if (members.size() > 1)
      return refuse(members[1].place, "the coverage of a second species cannot be held");
    const auto& [given, place, value] = members.front();
    const std::string name = import_.resolved(given);
    const KnownSpecies* const species = find(name);
    if (species == nullptr || !species->on_surface())
      return fail(place, message("'", name, "' is no species of the surface"));
    if (species->fate == Fate::not_chosen || species->fate == Fate::left_out) {
      return refuse(place, message("the species ", name, ", whose coverage counts, was left out"));
    }
    const std::vector<Value> list = value.is_list() ? value.items() : std::vector<Value>();
    if (value.is_list() && list.size() != 3) return fail(value.place(), "a, m and E are due here");
    if (!value.is_list()) value.check_names({"a", "m", "E"});
    const auto a = (value.is_list() ? list[0] : value.require("a")).number();
    const auto m = (value.is_list() ? list[1] : value.require("m")).number();
    const auto E = read_coverage_energy(value.is_list() ? list[2] : value.require("E"));
    if (!a || !m || !E) return false;
    reaction_.coverage = CoverageDependence{name, *a, *m, *E};
    return true;
  }

  // One value, or the coefficients of a polynomial of the coverage, of which only the first is held.
  std::optional<double> read_coverage_energy(const Value& value) {
    if (!value.is_list()) return value.energy();
    std::optional<double> first;
    for (const Value& item : value.items()) {
      const auto E = item.energy();
      if (!E) return std::nullopt;
      if (first && *E != 0) {
        refuse(item.place(), "a polynomial of the coverage cannot be held");
        return std::nullopt;
      }
      if (!first) first = E;
    }
    if (!first) fail(value.place(), "an energy is due here");
    return first;
  }

  const Value& entry_;
  const ReactionScope& scope_;
  Import& import_;
  Equation equation_;
  Kind kind_ = Kind::arrhenius;
  bool gas_orders_ = false;  // of mass action are not all
  double efficiency_ = 1;    // of a partner that stands on both sides like a reactant
  ImportedReaction reaction_;
};

}  // namespace

bool read_reaction(const Value& entry, const ReactionScope& scope, bool declared_only, double multiplier,
                   Import& import) {
  return ReactionReader(entry, scope, import).read(declared_only, multiplier);
}

}  // namespace varpre
