#include <algorithm>
#include <cmath>

#include "mechanism/reverse_reaction.h"
#include "tools/import/completion.h"
#include "tools/import/number_text.h"
#include "tools/import/rate_fits.h"
#include "tools/import/units.h"

namespace varpre {
namespace {

constexpr double usual_pressure = 1;  // bar, of laws that do not depend on it

class Completion {
 public:
  Completion(ImportedReaction reaction, bool on_surface, Import& import)
      : reaction_(std::move(reaction)),
        on_surface_(on_surface),
        import_(import),
        pressure_(import.options.pressure.value_or(usual_pressure)),
        site_density_(import.mechanism.site_density / 1.0E4) {}

  bool take() {
    drop_bulk_species();
    settle_Troe();
    if (!has_room() || !settle_law() || !settle_orders() || !is_finite()) return false;
    auto& list = on_surface_ ? import_.mechanism.surface_reactions : import_.mechanism.gas_reactions;
    if (!needs_own_reverse()) {
      list.push_back(std::move(reaction_));
      return true;
    }
    const auto reverse = own_reverse();
    if (!reverse) return false;
    reaction_.reversible = false;
    list.push_back(std::move(reaction_));
    list.push_back(*reverse);
    return true;
  }

 private:
  bool refuse(std::string_view reason, std::string_view help = {},
              Findings::Site kind = Findings::Site::current()) {
    import_.refuse(reaction_.place, message("reaction ", reaction_.equation), reason, help, kind);
    return false;
  }

  // Their activity is 1.
  void drop_bulk_species() {
    const auto is_bulk = [&](const std::string& name) {
      return import_.find(name)->phase == KnownSpecies::Phase::bulk;
    };
    const auto drop = [&](Names& from, Names& to) {
      std::copy_if(from.begin(), from.end(), std::back_inserter(to), is_bulk);
      std::erase_if(from, is_bulk);
      import_.mechanism.bulk_dropped.insert(to.begin(), to.end());
    };
    drop(reaction_.educts, reaction_.bulk_educts);
    drop(reaction_.products, reaction_.bulk_products);
  }

  // Without its last parameter the form lacks a term, exp(-T**/T), which vanishes where T** is large.
  void settle_Troe() {
    auto& [a, T3, T1, T2] = reaction_.Troe;
    constexpr double no_term = 1.0E30;
    if (T2 == 0 && (a != 0 || T3 != 0 || T1 != 0)) T2 = no_term;
  }

  bool has_room() {
    const std::size_t partner = reaction_.efficiencies ? 1 : 0;
    const std::size_t educts = reaction_.educts.size() + partner;
    const std::size_t products = reaction_.products.size() + partner;
    const std::size_t most = on_surface_ ? 6 : 3;
    const std::size_t most_names = on_surface_ ? 10 : 5;
    if (educts == 0 || products == 0) return refuse("nothing is left on one side of its equation");
    if (educts > most || products > most) {
      return refuse(message("it has more than ", on_surface_ ? "six" : "three", " educts or products"),
                    partner > 0 ? "the collision partner is one of them" : "");
    }
    if (educts + products <= most_names) return true;
    return refuse(message("its equation has more than ", on_surface_ ? "ten" : "five", " names"),
                  partner > 0 ? "the collision partner is one of them on either side" : "");
  }

  bool settle_law() {
    const RateLaw& law = reaction_.law;
    if (law.sticking) return settle_sticking(*law.sticking);
    if (law.is_arrhenius()) {
      reaction_.rate = law.arrhenius;
      return true;
    }
    if (law.depends_on_pressure() && !check_pressure()) return false;
    if (law.table.size() == 1 && law.table.front().rates.size() == 1) {
      reaction_.rate = law.table.front().rates.front();
      return true;
    }
    return take_fit(law.depends_on_pressure() ? message(" at ", pressure_, " bar") : "");
  }

  bool is_finite() {
    const auto finite = [](const ArrheniusRate& rate) {
      return std::isfinite(rate.A) && std::isfinite(rate.b) && std::isfinite(rate.E);
    };
    return (finite(reaction_.rate) && finite(reaction_.low_pressure.value_or(ArrheniusRate()))) ||
           refuse("its rate is too large for a number");
  }

