#include "mechanism/photo_reactions.h"

#include "textio/findings/record_findings.h"
#include "textio/names/scanning.h"
#include "thermo/sections.h"

namespace varpre {
namespace {

struct PhotoReaction {
  SpeciesName reactant;
  std::array<Text<1>, 3> separators;  // before each product; only the first one is checked
  std::array<SpeciesName, 3> products;
  double rate = 0;
};

ReadResult read_reaction(Input& NFIMEC, PhotoReaction& r) {
  return read<"(A8,3(A1,A8),E10.3)">(NFIMEC, r.reactant, zip(r.separators, r.products), r.rate);
}

std::string_view field_name(int) {
  return "the rate of a photo reaction";
}

// Numbers of the reactant and the products; false, after the finding, when the record breaks a rule.
bool resolve_names(std::span<const SpeciesName> SYMB, const NameIndex& index, const PhotoReaction& r,
                   const Place& line, Findings& findings, int& reactant, std::array<int, 3>& products) {
  const auto number_of = [&](const SpeciesName& name, int& number) {
    number = name.blank() ? 0 : index.find(name);
    if (number > 0 || name.blank()) return true;
    findings.error(locate(line, name.view()), message("unknown species '", name, "' in a photo reaction"),
                   Nearest(name.view()).offer_all(SYMB).help());
    return false;
  };
  if (r.separators[0].view() != ">") {
    findings.error({line.unit, line.record, 9}, "\">\" is due in column 9 of a photo reaction",
                   "columns 1-8 hold the reactant, 10-17, 19-26 and 28-35 the products, 36-45 the rate");
    return false;
  }
  if (r.reactant.blank()) {
    findings.error({line.unit, line.record, 1, 8}, "the photo reaction has no reactant in columns 1-8");
    return false;
  }
  if (!number_of(r.reactant, reactant)) return false;
  for (std::size_t k = 0; k < products.size(); ++k) {
    if (!number_of(r.products[k], products[k])) return false;
  }
  return true;
}

}  // namespace

bool INIPHO(std::span<const SpeciesName> SYMB, Input& NFIMEC, Listing& MSGFIL, StoreFile& NFISTO) {
  int NPHO = 0;
  if (find_section(sections::photo_reactions, NFIMEC) && !read<"(I3)">(NFIMEC, NPHO)) {
    write<"(/,5X,'UNREADABLE NUMBER OF PHOTO REACTIONS')">(MSGFIL);
    MSGFIL.findings.error(here(NFIMEC, 1, 3), "the number of photo reactions is due here",
                          message("columns 1-3 hold a number from 0 to ", NPMAX));
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
    MSGFIL.findings.error(here(NFIMEC, 1, 3), message(NPHO, " photo reactions; there is room for ", NPMAX));
    return false;
  }

  if (NPHO < 0) {
    MSGFIL.findings.warning(here(NFIMEC, 1, 3),
                            message("the number of photo reactions is negative: none is read"));
  }

  const NameIndex index(SYMB);
  for (int i = 1; i <= NPHO; ++i) {
    PhotoReaction r;
    const ReadResult result = read_reaction(NFIMEC, r);
    if (!result) {
      write<"(/,5X,'UNREADABLE PHOTO REACTION ',I2)">(MSGFIL, i);
      if (result.end_of_file()) {
        MSGFIL.findings.error(whole(NFIMEC),
                              message("the file ends before photo reaction ", i, " of ", NPHO));
      } else {
        report_unreadable(MSGFIL.findings, NFIMEC, result, field_name(result.unreadable.number));
      }
      return false;
    }
    write<"(1X,'(',I2,') ',A8,3(A1,A8),1PE10.3)">(MSGFIL, i, r.reactant, zip(r.separators, r.products),
                                                  r.rate);
    warn_of_columns(MSGFIL.findings, NFIMEC, result, field_name);
    int reactant = 0;
    std::array<int, 3> products{};
    if (!resolve_names(SYMB, index, r, here(NFIMEC), MSGFIL.findings, reactant, products)) {
      write<"(/,5X,'ERROR IN COMPLEX FORMULA ',I2)">(MSGFIL, i);
      return false;
    }
    write<"(' NUMS: ',I3,'>',3(I3,1X),2X,1PE11.4)">(NFISTO, reactant, products, r.rate);
  }
  return true;
}

}  // namespace varpre
