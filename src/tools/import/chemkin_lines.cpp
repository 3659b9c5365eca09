#include "tools/import/chemkin_lines.h"

#include <algorithm>
#include <array>

#include "textio/record/text.h"
#include "tools/import/units.h"

namespace varpre {
namespace {

constexpr std::size_t longest_line = 4000;  // characters, continued ones together

using Kind = ChemkinSection::Kind;

// Keywords that open a section; of each the first four letters are enough.
constexpr std::array<std::pair<std::string_view, Kind>, 7> section_keywords{{{"ELEMENTS", Kind::elements},
                                                                             {"SPECIES", Kind::species},
                                                                             {"THERMO", Kind::thermo},
                                                                             {"REACTIONS", Kind::reactions},
                                                                             {"TRANSPORT", Kind::transport},
                                                                             {"SITE", Kind::site},
                                                                             {"BULK", Kind::bulk}}};

// The keyword a word is, with what may follow it behind a stroke: "SITE/name/", "THERMO", "REAC".
std::optional<Kind> section_keyword(std::string_view word) {
  const std::string capitals = in_capitals(std::string(word.substr(0, word.find('/'))));
  constexpr std::size_t shortest = 4;
  for (const auto& [keyword, kind] : section_keywords) {
    const bool with_stroke = kind == Kind::site || kind == Kind::bulk;
    if (capitals.size() >= shortest && keyword.starts_with(capitals) &&
        (with_stroke || capitals.size() == word.size())) {
      return kind;
    }
  }
  return std::nullopt;
}

bool is_end(std::string_view word) {
  return word.size() == 3 && EQUSYM(3, word, "END");
}

// The first line with more than a comment of any of the formats.
std::string_view first_line(std::string_view text) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.starts_with("\xEF\xBB\xBF")) line.remove_prefix(3);
    const std::size_t begin = line.find_first_not_of(" \t\r");
    if (begin != std::string_view::npos && line[begin] != '!' && line[begin] != '#')
      return line.substr(begin);
  }
  return {};
}

// Whether the lines of a section are words, END among them, which begin behind its keyword.
bool holds_words(Kind kind) {
  return kind == Kind::elements || kind == Kind::species || kind == Kind::site || kind == Kind::bulk;
}

// Adds the words of a section's line that stand before END to it; whether END stands there.
bool add_line(ChemkinLine line, ChemkinSection& section) {
  const bool in_words = holds_words(section.kind);
  for (const Word& word : words_of(line.text)) {
    if (is_end(word.text)) {
      line.text.resize(begin_of(word));
      if (!line.blank()) section.lines.push_back(std::move(line));
      return true;
    }
    if (!in_words) break;
  }
  if (!line.blank()) section.lines.push_back(std::move(line));
  return false;
}

}  // namespace

MechanismFormat mechanism_format(std::string_view text) {
  const std::string_view line = first_line(text);
  const std::string_view word = line.substr(0, line.find_first_of(" \t\r!"));
  if (line.starts_with('<')) return MechanismFormat::xml;
  if (section_keyword(word)) return MechanismFormat::chemkin;
  constexpr std::array<std::string_view, 6> calls{"units",    "ideal_gas", "ideal_interface",
                                                  "validate", "species",   "reaction"};
  const std::string_view name = line.substr(0, line.find_first_of(" \t("));
  const bool call = line.find('(') < line.find(':');
  if (line.starts_with("\"\"\"") || (call && std::find(calls.begin(), calls.end(), name) != calls.end()))
    return MechanismFormat::cti;
  return MechanismFormat::yaml;
}

ChemkinLine::ChemkinLine(const Input& file, int record, std::string_view line)
    : text(line.substr(0, line.find('!'))), file_(&file), pieces_{{0, record}} {
  std::replace(text.begin(), text.end(), '\t', ' ');
}

bool ChemkinLine::blank() const {
  return text.find_first_not_of(' ') == std::string::npos;
}

bool ChemkinLine::take_continuation() {
  const std::size_t last = text.find_last_not_of(' ');
  if (last == std::string::npos || text[last] != '&') return false;
  text.resize(last);
  return true;
}

void ChemkinLine::append(const ChemkinLine& next) {
  for (const Piece& piece : next.pieces_) pieces_.push_back({text.size() + piece.begin, piece.record});
  text += next.text;
}

