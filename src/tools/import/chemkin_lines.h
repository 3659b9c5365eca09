#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "textio/channel/input.h"
#include "textio/findings/findings.h"
#include "textio/names/words.h"
#include "tools/import/short_names.h"

// Files in CHEMKIN format as text: sections of lines, lines of words.
namespace varpre {

// What a file holds, by its contents.
enum class MechanismFormat { yaml, chemkin, cti, xml };
MechanismFormat mechanism_format(std::string_view text);

// Where a word begins in its text.
inline std::size_t begin_of(const Word& word) {
  return static_cast<std::size_t>(word.column - 1);
}

// A line without its comment, tabs as blanks; or several of which each says that it goes on.
class ChemkinLine {
 public:
  ChemkinLine() = default;
  ChemkinLine(const Input& file, int record, std::string_view line);

  std::string text;

  bool blank() const;
  // Whether the last character but blanks is an ampersand, which is taken away.
  bool take_continuation();
  void append(const ChemkinLine& next);
  // Where a stretch of the text stands in the file.
  Place place(std::size_t begin, std::size_t width) const;
  Place place(const Word& word) const { return place(begin_of(word), word.text.size()); }
  // The same of a word of a stretch that begins there.
  Place place(const Word& stretch, const Word& word) const {
    return place(begin_of(stretch) + begin_of(word), word.text.size());
  }
  Place place() const;

 private:
  struct Piece {
    std::size_t begin;  // in `text`
    int record;
  };
  const Input* file_ = nullptr;
  std::vector<Piece> pieces_;
};

// A word with what stands between strokes behind it: "H2/2.4/", "LOW / 1E14 0 0 /", "DUP".
struct ChemkinItem {
  Word word;  // without the strokes; may be empty
  bool has_content = false;
  Word content;
};
// What a line consists of; nothing, after an error, when a stroke has no other.
std::optional<std::vector<ChemkinItem>> items_of(const ChemkinLine& line, Findings& findings);

// A section: the line of its keyword, and the lines up to the next one or END.
struct ChemkinSection {
  enum class Kind { elements, species, thermo, reactions, transport, site, bulk };
  Kind kind;
  ChemkinLine heading;      // the keyword itself left out, in its place blanks
  std::size_t keyword = 0;  // where it stands in the heading
  std::vector<ChemkinLine> lines;
};

// A file as sections. A text before the first keyword belongs to `unnamed`, or is an error where that is
// none.
std::vector<ChemkinSection> sections_of(const Input& file, std::optional<ChemkinSection::Kind> unnamed,
                                        Findings& findings);

// A number in any form that occurs: "1.E5", ".5D+03", "1.0 E+12", "1.0E 03", "1.0+E12", "1.0+12"; none when
// it is no finite one.
std::optional<long double> chemkin_number(std::string_view text);

// What files hold about names. Letter case counts only where two names differ by nothing else.
template <class Entry>
class EntriesByName {
 public:
  // Adds an entry, if it is the first of its name; the one of this name, and whether it was added.
  std::pair<Entry&, bool> add(const std::string& name, Entry entry) {
    const auto [found, added] = entries_.try_emplace(name, std::move(entry));
    if (added) by_capitals_.try_emplace(in_capitals(name), &found->second);
    return {found->second, added};
  }
  const Entry* find(const std::string& name) const {
    if (const auto found = entries_.find(name); found != entries_.end()) return &found->second;
    const auto other = by_capitals_.find(in_capitals(name));
    return other == by_capitals_.end() ? nullptr : other->second;
  }

 private:
  std::map<std::string, Entry> entries_;
  std::map<std::string, const Entry*> by_capitals_;
};

}  // namespace varpre
