#include "mechanism/collision_efficiencies.h"

#include <algorithm>
#include <string>

#include "textio/number_format.h"
#include "textio/record.h"
#include "textio/run_stop.h"
#include "textio/scanning.h"

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

// Stands behind the "COLL" record of a unit and looks at the next one: false when either is missing.
bool find_section(Unit& unit, bool& troe) {
  Text<80> record;
  unit.rewind();
  do {
    if (!read<"(A80)">(unit, record)) return false;
  } while (!EQUSYM(4, record.view(), "COLL"));
  if (!read<"(A80)">(unit, record)) return false;
  troe = EQUSYM(4, record.view(), "TROE");
  if (!troe) unit.step_back();
  return true;
}

Unit* find_section_in_either(Unit& NFIMEC, Unit& NFICON, bool& troe) {
  if (find_section(NFIMEC, troe)) return &NFIMEC;
  if (find_section(NFICON, troe)) return &NFICON;
  return nullptr;
}

bool fail_without_end(Listing& MSGFIL) {
  write<"('1',5X,'ERROR: no END of the collision efficiencies')">(MSGFIL);
  return false;
}

// Reads the two records of a block, or the END record (`end`); false after the message.
bool read_block(Unit& unit, Block& block, bool& end, Listing& MSGFIL) {
  Line line;
  block = {};
  if (!read<"(A)">(unit, line)) return fail_without_end(MSGFIL);
  block.name = line.first(8);
  end = EQUSYM(3, line.view(), "END");
  if (end) return true;

  NameList list;
  const int NL = COMPDE(line.chars, delimiter_characters, MSGFIL);
  SYDEL(line.first(static_cast<std::size_t>(NL)), limits, delimiter_characters, list, MSGFIL);
  if (list.NDEL == 0 || list.DELS[0] != "=") {
    write<"('wrong first delimiter in gencef')">(MSGFIL);
    throw RunStop{};
  }
  for (int k = 1; k < list.NSYM; ++k) {
    const SpeciesName name(list.SYMS[static_cast<std::size_t>(k)]);
    if (name.blank()) continue;  // behind two delimiters at the end of the line
    if (block.count == most_species) {
      write<"('1',5X,'ERROR: more than 15 species for third body : ',A)">(MSGFIL, block.name);
      return false;
    }
    block.species[block.count++] = name;
  }

  const ReadResult result = read<"(9X,15(F8.3,1X))">(unit, block.efficiencies);
  if (result.end_of_file()) return fail_without_end(MSGFIL);
  if (result) return true;
  write<"('1',5X,'ERROR: unreadable efficiencies of third body : ',A)">(MSGFIL, block.name);
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
    if (!found) write<"(' ',5X,'Warning: Third body ',A,' not found in species',' list')">(MSGFIL, name);
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
bool check_definitions(const Mechanism& mechanism, std::span<const bool> defined, Listing& MSGFIL) {
  for (std::size_t c = 1; c < static_cast<std::size_t>(mechanism.NCOLL); ++c) {
    const SpeciesName partner(MCOLLI[c]);
    if (defined[c] && !mechanism.used[c]) {
      write<"('0',3X,'WARNING: ',A,' defined, but not used in ','the mechanism')">(MSGFIL, partner);
    } else if (!defined[c] && mechanism.used[c]) {
      write<"('1',5X,'ERROR: ',A,' referenced in mechanism, but not defined')">(MSGFIL, partner);
      return false;
    }
  }
  return true;
}

}  // namespace

bool GENCEF(const ReactionNames& names, const Mechanism& mechanism, Unit& NFIMEC, Unit& NFICON,
            Listing& MSGFIL, Unit& NFISTO) {
  const int NCOLL = mechanism.NCOLL;
  if (NCOLL * names.NS() > NEFMAX) {
    write<"('1',5X,'ERROR: collision efficiencies exceed ',I5,' places')">(MSGFIL, NEFMAX);
    return false;
  }
  bool troe = false;
  Unit* const unit = find_section_in_either(NFIMEC, NFICON, troe);
  if (unit == nullptr) {
    write<"('1','ERROR: heading for collision efficiencies missing ')">(MSGFIL);
    return false;
  }

  Efficiencies EFF(NCOLL, names.NS());
  if (troe) EFF.fill(1.0);
  const std::size_t name_width = longest_name(names.species());
  std::array<bool, partner_count> defined{};
  int blocks = 0;
  for (Block block;; ++blocks) {
    bool end = false;
    if (!read_block(*unit, block, end, MSGFIL)) return false;
    if (end) break;
    const int c = third_body(block.name, NCOLL);
    if (c == 0) {
      write<"('1',5X,'ERROR: wrong symbol of third body : ',A)">(MSGFIL, block.name);
      return false;
    }
    defined[static_cast<std::size_t>(c - 1)] = true;
    set_efficiencies(block, names, EFF.row(c), MSGFIL);
    list_block(block, name_width, MSGFIL);
  }

  const SpeciesName M(MCOLLI[0]);
  if (mechanism.used[0]) write<"(' ',3X,A,6X,'has equal effectivity for all species')">(MSGFIL, M);
  if (!check_definitions(mechanism, defined, MSGFIL)) return false;
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
