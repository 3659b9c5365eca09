#include "mechanism/collision_efficiencies.h"

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "files/section_findings.h"
#include "files/store_records.h"
#include "files/words.h"
#include "mechanism/foreign_formats.h"
#include "mechanism/name_findings.h"
#include "textio/channel/run_stop.h"
#include "textio/channel/statement.h"
#include "textio/findings/record_findings.h"
#include "textio/names/scanning.h"
#include "textio/names/words.h"
#include "textio/record/number_format.h"
#include "textio/record/numbered.h"

namespace varpre {
namespace {

constexpr const Section& efficiencies_section = sections::named("the collision efficiencies");

constexpr int most_species = 15;  // of one block
constexpr std::string_view delimiter_characters = "=+";
constexpr NameLimits limits{.LSYM = 50, .LDEL = 1};
constexpr std::string_view value_columns =
    "the efficiencies stand in columns 10-17, 19-26, 28-35, ..., in the order of the names";

// One definition: the third body's name, and species with their efficiencies.
struct Block {
  SpeciesName name;
  std::array<SpeciesName, most_species> species;
  std::array<double, most_species> efficiencies{};
  int count = 0;  // species
  Place line;     // its first record
};

using EfficiencyRows = std::vector<std::vector<double>>;

// Rows of the third bodies 1..NCOLL over the species 1..NS, before they are defined.
EfficiencyRows undefined_rows(int NCOLL, int NS, double of_others) {
  const auto row = [NS](double value) { return std::vector<double>(static_cast<std::size_t>(NS), value); };
  EfficiencyRows rows(static_cast<std::size_t>(NCOLL), row(of_others));
  if (!rows.empty()) rows.front() = row(1.0);
  return rows;
}

// The section as it is found: its unit, heading, and the efficiency of species that no definition names,
// which the record TROE makes 1.
struct Table {
  Input* input = nullptr;
  Place heading;
  double of_others = 0;
  std::vector<Place> cut_text;  // records of which it was told what was cut off
};

// Stands behind the heading and a record TROE; false when the heading, or any record behind it, is missing.
bool find_heading(Input& input, Table& table) {
  if (!find_section(efficiencies_section, input)) return false;
  table = {.input = &input, .heading = heading_place(efficiencies_section, input), .cut_text = {}};
  std::string_view record;
  if (!input.peek(record)) return false;
  if (!begins_with(record, words::troe)) return true;
  table.of_others = 1;
  input.next(record);
  return true;
}

bool fail_without_end(const Place& section, Listing& MSGFIL) {
  write<"('1',5X,'ERROR: no END of the collision efficiencies')">(MSGFIL);
  report_not_closed(efficiencies_section, section, MSGFIL.findings);
  return false;
}

constexpr int first_column = 10;
constexpr int value_width = 8;
constexpr int values_in_80_columns = 8;

int column_of(int value) {
  return first_column + (value - 1) * (value_width + 1);
}

bool is_blank(std::string_view line, int value) {
  return trimmed(columns(line, column_of(value), value_width)).empty();
}

// The first number of the record of the efficiencies that does not stand within the columns of one.
Word across_columns(std::string_view line) {
  line = line.substr(0, line.find('!'));
  for (Word word = next_word(line, first_column); word.column > 0; word = next_word(line, word)) {
    const int place = (word.column - first_column) % (value_width + 1);
    if (place + word.width() > value_width && read_free_real(word.text)) return word;
  }
  return {};
}

// Warns of what the record of the efficiencies, read last, holds beside or beyond its values, or lacks: one
// warning, that of the cause which explains most.
void warn_of_misplaced_values(const Block& block, const Input& unit, Findings& findings) {
  const std::string_view line = unit.origin(unit.record_number()).text;
  const std::string_view before = trimmed(columns(line, 1, first_column - 1));
  const int shown = std::min(block.count, values_in_80_columns);
  std::vector<SpeciesName> without_value;
  int first_without = 0;
  for (int k = shown; k >= 1; --k) {
    if (!is_blank(line, k)) continue;
    without_value.insert(without_value.begin(), at(block.species, k));
    first_without = k;
  }
  int extra = block.count + 1;
  while (extra <= values_in_80_columns && is_blank(line, extra)) ++extra;
  if (const Word across = across_columns(line); across.column > 0) {
    findings.warning(here(unit, across.column, across.width()),
                     message("'", across.text, "' stands across the columns of two efficiencies"),
                     value_columns);
  } else if (!before.empty()) {
    findings.warning(here(unit, 1, static_cast<int>(before.size())),
                     message("columns 1-9 of the efficiencies are not read: '", before, "'"), value_columns);
  } else if (!without_value.empty()) {
    findings.warning(
        here(unit, column_of(first_without), value_width),
        message("no efficiency stands in the columns of ", list_of(without_value), " (read as 0)"),
        value_columns);
  } else if (extra <= values_in_80_columns) {
    findings.warning(
        here(unit, column_of(extra), value_width),
        message("efficiency ", extra, " of this record belongs to no species: the definition names ",
                block.count, " of them"),
        value_columns);
  }
}

void warn_of_unusual(const Block& block, const Input& unit, Findings& findings) {
  constexpr double most = 200;
  for (int k = 1; k <= block.count; ++k) {
    const double efficiency = at(block.efficiencies, k);
    if (efficiency >= 0 && efficiency <= most) continue;
    const Place place = here(unit, column_of(k), value_width);
    if (findings.is_told(place)) return;
    findings.warning(place,
                     efficiency < 0 ? message("the efficiency of ", at(block.species, k), " is negative")
                                    : message("the efficiency of ", at(block.species, k), " is ",
                                              about(efficiency), ", which can hardly be meant"),
                     efficiency < 0 ? "an efficiency is 0 or more" : "efficiencies are 0 to 20 as a rule");
  }
}

// Warns of efficiencies beyond column 80, which is all of the ninth species and those behind it.
void warn_of_lost_efficiencies(const Block& block, const Input& unit, std::vector<Place>& cut_text,
                               Findings& findings) {
  if (block.count <= values_in_80_columns || unit.cut_records.count(unit.record_number()) == 0) return;
  cut_text.push_back(here(unit));
  findings.warning(here(unit, 81, 8),
                   message("text beyond column 80 is not read: the efficiencies count as 0 from ",
                           at(block.species, values_in_80_columns + 1), " on"),
                   "a second definition of the same third body can name further species");
}

// Whether a line without "=" is the heading behind a missing END, or in the form of another program; says so.
bool is_other_text(const Table& table, const Block& block, Findings& findings) {
  const std::string_view line = block.line.unit->origin(block.line.record).text;
  return line.find('=') == std::string_view::npos &&
         (report_heading_inside(efficiencies_section, table.heading, *table.input, findings) ||
          report_foreign_form(block.line, findings));
}

// Reads the two records of a block, or the END record (`end`); false after the message.
bool read_block(Table& table, Block& block, bool& end, Listing& MSGFIL) {
  Input& unit = *table.input;
  Line line;
  block = {};
  if (!read<"(A)">(unit, line)) return fail_without_end(table.heading, MSGFIL);
  block.name = line.first(8);
  block.line = here(unit, 1, 8);
  end = begins_with(line.view(), words::end);
  if (end) return true;

  NameList list;
  const Place* const told = is_other_text(table, block, MSGFIL.findings) ? nullptr : &block.line;
  const int NL = COMPDE(line.chars, delimiter_characters, MSGFIL, told);
  SYDEL(line.first(static_cast<std::size_t>(NL)), limits, delimiter_characters, list, MSGFIL, told);
  if (list.NDEL() == 0 || list.DELS[0] != "=") {
    write<"('wrong first delimiter in gencef')">(MSGFIL);
    // What the record before lacks stands here.
    const bool follows =
        told != nullptr &&
        MSGFIL.findings.follows({&unit, block.line.record - 1}, "misread record", Findings::Severity::error);
    if (told != nullptr && !follows) {
      MSGFIL.findings.error(
          *told, "no \"=\" behind the name of this third body",
          is_meant_as_end(line.view()) ? "did you mean 'END'?"
          : block.line.record == table.heading.record + 1 &&
                  !Nearest(line.view()).offer(words::troe).help().empty()
              ? "did you mean 'TROE'?"
              : "a definition reads M'      =H2O+CO2, the name in columns 1-8, and its efficiencies follow "
                "in the next record");
    }
    throw RunStop{};
  }
  for (int k = 1; k < list.NSYM(); ++k) {
    const SpeciesName name(at(list.SYMS, k + 1));
    if (name.blank()) continue;  // behind two delimiters at the end of the line
    if (block.count == most_species) {
      write<"('1',5X,'ERROR: more than 15 species for third body : ',A)">(MSGFIL, block.name);
      MSGFIL.findings.error(locate(block.line, name.view()),
                            message("'", name, "' is the 16th species of third body ", block.name),
                            "a second definition of the same third body can name further species");
      return false;
    }
    at(block.species, ++block.count) = name;
  }

  const ReadResult result = read<"(9X,15(F8.3,1X))">(unit, block.efficiencies);
  if (result.end_of_file()) return fail_without_end(table.heading, MSGFIL);
  const auto name_of = [&](int number) {
    return number <= block.count ? message("the efficiency of ", at(block.species, number))
                                 : message("efficiency ", number);
  };
  if (result) {
    warn_of_misplaced_values(block, unit, MSGFIL.findings);
    if (!MSGFIL.findings.is_told(here(unit))) warn_of_columns(MSGFIL.findings, unit, result, name_of);
    warn_of_unusual(block, unit, MSGFIL.findings);
    warn_of_lost_efficiencies(block, unit, table.cut_text, MSGFIL.findings);
    return true;
  }
  write<"('1',5X,'ERROR: unreadable efficiencies of third body : ',A)">(MSGFIL, block.name);
  const std::string_view text = unit.origin(unit.record_number()).text;
  const Place before{&unit, block.line.record - 1};
  if (text.find('=') != text.npos &&
      MSGFIL.findings.follows(before, "misread record", Findings::Severity::error))
    return false;
  report_unreadable(MSGFIL.findings, unit, result, name_of(result.unreadable.number));
  return false;
}

// The third body 2..NCOLL of a name; 0 when there is none.
int third_body(const SpeciesName& name, int NCOLL) {
  for (int c = 2; c <= NCOLL; ++c) {
    if (same_word(name.view(), at(MCOLLI, c))) return c;
  }
  return 0;
}

// One value stands for all vibrational states of N2 or O2.
bool names_all_states(const SpeciesName& name) {
  return std::ranges::any_of(words::vibrational, [&](auto word) { return begins_with(name.view(), word); });
}

void set_efficiencies(const Block& block, const ReactionNames& names, std::span<double> row,
                      Listing& MSGFIL) {
  for (int k = 1; k <= block.count; ++k) {
    const SpeciesName& name = at(block.species, k);
    const int compared = names_all_states(name) ? 4 : 8;
    bool found = false;
    for (int s = 1; s <= names.NS(); ++s) {
      if (!EQUSYM(compared, name.view(), names[s].view())) continue;
      at(row, s) = at(block.efficiencies, k);
      found = true;
    }
    if (found) continue;
    write<"(' ',5X,'Warning: Third body ',A,' not found in species',' list')">(MSGFIL, name);
    if (!names.without_entry.empty()) continue;  // it may be one of these, which were told of
    if (MSGFIL.findings.follows(MSGFIL.findings.place_of(message("unknown species '", name, "'")),
                                "efficiency") ||
        MSGFIL.findings.follows(MSGFIL.findings.place_of(list_lacks_names), "efficiency"))
      continue;
    MSGFIL.findings.warning(locate(block.line, name.view()),
                            message("'", name, "' is not in the species list: its efficiency is dropped"),
                            [&] { return Nearest(name.view()).offer_all(names.species()).help(); });
  }
}

std::size_t longest_name(std::span<const SpeciesName> names) {
  std::size_t longest = 0;
  for (const SpeciesName& name : names) longest = std::max(longest, trimmed(name.view()).size());
  return longest;
}

// Lists a definition of a third body under its name in the list of partners, four species to a record, their
// names in the width of the longest of the species list.
void list_block(const Block& block, int third_body, std::size_t name_width, Listing& MSGFIL) {
  constexpr RealEdit F9_3{.width = 9, .digits = 3, .scale = 0};
  constexpr int pairs_per_record = 4;
  for (int k = 0; k == 0 || k < block.count; k += pairs_per_record) {
    std::string pairs;
    for (int i = k + 1; i <= std::min(k + pairs_per_record, block.count); ++i) {
      std::array<char, F9_3.width> efficiency;
      edit_fixed(efficiency.data(), F9_3, at(block.efficiencies, i));
      pairs.append("+").append(efficiency.data(), efficiency.size()).append(" ");
      pairs.append(at(block.species, i).first(name_width));
    }
    if (k == 0) {
      write<"(' ',7X,A,' = ',A)">(MSGFIL, partner_name(third_body), std::string_view(pairs));
    } else {
      write<"(19X,A)">(MSGFIL, std::string_view(pairs));
    }
  }
}

// An efficiency as a definition gives it.
struct GivenEfficiency {
  double value = 0;
  Place line;
};

using EfficiencyKey = std::pair<int, std::array<char, 8>>;  // third body and species

// What the definitions of a table give: the efficiencies, and which third bodies they define.
struct Definitions {
  EfficiencyRows EFF;
  std::map<EfficiencyKey, GivenEfficiency> given;  // by third body and species
  std::array<Place, partner_count> line{};         // the last definition of each
  Place again = {};                                // one that was told to be a second one, or not to be read
  int count = 0;
};

// Warns of a species that a definition names twice, or that an earlier definition of the same third body
// gives another efficiency.
void warn_of_repeated_species(const Block& block, int c, Definitions& definitions, Findings& findings) {
  const auto other_value = [&](int k) {
    const auto given = definitions.given.find({c, at(block.species, k).chars});
    return given != definitions.given.end() && given->second.line != block.line &&
           given->second.value != at(block.efficiencies, k);
  };
  int others = 0;
  for (int k = 1; k <= block.count && at(definitions.line, c); ++k) others += other_value(k) ? 1 : 0;
  if (others > 1) {
    const Place& earlier = at(definitions.line, c);
    findings.warning(block.line,
                     message("third body ", block.name, " is defined already in line ",
                             earlier.unit->origin(earlier.record).line, ", with other efficiencies"),
                     "the later ones count: is another third body meant?");
    definitions.again = block.line;
  }
  for (int k = 1; k <= block.count && others <= 1; ++k) {
    const SpeciesName& name = at(block.species, k);
    const double efficiency = at(block.efficiencies, k);
    const auto [given, is_new] =
        definitions.given.try_emplace(EfficiencyKey(c, name.chars), GivenEfficiency{efficiency, block.line});
    if (is_new) continue;
    const auto [earlier, line] = std::exchange(given->second, {efficiency, block.line});
    if (line == block.line) {
      findings.warning(locate(block.line, name.view()),
                       message("'", name, "' stands twice in this definition: the later efficiency counts"));
    } else if (earlier != efficiency) {
      findings.warning(
          locate(block.line, name.view()),
          message("the efficiency of ", name, " for ", block.name, " is given twice: ", earlier, " in line ",
                  line.unit->origin(line.record).line, ", and ", efficiency, " here"),
          "the later value counts");
    }
  }
}

// Warns of a definition directly behind END, from which follows what is not defined.
void warn_of_definition_behind_end(Input& unit, int NCOLL, Definitions& definitions, Findings& findings) {
  constexpr std::size_t equals = 8;  // its place
  std::string_view record;
  if (!unit.peek(record) || record.size() <= equals || record[equals] != '=' ||
      third_body(SpeciesName(record), NCOLL) == 0)
    return;
  const std::string_view text = trimmed(record);
  definitions.again = {&unit, unit.record_number() + 1, 1, static_cast<int>(text.size())};
  findings.warning(definitions.again, message("'", text, "' is not read: it stands behind END"),
                   message("END in line ", unit.origin(unit.record_number()).line, " closes the section"));
}

// Reads the next definition and lists it; false after the message.
bool read_definition(Table& table, const ReactionNames& names, int NCOLL, const Place& behind_end,
                     Definitions& definitions, bool& end, Listing& MSGFIL) {
  Block block;
  if (!read_block(table, block, end, MSGFIL)) return false;
  if (end) {
    warn_of_definition_behind_end(*table.input, NCOLL, definitions, MSGFIL.findings);
    return true;
  }
  const int c = third_body(block.name, NCOLL);
  if (c == 0) {
    write<"('1',5X,'ERROR: wrong symbol of third body : ',A)">(MSGFIL, block.name);
    if (MSGFIL.findings.follows(behind_end, "definition", Findings::Severity::error)) return false;
    MSGFIL.findings.error(
        block.line, message("'", block.name, "' is no third body that can be defined here"),
        message("no reaction uses it, nor one that comes after ", partner_name(NCOLL),
                NCOLL > 2 ? ": columns 1-8 hold one of M' to " : ": columns 1-8 hold ", partner_name(NCOLL)));
    return false;
  }
  warn_of_repeated_species(block, c, definitions, MSGFIL.findings);
  at(definitions.line, c) = block.line;
  set_efficiencies(block, names, at(definitions.EFF, c), MSGFIL);
  list_block(block, c, longest_name(names.species()), MSGFIL);
  ++definitions.count;
  return true;
}

// Passes what may belong to a definition that could not be read, up to the next one. False at the end.
bool pass_definition(Input& input) {
  const Section* const opened = section_of(input.origin(input.record_number()).text, Section::MEC);
  if (opened != nullptr && *opened != efficiencies_section) return false;
  for (std::string_view record; input.peek(record); input.next(record)) {
    if (EQUSYM(3, record, "END") || record.find('=') != std::string_view::npos) return true;
    if (section_of(record, Section::MEC) != nullptr) return false;
  }
  return false;
}

// Reads all definitions and lists them; false after the message, or RunStop. Behind one that cannot be read
// the others are read for what may be wrong with them.
bool read_definitions(Table& table, const ReactionNames& names, int NCOLL, const Place& behind_end,
                      Definitions& definitions, Listing& MSGFIL) {
  GoingOn going_on(MSGFIL);
  std::optional<RunStop> stop;
  for (bool end = false; !end;) {
    bool read = false;
    try {
      read = read_definition(table, names, NCOLL, behind_end, definitions, end, MSGFIL);
    } catch (const RunStop& first) {
      if (!going_on.failed()) stop = first;
    }
    if (!read) end = !(going_on.behind_error() && pass_definition(*table.input));
  }
  if (stop) throw RunStop(*stop);
  return !going_on.failed();
}

// Without TROE a species that a definition does not name has no effect.
void warn_of_efficiencies_not_given(const Mechanism& mechanism, const Definitions& definitions,
                                    const ReactionNames& names, const Place& heading, Findings& findings) {
  const auto named = static_cast<int>(definitions.given.size());
  const auto defined = std::count_if(definitions.line.begin(), definitions.line.end(),
                                     [](const Place& line) { return line.unit != nullptr; });
  if (!mechanism.complete || named == 0 || named >= defined * names.NS()) return;
  const std::string_view line = heading.unit->origin(heading.record).text;
  for (Word word = next_word(line); !word.text.empty(); word = next_word(line, word)) {
    if (!same_word(word.text, words::troe)) continue;
    return findings.warning({heading.unit, heading.record, word.column, word.width()},
                            message("'", word.text, "' is not read: it stands behind a heading"),
                            "without a line TROE behind the heading every efficiency that is not given is 0");
  }
  findings.warning(heading, "every efficiency that is not given is 0",
                   "a line TROE behind this heading makes it 1");
}

// Warns of a third body that is defined for nothing; where one reaction has M, there.
void warn_of_unused(const SpeciesName& partner, const Place& definition, const Mechanism& mechanism, int NS,
                    Findings& findings) {
  const std::string what = message("third body ", partner, " is defined, but no reaction uses it");
  const auto has_M = [NS](const Reaction& r) {
    return std::find(r.MAT.begin(), r.MAT.end(), NS + 1) != r.MAT.end();
  };
  const auto& reactions = mechanism.reactions;
  const auto first = std::find_if(reactions.begin(), reactions.end(), has_M);
  const auto last = std::find_if(reactions.rbegin(), reactions.rend(), has_M);
  if (first == reactions.end()) return findings.warning(definition, what);
  if (first->line == last->line) {
    return findings.warning(locate(first->line, "M"), what,
                            message("is it meant here? M takes every species alike; ", partner,
                                    " is defined in line ", definition.unit->origin(definition.record).line));
  }
  findings.warning(definition, what, "reactions with M take every species alike: is one of them meant?");
}

// Checks the definitions against the mechanism, third body by third body; false after the message.
bool check_definitions(const Mechanism& mechanism, int NS, const Definitions& definitions,
                       const Place& heading, Listing& MSGFIL) {
  for (int c = 2; c <= mechanism.NCOLL; ++c) {
    const SpeciesName partner = partner_name(c);
    const Place& line = at(definitions.line, c);
    const auto defined = bool(line);
    if (defined && !at(mechanism.used, c)) {
      if (!MSGFIL.findings.follows(mechanism.behind_end, "definition")) {
        warn_of_unused(partner, line, mechanism, NS, MSGFIL.findings);
      }
      write<"('0',3X,'WARNING: ',A,' defined, but not used in ','the mechanism')">(MSGFIL, partner);
    } else if (!defined && at(mechanism.used, c)) {
      if (!MSGFIL.findings.follows(definitions.again, "undefined third body", Findings::Severity::error)) {
        MSGFIL.findings.error(
            heading, message("third body ", partner, " is used in the mechanism, but not defined here"),
            message("every third body but M needs a definition, if only ", partner, " = with no species"));
      }
      write<"('1',5X,'ERROR: ',A,' referenced in mechanism, but not defined')">(MSGFIL, partner);
      return false;
    }
  }
  return true;
}

// Warns of the one reaction that has M where the others have third bodies of their own.
void warn_of_single_M(const Mechanism& mechanism, int NS, const Definitions& definitions,
                      Findings& findings) {
  constexpr int least_others = 4;
  const Reaction* single = nullptr;
  int others = 0;
  int M = 0;
  for (const Reaction& r : mechanism.reactions) {
    const bool again = &r != mechanism.reactions.data() && r.line == (&r - 1)->line;  // the reverse
    const int partner = *std::max_element(r.MAT.begin(), r.MAT.end());
    if (again || partner <= NS) continue;
    if (partner > NS + 1) ++others;
    if (partner == NS + 1) ++M;
    if (partner == NS + 1) single = &r;
  }
  if (M != 1 || others < least_others || definitions.given.empty() || findings.is_told(single->line)) return;
  findings.warning(locate(single->line, "M"), "this reaction alone has M, which takes every species alike",
                   message("the other ", others,
                           " have a third body with efficiencies of its own: is a stroke "
                           "missing?"));
}

bool check_room(int NCOLL, int NS, const Input& NFIMEC, Listing& MSGFIL) {
  if (NCOLL * NS <= NEFMAX) return true;
  write<"('1',5X,'ERROR: collision efficiencies exceed ',I5,' places')">(MSGFIL, NEFMAX);
  MSGFIL.findings.error(whole(NFIMEC),
                        message(NCOLL, " third bodies for ", NS, " species need ", NCOLL * NS,
                                " efficiencies; there is room for ", NEFMAX),
                        "the highest third body that the mechanism uses decides, not their number");
  return false;
}

bool read_table(const ReactionNames& names, const Mechanism& mechanism, Input& NFIMEC, Input& NFICON,
                Table& table, EfficiencyRows& EFF, Listing& MSGFIL, StoreFile& NFISTO) {
  // Of a mechanism that was not read whole nobody knows which third bodies it uses.
  const int NCOLL = mechanism.complete ? mechanism.NCOLL : partner_count;
  if (mechanism.complete && !check_room(NCOLL, names.NS(), NFIMEC, MSGFIL)) return false;
  if (!find_heading(NFIMEC, table) && !find_heading(NFICON, table)) {
    write<"('1','ERROR: heading for collision efficiencies missing ')">(MSGFIL);
    report_missing(efficiencies_section, NFIMEC, MSGFIL.findings,
                   message(", here or in ", NFICON.origin(0).file));
    return false;
  }
  Definitions definitions{.EFF = undefined_rows(NCOLL, names.NS(), table.of_others), .given = {}};
  if (!read_definitions(table, names, NCOLL, mechanism.behind_end, definitions, MSGFIL)) return false;

  if (table.of_others == 0)
    warn_of_efficiencies_not_given(mechanism, definitions, names, table.heading, MSGFIL.findings);
  const SpeciesName M = partner_name(1);
  if (at(mechanism.used, 1)) write<"(' ',3X,A,6X,'has equal effectivity for all species')">(MSGFIL, M);
  if (!mechanism.complete || !check_definitions(mechanism, names.NS(), definitions, table.heading, MSGFIL))
    return false;
  warn_of_single_M(mechanism, names.NS(), definitions, MSGFIL.findings);
  if (definitions.count == 0) {
    write<"(' ',7X,' no additional third bodies defined besides ',A)">(MSGFIL, M);
  } else {
    write<"(' ',7X,'NM = ',I3,' additional third bodies defined ','(besides ',A,')')">(MSGFIL,
                                                                                       definitions.count, M);
  }
  EFF = std::move(definitions.EFF);
  for (int c = 1; c <= NCOLL; ++c) {
    write<store_records::efficiencies>(NFISTO, partner_name(c), std::span<const double>(at(EFF, c)));
  }
  return true;
}

}  // namespace

CollisionEfficiencies GENCEF(const ReactionNames& names, const Mechanism& mechanism, Input& NFIMEC,
                             Input& NFICON, Listing& MSGFIL, StoreFile& NFISTO) {
  Table table;
  EfficiencyRows EFF;
  const int behind_mechanism = NFIMEC.record_number();
  const bool LOK = read_table(names, mechanism, NFIMEC, NFICON, table, EFF, MSGFIL, NFISTO);
  const int behind = table.heading ? NFIMEC.record_number() : behind_mechanism;
  return {LOK, std::move(EFF), table.of_others, behind, table.cut_text};
}

}  // namespace varpre
