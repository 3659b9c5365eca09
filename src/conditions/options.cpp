#include "conditions/options.h"

#include <algorithm>

#include "files/keyword_section.h"
#include "files/section_findings.h"
#include "files/store_records.h"
#include "files/words.h"
#include "textio/channel/statement.h"
#include "textio/names/words.h"
#include "textio/record/number_format.h"

namespace varpre {
namespace {

constexpr const Section& section = sections::named("the options");

constexpr int field_width = 10;  // name 6, value 3, blank 1
constexpr std::string_view field_form =
    "option fields are ten columns wide: six for the name, three for the value, one blank";

// Whether a name, by its first four characters, is an option.
bool names_option(std::string_view name, const OptionNames& options) {
  const Text<4> begin(name.substr(0, 4));
  return !begin.blank() && std::any_of(options.begin(), options.end(), [&](std::string_view option) {
    return !option.starts_with('-') && option.substr(0, 4) == begin.view();
  });
}

// Whether the words of a line are options, each with or without a number behind it; a single one not at the
// beginning of the line.
bool are_options(std::string_view line, const OptionNames& options) {
  int known = line.starts_with(' ') ? 1 : 0;
  bool number_may_follow = false;
  while (!(line = line.substr(std::min(line.find_first_not_of(' '), line.size()))).empty()) {
    const std::string_view word = line.substr(0, line.find(' '));
    line.remove_prefix(word.size());
    const std::size_t digits = std::min(word.find_first_not_of("0123456789"), word.size());
    const bool glued = number_may_follow && digits > 0 && names_option(word.substr(digits), options);
    if (glued) ++known;  // "1Energy"
    if (glued) continue;
    const bool number = number_may_follow && read_free_real(word);
    if (!number && !names_option(word, options) && !word.starts_with("END")) return false;
    number_may_follow = !number;
    if (!number) ++known;
  }
  return known > 1;
}

bool fail(Listing& MSGFIL) {
  write<"(3(' ','+++ Error in GENOPT +++',/))">(MSGFIL);
  return false;
}

// Lists the title records and stands behind the heading; false after the message.
bool find_heading(Input& NFICON, Listing& MSGFIL, std::vector<std::string>& titles) {
  const auto list_title = [&](std::string_view record) {
    if (!record.starts_with(words::title)) return false;
    const auto title = pieces<8, 9>(record);
    titles.emplace_back(trimmed(columns(record, 9, 64)));
    write<"(' ',74('*'),/,' ','*',4X,8A8,4X,'*',/,' ',74('*'),/,'0')">(MSGFIL, std::span(title).subspan<1>());
    return true;
  };
  const Heading heading = find_section(section, NFICON, list_title);
  if (heading) return true;
  write<"(1H1,5X,'ERROR - Wrong heading of options : ',A8,'...')">(MSGFIL, Text<8>(heading.record));
  const bool at_end = heading.record.starts_with(words::title) || NFICON.record_number() == 0;
  MSGFIL.findings.error(at_end ? whole(NFICON) : here(NFICON, 1, 4), "the heading OPTIONS is due here",
                        "the file begins with title lines (COMMENT ...) and OPTIONS; letter case counts");
  return fail(MSGFIL);
}

using OptionPlaces = std::array<Place, std::tuple_size_v<OptionNames>>;  // where each is given

// Takes one field; false, after the message, when its option is unknown. `told`: of the columns of its record
// all has been said.
bool set_option(const OptionField& field, bool told, OptionVector& IOPT, OptionPlaces& places,
                Listing& MSGFIL) {
  const std::string_view word = field.name.first(4);
  if (trimmed(word).empty()) return true;
  const auto found = std::find_if(NTOPT.begin(), NTOPT.end(),
                                  [&](std::string_view option) { return option.substr(0, 4) == word; });
  if (found == NTOPT.end()) {
    write<"(1H1,5X,'ERROR - Option ',A6,I3,' is incorrect')">(MSGFIL, field.name, *field.value);
    if (!told) {
      MSGFIL.findings.error(field.place, message("unknown option '", field.name, "'"),
                            nearest_option(field.name, NTOPT));
    }
    return false;
  }
  if (*field.value == 0 && field.value_given) {
    MSGFIL.findings.warning(field.place, message("option '", field.name, "' with the value 0 counts as 1"),
                            "an option that is not wanted is left out");
  }
  IOPT.slots.begin()[found - NTOPT.begin()] = *field.value == 0 ? 1 : *field.value;
  Place& place = places.begin()[found - NTOPT.begin()];
  warn_of_second(message("option '", field.name, "'"), place, field.place, MSGFIL.findings);
  place = field.place;
  return true;
}

// Reports an END that is not in column 1; false, without a finding, for any other record.
bool report_end_beside(const Input& NFICON, Findings& findings) {
  const std::string_view text = NFICON.origin(NFICON.record_number()).text;
  const Word word = next_word(text);
  if (word.column == 1 || !same_word(word.text, "END")) return false;
  findings.error(here(NFICON, word.column, word.width()),
                 message("this END does not close ", section.content, ": it does not begin in column 1"));
  return true;
}

// Takes the option records up to END; false after the messages. `complete` tells whether END was reached.
bool read_options(Input& NFICON, Listing& MSGFIL, OptionVector& IOPT, bool& complete) {
  const Place heading = heading_place(section, NFICON);
  OptionPlaces places;
  bool LOK = true;
  bool readable = true;
  bool end_beside = false;  // an END that does not begin in column 1: all is said
  complete = false;
  for (OptionRecord record; read_option_record(NFICON, record);) {
    const auto end =
        std::find_if(record.begin(), record.end(), [](const OptionField& f) { return f.ends_section(); });
    const auto unreadable = std::find_if(record.begin(), end, [](const OptionField& f) { return !f.value; });
    end_beside = end_beside || (end == record.end() && report_end_beside(NFICON, MSGFIL.findings));
    const bool shifted = end_beside || examine_columns(record, NTOPT, NFICON, MSGFIL.findings);
    if (unreadable != end) {
      if (!shifted && !report_heading_inside(section, heading, NFICON, MSGFIL.findings)) {
        report_option_value(*unreadable, MSGFIL.findings);
      }
      readable = false;
      break;
    }
    std::for_each(record.begin(), end,
                  [&](const OptionField& f) { LOK = set_option(f, shifted, IOPT, places, MSGFIL) && LOK; });
    if (end == record.end()) continue;
    complete = true;
    return LOK;
  }
  write<"(1H1,5X,'ERROR - Unreadable options or no END of options')">(MSGFIL);
  if (readable && !end_beside) report_not_closed(section, heading, MSGFIL.findings);
  return fail(MSGFIL);
}

}  // namespace

bool read_option_record(Input& NFICON, OptionRecord& record) {
  std::array<Text<6>, fields_per_record> names;
  std::array<Text<3>, fields_per_record> values;
  std::array<Text<1>, fields_per_record> behind;
  if (!read<"(7(A6,A3,A1))">(NFICON, zip(names, values, behind))) return false;
  for (std::size_t k = 0; k < record.size(); ++k) {
    const Place place = here(NFICON, field_width * static_cast<int>(k) + 1, field_width - 1);
    record[k] = {OptionName(names[k].view()), read_integer(values[k].view()), place, !values[k].blank(),
                 is_digit(behind[k].chars[0])};
  }
  return true;
}

bool examine_columns(const OptionRecord& record, const OptionNames& options, const Input& NFICON,
                     Findings& findings) {
  const auto end =
      std::find_if(record.begin(), record.end(), [](const OptionField& f) { return f.ends_section(); });
  const auto wrong = std::find_if(record.begin(), end, [&](const OptionField& field) {
    return !field.value || !(field.name.blank() || names_option(field.name.view(), options));
  });
  if (wrong != end && are_options(NFICON.origin(NFICON.record_number()).text, options)) {
    findings.error({wrong->place.unit, wrong->place.record, wrong->place.column, field_width - 1},
                   message("the options of this line stand beside their columns from column ",
                           wrong->place.column, " on"),
                   field_form);
    return true;
  }
  const auto over = std::find_if(record.begin(), end, [](const OptionField& f) { return f.runs_over; });
  const bool unreadable = std::any_of(record.begin(), end, [](const OptionField& f) { return !f.value; });
  if (over != end && !unreadable) {  // the others of the line follow from it
    const int column = over->place.column + field_width - 1;
    findings.warning({over->place.unit, over->place.record, column},
                     message("the digit in column ", column,
                             " is not read: it stands beside the value of option '", over->name, "'"),
                     field_form);
  }
  return false;
}

void report_option_value(const OptionField& field, Findings& findings) {
  constexpr int name_width = 6;
  constexpr int value_width = 3;
  const int column = field.place.column + name_width;
  findings.error({field.place.unit, field.place.record, column, value_width},
                 message("cannot read the value of option '", field.name,
                         "': expected an integer in columns ", column, "-", column + value_width - 1),
                 field_form);
}

std::string nearest_option(const OptionName& name, const OptionNames& options) {
  Nearest nearest(name.view());
  for (const std::string_view option : options) {
    if (option.starts_with('-')) continue;
    nearest.offer(option);
    nearest.offer(option.substr(0, trimmed(name.view()).size()));
  }
  return nearest.help();
}

void list_options(const OptionNames& names, const OptionVector& IOPT, Listing& MSGFIL) {
  constexpr std::size_t pairs_per_record = 5;
  std::vector<OptionName> set_names;
  std::vector<int> values;
  for (std::size_t j = 0; j < names.size(); ++j) {
    if (IOPT.slots[j] == 0) continue;
    set_names.emplace_back(names[j]);
    values.push_back(IOPT.slots[j]);
  }
  for (std::size_t first = 0; first <= values.size(); first += pairs_per_record) {
    const std::size_t count = std::min(pairs_per_record, values.size() - first);
    write<"(1(13X,5(A8,I3,2X)))">(
        MSGFIL, zip(std::span(set_names).subspan(first, count), std::span(values).subspan(first, count)));
  }
}

bool GENOPT(Input& NFICON, Listing& MSGFIL, StoreFile& NFISTO, OptionVector& IOPT,
            std::vector<std::string>& titles) {
  IOPT = {};
  if (!find_heading(NFICON, MSGFIL, titles)) return false;
  bool complete = false;
  const bool LOK = read_options(NFICON, MSGFIL, IOPT, complete);
  if (!complete) return false;
  write<"(3X,'Options : ')">(MSGFIL);
  list_options(NTOPT, IOPT, MSGFIL);
  write<store_records::options>(NFISTO, IOPT.slots);
  return LOK;
}

}  // namespace varpre
