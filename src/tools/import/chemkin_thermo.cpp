#include "tools/import/chemkin_thermo.h"

#include <algorithm>
#include <cmath>

#include "thermo/elements.h"

namespace varpre {
namespace {

constexpr std::size_t name_width = 18;

std::string_view field(const ChemkinLine& line, int first, int width) {
  return columns(line.text, first, width);
}
Place place_of(const ChemkinLine& line, int first, int width) {
  return line.place(static_cast<std::size_t>(first - 1), static_cast<std::size_t>(width));
}

bool is_blank(std::string_view text) {
  return trimmed(text).empty();
}

// A field without the blanks around it.
std::string_view inner(std::string_view text) {
  return trimmed(text.substr(std::min(text.find_first_not_of(' '), text.size())));
}

// Whether a line begins with a name, not with a number.
bool begins_with_name(const ChemkinLine& line) {
  const char first = line.text[line.text.find_first_not_of(' ')];
  return !is_digit(first) && first != '.' && first != '-' && first != '+';
}

// The name of an entry, up to the first blank; one that runs into the date is cut there.
std::string entry_name(const ChemkinLine& line) {
  const std::vector<Word> words = words_of(std::string_view(line.text).substr(0, name_width));
  return words.empty() ? std::string() : std::string(words.front().text);
}

// Three temperatures that stand for those an entry lacks.
std::optional<std::array<double, 3>> read_defaults(const ChemkinLine& line) {
  std::array<double, 3> temperatures{};
  const std::vector<Word> words = words_of(line.text);
  if (words.size() < temperatures.size()) return std::nullopt;
  for (std::size_t i = 0; i < temperatures.size(); ++i) {
    const auto value = chemkin_number(words[i].text);
    if (!value) return std::nullopt;
    temperatures[i] = static_cast<double>(*value);
  }
  return temperatures;
}

// Reads one entry.
class EntryReader {
 public:
  EntryReader(const std::vector<ChemkinLine>& lines, const std::array<double, 3>& defaults,
              ImportedSpecies& species, const ChemkinElements& elements, Import& import)
      : lines_(lines), defaults_(defaults), species_(species), elements_(elements), import_(import) {}

  bool read() {
    first_ = lines_.front();
    const bool goes_on = first_.take_continuation();
    first_coefficients_ = 1;
    if (!read_elements_of_first_line()) return false;
    if (goes_on && !read_further_elements()) return false;
    return read_limits() && read_coefficients() && make_ranges();
  }

 private:
  bool fail(const Place& place, std::string_view what, std::string_view help = {}) {
    import_.findings.error(place, message("the entry of ", species_.name, ": ", what), help);
    return false;
  }
  bool refuse(const Place& place, std::string_view reason, std::string_view help = {}) {
    import_.refuse(place, message("species ", species_.name), reason, help);
    return false;
  }

  bool read_elements_of_first_line() {
    for (const int column : {25, 30, 35, 40, 74}) {
      std::string_view text = field(first_, column, 5);
      if (column == 74) text = text.substr(std::min(behind_common(), text.size()));
      if (!read_pair(text, place_of(first_, column, 5))) return false;
    }
    for (int column = 81; column <= 96; column += 5) {
      if (!read_pair(field(first_, column, 5), place_of(first_, column, 5))) return false;
    }
    return true;
  }

  // How many characters behind column 73 belong to the common temperature.
  std::size_t behind_common() const {
    const std::string_view rest = field(first_, 73, 6);
    if (rest.empty() || rest.front() == ' ') return 0;
    const std::size_t end = std::min(rest.find_first_not_of("0123456789.", 1), rest.size());
    return end - 1;
  }

  // A symbol of two columns and a count of three.
  bool read_pair(std::string_view text, const Place& place) {
    const std::size_t begin = std::min(text.find_first_not_of(' '), text.size());
    const std::size_t end = std::min(text.find_first_of(" 0123456789.+-", begin), text.size());
    const std::string_view symbol = text.substr(begin, end - begin);
    const std::string_view count = text.substr(end);
    if (symbol.empty() && is_blank(count)) return true;
    const auto value = is_blank(count) ? std::optional<long double>(0) : chemkin_number(count);
    if (!value || symbol.size() > 2)
      return fail(place, message("'", inner(text), "' is no element and its count"),
                  "a symbol of two columns and a count of three, from column 25 on");
    if (*value == 0) return true;
    const bool is_card_number = field(first_, 80, 1) != "1" && trimmed(text).ends_with('1') && *value == 1;
    if (symbol.empty() && is_card_number) return true;
    if (symbol.empty()) return fail(place, message("'", inner(text), "' is a count without element"));
    return take(in_capitals(std::string(symbol)), static_cast<double>(*value), place);
  }

