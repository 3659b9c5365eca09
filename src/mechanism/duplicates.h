#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "mechanism/reaction.h"
#include "textio/record/numbered.h"

namespace varpre {

// Finds the earlier reactions with the same species vector.
class Duplicates {
 public:
  explicit Duplicates(int most_reactions)
      : first_(std::bit_ceil(2 * static_cast<std::size_t>(most_reactions) + 2), 0) {}

  // Adds the last of the reactions and visits the numbers of all earlier equal ones in order.
  template <class Visit>
  void add(std::span<const Reaction> reactions, Visit visit) {
    const int number = count_of(reactions);
    next_.push_back(0);
    last_.push_back(number);
    const SpeciesVector& MAT = reactions.back().MAT;
    const std::size_t mask = first_.size() - 1;
    std::size_t place = hash(MAT) & mask;
    while (first_[place] != 0 && at(reactions, first_[place]).MAT != MAT) place = (place + 1) & mask;
    const int first = first_[place];
    if (first == 0) {
      first_[place] = number;
      return;
    }
    for (int k = first; k != 0; k = at(next_, k)) visit(k);
    at(next_, at(last_, first)) = number;
    at(last_, first) = number;
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
