#pragma once

#include <map>
#include <string>

#include "tools/check/directory_run.h"

// What a run in a directory comes to, for readers of each kind (docs/check.md).
namespace varpre {

// Whether it counts as one with errors: an incomplete store file does.
bool has_errors(const DirectoryRun& run);
// Warnings that no baseline knows.
int new_warnings(const DirectoryRun& run);

// "DIRECTORY: 2 errors; store file complete" behind the diagnostics, whose files are named with the
// directory, and what has gone from the baseline. Nothing without a run.
std::string as_text(const DirectoryRun& run);

// One JSON object in one line, its line end included. `compared`: with a baseline.
std::string as_json(const DirectoryRun& run, bool compared);

// Results and notifications of a SARIF log (version 2.1.0): objects, with commas between them.
struct SarifParts {
  std::string results;
  std::string notifications;                 // why there was no run
  std::map<std::string, std::string> rules;  // of the results, with their level
};
SarifParts as_sarif(const DirectoryRun& run);
void append_to_list(std::string& list, std::string_view objects);

// What stands before the results of all directories, and behind them.
std::string sarif_begin();
std::string sarif_end(const SarifParts& all, const std::string& version);

}  // namespace varpre
