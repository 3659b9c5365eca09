#include "mechanism/collision_efficiencies.h"

#include <algorithm>
#include <string>

#include "textio/channel/run_stop.h"
#include "textio/findings/record_findings.h"
#include "textio/names/scanning.h"
#include "textio/record/number_format.h"
#include "thermo/section_findings.h"

namespace varpre {
namespace {

constexpr std::size_t most_species = 15;  // of one block
constexpr std::string_view delimiter_characters = "=+";
constexpr NameLimits limits{.LSYM = 50, .LDEL = 1};

// One definition: the third body's name, and species with their efficiencies.
struct Block {
  SpeciesName name;
  std::array<SpeciesName, most_species> species;
  std::array<double, most_species> efficiencies{};
  std::size_t count = 0;  // species
  Place line;             // its first record
};

// Efficiency rows of the third bodies 1..NCOLL over the species 1..NS.
class Efficiencies {
 public:
  Efficiencies(int NCOLL, int NS)
      : NS_(static_cast<std::size_t>(NS)), values_(static_cast<std::size_t>(NCOLL) * NS_, 0.0) {
    std::fill_n(values_.begin(), NS_, 1.0);
  }
  std::span<double> row(int c) {
    return std::span(values_).subspan(static_cast<std::size_t>(c - 1) * NS_, NS_);
  }
  void fill(double value) { std::fill(values_.begin(), values_.end(), value); }

