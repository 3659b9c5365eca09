#include "driver/file_faults.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "files/section_findings.h"
#include "textio/record/number_format.h"
#include "textio/record/text.h"

namespace varpre {
namespace {

using Fault = std::optional<FileFault>;

// The beginning of a file: what it is shows there.
constexpr int lines_looked_at = 1000;

// Visits the first lines of a file, with their numbers, that are neither blank nor comments.
template <class Visit>
void for_each_line(const Input& file, Visit visit) {
  file.for_each_record([&](int number, std::string_view line) {
    const bool comment = line.starts_with("****") || line.starts_with("----");
    if (number <= lines_looked_at && !comment && !trimmed(line).empty()) visit(number, line);
  });
}

std::string_view without_indent(std::string_view line) {
  return line.substr(std::min(line.find_first_not_of(" \t"), line.size()));
}

std::string_view next_word(std::string_view& line) {
  line = without_indent(line);
  const std::string_view word = line.substr(0, line.find_first_of(" \t"));
  line.remove_prefix(word.size());
  return word;
}

// --- the encoding -----------------------------------------------------------

bool is_utf16(std::string_view text) {
  if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) return true;
  constexpr std::size_t looked_at = 400;
  const std::string_view start = text.substr(0, looked_at);
  std::array<std::size_t, 2> zeros{};  // at even and at odd places
  for (std::size_t i = 0; i < start.size(); ++i) {
    if (start[i] == '\0') ++zeros[i % 2];
  }
  return start.size() > 8 && std::max(zeros[0], zeros[1]) > start.size() / 3 &&
         std::min(zeros[0], zeros[1]) < start.size() / 20 + 1;
}

Fault fault_of_encoding(const Input& file) {
  const std::string_view text = file.text;
  if (text.find_first_not_of(" \t\r\n") == std::string_view::npos) {
    return FileFault{0, message("the file ", file.name, " is empty"), ""};
  }
  if (is_utf16(text)) {
    return FileFault{0, message("the file ", file.name, " is written in UTF-16"),
                     "save it as plain text (ASCII or UTF-8)"};
  }
  if (text.starts_with("PK\x03\x04")) {
    return FileFault{0,
                     message("the file ", file.name, " is no text but a ZIP archive or an office document"),
                     "save its content as plain text"};
  }
  if (text.find('\0') != std::string_view::npos) {
    return FileFault{0, message("the file ", file.name, " is no text: it holds zero bytes"), ""};
  }
  if (text.find('\n') == std::string_view::npos && text.find('\r') != std::string_view::npos) {
    return FileFault{
        0, message("the lines of ", file.name, " end in carriage returns only: it counts as one line"),
        "save it with the line ends of Unix or Windows"};
  }
  return {};
}

// --- the kind of file -------------------------------------------------------

// What the lines of a file look like.
struct Shape {
  int lines = 0;
  int database_lines = 0;  // with the number of a card, 1 to 4, in column 80
  int molecules = 0;       // a name, a geometry index and at least five numbers
  int yaml_keys = 0;       // "key:" from the first column on
  int own_headings_MEC = 0;
  int own_headings_INP = 0;
  int other_headings = 0;   // ELEMENTS, SPECIES, REACTIONS
  std::string_view markup;  // what the first line begins
};

bool is_molecule(std::string_view line) {
  next_word(line);
  const std::string_view index = next_word(line);
  if (index != "0" && index != "1" && index != "2") return false;
  int numbers = 0;
  while (read_free_real(next_word(line))) ++numbers;
  return numbers >= 5;
}

bool is_yaml_key(std::string_view line) {
  const std::string_view word = line.substr(0, line.find_first_of(" \t"));
  const bool item = line.starts_with("- ") && line.find(": ") != std::string_view::npos;
  return item || (word.size() > 2 && word.ends_with(':') && word.front() >= 'a' && word.front() <= 'z');
}

bool opens(std::string_view line, std::initializer_list<const Section*> which) {
  return std::any_of(which.begin(), which.end(), [&](const Section* s) { return s->opens_with(line); });
}

std::string_view markup_begun_by(std::string_view line) {
  if (EQUSYM(9, line, "<!DOCTYPE") || EQUSYM(5, line, "<HTML")) return "a web page";
  if (EQUSYM(5, line, "<?XML")) return "XML";
  return trimmed(line) == "{" || trimmed(line) == "[" || line.starts_with("{\"") ? "JSON" : "";
}

Shape shape_of(const Input& file) {
  Shape shape;
  for_each_line(file, [&](int, std::string_view line) {
    constexpr std::size_t card = 79;
    ++shape.lines;
    if (shape.lines == 1) shape.markup = markup_begun_by(line);
    if (line.size() > card && line[card] >= '1' && line[card] <= '4') ++shape.database_lines;
    if (is_molecule(line)) ++shape.molecules;
    if (is_yaml_key(line)) ++shape.yaml_keys;
    if (opens(line,
              {&sections::named("the gas-phase mechanism"), &sections::named("the collision efficiencies")}))
      ++shape.own_headings_MEC;
    if (opens(line, {&sections::named("the options"), &sections::named("the gas-phase species list"),
                     &sections::named("the flame conditions")}))
      ++shape.own_headings_INP;
    if (EQUSYM(4, line, "ELEM") || EQUSYM(4, line, "SPEC") || EQUSYM(4, line, "REAC")) ++shape.other_headings;
  });
  return shape;
}

// What a file is, as far as it is none of the kind its name says.
std::string_view other_kind(const Input& file) {
  const Shape shape = shape_of(file);
  const std::string_view name = file.name;
  const auto is = [&](std::string_view kind) { return name.ends_with(kind); };
  const auto most = [&](int lines) { return 2 * lines > shape.lines; };
  if (!shape.markup.empty()) return shape.markup;
  if (shape.yaml_keys > 2) return "YAML";
  if (most(shape.database_lines)) return is("THERMO") ? "" : "a thermochemical database, as THERMO is";
  if (most(shape.molecules)) return is("MOLNEW") ? "" : "a molecular database, as MOLNEW is";
  if (is("MEC") ? shape.own_headings_MEC > 0 : is("INP") && shape.own_headings_INP > 0) return "";
  if (shape.other_headings > 1) return "a mechanism of another program";
  if (shape.own_headings_INP > 1) return "an input like INP";
  return shape.own_headings_MEC > 0 ? "a mechanism, as MEC is" : "";
}

Fault fault_of_kind(const Input& file) {
  const std::string_view kind = other_kind(file);
  if (kind.empty()) return {};
  const bool importable = kind == "YAML" || kind.starts_with("a mechanism of");
  return FileFault{0, message("the file ", file.name, " looks like ", kind),
                   importable ? "varpre-import brings mechanisms of other programs into the files read here"
                              : "are two files exchanged?"};
}

// --- the lines --------------------------------------------------------------

Fault fault_of_indent(const Input& file) {
  constexpr std::size_t most = 20;
  std::size_t least = most + 1;
  int lines = 0;
  for_each_line(file, [&](int, std::string_view line) {
    ++lines;
    least = std::min(least, line.size() - without_indent(line).size());
  });
  if (lines < 3 || least == 0 || least > most) return {};
  return FileFault{1,
                   message("every line begins with a blank: all is shifted by ",
                           counted(static_cast<int>(least), "column"), " to the right"),
                   "headings, keywords and names begin in column 1"};
}

// A mark that every line begins with: of a citation, or of a difference of two files.
Fault fault_of_marks(const Input& file) {
  constexpr std::string_view marks = ">+|";
  constexpr int least_lines = 5;
  std::array<int, marks.size()> count{};
  int lines = 0;
  for_each_line(file, [&](int, std::string_view line) {
    ++lines;
    if (const std::size_t mark = marks.find(line.front()); mark != marks.npos) ++count[mark];
  });
  const auto most = std::max_element(count.begin(), count.end());
  if (lines < least_lines || 10 * *most < 8 * lines) return {};
  return FileFault{
      1,
      message("the lines begin with \"", marks.substr(static_cast<std::size_t>(most - count.begin()), 1),
              "\", as in a citation or a difference of two files"),
      "headings, keywords and names begin in column 1: delete these marks"};
}

// Tabs where blanks divide and columns are counted.
Fault fault_of_tabs(const Input& file) {
  constexpr int least_lines = 5;
  int first = 0;
  int count = 0;
  int lines = 0;
  for_each_line(file, [&](int number, std::string_view line) {
    ++lines;
    if (line.substr(0, line.find('!')).find('\t') == line.npos) return;
    ++count;
    if (first == 0) first = number;
  });
  if (count < least_lines || 3 * count < lines) return {};
  return FileFault{first, message(count, " lines of ", file.name, " hold tabs, this one first"),
                   "a tab divides nothing here, and columns are counted: write blanks instead"};
}

// Small letters throughout, where the headings of INP have capitals.
Fault fault_of_small_letters(const Input& file) {
  if (!file.name.ends_with("INP")) return {};
  int small = 0;
  int capital = 0;
  for_each_line(file, [&](int, std::string_view line) {
    for (const char c : line) {
      if (c >= 'a' && c <= 'z') ++small;
      if (c >= 'A' && c <= 'Z') ++capital;
    }
  });
  constexpr int least = 50;
  if (small < least || capital > 0) return {};
  return FileFault{1, message("the file ", file.name, " is written in small letters"),
                   "its headings and keywords are in capitals"};
}

// Blank lines everywhere, as a file has that went through a mail or was converted.
Fault fault_of_blank_lines(const Input& file) {
  int blank = 0;
  int first = 0;
  int lines = 0;
  file.for_each_record([&](int number, std::string_view line) {
    ++lines;
    if (!trimmed(line).empty()) return;
    ++blank;
    if (first == 0) first = number;
  });
  if (blank < 5 || 5 * blank < 2 * lines || file.name.ends_with("MOLNEW")) return {};
  return FileFault{first, message(blank, " of the ", lines, " lines of ", file.name, " are blank"),
                   "a blank line counts like any other: delete them"};
}

// The first line that does not follow the one before as the lines of entries do, by the numbers in column 80.
Fault fault_of_entries(const Input& file) {
  Fault fault;
  int expected = 1;
  int blank = 0;  // the last blank line
  bool other_heading = false;
  file.for_each_record([&](int number, std::string_view line) {
    constexpr std::size_t card = 79;
    if (fault || line.starts_with("****") || line.starts_with("----")) return;
    if (number == 1 && EQUSYM(5, line, "THERM")) other_heading = true;
    if (other_heading) return;  // which is told of by itself
    if (trimmed(line).empty()) {
      blank = number;
      return;
    }
    if (blank > 0) {
      fault = FileFault{blank, "this blank line counts as one of the four lines of an entry",
                        "nothing stands between the entries: delete it"};
      return;
    }
    const int found = line.size() > card ? line[card] - '0' : 0;
    if (found >= 1 && found <= 4 && found != expected) {
      fault =
          FileFault{number, message("this is line ", found, " of an entry, where line ", expected, " is due"),
                    "each entry has four lines, which column 80 numbers: one is missing, or stands twice"};
    }
    expected = expected % 4 + 1;
  });
  return fault;
}

}  // namespace

