#include "thermo/database_search.h"

#include <algorithm>

#include "textio/channel/input.h"
#include "textio/findings/findings.h"

namespace varpre {
namespace {

// A help for a name that stands beside its columns; empty when no line begins with it.
std::string misplaced(std::string_view name, const Input& database) {
  int found = 0;
  database.for_each_record([&](int record, std::string_view line) {
    if (found > 0) return;
    line.remove_prefix(std::min(line.find_first_not_of(" \t!#"), line.size()));
    const std::string_view word = line.substr(0, line.find_first_of(" \t"));
    if (same_word(word, name)) found = record;
  });
  if (found == 0) return {};
  return message("line ", database.origin(found).line,
                 " begins with it; the name stands from column 1 on, and columns 1-8 hold nothing else");
}

}  // namespace

void note_entries_behind(const NameIndex& index, const Input& database, DatabaseSearch& search) {
  const int last = database.record_number();
  database.for_each_record([&](int record, std::string_view text) {
    if (record <= last) return;
    const SpeciesName name(text);
    if (index.find(name) != 0) search.behind.push_back(name);
  });
}

void report_unreadable_entry(const DatabaseSearch& search, const Input& database,
                             const DatabaseLayout& layout, bool lacking, Findings& findings) {
  if (search.read_all) return;
  const std::string field = layout.field_name(search.unreadable.unreadable.number);
  const std::string consequence =
      message("; nothing behind this record is read",
              search.behind.empty() ? "" : message(" (", list_of(search.behind), " would stand there)"));
  report_unreadable(findings, database, search.unreadable,
                    message(field, " of species '", search.unreadable_name, "'"),
                    lacking ? Findings::Severity::error : Findings::Severity::warning, consequence);
}

void report_absent_entries(const DatabaseSearch& search, const SpeciesView& species, const Input& database,
                           Findings& findings) {
  if (!search.read_all) return;
  const NameIndex index(species.SYMB);
  for (std::size_t i = 0; i < search.found.size(); ++i) {
    if (search.found[i] || !species.listed[i]) continue;
    const SpeciesName& name = species.SYMB[i];
    if (index.find(name) != static_cast<int>(i) + 1) continue;  // it is listed twice, which was reported
    findings.error(locate(species.listed[i], name.view()),
                   message("species '", name, "' has no entry in ", database.origin(0).file, " (",
                           search.entries, " entries read)"),
                   [&] {
                     const std::string help = misplaced(name.view(), database);
                     return help.empty() ? Nearest(name.view()).offer_all(search.others).help() : help;
                   });
  }
}

}  // namespace varpre
