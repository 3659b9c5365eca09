#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "files/databases.h"
#include "textio/findings/findings.h"
#include "thermo/species.h"
#include "transport/molecular_database.h"

// What an expert would notice about the records of the molecular database beyond the rules of the listing.
namespace varpre {

// Where a field of the record of a molecule stands.
Place place_of(const Molecule& molecule, MoleculeField field);

// Where all fields stand, as a help.
std::string molecule_columns();

// Why a line is no record of this database, as its shape tells: "it is YAML", "its values are shifted by 1 to
// the right". Empty when it looks like one.
std::string foreign_layout(std::string_view line);

// The same, or which of its values does not stand whole in its columns: what was read of such a record means
// nothing. Empty when all do. And the warning of it. mass_fits: the molar mass was read as that of the
// elements, so that it may stand directly behind the geometry index.
std::string layout_fault(std::string_view line, bool mass_fits = false);
void warn_of_layout(Findings& findings, const Place& record, std::string_view line, std::string_view fault);

// Warns of what contradicts the atoms of species i (from 0): geometry, molar mass, dipole moment; and of
// values that no molecule has.
void warn_of_values(Findings& findings, const SpeciesView& gas, std::size_t i, const Molecule& molecule);

}  // namespace varpre
