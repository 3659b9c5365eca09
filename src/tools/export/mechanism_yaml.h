#pragma once

#include <string>

#include "driver/run_data.h"

namespace varpre {

// The mechanism, thermochemistry, transport data and mixtures of a case as Cantera's YAML. What the format
// cannot hold is an error, or left out with a warning (`skip_unsupported`); `conditions` is the file INP.
std::string mechanism_yaml(const RunData& data, const Input& conditions, bool skip_unsupported,
                           Findings& findings);

}  // namespace varpre
