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

// Whether a line may be meant as a heading: a few words, and no number or equation.
bool may_be_heading(std::string_view text) {
  constexpr int most_words = 4;
  const std::vector<Word> words = words_before_comment(text);
  return !words.empty() && count_of(words) <= most_words && text.find_first_of("=>") == text.npos &&
         std::none_of(words.begin(), words.end(), is_number);
}

// The look at one input.
class Look {
 public:
  Look(const Input& copy, std::uint8_t file, std::span<const SpeciesName> SYMB, Findings& findings)
      : copy_(copy),
        file_(file),
        species_(file == Section::INP ? SYMB : std::span<const SpeciesName>()),
        findings_(findings),
        heading_read_(copy) {}

  // Goes through all records; warns of what stands behind words, and notes the stretches that nobody read.
  void pass() {
    copy_.for_each_record([&](int record, std::string_view text) {
      if (copy_.is_read(record)) {
        last_read_ = record;
        prose_ = {};
        open_ = false;
        behind_end_ = is_end(text);
        warn_of_text_behind_word(record, text);
      } else {
        note_unread(record, text);
      }
    });
  }

  void warn_of_conflict() {
    const auto conflict = conflict_in(copy_.file());
    if (conflict) findings_.warning({&copy_.file(), conflict->record}, conflict->what, conflict->help);
  }

  void warn_of_stretches(bool surface) {
    for (const Stretch& stretch : stretches_) {
      const bool without_species = !surface && stretch.section != nullptr && stretch.section->of_surface;
      if (!without_species && !stretch.misspelt) warn(stretch);
    }
  }

  // Of a run that ended early: those behind an END, and, of the mechanism input, which is read from front to
  // back, those before the last record that was read.
  void warn_of_stretches_passed_over() {
    const int end = file_ == Section::MEC ? last_read_ : 0;
    for (const Stretch& stretch : stretches_) {
      const bool passed_over = !end_before(stretch).empty() || stretch.last < end;
      if (stretch.section == nullptr && passed_over) warn(stretch);
    }
  }

 private:
  // --- what a record is -----------------------------------------------------

  bool is_data(std::string_view text) const {
    const std::vector<Word> words = words_before_comment(text);
    return file_ == Section::INP ? is_condition(words, species_) : is_reaction(words);
  }

  // Whether a record was named already as the heading of a section that is missing.
  bool is_misspelt_heading(std::string_view text) {
    constexpr std::size_t most_words = 3;
    if (words_before_comment(text).size() > most_words) return false;
    return std::any_of(sections::all.begin(), sections::all.end(), [&](const Section& s) {
      return (s.files & file_) != 0 && s.absence != Section::Absence::is_usual && may_mean(s, text) &&
             heading_read_(s.content) == 0;
    });
  }

  // A stretch begins with the first record that looks like data. Behind the END of a section this may be a
  // name with a number; and all that stands before a second END was hardly meant to be passed over.
  void note_unread(int record, std::string_view text) {
    if (words_before_comment(text).empty()) return;  // blank, or a comment
    if (behind_end_ && prose_.first == 0 && explains_unknown_species(record, text)) {
      prose_ = {record, record, last_read_, nullptr, text, false};
      return;
    }
    const Section* const section = section_of(text, file_);
    const bool misspelt = section == nullptr && is_misspelt_heading(text);
    const bool amount = behind_end_ && file_ == Section::INP && is_amount(words_before_comment(text));
    if (section != nullptr || misspelt || (!open_ && (amount || is_data(text)))) {
      stretches_.push_back({record, record, last_read_, section, text, misspelt});
      open_ = true;
    } else if (!open_ && is_end(text) && behind_end_ && prose_.first > 0) {
      stretches_.push_back(prose_);
      open_ = true;
    }
    if (prose_.first == 0) prose_ = {record, record, last_read_, nullptr, text, false};
    if (open_) stretches_.back().last = record;
  }

  // Whether a record directly behind an END names species that no list was found to name, which is told then.
  bool explains_unknown_species(int record, std::string_view text) {
    if (file_ != Section::INP || findings_.errors() == 0) return false;
    for (const Word& word : words_before_comment(text)) {
      if (!findings_.place_of(message("unknown species '", word.text, "'"))) continue;
      findings_.warning(place_of(record), message("'", trimmed(text), "' is not read: it stands behind END"),
                        message("END in line ", copy_.origin(last_read_).line, " closes the species list"));
      return true;
    }
    return false;
  }

  // --- behind words ---------------------------------------------------------

