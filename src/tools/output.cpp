#include "tools/output.h"

#include <cerrno>
#include <charconv>
#include <fcntl.h>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <sys/stat.h>

#include "textio/channel/file.h"

namespace varpre {
namespace {

// The descriptor that a name of the system stands for; none for other names.
std::optional<int> open_descriptor(std::string_view name) {
  if (name == "/dev/stdout") return 1;
  if (name == "/dev/stderr") return 2;
  for (const std::string_view directory : {"/dev/fd/", "/proc/self/fd/"}) {
    if (!name.starts_with(directory)) continue;
    int number = 0;
    const auto [end, error] =
        std::from_chars(name.data() + directory.size(), name.data() + name.size(), number);
    if (error == std::errc() && end == name.data() + name.size()) return number;
  }
  return std::nullopt;
}

bool is_pipe_or_device(const std::string& name) {
  struct stat status {};
  if (::lstat(name.c_str(), &status) != 0) return false;
  return S_ISFIFO(status.st_mode) || S_ISCHR(status.st_mode) || S_ISBLK(status.st_mode);
}

bool are_the_same(const std::string& one, const std::string& other) {
  struct stat a {};
  struct stat b {};
  return ::stat(one.c_str(), &a) == 0 && ::stat(other.c_str(), &b) == 0 && a.st_dev == b.st_dev &&
         a.st_ino == b.st_ino;
}

void replace(const std::string& name, const std::string& text) {
  FreshFile file(name);
  file.write(text);
  file.sync();
  file.take_place();
}

}  // namespace

bool write_output(const std::string& name, const std::string& text, std::span<const std::string> inputs) {
  for (const std::string& input : inputs) {
    if (are_the_same(input, name)) throw std::runtime_error(name + ": this is the file that is read");
  }
  if (const std::optional<int> descriptor = open_descriptor(name)) {
    write_all(*descriptor, text, name);
    return false;
  }
  if (is_pipe_or_device(name)) {
    const int number = ::open(name.c_str(), O_WRONLY | O_NOCTTY | O_NOFOLLOW | O_CLOEXEC);
    OpenFile file(number < 0 ? -errno : number, name);
    write_all(file.number(), text, name);
    file.close(name);
    return false;
  }
  replace(name, text);
  return true;
}

}  // namespace varpre
