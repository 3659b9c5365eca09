#include "tools/import/source_files.h"

#include <cerrno>

#include "textio/channel/file.h"

namespace varpre {
namespace {

std::string read_file(const std::string& path) {
  const auto file = open_input(path);
  if (!file) throw_system_error(ENOENT, path);
  int read_error = 0;
  std::string text = read_to_end(*file, path, read_error);
  if (read_error != 0) throw_system_error(read_error, path);
  return text;
}

}  // namespace

const Input& SourceFiles::open(const std::string& path) {
  auto& file = files_[path];
  if (!file) {
    auto fresh = std::make_unique<Input>();
    fresh->name = path;
    fresh->text = read_file(path);
    file = std::move(fresh);
  }
  return *file;
}

}  // namespace varpre
