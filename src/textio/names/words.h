#pragma once

#include <string_view>
#include <vector>

namespace varpre {

// A word of a line.
struct Word {
  std::string_view text;  // empty: there is none
  int column = 0;         // where it begins, from 1

  int width() const { return static_cast<int>(text.size()); }
  int last() const { return column + width() - 1; }
};

inline constexpr std::string_view blanks_and_tabs = " \t";

// The first word from a column on. Words are what stands between the characters of `between`.
Word next_word(std::string_view line, int column = 1, std::string_view between = blanks_and_tabs);
// The one behind another.
inline Word next_word(std::string_view line, const Word& word, std::string_view between = blanks_and_tabs) {
  return next_word(line, word.last() + 1, between);
}

// All words of a line.
std::vector<Word> words_of(std::string_view line, std::string_view between = blanks_and_tabs);

}  // namespace varpre
