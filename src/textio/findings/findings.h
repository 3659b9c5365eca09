#pragma once

#include <concepts>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "textio/channel/input.h"
#include "textio/record/text.h"

// What the program tells people on standard error: errors and warnings with their place in the file the user
// wrote.
namespace varpre {

// Columns of a record of a unit; without unit it is not given.
struct Place {
  const Input* unit = nullptr;
  int record = 0;  // from 1; 0: the file as a whole
  int column = 1;  // first of the columns meant, from 1
  int width = 1;   // how many
  int caret = 0;   // the column that matters most; 0: the first

  // Whether it is given.
  explicit operator bool() const { return unit != nullptr; }
  // The column to look at first.
  int column_to_show() const { return caret > 0 ? caret : column; }

  friend bool operator==(const Place&, const Place&) = default;
};

// Columns of the record last read from a unit.
inline Place here(const Input& unit, int column = 1, int width = 1) {
  return {&unit, unit.record_number(), column, width};
}
// Where a text stands in the line of a record as the user wrote it; the whole record when it is not found. A
// text that begins and ends like a name is looked for between characters that do not belong to names.
Place locate(const Place& record, std::string_view text);
// A file as a whole: for what it does not hold.
inline Place whole(const Input& unit) {
  return {&unit};
}

// A finding as plain data, for programs that show findings in their own way.
struct FindingReport {
  enum class Severity { error, warning };
  Severity severity = Severity::error;
  std::string file;  // as the user knows it
  int line = 0;      // from 1; of a file as a whole the number of its lines
  int column = 0;    // first of the columns meant, in bytes from 1
  int width = 0;     // how many; 0: the file as a whole
  int caret = 0;     // the column that matters most
  std::string text;
  std::string help;  // may be empty
};

// What is wrong with a file as a whole, so that every line of it is misread.
struct FileFault {
  int record = 0;  // of the file, where it shows; 0: everywhere
  std::string what;
  std::string help;
};

// Collects the findings of a run and renders them, a handful of each kind. Findings are of one kind when the
// same line of the program reports them; the same one is not taken twice. What a finding costs does not grow
// with their number: those that will not be shown are only counted, unless all are to be kept.
//
// Places refer to inputs, in which lines are looked up only when findings are shown: the inputs must still be
// there, unchanged, when `render` or `reports` is called.
class Findings {
 public:
  using Severity = FindingReport::Severity;

  // A line of the program: of the caller, as a default argument.
  struct Site {
    const char* file;
    int line;

    static constexpr Site current(const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
      return {file, line};
    }
  };

  // To be set before the run: `reports` tells all findings, not only those that are shown.
  bool keep_all = false;
  // Judges a file as a whole when the first error in it comes, if there is somebody to ask. Where it knows a
  // fault, that one is told, and nothing else of this file.
  std::function<std::optional<FileFault>(const Input& file)> judge_file;
  // Of one kind, so many are shown.
  std::size_t most_shown = 5;

  // `what`: lower case, one sentence, no full stop, to be understood without its surroundings. `help`: what
  // was expected or probably meant, may be empty; or a function that tells it, called only when it will be
  // shown.
  void error(const Place& place, std::string_view what, std::string_view help = {},
             Site kind = Site::current()) {
    report(Severity::error, place, what, help, kind);
  }
  void warning(const Place& place, std::string_view what, std::string_view help = {},
               Site kind = Site::current()) {
    report(Severity::warning, place, what, help, kind);
  }
  template <std::invocable Help>
  void error(const Place& place, std::string_view what, Help help, Site kind = Site::current()) {
    report(Severity::error, place, what, help, kind);
  }
  template <std::invocable Help>
  void warning(const Place& place, std::string_view what, Help help, Site kind = Site::current()) {
    report(Severity::warning, place, what, help, kind);
  }
  // An error or a warning, as the caller must find out first.
  void report(Severity severity, const Place& place, std::string_view what, std::string_view help,
              Site kind) {
    if (Entry* const entry = add(severity, place, what, kind)) entry->help = help;
  }
  template <std::invocable Help>
  void report(Severity severity, const Place& place, std::string_view what, Help help, Site kind) {
    if (Entry* const entry = add(severity, place, what, kind)) entry->help = help();
  }

  // Reports the fault of a file as a whole as an error; false when it has none.
  bool report_fault_of(const Input& file);
  // Counts something that follows from what has been told of in the record of `cause`, whose finding says
  // how many of it there are; false, and nothing is counted, when nothing has been told there.
  bool follows(const Place& cause, std::string_view noun, Severity severity = Severity::warning);

