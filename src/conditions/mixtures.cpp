#include "conditions/mixtures.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <span>
#include <string>
#include <vector>

#include "conditions/keyword_records.h"
#include "files/store_records.h"
#include "textio/channel/run_stop.h"
#include "textio/record/numbered.h"
#include "thermo/thermo_functions.h"

namespace varpre {
namespace {

// What the records of a block have given so far.
struct Given {
  Place P;  // their records; no unit: not given
  Place T;
  Place H;
  Place RHO;
  int composition = 0;  // records with the amount of a species
  Place heading;        // of the block
};

// A keyword of a block; keywords win over species of the same name.
struct Keyword {
  std::string_view word;
  double MixtureState::*value;
  double factor;        // from the unit of the input
  Place Given::*given;  // nullptr: optional
  std::string_view unit = {};
};
constexpr std::array<Keyword, 10> keywords{{
    {"RHO ", &MixtureState::RHO, 1, &Given::RHO},
    {"P   ", &MixtureState::P, 100000.0, &Given::P, "bar"},
    {"T   ", &MixtureState::T, 1, &Given::T, "K"},
    {"H(T0)", &MixtureState::H, 1, &Given::H, "J/kg"},
    {"PHI ", &MixtureState::PHI, 1, nullptr},
    {"G   ", &MixtureState::G, 1, nullptr},
    {"v   ", &MixtureState::v, 1, nullptr},
    {"FREQ", &MixtureState::FREQ, 1, nullptr},
    {"FAC ", &MixtureState::FAC, 1, nullptr},
    {"OMEG", &MixtureState::OMEG, 1, nullptr},
}};

[[noreturn]] void stop(Listing& MSGFIL) {
  write<"(1H ,5X,'ERROR - Wrong operation of CHICON')">(MSGFIL);
  throw RunStop{};
}

constexpr ValueField value_field{10, 10};

// A mixture while its records are read.
struct Reading {
  const Section& section;
  std::span<const SpeciesName> SYMB;
  NameIndex index{SYMB};
  const Input& NFICON;
  Listing& MSGFIL;
  MixtureState& mixture;
  Given given{};
};

[[noreturn]] void stop_at_unknown(const SpeciesName& name, const Reading& reading) {
  Listing& MSGFIL = reading.MSGFIL;
  write<"(1H1,5X,'ERROR - Wrong symbol in reaction conditions : ', A,'...')">(MSGFIL, name);
  Nearest nearest(name.view());
  nearest.offer_all(reading.SYMB);
  for (const Keyword& keyword : keywords) nearest.offer(keyword.word);
  report_unknown_keyword(reading.section, reading.given.heading, name.view(), "keyword or species", nearest,
                         value_field, reading.NFICON, MSGFIL.findings);
  stop(MSGFIL);
}

void require_value(const KeywordRecord<8>& record, std::string_view unit, const Reading& reading) {
  const SpeciesName& name = record.word;
  Listing& MSGFIL = reading.MSGFIL;
  if (!record.result) {
    write<"(1H ,5X,'ERROR - Unreadable value of ',A,' in reaction conditions')">(MSGFIL, name);
  }
  const ValueField field{value_field.column, value_field.width, unit};
  if (!value_is_readable(record.result, name.view(), record.value, field, reading.NFICON, MSGFIL.findings)) {
    stop(MSGFIL);
  }
}

// Takes the amount of a species.
void set_amount(const KeywordRecord<8>& record, Reading& reading) {
  const SpeciesName& name = record.word;
  Listing& MSGFIL = reading.MSGFIL;
  const int number = reading.index.find(name);
  if (number == 0) stop_at_unknown(name, reading);
  double& X = at(reading.mixture.X, number);
  if (X > 0) {
    write<"(1H1,5X,'ERROR - Species ',A,' multiply defined')">(MSGFIL, name);
    MSGFIL.findings.error(here(reading.NFICON, 1, 8),
                          message("the amount of species '", name, "' is given twice"));
    stop(MSGFIL);
  }
  require_value(record, "mol", reading);
  if (record.value < 0) {
    MSGFIL.findings.warning(here(reading.NFICON, 10, 10),
                            message("the amount of species '", name, "' is negative: ", record.value));
  }
  X = record.value;
  ++reading.given.composition;
}

void set_keyword(const Keyword& keyword, const KeywordRecord<8>& record, Reading& reading) {
  require_value(record, keyword.unit, reading);
  reading.mixture.*keyword.value = record.value * keyword.factor;
  if (keyword.given == nullptr) return;
  Place& given = reading.given.*keyword.given;
  warn_of_second(trimmed(keyword.word), given, here(reading.NFICON, 10, 10), reading.MSGFIL.findings);
  given = here(reading.NFICON, 10, 10);
}

// Reads the value records up to END.
void read_values(Input& NFICON, Reading& reading) {
  const auto ends = [](const SpeciesName& name) { return EQUSYM(3, name.view(), "END"); };
  const auto take = [&](const KeywordRecord<8>& record) {
    const auto keyword = std::find_if(keywords.begin(), keywords.end(), [&](const Keyword& k) {
      return EQUSYM(static_cast<int>(k.word.size()), record.word.view(), k.word);
    });
    if (keyword == keywords.end()) {
      set_amount(record, reading);
    } else {
      set_keyword(*keyword, record, reading);
    }
    return true;
  };
  if (read_keyword_records<"(A8,1X,E10.2)", 8>(NFICON, ends, take) == SectionEnd::closed) return;
  Listing& MSGFIL = reading.MSGFIL;
  write<"(1H ,5X,'ERROR - No end of reaction conditions')">(MSGFIL);
  report_not_closed(reading.section, reading.given.heading, MSGFIL.findings);
  stop(MSGFIL);
}

bool is_given(const Place& place) {
  return place.unit != nullptr;
}

double sum(std::span<const double> values) {
  return std::accumulate(values.begin(), values.end(), 0.0);
}

// Checks that the block gives what is needed, and nothing twice.
void check(const Given& given, std::span<const double> gas_amounts, int NTOT, Listing& MSGFIL) {
  std::string_view what;
  if (!is_given(given.P)) {
    write<"(1H1,5X,'ERROR - Initial P or V not specified')">(MSGFIL);
    what = "this mixture has no pressure (P, in bar)";
  } else if (!is_given(given.T) && !is_given(given.H)) {
    write<
        "(1H1,5X,'ERROR - Neither initial T nor initial enthalpy ',/, '1',5X,"
        "'        specified for adiabatic reactor        ')">(MSGFIL);
    what = "this mixture has neither a temperature (T) nor an enthalpy (H(T0))";
  } else if (is_given(given.T) && is_given(given.H)) {
    write<
        "(1H1,5X,'ERROR - Initial T and initial enthalpy ',/, '1',5X,"
        "'        specified for adiabatic reactor        ')">(MSGFIL);
    what = "this mixture has both a temperature (T) and an enthalpy (H(T0))";
  } else if (is_given(given.RHO)) {
    write<
        "(1H1,5X,'ERROR - Initial density and pressure   ',/, '1',5X,"
        "'        specified at the same time             ')">(MSGFIL);
    what = "this mixture has a density (RHO), which is always computed";
  } else if (given.composition > NTOT) {
    write<"(1H1,5X,'ERROR - More than ',I2,' initial values defined')">(MSGFIL, NTOT);
    what = "this mixture has more amounts than there are species";
  } else if (given.composition == 0) {
    write<"(1H ,5X,'ERROR - No initial composition specified')">(MSGFIL);
    what = "this mixture has no composition";
  } else if (!(sum(gas_amounts) > 0)) {
    write<"(1H ,5X,'ERROR - No gas-phase composition specified')">(MSGFIL);
    what = "the amounts of the gas species of this mixture do not add up to a positive number";
  } else {
    return;
  }
  MSGFIL.findings.error(given.heading, what);
  stop(MSGFIL);
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

// Warns of a state that can hardly be meant, or at which the thermochemical fits do not hold.
void warn_of_unusual(const Given& given, const MixtureState& mixture, std::span<const double> X,
                     const SpeciesView& species, Findings& findings) {
  constexpr double bar = 100000.0;
  if (!(mixture.P >= 0.001 * bar && mixture.P <= 1000 * bar)) {
    findings.warning(given.P,
                     message("the pressure of this mixture, ", mixture.P / bar, " bar, can hardly be meant"),
                     "P is in bar; 0.001 to 1000 bar is usual");
  }
  std::vector<SpeciesName> outside;
  double lower = 0;
  double upper = 1.0E+30;
  for (std::size_t i = 0; i < X.size(); ++i) {
    const auto& [TLOW, TCOMMON, THIGH] = species.fit[i].TLIM;
    if (X[i] == 0 || (mixture.T >= TLOW && mixture.T <= THIGH)) continue;
    outside.push_back(species.SYMB[i]);
    lower = std::max(lower, TLOW);
    upper = std::min(upper, THIGH);
  }
  if (outside.empty()) return;
  findings.warning(is_given(given.T) ? given.T : given.H,
                   message(is_given(given.T) ? "this mixture has a temperature of "
                                             : "the enthalpy of this mixture leads to ",
                           mixture.T, " K, outside the fits of ", list_of(outside)),
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
  Reading reading{
      .section = section, .SYMB = species.SYMB, .NFICON = NFICON, .MSGFIL = MSGFIL, .mixture = mixture};
  reading.given.heading = heading_place(section, NFICON);
  read_values(NFICON, reading);
  const Given& given = reading.given;
  const int NGAS = species.size() - NSURF;
  const auto X = first(mixture.X, NGAS);
  const auto X_surface = behind(mixture.X, NGAS, NSURF);
  check(given, X, species.size(), MSGFIL);

  mixture.amounts = mixture.X;
  divide_by_sum(X);
  if (!std::isfinite(sum(X_surface))) throw RunStop{RunStop::Ending::number_not_finite};
  if (sum(X_surface) > 0) divide_by_sum(X_surface);
  double M = 0;
  for (int i = 1; i <= NGAS; ++i) M += at(X, i) * at(species.XMOL, i);
  for (int i = 1; i <= NGAS; ++i) at(mixture.W, i) = at(X, i) / M;
  set_elements(elements, X, mixture);

  const auto XMOL = first(species.XMOL, NGAS);
  if (is_given(given.T)) {
    mixture.H = mixture_enthalpy(mixture.T, X, species.fit, MSGFIL) / M;
  } else {
    mixture.T = GETT(mixture.H, X, species.fit, XMOL, given.heading, MSGFIL);
  }
  mixture.RHO = M * mixture.P / (mixture.T * gas_constant);
  mixture.pressure = given.P;
  warn_of_unusual(given, mixture, X, species, MSGFIL.findings);
}

void compare_mixtures(const MixtureState& left, const MixtureState& right, int NGAS,
                      const SpeciesView& surface, Findings& findings) {
  constexpr double bar = 100000.0;
  if (left.pressure.unit != nullptr && right.pressure.unit != nullptr && left.P != right.P) {
    findings.warning(right.pressure, message("the mixtures have different pressures: ", left.P / bar,
                                             " bar on the left, ", right.P / bar, " bar on the right"));
  }
  const auto given = [&](const MixtureState& mixture) {
    const auto X = behind(mixture.X, NGAS, surface.size());
    return std::any_of(X.begin(), X.end(), [](double x) { return x > 0; });
  };
  const bool both_absent = left.pressure.unit == nullptr && right.pressure.unit == nullptr;
  if (surface.size() == 0 || both_absent || given(left) || given(right)) return;
  findings.warning(surface.listed.front(), "no mixture gives an amount of a surface species",
                   "the surface starts from the fractions of the mixtures, which are all 0");
}

void write_condition_set(const MixtureState& m, int NTOT, StoreFile& NFISTO) {
  write<store_records::mixture>(NFISTO, m.T, m.H, m.P, first(std::span(m.X), NTOT), m.PHI, m.G, m.v, m.FREQ,
                                m.FAC, m.OMEG);
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
  write<"(/,' ',7X,'P : ',1PE14.7,' P(Pa)')">(MSGFIL, mixture.P);
  write<"(  ' ',7X,'T : ',1PE14.7,' K ')">(MSGFIL, mixture.T);
  write<"(  ' ',7X,'H : ',1PE14.7,' J/kg ')">(MSGFIL, mixture.H);
  write<"(  ' ',7X,'r : ',1PE14.7,' kg/m**3')">(MSGFIL, mixture.RHO);
}

bool is_mixture_keyword(std::string_view word) {
  return std::any_of(keywords.begin(), keywords.end(),
                     [&](const Keyword& k) { return EQUSYM(8, word, k.word); });
}

}  // namespace varpre
