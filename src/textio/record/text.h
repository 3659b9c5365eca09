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

}  // namespace varpre
