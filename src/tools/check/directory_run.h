#pragma once

#include <string>
#include <vector>

#include "driver/run.h"

namespace varpre {

// What a run in a directory finds.
struct DirectoryRun {
  std::string directory;  // as it was named
  std::string fault;      // why there was no run; nothing else is known then
  RunResult result;
  std::vector<FindingReport> findings;  // files named without the directory
};

// Throws std::system_error unless inputs can be looked for in the directory.
void require_directory(const std::string& directory);

// Makes the whole run with the inputs of a directory, without writing anything there. `with_findings`: all
// findings as data, not only those that the diagnostics show. Does not throw for what the directory holds.
DirectoryRun run_in_directory(const std::string& directory, bool with_findings);

// "DIRECTORY: 2 errors; store file complete" behind the diagnostics, whose files are named with the
// directory.
std::string as_text(const DirectoryRun& run);

// One JSON object in one line (docs/check.md).
std::string as_json(const DirectoryRun& run);

}  // namespace varpre
