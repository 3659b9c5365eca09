#pragma once

#include "tools/import/import.h"
#include "tools/import/yaml_value.h"

namespace varpre {

// Reads the phases that the options name from a YAML file, with their species and reactions. What cannot be
// read or held is reported; the mechanism is whole only when there is no error among the findings. Throws
// std::runtime_error when the file cannot be read.
ImportedMechanism read_yaml_mechanism(const ImportOptions& options, YamlFiles& files, Findings& findings);

}  // namespace varpre
