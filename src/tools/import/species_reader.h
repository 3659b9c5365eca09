#pragma once

#include <optional>

#include "tools/import/import.h"

namespace varpre {

// Reads a species: its elements, its polynomials (those of a constant heat capacity are made), and for the
// gas its transport data. None, after its findings, when it cannot be read or held.
std::optional<ImportedSpecies> read_species(const Value& entry, bool on_surface, Import& import);

}  // namespace varpre
