#include "thermo/database_search.h"

namespace varpre {

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
  for (std::size_t i = 0; i < search.found.size(); ++i) {
    if (search.found[i].unit != nullptr) continue;
    const SpeciesName& name = species.SYMB[i];
    findings.error(locate(species.listed[i], name.view()),
                   message("species '", name, "' has no entry in ", database.origin(0).file, " (",
                           search.entries, " entries read)"),
                   [&] { return Nearest(name.view()).offer_all(search.others).help(); });
  }
}

}  // namespace varpre
