#include "conditions/mixtures.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "files/store_records.h"
#include "textio/channel/run_stop.h"
#include "textio/channel/statement.h"
#include "textio/record/numbered.h"
#include "thermo/thermo_functions.h"

namespace varpre {
namespace {

using M = MixtureConditions;
using Given = GivenKeywords<MixtureSection>;

[[noreturn]] void stop(Listing& MSGFIL) {
  write<"(1H ,5X,'ERROR - Wrong operation of CHICON')">(MSGFIL);
  throw RunStop{};
}

// The records of a mixture that are no keywords: amounts of species.
struct Amounts {
  std::span<const SpeciesName> SYMB;
  const Input& NFICON;
  Listing& MSGFIL;
  std::span<double> X;
  NameIndex index{SYMB};
  int given = 0;
  Place doubtful{};     // an amount that was told of, as negative or read otherwise than meant
  bool failed = false;  // what follows is only looked at

  std::optional<SectionEnd> take(const KeywordRecord& record) {
    const auto& [name, value, result] = record;
    const int number = index.find(name);
    if (number == 0) return SectionEnd::unknown_word;
    if (at(X, number) > 0) {
      if (!failed) write<"(1H1,5X,'ERROR - Species ',A,' multiply defined')">(MSGFIL, name);
      MSGFIL.findings.error(here(NFICON, 1, 8), message("the amount of species '", name, "' is given twice"));
      return SectionEnd::given_up;
    }
    const FieldColumns& field = keyword_columns<MixtureSection>.value;
    if (!value_is_readable(result, name.view(), value, field, "mol", NFICON, MSGFIL.findings)) {
      return SectionEnd::unreadable_value;
    }
    const Place place = here(NFICON, field.first, field.width);
    if (value < 0) {
      MSGFIL.findings.warning(place, message("the amount of species '", name, "' is negative: ", value));
    }
    if (MSGFIL.findings.is_told(place)) doubtful = place;
    at(X, number) = value;
    ++given;
    return std::nullopt;
  }
  void offer_to(Nearest& nearest) const { nearest.offer_all(SYMB); }
  bool knows(std::string_view word) const { return word.size() <= 8 && index.find(SpeciesName(word)) > 0; }
  void behind_error() { failed = true; }
};

// Reads the records of a mixture up to END.
void read_records(const Section& section, Input& NFICON, Listing& MSGFIL, Given& given, Amounts& amounts) {
  const SectionEnd end = read_keywords(section, NFICON, MSGFIL.findings, given, amounts);
  if (end == SectionEnd::closed) return;
  const SpeciesName& name = given.last.word;
  if (end == SectionEnd::end_of_file) write<"(1H ,5X,'ERROR - No end of reaction conditions')">(MSGFIL);
  if (end == SectionEnd::unknown_word) {
    write<"(1H1,5X,'ERROR - Wrong symbol in reaction conditions : ', A,'...')">(MSGFIL, name);
  }
  if (end == SectionEnd::unreadable_value) {
    write<"(1H ,5X,'ERROR - Unreadable value of ',A,' in reaction conditions')">(MSGFIL, name);
  }
  stop(MSGFIL);
}

double sum(std::span<const double> values) {
  return std::accumulate(values.begin(), values.end(), 0.0);
}

// Checks that the block gives what is needed, and nothing twice.
void check(const Given& given, const Amounts& amounts, std::span<const double> gas_amounts, int NTOT,
           Listing& MSGFIL) {
  const bool T = bool(given.place(&M::T));
  const bool H = bool(given.place(&M::H));
  std::string_view what;
  if (!given.place(&M::P)) {
    write<"(1H1,5X,'ERROR - Initial P or V not specified')">(MSGFIL);
    what = "this mixture has no pressure (P, in bar)";
  } else if (!T && !H) {
    write<
        "(1H1,5X,'ERROR - Neither initial T nor initial enthalpy ',/, '1',5X,"
        "'        specified for adiabatic reactor        ')">(MSGFIL);
    what = "this mixture has neither a temperature (T) nor an enthalpy (H(T0))";
  } else if (T && H) {
    write<
        "(1H1,5X,'ERROR - Initial T and initial enthalpy ',/, '1',5X,"
        "'        specified for adiabatic reactor        ')">(MSGFIL);
    what = "this mixture has both a temperature (T) and an enthalpy (H(T0))";
  } else if (given.place(&M::RHO)) {
    write<
        "(1H1,5X,'ERROR - Initial density and pressure   ',/, '1',5X,"
        "'        specified at the same time             ')">(MSGFIL);
    what = "this mixture has a density (RHO), which is always computed";
  } else if (amounts.given > NTOT) {
    write<"(1H1,5X,'ERROR - More than ',I2,' initial values defined')">(MSGFIL, NTOT);
    what = "this mixture has more amounts than there are species";
  } else if (amounts.given == 0) {
    write<"(1H ,5X,'ERROR - No initial composition specified')">(MSGFIL);
    what = "this mixture has no composition";
  } else if (!(sum(gas_amounts) > 0)) {
    write<"(1H ,5X,'ERROR - No gas-phase composition specified')">(MSGFIL);
    if (MSGFIL.findings.follows(amounts.doubtful, "unusable sum", Findings::Severity::error)) stop(MSGFIL);
    what = "the amounts of the gas species of this mixture do not add up to a positive number";
  } else {
    return;
  }
  MSGFIL.findings.error(given.heading, what);
  stop(MSGFIL);
}

// Whether each species of a mixture has a molar mass.
bool all_known(std::span<const double> X, const SpeciesView& species) {
  for (std::size_t i = 0; i < X.size(); ++i) {
    if (X[i] > 0 && !(species.XMOL[i] > 0)) return false;
  }
  return true;
}

void divide_by_sum(std::span<double> values) {
  const double total = sum(values);
  for (double& value : values) value /= total;
}

// Element composition of the gas mixture.
void set_elements(const Elements& elements, std::span<const double> X, MixtureState& mixture) {
  const int NE = elements.NE;
  if (NE == 0) return;
  const auto B = first(mixture.B, NE);
  for (int e = 1; e <= NE; ++e) {
    at(B, e) = 0;
    for (std::size_t i = 0; i < X.size(); ++i) at(B, e) += at(elements.NCOMP[i], e) * X[i];
  }
  divide_by_sum(B);
  double mean_mass = 0;
  for (int e = 1; e <= NE; ++e) mean_mass += at(B, e) * at(elements.EMOL, e);
  for (int e = 1; e <= NE; ++e) at(mixture.Z, e) = at(B, e) / mean_mass;
}

// Coverages are divided by their sum; fractions that are meant sum up to 1.
void warn_of_coverages(std::span<const double> X_surface, const Given& given, const Place& doubtful,
                       Findings& findings) {
  constexpr double tolerated = 0.01;
  const double total = sum(X_surface);
  if (total == 0 || std::abs(total - 1) <= tolerated) return;
  const Place& cause = doubtful ? doubtful : given.lost.place;
  if (findings.follows(cause, "wrong sum")) return;
  findings.warning(given.heading,
                   message("the amounts of the surface species of this mixture add up to ", about(total)),
                   "they are coverages, and are divided by their sum");
}

// Warns of a state that can hardly be meant, or at which the thermochemical fits do not hold.
void warn_of_unusual(const Given& given, const MixtureState& mixture, std::span<const double> X,
                     const SpeciesView& species, Findings& findings) {
  constexpr double bar = 100000.0;
  if (!(mixture.values.T > 0) || !(mixture.values.P > 0)) {
    const bool T = !(mixture.values.T > 0) && given.place(&M::T);
    const std::string what = T ? message("the temperature of this mixture is ", mixture.values.T,
                                         " K, which leaves it without density")
                               : message("the pressure of this mixture is ", mixture.values.P / bar,
                                         " bar, which leaves it without density");
    findings.warning(given.place(T ? &M::T : &M::P), what, "the solver needs a positive density");
    return;
  }
  if (!(mixture.values.P >= 0.001 * bar && mixture.values.P <= 1000 * bar)) {
    findings.warning(
        given.place(&M::P),
        message("the pressure of this mixture, ", mixture.values.P / bar, " bar, can hardly be meant"),
        "P is in bar; 0.001 to 1000 bar is usual");
  }
  std::vector<SpeciesName> outside;
  double lower = 0;
  double upper = 1.0E+30;
  for (std::size_t i = 0; i < X.size(); ++i) {
    const auto& [TLOW, TCOMMON, THIGH] = species.fit[i].TLIM;
    if (X[i] == 0 || (mixture.values.T >= TLOW && mixture.values.T <= THIGH)) continue;
    if (findings.follows(species.fit[i].entry, "mixture temperature")) continue;
    outside.push_back(species.SYMB[i]);
    lower = std::max(lower, TLOW);
    upper = std::min(upper, THIGH);
  }
  const Place& T = given.place(&M::T);
  if (outside.empty() || findings.is_told(T)) return;
  findings.warning(
      T ? T : given.place(&M::H),
      message(T ? "this mixture has a temperature of " : "the enthalpy of this mixture leads to ",
              mixture.values.T, " K, outside the fits of ", list_of(outside)),
      message("together they hold from ", lower, " to ", upper, " K"));
}

// Pairs (name, amount) of the species whose amount is positive, three to a record; the last record holds what
// is left, or none.
void list_amounts(std::span<const SpeciesName> names, std::span<const double> amounts, bool always_last,
                  Listing& MSGFIL) {
  constexpr std::size_t pairs_per_record = 3;
  std::vector<SpeciesName> present;
  std::vector<double> values;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (!(amounts[i] > 0)) continue;
    present.push_back(names[i]);
    values.push_back(amounts[i]);
  }
  const std::size_t records =
      (values.size() + (always_last ? pairs_per_record : pairs_per_record - 1)) / pairs_per_record;
  for (std::size_t r = 0; r < records; ++r) {
    const std::size_t first = r * pairs_per_record;
    const std::size_t count = std::min(pairs_per_record, values.size() - first);
    write<"(1(' ',7X,3(A,':',1PE10.3,2X)))">(
        MSGFIL, zip(std::span(present).subspan(first, count), std::span(values).subspan(first, count)));
  }
}

void list_elements(const Elements& elements, std::span<const double> values, Listing& MSGFIL) {
  write<"(1(1H ,7X,4(A2,':',1PE14.7,1X)))">(
      MSGFIL, zip(first(elements.SYME, elements.NE), first(values, elements.NE)));
}

}  // namespace

