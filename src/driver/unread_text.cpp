#include "driver/unread_text.h"

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "driver/file_faults.h"
#include "files/keywords.h"
#include "files/options.h"
#include "files/section_findings.h"
#include "files/words.h"
#include "textio/channel/input.h"
#include "textio/names/words.h"
#include "textio/record/number_format.h"

namespace varpre {
namespace {

// Records that follow each other and that nobody read, from a heading on where one stands among them.
struct Stretch {
  int first = 0;
  int last = 0;                      // that is not blank
  int before = 0;                    // the last record before it that somebody read; 0: none
  const Section* section = nullptr;  // whose heading is the first record
  std::string_view text;             // of the first record
  bool misspelt = false;             // the first record is a heading that was asked about already
};

// The words before a comment.
std::vector<Word> words_before_comment(std::string_view text) {
  return words_of(text.substr(0, text.find('!')), " ");
}

bool is_number(const Word& word) {
  return read_free_real(word.text).has_value();
}

// A keyword, an option or a species with its value.
bool is_condition(const std::vector<Word>& words, const NameIndex& species) {
  if (words.size() < 2 || !is_number(words[1])) return false;
  const std::string_view word = words[0].text;
  return is_keyword(word) || is_option(word) || species.find(SpeciesName(word)) > 0;
}

// A reaction with its numbers, or a row of numbers.
bool is_reaction(const std::vector<Word>& words) {
  if (words.size() < 2 || !is_number(words.back())) return false;
  const bool arrow = std::any_of(words.begin(), words.end(), [](const Word& word) {
    return word.text.find_first_of("=>") != std::string_view::npos;
  });
  constexpr int row = 3;
  return arrow || std::count_if(words.begin(), words.end(), is_number) >= row;
}

bool is_data(std::string_view text, std::uint8_t file, const NameIndex& species) {
  const std::vector<Word> words = words_before_comment(text);
  return file == Section::INP ? is_condition(words, species) : is_reaction(words);
}

// The record that opened each section, looked up all together when one is asked for first.
class HeadingsRead {
 public:
  explicit HeadingsRead(const Input& copy) : copy_(copy) {}

  // Of a section, by its content; 0: none did.
  int operator()(std::string_view content) {
    if (!known_) look_up();
    const auto found = records_.find(content);
    return found == records_.end() ? 0 : found->second;
  }

 private:
  void look_up() {
    known_ = true;
    copy_.for_each_record([&](int record, std::string_view text) {
      if (!copy_.is_read(record)) return;
      for (const Section& section : sections::all) {
        if (section.opens_with(text)) records_.emplace(section.content, record);
      }
    });
  }

