#include "conditions/flame_conditions.h"

#include <cmath>
#include <optional>

#include "files/keywords.h"
#include "files/store_records.h"
#include "files/store_values.h"
#include "textio/channel/statement.h"
#include "textio/record/numbered.h"

namespace varpre {
namespace {

using F = FlameConditions;
using Given = GivenKeywords<FlameSection>;
constexpr const Section& section = sections::named("the flame conditions");

constexpr double tolerance = 1.0E-5;  // of a whole number written with decimals

// The value truncated toward 0; none when that is no 32-bit integer.
std::optional<int> truncated(double value) {
  if (!(value > -2147483649.0 && value < 2147483648.0)) return std::nullopt;
  return static_cast<int>(value);
}

std::optional<int> count_of(double value) {
  return truncated(value + tolerance);
}

std::optional<int> code_of(double value) {
  return truncated(value < 0 ? value - tolerance : value + tolerance);
}

bool report(std::string_view word, Listing& MSGFIL) {
  write<"(/,5X,'ERROR IN INPUT OF CONDITIONS : ',A4)">(MSGFIL, word);
  return false;
}

// Checks that the required values are given; false after the message.
bool is_complete(const Given& given, Listing& MSGFIL) {
  for (std::size_t i = 0; i < Given::count; ++i) {
    const auto& keyword = FlameSection::keywords[i];
    if (!keyword.required || given.places[i]) continue;
    write<"(/,5X,'DATA ON FLAME CONDITIONS INCOMPLETE')">(MSGFIL);
    if (given.is_lost(keyword.word, MSGFIL.findings, Findings::Severity::error)) return false;
    MSGFIL.findings.error(given.heading, message("the flame conditions lack ", trimmed(keyword.word)),
                          "GE, NG, RI, RO, TE and NT must be given");
    return false;
  }
  return true;
}

// Takes the keyword records up to END; false after the message.
bool read_conditions(Input& NFICON, Listing& MSGFIL, Given& given) {
  switch (read_keywords(section, NFICON, MSGFIL.findings, given)) {
    case SectionEnd::closed: return is_complete(given, MSGFIL);
    case SectionEnd::end_of_file: write<"(/,5X,'NO END OF CONDITIONS')">(MSGFIL); return false;
    default: return report(given.last.word.first(4), MSGFIL);
  }
}

using Count = std::optional<int>;

// The store file has five columns for a count.
bool fits(const Count& count) {
  return count && *count >= -9999 && *count <= 99999;
}

void report_asterisks(Given::Member value, const Count& count, const Given& given, Findings& findings) {
  if (fits(count)) return;
  findings.error(given.place(value),
                 message(trimmed(keyword<FlameSection>(value).word), " of ", given.values.*value,
                         " does not fit the five columns of the store file, which has asterisks"),
                 value == &F::NG ? "NG is the number of grid points: some hundred are usual" : "");
}

// Warns of values that the solver can hardly do anything with.
void warn_of_contradictions(const Given& given, Findings& findings) {
  const F& v = given.values;
  const auto is_odd = [&](Given::Member value) { return findings.is_told(given.place(value)); };
  if (const Count geometry = code_of(v.GE); fits(geometry) && (*geometry < 0 || *geometry > 2)) {
    findings.warning(given.place(&F::GE),
                     message("the geometry ", *geometry, " is none that the listing knows"),
                     "GE is 0. for a slab, 1. for a cylinder, 2. for a sphere");
  }
  if (const Count grid = count_of(v.NG); grid && *grid < 3 && !is_odd(&F::NG)) {
    findings.warning(given.place(&F::NG), message("a grid of ", *grid, " points has no point inside"),
                     "NG is the number of grid points, with a decimal point: 101.");
  }
  constexpr int most_points = 1000;
  if (const Count grid = count_of(v.NG); fits(grid) && *grid > most_points) {
    findings.warning(given.place(&F::NG), message("a grid of ", *grid, " points can hardly be meant"),
                     "the solver moves its grid points to where they are needed: some hundred are usual");
  }
  if (v.RO <= v.RI && !is_odd(&F::RO) && !is_odd(&F::RI)) {
    findings.warning(given.place(&F::RO),
                     message("the outer radius of ", v.RO, " m is not beyond the inner one of ", v.RI, " m"));
  }
  if (v.TE <= v.TSTA && !is_odd(&F::TE)) {
    findings.warning(given.place(v.TE > 0 ? &F::TSTA : &F::TE),
                     message("the end time of ", v.TE, " s is not behind the start time of ", v.TSTA, " s"));
  }
}

// The same of the times, and of the source and the profile, which are used when they have an energy or an
// amplitude.
void warn_of_idle_values(const Given& given, Findings& findings) {
  const F& v = given.values;
  const double duration = v.TE - v.TSTA;
  const auto warn = [&](bool is_so, Given::Member value, Given::Member instead, std::string_view what) {
    const std::string_view word = keyword<FlameSection>(value).word;
    if (!is_so || findings.is_told(given.place(value)) || given.is_lost(word, findings)) return;
    const Place& place = given.place(value);
    findings.warning(place ? place : given.place(instead),
                     message(trimmed(word), " of ", v.*value, " ", what));
  };
  const bool long_step = duration > 0 && v.STEP > duration;
  warn(long_step, &F::STEP, &F::TE, "s is longer than the time from TSTA to TE");
  warn(duration > 0 && v.SE != 0 && v.ST > duration && !long_step, &F::ST, &F::TE,
       "s: the source lasts longer than the time from TSTA to TE");
  constexpr double most_steps = 3.0E+8;
  constexpr double least_long = 0.5;  // s; short runs may begin with steps as small as one likes
  constexpr double most_sources = 1000;
  if (v.STEP > 0 && duration > most_steps * v.STEP && duration > least_long) {
    warn(true, &F::TE, &F::TE, "s is more than 300 million times the first step STEP: TE is in s");
  } else {
    warn(v.SE != 0 && v.ST > 0 && duration > most_sources * v.ST, &F::TE, &F::TE,
         "s is more than 1000 times as long as the source, ST: both are in s");
  }
  warn(v.SE != 0 && v.ST == 0, &F::ST, &F::SE, "s: the energy SE has no time");
  warn(v.SE != 0 && v.SW == 0, &F::SW, &F::SE, "m: the energy SE has no width");
  warn(v.AMPL != 0 && v.SIGM == 0, &F::SIGM, &F::AMPL, "m: the profile of AMPL has no width");
  constexpr double most_usual = 5000;  // K
  warn(std::abs(v.AMPL) > most_usual, &F::AMPL, &F::AMPL, "K: flames are less hot than that");
  constexpr double least_ratio = 10;
  warn(v.ATOL > least_ratio * v.RTOL && !findings.is_told(given.place(&F::RTOL)), &F::ATOL, &F::ATOL,
       "is larger than RTOL: are the absolute and the relative tolerance exchanged?");
  warn(v.AMPL != 0 && !findings.is_told(given.place(&F::RO)) && v.RO > v.RI &&
           (v.RMAX < v.RI || v.RMAX > v.RO),
       &F::RMAX, &F::AMPL, "m is not between the radii RI and RO");
}

void write_block(const F& v, const Count& grid, const Count& grid_K, const Count& geometry,
                 StoreFile& NFISTO) {
  write<store_records::grid>(NFISTO, grid, grid_K);
  write<store_records::geometry>(NFISTO, geometry);
  store_values::FlameValues::write(NFISTO, v);
}

void list(const F& v, const Count& grid, const Count& geometry, const OptionVector& IOPT, Listing& MSGFIL) {
  constexpr std::array<std::string_view, 3> geometries{"slab    ", "cylinder", "sphere  "};
  if (geometry && *geometry >= 0 && *geometry < 3) {
    write<"(1X,'Ri  =',2PF9.3,' cm ',2X,'Ro  =',2PF9.3,' cm ',2X,'Ng  =',I9,'    ',2X,'geometry: ',A8)">(
        MSGFIL, v.RI, v.RO, grid, at(geometries, *geometry + 1));
  }
  const auto word = [](Given::Member value) { return keyword<FlameSection>(value).word; };
  write<"(1X,2(A4,1X,1PE9.2,' s  ',2X),A4,1X,I9,'    ',2X,A4,1X,I9,'    ')">(
      MSGFIL, word(&F::TSTA), v.TSTA, word(&F::TE), v.TE, word(&F::NT), count_of(v.NT), word(&F::NMAX),
      count_of(v.NMAX));
  write<
      "(1X,'step=',1PE9.2,' s  ',2X,'rst =',1PE9.2,' s  ',2X,'aTol=',1PE9.2,'    ',2X,'rTol=',1PE9.2,'    ')">(
      MSGFIL, v.STEP, v.RS, v.ATOL, v.RTOL);
  write<"(1X,'SE  =',1PE9.2,' J,m', 2X,'SW  =',3PF9.3,' mm ', 2X,'ST  =',3PE9.2,' ms ')">(MSGFIL, v.SE, v.SW,
                                                                                          v.ST);
  if (IOPT(PROFILES) == 1) {
    write<
        "(1X,'amp =',1PE9.2,' K  ',2X,'sig =',1PE9.2,' m  ',2X,'rmax=',2PE9.2,' m  ',2X,'alph=',2PE9.2,'    ',2X,"
        "'omeg=',1PE9.2,' m  ')">(MSGFIL, v.AMPL, v.SIGM, v.RMAX, v.ALPH, v.OMEG);
  } else if (IOPT(REDUCED) == 1) {
    write<"(1X,'alph=',1PE9.2,' J,m,K',1X,'alph=',1PE9.2,'m   ')">(MSGFIL, v.ALPH, v.OMEG);
  }
  write<"(1X,3(A4,'=',1PE9.2,6X),A4,'=',1PE9.2)">(MSGFIL, word(&F::WFR), v.WFR, word(&F::WFP), v.WFP,
                                                  word(&F::WFU), v.WFU, word(&F::WFT), v.WFT);
  write<"(1X,3(A4,'=',1PE9.2,6X),A4,'=',1PE9.2)">(MSGFIL, word(&F::ART), v.ART, word(&F::RB), v.RB);
}

}  // namespace

bool INICON(const OptionVector& IOPT, Input& NFICON, Listing& MSGFIL, StoreFile& NFISTO) {
  if (const Heading heading = find_section(section, NFICON); !heading) {
    write<"('1',5X,' No Heading for conditions found: ',6A4)">(MSGFIL, pieces<4, 6>(heading.record));
    report_missing(section, NFICON, MSGFIL.findings);
    return false;
  }
  Given given;
  if (!read_conditions(NFICON, MSGFIL, given)) return false;

  F& values = given.values;
  const Count geometry = code_of(values.GE);
  const Count grid = count_of(values.NG);
  const Count grid_K = count_of(values.NGK);
  report_asterisks(&F::GE, geometry, given, MSGFIL.findings);
  report_asterisks(&F::NG, grid, given, MSGFIL.findings);
  report_asterisks(&F::NGK, grid_K, given, MSGFIL.findings);

  warn_of_contradictions(given, MSGFIL.findings);
  warn_of_idle_values(given, MSGFIL.findings);

  if (values.RS == 0) values.RS = values.STEP;
  write_block(values, grid, grid_K, geometry, NFISTO);
  list(values, grid, geometry, IOPT, MSGFIL);
  return true;
}

}  // namespace varpre
