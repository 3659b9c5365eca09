#include "textio/file.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace varpre {
namespace {

constexpr mode_t new_file_mode = 0666;

class Descriptor {
 public:
  Descriptor(const std::string& path, int flags, const std::string& name)
      : number_(::open(path.c_str(), flags | O_CLOEXEC, new_file_mode)) {
    if (number_ < 0) throw_system_error(errno, name);
  }
  ~Descriptor() { ::close(number_); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int number() const { return number_; }

 private:
  int number_;
};

// The file a name stands for, links followed, whether the last one exists or not.
std::string link_target(const std::string& name) {
  constexpr int most_links = 40;
  std::filesystem::path path = name;
  std::error_code error;
  for (int i = 0; i < most_links && std::filesystem::is_symlink(path, error); ++i) {
    path = path.parent_path() / std::filesystem::read_symlink(path, error);
  }
  return path.string();
}

std::string temporary_name(const std::string& target) {
  return target + ".tmp";
}

void refuse_directory(const std::string& path, const std::string& name) {
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) throw_system_error(EISDIR, name);
}

}  // namespace

void throw_system_error(int error, const std::string& name) {
  throw std::system_error(error, std::generic_category(), name);
}

std::string load_or_create_file(const std::string& name, int& read_error) {
  refuse_directory(name, name);
  int flags = O_RDONLY;
  if (::access(name.c_str(), F_OK) != 0 && errno == ENOENT) flags = O_RDWR | O_CREAT;
  const Descriptor file(name, flags, name);
  struct stat status {};
  std::string text;
  if (::fstat(file.number(), &status) == 0 && status.st_size > 0) {
    text.reserve(static_cast<std::size_t>(status.st_size));
  }
  std::array<char, 65536> piece;
  for (;;) {
    const ssize_t count = ::read(file.number(), piece.data(), piece.size());
    if (count > 0) {
      text.append(piece.data(), static_cast<std::size_t>(count));
    } else if (count == 0 || errno != EINTR) {
      read_error = count == 0 ? 0 : errno;
      return text;
    }
  }
}

void write_all(int descriptor, std::string_view text, const std::string& name) {
  while (!text.empty()) {
    const ssize_t count = ::write(descriptor, text.data(), text.size());
    if (count >= 0) {
      text.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      throw_system_error(errno, name);
    }
  }
}

void save_file(const std::string& name, std::string_view text) {
  const Descriptor file(name, O_WRONLY | O_CREAT | O_TRUNC, name);
  write_all(file.number(), text, name);
}

void prepare_replacement(const std::string& name) {
  const std::string target = link_target(name);
  refuse_directory(target, name);
  const Descriptor file(temporary_name(target), O_WRONLY | O_CREAT | O_TRUNC, name);
}

void replace_file(const std::string& name, std::string_view text) {
  const std::string target = link_target(name);
  const std::string temporary = temporary_name(target);
  try {
    const Descriptor file(temporary, O_WRONLY | O_CREAT | O_TRUNC, name);
    write_all(file.number(), text, name);
    if (::rename(temporary.c_str(), target.c_str()) != 0) throw_system_error(errno, name);
  } catch (const std::system_error&) {
    ::unlink(temporary.c_str());
    throw;
  }
}

}  // namespace varpre