  // What looks like data behind the first word of a line, or like anything where a keyword has a line of its
  // own.
  std::string_view data_behind_first_word(std::string_view text, bool alone) const {
    text = text.substr(0, text.find('!'));
    const std::vector<Word> words = words_before_comment(text);
    for (std::size_t k = 1; k < words.size(); ++k) {
      const std::string_view rest = text.substr(static_cast<std::size_t>(words[k].column) - 1);
      const bool option_of_table = file_ == Section::MEC && EQUSYM(5, words[k].text, "TROE");
      if (alone || option_of_table || is_data(rest)) return rest;
    }
    return {};
  }

  // Warns of what looks like data behind a heading, an END or a line STIC, where nothing is read.
  void warn_of_text_behind_word(int record, std::string_view text) {
    const bool closing = is_end(text);
    const bool keyword = file_ == Section::MEC && EQUSYM(4, text, "STIC");
    if (!closing && !keyword && section_of(text, file_) == nullptr) return;
    const std::string_view data = data_behind_first_word(text, keyword);
    if (data.empty()) return;
    const auto column = static_cast<int>(data.data() - text.data()) + 1;
    const std::string what = message("'", trimmed(data), "' is not read: it stands behind ",
                                     closing   ? "END"
                                     : keyword ? "STIC"
                                               : "a heading");
    if (findings_.place_of(what).record == record) return;  // the stage that misses it has told so
    findings_.warning({&copy_, record, column, static_cast<int>(trimmed(data).size())}, what,
                      "it belongs on a line of its own");
  }

  // --- stretches ------------------------------------------------------------

  Place place_of(int record) const {
    return {&copy_, record, 1, static_cast<int>(trimmed(copy_.origin(record).text).size())};
  }

  // "line 3 is", "lines 3-5 are"
  std::string lines_of(const Stretch& stretch) const {
    const int first = copy_.origin(stretch.first).line;
    const int last = copy_.origin(stretch.last).line;
    return first == last ? message("line ", first, " is") : message("lines ", first, "-", last, " are");
  }

  // The END before a stretch, which explains it.
  std::string end_before(const Stretch& stretch) const {
    if (stretch.before == 0) return {};
    const Origin before = copy_.origin(stretch.before);
    if (!begins_with(before.text, words::end)) return {};
    return message("END in line ", before.line,
                   " closes the section above: what stands behind it belongs to none");
  }

  // The record directly before a stretch, blank ones and comments passed over; 0: none.
  int record_before(const Stretch& stretch) const {
    int before = stretch.first - 1;
    while (before > 0 && words_before_comment(copy_.origin(before).text).empty()) --before;
    return before;
  }

  // The one section of the file whose heading was not found and nowhere suspected; nullptr: none, or several.
  const Section* section_without_heading() const {
    const Section* found = nullptr;
    for (const Section& section : sections::all) {
      if ((section.files & file_) == 0 || findings_.place_of(missing_heading(section)) != whole(copy_))
        continue;
      if (found != nullptr) return nullptr;
      found = &section;
    }
    return found;
  }

  // Whether a section that an option asks for was given up, or looked for in vain.
  bool is_given_up(const Section& section) {
    if (section.asked_for_by.empty()) return false;
    return heading_read_(section.behind) > 0 ||
           std::any_of(sections::all.begin(), sections::all.end(), [&](const Section& s) {
             return s.asked_for_by == section.asked_for_by && findings_.place_of(missing_heading(s));
           });
  }

  void warn(const Stretch& stretch) {
    if (findings_.is_told(place_of(stretch.first))) return;
    if (ended_by_error(stretch)) {
      findings_.follows({&copy_, stretch.before}, "unread part");
    } else if (stretch.section != nullptr) {
      warn_of_heading(stretch, *stretch.section);
    } else if (!explains_missing_heading(stretch) && !warn_of_misspelt_heading(stretch)) {
      warn_of_unread(stretch, end_before(stretch));
    }
  }

  // Whether the section before a stretch ended in its last record with a finding, and not with END.
  bool ended_by_error(const Stretch& stretch) const {
    return stretch.section == nullptr && stretch.before > 0 && stretch.before == stretch.first - 1 &&
           end_before(stretch).empty() && findings_.is_told({&copy_, stretch.before});
  }

  void warn_of_unread(const Stretch& stretch, std::string_view help) {
    findings_.warning(
        place_of(stretch.first),
        message(lines_of(stretch), " read by no section",
                stretch.first == stretch.last ? std::string()
                                              : message("; the first is '", trimmed(stretch.text), "'")),
        help);
  }

