#include "tools/diff/mechanisms.h"

#include <algorithm>

namespace varpre {

MechanismSide::MechanismSide(const StoreData& data_, StoredPhaseOf phase_)
    : data(data_),
      mechanism(phase_ == StoredPhaseOf::gas ? data_.gas_mechanism : data_.surface_mechanism),
      phase(phase_),
      name(data_, phase_) {
  sides.reserve(mechanism.reactions.size());
  for (const StoredReaction& r : mechanism.reactions) sides.push_back(sides_of(r, phase));
  reverses = reverses_of(sides);
  is_reverse.resize(sides.size());
  for (const int r : reverses) {
    if (r >= 0) is_reverse[static_cast<std::size_t>(r)] = true;
  }
  keys.reserve(sides.size());
  for (int i = 0; i < count(); ++i) keys.push_back(key_of(i));
}

int MechanismSide::partner(int i) const {
  if (phase == StoredPhaseOf::surface) return 0;
  for (const int number : sides[static_cast<std::size_t>(i)][0]) {
    if (number > name.species_count()) return number - name.species_count();
  }
  return 0;
}

std::string MechanismSide::key_of(int i) const {
  std::string text;
  for (const auto& numbers : sides[static_cast<std::size_t>(i)]) {
    std::vector<std::string> names;
    names.reserve(numbers.size());
    for (const int n : numbers) {
      const bool is_partner = phase == StoredPhaseOf::gas && n > name.species_count();
      names.push_back(!is_partner ? name(n) : n - name.species_count() == partner(i) ? "M" : "another M");
    }
    std::sort(names.begin(), names.end());
    for (const std::string& one : names) text.append(one).append(" + ");
    text += "> ";
  }
  return text;
}

std::string MechanismSide::equation(int i, bool with_reverse) const {
  const Sides& both = sides[static_cast<std::size_t>(i)];
  return side_text(both[0], name) + (with_reverse ? " = " : " > ") + side_text(both[1], name);
}

}  // namespace varpre
