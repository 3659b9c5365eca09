#pragma once

#include <array>
#include <string_view>

#include "files/sections.h"

// Words that records begin with, besides the headings of the sections and the keywords of the conditions.
namespace varpre::words {

inline constexpr std::array<std::string_view, 2> comments{"****", "----"};  // lines that are not read
inline constexpr std::string_view title = "COMM";
inline constexpr std::string_view end = "END";
inline constexpr std::string_view sticking = "STIC";  // the reaction that follows has a sticking coefficient
inline constexpr std::string_view fixed_form = "MAXI";
inline constexpr std::string_view troe = "TROE";
// States of molecules that have the efficiencies of the molecule.
inline constexpr std::array<std::string_view, 2> vibrational{"N2(V", "O2(V"};

// Whether a record holds rate parameters of the reaction before it: coverage, falloff, or another law.
constexpr bool is_rate_record(std::string_view record) {
  return record.find_first_of("$#@") == 0;
}

// Whether a record of species names, amounts or reactions that begins with a word is taken for another thing.
constexpr bool opens_another_record(std::string_view word) {
  const auto begins = [&](std::string_view with) { return begins_with(word, with); };
  constexpr std::array others{end, sticking, fixed_form, troe};
  return std::ranges::any_of(comments, begins) || std::ranges::any_of(others, begins) ||
         std::ranges::any_of(vibrational, begins) ||
         std::ranges::any_of(sections::all, [&](const Section& s) { return begins(s.word.substr(0, 4)); });
}

}  // namespace varpre::words
