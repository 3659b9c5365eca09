#include "thermo/species_list.h"

#include <algorithm>

#include "files/section_findings.h"
#include "files/words.h"
#include "textio/channel/statement.h"
#include "textio/names/scanning.h"
#include "textio/names/words.h"
#include "textio/record/numbered.h"

namespace varpre {
namespace {

constexpr std::string_view flag_characters = "*+>";
constexpr NameLimits limits{.LSYM = 50, .LDEL = 3};
static_assert(sizeof(SpeciesName) <= 50);  // a name that is kept is no longer than one that is read
void warn_absent(Listing& MSGFIL) {
  write<"(5X,'Warning In species input: No heading, ','no end card, or missing data')">(MSGFIL);
}

// The flags of the species of one line, which end at number NS.
void set_flags(const NameList& names, int NS, std::span<int> IFLAG) {
  for (int k = 1; k <= names.NSYM(); ++k) at(IFLAG, NS - names.NSYM() + k) = 0;
  for (int k = 1; k <= names.NDEL(); ++k) {
    const std::size_t flag = flag_characters.find(at(names.DELS, k).front());
    if (flag == std::string_view::npos) continue;
    at(IFLAG, NS - names.NDEL() + k) = static_cast<int>(flag) + 1;
  }
}

// Warns of flags that do not count for the name they stand behind.
void warn_of_moved_flags(const NameList& names, const Place& record, Findings& findings) {
  for (int k = 1; k <= names.NDEL() && names.NDEL() < names.NSYM(); ++k) {
    const std::string_view flag = at(names.DELS, k).substr(0, 1);
    const std::string_view name = at(names.SYMS, k);
    if (flag_characters.find(flag) == std::string_view::npos) continue;
    findings.warning(
        locate(record, name),
        message("the flag '", flag, "' behind '", name, "' sets the flag of '", at(names.SYMS, k + 1), "'"),
        "flags count from the end of the line: give a flagged name a line of its own");
  }
}

// How bad a name is that has no entry of its own in the databases.
Findings::Severity severity(const Section& section) {
  return section.data_needed ? Findings::Severity::error : Findings::Severity::warning;
}

// Where a name of a line stands, the last time if it is there twice.
Place locate_last(const Place& record, std::string_view name) {
  Place place = locate(record, name);
  for (const Word& word : words_of(record.unit->origin(record.record).text)) {
    if (word.text == name) place.column = word.column;
  }
  return place;
}

// Reports a name that is in the list already, whole or cut to its length there. `number` is its place,
// `equal` that of the first one.
void report_equal_names(const Section& section, std::string_view written, int number, int equal,
                        const SpeciesView& species, Findings& findings) {
  const SpeciesName& name = at(species.SYMB, number);
  if (findings.follows(at(species.listed, number), "further name", severity(section))) return;
  const Place& earlier_place = at(species.listed, equal);
  const bool cut = written.size() > name.chars.size();
  findings.report(severity(section), locate_last(at(species.listed, number), written),
                  cut ? message("species '", written, "' is cut to '", name, "', which is listed already")
                      : message("species '", name, "' is listed already"),
                  message("the first one stands in line ",
                          earlier_place.unit->origin(earlier_place.record).line, ": delete one of them"),
                  Findings::Site::current());
}

}  // namespace

void warn_of_species_in_both(const SpeciesView& gas, const SpeciesView& surface, Findings& findings) {
  const NameIndex index(gas.SYMB);
  for (int i = 1; i <= surface.size(); ++i) {
    const SpeciesName& name = at(surface.SYMB, i);
    const int in_gas = index.find(name);
    if (in_gas == 0 || !at(gas.listed, in_gas) || !at(surface.listed, i))
      continue;  // behind a missing END everything is in both
    findings.warning(locate(at(surface.listed, i), name.view()),
                     message("species '", name, "' is listed in the gas phase as well"),
                     "reactions and mixtures mean the gas species by this name");
  }
}

SpeciesList GENSYM(const Section& section, Input& NFICON, Listing& MSGFIL, const SpeciesPlaces& species) {
  if (!find_section(section, NFICON)) {
    warn_absent(MSGFIL);
    return {.absent = true, .heading = false};
  }
  const Place heading = heading_place(section, NFICON);
  Line line;
  bool not_closed = false;
  int NS = 0;
  NameList names;
  NameIndex index(species.size());
  for (;;) {
    if (!read<"(A)">(NFICON, line)) {
      warn_absent(MSGFIL);
      report_not_closed(section, heading, MSGFIL.findings);
      return {.NS = NS, .absent = true};
    }
    if (begins_with(line.view(), words::end)) break;
    const Place record = here(NFICON);
    // What stands from the heading of another section on is no species, and needs no finding of its own.
    not_closed =
        not_closed || report_heading_inside(section, heading, NFICON, MSGFIL.findings, severity(section));
    GETNAM(line.chars, limits, flag_characters, names, MSGFIL, &record);
    if (names.NSYM() == 0) {
      write_free(MSGFIL, std::string_view(" Warning: blank line encountered"));
      const bool comment = NFICON.origin(NFICON.record_number()).text.find('!') != std::string_view::npos;
      if (!not_closed && !comment) MSGFIL.findings.warning(record, "blank line inside a species list");
      continue;
    }
    const int NSMAX_left = species.size();
    NS += names.NSYM();
    if (NS > NSMAX_left) {
      write<"('0',2X,'ERROR in GENSYM - Too many species:', ' NS(',I4,') > NSMAX(',I4,')')">(MSGFIL, NS,
                                                                                             NSMAX_left);
      MSGFIL.findings.error(record,
                            message("too many species: with this line the list has ", NS,
                                    " and there is room for ", NSMAX_left),
                            message("all lists together hold at most ", NSMAX));
      return {.NS = NS, .absent = true};
    }
    for (int k = 1; k <= names.NSYM(); ++k) {
      const std::string_view written = at(names.SYMS, k);
      const int number = NS - names.NSYM() + k;
      at(species.SYMB, number) = written;
      at(species.listed, number) = not_closed ? Place{} : record;
      const int equal = index.add(at(species.SYMB, number));
      if (equal > 0 && !not_closed) {
        report_equal_names(section, written, number, equal, species, MSGFIL.findings);
      }
    }
    set_flags(names, NS, species.IFLAG);
    if (!not_closed) warn_of_moved_flags(names, record, MSGFIL.findings);
  }

  write<"(1H ,7X,'List of Species and Flags, NS =',I5)">(MSGFIL, NS);
  write<"(8X,'Species : ',5(A,1X,I1,2X), /,1(18X,5(A,1X,I1,2X)))">(
      MSGFIL, zip(first(species.SYMB, NS), first(species.IFLAG, NS)));
  return {.NS = NS};
}

}  // namespace varpre
