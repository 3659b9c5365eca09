#include "thermo/species_list.h"

#include "textio/record.h"
#include "textio/scanning.h"

namespace varpre {
namespace {

constexpr std::string_view flag_characters = "*+>";
constexpr NameLimits limits{.LSYM = 50, .LDEL = 3};
constexpr std::string_view surface_conditions = "SURFACE COND";

bool is_heading(std::string_view HEAD, const Line& line) {
  const auto begins_with = [&](std::string_view word) {
    return EQUSYM(static_cast<int>(word.size()), line.view(), word);
  };
  return begins_with(HEAD) && !begins_with(surface_conditions);
}

SpeciesList warn_absent(int NS, Listing& MSGFIL) {
  write<"(5X,'Warning In species input: No heading, ','no end card, or missing data')">(MSGFIL);
  return {NS, true};
}

// The flags of the species of one line, which end at number NS.
void set_flags(const NameList& names, int NS, std::span<int> IFLAG) {
  for (int k = 1; k <= names.NSYM; ++k) IFLAG[static_cast<std::size_t>(NS - k)] = 0;
  for (int k = 0; k < names.NDEL; ++k) {
    const std::size_t flag = flag_characters.find(names.DELS[static_cast<std::size_t>(k)].front());
    if (flag == std::string_view::npos) continue;
    IFLAG[static_cast<std::size_t>(NS - names.NDEL + k)] = static_cast<int>(flag) + 1;
  }
}

}  // namespace

SpeciesList GENSYM(std::string_view HEAD, Unit& NFICON, Listing& MSGFIL, const SpeciesView& species) {
  Line line;
  NFICON.rewind();
  do {
    if (!read<"(A)">(NFICON, line)) return warn_absent(0, MSGFIL);
  } while (!is_heading(HEAD, line));

  int NS = 0;
  NameList names;
  for (;;) {
    if (!read<"(A)">(NFICON, line)) return warn_absent(NS, MSGFIL);
    if (EQUSYM(3, line.view(), "END")) break;
    GETNAM(line.chars, limits, flag_characters, names, MSGFIL);
    if (names.NSYM == 0) {
      write_free(MSGFIL, std::string_view(" Warning: blank line encountered"));
      continue;
    }
    const int NSMAX_left = species.size();
    const int first = NS;
    NS += names.NSYM;
    if (NS > NSMAX_left) {
      write<"('0',2X,'ERROR in GENSYM - Too many species:', ' NS(',I4,') > NSMAX(',I4,')')">(MSGFIL, NS,
                                                                                             NSMAX_left);
      return {NS, true};
    }
    for (int k = 0; k < names.NSYM; ++k) {
      species.SYMB[static_cast<std::size_t>(first + k)] = names.SYMS[static_cast<std::size_t>(k)];
    }
    set_flags(names, NS, species.IFLAG);
  }

  const auto count = static_cast<std::size_t>(NS);
  write<"(1H ,7X,'List of Species and Flags, NS =',I5)">(MSGFIL, NS);
  write<"(8X,'Species : ',5(A,1X,I1,2X), /,1(18X,5(A,1X,I1,2X)))">(
      MSGFIL, zip(species.SYMB.first(count), species.IFLAG.first(count)));
  return {NS, false};
}

}  // namespace varpre
