#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "textio/channel/statement.h"
#include "thermo/species.h"

// What the tests of single stages share.
namespace varpre {

// An input that holds a text.
inline Input input_of(std::string text) {
  Input input;
  input.text = std::move(text);
  input.rewind();
  return input;
}

// The words of a text.
inline std::vector<SpeciesName> names(std::string_view text) {
  std::vector<SpeciesName> words;
  for (std::size_t start = 0; (start = text.find_first_not_of(' ', start)) != text.npos;) {
    const std::size_t end = std::min(text.find(' ', start), text.size());
    words.emplace_back(text.substr(start, end - start));
    start = end;
  }
  return words;
}

// A polynomial fit from its coefficients a1..a7, those at the end 0 when they are not given.
inline ThermoFit thermo_fit(const std::array<double, 7>& HCPL, const std::array<double, 7>& HCPH,
                            const std::array<double, 3>& TLIM = {280, 1000, 5000}) {
  ThermoFit fit;
  fit.HCPL = HCPL;
  fit.HCPH = HCPH;
  fit.TLIM = TLIM;
  return fit;
}

}  // namespace varpre
