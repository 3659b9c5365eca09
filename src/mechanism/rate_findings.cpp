#include "mechanism/rate_findings.h"

#include <algorithm>
#include <cmath>

#include "math/elementary.h"
#include "mechanism/mechanism_findings.h"
#include "thermo/thermo_functions.h"

namespace varpre {

// What A T^b is at 1500 K in the reactions of one form, cm, mol, s.
struct UsualFactor {
  std::string_view form;
  double least, most;
  std::string_view unit;
};

namespace {

constexpr double kJ_per_mol = 1000;
constexpr double compared_at = 1500;  // K
constexpr double log_10 = 2.302585092994046;
constexpr double margin = 100;  // by which a value lies beyond what is usual, to be told

constexpr std::array<UsualFactor, 7> usual_factors{
    {{"reactions of one species have", 1E4, 1E20, "1/s"},
     {"reactions of two species have", 1E7, 1E16, "cm3/(mol s)"},
     {"reactions of three partners have", 3E8, 2E17, "cm6/(mol2 s)"},
     {"decays by collision have", 1E12, 1E22, "cm3/(mol s)"},
     {"high-pressure limits of one species have", 8E10, 2E16, "1/s"},
     {"high-pressure limits of two species have", 2E10, 6E14, "cm3/(mol s)"},
     {"low-pressure limits have", 6E14, 1E24, "(cm, mol, s)"}}};
constexpr const UsualFactor& of_one = usual_factors[0];
constexpr const UsualFactor& of_two = usual_factors[1];
constexpr const UsualFactor& of_three = usual_factors[2];
constexpr const UsualFactor& of_one_by_collision = usual_factors[3];
constexpr const UsualFactor& high_of_one = usual_factors[4];
constexpr const UsualFactor& high_of_two = usual_factors[5];
constexpr const UsualFactor& low = usual_factors[6];

const UsualFactor* usual_factor(bool has_falloff, int species, bool partner) {
  if (has_falloff) return species == 1 ? &high_of_one : species == 2 ? &high_of_two : nullptr;
  if (species == 1) return partner ? &of_one_by_collision : &of_one;
  if (species == 2) return partner ? &of_three : &of_two;
  return species == 3 && !partner ? &of_three : nullptr;
}

double decadic_log(double x) {
  return math::log(x) / log_10;
}

double power_of_10(double x) {
  return math::exp(x * log_10);
}

double log10_factor(double A, double b) {
  static const double log_T = decadic_log(compared_at);
  return decadic_log(A) + b * log_T;
}

// Decadic logarithms of the bounds beyond which a factor is told.
struct LogBounds {
  double least, most;
};

const LogBounds& log_bounds(const UsualFactor& usual) {
  static const auto bounds = [] {
    std::array<LogBounds, usual_factors.size()> all{};
    for (std::size_t k = 0; k < all.size(); ++k) {
      all[k] = {decadic_log(usual_factors[k].least / margin), decadic_log(usual_factors[k].most * margin)};
    }
    return all;
  }();
  return bounds.begin()[&usual - usual_factors.data()];
}

double median(std::vector<double>& values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

// The units in which numbers are larger or smaller by a factor: the nearest of those that are in use.
struct OtherUnit {
  double log_factor;  // decadic, of the number written to the one expected
  std::string_view name;
};

std::string_view other_unit(std::span<const OtherUnit> units, double log_factor, double width) {
  for (const OtherUnit& unit : units) {
    if (std::abs(unit.log_factor - log_factor) <= width) return unit.name;
  }
  return {};
}

// Of the rate constants of reactions of two species.
constexpr std::array<OtherUnit, 5> factor_units{
    {{-3, "m, kmol"}, {-6, "m, mol"}, {-23.78, "cm, molecules"}, {-29.78, "m, molecules"}, {3, "cm, kmol"}}};
constexpr std::array<OtherUnit, 4> energy_units{
    {{-0.62, "kcal/mol"}, {2.08, "K"}, {2.38, "cal/mol"}, {3, "J/mol"}}};

}  // namespace

RateCheck::RateCheck(const Phase& phase, const ReactionNames& names, int NSURF,
                     std::span<const ThermoFit> fit, Findings& findings)
    : phase_(phase), names_(names), NSURF_(NSURF), fit_(fit), findings_(findings) {}

void RateCheck::examine(const ReactionLine& line) {
  const Reaction& r = line.reaction;
  ++reactions_;
  if (r.ISTICK != 0) return examine_sticking(line);
  examine_energy(r.EXA, r.line);
  if (r.IARRH == coverage_dependent) examine_coverage(line);
  if (r.IARRH == falloff) examine_falloff(line);
  if (r.IARRH == non_arrhenius) return;
  if (!(r.AFAC > 0) && !is_meant_as_duplicate(r.line)) {
    findings_.warning(
        place_of_parameters(r.line, 0, 0), message("A of this reaction is read as ", about(r.AFAC)),
        "a pre-exponential factor is positive; a negative one corrects another rate: then write "
        "! dup at the end of the line");
    return;
  }
  if (&phase_ == &Phase::surface) {
    examine_surface_factor(line);
  } else {
    examine_gas_factor(line);
    examine_reaction_heat(line);
  }
}

void RateCheck::examine_sticking(const ReactionLine& line) {
  const Reaction& r = line.reaction;
  const double coefficient = line.sticking_coefficient;
  if (&phase_ == &Phase::gas) return;                  // which was told at its line STIC
  const Place before{r.line.unit, r.line.record - 2};  // the reaction in front of that line
  if (coefficient > 1 && findings_.follows(before, "impossible sticking coefficient")) return;
  constexpr std::size_t keyword = 4;  // the reaction that is meant may stand behind it, which will be told
  const std::string_view STIC = r.line.unit->origin(r.line.record - 1).text;
  if (STIC.find_first_not_of(' ', keyword) < STIC.find('!')) return;
  const SpeciesName& name = names_[r.ISTICK];
  if (!is_gas(r.ISTICK)) {
    findings_.warning(locate(r.line, name.view()),
                      message("'", name, "' is a surface species: it cannot stick"),
                      "the first name of a sticking reaction is the gas species that sticks");
    return;
  }
  const auto educts = phase_.educts(line.KSPEC);
  if (std::count_if(educts.begin(), educts.end(), [&](int k) { return is_gas(k); }) > 1) {
    findings_.warning(r.line, "more than one gas species takes part in this sticking reaction",
                      message("the sticking coefficient is that of its first species, ", name));
  }
  if (!(coefficient > 0 && coefficient <= 1)) {
    findings_.warning(place_of_parameters(r.line, 0, 0),
                      message("the sticking coefficient is read as ", about(coefficient)),
                      "a sticking coefficient is above 0 and at most 1");
  }
  if (line.reversible) {
    findings_.warning(
        locate(r.line, "="), "a reverse is generated of this sticking reaction, which has no meaning",
        message("write > instead of =, and the desorption of ", name, " as a reaction of its own"));
  }
}

void RateCheck::examine_coverage(const ReactionLine& line) {
  const Reaction& r = line.reaction;
  examine_energy(r.VT6, {r.line.unit, r.line.record + 1});
  if (NSURF_ > 0 && is_gas(r.ICOV)) {
    const SpeciesName& name = names_[r.ICOV];
    Place record = r.line;
    record.record += 1;
    findings_.warning(locate(record, name.view()),
                      message("'", name, "' is a gas species: it covers no surface"),
                      "the $ record names the surface species on whose coverage the rate depends");
  }
  if (line.reversible) {
    findings_.warning(
        locate(r.line, "="),
        "the generated reverse of this reaction gets the same A, b and E, which has no meaning",
        "a reaction with a $ record is written with >, and its reverse as a reaction of its own");
  }
}

// A of at most 1 is a sticking coefficient whose line STIC is missing, unless that line was told of. Where
// none but surface species react, A is far larger.
void RateCheck::examine_surface_factor(const ReactionLine& line) {
  constexpr double most_b = 15;
  constexpr double cold = 300;  // K
  constexpr double most = 30;
  constexpr double least_E = -20 * kJ_per_mol;  // where none but surface species react
  constexpr double least_alone = 3;             // decadic logarithms of A T^b
  constexpr double least_of_two = 9;
  const Reaction& r = line.reaction;
  const auto educts = phase_.educts(line.KSPEC);
  const auto gas = std::count_if(educts.begin(), educts.end(), [&](int k) { return is_gas(k); });
  const auto others = std::count_if(educts.begin(), educts.end(), [](int k) { return k != 0; }) - gas;
  if (!(r.AFAC > 0) || (gas > 0 && findings_.is_told({r.line.unit, r.line.record - 1}))) return;
  if (gas > 0 && r.AFAC <= 1) {
    findings_.warning(place_of_parameters(r.line, 0, 0),
                      message("A of this reaction, ", about(r.AFAC), ", looks like a sticking coefficient"),
                      "a line STIC in front of the reaction makes it one");
    return;
  }
  const double log_factor = log10_factor(r.AFAC, r.TEXP);
  if (std::abs(r.TEXP) > most_b) {
    findings_.warning(place_of_parameters(r.line, 1, 1),
                      message("b of this reaction is read as ", about(r.TEXP)),
                      "the numbers are A, b and E: rates go with T^b");
  } else if (r.EXA < 0 &&
             (log_factor - r.EXA / (gas_constant * cold) / log_10 > most || (gas == 0 && r.EXA < least_E))) {
    findings_.warning(
        place_of_parameters(r.line, 2, 2),
        message("E of ", about(r.EXA / kJ_per_mol), " kJ/mol makes this reaction very fast at 300 K"),
        "E is hardly negative: look at its sign");
  } else if (log_factor > most || log_factor < (gas + others > 1 ? least_of_two : least_alone)) {
    findings_.warning(place_of_parameters(r.line, 0, 0),
                      message("A of this surface reaction is ", about(r.AFAC)),
                      "A is in cm, mol, s: reactions of the surface have some 1E+10 to 1E+24");
  }
}

void RateCheck::examine_falloff(const ReactionLine& line) {
  const Reaction& r = line.reaction;
  const auto& [A, b, E, a, T3, T1, T2, last] = r.FALL;
  const Place first_record{r.line.unit, r.line.record + 1};
  const Place second_record{r.line.unit, r.line.record + 2, 7, 10};
  if (std::none_of(line.KSPEC.begin(), line.KSPEC.end(), [&](int k) { return is_partner(k); })) {
    findings_.warning(
        r.line, "this reaction has falloff parameters, but no third body",
        "its third body stands on both sides, H+O2+M'=HO2+M'; \"#\" records follow their reaction");
  }
  constexpr double most_a_there = 1E+6;
  if (A >= 0 && A <= 1 && a > most_a_there) {
    findings_.warning({first_record.unit, first_record.record, 1, 60},
                      "the two \"#\" records of this reaction look exchanged",
                      "the first one has A, b and E at low pressure, the second one a, T***, T* and T**");
    return;
  }
  if (!findings_.is_told(first_record)) {
    examine_energy(E, first_record);
    compare(log10_factor(std::abs(A), b), b, E, low, first_record);
  }
  constexpr double smallest_a = 1E-6;
  constexpr double least_a = -100;
  constexpr double most_a = 3;
  const bool too_small = a != 0 && std::abs(a) < smallest_a && T3 != 0;
  if ((a < least_a || a > most_a || too_small) && !findings_.is_told(second_record)) {
    findings_.warning(second_record, message("the first falloff parameter, a, is ", about(a)),
                      "a is between 0 and 1 as a rule, seldom negative; T***, T* and T** follow it");
  } else if (T2 == 0 && (T3 != 0 || T1 != 0) && !findings_.is_told(second_record)) {
    findings_.warning({second_record.unit, second_record.record, 43, 10},
                      "T** of this reaction is 0, which adds 1 to its broadening factor",
                      "where a mechanism gives no T**, 1.0E+30 stands in columns 43-52");
  }
}

void RateCheck::examine_energy(double E, const Place& line) {
  constexpr double most = 1000 * kJ_per_mol;
  if (std::abs(E) <= most || !std::isfinite(E)) return;  // what is not finite is an error of its own
  ++too_large_energies_;
  energies_.push_back({place_of_parameters(line, 2, 2),
                       message("the activation energy is read as ", about(E / kJ_per_mol), " kJ/mol"),
                       "E is in kJ/mol: is this one in J/mol or cal/mol?"});
}

void RateCheck::examine_gas_factor(const ReactionLine& line) {
  const Reaction& r = line.reaction;
  const auto educts = phase_.educts(line.KSPEC);
  const auto species = std::count_if(educts.begin(), educts.end(), [&](int k) { return is_species(k); });
  const bool partner = std::any_of(educts.begin(), educts.end(), [&](int k) { return is_partner(k); });
  const UsualFactor* const usual = usual_factor(r.IARRH == falloff, static_cast<int>(species), partner);
  if (usual == nullptr || !(std::abs(r.AFAC) > 0)) return;
  const double log_factor = log10_factor(std::abs(r.AFAC), r.TEXP);
  if (usual == &of_two) log_rates_.push_back(log_factor);
  if (compare(log_factor, r.TEXP, r.EXA, *usual, r.line) || !line.reversible || r.EXA >= 0) return;
  // What a fit to a reverse rate has, which is written with >, a reversible reaction has not.
  constexpr double cold = 300;  // K
  constexpr double more_when_cold = 4;
  constexpr double log_T_ratio = -0.699;  // of 300 K to 1500 K
  // Two species meet no more often than they collide, some 1E+14.
  const double when_cold = usual == &of_two ? log_factor + r.TEXP * log_T_ratio : log_factor;
  const double most = usual == &of_two ? 17 : log_bounds(*usual).most + more_when_cold;
  if (when_cold - r.EXA / (gas_constant * cold) / log_10 < most) return;
  energies_.push_back(
      {place_of_parameters(r.line, 2, 2),
       message("E of ", about(r.EXA / kJ_per_mol), " kJ/mol makes this reaction very fast at 300 K"),
       "E is hardly negative by more than some 20 kJ/mol: look at its sign"});
}

// A factor that is too large may be made up for by a large activation energy, within limits.
bool RateCheck::compare(double log_factor, double b, double E, const UsualFactor& usual, const Place& line) {
  constexpr double most_b = 15;
  constexpr double most_made_up = 4;
  const auto [least, most] = log_bounds(usual);
  const double log_rate = log_factor - std::max(E, 0.0) / (gas_constant * compared_at) / log_10;
  const bool too_small = log_factor < least;
  const bool too_large = log_rate > most || log_factor > most + most_made_up;
  if (!too_small && !too_large) return false;
  const std::string range =
      message(usual.form, " ", about(usual.least), " to ", about(usual.most), " ", usual.unit);
  if (std::abs(b) > most_b) {
    factors_.push_back({place_of_parameters(line, 1, 1), message("b of this reaction is read as ", about(b)),
                        "the numbers are A, b and E: rates go with T^b"});
  } else {
    factors_.push_back(
        {place_of_parameters(line, 0, 1),
         message("A T^b of this reaction is ", about(power_of_10(log_factor)), " ", usual.unit, " at 1500 K"),
         message(range, ": look at A and b")});
  }
  return true;
}

std::optional<double> RateCheck::reaction_heat(const SpeciesVector& KSPEC) {
  constexpr double T = 298.15;
  if (heats_.empty()) {
    Listing silent;
    for (int i = 1; i <= count_of(fit_); ++i) {
      const Place& entry = at(fit_, i).entry;
      const bool known = entry.unit != nullptr && !findings_.is_told(entry);
      heats_.push_back(known ? std::optional(CALHI(i, T, fit_, silent)) : std::nullopt);
    }
  }
  double heat = 0;
  bool known = true;
  phase_.for_each(KSPEC, [&](int number, int sign) {
    if (is_partner(number)) return;
    known = known && number <= count_of(heats_) && at(heats_, number);
    if (known) heat += sign * *at(heats_, number);
  });
  return known ? std::optional(heat) : std::nullopt;
}

// In a reversible reaction of two species to two others E is hardly less than what the reaction consumes;
// without a third body it is hardly negative.
void RateCheck::examine_reaction_heat(const ReactionLine& line) {
  constexpr double least_shown = 30 * kJ_per_mol;
  constexpr double tolerated = 45 * kJ_per_mol;
  constexpr double least_E = -40 * kJ_per_mol;
  constexpr double kcal = 4.184;
  const Reaction& r = line.reaction;
  const auto& K = line.KSPEC;
  const auto is_pair = [&](int first) {
    return is_species(at(K, first)) && is_species(at(K, first + 1)) && at(K, first + 2) == 0;
  };
  if (r.IARRH != arrhenius || !is_pair(1) || !is_pair(phase_.MAXE + 1) || !std::isfinite(r.EXA)) return;
  const std::optional<double> heat = line.reversible ? reaction_heat(K) : std::nullopt;
  if (heat && *heat > least_shown) energy_ratios_.push_back(r.EXA / *heat);
  if (heat && *heat > least_shown && r.EXA < *heat - tolerated) {
    const double in_kcal = kcal * r.EXA / *heat;
    energies_.push_back(
        {place_of_parameters(r.line, 2, 2),
         message("E of ", about(r.EXA / kJ_per_mol), " kJ/mol is below the heat of this reaction, ",
                 about(*heat / kJ_per_mol), " kJ/mol"),
         in_kcal > 0.9 && in_kcal < 1.5 ? "E is in kJ/mol: is this one in kcal/mol?"
                                        : "its reverse would be faster than collisions: look at E"});
  } else if (r.EXA < least_E) {
    energies_.push_back({place_of_parameters(r.line, 2, 2),
                         message("E of this reaction is ", about(r.EXA / kJ_per_mol), " kJ/mol"),
                         "is the sign meant? without a third body E is seldom negative"});
  }
}

// Whether the rates of all reactions of two species are written in other units; says so.
bool RateCheck::report_factors_of_all(const Place& heading) {
  constexpr std::size_t least_count = 5;
  constexpr double usual = 13.1;  // the median of mechanisms, 12.8 to 13.3
  constexpr double width = 1.6;
  if (log_rates_.size() < least_count) return false;
  const double middle = median(log_rates_);
  if (middle > 10.8 && middle < 15.4) return false;
  const std::string_view unit = other_unit(factor_units, middle - usual, width);
  findings_.warning(heading,
                    message("half of the reactions of two species have A T^b ",
                            middle < usual ? "below " : "above ", about(power_of_10(middle)), " at 1500 K"),
                    message("A is in cm, mol, s, and some 1E+13 usual",
                            unit.empty() ? "" : message(": is this mechanism written in ", unit, "?")));
  return true;
}

// The same of the activation energies, by those that are too large, or below the heats of reaction.
bool RateCheck::report_energies_of_all(const Place& heading) {
  constexpr int least_count = 3;
  constexpr double least_ratio = 0.45;
  constexpr double width = 0.15;
  const bool ratios = count_of(energy_ratios_) >= least_count;
  const double ratio = energy_ratios_.empty() ? 1 : median(energy_ratios_);
  const bool too_small = ratios && ratio > 0 && ratio < least_ratio;
  const bool too_large = too_large_energies_ >= least_count && 10 * too_large_energies_ >= reactions_;
  if (!too_small && !too_large) return false;
  const std::string_view unit = ratio > 0 ? other_unit(energy_units, decadic_log(ratio), width) : "";
  findings_.warning(
      heading,
      too_small ? message("half of the reactions that consume heat have an E below ", about(ratio),
                          " times that heat")
                : message(too_large_energies_, " activation energies are read as more than 1000 kJ/mol"),
      message("E is in kJ/mol: is this mechanism written in ", unit.empty() ? "J/mol or cal/mol" : unit,
              "?"));
  return true;
}

void RateCheck::report(const Place& heading) {
  if (!report_factors_of_all(heading)) {
    for (const Doubt& doubt : factors_) findings_.warning(doubt.place, doubt.what, doubt.help);
  }
  if (report_energies_of_all(heading)) return;
  int last = 0;
  for (const Doubt& doubt : energies_) {  // one doubt a line
    const int record = doubt.place.record;
    const bool told = std::any_of(factors_.begin(), factors_.end(),
                                  [&](const Doubt& of_factor) { return of_factor.place.record == record; });
    if (!told && record != last) findings_.warning(doubt.place, doubt.what, doubt.help);
    last = record;
  }
}

}  // namespace varpre
