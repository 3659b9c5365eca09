#include "thermo/database_search.h"

#include <algorithm>

#include "textio/channel/input.h"
#include "textio/findings/findings.h"

namespace varpre {
namespace {

// The record that begins with a name which stands beside its columns; 0 when there is none.
int misplaced(std::string_view name, const Input& database) {
  int found = 0;
  database.for_each_record([&](int record, std::string_view line) {
    if (found > 0) return;
    line.remove_prefix(std::min(line.find_first_not_of(" \t!#"), line.size()));
    const std::string_view word = line.substr(0, line.find_first_of(" \t"));
    if (same_word(word, name)) found = record;
  });
  return found;
}

int count_of_records(const Input& database) {
  int count = 0;
  database.for_each_record([&](int, std::string_view) { ++count; });
  return count;
}

// The species that have no entry, by their place in the list, each once.
std::vector<std::size_t> absent_species(const DatabaseSearch& search, const SpeciesView& species) {
  const NameIndex index(species.SYMB);
  std::vector<std::size_t> absent;
  for (std::size_t i = 0; i < search.found.size(); ++i) {
    const bool first = index.find(species.SYMB[i]) == static_cast<int>(i) + 1;  // else it is listed twice
    if (!search.found[i] && species.listed[i] && first) absent.push_back(i);
  }
  return absent;
}

// The entry that is meant as that of a species, but is misspelt; no unit when there is none.
Place misspelt_entry(const DatabaseSearch& search, const SpeciesName& name, const Input& database,
                     IsMisspelt is_misspelt) {
  Place found;
  constexpr int most_compared = 5000;
  const auto is_like = [&](const SpeciesName& other) {
    const std::string_view a = trimmed(other.view());
    const std::string_view b = trimmed(name.view());
    const bool short_name = a.size() == b.size() && b.size() == 2 && LSAME(a[0], b[0]);
    return short_name || !Nearest(other.view()).offer(name.view()).help().empty();
  };
  for (const SpeciesName& other : first(search.others, std::min(count_of(search.others), most_compared))) {
    if (!is_like(other)) continue;
    database.for_each_record([&](int record, std::string_view line) {
      if (found.unit != nullptr || SpeciesName(line) != other || !is_misspelt(line, name)) return;
      found = {&database, record, 1, static_cast<int>(trimmed(other.view()).size())};
    });
    if (found.unit != nullptr) break;
  }
  return found;
}

// Reports the species that have no entry, many of them as one: a part of the file is missing then.
void report_left(std::span<const std::size_t> left, const DatabaseSearch& search, const SpeciesView& species,
                 std::string_view file, Findings& findings) {
  constexpr std::size_t least_to_sum_up = 3;
  const std::string entries = message(" in ", file, " (", search.entries, " entries read)");
  const auto place = [&](std::size_t i) { return locate(species.listed[i], species.SYMB[i].view()); };
  if (left.size() >= least_to_sum_up) {
    std::vector<SpeciesName> names;
    for (const std::size_t i : left) names.push_back(species.SYMB[i]);
    findings.error(place(left.front()), message("species ", list_of(names), " have no entry", entries));
    return;
  }
  for (const std::size_t i : left) {
    const SpeciesName& name = species.SYMB[i];
    findings.error(place(i), message("species '", name, "' has no entry", entries),
                   [&] { return Nearest(name.view()).offer_all(search.others).help(); });
  }
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
  const auto severity = lacking ? Findings::Severity::error : Findings::Severity::warning;
  if (findings.follows({&database, search.unreadable.unreadable.record}, "further species list", severity))
    return;
  const std::string field = layout.field_name(search.unreadable.unreadable.number);
  const std::string consequence =
      message("; nothing behind this record is read",
              search.behind.empty() ? "" : message(" (", list_of(search.behind), " would stand there)"));
  report_unreadable(findings, database, search.unreadable,
                    message(field, " of species '", search.unreadable_name, "'"), severity, consequence);
}

void report_absent_entries(const DatabaseSearch& search, const SpeciesView& species, const Input& database,
                           IsMisspelt is_misspelt, Findings& findings) {
  const auto& found = search.found;
  const auto has_entry = [](const Place& entry) { return bool(entry); };
  if (!search.read_all || std::all_of(found.begin(), found.end(), has_entry)) return;
  const std::vector<std::size_t> absent = absent_species(search, species);
  if (absent.empty() || findings.report_fault_of(database)) return;
  const std::string_view file = database.origin(0).file;
  constexpr std::size_t least_to_sum_up = 3;
  if (absent.size() == species.SYMB.size() && absent.size() >= least_to_sum_up) {
    findings.error(whole(database),
                   message("none of the ", static_cast<int>(absent.size()), " species has an entry in ", file,
                           " (", search.entries, " entries read)"),
                   "the name of an entry stands from column 1 on, and columns 1-8 hold nothing else");
    return;
  }
  constexpr std::size_t most_compared = 10;
  Place cut;                      // the entry inside of which the file ends
  std::vector<std::size_t> left;  // of which nothing more is known
  for (std::size_t k = 0; k < absent.size(); ++k) {
    const std::size_t i = absent[k];
    const SpeciesName& name = species.SYMB[i];
    if (same_word(name.view(), "END") && findings.is_told(species.listed[i])) continue;  // behind the others
    const int beside = k < most_compared ? misplaced(name.view(), database) : 0;
    constexpr int lines_of_entry = 4;
    const bool last = beside > 0 && count_of_records(database) - beside < lines_of_entry - 1;
    if (last && same_word(SpeciesName(database.origin(beside).text).view(), name.view())) {
      cut = {&database, beside, 1, static_cast<int>(name.chars.size())};
      findings.error(
          cut, message("species '", name, "' has no entry in ", file, " (", search.entries, " entries read)"),
          "the file ends inside of this one");
      continue;
    }
    if (beside > 0) {
      findings.error(
          {&database, beside, 1, static_cast<int>(name.chars.size())},
          message("species '", name, "' has no entry in ", file, " (", search.entries, " entries read)"),
          "this line begins with it: the name stands from column 1 on, and columns 1-8 hold nothing else");
      continue;
    }
    const Place misspelt = k < most_compared ? misspelt_entry(search, name, database, is_misspelt) : Place{};
    if (misspelt.unit == nullptr) left.push_back(i);
    if (misspelt.unit == nullptr) continue;
    findings.error(
        misspelt,
        message("species '", name, "' has no entry in ", file, " (", search.entries, " entries read)"),
        message("is this one meant? then write ", name));
  }
  const auto follows = [&](std::size_t) {
    return findings.follows(cut, "further species without entry", Findings::Severity::error);
  };
  left.erase(std::remove_if(left.begin(), left.end(), follows), left.end());
  report_left(left, search, species, file, findings);
}

}  // namespace varpre
