#include "tools/import/source_files.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>

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
  if (!file) put(path, read_file(path));
  return *file;
}

void SourceFiles::put(const std::string& path, std::string text) {
  auto file = std::make_unique<Input>();
  file->name = path;
  file->text = std::move(text);
  files_[path] = std::move(file);
}

bool SourceFiles::include(const std::string& path) const {
  return std::any_of(files_.begin(), files_.end(), [&](const auto& file) {
    std::error_code ignored;
    return std::filesystem::equivalent(file.first, path, ignored);
  });
}

}  // namespace varpre
