#include "textio/names/words.h"

#include <algorithm>

namespace varpre {

Word next_word(std::string_view line, int column, std::string_view between) {
  const std::size_t start = line.find_first_not_of(between, static_cast<std::size_t>(column) - 1);
  if (start == std::string_view::npos) return {};
  const std::size_t end = std::min(line.find_first_of(between, start), line.size());
  return {line.substr(start, end - start), static_cast<int>(start) + 1};
}

std::vector<Word> words_of(std::string_view line, std::string_view between) {
  std::vector<Word> words;
  for (Word word = next_word(line, 1, between); word.column > 0; word = next_word(line, word, between)) {
    words.push_back(word);
  }
  return words;
}

}  // namespace varpre
