#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

// Whole files of the working directory. Each routine throws std::system_error whose text is "NAME: reason".
namespace varpre {

[[noreturn]] void throw_system_error(int error, const std::string& name);

// Files are written in pieces of about this many bytes.
constexpr std::size_t file_piece = 65536;

// The bytes of a file; an absent one is created empty. When the file opens but a read fails, `read_error`
// becomes its errno and what was read before is returned. A directory counts as not opened, a file of 2 GB or
// more as too large.
std::string load_or_create_file(const std::string& name, int& read_error);

// An open file, closed when it goes out of sight.
class OpenFile {
 public:
  // Opens with the flags of open(2); `name` is for the error.
  OpenFile(const std::string& path, int flags, const std::string& name);
  ~OpenFile();
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  int number() const { return number_; }
  // Some file systems tell only now that what was written did not find room.
  void close(const std::string& name);

 private:
  int number_;
};

// A file whose content is replaced piece by piece: `finish` cuts off what is left of an earlier, longer one.
class OutputFile {
 public:
  explicit OutputFile(const std::string& name);
  void write(std::string_view piece);
  void finish();

 private:
  std::string name_;
  OpenFile file_;
  std::size_t written_ = 0;
};

// Takes the place of a file, so that at any moment either the old or the new one is there whole. What is
// written goes to the temporary file NAME.tmp beside it (beside the file a link points to), whatever an
// earlier run left there; it is gone when it has not taken its place. Runs that write to one directory take
// turns, as that name is the same. A device or a pipe is written as it stands.
class Replacement {
 public:
  explicit Replacement(const std::string& name);
  ~Replacement();
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;

  void write(std::string_view piece);
  // With the permissions of the earlier file, where there is one.
  void take_place();

 private:
  void take_turn();

  std::string name_;
  std::string target_;            // links followed
  std::optional<OpenFile> turn_;  // the directory, locked
  std::string temporary_;         // none for a device, nor once it is renamed
  std::optional<OpenFile> file_;
};

// Writes all bytes to an open descriptor; `name` is for the error only.
void write_all(int descriptor, std::string_view text, const std::string& name);

}  // namespace varpre
