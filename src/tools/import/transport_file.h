#pragma once

#include <map>
#include <string>

#include "tools/import/import.h"

namespace varpre {

// Transport data by the name of the species, in capitals.
using Molecules = std::map<std::string, ImportedMolecule>;

// Reads lines of a name, a geometry (0 atom, 1 linear, 2 non-linear), well depth, diameter, dipole moment,
// polarizability and rotational relaxation number, with comments behind "!"; or records of MOLNEW, where the
// molar mass stands behind the geometry. Reports lines of another form.
Molecules read_transport_text(const Input& file, Findings& findings);

// Gives the gas species that have none the data of other files, by the name. Those that still have none are
// refused, all in one finding; nothing happens where no data are wanted. To be called when all species are
// there, before reactions are read.
void settle_transport(const Molecules& molecules, const Place& file, Import& import);

}  // namespace varpre
