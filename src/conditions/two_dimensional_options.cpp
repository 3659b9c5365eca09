#include "conditions/two_dimensional_options.h"

#include <algorithm>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "conditions/options.h"
#include "files/keywords.h"
#include "files/store_records.h"
#include "files/store_values.h"
#include "textio/channel/statement.h"

namespace varpre {
namespace {

constexpr const Section& options_section = sections::named("the two-dimensional options");
constexpr const Section& input_section = sections::named("the two-dimensional parameters");

using StoreRecord = Text<200>;
constexpr std::string_view radius_record = "INNER AN";
constexpr std::ptrdiff_t weight_record =
    6;  // records below the radius record, the last of the flame conditions

// Reads the option entries up to the END record, its own other entries included; false after the message.
bool read_entries(Input& NFICON, Listing& MSGFIL, std::vector<OptionField>& entries) {
  const Place heading = heading_place(options_section, NFICON);
  for (OptionRecord record;;) {
    if (!read_option_record(NFICON, record)) {
      write<"('*!* REACHED END OF INPUT-FILE WITHOUT INPUT!!!')">(MSGFIL);
      report_not_closed(options_section, heading, MSGFIL.findings);
      return false;
    }
    if (entries.size() + record.size() > NUMOPT) {
      write<"('*!* ERROR: MORE THAN 60 2D-OPTIONS!')">(MSGFIL);
      MSGFIL.findings.error(here(NFICON), message("more than ", NUMOPT, " two-dimensional options"),
                            "eight records of seven fields can be taken, the END record counted");
      return false;
    }
    const bool last = record[0].ends_section();
    if (last) {
      record[0].name = "";
      for (OptionField& field : record) field.value = field.value.value_or(0);
    }
    const bool told = !last && examine_columns(record, N2TOPT, NFICON, MSGFIL.findings);
    const auto unreadable =
        std::find_if(record.begin(), record.end(), [](const OptionField& f) { return !f.value; });
    if (unreadable != record.end()) {
      if (!told && !report_heading_inside(options_section, heading, NFICON, MSGFIL.findings)) {
        report_option_value(*unreadable, MSGFIL.findings);
      }
      write<"('*!* ERROR WHILE READING OPITONS FROM INPUT-FILE!')">(MSGFIL);
      return false;
    }
    entries.insert(entries.end(), record.begin(), record.end());
    if (last) return true;
  }
}

bool matches(const OptionField& entry, std::string_view option) {
  return names_option(entry.name.view(), option);
}

OptionVector assign(std::span<const OptionField> entries, Listing& MSGFIL) {
  OptionVector IOPT2;
  for (const OptionField& entry : entries) {
    const bool known =
        std::any_of(N2TOPT.begin(), N2TOPT.end(), [&](std::string_view o) { return matches(entry, o); });
    if (entry.name.blank() || known) continue;
    write<"('*!* WARNING: OPTION ',A8,'NOT FOUND IN OPTIONSLIST!')">(MSGFIL, entry.name);
    MSGFIL.findings.warning(entry.place, message("unknown two-dimensional option '", entry.name, "'"),
                            nearest_option(entry.name, N2TOPT));
  }
  for (const OptionField& entry : entries) {
    for (std::size_t n = 0; n < N2TOPT.size(); ++n) {
      if (!entry.name.blank() && matches(entry, N2TOPT[n])) IOPT2.slots[n] = *entry.value;
    }
  }
  return IOPT2;
}

// The first word that is no keyword ends the section; it is warned of when that is not END.
struct OtherEnd {
  const Input& NFICON;
  const Place& heading;
  Findings& findings;

