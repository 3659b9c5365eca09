#pragma once

#include <algorithm>
#include <array>
#include <functional>
#include <optional>
#include <string_view>
#include <type_traits>

#include "files/section_findings.h"
#include "files/sections.h"
#include "textio/channel/statement.h"
#include "textio/findings/findings.h"

// Sections made of records with a keyword and a value, up to an END record. Such a section is a struct, whose
// members have their standard values, and a description, whose rows point to them:
//
//   struct FlameSection {
//     using Values = FlameConditions;
//     static constexpr FormatText record{"(A4,1X,E10.3)"};          // the keyword and the value
//     static constexpr Section::Letters letters = Section::Letters::as_written;
//     static constexpr std::string_view end = "END ";               // what the last record begins with
//     static constexpr std::string_view kinds = "keyword";          // what a word of it can be
//     static constexpr auto keywords = std::to_array<Keyword<Values>>({{"RI  ", &Values::RI, ...}, ...});
//   };
namespace varpre {

// The values of a keyword that are usual.
struct Usual {
  double least = -1.0E+300;
  double most = 1.0E+300;
};

// A keyword of a section with values of a type, which are doubles.
template <class Values>
struct Keyword {
  std::string_view word;  // as it stands in its columns, with the blanks that count
  double Values::*value;
  std::string_view meaning;    // a short phrase
  std::string_view unit = {};  // of the input; none where it has none or people write none
  Usual usual = {};
  bool required = false;
  double factor = 1;                  // from the unit of the input to that of the value
  std::string_view stored_unit = {};  // of the value, where that is another one
  std::string_view not_once = {};     // what the listing says where it must be given once and is not
};

// Whether each member of the values stands in exactly one row.
template <class Values, std::size_t N>
constexpr bool sets_each_member_once(const std::array<Keyword<Values>, N>& keywords) {
  for (std::size_t i = 0; i < N; ++i) {
    for (std::size_t k = 0; k < i; ++k) {
      if (keywords[k].value == keywords[i].value || keywords[k].word == keywords[i].word) return false;
    }
  }
  return sizeof(Values) == N * sizeof(double);
}

// The row of a section that sets a value.
template <class Description>
constexpr std::size_t row_of(double Description::Values::*value) {
  const auto& keywords = Description::keywords;
  return static_cast<std::size_t>(
      std::ranges::find(keywords, value, &Keyword<typename Description::Values>::value) - keywords.begin());
}
template <class Description>
constexpr const Keyword<typename Description::Values>& keyword(double Description::Values::*value) {
  return Description::keywords[row_of<Description>(value)];
}

// One record of a section.
struct KeywordRecord {
  Text<8> word;
  double value = 0;
  ReadResult result;  // of the value
};

// Where the word and the value of a record stand, and what the word can be.
struct KeywordColumns {
  FieldColumns word;
  FieldColumns value;
  std::string_view kinds;
};
template <class Description>
inline constexpr KeywordColumns keyword_columns{field_columns(Format<Description::record>::view, 1),
                                                field_columns(Format<Description::record>::view, 2),
                                                Description::kinds};

// How the reading of a section ended: all but `closed` and `given_up` have been reported.
enum class SectionEnd { closed, end_of_file, unknown_word, unreadable_value, given_up };

// A value that is not read, since it stands behind another one or behind END, of which it was told.
struct LostValue {
  Text<8> word{};  // blank: any, since others may follow it
  Place place{};   // none: there is no such value
};

// What a section gives.
template <class Description>
struct GivenKeywords {
  using Member = double Description::Values::*;
  static constexpr std::size_t count = Description::keywords.size();

  typename Description::Values values;
  std::array<Place, count> places;  // of each keyword its value, the last of several
  std::array<int, count> times{};   // how often it is given
  Place heading;
  KeywordRecord last;  // the record read last, or the one that could not be taken
  LostValue lost;      // the last one

  const Place& place(Member value) const { return places[row_of<Description>(value)]; }

