#include "tools/diff/store_of.h"

#include <cerrno>
#include <filesystem>
#include <stdexcept>

#include "files/store_reader.h"
#include "textio/channel/file.h"

namespace varpre {

std::string store_file_of(const std::string& name) {
  std::error_code error;
  const bool is_directory = std::filesystem::is_directory(name, error);
  return is_directory ? (std::filesystem::path(name) / "fort.3").string() : name;
}

StoreData store_of(const std::string& name) {
  constexpr std::uintmax_t largest = 64 << 20;  // several times that of 300 species and 4000 reactions
  const std::string path = store_file_of(name);
  const auto file = open_input(path);
  if (!file) throw_system_error(ENOENT, path);
  std::error_code error;
  if (std::filesystem::file_size(path, error) > largest && !error)
    throw std::runtime_error(path + ": larger than any store file");
  int read_error = 0;
  const std::string text = read_to_end(*file, path, read_error);
  if (read_error != 0) throw_system_error(read_error, path);
  return read_store(text);
}

}  // namespace varpre
