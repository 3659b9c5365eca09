#include "mechanism/photo_reactions.h"

#include <optional>

#include "files/sections.h"
#include "files/store_records.h"
#include "mechanism/mechanism_findings.h"
#include "mechanism/reaction.h"
#include "textio/channel/statement.h"
#include "textio/findings/record_findings.h"

namespace varpre {
namespace {

struct PhotoReaction {
  std::array<SpeciesName, 4> names;   // the reactant, then the products
  std::array<int, 4> numbers{};       // their numbers, 0 for a blank name
  std::array<Text<1>, 3> separators;  // before each product; only the first one is checked
  double rate = 0;

  SpeciesName& reactant() { return names.front(); }
  std::span<SpeciesName, 3> products() { return std::span(names).last<3>(); }
};

std::string_view field_name(int) {
  return "the rate of a photo reaction";
}

// Numbers of the reactant and the products; false, after the finding, when the record breaks a rule.
bool resolve_names(std::span<const SpeciesName> SYMB, const NameIndex& index, const Place& line,
                   PhotoReaction& r, Findings& findings) {
  if (r.separators[0].view() != ">") {
    findings.error({line.unit, line.record, 9}, "\">\" is due in column 9 of a photo reaction",
                   "columns 1-8 hold the reactant, 10-17, 19-26 and 28-35 the products, 36-45 the rate");
    return false;
  }
  if (r.reactant().blank()) {
    findings.error({line.unit, line.record, 1, 8}, "the photo reaction has no reactant in columns 1-8");
    return false;
  }
  for (std::size_t k = 0; k < r.names.size(); ++k) {
    r.numbers[k] = r.names[k].blank() ? 0 : index.find(r.names[k]);
    if (r.numbers[k] > 0 || r.names[k].blank()) continue;
    report_unknown_name(line, r.names[k], SYMB, " in a photo reaction", findings);
    return false;
  }
  return true;
}

// Warns of elements that are not conserved, and of a rate that can hardly be meant.
void warn_of_unusual(const SpeciesView& species, const Place& line, const PhotoReaction& r,
                     Findings& findings) {
  ElementSums sums(species);
  for (std::size_t k = 0; k < r.numbers.size(); ++k) sums.add(r.numbers[k], k == 0 ? -1 : 1);
  sums.report({line.unit, line.record, 1, 35}, findings);
  constexpr double most = 1E6;
  if (r.rate > 0 && r.rate <= most) return;
  findings.warning({line.unit, line.record, 36, 10},
                   message("the rate of this photo reaction is read as ", about(r.rate), " 1/s"),
                   "the rate stands in columns 36-45, and is positive");
}

// Reads, lists and writes a reaction; false after the message.
bool take_reaction(int i, int NPHO, const SpeciesView& species, const NameIndex& index, Input& NFIMEC,
                   Listing& MSGFIL, StoreFile& NFISTO) {
  PhotoReaction r;
  const ReadResult result =
      read<"(A8,3(A1,A8),E10.3)">(NFIMEC, r.reactant(), zip(r.separators, r.products()), r.rate);
  if (!result) {
    write<"(/,5X,'UNREADABLE PHOTO REACTION ',I2)">(MSGFIL, i);
    if (result.end_of_file()) {
      MSGFIL.findings.error(whole(NFIMEC), message("the file ends before photo reaction ", i, " of ", NPHO));
    } else {
      report_unreadable(MSGFIL.findings, NFIMEC, result, field_name(result.unreadable.number));
    }
    return false;
  }
  write<"(1X,'(',I2,') ',A8,3(A1,A8),1PE10.3)">(MSGFIL, i, r.reactant(), zip(r.separators, r.products()),
                                                r.rate);
  warn_of_columns(MSGFIL.findings, NFIMEC, result, field_name);
  if (!resolve_names(species.SYMB, index, here(NFIMEC), r, MSGFIL.findings)) {
    write<"(/,5X,'ERROR IN COMPLEX FORMULA ',I2)">(MSGFIL, i);
    return false;
  }
  warn_of_unusual(species, here(NFIMEC), r, MSGFIL.findings);
  write<store_records::photo_reaction>(NFISTO, r.numbers[0], std::span(r.numbers).last<3>(), r.rate);
  return true;
}

}  // namespace

bool INIPHO(const SpeciesView& species, Input& NFIMEC, Listing& MSGFIL, StoreFile& NFISTO,
            std::vector<Place>& lines) {
  int NPHO = 0;
  if (find_section(sections::named("the photo reactions"), NFIMEC) && !read<"(I3)">(NFIMEC, NPHO)) {
    write<"(/,5X,'UNREADABLE NUMBER OF PHOTO REACTIONS')">(MSGFIL);
    MSGFIL.findings.error(here(NFIMEC, 1, 3), "the number of photo reactions is due here",
                          message("columns 1-3 hold a number from 0 to ", NPMAX));
    return false;
  }
  write<store_records::photo_count>(NFISTO, NPHO);
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

  const NameIndex index(species.SYMB);
  GoingOn going_on(MSGFIL);
  std::optional<Dropped<StoreFile>> dropped;
  for (int i = 1; i <= NPHO; ++i) {
    const bool LOK = take_reaction(i, NPHO, species, index, NFIMEC, MSGFIL, NFISTO);
    lines.push_back(here(NFIMEC, 1, 45));
    if (LOK) continue;
    if (!dropped) dropped.emplace(NFISTO);
    std::string_view left;
    if (!going_on.behind_error() || !NFIMEC.peek(left)) break;
  }
  return !going_on.failed();
}

}  // namespace varpre