Place ChemkinLine::place(std::size_t begin, std::size_t width) const {
  const auto behind =
      std::find_if(pieces_.begin(), pieces_.end(), [&](const Piece& p) { return p.begin > begin; });
  const Piece& piece = *(behind - 1);
  return {file_, piece.record, static_cast<int>(begin - piece.begin) + 1,
          std::max(static_cast<int>(width), 1)};
}

Place ChemkinLine::place() const {
  const std::size_t begin = std::min(text.find_first_not_of(' '), text.size());
  const std::size_t end = pieces_.size() > 1 ? pieces_[1].begin : text.size();
  return place(begin, trimmed(std::string_view(text).substr(0, end)).size() - std::min(begin, end));
}

std::optional<std::vector<ChemkinItem>> items_of(const ChemkinLine& line, Findings& findings) {
  const std::string_view text = line.text;
  const auto skip_blanks = [&](std::size_t i) {
    return std::min(text.find_first_not_of(' ', i), text.size());
  };
  const auto stretch = [&](std::size_t from, std::size_t to) {
    return Word{text.substr(from, to - from), static_cast<int>(from) + 1};
  };
  std::vector<ChemkinItem> items;
  for (std::size_t begin = skip_blanks(0); begin < text.size();) {
    const std::size_t end = std::min(text.find_first_of(" /", begin), text.size());
    ChemkinItem item{stretch(begin, end), false, {}};
    const std::size_t stroke = skip_blanks(end);
    begin = end;
    if (stroke < text.size() && text[stroke] == '/') {
      const bool units = EQUSYM(5, item.word.text, "UNITS");  // which have strokes themselves
      const std::size_t close = units ? text.rfind('/') : text.find('/', stroke + 1);
      if (close == std::string_view::npos || close == stroke) {
        findings.error(line.place(stroke, 1), "another stroke is due behind this one");
        return std::nullopt;
      }
      item.has_content = true;
      item.content = stretch(stroke + 1, close);
      begin = close + 1;
    }
    items.push_back(item);
    begin = skip_blanks(begin);
  }
  return items;
}

std::vector<ChemkinSection> sections_of(const Input& file, std::optional<Kind> unnamed, Findings& findings) {
  std::vector<ChemkinSection> sections;
  bool open = false;
  file.for_each_record([&](int record, std::string_view text) {
    ChemkinLine line(file, record, text);
    if (line.blank()) return;
    if (line.text.size() > longest_line) {
      findings.error({&file, record},
                     message("this line has more than ", static_cast<int>(longest_line), " characters"));
      return;
    }
    const std::vector<Word> words = words_of(line.text);
    const Word& word = words.front();
    if (const auto kind = section_keyword(word.text)) {
      sections.push_back({*kind, line, begin_of(word), {}});
      ChemkinLine rest = line;
      const std::size_t end = begin_of(word) + std::min(word.text.find('/'), word.text.size());
      std::fill_n(rest.text.begin(), end, ' ');
      sections.back().heading = rest;
      open = !holds_words(*kind) || !add_line(std::move(rest), sections.back());
      return;
    }
    if (is_end(word.text)) {
      open = false;
      return;
    }
    if (!open && sections.empty() && unnamed) {
      sections.push_back({*unnamed, {}, 0, {}});
      open = true;
    }
    if (!open) {
      findings.error(line.place(word), "this stands in no section",
                     "sections begin with ELEMENTS, SPECIES, THERMO, TRANSPORT, REACTIONS, SITE or BULK");
      return;
    }
    open = !add_line(std::move(line), sections.back());
  });
  return sections;
}

std::optional<long double> chemkin_number(std::string_view text) {
  std::string plain;
  bool exponent = false;
  for (const char c : text) {
    if (c == ' ') continue;
    const char capital = upper(c);
    const bool letter = capital == 'E' || capital == 'D';
    const bool sign = c == '+' || c == '-';
    if (letter && exponent && (plain.ends_with("E+") || plain.ends_with("E-"))) continue;  // "1.0+E12"
    if ((letter || sign) && !exponent && !plain.empty() && plain != "+" && plain != "-") {
      exponent = true;
      plain += 'E';
      if (sign) plain += c;
    } else {
      plain += letter ? 'E' : c;
    }
  }
  if (plain.starts_with("+")) plain.erase(0, 1);
  const auto letter = plain.find("E+");
  if (letter != std::string::npos) plain.erase(letter + 1, 1);
  return parse_number(plain);
}

}  // namespace varpre
