#pragma once

#include "tools/import/chemkin_lines.h"
#include "tools/import/import.h"

namespace varpre {

// Reads the reactions of a section, in the gas phase or on the surface, once all species are known, and the
// site density. What cannot be read or held is reported.
void read_chemkin_reactions(const ChemkinSection& section, bool on_surface, Import& import);

}  // namespace varpre
