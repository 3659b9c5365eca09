#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "files/databases.h"
#include "textio/channel/input.h"
#include "textio/findings/findings.h"
#include "textio/findings/record_findings.h"
#include "thermo/species.h"

namespace varpre {

// What a search came to.
struct DatabaseSearch {
  std::vector<Place> found;         // of each species wanted its entry, the last of several; no unit: none
  std::vector<SpeciesName> others;  // names of the entries that nobody wanted
  int entries = 0;                  // all that were read
  bool read_all = true;             // false: an entry could not be read, and nothing behind it was
  ReadResult unreadable;
  SpeciesName unreadable_name;
  std::vector<SpeciesName> behind;  // species wanted whose name begins a record behind that entry
};

// Notes what stands behind an entry that could not be read.
void note_entries_behind(const NameIndex& index, const Input& database, DatabaseSearch& search);

// Reads a database from its first entry to its end, or to one that cannot be read, and hands out the entries
// of the species wanted: read_entry(name) reads the next one, take(i, place) keeps it as that of wanted[i],
// the name compared without regard to letter case; a later entry replaces an earlier one, with a warning.
template <class ReadEntry, class Take>
DatabaseSearch search_database(std::span<const SpeciesName> wanted, Input& database,
                               const DatabaseLayout& layout, Findings& findings, ReadEntry read_entry,
                               Take take) {
  const NameIndex index(wanted);
  DatabaseSearch search;
  search.found.resize(wanted.size());
  database.rewind();
  for (;;) {
    const Place place{&database, database.record_number() + 1, 1, layout.name_width};
    SpeciesName name;
    const ReadResult result = read_entry(name);
    if (result.end_of_file()) return search;
    if (!result) {
      search.read_all = false;
      search.unreadable = result;
      search.unreadable_name = name;
      note_entries_behind(index, database, search);
      return search;
    }
    ++search.entries;
    const int number = index.find(name);
    if (number == 0) {
      search.others.push_back(name);
      continue;
    }
    warn_of_columns(findings, database, result, layout.field_name);
    const auto i = static_cast<std::size_t>(number - 1);
    if (search.found[i]) {
      findings.warning(
          place, message("this entry of '", name, "' replaces an earlier one"),
          message("the earlier one stands in line ", database.origin(search.found[i].record).line));
    }
    search.found[i] = place;
    take(i, place);
  }
}

// Reports the entry that could not be read: an error when the run lacks a species for it, else a warning.
void report_unreadable_entry(const DatabaseSearch& search, const Input& database,
                             const DatabaseLayout& layout, bool lacking, Findings& findings);

// Whether an entry that nobody wanted, by its first line, is that of a species of the list whose name is
// misspelt there, and not in the list.
using IsMisspelt = bool (*)(std::string_view line, const SpeciesName& listed);

// Reports each species that has no entry, with the one that was probably meant, where the wrong name stands;
// or the fault of the database as a whole. Nothing when an entry that could not be read is the cause.
void report_absent_entries(const DatabaseSearch& search, const SpeciesView& species, const Input& database,
                           IsMisspelt is_misspelt, Findings& findings);

}  // namespace varpre
