#pragma once

#include <filesystem>
#include <string>

// Names of files are UTF-8 in this program, with slashes, whatever they are in the system; on POSIX any
// bytes.
namespace varpre {

inline std::filesystem::path path_of(const std::string& name) {
  return std::u8string(name.begin(), name.end());
}

inline std::string name_of(const std::filesystem::path& path) {
  const std::u8string name = path.generic_u8string();
  return {name.begin(), name.end()};
}

}  // namespace varpre