  bool read_further_elements() {
    for (bool goes_on = true; goes_on;) {
      if (first_coefficients_ >= lines_.size())
        return fail(first_.place(), "the line with further elements is due behind it");
      ChemkinLine line = lines_[first_coefficients_++];
      goes_on = line.take_continuation();
      const std::vector<Word> words = words_of(line.text);
      for (std::size_t i = 0; i < words.size(); i += 2) {
        const Place place = line.place(words[i]);
        const auto count = i + 1 < words.size() ? chemkin_number(words[i + 1].text) : std::nullopt;
        if (!count) return fail(place, message("no count stands behind '", words[i].text, "'"));
        if (*count != 0 && !take(in_capitals(std::string(words[i].text)), static_cast<double>(*count), place))
          return false;
      }
    }
    return true;
  }

  bool take(const std::string& symbol, double count, const Place& place) {
    if (symbol == "E") return refuse(place, "charged species and electrons cannot be held");
    const auto declared = elements_.find(symbol);
    if (declared == elements_.end())
      return fail(place, message("its element '", symbol, "' is not among the ELEMENTS"));
    const double usual = 1000 * element_mass(symbol);
    if (usual == 0)
      return refuse(place, message("'", symbol, "' is not an element that is known here"),
                    "isotopes are no elements here");
    constexpr double tolerance = 0.001;
    if (declared->second && std::abs(*declared->second - usual) > tolerance * usual)
      return refuse(place, message("the file gives '", symbol, "' another weight than the element has"));
    if (count != std::floor(count) || count < 0 || count > 999)
      return refuse(place, message(count, " atoms of ", symbol, " cannot be held"),
                    "a count is a whole number up to 999");
    const auto same = std::find_if(species_.atoms.begin(), species_.atoms.end(),
                                   [&](const auto& atom) { return atom.first == symbol; });
    if (same != species_.atoms.end()) {
      same->second += static_cast<int>(count);
    } else {
      species_.atoms.emplace_back(symbol, static_cast<int>(count));
    }
    return species_.atoms.size() <= 4 || refuse(species_.place, "it is made of more than four elements");
  }

  bool read_limits() {
    const std::size_t common_width = 8 + behind_common();
    const std::array fields{field(first_, 46, 10), field(first_, 56, 10),
                            field(first_, 66, static_cast<int>(common_width))};
    constexpr std::array first_column{46, 56, 66};
    constexpr std::array default_of{0, 2, 1};
    for (std::size_t i = 0; i < fields.size(); ++i) {
      const double usual = defaults_[static_cast<std::size_t>(default_of[i])];
      const auto value = chemkin_number(fields[i]);
      if (is_blank(fields[i]) && usual > 0) {
        limits_[i] = usual;
      } else if (value && *value >= 0) {
        limits_[i] = static_cast<double>(*value);
      } else {
        return fail(place_of(first_, first_column[i], 10),
                    is_blank(fields[i]) ? "a temperature limit is missing"
                                        : message("'", inner(fields[i]), "' is no temperature"),
                    "columns 46-55, 56-65 and 66-73 hold the lowest, the highest and the common temperature");
      }
    }
    if (limits_[2] == 0) limits_[2] = defaults_[1] > 0 ? defaults_[1] : usual_common;
    if (limits_[0] < limits_[1] && limits_[0] <= limits_[2] && limits_[2] <= limits_[1]) return true;
    return fail(place_of(first_, 46, 28),
                message("its temperatures do not rise: ", limits_[0], ", ", limits_[2], ", ", limits_[1]));
  }

  bool read_coefficients() {
    constexpr std::array counts{5, 5, 4};
    const std::size_t lines = lines_.size() - first_coefficients_;
    if (lines != counts.size())
      return fail(first_.place(),
                  message("three lines with coefficients are due behind it, not ", static_cast<int>(lines)));
    std::size_t next = 0;
    for (std::size_t k = 0; k < counts.size(); ++k) {
      const ChemkinLine& line = lines_[first_coefficients_ + k];
      if (!has_its_number(line, static_cast<int>(k) + 2)) return false;
      for (int i = 0; i < counts[k]; ++i) {
        constexpr int width = 15;
        const std::string_view text = field(line, 1 + width * i, width);
        const auto value = is_blank(text) ? std::nullopt : chemkin_number(text);
        if (!value)
          return fail(place_of(line, 1 + width * i, width),
                      is_blank(text) ? message("a coefficient is missing in columns ", 1 + width * i, "-",
                                               width * (i + 1))
                                     : message("'", inner(text), "' is no coefficient"),
                      "five fields of 15 columns");
        coefficients_[next++] = static_cast<double>(*value);
      }
    }
    return true;
  }

  // The number at the end of a line, where there is one, in or beside column 80.
  bool has_its_number(const ChemkinLine& line, int number) {
    const std::string_view text = trimmed(field(line, 76, 8));
    if (text.empty() || !is_digit(text.back()) || text.back() == static_cast<char>('0' + number)) return true;
    if (text.size() > 1 && text[text.size() - 2] != ' ') return true;  // the end of something else
    return fail(line.place(), message("line ", number, " of the entry is due here"));
  }

