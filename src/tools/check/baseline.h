#pragma once

#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "tools/check/directory_run.h"

namespace varpre {

// Warnings that somebody has accepted, in a file: one JSON object a line with `directory`, `file`, `text` and
// `count`. Errors are never accepted. A warning is known by its directory, its file and its text; where it
// stands does not matter, for lines are put in and taken out: numbers of lines in a text count as alike.
class Baseline {
 public:
  Baseline() = default;
  // Reads a file. Throws std::runtime_error, "FILE: reason" or "FILE:LINE: reason".
  explicit Baseline(const std::string& file);

  // Marks the warnings of a directory that are known. Those that are known and have gone, as "FILE: text".
  std::vector<std::string> compare(const std::string& directory, std::vector<CheckedFinding>& findings) const;

  // Takes in the warnings of a run, or those of another baseline.
  void accept(const DirectoryRun& run);
  void accept(const Baseline& other);
  // The file. Its name, when it is a link, is replaced. Throws std::runtime_error.
  void write(const std::string& file) const;

 private:
  // Directory, file, text; and how many times.
  using Warnings = std::map<std::tuple<std::string, std::string, std::string>, int>;
  Warnings warnings_;
};

}  // namespace varpre