void CHICON(const Section& section, const SpeciesView& species, int NSURF, const Elements& elements,
            Input& NFICON, Listing& MSGFIL, MixtureState& mixture) {
  if (!find_section(section, NFICON)) {
    write<"(1H ,5X,'WARNING - No composition specified')">(MSGFIL);
    report_missing(section, NFICON, MSGFIL.findings, ": the store file gets zeros for it");
    return;
  }
  mixture = {};
  Given given;
  Amounts amounts{.SYMB = species.SYMB, .NFICON = NFICON, .MSGFIL = MSGFIL, .X = mixture.X};
  read_records(section, NFICON, MSGFIL, given, amounts);
  const int NGAS = species.size() - NSURF;
  const auto X = first(mixture.X, NGAS);
  const auto X_surface = behind(mixture.X, NGAS, NSURF);
  check(given, amounts, X, species.size(), MSGFIL);
  if (!all_known(X, species)) return;  // of a run that has failed already

  mixture.amounts = mixture.X;
  divide_by_sum(X);
  warn_of_coverages(X_surface, given, amounts.doubtful, MSGFIL.findings);
  if (!std::isfinite(sum(X_surface))) throw RunStop{RunStop::Ending::number_not_finite};
  if (sum(X_surface) > 0) divide_by_sum(X_surface);
  double mass = 0;  // molar, of the gas
  for (int i = 1; i <= NGAS; ++i) mass += at(X, i) * at(species.XMOL, i);
  for (int i = 1; i <= NGAS; ++i) at(mixture.W, i) = at(X, i) / mass;
  set_elements(elements, X, mixture);

  M& values = mixture.values = given.values;
  const auto XMOL = first(species.XMOL, NGAS);
  if (given.place(&M::T)) {
    values.H = mixture_enthalpy(values.T, X, species.fit, MSGFIL) / mass;
  } else {
    values.T = GETT(values.H, X, species.fit, XMOL, given.heading, MSGFIL);
  }
  values.RHO = mass * values.P / (values.T * gas_constant);
  mixture.pressure = given.place(&M::P);
  mixture.temperature = given.place(given.place(&M::T) ? &M::T : &M::H);
  warn_of_unusual(given, mixture, X, species, MSGFIL.findings);
}

