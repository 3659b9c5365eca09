#include "transport/molecular_database.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "textio/channel/statement.h"
#include "thermo/database_search.h"
#include "transport/molecule_findings.h"

namespace varpre {
namespace {

ReadResult read_molecule(Input& NFIMOL, SpeciesName& name, Molecule& molecule) {
  auto& [IGEOM, XMDB, EPS, SIGMA, DI1, DI2, DI3, record] = molecule;
  return read<molecule_entry>(NFIMOL, name, IGEOM, XMDB, EPS, SIGMA, DI1, DI2, DI3);
}

std::string_view geometry_word(int IGEOM) {
  return IGEOM == 1 ? "linear  " : IGEOM == 2 ? "non-lin." : "Atom    ";
}

void print_properties(const SpeciesName& name, const Molecule& molecule, Listing& MSGFIL) {
  write<"(1H ,1X,A,': M  =',1PE9.2,' G/MOL,',2X,'SIG=',1PE9.2, ' A   ,',2X,'EPS=',1PE9.2,' K')">(
      MSGFIL, name, molecule.XMDB, molecule.SIGMA, molecule.EPS);
  write<"(1H ,7X,'DI1=',1PE9.2,6X,',  ','DI2=',1PE9.2,5X,',  ', 'DI3=',1PE9.2,2X,',  ',A8)">(
      MSGFIL, molecule.DI1, molecule.DI2, molecule.DI3, geometry_word(molecule.IGEOM));
}

// The name of a species that has its thermochemical entry is right: an entry with a name like it is meant
// here.
bool is_misspelt(std::string_view, const SpeciesName&) {
  return true;
}

// A species that lacks its thermochemical entry as well has been told of: its name is wrong.
void pass_over_unknown(const SpeciesView& gas, DatabaseSearch& search) {
  const auto has_entry = [](const ThermoFit& fit) { return fit.entry.unit != nullptr; };
  if (std::none_of(gas.fit.begin(), gas.fit.end(), has_entry)) return;
  for (std::size_t i = 0; i < search.found.size(); ++i) {
    if (!has_entry(gas.fit[i])) search.found[i] = gas.listed[i];
  }
}

// A record that is laid out for another program is told as a whole, any other by its field.
void report_unreadable_record(const DatabaseSearch& search, std::string_view line, const Input& NFIMOL,
                              Listing& MSGFIL) {
  write<"(1X,5X,'ERROR - UNREADABLE RECORD',I6,' IN SPECIES DATABASE')">(MSGFIL, NFIMOL.record_number());
  const std::string fault = foreign_layout(line);
  if (fault.empty()) {
    report_unreadable_entry(search, NFIMOL, molecule_layout, true, MSGFIL.findings);
    return;
  }
  const auto [number, record, column, width] = search.unreadable.unreadable;
  MSGFIL.findings.error({&NFIMOL, record, column, width},
                        message("this is no record of the molecular database: ", fault), molecule_columns());
}

}  // namespace

bool GENSPE(const SpeciesView& gas, Input& NFIMOL, Listing& MSGFIL, std::vector<Molecule>& molecules,
            bool print) {
  molecules.assign(gas.SYMB.size(), {});
  Molecule molecule;
  std::string_view line;
  const auto read_next = [&](SpeciesName& name) {
    NFIMOL.peek(line);
    ReadResult result = read_molecule(NFIMOL, name, molecule);
    const bool remarkable =
        result.without_point.number > 0 || result.digit_in_gap.number > 0 || result.cut.number > 0;
    if (remarkable && !layout_fault(line).empty()) {
      result.without_point = result.digit_in_gap = result.cut = {};
    }
    return result;
  };
  const auto take = [&](std::size_t i, const Place& record) {
    molecule.record = record;
    molecules[i] = molecule;
    constexpr double tolerated = 0.5;  // g/mol
    const bool mass_fits = std::abs(molecule.XMDB - 1000 * gas.XMOL[i]) <= tolerated;
    const std::string fault = layout_fault(line, mass_fits);
    if (fault.empty()) {
      warn_of_values(MSGFIL.findings, gas, i, molecule);
    } else {
      warn_of_layout(MSGFIL.findings, record, line, fault);
    }
  };
  DatabaseSearch search =
      search_database(gas.SYMB, NFIMOL, molecule_layout, MSGFIL.findings, read_next, take);
  bool LOK = search.read_all;
  if (!LOK) report_unreadable_record(search, line, NFIMOL, MSGFIL);
  for (std::size_t i = 0; i < molecules.size(); ++i) {
    if (search.found[i]) continue;
    write<"(1H1,5X,'ERROR - Species ',A,' not found in ', 'species database')">(MSGFIL, gas.SYMB[i]);
    LOK = false;
  }
  pass_over_unknown(gas, search);
  report_absent_entries(search, gas, NFIMOL, is_misspelt, MSGFIL.findings);
  if (print) {
    write<"(1H ,7X,'SPECIES PROPERTIES FROM DATA BASE')">(MSGFIL);
    for (std::size_t i = 0; i < molecules.size(); ++i) print_properties(gas.SYMB[i], molecules[i], MSGFIL);
  }
  return LOK;
}

}  // namespace varpre
