#pragma once

#include <string_view>

#include "files/section_findings.h"
#include "textio/findings/record_findings.h"

// Sections made of records with a keyword and a value, up to an END record.
namespace varpre {

template <std::size_t N>
struct KeywordRecord {
  Text<N> word;
  double value = 0;
  ReadResult result;  // of the value
};

// How the reading of a section ended.
enum class SectionEnd { closed, end_of_file, given_up };

// Reads keyword records until ends(word) says that the section is closed, or take(record) gives up by
// returning false. An end of file is not reported.
template <FormatText Format, std::size_t N, class Ends, class Take>
SectionEnd read_keyword_records(Input& NFICON, Ends ends, Take take) {
  for (;;) {
    KeywordRecord<N> record;
    record.result = read<Format>(NFICON, record.word, record.value);
    if (record.result.end_of_file()) return SectionEnd::end_of_file;
    if (ends(record.word)) return SectionEnd::closed;
    if (!take(record)) return SectionEnd::given_up;
  }
}

// Columns of the value, and its unit; none where it has none or people write none.
struct ValueField {
  int column;
  int width;
  std::string_view unit = {};
};

// Whether the value of a keyword, in the record last read, could be read; if not, reports it. Warns of
// columns that were hardly meant, of a value that stands beside its columns, and of another unit behind it.
bool value_is_readable(const ReadResult& result, std::string_view word, double value, const ValueField& field,
                       const Input& NFICON, Findings& findings);

// The values of a keyword that are usual.
struct Usual {
  double least = -1.0E+300;
  double most = 1.0E+300;
};

// Warns of a value outside of what is usual.
void warn_of_unusual(std::string_view keyword, double value, const Usual& usual, const Place& place,
                     Findings& findings);

// Warns that a keyword, in the record last read, was given before; the later value counts. Nothing where it
// was not (`earlier` without unit).
void warn_of_second(std::string_view keyword, const Place& earlier, const Place& later, Findings& findings);

// Reports that the record last read holds no keyword of its section: the heading of another one, or a keyword
// that is misspelt or unknown. `kinds` and `field` say what may stand there, and where.
void report_unknown_keyword(const Section& section, const Place& heading, std::string_view word,
                            std::string_view kinds, const Nearest& nearest, const ValueField& field,
                            const Input& NFICON, Findings& findings);

}  // namespace varpre