std::optional<FileFault> conflict_in(const Input& file) {
  if (file.text.find("<<<<<<< ") == file.text.npos && file.text.find(">>>>>>> ") == file.text.npos)
    return std::nullopt;
  int first = 0;
  bool is_marked = false;  // by more than a line of =, which may be an ornament
  file.for_each_record([&](int number, std::string_view line) {
    const bool mark = line.starts_with("<<<<<<< ") || line.starts_with(">>>>>>> ");
    is_marked |= mark;
    if (first == 0 && (mark || line.starts_with("======="))) first = number;
  });
  if (!is_marked) return std::nullopt;
  return FileFault{first, "this line marks a conflict of two versions of the file",
                   "choose between the lines up to ======= and those up to >>>>>>>, and delete the marks"};
}

std::optional<FileFault> fault_of_file(const Input& file) {
  if (file.was_absent() || file.read_error() != 0) return std::nullopt;  // which is told
  for (const auto fault_of : {fault_of_encoding, fault_of_kind, fault_of_indent, fault_of_marks,
                              fault_of_tabs, fault_of_small_letters, fault_of_blank_lines, conflict_in}) {
    if (Fault fault = fault_of(file)) return fault;
  }
  return file.name.ends_with("THERMO") ? fault_of_entries(file) : Fault{};
}

}  // namespace varpre