  // Whether something was told of the record of a place.
  bool is_told(const Place& place) const;
  // Where a finding stands whose text begins so, the first of several, or with which it is told; no unit when
  // there is none.
  Place place_of(std::string_view beginning) const;
  // Counts a finding of this text, which is not told by itself, as told with those of a record.
  void tell_with(const Place& cause, std::string_view what) { told_with_.emplace(what, cause); }
  // Adds to the help of the last finding in a record, as long as it can be read.
  void extend_help(const Place& place, std::string_view text);
  // Gives a finding about a file as a whole, whose text begins so, a place and a help; false when there is
  // none.
  bool settle(std::string_view beginning, const Place& place, std::string_view help);

  int errors() const { return errors_; }
  int warnings() const { return warnings_; }

  // The findings as text for standard error, or nothing when there are none.
  std::string render() const;
  // The same with a last line that sums up; `state` of the store file ends it.
  std::string render(std::string_view state) const;
  // The findings in the order in which they came: all with `keep_all`, else those that `render` shows.
  std::vector<FindingReport> reports() const;
  // Findings that `render` leaves out from now on, in the order of `reports`.
  void leave_out(const std::vector<bool>& which);

 private:
  struct Kind {
    Site site;
    std::unordered_set<std::size_t> taken;  // hashes of place and text
  };
  struct Entry {
    Severity severity;
    bool shown;
    bool folded;       // into the fault of its file
    std::size_t kind;  // in kinds_
    Place place;
    std::string what;
    std::string help;
  };
  // What follows from the findings in a record: how many of what.
  struct Consequences {
    std::size_t entry;  // the last of these findings, in entries_
    std::vector<std::pair<std::string, int>> counts;
  };

  // Where to put the help of a finding; none for one that was taken already, is only counted, or follows from
  // the fault of a file.
  Entry* add(Severity severity, const Place& place, std::string_view what, const Site& site);
  Entry* add_entry(Severity severity, const Place& place, std::string_view what, const Site& site);
  std::size_t kind_of(const Site& site);
  void raise(Entry& entry, Severity severity);
  const std::optional<FileFault>& fault_of(const Input& file);
  void tell_fault(const Input& file, const FileFault& fault);
  std::string text_of(std::size_t entry) const;
  std::string help_of(const Entry& entry) const;

  int errors_ = 0;
  int warnings_ = 0;
  std::vector<Kind> kinds_;
  std::vector<Entry> entries_;
  std::unordered_map<std::size_t, Consequences> records_;              // with findings, by hash of the place
  std::unordered_map<const Input*, std::optional<FileFault>> faults_;  // of the files that were judged
  std::unordered_map<std::string, Place> told_with_;                   // by the text of the finding
};

// Joins the parts of a message: texts (a Text<N> without its padding), integers, reals in their shortest
// form.
std::string part_of_message(std::string_view text);
std::string part_of_message(int value);
std::string part_of_message(double value);
template <std::size_t N>
std::string part_of_message(const Text<N>& text) {
  return part_of_message(trimmed(text.view()));
}
template <class... Parts>
std::string message(const Parts&... parts) {
  return (part_of_message(parts) + ...);
}
// A number in three significant digits, for values of which only the size matters.
std::string about(double value);
// A fraction as a percentage, to a tenth.
double percent(double fraction);
// "1 record", "3 records".
std::string counted(int count, std::string_view noun);
// "1 error, 2 warnings", "no findings".
std::string summary(int errors, int warnings);
// "A, B, C": the first five names of a list, and how many more there are.
template <class Names>
std::string list_of(const Names& names) {
  constexpr std::size_t most_listed = 5;
  std::string list;
  std::size_t count = 0;
  for (const auto& name : names) {
    if (++count <= most_listed) list += message(count > 1 ? ", " : "", name);
  }
  return count <= most_listed ? list : message(list, " and ", static_cast<int>(count - most_listed), " more");
}

// Finds the candidate that a misspelt name probably means: equal but for letter case, or for characters that
// look alike (odd_characters.h), or one or two edits away.
class Nearest {
 public:
  explicit Nearest(std::string_view name);

  Nearest& offer(std::string_view candidate);
  template <class Range>
  Nearest& offer_all(const Range& names) {
    for (const auto& name : names) {
      if constexpr (requires { name.view(); }) {
        offer(name.view());
      } else {
        offer(name);
      }
    }
    return *this;
  }

  // "did you mean 'H2O'?", or nothing when no candidate is close enough.
  std::string help() const;

 private:
  std::string name_;
  std::string plain_name_;
  std::string best_;
  int distance_ = 5;  // 2 for an edit, 1 for a character that looks like the right one
};

}  // namespace varpre
