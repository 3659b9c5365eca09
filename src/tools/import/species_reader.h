#pragma once

#include <optional>

#include "tools/import/import.h"
#include "tools/import/yaml_value.h"

namespace varpre {

// Reads a species of a phase: its elements, its thermochemistry, and for the gas its transport data. None,
// after its findings, when it cannot be read or held.
std::optional<ImportedSpecies> read_species(const Value& entry, KnownSpecies::Phase phase, YamlFiles& files,
                                            Import& import);

}  // namespace varpre