  // Whether a value is missing because it was lost, with which it is counted then.
  bool is_lost(std::string_view word, Findings& findings,
               Findings::Severity severity = Findings::Severity::warning) const {
    return (lost.word.blank() || trimmed(lost.word.view()) == trimmed(word)) &&
           findings.follows(lost.place, "missing value", severity);
  }
};

// Takes no words but the keywords.
struct NoOtherWords {
  static std::optional<SectionEnd> take(const KeywordRecord&) { return SectionEnd::unknown_word; }
  static void offer_to(Nearest&) {}
  static bool knows(std::string_view) { return false; }
  static void behind_error() {}
};

// Whether the value of a keyword, in the record last read, could be read; if not, reports it. Warns of
// columns that were hardly meant, of a value that stands beside its columns, and of another unit behind it.
bool value_is_readable(const ReadResult& result, std::string_view word, double value,
                       const FieldColumns& field, std::string_view unit, const Input& NFICON,
                       Findings& findings);

// Warns of a value, in the unit of the input, outside of what is usual.
void warn_of_unusual(std::string_view keyword, double value, const Usual& usual, std::string_view unit,
                     const Place& place, Findings& findings);

// Warns that a keyword, in the record last read, was given before; the later value counts. Nothing where it
// was not.
void warn_of_second(std::string_view keyword, const Place& earlier, const Place& later, Findings& findings);

// Warns of a second word with its value behind the value in the record last read, of which nothing is read.
// is_word tells the words that a section knows.
LostValue warn_of_second_pair(const FieldColumns& field, const std::function<bool(std::string_view)>& is_word,
                              const Input& NFICON, Findings& findings);

// The same of a word with its value directly behind the END last read.
LostValue warn_of_pair_behind_end(const std::function<bool(std::string_view)>& is_word, Input& NFICON,
                                  Findings& findings);

// Whether the record last read is the heading of another section, or is meant as END.
bool opens_a_section(const Section& section, const Input& NFICON);

// Reports that the record last read holds no keyword of its section: the heading of another one, or a keyword
// that is misspelt or unknown.
void report_unknown_keyword(const Section& section, const Place& heading, std::string_view word,
                            const KeywordColumns& columns, const Nearest& nearest, const Input& NFICON,
                            Findings& findings);

namespace keyword_detail {

template <class Description>
constexpr bool begins(std::string_view word, std::string_view with) {
  if (Description::letters == Section::Letters::as_written) return word.starts_with(with);
  return begins_with(word, with);
}

// Whether a section knows a word, which stands anywhere in a line.
template <class Description, class Others>
bool knows(std::string_view word, const Others& others) {
  const auto& keywords = Description::keywords;
  return others.knows(word) || std::any_of(keywords.begin(), keywords.end(), [&](const auto& k) {
           return word.size() >= trimmed(k.word).size() && begins<Description>(word, trimmed(k.word)) &&
                  word.size() <= k.word.size();
         });
}

// Takes the value of a keyword; false, after the finding, where it cannot be read.
template <class Description>
bool take_keyword(std::size_t row, const Input& NFICON, Findings& findings,
                  GivenKeywords<Description>& given) {
  const auto& keyword = Description::keywords[row];
  const auto& [word, value, result] = given.last;
  const FieldColumns& field = keyword_columns<Description>.value;
  if (!value_is_readable(result, word.view(), value, field, keyword.unit, NFICON, findings)) return false;
  const Place place = here(NFICON, field.first, field.width);
  const std::string_view name = trimmed(keyword.word);
  if (keyword.not_once.empty()) warn_of_second(name, given.places[row], place, findings);
  warn_of_unusual(name, value, keyword.usual, keyword.unit, place, findings);
  given.values.*keyword.value = value * keyword.factor;
  given.places[row] = place;
  ++given.times[row];
  return true;
}

// Reads a record and takes it; otherwise how the section ends there.
template <class Description, class Others>
std::optional<SectionEnd> take_record(const Section& section, Input& NFICON, Findings& findings,
                                      GivenKeywords<Description>& given, Others& others) {
  const auto& keywords = Description::keywords;
  auto& [word, value, result] = given.last;
  result = read<Description::record>(NFICON, word, value);
  if (result.end_of_file()) {
    report_not_closed(section, given.heading, findings);
    return SectionEnd::end_of_file;
  }
  const auto is_known = [&](std::string_view w) { return knows<Description>(w, others); };
  if (begins<Description>(word.view(), Description::end)) {
    const LostValue behind = warn_of_pair_behind_end(is_known, NFICON, findings);
    if (behind.place) given.lost = behind;
    return SectionEnd::closed;
  }
  const auto found = std::find_if(keywords.begin(), keywords.end(), [&w = word](const auto& k) {
    return begins<Description>(w.view(), k.word);
  });
  std::optional<SectionEnd> end;
  if (found == keywords.end()) {
    end = others.take(given.last);
  } else if (!take_keyword(static_cast<std::size_t>(found - keywords.begin()), NFICON, findings, given)) {
    end = SectionEnd::unreadable_value;
  }
  if (end == SectionEnd::unknown_word) {
    Nearest nearest(word.view());
    others.offer_to(nearest);
    for (const auto& known : keywords) nearest.offer(known.word);
    report_unknown_keyword(section, given.heading, word.view(), keyword_columns<Description>, nearest, NFICON,
                           findings);
  }
  if (!end) {
    const LostValue lost =
        warn_of_second_pair(keyword_columns<Description>.value, is_known, NFICON, findings);
    if (lost.place) given.lost = lost;
  }
  return end;
}

}  // namespace keyword_detail

// Reads the records of a section, behind its heading, up to the one that closes it. Words that are no
// keywords go to others.take(record), which returns nothing when it has taken the record, or how the section
// ends there; others.offer_to(nearest) offers the words that it takes to a search for the one that was meant,
// others.knows(word) tells whether it is one of them.
//
// Behind a record that cannot be taken the others are read for what may be wrong with them, as far as the
// section goes: others.behind_error() is told. The first of them is how the section ends, and stays in
// given.last.
template <class Description, class Others = NoOtherWords>
SectionEnd read_keywords(const Section& section, Input& NFICON, Findings& findings,
                         GivenKeywords<Description>& given, Others&& others = {}) {
  constexpr int most_errors = 20;
  given.heading = heading_place(section, NFICON);
  std::optional<SectionEnd> first_end;
  KeywordRecord first_record;
  for (int errors = 0;;) {
    std::optional<SectionEnd> end = keyword_detail::take_record(section, NFICON, findings, given, others);
    if (!end) continue;
    if (!first_end) {
      first_end = end;
      first_record = given.last;
    }
    const bool over = end == SectionEnd::closed || end == SectionEnd::end_of_file;
    if (over || ++errors == most_errors || opens_a_section(section, NFICON)) break;
    others.behind_error();
  }
  given.last = first_record;
  return *first_end;
}

}  // namespace varpre
