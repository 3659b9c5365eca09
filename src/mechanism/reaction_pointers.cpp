#include "mechanism/reaction_pointers.h"

#include <algorithm>
#include <array>

#include "textio/findings/record_findings.h"

namespace varpre {
namespace {

// The net coefficients of a reaction: species numbers with products less educts, zero ones left out, each
// once.
struct NetCoefficients {
  std::array<std::array<int, 2>, 12> entries{};  // species number, coefficient
  std::size_t count = 0;
};

NetCoefficients net_coefficients(Phase phase, const SpeciesVector& MAT) {
  const int MAXE = most_educts(phase);
  NetCoefficients net;
  for (int slot = 0; slot < 2 * MAXE; ++slot) {
    const int number = MAT[static_cast<std::size_t>(slot)];
    if (number == 0) continue;
    const auto end = net.entries.begin() + static_cast<std::ptrdiff_t>(net.count);
    const auto found = std::find_if(net.entries.begin(), end, [&](const auto& e) { return e[0] == number; });
    if (found == end) net.entries[net.count++] = {number, 0};
    (*found)[1] += slot < MAXE ? -1 : +1;
  }
  const auto end = net.entries.begin() + static_cast<std::ptrdiff_t>(net.count);
  net.count = static_cast<std::size_t>(
      std::remove_if(net.entries.begin(), end, [](const auto& e) { return e[1] == 0; }) -
      net.entries.begin());
  return net;
}

}  // namespace

bool third_bodies_balance(Phase phase, std::span<const Reaction> reactions, int NS, Listing& MSGFIL) {
  for (std::size_t r = 0; r < reactions.size(); ++r) {
    const NetCoefficients net = net_coefficients(phase, reactions[r].MAT);
    const auto entries = std::span(net.entries).first(net.count);
    if (std::any_of(entries.begin(), entries.end(), [&](const auto& e) { return e[0] > NS; })) {
      write<"('1',5X,'THIRD BODIES NOT BALANCED IN REACTION',I4)">(MSGFIL, static_cast<int>(r) + 1);
      MSGFIL.findings.error(reactions[r].line, "a collision partner stands on one side of the reaction only",
                            "M, M', ... must stand on both sides equally often");
      return false;
    }
  }
  return true;
}

bool set_pointers(Phase phase, int NS, int most_pointers, Mechanism& mechanism, Listing& MSGFIL) {
  std::vector<std::size_t> next(static_cast<std::size_t>(NS) + 2,
                                0);  // per species: place of its next triple
  const auto for_each = [&](auto visit) {
    for (int r = 1; r <= mechanism.NR(); ++r) {
      const NetCoefficients net =
          net_coefficients(phase, mechanism.reactions[static_cast<std::size_t>(r - 1)].MAT);
      for (const auto& [s, coefficient] : std::span(net.entries).first(net.count)) {
        if (s <= NS) visit(static_cast<std::size_t>(s), r, coefficient);
      }
    }
  };
  for_each([&](std::size_t s, int, int) { ++next[s + 1]; });
  for (std::size_t s = 1; s < next.size(); ++s) next[s] += next[s - 1];
  const int NRINS = static_cast<int>(next.back());
  if (NRINS > most_pointers) {
    write<"(' ',' NRINS( = ',I4,') >  NRIMAX     ',/,'     ----->  CHECK DIMENSION OF NRVEC  ')">(
        MSGFIL, most_pointers + 1, most_pointers);
    MSGFIL.findings.error(
        mechanism.reactions.back().line, message("the mechanism needs ", NRINS, " reaction pointers"),
        message("there is room for ", most_pointers, ": one per reaction and species in it"));
    return false;
  }
  mechanism.NRVEC.resize(static_cast<std::size_t>(NRINS));
  for_each([&](std::size_t s, int r, int coefficient) {
    mechanism.NRVEC[next[s]++] = {static_cast<int>(s), r, coefficient};
  });
  return true;
}

void write_pointers(const Mechanism& mechanism, StoreFile& NFISTO) {
  write<"(I5,' REACTION POINTERS   ')">(NFISTO, static_cast<int>(mechanism.NRVEC.size()));
  write<"(4(2X,3I5))">(NFISTO, std::span(mechanism.NRVEC));
  write<"(' IREVER',5X,30I2)">(NFISTO, std::span(mechanism.IREVER));
  const auto NINERT = std::count(mechanism.INERT.begin(), mechanism.INERT.end(), true);
  write<"(I5,' INERT SPECIES :   ',5(A,1X))">(NFISTO, static_cast<int>(NINERT));
}

}  // namespace varpre