  std::optional<SectionEnd> take(const KeywordRecord& record) const {
    if (report_heading_inside(input_section, heading, NFICON, findings, Findings::Severity::warning)) {
      return SectionEnd::closed;
    }
    const std::string_view word = trimmed(record.word.view());
    Nearest nearest(word);
    for (const auto& keyword : TwoDimensionalSection::keywords) nearest.offer(keyword.word);
    findings.warning(here(NFICON, 1, 4),
                     message("'", word, "' is no two-dimensional parameter: it ends the section"),
                     nearest.help());
    return SectionEnd::closed;
  }
  static void offer_to(Nearest&) {}
  static bool knows(std::string_view) { return false; }
  static void behind_error() {}
};

// Takes the keyword records up to the first other one; false after the message.
bool read_parameters(Input& NFICON, Listing& MSGFIL, GivenKeywords<TwoDimensionalSection>& given) {
  const OtherEnd other{NFICON, given.heading, MSGFIL.findings};
  const SectionEnd end = read_keywords(input_section, NFICON, MSGFIL.findings, given, other);
  if (end == SectionEnd::unreadable_value) {
    write<"(/,5X,'ERROR IN INPUT OF 2D-CONDITIONS : ',A4)">(MSGFIL, given.last.word.first(4));
  }
  if (end == SectionEnd::end_of_file) write<"('*!* ERROR: COULD NOT READ 2D-OPTIONS PROPERLY!')">(MSGFIL);
  return end == SectionEnd::closed;
}

std::vector<StoreRecord> records_of(std::string_view text) {
  std::vector<StoreRecord> records;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    records.emplace_back(text.substr(0, end));
    text.remove_prefix(end + 1);
  }
  return records;
}

void replace_options(const OptionVector& IOPT2, std::span<StoreRecord, 3> records, Listing& MSGFIL) {
  std::string option_records;
  write<store_records::options>(option_records, IOPT2.slots);
  std::ranges::copy(records_of(option_records), records.begin());
  write_free(MSGFIL, std::string_view("********  NEW 2D OPTIONS VECTOR  ********"));
  for (const StoreRecord& record : records) write_free(MSGFIL, record);
}

std::vector<StoreRecord> parameter_records(const TwoDimensionalParameters& p) {
  std::string records;
  store_values::TwoDimensionalValues::write(records, p);
  return records_of(records);
}

}  // namespace

void G2OPT(Input& NFICON, Listing& MSGFIL, StoreFile& NFISTO) {
  if (!find_section(options_section, NFICON)) {
    write<"('*!* WARNING: NO 2D-OPTIONS-FOUND -- REALLY 2D-Problem?')">(MSGFIL);
    report_missing(options_section, NFICON, MSGFIL.findings);
    return;
  }
  write_free(MSGFIL, std::string_view("--* 2D-OPTIONS FOUND: CALCULATING 2D-PROBLEM"));
  write_free(MSGFIL);
  std::vector<OptionField> entries;
  if (!read_entries(NFICON, MSGFIL, entries)) return;
  const OptionVector IOPT2 = assign(entries, MSGFIL);
  write<"(3X,'2DOptions : ')">(MSGFIL);
  list_options(N2TOPT, IOPT2, MSGFIL);

  if (!find_section(input_section, NFICON)) {
    write<"('*!* ERROR WHILE SCANNING FOR HEADING OF 2D-OPTIONS!')">(MSGFIL);
    report_missing(input_section, NFICON, MSGFIL.findings);
    return;
  }
  GivenKeywords<TwoDimensionalSection> given;
  if (!read_parameters(NFICON, MSGFIL, given)) return;

  std::vector<StoreRecord> records = records_of(NFISTO.text);
  if (records.size() > 3) replace_options(IOPT2, std::span(records).subspan<1, 3>(), MSGFIL);
  auto radius = std::find_if(records.begin(), records.end(),
                             [](const StoreRecord& record) { return record.first(8) == radius_record; });
  if (records.end() - radius <= weight_record) {
    write<"('*!* ERROR: NO FLAME CONDITIONS IN THE STORE FILE!')">(MSGFIL);
    MSGFIL.findings.error(whole(NFICON), "no flame conditions in the store file");
    return;
  }
  const auto first_listed = radius - records.begin();
  const std::vector<StoreRecord> inserted = parameter_records(given.values);
  records.insert(radius + weight_record + 1, inserted.begin(), inserted.end());
  constexpr std::ptrdiff_t most_listed = 13;
  radius = records.begin() + first_listed;
  write_free(MSGFIL, std::string_view("********  NEW 2D CONTROL PARAMETERS  ********"));
  for (const StoreRecord& record : std::span(radius, std::min(radius + most_listed, records.end()))) {
    write_free(MSGFIL, record);
  }

  NFISTO.text.clear();
  for (const StoreRecord& record : records) write<"(A)">(NFISTO, trimmed(record.view()));
}

}  // namespace varpre
