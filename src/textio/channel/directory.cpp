#include "textio/channel/directory.h"

#include <cerrno>
#include <filesystem>

#include "textio/channel/file.h"
#include "textio/channel/file_name.h"
#include "textio/channel/process.h"

namespace varpre {

void require_directory(const std::string& directory) {
  const auto status = std::filesystem::status(path_of(directory));
  if (status.type() != std::filesystem::file_type::directory)
    throw_system_error(exists(status) ? ENOTDIR : ENOENT, directory);
  if (const int error = error_of_access(directory); error != 0) throw_system_error(error, directory);
}

}  // namespace varpre
