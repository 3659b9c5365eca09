#include "thermo/thermo_database.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

#include "files/store_records.h"
#include "math/elementary.h"
#include "textio/channel/statement.h"
#include "textio/findings/record_findings.h"
#include "textio/record/number_format.h"
#include "textio/record/numbered.h"
#include "thermo/database_search.h"
#include "thermo/elements.h"
#include "thermo/thermo_functions.h"

namespace varpre {
namespace {

// One entry of four records: name and element fields, temperature limits, coefficients of the upper range,
// then those of the lower range.
struct Entry {
  Text<16> name;
  ElementFields elements;
  std::array<double, 3> limits{};  // TLOW, THIGH, TCOMMON, K
  ThermoCoefficients upper{};
  ThermoCoefficients lower{};
};

ReadResult read_entry(Input& NFITHE, Entry& entry) {
  return read<thermo_entry>(NFITHE, entry.name, zip(entry.elements.ELSYM, entry.elements.ELCNT), entry.limits,
                            entry.upper, entry.lower);
}

ThermoCoefficients scaled(const ThermoCoefficients& coefficients) {
  ThermoCoefficients result{};
  for (std::size_t k = 0; k < result.size(); ++k) result[k] = gas_constant * coefficients[k];
  return result;
}

ThermoFit fit_of(const Entry& entry, const Place& place) {
  const auto [TLOW, THIGH, TCOMMON] = entry.limits;
  return {scaled(entry.lower),
          scaled(entry.upper),
          {TLOW - 20.0, TCOMMON == 0.0 ? 1000.0 : TCOMMON, THIGH},
          place};
}

// Sign character and value of the six coefficients of an enthalpy polynomial. The values keep their own sign.
auto signed_terms(const ThermoCoefficients& coefficients) {
  std::array<Text<1>, 6> signs;
  std::array<double, 6> values{};
  for (std::size_t k = 0; k < values.size(); ++k) {
    values[k] = coefficients[k];
    signs[k] = k == 0 ? " " : values[k] < 0 ? "-" : "+";
  }
  return std::pair(signs, values);
}

void print_fit(const SpeciesName& name, const ThermoFit& fit, Listing& MSGFIL) {
  const auto [low_signs, low] = signed_terms(fit.HCPL);
  const auto [high_signs, high] = signed_terms(fit.HCPH);
  write<
      "(' ','Thermodynamic fits for species ',A8,/, ' ',5X,'H   =',A1,1PE9.2,'*T',4X,A1,1PE9.2,'*T**2', "
      "1X,A1,1PE9.2,'*T**3',/,1H ,10X,A1,1PE9.2, '*T**4',1X,A1,1PE9.2,'*T**5', 1X,A1,1PE9.2,"
      "'          K   FOR T<1000 K', /,' ',5X,'H   =',A1,1PE9.2,'*T',4X,A1,1PE9.2,'*T**2', "
      "1X,A1,1PE9.2,'*T**3',/,1H ,10X,A1,1PE9.2,'*T**4', 1X,A1,1PE9.2,'*T**5',1X,A1,1PE9.2,8X,"
      "'  K   FOR T>1000 K')">(MSGFIL, name, zip(low_signs, low), zip(high_signs, high));
}

// Gases whose enthalpy of formation is 0 by convention.
constexpr auto reference_gases =
    std::to_array<std::string_view>({"H2", "O2", "N2", "F2", "CL2", "HE", "NE", "AR", "KR", "XE"});

// Salts and oxides of many atoms have much, a molecule of a few has not.
void warn_of_unusual_enthalpy(const SpeciesName& name, const ThermoFit& fit, const ElementFields& elements,
                              Findings& findings) {
  constexpr double usual = 2000.0;  // kJ/mol
  constexpr double usual_of_atom = 700.0;
  constexpr double tolerated = 5.0;
  const double h = enthalpy(fit.HCPL, 298.15) / 1000;
  const int atoms = std::accumulate(elements.ELCNT.begin(), elements.ELCNT.end(), 0);
  const bool reference = std::any_of(reference_gases.begin(), reference_gases.end(),
                                     [&](std::string_view gas) { return EQUSYM(8, name.view(), gas); });
  constexpr std::string_view help = "look at a6 of the lower range, columns 31-45 of the fourth line";
  if (std::abs(h) > std::max(usual, usual_of_atom * atoms)) {
    findings.warning(fit.entry,
                     message("the enthalpy of formation of ", name, " comes out as ", about(h),
                             " kJ/mol, which can hardly be meant"),
                     help);
  } else if (reference && std::abs(h) > tolerated) {
    findings.warning(
        fit.entry,
        message("the enthalpy of formation of ", name, " comes out as ", about(h), " kJ/mol, where 0 is due"),
        help);
  }
}

// Whether the elements of an entry are those that the listed name spells, and not those of its own name.
bool is_misspelt(std::string_view line, const SpeciesName& listed) {
  std::string formula;
  for (int column = 25; column < 45; column += 5) {
    const std::string_view symbol = trimmed(columns(line, column, 2));
    const int count = read_integer(columns(line, column + 2, 3)).value_or(0);
    if (!symbol.empty() && count > 0) formula += message(symbol, count);
  }
  const std::string atoms = atoms_spelt_by(formula);
  const SpeciesName name(line);
  return !atoms.empty() && atoms == atoms_spelt_by(trimmed(listed.view())) &&
         atoms != atoms_spelt_by(trimmed(name.view()));
}

// Whether the limits of a fit are in order; warns when they are not.
bool limits_in_order(const SpeciesName& name, const ThermoFit& fit, Findings& findings) {
  const auto& [TLOW, TCOMMON, THIGH] = fit.TLIM;
  if (TLOW < THIGH) return true;
  findings.warning(
      fit.entry,
      message("the upper temperature limit of ", name, ", ", THIGH, " K, is not above the lower one"),
      "columns 47-56 hold the lower temperature limit, columns 57-66 the upper one");
  return false;
}

// Warns when the two ranges of a fit do not meet at the switch temperature: heat capacity by 1 %, enthalpy by
// 0.5 % of RT, entropy by 0.5 % of R. Whether they do not.
bool warn_of_jump(const SpeciesName& name, const ThermoFit& fit, Findings& findings) {
  constexpr double R = gas_constant;
  const double T = fit.TLIM[1];
  ThermoCoefficients d{};  // difference of the two polynomials
  for (std::size_t k = 0; k < d.size(); ++k) d[k] = fit.HCPH[k] - fit.HCPL[k];
  const double cp = heat_capacity(d, T) / heat_capacity(fit.HCPL, T);
  const double h = enthalpy(d, T) / (R * T);
  const double s = entropy(d, T) / R;
  std::string jumps;
  const auto add = [&](bool jump, std::string_view quantity, double size, std::string_view of) {
    if (jump)
      jumps += message(jumps.empty() ? "" : ", ", quantity, " by ", about(100 * std::abs(size)), " %", of);
  };
  add(std::abs(cp) > 0.01, "the heat capacity", cp, "");
  add(std::abs(h) > 0.005, "the enthalpy", h, " of RT");
  add(std::abs(s) > 0.005, "the entropy", s, " of R");
  if (jumps.empty()) return false;
  for (int line = 1; line < 4; ++line) {
    if (findings.follows({fit.entry.unit, fit.entry.record + line}, "jump")) return true;
  }
  const bool of_h = std::abs(h) > 0.005;
  const bool of_s = std::abs(s) > 0.005;
  std::string_view help =
      "the coefficients of one range, or the switch temperature (columns 67-74), may be wrong";
  if (std::abs(cp) <= 0.01 && of_h != of_s) {
    help = of_h ? "a6 of one range is wrong: columns 1-15 of the third line, or 31-45 of the fourth"
                : "a7 of one range is wrong: columns 16-30 of the third line, or 46-60 of the fourth";
  }
  findings.warning(fit.entry,
                   message("the fit of ", name, " jumps at its switch temperature of ", T, " K: ", jumps),
                   help);
  return true;
}

// How far the heat capacity goes up and down from 300 K on, J/(mol K), with these coefficients below and
// above a switch temperature.
double ups_and_downs(const ThermoCoefficients& below, const ThermoCoefficients& above, double switch_T,
                     double upper_T) {
  constexpr int steps = 6;  // of each range
  double sum = 0;
  const auto add = [&](const ThermoCoefficients& a, double from, double to) {
    const double step = (to - from) / steps;
    double before = heat_capacity(a, from);
    for (int k = 1; k <= steps; ++k) {
      const double cp = heat_capacity(a, from + k * step);
      sum += std::abs(cp - std::exchange(before, cp));
    }
  };
  add(below, 300, switch_T);
  add(above, switch_T, upper_T);
  return sum;
}

// Whether a fit would be much smoother with its ranges exchanged.
bool is_smoother_exchanged(const ThermoFit& fit, double upper_T) {
  const double T = fit.TLIM[1];
  const double as_given = ups_and_downs(fit.HCPL, fit.HCPH, T, upper_T);
  return as_given > 2 * ups_and_downs(fit.HCPH, fit.HCPL, T, upper_T) + 2 * gas_constant;
}

// Warns when that is so for a fit without jump, up to its limit and beyond it: a polynomial that leaves the
// range it was made for runs away.
void warn_of_exchanged_ranges(const SpeciesName& name, const ThermoFit& fit, Findings& findings) {
  constexpr double beyond = 5000;  // K
  const auto [low, T, high] = fit.TLIM;
  if (T <= 300 || T >= beyond || high <= T) return;
  if (!is_smoother_exchanged(fit, beyond) || !is_smoother_exchanged(fit, high)) return;
  findings.warning(
      fit.entry, message("the ranges of the fit of ", name, " look exchanged"),
      "the seven coefficients of the upper range come first, those of the lower range behind them");
}

// Reports the heading that other programs put before the entries as the cause of one that cannot be read;
// false, without a finding, where there is none.
bool report_foreign_heading(const DatabaseSearch& search, const Input& NFITHE, bool lacking,
                            Findings& findings) {
  if (search.read_all || !begins_with(search.unreadable_name.view(), "THERM")) return false;
  int record = search.unreadable.unreadable.record;
  while (record > 1 && !begins_with(NFITHE.origin(record).text, "THERM")) --record;
  const std::string_view heading = trimmed(NFITHE.origin(record).text);
  findings.report(
      lacking ? Findings::Severity::error : Findings::Severity::warning,
      {&NFITHE, record, 1, static_cast<int>(heading.size())},
      message("'", heading, "' is a heading of other programs: nothing behind it is read"),
      "the entries begin in the first line: delete it, and the line of temperatures that may follow",
      Findings::Site::current());
  return true;
}

}  // namespace

bool GENTHE(Input& NFITHE, Listing& MSGFIL, const SpeciesPlaces& species, bool print) {
  Entry entry;
  const auto read_next = [&](SpeciesName& name) {
    const ReadResult result = read_entry(NFITHE, entry);
    name = entry.name.view();
    return result;
  };
  const auto take = [&](std::size_t i, const Place& place) {
    species.fit[i] = fit_of(entry, place);
    species.elements[i] = entry.elements;
    const SpeciesName name(entry.name.view());
    if (!limits_in_order(name, species.fit[i], MSGFIL.findings)) return;
    const bool jumps = warn_of_jump(name, species.fit[i], MSGFIL.findings);
    if (jumps) return;  // which explains the rest
    warn_of_exchanged_ranges(name, species.fit[i], MSGFIL.findings);
    warn_of_unusual_enthalpy(name, species.fit[i], species.elements[i], MSGFIL.findings);
  };
  const DatabaseSearch search =
      search_database(species.SYMB, NFITHE, thermo_layout, MSGFIL.findings, read_next, take);
  if (!search.read_all) {
    write<"(10X,'I/O ERROR. CHECK FORMAT OF THE \"',A8,'\" BLOCK IN      THERMOCHEMICAL DATABASE!')">(
        MSGFIL, search.unreadable_name);
  }
  bool LOK = true;
  for (std::size_t i = 0; i < search.found.size(); ++i) {
    if (search.found[i]) continue;
    write<"(1H1,5X,'ERROR - Species ',A8,' not found in ', 'thermochemical database')">(MSGFIL,
                                                                                        species.SYMB[i]);
    LOK = false;
  }
  if (!report_foreign_heading(search, NFITHE, !LOK, MSGFIL.findings)) {
    report_unreadable_entry(search, NFITHE, thermo_layout, !LOK, MSGFIL.findings);
  }
  report_absent_entries(search, species, NFITHE, is_misspelt, MSGFIL.findings);
  if (print) {
    for (std::size_t i = 0; i < species.SYMB.size(); ++i) print_fit(species.SYMB[i], species.fit[i], MSGFIL);
  }
  return LOK;
}

void warn_of_low_entropies(const SpeciesView& gas, Findings& findings) {
  constexpr double T = 298.15;
  const double log_T = math::log(T);
  constexpr double constant = -1.1517;  // in units of R
  constexpr double tolerated = 0.5;     // the same
  for (std::size_t i = 0; i < gas.SYMB.size(); ++i) {
    const Place& entry = gas.fit[i].entry;
    const double M = 1000 * gas.XMOL[i];
    const auto& symbols = gas.elements[i].ELSYM;
    const bool made_up = std::any_of(symbols.begin(), symbols.end(), [](const ElementSymbol& symbol) {
      return same_word(symbol.view(), "YY");
    });
    if (!entry || !(M > 0) || made_up || findings.is_told(entry)) continue;
    const double s = entropy(gas.fit[i].HCPL, T) / gas_constant;
    const double least = 1.5 * math::log(M) + 2.5 * log_T + constant;
    if (s == 0 || s > least - tolerated) continue;  // 0: an entry of nothing
    findings.warning(
        entry,
        message("the entropy of ", gas.SYMB[i], " at 298 K comes out as ", about(s * gas_constant),
                " J/(mol K), where a gas of ", about(M), " g/mol has more than ",
                about(least * gas_constant)),
        "the coefficients are of another species, or a7 of the lower range (columns 46-60 of the fourth line) "
        "is wrong");
  }
}

void PRTHD(const SpeciesView& species, StoreFile& NFISTO) {
  for (int i = 1; i <= species.size(); ++i) {
    const ThermoFit& fit = at(species.fit, i);
    const double XMOL = at(species.XMOL, i);
    const auto per_mass = [&](ThermoCoefficients coefficients) {
      for (double& a : coefficients) a = XMOL == 0 ? 0.0 : a / XMOL;
      return coefficients;
    };
    write<store_records::thermochemistry>(NFISTO, i, per_mass(fit.HCPL), per_mass(fit.HCPH), fit.TLIM);
  }
}

}  // namespace varpre
