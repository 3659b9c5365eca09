#pragma once

#include <limits>
#include <string>
#include <variant>
#include <vector>

#include "files/store_data.h"

// What differs between two store files, as their readers want to know it: species by name, reactions by
// equation, whatever the order in which they stand and the names of the collision partners.
namespace varpre {

// A value of one of the files: none, a number, or a text.
using Told = std::variant<std::monostate, double, std::string>;

// What has changed in one item.
struct Change {
  std::string name;  // of the quantity
  Told before;
  Told after;
  std::string unit;
};

// How much a difference matters. The size orders all differences: the logarithm of the factor of a rate
// constant, the relative change of other values, h over RT and s over R of a species; infinite where
// something else is meant than before.
struct Effect {
  double size = 0;
  std::string text;  // "rate x 10 at 300 K"
};
inline constexpr double another_thing = std::numeric_limits<double>::infinity();

// What differs in a species, a reaction, a keyword.
struct Difference {
  std::string kind;   // "reaction", "option"
  std::string which;  // its equation, its name
  std::vector<Change> changes;
  Effect effect;
  int before = -1;  // the places of the species or reaction in its list, from 0; -1: none
  int after = -1;
};

struct Comparison {
  std::vector<Difference> differences;  // the largest effect first
  std::vector<std::string> notes;       // what differs and means nothing: the order of species, of reactions
  // For each reaction after, of the gas phase and of the surface, which it is before; -1: none.
  std::vector<int> gas_reactions;
  std::vector<int> surface_reactions;
};

// Compares all that two store files hold; what one lacks, since its reading stopped, is left out. A
// difference whose effect is no larger than the tolerance is none.
Comparison compare(const StoreData& before, const StoreData& after, double tolerance = 0);

}  // namespace varpre
