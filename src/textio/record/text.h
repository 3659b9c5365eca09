#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace varpre {

// A text without the blanks at its end.
constexpr std::string_view trimmed(std::string_view text) {
  const std::size_t last = text.find_last_not_of(' ');
  return text.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

// `count` columns of a line from column `first` on, from 1; less where the line ends before.
constexpr std::string_view columns(std::string_view line, int first, int count) {
  return line.substr(std::min(static_cast<std::size_t>(first - 1), line.size()),
                     static_cast<std::size_t>(count));
}

// N characters, blank-padded on the right: a species name is a Text<8>, an element symbol a Text<2>.
template <std::size_t N>
struct Text {
  std::array<char, N> chars;

  constexpr Text() { chars.fill(' '); }
  constexpr explicit Text(std::string_view text) { *this = text; }

  // Takes the first N characters of a text and pads a shorter one with blanks.
  constexpr Text& operator=(std::string_view text) {
    const std::size_t length = std::min(text.size(), N);
    std::copy_n(text.begin(), length, chars.begin());
    std::fill(chars.begin() + length, chars.end(), ' ');
    return *this;
  }

  constexpr std::string_view view() const { return {chars.data(), N}; }
  constexpr std::string_view first(std::size_t count) const { return view().substr(0, count); }
  constexpr bool blank() const { return trimmed(view()).empty(); }

  friend constexpr bool operator==(const Text&, const Text&) = default;
};

// A record cut into Count pieces of N characters, blank where it has ended.
template <std::size_t N, std::size_t Count>
constexpr std::array<Text<N>, Count> pieces(std::string_view record) {
  std::array<Text<N>, Count> cut;
  for (std::size_t k = 0; k < Count; ++k) cut[k] = record.substr(std::min(k * N, record.size()));
  return cut;
}

constexpr bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

// The ASCII letters a-z become A-Z.
constexpr char upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

// Equal after mapping the ASCII letters a-z to A-Z.
constexpr bool LSAME(char a, char b) {
  return upper(a) == upper(b);
}

// The first n characters are equal by LSAME; a shorter text counts as padded with blanks.
constexpr bool EQUSYM(int n, std::string_view s1, std::string_view s2) {
  for (std::size_t i = 0; i < static_cast<std::size_t>(std::max(n, 0)); ++i) {
    if (!LSAME(i < s1.size() ? s1[i] : ' ', i < s2.size() ? s2[i] : ' ')) return false;
  }
  return true;
}

// A text begins with a word, in any letter case; a shorter one counts as padded with blanks.
constexpr bool begins_with(std::string_view text, std::string_view word) {
  return EQUSYM(static_cast<int>(word.size()), text, word);
}

// Two words are the same but for letter case, and blanks at their ends.
constexpr bool same_word(std::string_view a, std::string_view b) {
  return EQUSYM(static_cast<int>(std::max(a.size(), b.size())), a, b);
}

}  // namespace varpre
