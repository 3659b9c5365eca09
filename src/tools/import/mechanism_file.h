#pragma once

#include "tools/import/import.h"
#include "tools/import/source_files.h"

namespace varpre {

// Reads the mechanism that the options name, whatever its format; what it is in is seen from what it holds.
// What cannot be read or held is reported; the mechanism is whole only when there is no error among the
// findings. `include`: directories in which files that it names are looked for. Throws std::runtime_error
// when a file cannot be read, is in a format that others have to convert, or does not go with the options.
ImportedMechanism read_mechanism(const ImportOptions& options, const std::vector<std::string>& include,
                                 SourceFiles& sources, Findings& findings);

}  // namespace varpre
