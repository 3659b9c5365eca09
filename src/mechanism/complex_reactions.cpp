#include "mechanism/complex_reactions.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "textio/channel/run_stop.h"
#include "textio/findings/record_findings.h"
#include "textio/names/scanning.h"
#include "thermo/sections.h"

namespace varpre {
namespace {

constexpr std::size_t half = 3;  // slots 1..3 are reactants, 4..6 products

struct ComplexReaction {
  std::array<Text<1>, 2 * half> mark;    // listed only
  std::array<double, 2 * half> STOBR{};  // stoichiometric coefficients, 0 for an empty slot
  std::array<SpeciesName, 2 * half> name;
  std::array<double, 2 * half> ORD{};  // reaction orders
  std::array<int, 2 * half> NUMS{};    // species numbers, 0 for a blank name
  double ABR = 0;                      // pre-exponential factor
  double TBR = 0;                      // temperature exponent
  double EBR = 0;                      // activation energy; kJ/mol until it is listed, then J/mol
  Place line;                          // its first record
};

// `count` slots of a reaction from `first` on, in the order in which a record holds them.
auto slots(ComplexReaction& r, std::size_t first, std::size_t count) {
  const auto part = [&](auto& array) { return std::span(array).subspan(first, count); };
  return zip(part(r.mark), part(r.STOBR), part(r.name), part(r.ORD));
}

std::size_t filled_slots(const ComplexReaction& r, std::size_t first) {
  const auto slot = r.STOBR.begin() + static_cast<std::ptrdiff_t>(first);
  return static_cast<std::size_t>(std::count_if(slot, slot + half, [](double x) { return x != 0; }));
}

// Reads the two records of a reaction; false, after the finding, when one is missing or cannot be read.
bool read_reaction(Input& NFIMEC, ComplexReaction& r, Findings& findings) {
  const auto examine = [&](const ReadResult& result, std::string_view side) {
    const auto name_of = [&](int) { return message("a value of the ", side); };
    if (result.end_of_file()) {
      findings.error(whole(NFIMEC), "the file ends before the last complex reaction",
                     "the section holds the number of reactions, then two records for each");
    } else if (result.is_unreadable()) {
      report_unreadable(findings, NFIMEC, result, name_of(0));
    } else {
      warn_of_columns(findings, NFIMEC, result, name_of);
    }
    return bool(result);
  };
  r.line = {&NFIMEC, NFIMEC.record_number() + 1, 1, 57};
  return examine(read<"(3(A1,F4.1,1X,A8,1X,F3.0,1X),E10.3)">(NFIMEC, slots(r, 0, half), r.ABR),
                 "reactants") &&
         examine(read<"(3(A1,F4.1,1X,A8,1X,F3.0,1X),2F5.1)">(NFIMEC, slots(r, half, half), r.TBR, r.EBR),
                 "products");
}

void list_reaction(int number, ComplexReaction& r, Listing& MSGFIL) {
  write<"(' ','(',I3,')',A1,F4.2,1X,A8,'(',F4.1,')', 5(1X,A1,F4.2,1X,A8,'(',F4.1,')'))">(
      MSGFIL, number, slots(r, 0, filled_slots(r, 0)));
  write<"(' ',A4,4(1X,A1,F4.2,1X,A8,'(',F4.1,')'))">(MSGFIL, Text<4>("  ->"),
                                                     slots(r, half, filled_slots(r, half)));
  write<"(' ',7X,'A =',1PE10.3,'           ',5X,'TC =',0PF8.3, 5X,'E =',0PF10.2,' KJ/MOL')">(MSGFIL, r.ABR,
                                                                                             r.TBR, r.EBR);
}

// Numbers of the named species; of equal names in SYMB the last. False, after the finding, at a name that is
// not there.
bool resolve_names(std::span<const SpeciesName> SYMB, ComplexReaction& r, Findings& findings) {
  for (std::size_t m = 0; m < r.name.size(); ++m) {
    for (std::size_t k = 0; k < SYMB.size(); ++k) {
      if (EQUSYM(8, r.name[m].view(), SYMB[k].view())) r.NUMS[m] = static_cast<int>(k) + 1;
    }
    if (r.NUMS[m] > 99) {
      findings.warning(r.line,
                       message("the number ", r.NUMS[m], " of species '", r.name[m],
                               "' does not fit the two columns of the store file"),
                       "species of complex reactions must be among the first 99 of the list");
    }
    if (r.NUMS[m] != 0 || r.name[m].blank()) continue;
    Place place = r.line;
    place.record += m < half ? 0 : 1;
    findings.error(locate(place, r.name[m].view()),
                   message("unknown species '", r.name[m], "' in a complex reaction"),
                   Nearest(r.name[m].view()).offer_all(SYMB).help());
    return false;
  }
  return true;
}

void write_reaction(const ComplexReaction& r, StoreFile& NFISTO) {
  constexpr double per_mole = 1.0E-6F;  // from cm^3 to m^3
  const double ABR = r.ABR * std::pow(per_mole, r.ORD[0] + r.ORD[1] + r.ORD[2] - 1);
  write<"(' STOBR',6X,8(F6.3,1X))">(NFISTO, r.STOBR);
  write<"(' NUMS ',6X,8(2X,I2,3X))">(NFISTO, r.NUMS);
  write<"(' ORD  ',6X,8(F6.3,1X))">(NFISTO, r.ORD);
  write<"(' ABR,TBR,EBR',5(1PE11.4,1X))">(NFISTO, ABR, r.TBR, r.EBR);
}

}  // namespace

bool GENCRE(std::span<const SpeciesName> SYMB, int NR, bool reactants_optional, Input& NFIMEC,
            Listing& MSGFIL, StoreFile& NFISTO) {
  int NBRUT = 0;
  if (!find_section(sections::complex_reactions, NFIMEC)) {
    write<"('1',5X,' No complex reactions defined ')">(MSGFIL);
  } else if (!read<"(I4)">(NFIMEC, NBRUT) || NBRUT < 0) {
    write<"('1',5X,'ERROR: unreadable number of complex reactions')">(MSGFIL);
    MSGFIL.findings.error(here(NFIMEC, 1, 4), "the number of complex reactions is due here",
                          message("columns 1-4 hold a number from 0 to ", MNCRE));
    return false;
  }
  write<"(I5,' COMPLEX REACTIONS')">(NFISTO, NBRUT);
  if (NBRUT > MNCRE) {
    write_free(MSGFIL, Text<36>(" Too many complex reactions, NBRUT ("), NBRUT, Text<11>(") > MNCRE ("),
               MNCRE, Text<1>(")"));
    MSGFIL.findings.error(here(NFIMEC, 1, 4),
                          message(NBRUT, " complex reactions; there is room for ", MNCRE));
    throw RunStop{};
  }

  std::vector<ComplexReaction> reactions(static_cast<std::size_t>(NBRUT));
  const auto for_each = [&](auto action) {
    for (int i = 1; i <= NBRUT; ++i) {
      if (!action(i, reactions[static_cast<std::size_t>(i - 1)])) return false;
    }
    return true;
  };
  const bool read_all = for_each([&](int i, ComplexReaction& r) {
    if (read_reaction(NFIMEC, r, MSGFIL.findings)) return true;
    write<"('1',5X,'ERROR: unreadable complex reaction ',I2)">(MSGFIL, i);
    return false;
  });
  if (!read_all) return false;

  const bool listed_all = for_each([&](int i, ComplexReaction& r) {
    if (!reactants_optional && filled_slots(r, 0) == 0) {
      write<"('1',5X,'ERROR: Wrong entry in complex reaction ',I2)">(MSGFIL, i);
      MSGFIL.findings.error(r.line, "the complex reaction has no reactants",
                            "each reactant has its coefficient in columns 2-5, 21-24 or 40-43");
      return false;
    }
    list_reaction(NR + i, r, MSGFIL);
    r.EBR = 1000 * r.EBR;
    return true;
  });
  if (!listed_all) return false;

  const bool resolved_all = for_each([&](int i, ComplexReaction& r) {
    if (resolve_names(SYMB, r, MSGFIL.findings)) return true;
    write<"('1',5X,'ERROR: Wrong entry in complex reaction no.',I2)">(MSGFIL, i);
    return false;
  });
  if (!resolved_all) return false;

  for (const ComplexReaction& r : reactions) write_reaction(r, NFISTO);
  return true;
}

}  // namespace varpre
