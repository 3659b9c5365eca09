#include "transport/molecular_database.h"

#include <string_view>

#include "textio/record.h"

namespace varpre {
namespace {

ReadResult read_molecule(Unit& NFIMOL, SpeciesName& name, Molecule& molecule) {
  auto& [IGEOM, XMDB, EPS, SIGMA, DI1, DI2, DI3] = molecule;
  return read<"(A8,I2,6F10.3)">(NFIMOL, name, IGEOM, XMDB, EPS, SIGMA, DI1, DI2, DI3);
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

bool GENSPE(std::span<const SpeciesName> SYMB, Unit& NFIMOL, Listing& MSGFIL,
            std::vector<Molecule>& molecules, bool print) {
  const NameIndex index(SYMB);
  bool LOK = true;
  molecules.assign(SYMB.size(), {});
  std::vector<bool> LFOUND(SYMB.size(), false);

  NFIMOL.rewind();
  SpeciesName name;
  for (Molecule molecule;;) {
    const ReadResult result = read_molecule(NFIMOL, name, molecule);
    if (result.end_of_file()) break;
    if (!result) {
      write<"(1X,5X,'ERROR - UNREADABLE RECORD',I6,' IN SPECIES DATABASE')">(MSGFIL, NFIMOL.record_number());
      LOK = false;
      break;
    }
    const int number = index.find(name);
    if (number == 0) continue;
    molecules[static_cast<std::size_t>(number - 1)] = molecule;
    LFOUND[static_cast<std::size_t>(number - 1)] = true;
  }

  for (std::size_t i = 0; i < SYMB.size(); ++i) {
    if (LFOUND[i]) continue;
    write<"(1H1,5X,'ERROR - Species ',A,' not found in ', 'species database')">(MSGFIL, SYMB[i]);
    LOK = false;
  }
  if (print) {
    write<"(1H ,7X,'SPECIES PROPERTIES FROM DATA BASE')">(MSGFIL);
    for (std::size_t i = 0; i < SYMB.size(); ++i) print_properties(SYMB[i], molecules[i], MSGFIL);
  }
  return LOK;
}

}  // namespace varpre
