#pragma once

#include "tools/import/chemkin_lines.h"
#include "tools/import/import.h"

namespace varpre {

// Lines of transport data: name, geometry, well depth (K), diameter (angstrom), dipole moment (debye),
// polarizability (cubic angstrom), collision number. In a record of MOLNEW the molar mass stands behind the
// geometry.
class TransportLines {
 public:
  // Adds the lines of a section TRANSPORT, or of a file without any, behind those that are there already; of
  // two for a species the first counts.
  void add(const ChemkinSection& section);

  bool has(const std::string& name) const { return lines_.find(name) != nullptr; }
  // Reads the line of a species, whose lines are not read where it is not asked for. None after an error.
  std::optional<ImportedMolecule> read(const ImportedSpecies& species, Findings& findings) const;

 private:
  struct Entry {
    ChemkinLine line;
    std::vector<Place> repeated;
  };
  EntriesByName<Entry> lines_;
};

}  // namespace varpre
