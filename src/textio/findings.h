#pragma once

#include <algorithm>
#include <source_location>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "textio/text.h"
#include "textio/unit.h"

// What the program tells people on standard error: errors and warnings with their place in the file the user wrote.
namespace varpre {

// A record of a unit, and columns of it.
struct Place {
  const Unit* unit = nullptr;
  int record = 0;  // from 1; 0: the file as a whole
  int column = 1;  // first of the columns meant
  int width = 1;   // how many
  int caret = 0;   // the one that matters most; 0: the first
};

// Columns of the record last read from a unit.
inline Place here(const Unit& unit, int column = 1, int width = 1) {
  return {&unit, unit.record_number(), column, width};
}
// A file as a whole: for what it does not hold.
inline Place whole(const Unit& unit) {
  return {&unit};
}

// Collects the findings of a run and renders them, at most a handful of each kind. Findings of one kind are those
// that one line of the program reports; of these, one place holds one at most.
class Findings {
 public:
  // `what`: lower case, one sentence, no full stop, to be understood without context. `help`: what was expected or
  // probably meant; may be empty.
  void error(const Place& place, std::string what, std::string help = {},
             std::source_location kind = std::source_location::current());
  void warning(const Place& place, std::string what, std::string help = {},
               std::source_location kind = std::source_location::current());

  int errors() const { return errors_; }
  int warnings() const { return warnings_; }

  // All findings as text for standard error; `summary` ends the last line ("store file complete").
  // Empty when there are none.
  std::string render(std::string_view summary) const;

 private:
  enum class Severity { error, warning };
  struct Kind {
    std::source_location site;
    Severity severity;
    int count = 0;
    std::vector<Place> places;
    std::size_t last = 0;  // place in texts_ of the last finding shown
  };

  void add(Severity severity, const Place& place, const std::string& what, const std::string& help,
           const std::source_location& kind);

  int errors_ = 0;
  int warnings_ = 0;
  std::vector<Kind> kinds_;
  std::vector<std::string> texts_;
};

// Joins parts of a message: texts (a Text<N> without its padding), integers, reals in their shortest form.
std::string part_of_message(std::string_view text);
std::string part_of_message(int value);
std::string part_of_message(double value);
template <std::size_t N>
std::string part_of_message(const Text<N>& text) {
  return std::string(trimmed(text.view()));
}
template <class... Parts>
std::string message(const Parts&... parts) {
  return (part_of_message(parts) + ...);
}

// Finds the candidate that a misspelt name probably means: equal but for letter case, or at most two edits away.
class Nearest {
 public:
  explicit Nearest(std::string_view name) : name_(trimmed(name)) {}

  void offer(std::string_view candidate);
  template <class Range>
  Nearest& offer_all(const Range& range) {
    for (const auto& candidate : range) {
      if constexpr (requires { candidate.view(); }) {
        offer(candidate.view());
      } else {
        offer(candidate);
      }
    }
    return *this;
  }

  // "did you mean 'H2O'?", or nothing when no candidate is close enough.
  std::string help() const;

 private:
  std::string_view name_;
  std::string best_;
  int distance_ = 3;
};

// The heading that was searched and those that the unit has, of the given words.
std::string headings_of(const Unit& unit, std::string_view searched, std::span<const std::string_view> words);

}  // namespace varpre
