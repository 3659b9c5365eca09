#include "mechanism/name_findings.h"

#include <algorithm>
#include <string>

#include "files/words.h"
#include "mechanism/foreign_formats.h"
#include "textio/findings/odd_characters.h"
#include "textio/record/number_format.h"

namespace varpre {
namespace {

constexpr std::string_view line_form =
    "a reaction line holds an equation, then A (cm, mol, s), b and E (kJ/mol)";

constexpr std::string_view not_listed = ", but the list of species in INP does not name it";

// Names of one species: mechanisms differ in them. Of a group that has several in the list the first is
// meant.
constexpr std::array<std::array<std::string_view, 8>, 9> synonyms{
    {{"CH2(S)", "1CH2", "SCH2", "CH2S", "CH2*", "CH2(SIN)", "CH2SING", "S-CH2"},
     {"CH2", "3CH2", "TCH2", "CH2(T)", "T-CH2", "CH2T"},
     {"HCO", "CHO"},
     {"CH2O", "HCHO", "H2CO"},
     {"HCCO", "CHCO", "C2HO"},
     {"CH2CO", "H2CCO", "KETENE"},
     {"C2H2", "HCCH"},
     {"CH2OH", "H2COH"},
     {"CH3O", "H3CO"}}};

bool equal(std::string_view a, std::string_view b) {
  return a.size() == b.size() && EQUSYM(static_cast<int>(a.size()), a, b);
}

// The species of the list that goes by another name; empty when there is none.
std::string_view synonym(std::string_view name, const ReactionNames& names) {
  for (const auto& group : synonyms) {
    if (std::none_of(group.begin(), group.end(), [&](std::string_view word) { return equal(word, name); }))
      continue;
    for (const std::string_view word : group) {
      if (!word.empty() && !equal(word, name) && names.find(SpeciesName(word)) > 0) return word;
    }
  }
  return {};
}

// The line of an entry in a database, 0 when it has none.
int line_of_entry(std::string_view name, const Input* database) {
  int line = 0;
  if (database == nullptr) return line;
  database->for_each_record([&](int record, std::string_view text) {
    constexpr std::size_t name_width = 16;
    std::string_view word = trimmed(text.substr(0, name_width));
    word = word.substr(0, word.find(' '));
    if (line == 0 && equal(word, name)) line = database->origin(record).line;
  });
  return line;
}

std::string help_for(const SpeciesName& name, const ReactionNames& names) {
  const std::string_view text = trimmed(name.view());
  if (const std::string_view other = synonym(text, names); !other.empty()) {
    return message("the list of species calls it ", other);
  }
  if (const int line = line_of_entry(text, names.database); line > 0) {
    return message("it has an entry in ", names.database->origin(0).file, " (line ", line, ")", not_listed);
  }
  return Nearest(text).offer_all(names.species_and_partners()).help();
}

// A species of the list that has no entry in the database, and so is probably misspelt there; nothing when
// none is like the name.
Place misspelt_in_list(const SpeciesName& name, const ReactionNames& names) {
  for (const auto& [listed, place] : names.without_entry) {
    const std::string plain = in_plain_characters(trimmed(listed.view()));
    const std::string_view word = trimmed(name.view());
    const bool run_together = word.size() > 1 && (plain.starts_with(word) || plain.ends_with(word));
    const bool part = (run_together || plain != trimmed(listed.view())) && plain.find(word) != plain.npos;
    if (part || !Nearest(listed.view()).offer(name.view()).help().empty()) return place;
  }
  return {};
}

// Whether a name is counted already with the finding that explains it: it has an entry in the database, or is
// another name of a species listed, and a single name of the list has no entry and may stand in its place; or
// other names lack in the list as well, of which a line may be lost.
bool follows_from_the_list(std::string_view name, const std::string& what, const ReactionNames& names,
                           Findings& findings) {
  constexpr auto error = Findings::Severity::error;
  const bool other_name = !synonym(name, names).empty();
  if (!other_name && line_of_entry(name, names.database) == 0) return false;
  if (names.without_entry.size() == 1) {
    const Place& listed = names.without_entry.front().second;
    if (findings.follows(listed, "reaction", error)) {
      findings.tell_with(listed, what);
      return true;
    }
  }
  const Place first = other_name ? Place{} : findings.place_of(list_lacks_names);
  if (!findings.follows(first, "further name", error)) return false;
  findings.extend_help(first, message(", nor ", name));
  findings.tell_with(first, what);
  return true;
}

// The coefficient before a name: "2OH", "2*OH"; or alone, a blank behind it.
bool report_coefficient(std::string_view text, const ReactionNames& names, const Place& line,
                        Findings& findings) {
  if (text.front() < '2' || text.front() > '9') return false;
  const std::size_t digits = std::min(text.find_first_not_of("0123456789."), text.size());
  const std::string_view rest = text.substr(std::min(text.find_first_not_of('*', digits), text.size()));
  if (!rest.empty() && names.find(SpeciesName(rest)) == 0) return false;
  const Place place = locate(line, text);
  findings.error(
      place, message("'", text, "' has a coefficient: a name stands as often as it counts"),
      rest.empty() ? std::string("write H+H for 2 H") : message("write ", rest, "+", rest, " for 2", rest));
  return true;
}

// The blank-separated word before so many others at the end of a text.
std::string_view word_before_numbers(std::string_view text, int numbers) {
  for (text = trimmed(text);; text = trimmed(text)) {
    const std::size_t blank = text.find_last_of(" \t");
    const std::string_view word = text.substr(blank == text.npos ? 0 : blank + 1);
    if (numbers-- == 0) return word;
    text.remove_suffix(word.size());
  }
}

bool is_meant_as_number(std::string_view word) {
  return !word.empty() && word.find_first_of("=>") == word.npos &&
         (is_digit(word.front()) || word.front() == '.' || word.front() == ',' || word.front() == '-' ||
          word.front() == '+');
}

int count_numbers_at_end(std::string_view text) {
  int count = 0;
  for (text = trimmed(text); !text.empty(); text = trimmed(text)) {
    const std::size_t blank = text.find_last_of(" \t");
    const std::string_view token = text.substr(blank == text.npos ? 0 : blank + 1);
    if (!read_free_real(token)) break;
    ++count;
    text.remove_suffix(token.size());
  }
  return count;
}

}  // namespace

bool report_stray_record(const Place& line, Findings& findings) {
  if (line.unit == nullptr) return false;
  const std::string_view text = line.unit->origin(line.record).text;
  if (!words::is_rate_record(text)) return false;
  Place place = line;
  place.width = static_cast<int>(trimmed(text).size());
  findings.error(place,
                 message("a record that begins with \"", text.substr(0, 1),
                         "\" stands directly behind the reaction it belongs to"),
                 "comment lines begin with ****");
  return true;
}

bool report_count_of_numbers(const Place& line, Findings& findings) {
  if (line.unit == nullptr) return false;
  std::string_view text = line.unit->origin(line.record).text;
  text = trimmed(text.substr(0, text.find('!')));
  const int count = count_numbers_at_end(text);
  const bool equation = text.find_first_of("=>") != text.npos;
  constexpr int due = 3;
  if (count == due || !equation) return false;
  if (count < due && is_meant_as_number(word_before_numbers(text, count))) return false;
  Place place = line;
  place.width = static_cast<int>(text.size());
  findings.error(place,
                 message("the reaction line ends in ", count == 0 ? "no number" : counted(count, "number"),
                         ", where A, b and E are due"),
                 count > due ? "is there a blank inside a number, or a value too many?" : line_form);
  return true;
}

void report_unknown(const SpeciesName& name, const ReactionNames& names, const Place& line,
                    Findings& findings) {
  const std::string_view text = trimmed(name.view());
  if (report_foreign_form(line, findings) || report_stray_record(line, findings) ||
      report_count_of_numbers(line, findings) || report_coefficient(text, names, line, findings))
    return;
  const std::string what = message("unknown species '", text, "'");
  if (const Place listed = misspelt_in_list(name, names);
      findings.follows(listed, "reaction", Findings::Severity::error)) {
    findings.tell_with(listed, what);
    return;
  }
  if (findings.follows(findings.place_of(what), "further reaction", Findings::Severity::error)) return;
  if (text.ends_with('-') && names.find(SpeciesName(text.substr(0, text.size() - 1))) > 0) {
    findings.error(locate(line, text), what, "an arrow \"->\" is written \">\"");
    return;
  }
  if (follows_from_the_list(text, what, names, findings)) return;
  const Place place = locate(line, text);
  const std::string help = help_for(name, names);
  findings.error(place, what, help);
  if (help.ends_with(not_listed)) findings.tell_with(place, list_lacks_names);
}

}  // namespace varpre
