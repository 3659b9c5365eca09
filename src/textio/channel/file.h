#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

// Whole files of the working directory, which others may have prepared: nothing is read but regular files,
// nothing is written but fresh ones, and no link is followed to write. Each routine throws std::runtime_error
// whose text is "NAME: reason".
namespace varpre {

[[noreturn]] void throw_system_error(int error, const std::string& name);

// Files are written in pieces of about this many bytes.
constexpr std::size_t file_piece = 65536;

// An open file, closed when it goes out of sight.
class OpenFile {
 public:
  // Takes over a descriptor, or the errno of the attempt when that is negative; `name` is for the error.
  OpenFile(int descriptor, const std::string& name);
  ~OpenFile();
  OpenFile(OpenFile&& other) noexcept;
  OpenFile& operator=(OpenFile&& other) noexcept;
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  int number() const { return number_; }
  // Some file systems tell only now that what was written did not find room.
  void close(const std::string& name);

 private:
  int number_;
};

// Opens an input; none when nothing has that name. Anything but a regular file or a directory is refused,
// without waiting for a pipe.
std::optional<OpenFile> open_input(const std::string& name);

// The same, but one that is not there is created empty, never through a link (`created`).
OpenFile open_or_create_input(const std::string& name, bool& created);

// The bytes of an open input from where it stands. When a read fails (that of a directory does), `read_error`
// becomes its errno and what was read before is returned. A file of 2 GB or more is too large.
std::string read_to_end(const OpenFile& file, const std::string& name, int& read_error);

// Throws when `output` names the very file that is read under the name of an input which is a link: to
// replace the one would change the other.
void refuse_input_as_output(const std::string& input, const std::string& output);

// A fresh file that takes a name's place when it is complete, so that at any moment either the earlier file
// or the new one is there whole. It has no name until shortly before (where the system knows such files),
// then one of its own, .NAME. and ten letters, which a run that is killed leaves behind. Its mode is that of
// the umask, and what stands under the name, a link too, is replaced. A directory, and a file that is
// protected against writing, are refused.
class FreshFile {
 public:
  explicit FreshFile(std::string name);
  ~FreshFile();
  FreshFile(const FreshFile&) = delete;
  FreshFile& operator=(const FreshFile&) = delete;

  void write(std::string_view piece);
  // Waits until what was written is on the disk, so that the new name never stands for less.
  void sync();
  void take_place();

 private:
  std::string name_;
  std::string temporary_;  // while the file has a name of its own
  std::optional<OpenFile> file_;
};

// Removes what runs that were killed left behind of files of these names in the working directory: own files
// that nobody has written to for a minute.
void remove_left_behind(std::span<const std::string> names);

// Writes all bytes to an open descriptor; `name` is for the error only.
void write_all(int descriptor, std::string_view text, const std::string& name);

}  // namespace varpre
