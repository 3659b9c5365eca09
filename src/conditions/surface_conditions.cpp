#include "conditions/surface_conditions.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

#include "conditions/keyword_records.h"
#include "files/store_records.h"

namespace varpre {
namespace {

struct Property {
  std::string_view word;
  double standard;
  std::string_view complaint;  // when it is not given exactly once
  std::string_view consequence;
  std::string_view unit = {};
  Usual usual = {};
};

// In the order of the store file; the last three are the catalyst's dimensions, needed in a counter flow
// only.
constexpr std::array<Property, 15> properties{{
    {"TW  ", 0, "NO OR MORE THAN ONE WALL TEMPERATURE (TW)", " DEFINED", "K", {1, 5000}},
    {"SITE", 0, "NO OR MORE THAN ONE SITE DENSITY (SITE)", " DEFINED", "mol/m2", {1.0E-7, 1.0E-3}},
    {"EPSW", 0, "NO OR MORE THAN ONE EMISIVITY    (EPSW )", " DEFINED", {}, {0, 1}},
    {"EPSA", 0, "NO OR MORE THAN ONE EMISS. COEFF. (EPSA)", " DEFINED"},
    {"EPSB", 0, "NO OR MORE THAN ONE EMISS. COEFF. (EPSB)", " DEFINED"},
    {"TRAD", 0, "NO OR MORE THAN ONE TRAD         (TRAD)", " DEFINED", "K", {0, 5000}},
    {"POW ", 0, "NO OR MORE THAN ONE POWER        (POW)", " DEFINED"},
    {"RHOZ", 0, "NO OR MORE THAN ONE SPEC. RESIST. (RHOZ)", " DEFINED"},
    {"RHOA", 0, "NO OR MORE THAN ONE SPEC. RESIST. (RHOA)", " DEFINED"},
    {"RHOB", 0, "NO OR MORE THAN ONE SPEC. RESIST. (RHOB)", " DEFINED"},
    {"CWIR", 1.0E+30, "NO OR MORE THAN ONE SPEC. HEAT  . (CWIR)", " DEFINED"},
    {"STFL", 0, "NO OR MORE THAN ONE Stefan flux . (STFL)", "INITIALISED"},
    {"CATD", 0, "NO OR MORE THAN ONE CAT. THICK. (CATD)", " DEFINED, NEEDED FOR COUNTER FLOW", "m", {0, 100}},
    {"CATB", 0, "NO OR MORE THAN ONE CAT. WIDTH. (CATB)", " DEFINED. NEEDED FOR COUNTER FLOW", "m", {0, 100}},
    {"CATL",
     0,
     "NO OR MORE THAN ONE CAT. LENGTH. (CATL)",
     " DEFINED. NEEDED FOR COUNTER FLOW",
     "m",
     {0, 100}},
}};
constexpr std::size_t wall_properties = 12;

struct Given {
  double value;
  int count = 0;
};
using Values = std::array<Given, properties.size()>;

// Takes one record; false after the message.
bool take_property(const KeywordRecord<8>& record, const Place& heading, const Input& NFICON, Listing& MSGFIL,
                   Values& values) {
  const auto& [word, value, result] = record;
  const auto found = std::find_if(properties.begin(), properties.end(),
                                  [&](const Property& p) { return p.word == record.word.first(4); });
  if (found == properties.end()) {
    write<"(1X,5X,'WRONG SYMBOL IN SURF. CONDITIONS : ',A8)">(MSGFIL, word);
    Nearest nearest(word.view());
    for (const Property& p : properties) nearest.offer(p.word);
    report_unknown_keyword(sections::named("the surface conditions"), heading, word.view(), "keyword",
                           nearest, {10, 11}, NFICON, MSGFIL.findings);
    return false;
  }
  if (!result) write<"(1X,5X,'WRONG VALUE IN SURF. CONDITIONS : ',A8)">(MSGFIL, word);
  if (!value_is_readable(result, word.view(), value, {10, 11, found->unit}, NFICON, MSGFIL.findings))
    return false;
  Given& given = values.begin()[found - properties.begin()];
  given.value = value;
  ++given.count;
  warn_of_unusual(trimmed(found->word), value, found->usual, here(NFICON, 10, 11), MSGFIL.findings);
  return true;
}

// Takes the keyword records up to END; false after the message.
bool read_values(Input& NFICON, const Place& heading, Listing& MSGFIL, Values& values) {
  const auto ends = [](const Text<8>& word) { return word.first(4) == "END "; };
  const auto take = [&](const KeywordRecord<8>& record) {
    return take_property(record, heading, NFICON, MSGFIL, values);
  };
  const SectionEnd end = read_keyword_records<"(A8,1X,E11.4)", 8>(NFICON, ends, take);
  if (end == SectionEnd::end_of_file) {
    write<"(6X,'NO END OF SURFACE CONDITIONS')">(MSGFIL);
    report_not_closed(sections::named("the surface conditions"), heading, MSGFIL.findings);
  }
  return end == SectionEnd::closed;
}

// Complains of a property that is not given exactly once.
bool given_once(std::size_t i, const Values& values, const Place& heading, Listing& MSGFIL) {
  if (values[i].count == 1) return true;
  write<"(1X,5X,A,A)">(MSGFIL, properties[i].complaint, properties[i].consequence);
  const std::string what = message(trimmed(properties[i].word),
                                   values[i].count == 0 ? " is not given" : " is given more than once",
                                   " in the surface conditions");
  if (i < wall_properties) {
    MSGFIL.findings.warning(heading, what, message("its value is ", values[i].value));
  } else {
    MSGFIL.findings.error(heading, message(what, ": the store file lacks its surface conditions"),
                          "a counter flow needs the catalyst's dimensions CATD, CATB and CATL, once each");
  }
  return false;
}

}  // namespace

bool GENCOW(bool counter_flow, Input& NFICON, Listing& MSGFIL, StoreFile& NFISTO, WallConditions& wall) {
  if (const Heading found = find_section(sections::named("the surface conditions"), NFICON); !found) {
    write<"(6X,'WRONG HEADING OF SURFACE CONDITIONS: ',/,6X,A72)">(MSGFIL, Text<72>(found.record));
    report_missing(sections::named("the surface conditions"), NFICON, MSGFIL.findings);
    return false;
  }
  Values values{};
  for (std::size_t i = 0; i < values.size(); ++i) values[i].value = properties[i].standard;
  const Place heading = heading_place(sections::named("the surface conditions"), NFICON);
  if (!read_values(NFICON, heading, MSGFIL, values)) return false;
  wall = {.TW = values[0].value, .SITE = values[1].value};

  for (std::size_t i = 0; i < wall_properties; ++i) given_once(i, values, heading, MSGFIL);
  const std::size_t count = counter_flow ? values.size() : wall_properties;
  for (std::size_t i = wall_properties; i < count; ++i) {
    if (!given_once(i, values, heading, MSGFIL)) return true;  // the solver cannot do without: no block
  }

  for (std::size_t i = 0; i < count; ++i) {
    write<store_records::surface_property>(NFISTO, properties[i].word, values[i].value);
  }
  write<"(2X,A18)">(MSGFIL, std::string_view("SURFACE CONDITIONS"));
  for (std::size_t i = 0; i < count; ++i) {
    write<"(1X,2X,A4,4x,':',E11.4)">(MSGFIL, properties[i].word, values[i].value);
  }
  return true;
}

bool is_surface_keyword(std::string_view word) {
  return std::any_of(properties.begin(), properties.end(),
                     [&](const auto& known) { return trimmed(known.word) == word; });
}

}  // namespace varpre