void compare_mixtures(const MixtureState& left, const MixtureState& right, int NGAS,
                      const SpeciesView& surface, Findings& findings) {
  constexpr double bar = 100000.0;
  const auto is_told = [&](const MixtureState& mixture) {
    return findings.is_told(mixture.pressure) || findings.is_told(mixture.temperature);
  };
  if (left.pressure && right.pressure && left.values.P != right.values.P && !is_told(left) &&
      !is_told(right)) {
    const auto factor = [](double P) { return P > bar ? P / bar : bar / P; };  // how far from 1 bar
    const bool in_left = factor(left.values.P) > factor(right.values.P);
    findings.warning(in_left ? left.pressure : right.pressure,
                     message("the mixtures have different pressures: ", left.values.P / bar,
                             " bar on the left, ", right.values.P / bar, " bar on the right"));
  }
  const auto given = [&](const MixtureState& mixture) {
    const auto X = behind(mixture.X, NGAS, surface.size());
    return std::any_of(X.begin(), X.end(), [](double x) { return x > 0; });
  };
  const bool one_absent = !left.pressure || !right.pressure;  // which was told
  if (surface.size() == 0 || one_absent || given(left) || given(right) || !surface.listed.front()) return;
  findings.warning(surface.listed.front(), "no mixture gives an amount of a surface species",
                   "the surface starts from the fractions of the mixtures, which are all 0");
}

