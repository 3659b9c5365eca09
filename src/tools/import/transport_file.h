#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tools/import/chemkin_lines.h"
#include "tools/import/import.h"

namespace varpre {

// Lines of transport data: name, geometry (0 atom, 1 linear, 2 non-linear), well depth (K), diameter
// (angstrom), dipole moment (debye), polarizability (cubic angstrom), collision number. In a record of MOLNEW
// the molar mass stands behind the geometry.
class TransportLines {
 public:
  // Adds the lines of a section TRANSPORT, or of a file without any, behind those that are there already; of
  // two for a species the first counts. Comments of MOLNEW are left out.
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

// Transport data of a file beside the mechanism.
struct Molecules {
  std::map<std::string, ImportedMolecule> by_name;  // of YAML; the names in capitals
  TransportLines lines;                             // of any other text
};

// Gives the gas species that have none the data of other files, by the name. Those that still have none are
// refused, all in one finding; nothing happens where no data are wanted. To be called when all species are
// there, before reactions are read.
void settle_transport(const Molecules& molecules, const Place& file, Import& import);

}  // namespace varpre
