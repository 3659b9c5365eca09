#include "conditions/flame_conditions.h"

#include <algorithm>
#include <optional>

#include "conditions/keyword_records.h"
#include "files/store_records.h"
#include "textio/record/numbered.h"

namespace varpre {
namespace {

// Places of the conditions, in the order of their keywords.
enum Condition : std::size_t {
  GE,
  NG,
  RI,
  RO,
  TSTA,
  TE,
  NT,
  NMAX,
  SE,
  SW,
  ST,
  SOGR,
  STEP,
  ATOL,
  RTOL,
  RS,
  AMPL,
  SIGM,
  RMAX,
  ALPH,
  TSTO,
  MSTO,
  ART,
  RB,
  WFR,
  WFP,
  WFU,
  WFT,
  VPLU,
  NGK,
  OMEG,
  condition_count
};

struct ConditionKeyword {
  std::string_view word;
  double standard = 0;
  bool required = false;
  std::string_view unit = {};
  Usual usual = {};
};

constexpr std::array<ConditionKeyword, condition_count> keywords{{
    {"GE  ", 0, true},
    {"NG  ", 0, true},
    {"RI  ", 0, true, "m", {0, 1000}},
    {"RO  ", 0, true, "m", {0, 1000}},
    {"TSTA", 0, false, "s"},
    {"TE  ", 0, true, "s"},
    {"NT  ", 0, true, {}, {1}},
    {"Nmax", 1.0E+30, false, {}, {1}},
    {"SE  ", 0, false, "J"},
    {"SW  ", 0, false, "m", {0, 1000}},
    {"ST  ", 0, false, "s", {0}},
    {"SOGR"},
    {"STEP", 0, false, "s", {0}},
    {"ATOL", 1.0E-10, false, {}, {1.0E-30, 1}},
    {"RTOL", 1.0E-3, false, {}, {1.0E-30, 1}},
    {"RS  ", 0, false, "s", {0}},
    {"AMPL", 0, false, "K"},
    {"SIGM", 1.0, false, "m"},
    {"RMAX", 0, false, "m"},
    {"ALPH"},
    {"TSTO", 1.0E+30},
    {"MSTO", 1.0E+30},
    {"ART ", 3.0},
    {"RB  ", 1.0E+30},
    {"WFr "},
    {"WFp "},
    {"WFu "},
    {"WFT "},
    {"VPLU"},
    {"NGK "},
    {"OMEG", 0, false, "m"},
}};

using Values = std::array<double, condition_count>;  // VCOND
using Places = std::array<Place, condition_count>;   // where each is given; no unit: not given

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

bool report(std::string_view keyword, Listing& MSGFIL) {
  write<"(/,5X,'ERROR IN INPUT OF CONDITIONS : ',A4)">(MSGFIL, keyword);
  return false;
}

// Takes one record; false after the message.
bool take_condition(const KeywordRecord<4>& record, const Place& heading, const Input& NFICON,
                    Listing& MSGFIL, Values& VCOND, Places& lines) {
  const std::string_view word = record.word.view();
  const auto found = std::find_if(keywords.begin(), keywords.end(),
                                  [&](const ConditionKeyword& k) { return k.word == word; });
  if (found == keywords.end()) {
    Nearest nearest(word);
    for (const ConditionKeyword& k : keywords) nearest.offer(k.word);
    report_unknown_keyword(sections::named("the flame conditions"), heading, word, "keyword", nearest,
                           {6, 10}, NFICON, MSGFIL.findings);
    return report(word, MSGFIL);
  }
  if (!value_is_readable(record.result, word, record.value, {6, 10, found->unit}, NFICON, MSGFIL.findings)) {
    return report(word, MSGFIL);
  }
  Place& place = lines.begin()[found - keywords.begin()];
  warn_of_second(trimmed(word), place, here(NFICON, 6, 10), MSGFIL.findings);
  place = here(NFICON, 6, 10);
  VCOND.begin()[found - keywords.begin()] = record.value;
  warn_of_unusual(trimmed(word), record.value, found->usual, place, MSGFIL.findings);
  return true;
}

// Takes the keyword records up to END and checks that the required ones are there; false after the message.
bool read_conditions(Input& NFICON, Listing& MSGFIL, Values& VCOND, Places& lines) {
  const Place heading = heading_place(sections::named("the flame conditions"), NFICON);
  const auto ends = [](const Text<4>& word) { return word.view() == "END "; };
  const auto take = [&](const KeywordRecord<4>& record) {
    return take_condition(record, heading, NFICON, MSGFIL, VCOND, lines);
  };
  const SectionEnd end = read_keyword_records<"(A4,1X,E10.3)", 4>(NFICON, ends, take);
  if (end == SectionEnd::end_of_file) {
    write<"(/,5X,'NO END OF CONDITIONS')">(MSGFIL);
    report_not_closed(sections::named("the flame conditions"), heading, MSGFIL.findings);
  }
  if (end != SectionEnd::closed) return false;
  for (std::size_t i = 0; i < keywords.size(); ++i) {
    if (!keywords[i].required || lines[i].unit != nullptr) continue;
    write<"(/,5X,'DATA ON FLAME CONDITIONS INCOMPLETE')">(MSGFIL);
    MSGFIL.findings.error(heading, message("the flame conditions lack ", trimmed(keywords[i].word)),
                          "GE, NG, RI, RO, TE and NT must be given");
    return false;
  }
  return true;
}

using Count = std::optional<int>;

// The store file has five columns for a count.
bool fits(const Count& count) {
  return count && *count >= -9999 && *count <= 99999;
}

void report_asterisks(Condition c, const Count& count, const Values& VCOND, const Places& lines,
                      Findings& findings) {
  if (fits(count)) return;
  findings.error(lines[c], message(trimmed(keywords[c].word), " of ", VCOND[c],
                                   " does not fit the five columns of the store file, which has asterisks"));
}

// Warns of values that the solver can hardly do anything with.
void warn_of_contradictions(const Values& v, const Places& lines, Findings& findings) {
  if (const Count geometry = code_of(v[GE]); fits(geometry) && (*geometry < 0 || *geometry > 2)) {
    findings.warning(lines[GE], message("the geometry ", *geometry, " is none that the listing knows"),
                     "GE is 0. for a slab, 1. for a cylinder, 2. for a sphere");
  }
  if (const Count grid = count_of(v[NG]); grid && *grid < 3) {
    findings.warning(lines[NG], message("a grid of ", *grid, " points has no point inside"),
                     "NG is the number of grid points, with a decimal point: 101.");
  }
  if (v[RO] <= v[RI]) {
    findings.warning(
        lines[RO], message("the outer radius of ", v[RO], " m is not beyond the inner one of ", v[RI], " m"));
  }
  if (v[TE] <= v[TSTA]) {
    findings.warning(
        lines[TE], message("the end time of ", v[TE], " s is not behind the start time of ", v[TSTA], " s"));
  }
}

void write_block(const Values& v, const Count& grid, const Count& grid_K, const Count& geometry,
                 StoreFile& NFISTO) {
  constexpr double unused = 0;
  write<store_records::grid>(NFISTO, grid, grid_K);
  write<store_records::geometry>(NFISTO, geometry);
  write<store_records::radii>(NFISTO, v[RI], v[RO], unused, v[VPLU]);
  write<store_records::times>(NFISTO, v[TSTA], v[TE], v[NT], v[NMAX]);
  write<store_records::energy_source>(NFISTO, v[SE], v[SW], v[ST], v[SOGR]);
  write<store_records::steps>(NFISTO, v[STEP], v[ATOL], v[RTOL], v[RS]);
  write<store_records::profile>(NFISTO, v[AMPL], v[SIGM], v[RMAX], v[ALPH], v[OMEG]);
  write<store_records::stops>(NFISTO, v[TSTO], v[MSTO], v[ART], v[RB]);
  write<store_records::weights>(NFISTO, v[WFR], v[WFP], v[WFU], v[WFT]);
}

void list(const Values& v, const Count& grid, const Count& geometry, const OptionVector& IOPT,
          Listing& MSGFIL) {
  constexpr std::array<std::string_view, 3> geometries{"slab    ", "cylinder", "sphere  "};
  if (geometry && *geometry >= 0 && *geometry < 3) {
    write<"(1X,'Ri  =',2PF9.3,' cm ',2X,'Ro  =',2PF9.3,' cm ',2X,'Ng  =',I9,'    ',2X,'geometry: ',A8)">(
        MSGFIL, v[RI], v[RO], grid, at(geometries, *geometry + 1));
  }
  const auto word = [](Condition c) { return keywords[c].word; };
  write<"(1X,2(A4,1X,1PE9.2,' s  ',2X),A4,1X,I9,'    ',2X,A4,1X,I9,'    ')">(
      MSGFIL, word(TSTA), v[TSTA], word(TE), v[TE], word(NT), count_of(v[NT]), word(NMAX), count_of(v[NMAX]));
  write<
      "(1X,'step=',1PE9.2,' s  ',2X,'rst =',1PE9.2,' s  ',2X,'aTol=',1PE9.2,'    ',2X,'rTol=',1PE9.2,'    ')">(
      MSGFIL, v[STEP], v[RS], v[ATOL], v[RTOL]);
  write<"(1X,'SE  =',1PE9.2,' J,m', 2X,'SW  =',3PF9.3,' mm ', 2X,'ST  =',3PE9.2,' ms ')">(MSGFIL, v[SE],
                                                                                          v[SW], v[ST]);
  if (IOPT(PROFILES) == 1) {
    write<
        "(1X,'amp =',1PE9.2,' K  ',2X,'sig =',1PE9.2,' m  ',2X,'rmax=',2PE9.2,' m  ',2X,'alph=',2PE9.2,'    ',2X,"
        "'omeg=',1PE9.2,' m  ')">(MSGFIL, v[AMPL], v[SIGM], v[RMAX], v[ALPH], v[OMEG]);
  } else if (IOPT(REDUCED) == 1) {
    write<"(1X,'alph=',1PE9.2,' J,m,K',1X,'alph=',1PE9.2,'m   ')">(MSGFIL, v[ALPH], v[OMEG]);
  }
  write<"(1X,3(A4,'=',1PE9.2,6X),A4,'=',1PE9.2)">(MSGFIL, word(WFR), v[WFR], word(WFP), v[WFP], word(WFU),
                                                  v[WFU], word(WFT), v[WFT]);
  write<"(1X,3(A4,'=',1PE9.2,6X),A4,'=',1PE9.2)">(MSGFIL, word(ART), v[ART], word(RB), v[RB]);
}

}  // namespace

bool INICON(const OptionVector& IOPT, Input& NFICON, Listing& MSGFIL, StoreFile& NFISTO) {
  Values VCOND{};
  Places lines{};
  std::transform(keywords.begin(), keywords.end(), VCOND.begin(),
                 [](const ConditionKeyword& k) { return k.standard; });
  if (const Heading heading = find_section(sections::named("the flame conditions"), NFICON); !heading) {
    write<"('1',5X,' No Heading for conditions found: ',6A4)">(MSGFIL, pieces<4, 6>(heading.record));
    report_missing(sections::named("the flame conditions"), NFICON, MSGFIL.findings);
    return false;
  }
  if (!read_conditions(NFICON, MSGFIL, VCOND, lines)) return false;

  const Count geometry = code_of(VCOND[GE]);
  const Count grid = count_of(VCOND[NG]);
  const Count grid_K = count_of(VCOND[NGK]);
  report_asterisks(GE, geometry, VCOND, lines, MSGFIL.findings);
  report_asterisks(NG, grid, VCOND, lines, MSGFIL.findings);
  report_asterisks(NGK, grid_K, VCOND, lines, MSGFIL.findings);

  warn_of_contradictions(VCOND, lines, MSGFIL.findings);

  if (VCOND[RS] == 0) VCOND[RS] = VCOND[STEP];
  write_block(VCOND, grid, grid_K, geometry, NFISTO);
  list(VCOND, grid, geometry, IOPT, MSGFIL);
  return true;
}

bool is_flame_keyword(std::string_view word) {
  return std::any_of(keywords.begin(), keywords.end(),
                     [&](const auto& known) { return trimmed(known.word) == word; });
}

}  // namespace varpre
