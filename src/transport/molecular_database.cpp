#include "transport/molecular_database.h"

#include <array>
#include <string_view>

#include "textio/record/record.h"
#include "transport/molecule_findings.h"

namespace varpre {
namespace {

ReadResult read_molecule(Input& NFIMOL, SpeciesName& name, Molecule& molecule) {
  auto& [IGEOM, XMDB, EPS, SIGMA, DI1, DI2, DI3, record] = molecule;
  const ReadResult result = read<"(A8,I2,6F10.3)">(NFIMOL, name, IGEOM, XMDB, EPS, SIGMA, DI1, DI2, DI3);
  record = here(NFIMOL, 1, 8);
  return result;
}

std::string field_name(int number) {
  return name_of(static_cast<MoleculeField>(number - 1));
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

// The line of the record last read.
std::string_view last_line(Input& NFIMOL) {
  std::string_view line;
  NFIMOL.step_back();
  NFIMOL.next(line);
  return line;
}

void report_unreadable_record(Input& NFIMOL, const ReadResult& result, const SpeciesName& name,
                              Listing& MSGFIL) {
  write<"(1X,5X,'ERROR - UNREADABLE RECORD',I6,' IN SPECIES DATABASE')">(MSGFIL, NFIMOL.record_number());
  const std::string fault = foreign_layout(last_line(NFIMOL));
  if (fault.empty()) {
    report_unreadable(MSGFIL.findings, NFIMOL, result,
                      message(field_name(result.unreadable.number), " of species '", name, "'"));
    return;
  }
  const auto [number, record, column, width] = result.unreadable;
  MSGFIL.findings.error({&NFIMOL, record, column, width},
                        message("this is no record of the molecular database: ", fault), molecule_columns());
}

// The records of the wanted species, and what else the search met.
struct Search {
  std::vector<bool> LFOUND;
  std::vector<SpeciesName> other_records;
  bool read_all = true;
};

Search search_database(const SpeciesView& gas, Input& NFIMOL, Listing& MSGFIL,
                       std::vector<Molecule>& molecules) {
  const NameIndex index(gas.SYMB);
  Search search;
  search.LFOUND.assign(gas.SYMB.size(), false);

  NFIMOL.rewind();
  SpeciesName name;
  for (Molecule molecule;;) {
    const ReadResult result = read_molecule(NFIMOL, name, molecule);
    if (result.end_of_file()) return search;
    if (!result) {
      report_unreadable_record(NFIMOL, result, name, MSGFIL);
      search.read_all = false;
      return search;
    }
    const int number = index.find(name);
    if (number == 0) {
      search.other_records.push_back(name);
      continue;
    }
    const auto i = static_cast<std::size_t>(number - 1);
    if (!warn_of_layout(MSGFIL.findings, molecule.record, last_line(NFIMOL))) {
      warn_of_columns(MSGFIL.findings, NFIMOL, result, field_name);
      warn_of_values(MSGFIL.findings, gas, i, molecule);
    }
    if (search.LFOUND[i]) {
      MSGFIL.findings.warning(molecule.record, message("this record of '", name, "' replaces an earlier one"),
                              message("the earlier one stands in line ", molecules[i].record.record));
    }
    molecules[i] = molecule;
    search.LFOUND[i] = true;
  }
}

void report_missing(const SpeciesView& gas, std::size_t i, const Input& NFIMOL, const Search& search,
                    Listing& MSGFIL) {
  const SpeciesName& name = gas.SYMB[i];
  write<"(1H1,5X,'ERROR - Species ',A,' not found in ', 'species database')">(MSGFIL, name);
  if (!search.read_all) return;  // the unreadable record is the cause
  MSGFIL.findings.error(locate(gas.listed[i], name.view()),
                        message("species '", name, "' has no record in ", NFIMOL.origin(0).file, " (",
                                NFIMOL.record_number(), " records read)"),
                        [&] {
                          const std::string misplaced = misplaced_record(NFIMOL, name.view());
                          if (!misplaced.empty()) return misplaced;
                          return Nearest(name.view()).offer_all(search.other_records).help();
                        });
}

}  // namespace

bool GENSPE(const SpeciesView& gas, Input& NFIMOL, Listing& MSGFIL, std::vector<Molecule>& molecules,
            bool print) {
  molecules.assign(gas.SYMB.size(), {});
  const Search search = search_database(gas, NFIMOL, MSGFIL, molecules);
  bool LOK = search.read_all;
  for (std::size_t i = 0; i < molecules.size(); ++i) {
    if (search.LFOUND[i]) continue;
    report_missing(gas, i, NFIMOL, search, MSGFIL);
    LOK = false;
  }
  if (print) {
    write<"(1H ,7X,'SPECIES PROPERTIES FROM DATA BASE')">(MSGFIL);
    for (std::size_t i = 0; i < molecules.size(); ++i) print_properties(gas.SYMB[i], molecules[i], MSGFIL);
  }
  return LOK;
}

}  // namespace varpre
