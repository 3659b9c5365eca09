#pragma once

#include "tools/import/import.h"
#include "tools/import/yaml_value.h"

namespace varpre {

// Reads the state of the gas, and of the surface if there is one, for the mixtures and the surface
// conditions, once the species are known. What is not given is 300 K, 1 atm and the first species.
void read_state(const Value& gas, const Value& surface, Import& import);

// Reads the site density of a surface, which laws of its reactions need.
void read_site_density(const Value& surface, ImportedMechanism& mechanism);

}  // namespace varpre
