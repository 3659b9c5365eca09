#include "textio/channel/directory.h"

#include <cerrno>

#include "textio/channel/file.h"
#include "textio/channel/file_system.h"
#include "textio/channel/process.h"

namespace varpre {

void require_directory(const std::string& directory) {
  file_system::Status status;
  const int error = file_system::status_of_target(directory, status);
  if (error < 0) throw_system_error(-error, directory);
  if (status.kind != file_system::Status::Kind::directory) throw_system_error(ENOTDIR, directory);
  if (const int denied = error_of_access(directory); denied != 0) throw_system_error(denied, directory);
}

}  // namespace varpre
