#pragma once

#include "tools/import/chemkin_lines.h"
#include "tools/import/import.h"

namespace varpre {

// What the section ELEMENTS declares: symbols in capitals, and the mass (g/mol) where one is given.
using ChemkinElements = std::map<std::string, std::optional<double>>;

// Reads the section; reports symbols that nobody knows and that have no mass.
void read_elements(const ChemkinSection& section, ChemkinElements& elements, Findings& findings);

// The entries of four lines of one or several files. Those of species that nobody asks for may hold anything.
class ThermoEntries {
 public:
  // Adds the entries of a section THERMO behind those that are there already; of two for a species the first
  // counts.
  void add(const ChemkinSection& section, Findings& findings);

  // Whether there is an entry for the species; letter case counts only where it must.
  bool has(const std::string& name) const;
  // Reads the entry of a species: atoms, limits, coefficients. False after a finding.
  bool read(ImportedSpecies& species, const ChemkinElements& elements, Import& import) const;

 private:
  struct Entry {
    std::vector<ChemkinLine> lines;    // the first, one with further elements, those with coefficients
    std::array<double, 3> defaults{};  // lowest, common and highest temperature; 0: none
    std::vector<Place> repeated;       // further entries of the same name in the same file
  };
  const Entry* find(const std::string& name) const;
  void add_entry(Entry entry);

  EntriesByName<Entry> entries_;
};

}  // namespace varpre
