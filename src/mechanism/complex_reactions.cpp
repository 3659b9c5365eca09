#include "mechanism/complex_reactions.h"

#include <cmath>
#include <vector>

#include "files/section_findings.h"
#include "files/sections.h"
#include "files/store_records.h"
#include "math/elementary.h"
#include "mechanism/mechanism_findings.h"
#include "mechanism/reaction.h"
#include "textio/channel/run_stop.h"
#include "textio/channel/statement.h"
#include "textio/findings/record_findings.h"

namespace varpre {
namespace {

constexpr int half = 3;  // slots 1..3 are reactants, 4..6 products

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

// `count` slots of a reaction behind the first `before`, in the order in which a record holds them.
auto slots(ComplexReaction& r, int before, int count) {
  const auto part = [&](auto& array) {
    return first(array, before + count).subspan(first(array, before).size());
  };
  return zip(part(r.mark), part(r.STOBR), part(r.name), part(r.ORD));
}

// Of the reactants (0 before them) or the products (3 before them).
int filled_slots(const ComplexReaction& r, int before) {
  int count = 0;
  for (int m = before + 1; m <= before + half; ++m) count += at(r.STOBR, m) != 0 ? 1 : 0;
  return count;
}

// Reads the two records of a reaction; false, after the finding, when one is missing or cannot be read.
bool read_reaction(Input& NFIMEC, ComplexReaction& r, Findings& findings) {
  const auto examine = [&](const ReadResult& result, std::string_view side) {
    const auto name_of = [&](int) { return message("a value of the ", side); };
    if (result.end_of_file()) {
      findings.error(whole(NFIMEC), "the file ends before the last complex reaction",
                     "the section holds the number of reactions, then two records for each");
    } else if (const Section* const opened =
                   section_of(NFIMEC.origin(NFIMEC.record_number()).text, Section::MEC);
               opened != nullptr) {
      findings.error(here(NFIMEC, 1, 4),
                     message("a complex reaction is due here, not the heading of ", opened->content),
                     "the number behind the heading tells how many complex reactions there are");
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

// Whether the columns of the store file take a coefficient or an order.
bool fits_F6_3(double value) {
  return value > -9.9995 && value < 99.9995;
}

// The record and the columns of a slot.
Place place_of(const ComplexReaction& r, int m) {
  Place place = r.line;
  place.record += m <= half ? 0 : 1;
  place.column = 1 + 19 * ((m - 1) % half);
  place.width = 18;
  return place;
}

// Numbers of the named species; of equal names in SYMB the last. False, after the finding, at a name that is
// not there.
bool resolve_names(std::span<const SpeciesName> SYMB, ComplexReaction& r, Findings& findings) {
  for (int m = 1; m <= 2 * half; ++m) {
    const SpeciesName& name = at(r.name, m);
    const int number = last_of_name(SYMB, name);
    at(r.NUMS, m) = number;
    if (number != 0 || name.blank()) continue;
    if (findings.follows(place_of(r, m), "unknown name", Findings::Severity::error)) return false;
    report_unknown_name(place_of(r, m), name, SYMB, " in a complex reaction", findings);
    return false;
  }
  return true;
}

void check_balance(const SpeciesView& species, const ComplexReaction& r, Findings& findings) {
  ElementSums sums(species);
  for (int m = 1; m <= 2 * half; ++m) sums.add(at(r.NUMS, m), (m <= half ? -1 : 1) * at(r.STOBR, m));
  sums.report(r.line, findings);
}

void warn_of_rate(const ComplexReaction& r, Findings& findings) {
  constexpr double most = 1000;  // kJ/mol
  if (!(r.ABR > 0)) {
    findings.warning({r.line.unit, r.line.record, 58, 10},
                     message("A of this complex reaction is read as ", about(r.ABR)),
                     "a pre-exponential factor is positive, and stands in columns 58-67");
  }
  if (std::abs(r.EBR) > most) {
    findings.warning({r.line.unit, r.line.record + 1, 63, 5},
                     message("the activation energy is read as ", about(r.EBR), " kJ/mol"),
                     "E is in kJ/mol: is this one in J/mol or cal/mol?");
  }
}

// Reports what the columns of the store file cannot hold: F6.3 for coefficients and orders, I2 for numbers.
void report_asterisks(const ComplexReaction& r, Findings& findings) {
  for (int m = 1; m <= 2 * half; ++m) {
    const auto report = [&](std::string_view what, double value) {
      findings.error(
          place_of(r, m), message(what, " of ", value, " does not fit the store file, which has asterisks"),
          "coefficients and orders are less than 100, species are among the first 99 of the lists");
    };
    if (at(r.NUMS, m) > 99) report("the species number", at(r.NUMS, m));
    if (!fits_F6_3(at(r.STOBR, m))) report("the coefficient", at(r.STOBR, m));
    if (!fits_F6_3(at(r.ORD, m))) report("the order", at(r.ORD, m));
  }
}

void write_reaction(const ComplexReaction& r, StoreFile& NFISTO) {
  constexpr double per_mole = 1.0E-6F;  // from cm^3 to m^3
  const double ABR = r.ABR * math::pow(per_mole, r.ORD[0] + r.ORD[1] + r.ORD[2] - 1);
  write<store_records::complex_coefficients>(NFISTO, r.STOBR);
  write<store_records::complex_species>(NFISTO, r.NUMS);
  write<store_records::complex_orders>(NFISTO, r.ORD);
  write<store_records::complex_rate>(NFISTO, ABR, r.TBR, r.EBR);
}

bool read_all(std::span<ComplexReaction> reactions, Input& NFIMEC, Listing& MSGFIL) {
  GoingOn going_on(MSGFIL);
  for (int i = 1; i <= count_of(reactions); ++i) {
    if (read_reaction(NFIMEC, at(reactions, i), MSGFIL.findings)) continue;
    write<"('1',5X,'ERROR: unreadable complex reaction ',I2)">(MSGFIL, i);
    std::string_view left;
    if (!going_on.behind_error() || !NFIMEC.peek(left)) break;
  }
  return !going_on.failed();
}

bool list_all(std::span<ComplexReaction> reactions, int NR, bool reactants_optional, Listing& MSGFIL) {
  for (int i = 1; i <= count_of(reactions); ++i) {
    ComplexReaction& r = at(reactions, i);
    if (!reactants_optional && filled_slots(r, 0) == 0) {
      write<"('1',5X,'ERROR: Wrong entry in complex reaction ',I2)">(MSGFIL, i);
      MSGFIL.findings.error(r.line, "the complex reaction has no reactants",
                            "each reactant has its coefficient in columns 2-5, 21-24 or 40-43");
      return false;
    }
    warn_of_rate(r, MSGFIL.findings);
    list_reaction(NR + i, r, MSGFIL);
    r.EBR = 1000 * r.EBR;
  }
  return true;
}

// No reaction is written before the names of all are resolved.
bool write_all(std::span<ComplexReaction> reactions, const SpeciesView& species, Listing& MSGFIL,
               StoreFile& NFISTO) {
  GoingOn going_on(MSGFIL);
  for (int i = 1; i <= count_of(reactions); ++i) {
    if (resolve_names(species.SYMB, at(reactions, i), MSGFIL.findings)) {
      check_balance(species, at(reactions, i), MSGFIL.findings);
      continue;
    }
    write<"('1',5X,'ERROR: Wrong entry in complex reaction no.',I2)">(MSGFIL, i);
    going_on.behind_error();
  }
  if (going_on.failed()) return false;
  for (const ComplexReaction& r : reactions) {
    report_asterisks(r, MSGFIL.findings);
    write_reaction(r, NFISTO);
  }
  return true;
}

}  // namespace

bool GENCRE(const SpeciesView& species, int NR, bool reactants_optional, Input& NFIMEC, Listing& MSGFIL,
            StoreFile& NFISTO, std::vector<Place>& lines) {
  int NBRUT = 0;
  if (!find_section(sections::named("the complex reactions"), NFIMEC)) {
    write<"('1',5X,' No complex reactions defined ')">(MSGFIL);
  } else if (!read<"(I4)">(NFIMEC, NBRUT)) {
    write<"('1',5X,'ERROR: unreadable number of complex reactions')">(MSGFIL);
    MSGFIL.findings.error(here(NFIMEC, 1, 4), "the number of complex reactions is due here",
                          message("columns 1-4 hold a number from 0 to ", MNCRE));
    return false;
  }
  write<store_records::complex_count>(NFISTO, NBRUT);
  if (NBRUT < 0) {
    MSGFIL.findings.warning(here(NFIMEC, 1, 4), "the number of complex reactions is negative: none is read");
    return true;
  }
  if (NBRUT > MNCRE) {
    write_free(MSGFIL, Text<36>(" Too many complex reactions, NBRUT ("), NBRUT, Text<11>(") > MNCRE ("),
               MNCRE, Text<1>(")"));
    MSGFIL.findings.error(here(NFIMEC, 1, 4),
                          message(NBRUT, " complex reactions; there is room for ", MNCRE));
    throw RunStop{};
  }

  std::vector<ComplexReaction> reactions(static_cast<std::size_t>(NBRUT));
  if (!read_all(reactions, NFIMEC, MSGFIL)) return false;
  for (const ComplexReaction& r : reactions) lines.push_back(r.line);
  return list_all(reactions, NR, reactants_optional, MSGFIL) && write_all(reactions, species, MSGFIL, NFISTO);
}

}  // namespace varpre