  bool check_pressure() {
    const RateLaw& law = reaction_.law;
    if (!import_.options.pressure) {
      return refuse("its rate depends on the pressure",
                    "--pressure, with a value and its unit, takes the rate at that pressure");
    }
    const double low = law.chebyshev ? law.chebyshev->low_P : law.table.front().pressure;
    const double high = law.chebyshev ? law.chebyshev->high_P : law.table.back().pressure;
    if (pressure_ >= low * (1 - 1.0E-9) && pressure_ <= high * (1 + 1.0E-9)) return true;
    if (law.chebyshev)
      return refuse(message("its rate is given from ", low, " to ", high, " bar, and not at ", pressure_));
    import_.findings.warning(reaction_.place,
                             message("the rates of this reaction are given from ", low, " to ", high,
                                     " bar; the nearest are taken for ", pressure_));
    return true;
  }

  double true_rate(double T) const { return rate_constant(reaction_.law, T, pressure_); }

  bool take_fit(const std::string& at) {
    const auto fit = fit_arrhenius([&](double T) { return true_rate(T); });
    if (!fit) return refuse("its rate is not positive at all temperatures from 300 to 2500 K");
    reaction_.rate = fit->rate;
    remember(message("rate of ", reaction_.equation, at), *fit);
    return true;
  }

  void remember(const std::string& what, const FittedRate& fit) {
    import_.mechanism.fitted.push_back({what, {fit.deviation, fit.temperature, what}});
  }

  // STIC divides by 1 - A/2 and knows neither b nor E.
  bool settle_sticking(const StickingRate& sticking) {
    const auto& [A, b, E] = sticking.coefficient;
    const bool special = reaction_.coverage || !reaction_.orders.empty();
    if (b == 0 && E == 0 && !special) {
      if (sticking.Motz_Wise && A >= 2) return refuse("of Motz-Wise coefficients none is 2 or more");
      const double factor = (sticking.Motz_Wise ? A / (1 - A / 2) : A) * sticking.factor;
      reaction_.sticking = true;
      const bool as_it_is = sticking.Motz_Wise && sticking.factor == 1;
      reaction_.rate = {as_it_is ? A : without_noise(factor / (1 + factor / 2)), 0, 0};
      import_.mechanism.sticking_converted = import_.mechanism.sticking_converted || !sticking.Motz_Wise;
      return true;
    }
    if (sticking.site_density <= 0) return refuse("the site density of its surface is not known");
    if (!sticking.Motz_Wise) {
      reaction_.rate = as_arrhenius(sticking);
      return true;
    }
    return special ? refuse("a Motz-Wise coefficient that depends on coverages cannot be held")
                   : take_fit("");
  }

  // Rate = k Pi [s]^n with n as often as s stands in the equation; another order is a power of the coverage,
  // [s] being coverage times site density.
  bool settle_orders() {
    if (reaction_.orders.empty()) return true;
    if (reaction_.orders.size() > 1) return refuse("orders of two species cannot be held");
    if (reaction_.reversible) return refuse("a reaction with orders of its own has no reverse");
    const auto& [name, order] = *reaction_.orders.begin();
    const KnownSpecies* const species = import_.find(name);
    if (species == nullptr || !species->on_surface() || site_density_ <= 0)
      return refuse(message("the order ", order, " of ", name, " cannot be held"));
    if (reaction_.coverage && reaction_.coverage->species != name)
      return refuse("an order of one species and the coverage of another cannot be held");
    if (!reaction_.coverage) reaction_.coverage = CoverageDependence{name, 0, 0, 0};
    const auto counts =
        static_cast<double>(std::count(reaction_.educts.begin(), reaction_.educts.end(), name));
    reaction_.site_exponent = order - counts;
    reaction_.coverage->m += reaction_.site_exponent;
    reaction_.rate.A *= std::pow(site_density_, reaction_.site_exponent);
    return true;
  }

  // The program copies the rate for the reverse of a reaction that depends on a coverage, takes a sticking
  // coefficient for a rate constant, and does not know what was dropped.
  bool needs_own_reverse() const {
    return reaction_.reversible && on_surface_ &&
           (reaction_.sticking || reaction_.coverage || !reaction_.bulk_educts.empty() ||
            !reaction_.bulk_products.empty());
  }

