#include "files/keyword_section.h"

#include <algorithm>
#include <array>
#include <string>

#include "textio/findings/odd_characters.h"
#include "textio/findings/record_findings.h"
#include "textio/names/words.h"
#include "textio/record/number_format.h"

namespace varpre {
namespace {

// Units that people write behind values, without marks of powers.
constexpr auto known_units = std::to_array<std::string_view>(
    {"bar",  "Pa",    "kPa",    "hPa",   "MPa",    "mbar",    "atm",     "Torr",  "torr",  "mmHg",
     "psi",  "K",     "C",      "degC",  "°C",     "F",       "degF",    "°F",    "R",     "m",
     "mm",   "cm",    "um",     "µm",    "nm",     "km",      "ft",      "s",     "ms",    "us",
     "µs",   "min",   "h",      "J",     "mJ",     "kJ",      "J/kg",    "kJ/kg", "MJ/kg", "J/g",
     "kJ/g", "J/mol", "kJ/mol", "cal/g", "mol/m2", "mol/cm2", "kmol/m2", "mol",   "mass",  "kg"});

// A unit in its plain form: without brackets around it and marks of powers.
std::string plain_unit(std::string_view word) {
  constexpr std::string_view square = "²";
  constexpr std::string_view marks = "[](),;*^";
  std::string plain;
  while (!word.empty()) {
    const bool squared = word.starts_with(square);
    if (squared) plain += '2';
    if (!squared && marks.find(word.front()) == std::string_view::npos) plain += word.front();
    word.remove_prefix(squared ? square.size() : 1);
  }
  return plain;
}

// The unit that begins with a word: "mol m-2" is mol/m2.
std::string unit_behind(const Word& word, const Input& NFICON) {
  std::string unit = plain_unit(word.text);
  const std::string_view line = NFICON.origin(NFICON.record_number()).text;
  const std::string_view next = next_word(line, word, " ").text;
  const std::size_t minus = next.find('-');
  if (minus == next.npos || minus == 0 || next.size() != minus + 2) return unit;
  unit += message("/", next.substr(0, minus));
  return next.back() == '1' ? unit : unit + next.back();
}

bool is_unit(std::string_view word) {
  return std::find(known_units.begin(), known_units.end(), word) != known_units.end();
}

void warn_of_unit(std::string_view keyword, double value, std::string_view meant, const Word& behind,
                  const Input& NFICON, Findings& findings) {
  const std::string unit = unit_behind(behind, NFICON);
  if (meant.empty() || !is_unit(unit) || unit == meant) return;
  findings.warning(here(NFICON, behind.column, behind.width()),
                   message(keyword, " is taken as ", value, " ", meant, ": '", behind.text,
                           "' behind it names another unit"),
                   "what stands behind a value is not read");
}

void warn_of_no_value(std::string_view keyword, const FieldColumns& field, const Word& behind,
                      const Input& NFICON, Findings& findings) {
  findings.warning(
      behind.text.empty() ? here(NFICON, field.first, field.width)
                          : here(NFICON, behind.column, behind.width()),
      message(keyword, " has no value in columns ", field.first, "-", field.last(), " (read as 0)",
              behind.text.empty()
                  ? std::string()
                  : message("; '", behind.text, "' stands in columns ", behind.column, "-", behind.last())));
}

// The word that begins in the columns of the value and ends behind them; none where they end with a blank.
Word word_across_end(std::string_view line, const FieldColumns& field) {
  const auto end = static_cast<std::size_t>(field.last());
  if (line.size() <= end || line[end] == ' ' || line[end - 1] == ' ') return {};
  const std::size_t blank = line.find_last_of(' ', end);
  const std::size_t start =
      std::max(blank == std::string_view::npos ? 0 : blank + 1, static_cast<std::size_t>(field.first) - 1);
  return next_word(line, static_cast<int>(start) + 1, " ");
}

// Reports a value of which only the columns up to the last one are read.
void report_value_across_end(std::string_view keyword, bool readable, double value, const FieldColumns& field,
                             const Word& across, const Input& NFICON, Findings& findings) {
  const Place place = here(NFICON, across.column, across.width());
  const std::string columns = message("its value stands in columns ", field.first, "-", field.last());
  if (readable) {
    findings.warning(
        place,
        message(keyword, " is read as ", value, ": '", across.text, "' reaches beyond column ", field.last()),
        columns);
  } else {
    findings.error(place,
                   message("cannot read the value of ", keyword, ": '", across.text,
                           "' reaches beyond column ", field.last()),
                   columns);
  }
}

// Warns of blanks inside a number, which are read as if they were not there.
void warn_of_inner_blanks(std::string_view keyword, double value, const FieldColumns& field,
                          std::string_view line, const Input& NFICON, Findings& findings) {
  std::string_view text = trimmed(columns(line, field.first, field.width));
  text.remove_prefix(text.find_first_not_of(' '));
  if (text.find(' ') == std::string_view::npos) return;
  findings.warning(
      here(NFICON, field.first, field.width),
      message(keyword, " is read as ", value, ": blanks inside the number '", text, "' do not count"));
}

}  // namespace

void warn_of_unusual(std::string_view keyword, double value, const Usual& usual, std::string_view unit,
                     const Place& place, Findings& findings) {
  if ((value >= usual.least && value <= usual.most) || findings.is_told(place)) return;
  const std::string in_unit = unit.empty() ? "" : message(" ", unit);
  findings.warning(place, message(keyword, " of ", value, in_unit, " can hardly be meant"),
                   usual.most < 1.0E+300 ? message(usual.least, " to ", usual.most, in_unit, " is usual")
                                         : message("it is at least ", usual.least, in_unit));
}

void warn_of_second(std::string_view keyword, const Place& earlier, const Place& later, Findings& findings) {
  if (!earlier) return;
  findings.warning(later, message(keyword, " stands already in line ",
                                  earlier.unit->origin(earlier.record).line, ": this value counts"));
}

bool value_is_readable(const ReadResult& result, std::string_view word, double value,
                       const FieldColumns& field, std::string_view unit, const Input& NFICON,
                       Findings& findings) {
  std::string_view keyword = trimmed(word);
  keyword = keyword.substr(0, keyword.find(' '));
  const auto name = [&](int = 0) { return message("the value of ", keyword); };
  std::string_view line = NFICON.origin(NFICON.record_number()).text;
  line = line.substr(0, line.find('!'));
  const Word across = word_across_end(line, field);
  if (!across.text.empty()) {
    report_value_across_end(keyword, bool(result), value, field, across, NFICON, findings);
  } else if (!result) {
    report_unreadable(findings, NFICON, result, name());
  }
  if (!result) return false;

  const Word behind = next_word(line, std::max(field.last() + 1, across.last() + 1), " ");
  const auto before = static_cast<std::size_t>(field.first) - 1;
  if (line.size() <= before || trimmed(line.substr(before, static_cast<std::size_t>(field.width))).empty()) {
    warn_of_no_value(keyword, field, behind, NFICON, findings);
    return true;
  }
  if (across.text.empty()) warn_of_columns(findings, NFICON, result, name);
  if (!findings.is_told(here(NFICON))) warn_of_inner_blanks(keyword, value, field, line, NFICON, findings);
  if (!behind.text.empty()) warn_of_unit(keyword, value, unit, behind, NFICON, findings);
  return true;
}

LostValue warn_of_second_pair(const FieldColumns& field, const std::function<bool(std::string_view)>& is_word,
                              const Input& NFICON, Findings& findings) {
  std::string_view line = NFICON.origin(NFICON.record_number()).text;
  line = line.substr(0, line.find('!'));
  if (line.find_first_of("0123456789", static_cast<std::size_t>(field.last())) == line.npos) return {};
  for (Word word = next_word(line, field.last() + 1, " "); !word.text.empty();) {
    const Word next = next_word(line, word, " ");
    if (read_free_real(next.text) && is_word(word.text)) {
      const Place place =
          here(NFICON, word.column, next.column + static_cast<int>(next.text.size()) - word.column);
      findings.warning(place,
                       message("'", word.text, " ", next.text, "' is not read: it stands behind a value"),
                       "each record has one value: give it a line of its own");
      return {Text<8>(word.text), place};
    }
    word = next;
  }
  return {};
}

LostValue warn_of_pair_behind_end(const std::function<bool(std::string_view)>& is_word, Input& NFICON,
                                  Findings& findings) {
  std::string_view text;
  if (!NFICON.peek(text)) return {};
  const Word word = next_word(text, 1, " ");
  if (!is_word(word.text) || !read_free_real(next_word(text, word, " ").text)) return {};
  text = trimmed(text.substr(0, text.find('!')));
  const Place place{&NFICON, NFICON.record_number() + 1, 1, static_cast<int>(text.size())};
  findings.warning(
      place, message("'", text, "' is not read: it stands behind END"),
      message("END in line ", NFICON.origin(NFICON.record_number()).line, " closes the section"));
  return {{}, place};
}

bool opens_a_section(const Section& section, const Input& NFICON) {
  const std::string_view text = NFICON.origin(NFICON.record_number()).text;
  const Section* const opened = section_of(text, section.files);
  return (opened != nullptr && *opened != section) || is_meant_as_end(text);
}

void report_unknown_keyword(const Section& section, const Place& heading, std::string_view word,
                            const KeywordColumns& columns, const Nearest& nearest, const Input& NFICON,
                            Findings& findings) {
  if (report_heading_inside(section, heading, NFICON, findings)) return;
  const auto& [field, value, kinds] = columns;
  const std::string layout = message("columns 1-", field.last(), " hold a ", kinds, ", columns ", value.first,
                                     "-", value.last(), " its value");
  const std::string_view line = NFICON.origin(NFICON.record_number()).text;
  const std::string odd = odd_character_help(line.substr(0, static_cast<std::size_t>(field.width)), 1);
  word = trimmed(word);
  if (findings.follows(findings.place_of(message("unknown species '", word, "'")), "amount",
                       Findings::Severity::error))
    return;
  constexpr const Section& surface = sections::named("the surface species list");
  if (word.ends_with(')') &&
      findings.follows(findings.place_of(missing_heading(surface)), "amount", Findings::Severity::error))
    return;
  const bool comment = word.starts_with('#') || word.starts_with('!') || word.starts_with('%') ||
                       word.starts_with("//") || word.starts_with("**") || word.starts_with("--");
  const std::string meant =
      comment                 ? std::string("a comment line begins with **** or ----")
      : !odd.empty()          ? odd
      : is_meant_as_end(line) ? std::string(same_word(next_word(line).text, "END") ? "END begins in column 1"
                                                                                   : "did you mean 'END'?")
                              : nearest.help();
  const bool in_two = word.find(' ') != std::string_view::npos;  // a value that begins too early
  findings.error(here(NFICON, 1, field.width),
                 word.empty() ? message("blank line in ", section.content, ", which END would close")
                              : message("unknown ", kinds, " '", word, "' in ", section.content),
                 meant.empty() || (in_two && !comment) ? layout : meant);
}

}  // namespace varpre
