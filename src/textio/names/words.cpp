#include "textio/names/words.h"

#include <algorithm>

namespace varpre {

Word next_word(std::string_view line, int column, std::string_view between) {
  const auto is_between = [&](char c) {
    return std::any_of(between.begin(), between.end(), [c](char b) { return b == c; });
  };
  const auto before = std::min(static_cast<std::size_t>(column) - 1, line.size());
  const auto* const start = std::find_if_not(line.begin() + before, line.end(), is_between);
  if (start == line.end()) return {};
  const auto* const end = std::find_if(start, line.end(), is_between);
  return {{start, end}, static_cast<int>(start - line.begin()) + 1};
}

std::vector<Word> words_of(std::string_view line, std::string_view between) {
  std::vector<Word> words;
  for (Word word = next_word(line, 1, between); word.column > 0; word = next_word(line, word, between)) {
    words.push_back(word);
  }
  return words;
}

}  // namespace varpre
