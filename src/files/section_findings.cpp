#include "files/section_findings.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "textio/channel/input.h"

namespace varpre {
namespace {

// Whether a record begins with the word of a section, in any letter case: a heading, or meant to be one.
bool begins_like(const Section& section, std::string_view record) {
  const bool excepted = !section.except.empty() && begins_with(record, section.except);
  return !excepted && begins_with(record, section.word);
}

// Whether the first two letters are those of the word of a section: of most records they are not.
bool begins_like_a_word(std::string_view record) {
  constexpr auto letter = [](char c) { return static_cast<unsigned>(c) & 31U; };  // in either case
  constexpr auto seconds = [letter] {                                             // by the first one, as bits
    std::array<unsigned, 32> letters{};
    for (const Section& s : sections::all) letters.begin()[letter(s.word[0])] |= 1U << letter(s.word[1]);
    return letters;
  }();
  return record.size() > 1 && (seconds.begin()[letter(record[0])] >> letter(record[1]) & 1U) != 0;
}

std::string_view first_word_on(std::string_view record) {
  return record.substr(std::min(record.find_first_not_of(" \t"), record.size()));
}

// Where a heading stands that was not found.
struct HeadingHelp {
  std::string help;  // the heading that was probably meant, or those that the file has
  Place meant;       // where that stands
};

HeadingHelp headings_of(const Input& input, const Section& searched) {
  std::vector<std::string> found;
  std::string meant;
  Place place;
  input.for_each_record([&](int record, std::string_view text) {
    const bool misspelt = meant.empty() && may_mean(searched, text);
    if (!misspelt && section_of(text, searched.files) == nullptr) return;
    found.push_back(message("'", trimmed(text), "' (line ", input.origin(record).line, ")"));
    if (!misspelt) return;
    place = {&input, record, 1, static_cast<int>(trimmed(text).size())};
    meant = message("write '", searched.heading, "' instead of ", found.back(),
                    begins_like(searched, text) ? "; letter case counts here" : "");
  });
  if (!meant.empty()) return {meant, place};
  if (found.empty()) return {"the file has no heading that is known here", {}};
  return {message("the file has the headings ", list_of(found)), {}};
}

// The first record from one on that is not blank; 0 when there is none.
int first_text_from(const Input& input, int first) {
  if (!trimmed(input.origin(first).text).empty()) return first;
  int found = 0;
  input.for_each_record([&](int record, std::string_view text) {
    if (found == 0 && record >= first && !trimmed(text).empty()) found = record;
  });
  return found;
}

// Reports an END at the end of a record that begins with something else; false where it has none.
bool report_end_behind_text(const Section& section, Place record, Findings& findings,
                            Findings::Severity severity) {
  const std::string_view text = trimmed(record.unit->origin(record.record).text);
  const std::size_t blank = text.find_last_of(" \t");
  if (record.record == 0 || findings.is_told(record) || blank == text.npos ||
      !same_word(text.substr(blank + 1), "END"))
    return false;
  record.column = static_cast<int>(blank) + 2;
  record.width = static_cast<int>(text.size() - blank) - 1;
  findings.report(severity, record,
                  message("this END does not close ", section.content, ": it stands behind something else"),
                  "END has a line of its own, and begins in column 1", Findings::Site::current());
  return true;
}

}  // namespace

const Section* section_of(std::string_view record, std::uint8_t files) {
  if (!begins_like_a_word(record)) return nullptr;
  const auto found = std::find_if(sections::all.begin(), sections::all.end(), [&](const Section& s) {
    return (s.files & files) != 0 && begins_like(s, record);
  });
  return found == sections::all.end() ? nullptr : &*found;
}

bool may_mean(const Section& section, std::string_view record) {
  const bool opens_another = std::any_of(sections::all.begin(), sections::all.end(), [&](const Section& s) {
    return s != section && (s.files & section.files) != 0 && s.opens_with(record);
  });
  if (!opens_another && !section.elsewhere.empty() && begins_with(record, section.elsewhere.substr(0, 4)))
    return true;
  const std::string_view begin = record.substr(0, section.word.size());
  const bool indented = begin.starts_with(' ') && begins_like(section, first_word_on(record));
  return !opens_another && (indented || !Nearest(begin).offer(section.word).help().empty());
}

bool is_meant_as_end(std::string_view record) {
  constexpr std::size_t longest = 4;
  record = first_word_on(trimmed(record));
  constexpr auto others = std::to_array<std::string_view>({"STOP", "DONE", "EOF", "FIN"});
  return record.size() <= longest && !record.empty() &&
         (EQUSYM(4, record, "END") || !Nearest(record).offer("END").help().empty() ||
          std::any_of(others.begin(), others.end(), [&](auto word) { return same_word(word, record); }));
}

Place heading_place(const Section& section, const Input& input) {
  return here(input, 1, static_cast<int>(trimmed(section.word).size()));
}

void report_missing(const Section& section, const Input& input, Findings& findings,
                    std::string_view consequence) {
  const auto [help, meant] = headings_of(input, section);
  const Place place = meant ? meant : whole(input);
  const std::string what = missing_heading(section) + std::string(consequence);
  if (section.absence == Section::Absence::is_a_warning) {
    findings.warning(place, what, help);
  } else {
    findings.error(place, what, help);
  }
}

std::string missing_heading(const Section& section) {
  return message("no heading '", section.heading, "' of ", section.content);
}

void report_not_closed(const Section& section, const Place& heading, Findings& findings) {
  int last = 0;
  heading.unit->for_each_record([&](int record, std::string_view text) {
    if (!trimmed(text).empty()) last = record;
  });
  if (report_end_behind_text(section, {heading.unit, last}, findings, Findings::Severity::error)) return;
  findings.error(heading, message("no END closes ", section.content),
                 "the file ends inside the section that begins here: write END behind its last line");
}

bool report_heading_inside(const Section& section, const Place& heading, const Input& input,
                           Findings& findings, Findings::Severity severity) {
  const int record = first_text_from(input, input.record_number());
  if (record == 0) return false;
  const std::string_view text = input.origin(record).text;
  const Section* const opened = section_of(text, section.files);
  if (opened == nullptr) return false;
  if (*opened == section) {
    findings.report(severity, {&input, record, 1, static_cast<int>(trimmed(text).size())},
                    message("the heading '", trimmed(text), "' stands here again"),
                    message(section.content, " begin in line ", input.origin(heading.record).line,
                            ": delete one of the two, or write END before the second"),
                    Findings::Site::current());
    return true;
  }
  int before = record - 1;
  while (before > 1 && trimmed(input.origin(before).text).empty()) --before;
  if (report_end_behind_text(section, {&input, before}, findings, severity)) return true;
  findings.report(severity, {&input, record, 1, static_cast<int>(trimmed(text).size())},
                  message("no END closes ", section.content, " before the heading '", trimmed(text), "'"),
                  message("write END in front of this line: the section begins in line ",
                          input.origin(heading.record).line),
                  Findings::Site::current());
  return true;
}

void warn_of_use_without(const Section& missing, const Section& used, const Input& input,
                         const Input& used_in, Findings& findings) {
  int heading = 0;
  used_in.for_each_record([&](int record, std::string_view text) {
    if (heading == 0 && used.opens_with(text)) heading = record;
  });
  if (heading == 0) return;
  const auto width = static_cast<int>(trimmed(used_in.origin(heading).text).size());
  if (const auto [help, meant] = headings_of(input, missing); meant) {
    if (findings.follows(meant, "unread section")) return;
    findings.warning(meant, missing_heading(missing), help);
    return;
  }
  findings.warning({&used_in, heading, 1, width},
                   message("nothing reads ", used.content, ": there is no heading '", missing.heading,
                           "' of ", missing.content),
                   headings_of(input, missing).help);
}

}  // namespace varpre
