#include "conditions/surface_conditions.h"

#include <string_view>

#include "files/keywords.h"
#include "files/store_records.h"
#include "textio/channel/statement.h"

namespace varpre {
namespace {

using Given = GivenKeywords<SurfaceSection>;
constexpr const Section& section = sections::named("the surface conditions");

// Takes the keyword records up to END; false after the message.
bool read_conditions(Input& NFICON, Listing& MSGFIL, Given& given) {
  const SectionEnd end = read_keywords(section, NFICON, MSGFIL.findings, given);
  const Text<8>& word = given.last.word;
  if (end == SectionEnd::end_of_file) write<"(6X,'NO END OF SURFACE CONDITIONS')">(MSGFIL);
  if (end == SectionEnd::unknown_word)
    write<"(1X,5X,'WRONG SYMBOL IN SURF. CONDITIONS : ',A8)">(MSGFIL, word);
  if (end == SectionEnd::unreadable_value)
    write<"(1X,5X,'WRONG VALUE IN SURF. CONDITIONS : ',A8)">(MSGFIL, word);
  return end == SectionEnd::closed;
}

// Complains of a property that is not given exactly once.
bool given_once(std::size_t row, const Given& given, Listing& MSGFIL) {
  if (given.times[row] == 1) return true;
  const auto& property = SurfaceSection::keywords[row];
  write<"(1X,5X,A)">(MSGFIL, property.not_once);
  using Severity = Findings::Severity;
  const Severity severity = property.required ? Severity::error : Severity::warning;
  if (given.times[row] == 0 && given.is_lost(property.word, MSGFIL.findings, severity)) return false;
  const std::string what =
      message(trimmed(property.word), given.times[row] == 0 ? " is not given" : " is given more than once",
              " in the surface conditions");
  if (property.required) {
    MSGFIL.findings.error(given.heading, message(what, ": the store file lacks its surface conditions"),
                          "a counter flow needs the catalyst's dimensions CATD, CATB and CATL, once each");
  } else {
    MSGFIL.findings.warning(given.heading, what, message("its value is ", given.values.*property.value));
  }
  return false;
}

// The dimensions of the catalyst are read for a counter flow only.
void warn_of_idle_dimensions(const Given& given, Findings& findings) {
  for (std::size_t row = 0; row < Given::count; ++row) {
    const auto& property = SurfaceSection::keywords[row];
    if (!property.required || given.times[row] == 0) continue;
    findings.warning(given.places[row], message(trimmed(property.word),
                                                " has no effect: it is taken with option 'Impuls -2' only"));
  }
}

}  // namespace

bool GENCOW(bool counter_flow, Input& NFICON, Listing& MSGFIL, StoreFile& NFISTO,
            SurfaceConditions& conditions) {
  if (const Heading found = find_section(section, NFICON); !found) {
    write<"(6X,'WRONG HEADING OF SURFACE CONDITIONS: ',/,6X,A72)">(MSGFIL, Text<72>(found.record));
    report_missing(section, NFICON, MSGFIL.findings);
    return false;
  }
  Given given;
  if (!read_conditions(NFICON, MSGFIL, given)) return false;
  conditions = given.values;

  const auto is_wanted = [&](const auto& property) { return counter_flow || !property.required; };
  for (std::size_t row = 0; row < Given::count; ++row) {
    const auto& property = SurfaceSection::keywords[row];
    if (!is_wanted(property) || given_once(row, given, MSGFIL)) continue;
    if (property.required) return true;  // the solver cannot do without: no block
  }

  if (!counter_flow) warn_of_idle_dimensions(given, MSGFIL.findings);
  for (const auto& property : SurfaceSection::keywords) {
    if (!is_wanted(property)) continue;
    write<store_records::surface_property>(NFISTO, property.word, conditions.*property.value);
  }
  write<"(2X,A18)">(MSGFIL, std::string_view("SURFACE CONDITIONS"));
  for (const auto& property : SurfaceSection::keywords) {
    if (!is_wanted(property)) continue;
    write<"(1X,2X,A4,4x,':',E11.4)">(MSGFIL, property.word, conditions.*property.value);
  }
  return true;
}

}  // namespace varpre