  // A heading that nobody looked for, or that was read already.
  void warn_of_heading(const Stretch& stretch, const Section& section) {
    const int earlier = heading_read_(section.content);
    // A section of the same heading may be read in its place only.
    const bool given_up = std::any_of(sections::all.begin(), sections::all.end(), [&](const Section& s) {
      return s.heading == section.heading && (s == section) == (earlier == 0) && is_given_up(s);
    });
    if (given_up) return;
    // One option asks for several sections: what it lacks is told once.
    if (std::any_of(sections::all.begin(), sections::all.end(), [&](const Section& s) {
          return s.heading == section.heading && !s.asked_for_by.empty() &&
                 findings_.follows(findings_.place_of(s.asked_for_by), "further section");
        }))
      return;
    if (earlier == 0) {
      const bool optional = !section.asked_for_by.empty();
      warn_of_unread(stretch, optional ? std::string(section.asked_for_by) : end_before(stretch));
      if (optional) findings_.tell_with(place_of(stretch.first), section.asked_for_by);
      return;
    }
    const Place place = place_of(stretch.first);
    const Section* const missing = section_without_heading();
    const std::string again = message("'", section.heading, "' stands already in line ",
                                      copy_.origin(earlier).line, "; this one is ignored");
    if (missing != nullptr && findings_.settle(missing_heading(*missing), place, again)) return;
    findings_.warning(place, again);
  }

  // Where the heading of a missing section was meant to stand, to which a stretch belongs: at the line before
  // it that may be one, or behind END; else the stretch begins where it belongs. `help` tells.
  Place place_of_missing(const Section& section, const Stretch& stretch, int before,
                         std::string& help) const {
    const std::string_view closing =
        stretch.before == 0 ? std::string_view() : copy_.origin(stretch.before).text;
    if (const std::vector<Word> words = words_before_comment(closing); is_end(closing) && words.size() > 1) {
      help = "a heading has a line of its own: behind END it is not read, nor is what follows";
      return {&copy_, stretch.before, words[1].column, words[1].width()};
    }
    const std::string_view text = before == 0 ? std::string_view() : trimmed(copy_.origin(before).text);
    if (before > 0 && !copy_.is_read(before) && may_be_heading(text)) {
      help = message("write '", section.heading, "' instead of '", text,
                     "' if it is meant so: ", lines_of(stretch), " read by no section");
      return place_of(before);
    }
    help = message(lines_of(stretch), " read by no section: if this is it, the heading belongs here");
    return place_of(stretch.first);
  }

  // Whether a stretch belongs to the section whose heading is missing, which is told there then.
  bool explains_missing_heading(const Stretch& stretch) {
    const int before = may_be_heading(stretch.text) ? stretch.first : record_before(stretch);
    if (before > 0 && findings_.is_told({&copy_, before}) &&
        (!copy_.is_read(before) || section_of(copy_.origin(before).text, file_) != nullptr))
      return true;
    const Section* const section = section_without_heading();
    if (section == nullptr) return false;
    std::string help;
    const Place place = place_of_missing(*section, stretch, before, help);
    return findings_.settle(missing_heading(*section), place, help);
  }

  // Warns of the line before a stretch that seems to mean the heading of a section which a run need not have;
  // false where there is none.
  bool warn_of_misspelt_heading(const Stretch& stretch) {
    for (int before = stretch.first - 1; before >= std::max(1, stretch.first - 2); --before) {
      if (copy_.is_read(before)) continue;
      const std::string_view text = copy_.origin(before).text;
      const auto meant = std::find_if(sections::all.begin(), sections::all.end(), [&](const Section& s) {
        return s.files == file_ && s.absence == Section::Absence::is_usual && may_mean(s, text) &&
               heading_read_(s.content) == 0;
      });
      if (meant == sections::all.end()) continue;
      findings_.warning(place_of(before),
                        message("'", trimmed(text), "' is no heading: nothing reads what follows"),
                        message("did you mean '", meant->heading, "'?"));
      return true;
    }
    return false;
  }

  const Input& copy_;
  std::uint8_t file_;  // the input as a section knows it
  NameIndex species_;
  Findings& findings_;
  HeadingsRead heading_read_;
  std::vector<Stretch> stretches_;
  int last_read_ = 0;        // the last record that was read
  bool behind_end_ = false;  // it is an END
  Stretch prose_;            // what nobody read since then
  bool open_ = false;        // and whether it belongs to the last stretch
};

}  // namespace

void warn_of_unread_text(const Input& copy, std::uint8_t file, std::span<const SpeciesName> SYMB,
                         bool stopped, bool surface, Findings& findings) {
  Look look(copy, file, SYMB, findings);
  look.pass();
  look.warn_of_conflict();
  if (stopped) {
    look.warn_of_stretches_passed_over();
  } else {
    look.warn_of_stretches(surface);
  }
}

}  // namespace varpre