 private:
  std::size_t NS_;
  std::vector<double> values_;
};

// Stands behind the heading and looks at the next record: false when either is missing.
bool find_heading(Input& input, bool& troe) {
  std::string_view record;
  if (!find_section(sections::efficiencies, input) || !input.peek(record)) return false;
  troe = EQUSYM(4, record, "TROE");
  if (troe) input.next(record);
  return true;
}

Input* find_heading_in_either(Input& NFIMEC, Input& NFICON, bool& troe) {
  if (find_heading(NFIMEC, troe)) return &NFIMEC;
  if (find_heading(NFICON, troe)) return &NFICON;
  return nullptr;
}

bool fail_without_end(const Place& section, Listing& MSGFIL) {
  write<"('1',5X,'ERROR: no END of the collision efficiencies')">(MSGFIL);
  report_not_closed(sections::efficiencies, section, MSGFIL.findings);
  return false;
}

// Warns of efficiencies beyond column 80, which is all of the ninth species and those behind it.
void warn_of_lost_efficiencies(const Block& block, Input& unit, Findings& findings) {
  constexpr std::size_t species_in_80_columns = 8;
  if (block.count <= species_in_80_columns) return;
  if (unit.cut_records.erase(unit.record_number()) == 0) return;  // this says all there is to say of the cut
  findings.warning(here(unit, 81, 8),
                   message("text beyond column 80 is not read: the efficiencies count as 0 from ",
                           block.species[species_in_80_columns], " on"),
                   "a second definition of the same third body can name further species");
}

// Reads the two records of a block, or the END record (`end`); false after the message.
bool read_block(Input& unit, const Place& section, Block& block, bool& end, Listing& MSGFIL) {
  Line line;
  block = {};
  if (!read<"(A)">(unit, line)) return fail_without_end(section, MSGFIL);
  block.name = line.first(8);
  block.line = here(unit, 1, 8);
  end = EQUSYM(3, line.view(), "END");
  if (end) return true;

  NameList list;
  const int NL = COMPDE(line.chars, delimiter_characters, MSGFIL, block.line);
  SYDEL(line.first(static_cast<std::size_t>(NL)), limits, delimiter_characters, list, MSGFIL, block.line);
  if (list.NDEL == 0 || list.DELS[0] != "=") {
    write<"('wrong first delimiter in gencef')">(MSGFIL);
    MSGFIL.findings.error(
        block.line, "no \"=\" behind the name of this third body",
        "a definition reads M'      =H2O+CO2, the name in columns 1-8, and its efficiencies follow in the "
        "next record");
    throw RunStop{};
  }
  for (int k = 1; k < list.NSYM; ++k) {
    const SpeciesName name(list.SYMS[static_cast<std::size_t>(k)]);
    if (name.blank()) continue;  // behind two delimiters at the end of the line
    if (block.count == most_species) {
      write<"('1',5X,'ERROR: more than 15 species for third body : ',A)">(MSGFIL, block.name);
      MSGFIL.findings.error(locate(block.line, name.view()),
                            message("'", name, "' is the 16th species of third body ", block.name),
                            "a second definition of the same third body can name further species");
      return false;
    }
    block.species[block.count++] = name;
  }

  const ReadResult result = read<"(9X,15(F8.3,1X))">(unit, block.efficiencies);
  if (result.end_of_file()) return fail_without_end(section, MSGFIL);
  const auto name_of = [&](int number) {
    const auto k = static_cast<std::size_t>(number - 1);
    return k < block.count ? message("the efficiency of ", block.species[k]) : message("efficiency ", number);
  };
  if (result) {
    warn_of_columns(MSGFIL.findings, unit, result, name_of);
    warn_of_lost_efficiencies(block, unit, MSGFIL.findings);
    return true;
  }
  write<"('1',5X,'ERROR: unreadable efficiencies of third body : ',A)">(MSGFIL, block.name);
  report_unreadable(MSGFIL.findings, unit, result, name_of(result.unreadable.number));
  return false;
}

// The third body 2..NCOLL of a name; 0 when there is none.
int third_body(const SpeciesName& name, int NCOLL) {
  for (int c = 2; c <= NCOLL; ++c) {
    if (EQUSYM(8, name.view(), MCOLLI[static_cast<std::size_t>(c - 1)])) return c;
  }
  return 0;
}

// One value stands for all vibrational states of N2 or O2.
bool names_all_states(const SpeciesName& name) {
  return EQUSYM(4, name.view(), "N2(V") || EQUSYM(4, name.view(), "O2(V");
}

void set_efficiencies(const Block& block, const ReactionNames& names, std::span<double> row,
                      Listing& MSGFIL) {
  for (std::size_t k = 0; k < block.count; ++k) {
    const SpeciesName& name = block.species[k];
    const int compared = names_all_states(name) ? 4 : 8;
    bool found = false;
    for (int s = 1; s <= names.NS(); ++s) {
      if (!EQUSYM(compared, name.view(), names[s].view())) continue;
      row[static_cast<std::size_t>(s - 1)] = block.efficiencies[k];
      found = true;
    }
    if (found) continue;
    write<"(' ',5X,'Warning: Third body ',A,' not found in species',' list')">(MSGFIL, name);
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

// Lists a definition, four species to a record, their names in the width of the longest of the species list.
void list_block(const Block& block, std::size_t name_width, Listing& MSGFIL) {
  constexpr RealEdit F9_3{.width = 9, .digits = 3, .scale = 0};
  constexpr std::size_t pairs_per_record = 4;
  for (std::size_t k = 0; k == 0 || k < block.count; k += pairs_per_record) {
    std::string pairs;
    for (std::size_t i = k; i < std::min(k + pairs_per_record, block.count); ++i) {
      std::array<char, F9_3.width> efficiency;
      edit_fixed(efficiency.data(), F9_3, block.efficiencies[i]);
      pairs.append("+").append(efficiency.data(), efficiency.size()).append(" ");
      pairs.append(block.species[i].first(name_width));
    }
    if (k == 0) {
      write<"(' ',7X,A,' = ',A)">(MSGFIL, block.name, std::string_view(pairs));
    } else {
      write<"(19X,A)">(MSGFIL, std::string_view(pairs));
    }
  }
}

// Checks definitions against the mechanism, third body by third body; false after the message.
bool check_definitions(const Mechanism& mechanism, std::span<const Place> defined, const Place& section,
                       Listing& MSGFIL) {
  for (std::size_t c = 1; c < static_cast<std::size_t>(mechanism.NCOLL); ++c) {
    const SpeciesName partner(MCOLLI[c]);
    const bool is_defined = defined[c].unit != nullptr;
    if (is_defined && !mechanism.used[c]) {
      MSGFIL.findings.warning(defined[c],
                              message("third body ", partner, " is defined, but no reaction uses it"));
      write<"('0',3X,'WARNING: ',A,' defined, but not used in ','the mechanism')">(MSGFIL, partner);
    } else if (!is_defined && mechanism.used[c]) {
      MSGFIL.findings.error(
          section, message("third body ", partner, " is used in the mechanism, but not defined here"),
          message("every third body but M needs a definition, if only ", partner, " = with no species"));
      write<"('1',5X,'ERROR: ',A,' referenced in mechanism, but not defined')">(MSGFIL, partner);
      return false;
    }
  }
  return true;
}

}  // namespace

bool GENCEF(const ReactionNames& names, const Mechanism& mechanism, Input& NFIMEC, Input& NFICON,
            Listing& MSGFIL, StoreFile& NFISTO) {
  const int NCOLL = mechanism.NCOLL;
  if (NCOLL * names.NS() > NEFMAX) {
    write<"('1',5X,'ERROR: collision efficiencies exceed ',I5,' places')">(MSGFIL, NEFMAX);
    MSGFIL.findings.error(whole(NFIMEC),
                          message(NCOLL, " third bodies for ", names.NS(), " species need ",
                                  NCOLL * names.NS(), " efficiencies; there is room for ", NEFMAX),
                          "the highest third body that the mechanism uses decides, not their number");
    return false;
  }
  bool troe = false;
  Input* const unit = find_heading_in_either(NFIMEC, NFICON, troe);
  if (unit == nullptr) {
    write<"('1','ERROR: heading for collision efficiencies missing ')">(MSGFIL);
    report_missing(sections::efficiencies, NFIMEC, MSGFIL.findings,
                   message(", here or in ", NFICON.origin(0).file));
    return false;
  }

  const Place section = {unit, unit->record_number() - (troe ? 1 : 0), 1, 4};
  Efficiencies EFF(NCOLL, names.NS());
  if (troe) EFF.fill(1.0);
  const std::size_t name_width = longest_name(names.species());
  std::array<Place, partner_count> defined{};  // the last definition of each
  int blocks = 0;
  for (Block block;; ++blocks) {
    bool end = false;
    if (!read_block(*unit, section, block, end, MSGFIL)) return false;
    if (end) break;
    const int c = third_body(block.name, NCOLL);
    if (c == 0) {
      write<"('1',5X,'ERROR: wrong symbol of third body : ',A)">(MSGFIL, block.name);
      MSGFIL.findings.error(
          block.line, message("'", block.name, "' is no third body that can be defined here"),
          message("columns 1-8 hold one of ", MCOLLI[1], " to ", MCOLLI[static_cast<std::size_t>(NCOLL - 1)],
                  ", the last one that the mechanism uses"));
      return false;
    }
    defined[static_cast<std::size_t>(c - 1)] = block.line;
    set_efficiencies(block, names, EFF.row(c), MSGFIL);
    list_block(block, name_width, MSGFIL);
  }

  const SpeciesName M(MCOLLI[0]);
  if (mechanism.used[0]) write<"(' ',3X,A,6X,'has equal effectivity for all species')">(MSGFIL, M);
  if (!check_definitions(mechanism, defined, section, MSGFIL)) return false;
  if (blocks == 0) {
    write<"(' ',7X,' no additional third bodies defined besides ',A)">(MSGFIL, M);
  } else {
    write<"(' ',7X,'NM = ',I3,' additional third bodies defined ','(besides ',A,')')">(MSGFIL, blocks, M);
  }
  for (int c = 1; c <= NCOLL; ++c) {
    write<"(' EFF.',A4,3X,5(1PE11.4,1X))">(NFISTO, SpeciesName(MCOLLI[static_cast<std::size_t>(c - 1)]),
                                           EFF.row(c));
  }
  return true;
}

}  // namespace varpre
