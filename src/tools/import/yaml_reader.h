#pragma once

#include "tools/import/transport_file.h"
#include "tools/import/yaml_value.h"

namespace varpre {

// Reads the phases that the options name from a YAML file, with their species and reactions. What cannot be
// read or held is reported; the mechanism is whole only when there is no error among the findings. Throws
// std::runtime_error when the file cannot be read. `molecules`: transport data from elsewhere.
ImportedMechanism read_yaml_mechanism(const ImportOptions& options, YamlFiles& files,
                                      const Molecules& molecules, Findings& findings);

}  // namespace varpre
