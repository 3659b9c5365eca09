#pragma once

#include "tools/import/import.h"

namespace varpre {

// Reads the state of the gas, and of the surface if there is one, for the mixtures and the surface
// conditions, once the species are known. What is not given is 300 K, 1 atm and the first species.
void read_state(const Value& gas, const Value& surface, Import& import);

}  // namespace varpre
