#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include "textio/channel/file_system.h"

namespace varpre::file_system {
namespace {

constexpr mode_t new_file_mode = 0666;  // less the umask

int result_of(int returned) {
  return returned < 0 ? -errno : returned;
}

int opened(const std::string& name, int flags) {
  return result_of(::open(name.c_str(), flags | O_CLOEXEC | O_NOCTTY, new_file_mode));
}

Status::Kind kind_of(mode_t mode) {
  if (S_ISREG(mode)) return Status::Kind::regular;
  if (S_ISDIR(mode)) return Status::Kind::directory;
  return S_ISLNK(mode) ? Status::Kind::link : Status::Kind::other;
}

int take(int returned, const struct stat& from, Status& status) {
  if (returned < 0) return -errno;
  status = {.kind = kind_of(from.st_mode),
            .size = static_cast<std::uint64_t>(from.st_size),
            .is_protected = (from.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0,
            .is_own = from.st_uid == ::geteuid(),
            .written = from.st_mtime,
            .identity = {from.st_dev, from.st_ino}};
  return 0;
}

std::string path_of_descriptor(int number) {
  return "/proc/self/fd/" + std::to_string(number);
}

}  // namespace

int status_of(int descriptor, Status& status) {
  struct stat found {};
  return take(::fstat(descriptor, &found), found, status);
}

int status_of_name(const std::string& name, Status& status) {
  struct stat found {};
  return take(::lstat(name.c_str(), &found), found, status);
}

int status_of_target(const std::string& name, Status& status) {
  struct stat found {};
  return take(::stat(name.c_str(), &found), found, status);
}

int open_to_read(const std::string& name) {
  return opened(name, O_RDONLY | O_NONBLOCK);
}

int create(const std::string& name, bool readable) {
  return opened(name, (readable ? O_RDWR : O_WRONLY) | O_CREAT | O_EXCL | O_NOFOLLOW);
}

int create_nameless([[maybe_unused]] const std::string& directory) {
#ifdef O_TMPFILE
  const int number = opened(directory, O_TMPFILE | O_WRONLY);
  if (number < 0 || ::access(path_of_descriptor(number).c_str(), F_OK) == 0) return number;
  ::close(number);
#endif
  return -EOPNOTSUPP;
}

int give_name(int descriptor, const std::string& name) {
  const std::string path = path_of_descriptor(descriptor);
  return result_of(::linkat(AT_FDCWD, path.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW));
}

int close(int descriptor) {
  const int result = result_of(::close(descriptor));
  return result == -EINTR ? 0 : result;
}

std::ptrdiff_t read(int descriptor, char* to, std::size_t size) {
  for (;;) {
    const ssize_t count = ::read(descriptor, to, size);
    if (count >= 0) return count;
    if (errno != EINTR) return -errno;
  }
}

std::ptrdiff_t write(int descriptor, const char* from, std::size_t size) {
  for (;;) {
    const ssize_t count = ::write(descriptor, from, size);
    if (count >= 0) return count;
    if (errno == EAGAIN) {  // a reader that is slow, on a pipe that does not wait for it
      pollfd room{descriptor, POLLOUT, 0};
      ::poll(&room, 1, -1);
    } else if (errno != EINTR) {
      return -errno;
    }
  }
}

int sync(int descriptor) {
  const int result = result_of(::fsync(descriptor));
  return result == -EINVAL ? 0 : result;  // nothing that could be waited for
}

int replace(const std::string& from, const std::string& name) {
  return result_of(::rename(from.c_str(), name.c_str()));
}

int remove(const std::string& name) {
  return result_of(::unlink(name.c_str()));
}

}  // namespace varpre::file_system