void write_condition_set(const MixtureState& mixture, int NTOT, StoreFile& NFISTO) {
  const M& m = mixture.values;
  write<store_records::mixture>(NFISTO, m.T, m.H, m.P, first(std::span(mixture.X), NTOT), m.PHI, m.G, m.v,
                                m.FREQ, m.FAC, m.OMEG);
}

void PRICOM(const SpeciesView& species, int NSURF, const Elements& elements, double ZMIX,
            const MixtureState& mixture, Listing& MSGFIL) {
  const int NGAS = species.size() - NSURF;
  const auto gas = first(species.SYMB, NGAS);
  const auto surface = behind(species.SYMB, NGAS, NSURF);
  const auto X_surface = behind(mixture.X, NGAS, NSURF);

  write<"(/,' ',7X,'Values for mixture fraction =',F5.3)">(MSGFIL, ZMIX);
  write<"(/,' ',7X,'Gas Composition (mole fractions)')">(MSGFIL);
  list_amounts(gas, mixture.X, true, MSGFIL);
  if (std::any_of(X_surface.begin(), X_surface.end(), [](double x) { return x > 0; })) {
    write<"(/,' ',7X,'Surface Composition (site density,[mol/m**2])')">(MSGFIL);
    list_amounts(surface, X_surface, false, MSGFIL);
  }
  write<"(/,' ',7X,'Element Composition (mole fractions)')">(MSGFIL);
  list_elements(elements, mixture.B, MSGFIL);
  write<"(/,' ',7X,'Gas Composition (specific mole numbers)')">(MSGFIL);
  list_amounts(gas, mixture.W, true, MSGFIL);
  write<"(/,' ',7X,'Element Composition (specific mole numbers)')">(MSGFIL);
  list_elements(elements, mixture.Z, MSGFIL);
  write<"(/,' ',7X,'P : ',1PE14.7,' P(Pa)')">(MSGFIL, mixture.values.P);
  write<"(  ' ',7X,'T : ',1PE14.7,' K ')">(MSGFIL, mixture.values.T);
  write<"(  ' ',7X,'H : ',1PE14.7,' J/kg ')">(MSGFIL, mixture.values.H);
  write<"(  ' ',7X,'r : ',1PE14.7,' kg/m**3')">(MSGFIL, mixture.values.RHO);
}

}  // namespace varpre
