#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "textio/channel/input.h"
#include "textio/record/text.h"

namespace varpre {

// A section of an input file: the records behind a heading. How it is told from others, where it is looked
// for, and what follows when it is not there.
struct Section {
  enum class Letters : std::uint8_t { as_written, any_case };
  enum class Start : std::uint8_t { first_record, where_it_stands };
  enum class Absence : std::uint8_t {
    ends_the_run,
    is_a_fault,    // the run goes on, and the store file lacks something
    is_a_warning,  // the run goes on with standard values
    is_usual
  };
  // The files that may hold it, as bits.
  enum Files : std::uint8_t { INP = 1, MEC = 2 };

  std::string_view word;     // what its heading begins with
  std::string_view heading;  // as people write it
  std::string_view content;  // "the flame conditions"
  Letters letters;
  Start start;
  Absence absence;
  std::uint8_t files = INP;
  std::string_view except = {};     // a heading that begins so, in any case, is another section's
  std::string_view elsewhere = {};  // the heading that other programs give to such a section

  // Whether a record is its heading; beyond the end of a record stand blanks.
  constexpr bool opens_with(std::string_view record) const {
    if (!except.empty() && EQUSYM(static_cast<int>(except.size()), record, except)) return false;
    if (letters == Letters::any_case) return EQUSYM(static_cast<int>(word.size()), record, word);
    return trimmed(record.substr(0, word.size())) == trimmed(word);
  }
};

// Where a search ended.
struct Heading {
  bool found = false;
  std::string_view record;  // the heading; when it was not found the last record passed over, or nothing

  explicit operator bool() const { return found; }
};

// Looks for the heading of a section and stands behind it; at the end of the input when there is none. Each
// record passed over is shown to `passed`, which may end the search there by returning false.
Heading find_section(const Section& section, Input& input,
                     const std::function<bool(std::string_view)>& passed = {});

}  // namespace varpre
