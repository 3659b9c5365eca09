#include "transport/molecular_database.h"

#include <array>
#include <string_view>

#include "textio/findings/record_findings.h"

namespace varpre {
namespace {

ReadResult read_molecule(Input& NFIMOL, SpeciesName& name, Molecule& molecule) {
  auto& [IGEOM, XMDB, EPS, SIGMA, DI1, DI2, DI3, record] = molecule;
  const ReadResult result = read<"(A8,I2,6F10.3)">(NFIMOL, name, IGEOM, XMDB, EPS, SIGMA, DI1, DI2, DI3);
  record = here(NFIMOL, 1, 8);
  return result;
}

std::string_view field_name(int number) {
  constexpr std::array<std::string_view, 8> names{
      "the name",     "the geometry index", "the molar mass",     "the well depth",
      "the diameter", "the dipole moment",  "the polarizability", "the rotational collision number"};
  return names[static_cast<std::size_t>(number - 1)];
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

}  // namespace

bool GENSPE(const SpeciesView& gas, Input& NFIMOL, Listing& MSGFIL, std::vector<Molecule>& molecules,
            bool print) {
  const std::span<const SpeciesName> SYMB = gas.SYMB;
  const NameIndex index(SYMB);
  bool LOK = true;
  molecules.assign(SYMB.size(), {});
  std::vector<bool> LFOUND(SYMB.size(), false);
  std::vector<SpeciesName> other_records;
  bool read_all = true;

  NFIMOL.rewind();
  SpeciesName name;
  for (Molecule molecule;;) {
    const ReadResult result = read_molecule(NFIMOL, name, molecule);
    if (result.end_of_file()) break;
    if (!result) {
      write<"(1X,5X,'ERROR - UNREADABLE RECORD',I6,' IN SPECIES DATABASE')">(MSGFIL, NFIMOL.record_number());
      report_unreadable(MSGFIL.findings, NFIMOL, result,
                        message(field_name(result.unreadable.number), " of species '", name, "'"));
      LOK = false;
      read_all = false;
      break;
    }
    const int number = index.find(name);
    if (number == 0) {
      other_records.push_back(name);
      continue;
    }
    warn_of_columns(MSGFIL.findings, NFIMOL, result, field_name);
    const auto i = static_cast<std::size_t>(number - 1);
    if (LFOUND[i]) {
      MSGFIL.findings.warning(molecule.record, message("this record of '", name, "' replaces an earlier one"),
                              message("the earlier one stands in line ", molecules[i].record.record));
    }
    molecules[i] = molecule;
    LFOUND[i] = true;
  }

  for (std::size_t i = 0; i < SYMB.size(); ++i) {
    if (LFOUND[i]) continue;
    write<"(1H1,5X,'ERROR - Species ',A,' not found in ', 'species database')">(MSGFIL, SYMB[i]);
    LOK = false;
    if (!read_all) continue;  // the unreadable record is the cause
    MSGFIL.findings.error(locate(gas.listed[i], SYMB[i].view()),
                          message("species '", SYMB[i], "' has no record in ", NFIMOL.origin(0).file, " (",
                                  NFIMOL.record_number(), " records read)"),
                          [&] { return Nearest(SYMB[i].view()).offer_all(other_records).help(); });
  }
  if (print) {
    write<"(1H ,7X,'SPECIES PROPERTIES FROM DATA BASE')">(MSGFIL);
    for (std::size_t i = 0; i < SYMB.size(); ++i) print_properties(SYMB[i], molecules[i], MSGFIL);
  }
  return LOK;
}

}  // namespace varpre
