#pragma once

#include "tools/import/source_files.h"
#include "tools/import/transport_file.h"

namespace varpre {

// Reads a mechanism in CHEMKIN format, with the files of thermochemistry and of the surface that the
// options name; `molecules` are transport data from elsewhere. What cannot be read or held is reported; the
// mechanism is whole only when there is no error among the findings. Throws std::runtime_error when a file
// cannot be read.
ImportedMechanism read_chemkin_mechanism(const ImportOptions& options, SourceFiles& files,
                                         const Molecules& molecules, Findings& findings);

}  // namespace varpre
