#include "files/store_equations.h"

#include <algorithm>

#include "files/partners.h"
#include "textio/findings/findings.h"
#include "textio/record/numbered.h"

namespace varpre {

NumberedNames::NumberedNames(const StoreData& data, StoredPhaseOf phase) : names_(data.gas.names) {
  if (phase == StoredPhaseOf::surface) {
    names_.insert(names_.end(), data.surface.names.begin(), data.surface.names.end());
  }
  count_ = count_of(names_);
}

std::string NumberedNames::operator()(int number) const {
  if (number < 1 || number > count_ + partner_count) return message("?", number);
  return std::string(number <= count_ ? trimmed(at(names_, number).view()) : at(MCOLLI, number - count_));
}

Sides sides_of(const StoredReaction& reaction, StoredPhaseOf phase) {
  const std::size_t half = phase == StoredPhaseOf::surface ? 6 : 3;
  Sides sides;
  for (std::size_t slot = 0; slot < 2 * half; ++slot) {
    if (reaction.species[slot] != 0) sides[slot / half].push_back(reaction.species[slot]);
  }
  return sides;
}

std::string side_text(std::vector<int> numbers, const NumberedNames& name) {
  std::sort(numbers.begin(), numbers.end());
  std::string text;
  for (const int number : numbers) text += (text.empty() ? "" : " + ") + name(number);
  return text;
}

std::vector<int> reverses_of(const std::vector<Sides>& sides) {
  std::vector<int> reverses(sides.size(), -1);
  for (std::size_t i = 0; i + 1 < sides.size(); ++i) {
    if (sides[i][0] != sides[i + 1][1] || sides[i][1] != sides[i + 1][0]) continue;
    reverses[i] = static_cast<int>(i) + 1;
    ++i;
  }
  return reverses;
}

}  // namespace varpre