  const Input& copy_;
  bool known_ = false;
  std::map<std::string_view, int> records_;  // by the content of the section
};

// Whether a record was named already as the heading of a section that is missing.
bool is_misspelt_heading(std::string_view text, HeadingsRead& heading_read, std::uint8_t file) {
  constexpr std::size_t most_words = 3;
  if (words_before_comment(text).size() > most_words) return false;
  return std::any_of(sections::all.begin(), sections::all.end(), [&](const Section& s) {
    return (s.files & file) != 0 && s.absence != Section::Absence::is_usual && may_mean(s, text) &&
           heading_read(s.content) == 0;
  });
}

bool is_end(std::string_view text) {
  return EQUSYM(4, text, "END ");
}

// A name of elements and a number, which nothing but an amount looks like.
bool is_amount(const std::vector<Word>& words) {
  const auto is_of_name = [](char c) {
    return (c >= 'A' && c <= 'Z') || is_digit(c) ||
           std::string_view("()-*,'").find(c) != std::string_view::npos;
  };
  if (words.size() != 2 || !is_number(words[1])) return false;
  const std::string_view name = words[0].text;
  return name.size() <= 8 && name.front() >= 'A' && name.front() <= 'Z' &&
         std::all_of(name.begin(), name.end(), is_of_name);
}

// From the first record that looks like data on. Behind the END of a section this may be a name with a
// number; and all that stands before a second END was hardly meant to be passed over.
std::vector<Stretch> stretches(const Input& copy, std::uint8_t file, const NameIndex& species,
                               HeadingsRead& heading_read) {
  std::vector<Stretch> found;
  bool open = false;
  int last_read = 0;
  Stretch prose;  // since the last record that was read
  bool behind_end = false;
  copy.for_each_record([&](int record, std::string_view text) {
    if (copy.is_read(record)) {
      open = false;
      last_read = record;
      prose = {};
      behind_end = is_end(text);
      return;
    }
    if (words_before_comment(text).empty()) return;  // blank, or a comment
    const Section* const section = section_of(text, file);
    const bool misspelt = section == nullptr && is_misspelt_heading(text, heading_read, file);
    const bool amount = behind_end && file == Section::INP && is_amount(words_before_comment(text));
    if (section != nullptr || misspelt || (!open && (amount || is_data(text, file, species)))) {
      found.push_back({record, record, last_read, section, text, misspelt});
      open = true;
    } else if (!open && is_end(text) && behind_end && prose.first > 0) {
      found.push_back(prose);
      open = true;
    }
    if (prose.first == 0) prose = {record, record, last_read, nullptr, text, false};
    if (open) found.back().last = record;
  });
  return found;
}

// What looks like data behind the first word of a line, or like anything where a keyword has a line of its
// own.
std::string_view data_behind_first_word(std::string_view text, std::uint8_t file, bool alone,
                                        const NameIndex& species) {
  text = text.substr(0, text.find('!'));
  const std::vector<Word> words = words_before_comment(text);
  for (std::size_t k = 1; k < words.size(); ++k) {
    const std::string_view rest = text.substr(static_cast<std::size_t>(words[k].column) - 1);
    const bool option_of_table = file == Section::MEC && EQUSYM(5, words[k].text, "TROE");
    if (alone || option_of_table || is_data(rest, file, species)) return rest;
  }
  return {};
}

int last_read(const Input& copy) {
  int last = 0;
  copy.for_each_record([&](int record, std::string_view) {
    if (copy.is_read(record)) last = record;
  });
  return last;
}

// The heading of a section that a run need not have, which the line before a stretch seems to mean; nullptr:
// none.
const Section* meant_by_line_before(const Stretch& stretch, int before, const Input& copy, std::uint8_t file,
                                    HeadingsRead& heading_read) {
  if (before == 0 || copy.is_read(before) || stretch.section != nullptr) return nullptr;
  const auto found = std::find_if(sections::all.begin(), sections::all.end(), [&](const Section& s) {
    return s.files == file && s.absence == Section::Absence::is_usual &&
           may_mean(s, copy.origin(before).text) && heading_read(s.content) == 0;
  });
  return found == sections::all.end() ? nullptr : &*found;
}

// The END before a stretch, which explains it.
std::string end_before(const Stretch& stretch, const Input& copy) {
  if (stretch.before == 0) return {};
  const Origin before = copy.origin(stretch.before);
  if (!begins_with(before.text, words::end)) return {};
  return message("END in line ", before.line,
                 " closes the section above: what stands behind it belongs to none");
}

// The one section of a file whose heading was not found and nowhere suspected; nullptr: none, or several.
const Section* section_without_heading(const Input& copy, std::uint8_t file, const Findings& findings) {
  const Section* found = nullptr;
  for (const Section& section : sections::all) {
    if ((section.files & file) == 0 || findings.place_of(missing_heading(section)) != whole(copy)) continue;
    if (found != nullptr) return nullptr;
    found = &section;
  }
  return found;
}

// The record directly before a stretch, blank ones and comments passed over; 0: none.
int record_before(const Stretch& stretch, const Input& copy) {
  int before = stretch.first - 1;
  while (before > 0 && words_before_comment(copy.origin(before).text).empty()) --before;
  return before;
}

// Whether a line may be meant as a heading: a few words, and no number or equation.
bool may_be_heading(std::string_view text) {
  constexpr int most_words = 4;
  const std::vector<Word> words = words_before_comment(text);
  return !words.empty() && count_of(words) <= most_words && text.find_first_of("=>") == text.npos &&
         std::none_of(words.begin(), words.end(), is_number);
}

// Whether a stretch belongs to the section whose heading is missing, which is told there then: at the line
// before it that may be meant as the heading, or stands behind END.
bool explains_missing_heading(const Stretch& stretch, const Input& copy, std::uint8_t file,
                              Findings& findings) {
  if (stretch.section != nullptr) return false;
  const bool heading_first = may_be_heading(stretch.text);
  const int before = heading_first ? stretch.first : record_before(stretch, copy);
  const bool heading_told = before > 0 && findings.is_told({&copy, before});
  if (heading_told && (!copy.is_read(before) || section_of(copy.origin(before).text, file) != nullptr))
    return true;
  const Section* const section = section_without_heading(copy, file, findings);
  if (section == nullptr) return false;
  const int first = copy.origin(stretch.first).line;
  const int last = copy.origin(stretch.last).line;
  const std::string lines =
      first == last ? message("line ", first, " is") : message("lines ", first, "-", last, " are");
  const std::string_view closing =
      stretch.before == 0 ? std::string_view() : copy.origin(stretch.before).text;
  if (const std::vector<Word> words = words_before_comment(closing); is_end(closing) && words.size() > 1) {
    return findings.settle(missing_heading(*section),
                           {&copy, stretch.before, words[1].column, words[1].width()},
                           "a heading has a line of its own: behind END it is not read, nor is what follows");
  }
  const std::string_view text = before == 0 ? std::string_view() : trimmed(copy.origin(before).text);
  if (before > 0 && !copy.is_read(before) && may_be_heading(text)) {
    return findings.settle(missing_heading(*section), {&copy, before, 1, static_cast<int>(text.size())},
                           message("write '", section->heading, "' instead of '", text,
                                   "' if it is meant so: ", lines, " read by no section"));
  }
  return findings.settle(missing_heading(*section),
                         {&copy, stretch.first, 1, static_cast<int>(trimmed(stretch.text).size())},
                         message(lines, " read by no section: if this is it, the heading belongs here"));
}

// Whether the heading of a section was looked for in vain that the same option asks for.
bool any_missing(std::string_view asked_for_by, const Findings& findings) {
  return std::any_of(sections::all.begin(), sections::all.end(), [&](const Section& section) {
    return section.asked_for_by == asked_for_by && findings.place_of(missing_heading(section));
  });
}

void warn(const Stretch& stretch, const Input& copy, std::uint8_t file, HeadingsRead& heading_read,
          Findings& findings) {
  const Place place{&copy, stretch.first, 1, static_cast<int>(trimmed(stretch.text).size())};
  if (findings.is_told(place) || explains_missing_heading(stretch, copy, file, findings)) return;
  for (int before = stretch.first - 1; before >= std::max(1, stretch.first - 2); --before) {
    const Section* const meant = meant_by_line_before(stretch, before, copy, file, heading_read);
    if (meant == nullptr) continue;
    const std::string_view heading = trimmed(copy.origin(before).text);
    findings.warning({&copy, before, 1, static_cast<int>(heading.size())},
                     message("'", heading, "' is no heading: nothing reads what follows"),
                     message("did you mean '", meant->heading, "'?"));
    return;
  }
  const int first = copy.origin(stretch.first).line;
  const int last = copy.origin(stretch.last).line;
  const int earlier = stretch.section == nullptr ? 0 : heading_read(stretch.section->content);
  if (earlier > 0) {
    // The section of this heading that is read in its place only was given up, or looked for in vain.
    if (std::any_of(sections::all.begin(), sections::all.end(), [&](const Section& s) {
          return s.heading == stretch.section->heading && s != *stretch.section &&
                 (heading_read(s.behind) > 0 || any_missing(s.asked_for_by, findings));
        }))
      return;
    const Section* const missing = section_without_heading(copy, file, findings);
    const std::string again = message("'", stretch.section->heading, "' stands already in line ",
                                      copy.origin(earlier).line, "; this one is ignored");
    if (missing != nullptr && findings.settle(missing_heading(*missing), place, again)) return;
    findings.warning(place, again);
    return;
  }
  const bool optional = stretch.section != nullptr && !stretch.section->asked_for_by.empty();
  // It was given up, or looked for in vain, which was reported.
  if (optional && heading_read(stretch.section->behind) > 0) return;
  if (optional && any_missing(stretch.section->asked_for_by, findings)) return;
  const std::string help = optional ? std::string(stretch.section->asked_for_by) : end_before(stretch, copy);
  if (first == last) {
    findings.warning(place, message("line ", first, " is read by no section"), help);
  } else {
    findings.warning(place,
                     message("lines ", first, "-", last, " are read by no section; the first is '",
                             trimmed(stretch.text), "'"),
                     help);
  }
}

}  // namespace

void warn_of_conflict(const Input& copy, Findings& findings) {
  const auto conflict = conflict_in(copy.file());
  if (conflict) findings.warning({&copy.file(), conflict->record}, conflict->what, conflict->help);
}

void warn_of_unread_text(const Input& copy, std::uint8_t file, std::span<const SpeciesName> SYMB,
                         bool surface, Findings& findings) {
  HeadingsRead heading_read(copy);
  for (const Stretch& stretch : stretches(copy, file, NameIndex(SYMB), heading_read)) {
    const bool without_species = !surface && stretch.section != nullptr && stretch.section->of_surface;
    if (!without_species && !stretch.misspelt) warn(stretch, copy, file, heading_read, findings);
  }
}

void warn_of_text_passed_over(const Input& copy, std::uint8_t file, std::span<const SpeciesName> SYMB,
                              Findings& findings) {
  const int end = file == Section::MEC ? last_read(copy) : 0;
  HeadingsRead heading_read(copy);
  for (const Stretch& stretch : stretches(copy, file, NameIndex(SYMB), heading_read)) {
    const bool behind_end = !end_before(stretch, copy).empty();
    if (stretch.section == nullptr && (behind_end || stretch.last < end)) {
      warn(stretch, copy, file, heading_read, findings);
    }
  }
}

void warn_of_text_behind_words(const Input& copy, std::uint8_t file, std::span<const SpeciesName> SYMB,
                               Findings& findings) {
  const NameIndex species(SYMB);
  copy.for_each_record([&](int record, std::string_view text) {
    if (!copy.is_read(record)) return;
    const bool closing = is_end(text);
    const bool keyword = file == Section::MEC && EQUSYM(4, text, "STIC");
    if (!closing && !keyword && section_of(text, file) == nullptr) return;
    const std::string_view data = data_behind_first_word(text, file, keyword, species);
    if (data.empty()) return;
    const auto column = static_cast<int>(data.data() - text.data()) + 1;
    findings.warning({&copy, record, column, static_cast<int>(trimmed(data).size())},
                     message("'", trimmed(data), "' is not read: it stands behind ",
                             closing   ? "END"
                             : keyword ? "STIC"
                                       : "a heading"),
                     "it belongs on a line of its own");
  });
}

}  // namespace varpre
