#include "textio/channel/file.h"

#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <limits>
#include <new>
#include <poll.h>
#include <random>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace varpre {
namespace {

constexpr mode_t new_file_mode = 0666;                                  // less the umask
constexpr std::size_t largest_input = std::numeric_limits<int>::max();  // so that lines can be counted

std::string directory_of(const std::string& name) {
  const std::string directory = std::filesystem::path(name).parent_path().string();
  return directory.empty() ? "." : directory;
}

// A descriptor, or minus the errno of the attempt.
int opened(const std::string& path, int flags) {
  const int number = ::open(path.c_str(), flags | O_CLOEXEC | O_NOCTTY, new_file_mode);
  return number < 0 ? -errno : number;
}

constexpr std::size_t random_letters = 10;

// What the names of temporary files begin with.
std::string temporary_prefix(const std::filesystem::path& path) {
  std::string prefix = ".";
  return prefix.append(path.filename().string()).append(".");
}

// A name in the same directory that nobody can foresee.
std::string unforeseen_name(const std::string& name) {
  constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyz0123456789";
  std::random_device device;
  std::uniform_int_distribution<std::size_t> any(0, letters.size() - 1);
  const std::filesystem::path path(name);
  std::string file = temporary_prefix(path);
  for (std::size_t i = 0; i < random_letters; ++i) file += letters[any(device)];
  return (path.parent_path() / file).string();
}

// Calls attempt(name) with one unforeseen name after another until one is free; its result, minus an errno at
// a failure.
template <class Attempt>
int under_unforeseen_name(const std::string& name, std::string& chosen, Attempt attempt) {
  constexpr int most_attempts = 100;
  int result = -EEXIST;
  for (int i = 0; i < most_attempts && result == -EEXIST; ++i) {
    chosen = unforeseen_name(name);
    result = attempt(chosen);
  }
  return result;
}

// An own regular file that nobody has written to for a minute.
bool is_left_behind(const std::string& path) {
  constexpr std::time_t long_enough = 60;
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == ::geteuid() &&
         status.st_mtime + long_enough < std::time(nullptr);
}

std::string path_of_descriptor(int number) {
  return "/proc/self/fd/" + std::to_string(number);
}

// A file without name in the directory of `name`, which `path_of_descriptor` can give one later; negative
// where the system has no such files.
int open_nameless(const std::string& name) {
#ifdef O_TMPFILE
  const int number = opened(directory_of(name), O_TMPFILE | O_WRONLY);
  if (number < 0 || ::access(path_of_descriptor(number).c_str(), F_OK) == 0) return number;
  ::close(number);
#endif
  return -EOPNOTSUPP;
}

void refuse_earlier_file(const std::string& name) {
  struct stat earlier {};
  if (::lstat(name.c_str(), &earlier) != 0) {
    if (errno == ENOENT) return;
    throw_system_error(errno, name);
  }
  if (S_ISDIR(earlier.st_mode)) throw_system_error(EISDIR, name);
  const bool is_protected = (earlier.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0;
  if (S_ISREG(earlier.st_mode) && is_protected) throw_system_error(EACCES, name);
}

}  // namespace

void throw_system_error(int error, const std::string& name) {
  throw std::system_error(error, std::generic_category(), name);
}

OpenFile::OpenFile(int descriptor, const std::string& name) : number_(descriptor) {
  if (number_ < 0) throw_system_error(-number_, name);
}

OpenFile::OpenFile(OpenFile&& other) noexcept : number_(std::exchange(other.number_, -1)) {}

OpenFile& OpenFile::operator=(OpenFile&& other) noexcept {
  std::swap(number_, other.number_);
  return *this;
}

OpenFile::~OpenFile() {
  if (number_ >= 0) ::close(number_);
}

void OpenFile::close(const std::string& name) {
  const int number = std::exchange(number_, -1);
  if (::close(number) != 0 && errno != EINTR) throw_system_error(errno, name);
}

std::optional<OpenFile> open_input(const std::string& name) {
  const int number = opened(name, O_RDONLY | O_NONBLOCK);
  if (number == -ENOENT) return std::nullopt;
  if (number == -ENXIO) throw std::runtime_error(name + ": not a regular file");  // a socket
  OpenFile file(number, name);
  struct stat status {};
  if (::fstat(file.number(), &status) != 0) throw_system_error(errno, name);
  if (!S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode)) {
    throw std::runtime_error(name + ": not a regular file");
  }
  return file;
}

