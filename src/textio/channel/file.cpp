#include "textio/channel/file.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <limits>
#include <new>
#include <poll.h>
#include <stdexcept>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace varpre {
namespace {

constexpr mode_t new_file_mode = 0666;
constexpr std::size_t largest_input = std::numeric_limits<int>::max();  // so that lines can be counted

// The file a name stands for, links followed, whether the last one exists or not.
std::string link_target(const std::string& name) {
  constexpr int most_links = 40;
  std::filesystem::path path = name;
  std::error_code error;
  for (int i = 0; std::filesystem::is_symlink(path, error); ++i) {
    if (i == most_links) throw_system_error(ELOOP, name);
    path = path.parent_path() / std::filesystem::read_symlink(path, error);
  }
  return path.string();
}

void refuse_directory(const std::string& path, const std::string& name) {
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) throw_system_error(EISDIR, name);
}

// A device or a pipe takes what is written to it; no other file can take its place.
bool is_device(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
}

}  // namespace

OpenFile::OpenFile(const std::string& path, int flags, const std::string& name)
    : number_(::open(path.c_str(), flags | O_CLOEXEC, new_file_mode)) {
  if (number_ < 0) throw_system_error(errno, name);
}

OpenFile::~OpenFile() {
  if (number_ >= 0) ::close(number_);
}

void OpenFile::close(const std::string& name) {
  const int number = std::exchange(number_, -1);
  if (::close(number) != 0 && errno != EINTR) throw_system_error(errno, name);
}

void throw_system_error(int error, const std::string& name) {
  throw std::system_error(error, std::generic_category(), name);
}

std::string load_or_create_file(const std::string& name, int& read_error) {
  refuse_directory(name, name);
  int flags = O_RDONLY;
  if (::access(name.c_str(), F_OK) != 0 && errno == ENOENT) flags = O_RDWR | O_CREAT;
  const OpenFile file(name, flags, name);
  struct stat status {};
  std::string text;
  std::array<char, file_piece> piece;
  try {
    if (::fstat(file.number(), &status) == 0 && status.st_size > 0) {
      text.reserve(static_cast<std::size_t>(status.st_size));
    }
    for (;;) {
      const ssize_t count = ::read(file.number(), piece.data(), piece.size());
      if (count > 0) {
        text.append(piece.data(), static_cast<std::size_t>(count));
        if (text.size() > largest_input) throw_system_error(EFBIG, name);
      } else if (count == 0 || errno != EINTR) {
        read_error = count == 0 ? 0 : errno;
        return text;
      }
    }
  } catch (const std::length_error&) {
  } catch (const std::bad_alloc&) {
  }
  throw_system_error(ENOMEM, name);
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

// Over the earlier content: some file systems do that much faster than emptying the file first.
OutputFile::OutputFile(const std::string& name) : name_(name), file_(name, O_WRONLY | O_CREAT, name) {}

void OutputFile::write(std::string_view piece) {
  write_all(file_.number(), piece, name_);
  written_ += piece.size();
}

void OutputFile::finish() {
  constexpr int not_a_file = EINVAL;  // a device or a pipe
  if (::ftruncate(file_.number(), static_cast<off_t>(written_)) != 0 && errno != not_a_file) {
    throw_system_error(errno, name_);
  }
  file_.close(name_);
}

Replacement::Replacement(const std::string& name) : name_(name), target_(link_target(name)) {
  refuse_directory(target_, name_);
  if (::access(target_.c_str(), W_OK) != 0 && errno != ENOENT) throw_system_error(errno, name_);
  if (is_device(target_)) {
    file_.emplace(target_, O_WRONLY, name_);
    return;
  }
  take_turn();
  const std::string temporary = target_ + ".tmp";
  if (::unlink(temporary.c_str()) != 0 && errno != ENOENT) throw_system_error(errno, temporary);
  file_.emplace(temporary, O_WRONLY | O_CREAT | O_EXCL, name_);
  temporary_ = temporary;
}

Replacement::~Replacement() {
  if (!temporary_.empty()) ::unlink(temporary_.c_str());
}

void Replacement::take_turn() {
  const std::string directory = std::filesystem::path(target_).parent_path().string();
  try {
    turn_.emplace(directory.empty() ? "." : directory, O_RDONLY | O_DIRECTORY, name_);
  } catch (const std::system_error&) {
    return;  // a directory that may be written to but not read
  }
  while (::flock(turn_->number(), LOCK_EX) != 0 && errno == EINTR) {
  }
}

void Replacement::write(std::string_view piece) {
  write_all(file_->number(), piece, name_);
}

void Replacement::take_place() {
  struct stat earlier {};
  const bool replaces = !temporary_.empty() && ::stat(target_.c_str(), &earlier) == 0;
  if (replaces && ::fchmod(file_->number(), earlier.st_mode) != 0) throw_system_error(errno, name_);
  file_->close(name_);
  if (temporary_.empty()) return;
  if (::rename(temporary_.c_str(), target_.c_str()) != 0) throw_system_error(errno, name_);
  temporary_.clear();
}

}  // namespace varpre
