#include "tools/import/chemkin_words.h"

#include <algorithm>
#include <array>

#include "tools/import/short_names.h"

namespace varpre {
bool set_unit(const std::string& word, RateUnits& units) {
  struct Known {
    std::string_view start;  // of the word: so many letters are enough
    const char* unit;        // of the energy; none for an amount
    bool molecules;
  };
  static constexpr std::array<Known, 8> known{{{"CAL", "cal/mol", false},
                                               {"KCAL", "kcal/mol", false},
                                               {"JOUL", "J/mol", false},
                                               {"KJOU", "kJ/mol", false},
                                               {"KELV", "K", false},
                                               {"EVOL", "eV", false},
                                               {"MOLEC", nullptr, true},
                                               {"MOLE", nullptr, false}}};
  const auto found =
      std::find_if(known.begin(), known.end(), [&](const Known& k) { return word.starts_with(k.start); });
  if (found == known.end()) return false;
  if (found->unit != nullptr) {
    units.energy = *parse_unit(found->unit);
  } else {
    units.molecules = found->molecules;
  }
  return true;
}

std::string_view keyword_of(std::string_view word) {
  const std::string capitals = in_capitals(std::string(word));
  std::string_view found;
  int matches = 0;
  for (const std::string_view keyword : reaction_keywords) {
    if (capitals == keyword) return keyword;
    const bool is_start = capitals.size() >= 3 && keyword.starts_with(capitals);
    const bool begins_alike =
        capitals.size() > 4 && keyword.size() > 4 && keyword.starts_with(capitals.substr(0, 4));
    if (!is_start && !begins_alike) continue;
    found = keyword;
    ++matches;
  }
  return matches == 1 ? found : std::string_view();
}

}  // namespace varpre