OpenFile open_or_create_input(const std::string& name, bool& created) {
  std::optional<OpenFile> file = open_input(name);
  created = !file;
  if (file) return std::move(*file);
  const int number = opened(name, O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW);
  return {number == -EEXIST ? -ENOENT : number,
          name};  // what exists without being there is a link to nowhere
}

std::string read_to_end(const OpenFile& file, const std::string& name, int& read_error) {
  struct stat status {};
  std::string text;
  try {
    if (::fstat(file.number(), &status) == 0 && status.st_size > 0 && S_ISREG(status.st_mode)) {
      text.reserve(static_cast<std::size_t>(status.st_size) + 1);
    }
    for (;;) {
      const std::size_t length = text.size();
      text.resize(text.capacity() > length ? text.capacity() : length + file_piece);
      const ssize_t count = ::read(file.number(), text.data() + length, text.size() - length);
      const int error = errno;
      text.resize(length + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
      if (text.size() > largest_input) throw_system_error(EFBIG, name);
      if (count > 0 || (count < 0 && error == EINTR)) continue;
      read_error = count == 0 ? 0 : error;
      return text;
    }
  } catch (const std::length_error&) {
  } catch (const std::bad_alloc&) {
  }
  throw_system_error(ENOMEM, name);
}

void refuse_input_as_output(const std::string& input, const std::string& output) {
  struct stat link {};
  struct stat read {};
  struct stat replaced {};
  if (::lstat(input.c_str(), &link) != 0 || !S_ISLNK(link.st_mode)) return;
  if (::stat(input.c_str(), &read) != 0 || ::lstat(output.c_str(), &replaced) != 0) return;
  if (read.st_dev == replaced.st_dev && read.st_ino == replaced.st_ino) {
    throw std::runtime_error(output + ": the input " + input + " is a link to it");
  }
}

void write_all(int descriptor, std::string_view text, const std::string& name) {
  while (!text.empty()) {
    const ssize_t count = ::write(descriptor, text.data(), text.size());
    if (count > 0) {
      text.remove_prefix(static_cast<std::size_t>(count));
    } else if (count == 0) {
      throw_system_error(EIO, name);
    } else if (errno == EAGAIN) {  // a reader that is slow, on a pipe that does not wait for it
      pollfd room{descriptor, POLLOUT, 0};
      ::poll(&room, 1, -1);
    } else if (errno != EINTR) {
      throw_system_error(errno, name);
    }
  }
}

void remove_left_behind(std::span<const std::string> names) {
  std::error_code error;  // a directory that cannot be listed keeps what it has
  for (const auto& entry : std::filesystem::directory_iterator(".", error)) {
    const std::string file = entry.path().filename().string();
    if (!file.starts_with('.')) continue;
    for (const std::string& name : names) {
      const std::string prefix = temporary_prefix(name);
      if (file.size() != prefix.size() + random_letters || !file.starts_with(prefix)) continue;
      if (is_left_behind(file)) ::unlink(file.c_str());
    }
  }
}

FreshFile::FreshFile(std::string name) : name_(std::move(name)) {
  refuse_earlier_file(name_);
  int number = open_nameless(name_);
  if (number == -EOPNOTSUPP || number == -EISDIR || number == -EINVAL) {
    number = under_unforeseen_name(name_, temporary_, [](const std::string& path) {
      return opened(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW);
    });
  }
  if (number < 0) temporary_.clear();
  file_.emplace(number, name_);
}

FreshFile::~FreshFile() {
  if (!temporary_.empty()) ::unlink(temporary_.c_str());
}

void FreshFile::write(std::string_view piece) {
  write_all(file_->number(), piece, name_);
}

void FreshFile::sync() {
  if (::fsync(file_->number()) != 0 && errno != EINVAL) throw_system_error(errno, name_);
}

void FreshFile::take_place() {
  if (temporary_.empty()) {  // a name can be given to a file without one, but not taken from another by it
    const std::string path = path_of_descriptor(file_->number());
    const int given = under_unforeseen_name(name_, temporary_, [&](const std::string& free_name) {
      const int result = ::linkat(AT_FDCWD, path.c_str(), AT_FDCWD, free_name.c_str(), AT_SYMLINK_FOLLOW);
      return result == 0 ? 0 : -errno;
    });
    if (given < 0) {
      temporary_.clear();
      throw_system_error(-given, name_);
    }
  }
  file_->close(name_);
  if (::rename(temporary_.c_str(), name_.c_str()) != 0) throw_system_error(errno, name_);
  temporary_.clear();
}

}  // namespace varpre
