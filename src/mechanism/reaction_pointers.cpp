#include "mechanism/reaction_pointers.h"

#include <algorithm>
#include <array>

#include "files/store_records.h"
#include "textio/channel/statement.h"
#include "textio/findings/listing.h"

namespace varpre {
namespace {

// The net coefficient of a species or collision partner in a reaction: products less educts.
struct NetCoefficient {
  int number;
  int value;
};

// The net coefficients of a reaction that are not 0, each number once.
class NetCoefficients {
 public:
  NetCoefficients(const Phase& phase, const SpeciesVector& MAT) {
    phase.for_each(MAT, [&](int number, int sign) { entry_of(number).value += sign; });
    const auto is_zero = [](const NetCoefficient& entry) { return entry.value == 0; };
    count_ = std::remove_if(begin(), end(), is_zero) - begin();
  }
  NetCoefficient* begin() { return entries_.data(); }
  NetCoefficient* end() { return entries_.data() + count_; }

 private:
  NetCoefficient& entry_of(int number) {
    NetCoefficient* const found =
        std::find_if(begin(), end(), [&](const NetCoefficient& entry) { return entry.number == number; });
    if (found == end()) {
      *found = {number, 0};
      ++count_;
    }
    return *found;
  }

  std::array<NetCoefficient, 12> entries_;
  std::ptrdiff_t count_ = 0;
};

// Visits the net coefficients of the species 1..NS in all reactions.
template <class Visit>
void for_each_coefficient(const Phase& phase, std::span<const Reaction> reactions, int NS, Visit visit) {
  for (int r = 1; r <= count_of(reactions); ++r) {
    for (const auto& [s, coefficient] : NetCoefficients(phase, at(reactions, r).MAT)) {
      if (s <= NS) visit(s, r, coefficient);
    }
  }
}

}  // namespace

bool third_bodies_balance(const Phase& phase, std::span<const Reaction> reactions, int NS, Listing& MSGFIL) {
  for (int r = 1; r <= count_of(reactions); ++r) {
    const Reaction& reaction = at(reactions, r);
    for (const auto& [number, coefficient] : NetCoefficients(phase, reaction.MAT)) {
      if (number <= NS) continue;
      write<"('1',5X,'THIRD BODIES NOT BALANCED IN REACTION',I4)">(MSGFIL, r);
      const Place& line = reaction.line;
      if (MSGFIL.findings.place_of("only the first ").record == line.record &&
          MSGFIL.findings.follows(line, "lone collision partner", Findings::Severity::error))
        return false;
      MSGFIL.findings.error(reaction.line, "a collision partner stands on one side of the reaction only",
                            "M, M', ... must stand on both sides equally often");
      return false;
    }
  }
  return true;
}

bool set_pointers(const Phase& phase, int NS, int most_pointers, Mechanism& mechanism, Listing& MSGFIL) {
  // Pointers of the species before each one, then the number of the last one set for it.
  std::vector<int> pointers(static_cast<std::size_t>(NS) + 1, 0);
  for_each_coefficient(phase, mechanism.reactions, NS, [&](int s, int, int) { ++at(pointers, s + 1); });
  for (int s = 1; s <= NS; ++s) at(pointers, s + 1) += at(pointers, s);
  const int NRINS = pointers.back();
  if (NRINS > most_pointers) {
    write<"(' ',' NRINS( = ',I4,') >  NRIMAX     ',/,'     ----->  CHECK DIMENSION OF NRVEC  ')">(
        MSGFIL, most_pointers + 1, most_pointers);
    MSGFIL.findings.error(
        mechanism.reactions.back().line, message("the mechanism needs ", NRINS, " reaction pointers"),
        message("there is room for ", most_pointers, ": one per reaction and species in it"));
    return false;
  }
  mechanism.NRVEC.resize(static_cast<std::size_t>(NRINS));
  for_each_coefficient(phase, mechanism.reactions, NS, [&](int s, int r, int coefficient) {
    at(mechanism.NRVEC, ++at(pointers, s)) = {s, r, coefficient};
  });
  return true;
}

void write_pointers(const Mechanism& mechanism, StoreFile& NFISTO) {
  write<store_records::pointer_count>(NFISTO, count_of(mechanism.NRVEC));
  write<store_records::pointers>(NFISTO, std::span(mechanism.NRVEC));
  write<store_records::pair_codes>(NFISTO, std::span(mechanism.IREVER));
  const auto NINERT = std::count(mechanism.INERT.begin(), mechanism.INERT.end(), true);
  write<store_records::inert_count>(NFISTO, static_cast<int>(NINERT));
}

}  // namespace varpre