  // One range only: the other's coefficients are all zero, or the common temperature is a limit.
  bool make_ranges() {
    std::array<double, 7> upper{};
    std::array<double, 7> lower{};
    std::copy_n(coefficients_.begin(), 7, upper.begin());
    std::copy_n(coefficients_.begin() + 7, 7, lower.begin());
    const auto is_zero = [](const std::array<double, 7>& a) {
      return std::all_of(a.begin(), a.end(), [](double x) { return x == 0; });
    };
    if (is_zero(lower)) lower = upper;
    if (is_zero(upper)) upper = lower;
    const auto [low, high, common] = limits_;
    if (low < common) species_.thermo.add(low, common, lower);
    if (common < high) species_.thermo.add(common, high, upper);
    return true;
  }

  static constexpr double usual_common = 1000;  // K

  const std::vector<ChemkinLine>& lines_;
  const std::array<double, 3>& defaults_;
  ImportedSpecies& species_;
  const ChemkinElements& elements_;
  Import& import_;
  ChemkinLine first_;
  std::size_t first_coefficients_ = 1;
  std::array<double, 3> limits_{};  // lowest, highest, common
  std::array<double, 14> coefficients_{};
};

}  // namespace

void read_elements(const ChemkinSection& section, ChemkinElements& elements, Findings& findings) {
  for (const ChemkinLine& line : section.lines) {
    std::string text = line.text;
    for (std::size_t begin = 0; (begin = text.find_first_not_of(' ', begin)) != std::string::npos;) {
      const std::size_t end = std::min(text.find_first_of(" /", begin), text.size());
      const std::string symbol = in_capitals(text.substr(begin, end - begin));
      const Place place = line.place(begin, end - begin);
      std::optional<double> mass;
      const std::size_t stroke = text.find_first_not_of(' ', end);
      begin = end;
      if (stroke != std::string::npos && text[stroke] == '/') {
        const std::size_t close = text.find('/', stroke + 1);
        const auto value =
            close == std::string::npos
                ? std::nullopt
                : chemkin_number(std::string_view(text).substr(stroke + 1, close - stroke - 1));
        if (!value || *value <= 0) {
          findings.error(line.place(stroke, 1), message("a mass is due between the strokes behind ", symbol));
          break;
        }
        mass = static_cast<double>(*value);
        begin = close + 1;
      }
      if (!mass && symbol != "E" && element_mass(symbol) == 0)
        findings.error(place, message("'", symbol, "' is not an element that is known here"),
                       "isotopes are no elements here");
      elements.try_emplace(symbol, mass);
    }
  }
}

void ThermoEntries::add_entry(Entry entry) {
  const Place place = entry.lines.front().place();
  const std::string name = entry_name(entry.lines.front());
  const auto [known, first] = entries_.add(name, std::move(entry));
  if (!first && known.lines.front().place().unit == place.unit) known.repeated.push_back(place);
}

void ThermoEntries::add(const ChemkinSection& section, Findings& findings) {
  for (const Word& word : words_of(section.heading.text)) {
    if (in_capitals(std::string(word.text)) != "NASA9") continue;
    findings.error(section.heading.place(word), "entries of nine coefficients cannot be read");
    return;
  }
  Entry entry;
  std::size_t begin = 0;
  if (!section.lines.empty() && !begins_with_name(section.lines.front())) {
    if (const auto defaults = read_defaults(section.lines.front())) {
      entry.defaults = *defaults;
    } else {
      findings.error(section.lines.front().place(), "three temperatures or an entry are due here");
    }
    begin = 1;
  }
  bool elements_follow = false;
  for (std::size_t i = begin; i < section.lines.size(); ++i) {
    ChemkinLine line = section.lines[i];
    constexpr std::size_t whole = 4;  // lines; a name that stands in column 1 begins an entry anyway
    const bool begins = begins_with_name(line) && (line.text.front() != ' ' || entry.lines.size() >= whole);
    if (begins && !elements_follow && !entry.lines.empty()) {
      add_entry(entry);
      entry.lines.clear();
    }
    entry.lines.push_back(line);
    elements_follow = line.take_continuation();
  }
  if (!entry.lines.empty()) add_entry(entry);
}

const ThermoEntries::Entry* ThermoEntries::find(const std::string& name) const {
  const Entry* const entry = entries_.find(name);
  return entry != nullptr ? entry : entries_.find(name.substr(0, name_width));
}

bool ThermoEntries::has(const std::string& name) const {
  return find(name) != nullptr;
}

bool ThermoEntries::read(ImportedSpecies& species, const ChemkinElements& elements, Import& import) const {
  const Entry& entry = *find(species.name);
  for (const Place& repeated : entry.repeated) {
    import.findings.warning(repeated,
                            message("this entry of ", species.name, " is not read: the first one counts"));
  }
  return EntryReader(entry.lines, entry.defaults, species, elements, import).read();
}

}  // namespace varpre
