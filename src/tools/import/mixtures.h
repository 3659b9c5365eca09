#pragma once

#include <array>
#include <string>

#include "tools/import/imported_mechanism.h"

namespace varpre {

// Mixtures as the command line gives them; empty where it does not.
struct GivenMixtures {
  std::string left;  // "CH4:1, O2:2, N2:7.52; 300 K; 1 atm"
  std::string right;
  std::string fuel;      // "CH4", or amounts
  std::string oxidizer;  // "O2:1, N2:3.76"
  std::string phi;       // the equivalence ratio
};

// The mixtures on the left and on the right. What is not given is the state of the mechanism. Of fuel and
// oxidizer, `apart` puts one on either side; else both sides have them mixed. Throws std::runtime_error,
// naming the option, for what cannot be meant.
std::array<ImportedState, 2> mixtures_of(const ImportedMechanism& mechanism, const GivenMixtures& given,
                                         bool apart);

// In bar, from a value with its unit. Throws std::runtime_error, naming the option.
double read_pressure(const std::string& option, const std::string& text);

}  // namespace varpre
