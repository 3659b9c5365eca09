#pragma once

#include <string>
#include <vector>

#include "driver/run_data.h"
#include "tools/import/imported_mechanism.h"

namespace varpre {

// How far what the program reads from the written files is from what the file meant that they were made of,
// at most, from 300 to 2500 K.
struct Verification {
  int species = 0;  // that were compared
  int reactions = 0;
  Deviation rate;  // of rate constants, at low pressure too, of their parameters where there is no number T
  Deviation reverse;  // of reverse rates that the program fitted, from the forward ones and equilibrium
  Deviation equilibrium;
  Deviation cp;
  Deviation h;  // of RT
  Deviation s;
  Deviation molecule;               // of transport data
  std::vector<std::string> faults;  // what is not the same at all

  bool operator==(const Verification&) const = default;
};

// Compares a mechanism with what a run read from the files that were written of it. The values of the
// mechanism are worked out from the laws as the file gives them, those of the run from its numbers alone.
// `pressure`: bar, of laws that depend on it. Entropies at 1 atm count for those at 1 bar, as everywhere.
Verification verify(const ImportedMechanism& mechanism, double pressure, const RunData& data);

// What became of the file, in lines for standard output and for a comment: what was taken, left out, renamed,
// not taken and fitted, and how far the written files are from it.
std::vector<std::string> summary_lines(const ImportedMechanism& mechanism, const Verification* verification);

}  // namespace varpre
