#pragma once

#include <map>
#include <memory>
#include <string>

#include "textio/channel/input.h"

namespace varpre {

// The texts of the files that an import reads, to which its findings refer.
class SourceFiles {
 public:
  // Reads a file, once. Throws std::runtime_error (file.h).
  const Input& open(const std::string& path);

  // A text that is no file on the disk: for tests.
  void put(const std::string& path, std::string text);

  // Whether a path leads to one of them.
  bool include(const std::string& path) const;

 private:
  std::map<std::string, std::unique_ptr<Input>> files_;
};

}  // namespace varpre
