#include "tools/import/reaction_reader.h"

#include <algorithm>

#include "tools/import/equation.h"

namespace varpre {
namespace {

UnitSystem solver_units() {
  UnitSystem units;
  units.length = *parse_unit("cm");
  units.quantity = *parse_unit("mol");
  return units;
}

// A reaction of some gas and surface species: amount per time and volume, or area, over the concentrations.
struct RateOrder {
  int gas = 0;
  int surface = 0;
  bool on_surface = false;

  Unit unit(const UnitSystem& units) const {
    const Unit in_volume = units.quantity / power(units.length, 3);
    const Unit on_area = units.quantity / power(units.length, 2);
    return (on_surface ? on_area : in_volume) / units.time / power(in_volume, gas) / power(on_area, surface);
  }
};

class ReactionReader {
 public:
  ReactionReader(const Value& entry, const ReactionScope& scope, Import& import)
      : entry_(entry), scope_(scope), import_(import) {}

  std::optional<ImportedReaction> read(bool declared_only, double multiplier, bool& of_phase) {
    const Value text = entry_.require("equation");
    reaction_.place = text.place();
    reaction_.equation = text.string().value_or("");
    const auto equation = read_equation(text, import_);
    if (!equation) return std::nullopt;
    equation_ = *equation;
    of_phase = is_of_phase(declared_only);
    if (!of_phase || !is_of_taken_species() || !is_of_a_form_that_is_held()) return std::nullopt;
    reaction_.educts = equation_.educts;
    reaction_.products = equation_.products;
    reaction_.reversible = equation_.reversible;
    reaction_.duplicate = entry_["duplicate"].boolean().value_or(false);
    if (!has_room() || !read_efficiencies() || !read_rates(multiplier) || !read_coverage())
      return std::nullopt;
    return reaction_;
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

  const KnownSpecies* find(const std::string& name) const {
    const auto found = scope_.species.find(name);
    return found == scope_.species.end() ? nullptr : &found->second;
  }

  std::vector<std::string> names() const {
    std::vector<std::string> all = equation_.educts;
    all.insert(all.end(), equation_.products.begin(), equation_.products.end());
    if (!equation_.partner.empty() && equation_.partner != "M") all.push_back(equation_.partner);
    return all;
  }

  bool is_of_phase(bool declared_only) {
    for (const std::string& name : names()) {
      if (find(name) == nullptr) return !declared_only && report_unknown(name);
    }
    return true;
  }

  bool is_of_taken_species() {
    const std::vector<std::string> all = names();
    const auto is = [&](Fate fate) {
      return [this, fate](const std::string& name) { return find(name)->fate == fate; };
    };
    if (std::any_of(all.begin(), all.end(), is(Fate::not_chosen))) return false;
    if (const auto left_out = std::find_if(all.begin(), all.end(), is(Fate::left_out));
        left_out != all.end()) {
      return refuse(reaction_.place, message("its species ", *left_out, " was left out"));
    }
    for (const std::string& name : all) {
      if (scope_.on_surface || !find(name)->on_surface) continue;
      return fail(reaction_.place, message("the surface species ", name, " cannot react in the gas phase"));
    }
    return true;
  }

  bool report_unknown(const std::string& name) {
    std::vector<std::string> names;
    for (const auto& [known, state] : scope_.species) names.push_back(known);
    return fail(locate(reaction_.place, name), message("'", name, "' is no species of the phase"),
                Nearest(name).offer_all(names).help());
  }

  bool is_of_a_form_that_is_held() {
    const std::string type = entry_["type"].string().value_or("");
    const bool falloff_type = type == "falloff" || type == "three-body";
    const bool surface_type = type == "interface-Arrhenius" || type == "sticking-Arrhenius";
    const bool plain = type.empty() || type == "elementary" || type == "Arrhenius";
    if (!plain && !(scope_.on_surface ? surface_type : falloff_type)) {
      return refuse(
          entry_["type"].place(), message("a rate of the type '", type, "' cannot be held"),
          "elementary, three-body and falloff rates (Lindemann, Troe) are, and sticking coefficients");
    }
    for (const char* const name : {"beta", "exchange-current-density-formulation"}) {
      if (entry_[name]) return refuse(entry_[name].place(), message("'", name, "' cannot be held"));
    }
    if (!has_orders_of_mass_action()) return false;
    check_names(type);
    const bool is_falloff = type == "falloff";
    if (is_falloff != equation_.in_parentheses) {
      return fail(reaction_.place, is_falloff
                                       ? "a falloff reaction has a collision partner in parentheses, (+M)"
                                       : "a collision partner in parentheses belongs to the type falloff");
    }
    if (scope_.on_surface && !equation_.partner.empty()) {
      return fail(reaction_.place, "a surface reaction has no collision partner");
    }
    if (type == "three-body" && equation_.partner.empty() &&
        std::none_of(equation_.educts.begin(), equation_.educts.end(),
                     [&](const std::string& name) { return is_on_both_sides(name); })) {
      return fail(reaction_.place, "a three-body reaction has a collision partner on both sides");
    }
    return !is_falloff || !import_.options.no_falloff ||
           refuse(reaction_.place, "a falloff reaction, which --no-falloff refuses");
  }

  // An order may be given that the species has anyway.
  bool has_orders_of_mass_action() {
    for (const auto& [name, place, value] : entry_["orders"].members()) {
      const auto order = value.number();
      if (!order) return false;
      const auto counts = std::count(equation_.educts.begin(), equation_.educts.end(), name);
      if (*order == static_cast<double>(counts)) continue;
      return refuse(
          place, message("the order ", *order, " of ", name, " cannot be held"),
          scope_.on_surface
              ? "an order of a surface species can be written by hand: a \"$\" record with the order less the coefficient, "
                "and A times the site density to the power of that"
              : "");
    }
    return true;
  }

  bool is_on_both_sides(const std::string& name) const {
    const auto is_among = [&](const std::vector<std::string>& names) {
      return std::find(names.begin(), names.end(), name) != names.end();
    };
    return is_among(equation_.educts) && is_among(equation_.products);
  }

  void check_names(const std::string& type) const {
    if (scope_.on_surface) {
      entry_.check_names({"equation", "type", "duplicate", "orders", "rate-constant", "negative-A",
                          "sticking-coefficient", "Motz-Wise", "sticking-species", "coverage-dependencies",
                          "beta", "negative-orders", "nonreactant-orders",
                          "exchange-current-density-formulation", "note", "id"});
    } else if (type == "falloff") {
      entry_.check_names({"equation", "type", "duplicate", "orders", "high-P-rate-constant",
                          "low-P-rate-constant", "negative-A", "Troe", "SRI", "Tsang", "efficiencies",
                          "default-efficiency", "negative-orders", "nonreactant-orders", "note", "id"});
    } else {
      entry_.check_names({"equation", "type", "duplicate", "orders", "rate-constant", "negative-A",
                          "efficiencies", "default-efficiency", "negative-orders", "nonreactant-orders",
                          "note", "id"});
    }
  }

  bool has_room() {
    const std::size_t partner = equation_.partner.empty() ? 0 : 1;
    const std::size_t educts = equation_.educts.size() + partner;
    const std::size_t products = equation_.products.size() + partner;
    const std::size_t most = scope_.on_surface ? 6 : 3;
    const std::size_t most_names = scope_.on_surface ? 10 : 5;
    if (educts > most || products > most) {
      return refuse(reaction_.place,
                    message("it has more than ", scope_.on_surface ? "six" : "three", " educts or products"),
                    partner > 0 ? "the collision partner is one of them" : "");
    }
    if (educts + products <= most_names) return true;
    return refuse(reaction_.place,
                  message("its equation has more than ", scope_.on_surface ? "ten" : "five", " names"),
                  partner > 0 ? "the collision partner is one of them on either side" : "");
  }

  bool read_efficiencies() {
    const Value named = entry_["efficiencies"];
    const Value usual = entry_["default-efficiency"];
    if (equation_.partner != "M" && !no_efficiencies_needed(named, usual)) return false;
    if (equation_.partner.empty()) return true;
    Efficiencies efficiencies;
    if (equation_.partner != "M") {
      reaction_.efficiencies = Efficiencies{0, {{equation_.partner, 1}}};
      return true;
    }
    if (usual) {
      const auto value = usual.number();
      if (!value) return false;
      efficiencies.usual = *value;
    }
    for (const auto& [name, place, value] : named.members()) {
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

  // A species is the partner: that needs no more words than the equation has.
  bool no_efficiencies_needed(const Value& named, const Value& usual) {
    bool none = true;
    for (const auto& [name, place, value] : named.members()) {
      const auto efficiency = value.number();
      const bool is_partner = equation_.partner.empty() ? is_on_both_sides(name) : name == equation_.partner;
      none = none && efficiency && *efficiency == 1 && is_partner;
    }
    const bool of_others = usual && (!named || usual.number() != 0);
    if (none && !of_others) return true;
    return refuse((named ? named : usual).place(),
                  "efficiencies without the collision partner M cannot be held");
  }

  std::optional<ArrheniusRate> read_rate(const Value& value, const Unit* wanted) {
    if (!value) return std::nullopt;
    const std::vector<Value> list = value.is_list() ? value.items() : std::vector<Value>();
    if (value.is_list() && list.size() != 3) {
      fail(value.place(), "A, b and Ea are due here");
      return std::nullopt;
    }
    if (!value.is_list()) value.check_names({"A", "b", "Ea"});
    const Value A = value.is_list() ? list[0] : value.require("A");
    const Value b = value.is_list() ? list[1] : value.require("b");
    const Value E = value.is_list() ? list[2] : value.require("Ea");
    const auto read_A = wanted == nullptr ? A.number() : A.quantity(order_.unit(value.units()), *wanted);
    const auto read_b = b.number();
    const auto read_E = E.energy();
    if (!read_A || !read_b || !read_E) return std::nullopt;
    if (*read_A < 0 && !entry_["negative-A"].boolean().value_or(false)) {
      fail(A.place(), "A is negative", "negative-A: true says that it is meant");
      return std::nullopt;
    }
    return ArrheniusRate{*read_A, *read_b, *read_E};
  }

  std::optional<ArrheniusRate> read_rate_of_order(const char* name, int more_gas) {
    order_ = {.gas = more_gas, .surface = 0, .on_surface = scope_.on_surface};
    for (const std::string& educt : equation_.educts)
      ++(find(educt)->on_surface ? order_.surface : order_.gas);
    static const UnitSystem solver = solver_units();
    const Unit wanted = order_.unit(solver);
    return read_rate(entry_.require(name), &wanted);
  }

  bool read_rates(double multiplier) {
    if (entry_["sticking-coefficient"]) return read_sticking(multiplier);
    const bool is_falloff = equation_.in_parentheses;
    const bool three_body = !equation_.partner.empty() && !is_falloff;
    const auto rate = is_falloff ? read_rate_of_order("high-P-rate-constant", 0)
                                 : read_rate_of_order("rate-constant", three_body ? 1 : 0);
    if (!rate) return false;
    reaction_.rate = *rate;
    reaction_.rate.A *= multiplier;
    if (!is_falloff) return true;
    const auto low = read_rate_of_order("low-P-rate-constant", 1);
    if (!low) return false;
    reaction_.low_pressure = *low;
    reaction_.low_pressure->A *= multiplier;
    return read_broadening();
  }

  bool read_broadening() {
    for (const char* const name : {"SRI", "Tsang"}) {
      if (entry_[name])
        return refuse(entry_[name].place(), message("a falloff of the form ", name, " cannot be held"));
    }
    const Value Troe = entry_["Troe"];
    if (!Troe) return true;
    Troe.check_names({"A", "T3", "T1", "T2"});
    const std::array values{
        Troe.require("A").number(), Troe.require("T3").quantity(Troe.units().temperature, *parse_unit("K")),
        Troe.require("T1").quantity(Troe.units().temperature, *parse_unit("K")),
        Troe["T2"] ? Troe["T2"].quantity(Troe.units().temperature, *parse_unit("K")) : std::optional(0.0)};
    for (std::size_t i = 0; i < values.size(); ++i) {
      if (!values[i]) return false;
      reaction_.Troe[i] = *values[i];
    }
    return true;
  }

  // The first name of a sticking reaction is the species that sticks, and STIC divides by 1 - A/2.
  bool read_sticking(double multiplier) {
    const auto rate = read_rate(entry_["sticking-coefficient"], nullptr);
    if (!rate) return false;
    if (rate->b != 0 || rate->E != 0) {
      return refuse(entry_["sticking-coefficient"].place(),
                    "a sticking coefficient that depends on the temperature cannot be held");
    }
    if (rate->A > 1) {
      import_.findings.warning(entry_["sticking-coefficient"].place(),
                               message("the sticking coefficient is ", rate->A),
                               "of the molecules that meet the surface no more than all can stick");
    }
    const Value own = entry_["Motz-Wise"];
    const bool corrected = own ? own.boolean().value_or(false) : scope_.Motz_Wise;
    const double factor = (corrected ? rate->A / (1 - rate->A / 2) : rate->A) * multiplier;
    reaction_.sticking = true;
    reaction_.rate.A = corrected && multiplier == 1 ? rate->A : without_noise(factor / (1 + factor / 2));
    import_.mechanism.sticking_converted = import_.mechanism.sticking_converted || !corrected;
    return put_sticking_species_first();
  }

  bool put_sticking_species_first() {
    auto& educts = reaction_.educts;
    const auto named = entry_["sticking-species"].string();
    const auto sticks = [&](const std::string& name) {
      return named ? name == *named : !find(name)->on_surface;
    };
    const auto first = std::find_if(educts.begin(), educts.end(), sticks);
    if (first == educts.end()) return fail(reaction_.place, "no gas species of the equation can stick");
    const auto others = std::count_if(educts.begin(), educts.end(), [&](const std::string& name) {
      return !find(name)->on_surface && name != *first;
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
    const auto& [name, place, value] = members.front();
    const KnownSpecies* const species = find(name);
    if (species == nullptr || !species->on_surface)
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
  RateOrder order_;
  ImportedReaction reaction_;
};

}  // namespace

ReadReaction read_reaction(const Value& entry, const ReactionScope& scope, bool declared_only,
                           double multiplier, Import& import) {
  ReadReaction result;
  result.reaction = ReactionReader(entry, scope, import).read(declared_only, multiplier, result.of_phase);
  return result;
}

}  // namespace varpre
