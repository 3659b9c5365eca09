#pragma once

#include <string>
#include <vector>

#include "driver/run.h"

namespace varpre {

class Baseline;

// A finding of a run in a directory; its file is named without the directory.
struct CheckedFinding {
  FindingReport report;
  int first_character = 0;  // where it begins, in characters of its line from 1; 0: the file as a whole
  int end_character = 0;    // the character behind it
  bool known = false;       // to the baseline
};

// What a run in a directory finds.
struct DirectoryRun {
  std::string directory;   // as it was named
  std::string fault;       // why there was no run; nothing else is known then
  bool no_memory = false;  // that is the reason: when others have done with theirs it may go
  RunResult result;
  std::vector<CheckedFinding> findings;
  int known = 0;                  // of the warnings
  std::vector<std::string> gone;  // warnings of the baseline that have gone, "FILE: text"
};

// Which findings a program wants as data.
enum class Wanted { none, all };

// Makes the whole run with the inputs of a directory, without writing anything there. All findings as data
// when they are wanted, or when a baseline is given, whose known warnings the diagnostics then leave out.
// Does not throw for what the directory holds, nor for lack of memory.
DirectoryRun run_in_directory(const std::string& directory, Wanted findings,
                              const Baseline* baseline = nullptr);

}  // namespace varpre
