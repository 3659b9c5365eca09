#pragma once

#include <optional>

#include "tools/import/transport_file.h"
#include "tools/import/yaml_value.h"

namespace varpre {

// Reads a species of a phase: its elements, its thermochemistry, and for the gas its transport data. None,
// after its findings, when it cannot be read or held.
std::optional<ImportedSpecies> read_species(const Value& entry, KnownSpecies::Phase phase, YamlFiles& files,
                                            Import& import);

// Reads the transport data of an entry, of the model for gases. None after an error.
std::optional<ImportedMolecule> read_molecule(const Value& transport);

// Reads the transport data of another file: the species of a YAML file, or lines of a text, which are
// read when a species asks for its own. Throws when it cannot be read.
Molecules read_transport_file(const std::string& path, SourceFiles& sources, YamlFiles& files,
                              Findings& findings);

}  // namespace varpre
