#pragma once

#include <string>

#include "tools/diff/comparison.h"
#include "tools/diff/mechanisms.h"

// How much a change of the rate of a reaction matters.
namespace varpre {

// Of a rate constant A T^b exp(-E/RT).
struct Rate {
  double A;
  double b;
  double E;  // J/mol
};

Effect larger(const Effect& a, const Effect& b);

// The largest factor between two rate constants over 300 to 2500 K, told under a name.
Effect rate_effect(const std::string& name, const Rate& before, const Rate& after);

// The size of the effect of all that the records of two reactions hold; i of those before, j of those after.
Effect effect_of(const Mechanisms& both, int i, int j);

}  // namespace varpre