  // In mol/cm3 and mol/cm2, from the coefficients as they are written.
  double equilibrium_constant(double T) const {
    double exponent = 0;
    double concentrations = 1;
    const auto add = [&](const Names& names, int sign) {
      for (const std::string& name : names) {
        const ImportedSpecies& species = import_.species(name);
        const ThermoValues values = evaluate(T < species.limits[2] ? species.lower : species.upper, T);
        exponent += sign * (values.s - values.h);
        const KnownSpecies::Phase phase = import_.find(name)->phase;
        if (phase == KnownSpecies::Phase::gas) concentrations *= std::pow(gas_constant_cm3_bar * T, -sign);
        if (phase == KnownSpecies::Phase::surface) concentrations *= std::pow(site_density_, sign);
      }
    };
    add(reaction_.educts, -1);
    add(reaction_.bulk_educts, -1);
    add(reaction_.products, 1);
    add(reaction_.bulk_products, 1);
    return std::exp(exponent) * concentrations;
  }

  std::optional<ImportedReaction> own_reverse() {
    double T1 = 0;
    double T2 = 1.0E30;
    for (const std::string& name : reaction_.educts) {
      const auto& limits = import_.species(name).limits;
      constexpr double margin = 20;  // by which the program lowers the lowest limit
      T1 = std::max(T1, limits[0] - margin + 400);
      T2 = std::min(T2, limits[2] + 1500);
    }
    if (T2 > 6000) T1 = std::max(T1, 1000.0);
    const RateOfTemperature rate = [&](double T) { return true_rate(T) / equilibrium_constant(T); };
    const double b = reaction_.sticking ? 0.5 : reaction_.rate.b;
    const auto fit = site_density_ > 0 ? through_two_points(rate, b, T1, T2) : std::nullopt;
    if (!fit) {
      refuse("no sound rate of its reverse can be fitted");
      return std::nullopt;
    }
    ImportedReaction reverse = reaction_;
    std::swap(reverse.educts, reverse.products);
    std::swap(reverse.bulk_educts, reverse.bulk_products);
    reverse.equation = message("the reverse of ", reaction_.equation);
    reverse.rate = fit->rate;
    reverse.reversible = reverse.sticking = false;
    reverse.is_reverse = true;
    remember(message("rate of ", reverse.equation), *fit);
    return reverse;
  }

  ImportedReaction reaction_;
  bool on_surface_;
  Import& import_;
  double pressure_;      // bar
  double site_density_;  // mol/cm2
};

}  // namespace

bool take_reaction(ImportedReaction reaction, bool on_surface, Import& import) {
  return Completion(std::move(reaction), on_surface, import).take();
}

bool take_global_reaction(GlobalReaction reaction, const std::map<std::string, double>& orders,
                          Import& import) {
  const auto refuse = [&](std::string_view reason, std::string_view help = {},
                          Findings::Site kind = Findings::Site::current()) {
    import.refuse(reaction.place, message("reaction ", reaction.equation), reason, help, kind);
    return false;
  };
  const auto term_of = [](std::vector<GlobalTerm>& terms, const std::string& name, double coefficient) {
    const auto is_it = [&](const GlobalTerm& term) { return term.species == name; };
    const auto found = std::find_if(terms.begin(), terms.end(), is_it);
    if (found != terms.end()) return found;
    return terms.insert(terms.end(), {name, coefficient, 0});
  };
  for (const auto& [name, order] : orders) {
    const std::size_t before = reaction.educts.size();
    term_of(reaction.educts, name, 1)->order = order;
    if (reaction.educts.size() > before) term_of(reaction.products, name, 0)->coefficient += 1;
  }
  constexpr std::size_t slots = 3;
  constexpr std::size_t coefficient_width = 4;
  constexpr std::size_t order_width = 3;
  if (reaction.educts.size() > slots || reaction.products.size() > slots)
    return refuse("it has more than three educts or products", "a species with an order is one of them");
  for (const auto* terms : {&reaction.educts, &reaction.products}) {
    for (const auto& [name, coefficient, order] : *terms) {
      if (value_in_columns(coefficient, coefficient_width) != coefficient ||
          (terms == &reaction.educts && value_in_columns(order, order_width) != order)) {
        return refuse(message("the coefficient ", coefficient, " or order ", order, " of ", name,
                              " does not fit into its columns"),
                      "four columns hold a coefficient, three an order");
      }
    }
  }
  auto& list = import.mechanism.global_reactions;
  if (list.size() == MNCRE)
    return refuse(message("it is one more global reaction than can be held: ", MNCRE));
  list.push_back(std::move(reaction));
  return true;
}

}  // namespace varpre
