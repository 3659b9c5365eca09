#include "mechanism/photo_reactions.h"

#include "textio/record.h"
#include "textio/scanning.h"

namespace varpre {
namespace {

struct PhotoReaction {
  SpeciesName reactant;
  std::array<Text<1>, 3> separators;  // before each product; only the first one is checked
  std::array<SpeciesName, 3> products;
  double rate = 0;
};

// Stands behind the "PHOT" record; false when there is none.
bool find_section(Unit& NFIMEC) {
  Text<4> word;
  NFIMEC.rewind();
  do {
    if (!read<"(1A4)">(NFIMEC, word)) return false;
  } while (!EQUSYM(4, word.view(), "PHOT"));
  return true;
}

ReadResult read_reaction(Unit& NFIMEC, PhotoReaction& r) {
  return read<"(A8,3(A1,A8),E10.3)">(NFIMEC, r.reactant, zip(r.separators, r.products), r.rate);
}

// Numbers of the reactant and the products; false when the record breaks a rule.
bool resolve_names(const NameIndex& index, const PhotoReaction& r, int& reactant,
                   std::array<int, 3>& products) {
  reactant = r.reactant.blank() ? 0 : index.find(r.reactant);
  if (r.separators[0].view() != ">" || reactant == 0) return false;
  for (std::size_t k = 0; k < products.size(); ++k) {
    const bool none = r.products[k].blank();
    products[k] = none ? 0 : index.find(r.products[k]);
    if (products[k] == 0 && !none) return false;
  }
  return true;
}

}  // namespace

bool INIPHO(std::span<const SpeciesName> SYMB, Unit& NFIMEC, Listing& MSGFIL, Unit& NFISTO) {
  int NPHO = 0;
  if (find_section(NFIMEC) && !read<"(I3)">(NFIMEC, NPHO)) {
    write<"(/,5X,'UNREADABLE NUMBER OF PHOTO REACTIONS')">(MSGFIL);
    return false;
  }
  write<"(I5,' PHOTO REACTIONS')">(NFISTO, NPHO);
  if (NPHO == 0) {
    write<"(1X,' no photo reactions defined ')">(MSGFIL);
    return true;
  }
  write<"(I5,' PHOTO REACTIONS DEFINED ')">(MSGFIL, NPHO);
  if (NPHO > NPMAX) {
    write<"(/,5X,'MORE THAN ',I2,' PHOTO REACTIONS (',I3,')')">(MSGFIL, NPMAX, NPHO);
    return false;
  }

  const NameIndex index(SYMB);
  for (int i = 1; i <= NPHO; ++i) {
    PhotoReaction r;
    if (!read_reaction(NFIMEC, r)) {
      write<"(/,5X,'UNREADABLE PHOTO REACTION ',I2)">(MSGFIL, i);
      return false;
    }
    write<"(1X,'(',I2,') ',A8,3(A1,A8),1PE10.3)">(MSGFIL, i, r.reactant, zip(r.separators, r.products),
                                                  r.rate);
    int reactant = 0;
    std::array<int, 3> products{};
    if (!resolve_names(index, r, reactant, products)) {
      write<"(/,5X,'ERROR IN COMPLEX FORMULA ',I2)">(MSGFIL, i);
      return false;
    }
    write<"(' NUMS: ',I3,'>',3(I3,1X),2X,1PE11.4)">(NFISTO, reactant, products, r.rate);
  }
  return true;
}

}  // namespace varpre
