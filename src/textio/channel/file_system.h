#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <string>
#include <utility>

// The calls of the system below file.h, one file of sources for each: file_posix.cpp, file_windows.cpp. Names
// are UTF-8 (on POSIX any bytes). What fails returns minus its errno.
namespace varpre::file_system {

struct Status {
  enum class Kind { regular, directory, link, other } kind = Kind::other;
  std::uint64_t size = 0;
  bool is_protected = false;  // against writing, by everyone
  bool is_own = false;        // of the user of this process
  std::time_t written = 0;    // last
  std::pair<std::uint64_t, std::uint64_t> identity;
};

int status_of(int descriptor, Status& status);
int status_of_name(const std::string& name, Status& status);  // a link itself
int status_of_target(const std::string& name, Status& status);

// Descriptors that no child process inherits. Opening waits for nobody, and makes no terminal the process's
// own.
int open_to_read(const std::string& name);
// A file that was not there, never through a link; `readable` asks for reading as well.
int create(const std::string& name, bool readable);
// A file without name in a directory, and a name for it; -EOPNOTSUPP, -EISDIR or -EINVAL where there is no
// such thing.
int create_nameless(const std::string& directory);
int give_name(int descriptor, const std::string& name);

int close(int descriptor);
// How many bytes were read or written; 0 at the end. Waits for a slow reader of a pipe.
std::ptrdiff_t read(int descriptor, char* to, std::size_t size);
std::ptrdiff_t write(int descriptor, const char* from, std::size_t size);
// Waits until all is on the disk.
int sync(int descriptor);

// `name` becomes that of the file `from`; what had it before is gone.
int replace(const std::string& from, const std::string& name);
int remove(const std::string& name);

}  // namespace varpre::file_system
