#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "mechanism/reaction.h"

namespace varpre {

// Finds the earlier reactions with the same species vector.
class Duplicates {
 public:
  explicit Duplicates(int most_reactions)
      : first_(std::bit_ceil(2 * static_cast<std::size_t>(most_reactions) + 2), 0),
        next_(1, 0),
        last_(1, 0) {}

  // Adds the last of the reactions and visits the numbers of all earlier equal ones in order.
  template <class Visit>
  void add(std::span<const Reaction> reactions, Visit visit) {
    const int number = static_cast<int>(reactions.size());
    next_.push_back(0);
    last_.push_back(number);
    const auto vector_of = [&](int k) -> const SpeciesVector& {
      return reactions[static_cast<std::size_t>(k - 1)].MAT;
    };
    const SpeciesVector& MAT = vector_of(number);
    const std::size_t mask = first_.size() - 1;
    std::size_t at = hash(MAT) & mask;
    while (first_[at] != 0 && vector_of(first_[at]) != MAT) at = (at + 1) & mask;
    if (first_[at] == 0) {
      first_[at] = number;
      return;
    }
    for (int k = first_[at]; k != 0; k = next_[static_cast<std::size_t>(k)]) visit(k);
    int& last = last_[static_cast<std::size_t>(first_[at])];
    next_[static_cast<std::size_t>(last)] = number;
    last = number;
  }

 private:
  static std::size_t hash(const SpeciesVector& MAT) {
    std::uint64_t h = 0;
    for (const int number : MAT) h = (h ^ static_cast<std::uint64_t>(number)) * 0x9E3779B97F4A7C15;
    return static_cast<std::size_t>(h >> 32);
  }

  std::vector<int> first_;  // hash table of the first reaction with each vector
  std::vector<int> next_;   // per reaction: the next one with the same vector
  std::vector<int> last_;   // per first reaction: the last one with its vector
};

}  // namespace varpre
