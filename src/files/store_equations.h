#pragma once

#include <array>
#include <string>
#include <vector>

#include "files/store_data.h"

// The reactions of a store file as people write them.
namespace varpre {

enum class StoredPhaseOf { gas, surface };

// What a species number of a reaction stands for: a species, behind them a collision partner; of any other
// number "?" and the number.
class NumberedNames {
 public:
  NumberedNames(const StoreData& data, StoredPhaseOf phase);

  int species_count() const { return count_; }
  std::string operator()(int number) const;

 private:
  std::vector<SpeciesName> names_;
  int count_;
};

// The numbers of educts and products, without empty places.
using Sides = std::array<std::vector<int>, 2>;
Sides sides_of(const StoredReaction& reaction, StoredPhaseOf phase);

// One side of an equation: the names in the order of their numbers, so that partners come last.
std::string side_text(std::vector<int> numbers, const NumberedNames& name);

// For each reaction the index, from 0, of the one behind it that is its reverse; -1: there is none, or it is
// itself the reverse of the one before it.
std::vector<int> reverses_of(const std::vector<Sides>& sides);

}  // namespace varpre
