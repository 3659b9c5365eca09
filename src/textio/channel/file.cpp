#include "textio/channel/file.h"

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <limits>
#include <new>
#include <random>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "textio/channel/file_name.h"
#include "textio/channel/file_system.h"

namespace varpre {
namespace {

using file_system::Status;

constexpr std::size_t largest_input = std::numeric_limits<int>::max();  // so that lines can be counted

std::string directory_of(const std::string& name) {
  const std::string directory = name_of(path_of(name).parent_path());
  return directory.empty() ? "." : directory;
}

constexpr std::size_t random_letters = 10;

// What the names of temporary files begin with.
std::string temporary_prefix(const std::filesystem::path& path) {
  std::string prefix = ".";
  return prefix.append(name_of(path.filename())).append(".");
}

// A name in the same directory that nobody can foresee.
std::string unforeseen_name(const std::string& name) {
  constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyz0123456789";
  std::random_device device;
  std::uniform_int_distribution<std::size_t> any(0, letters.size() - 1);
  const std::filesystem::path path = path_of(name);
  std::string file = temporary_prefix(path);
  for (std::size_t i = 0; i < random_letters; ++i) file += letters[any(device)];
  return name_of(path.parent_path() / path_of(file));
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
  Status status;
  return file_system::status_of_name(path, status) == 0 && status.kind == Status::Kind::regular &&
         status.is_own && status.written + long_enough < std::time(nullptr);
}

void refuse_earlier_file(const std::string& name) {
  Status earlier;
  const int result = file_system::status_of_name(name, earlier);
  if (result == -ENOENT) return;
  if (result < 0) throw_system_error(-result, name);
  if (earlier.kind == Status::Kind::directory) throw_system_error(EISDIR, name);
  if (earlier.kind == Status::Kind::regular && earlier.is_protected) throw_system_error(EACCES, name);
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
  if (number_ >= 0) file_system::close(number_);
}

void OpenFile::close(const std::string& name) {
  const int result = file_system::close(std::exchange(number_, -1));
  if (result < 0) throw_system_error(-result, name);
}

std::optional<OpenFile> open_input(const std::string& name) {
  const int number = file_system::open_to_read(name);
  if (number == -ENOENT) return std::nullopt;
  if (number == -ENXIO) throw std::runtime_error(name + ": not a regular file");  // a socket
  OpenFile file(number, name);
  Status status;
  if (const int result = file_system::status_of(file.number(), status); result < 0) {
    throw_system_error(-result, name);
  }
  if (status.kind != Status::Kind::regular && status.kind != Status::Kind::directory) {
    throw std::runtime_error(name + ": not a regular file");
  }
  return file;
}

OpenFile open_or_create_input(const std::string& name, bool& created) {
  std::optional<OpenFile> file = open_input(name);
  created = !file;
  if (file) return std::move(*file);
  const int number = file_system::create(name, true);
  return {number == -EEXIST ? -ENOENT : number,
          name};  // what exists without being there is a link to nowhere
}

std::string read_to_end(const OpenFile& file, const std::string& name, int& read_error) {
  Status status;
  std::string text;
  try {
    if (file_system::status_of(file.number(), status) == 0 && status.kind == Status::Kind::regular &&
        status.size > 0) {
      text.reserve(static_cast<std::size_t>(status.size) + 1);
    }
    for (;;) {
      const std::size_t length = text.size();
      text.resize(text.capacity() > length ? text.capacity() : length + file_piece);
      const std::ptrdiff_t count =
          file_system::read(file.number(), text.data() + length, text.size() - length);
      text.resize(length + static_cast<std::size_t>(std::max<std::ptrdiff_t>(count, 0)));
      if (text.size() > largest_input) throw_system_error(EFBIG, name);
      if (count > 0) continue;
      read_error = static_cast<int>(-count);
      return text;
    }
  } catch (const std::length_error&) {
  } catch (const std::bad_alloc&) {
  }
  throw_system_error(ENOMEM, name);
}

void refuse_input_as_output(const std::string& input, const std::string& output) {
  Status link;
  Status read;
  Status replaced;
  if (file_system::status_of_name(input, link) < 0 || link.kind != Status::Kind::link) return;
  if (file_system::status_of_target(input, read) < 0 || file_system::status_of_name(output, replaced) < 0)
    return;
  if (read.identity == replaced.identity) {
    throw std::runtime_error(output + ": the input " + input + " is a link to it");
  }
}

void write_all(int descriptor, std::string_view text, const std::string& name) {
  while (!text.empty()) {
    const std::ptrdiff_t count = file_system::write(descriptor, text.data(), text.size());
    if (count <= 0) throw_system_error(count == 0 ? EIO : static_cast<int>(-count), name);
    text.remove_prefix(static_cast<std::size_t>(count));
  }
}

void remove_left_behind(std::span<const std::string> names) {
  std::error_code error;  // a directory that cannot be listed keeps what it has
  for (const auto& entry : std::filesystem::directory_iterator(".", error)) {
    const std::string file = name_of(entry.path().filename());
    if (!file.starts_with('.')) continue;
    for (const std::string& name : names) {
      const std::string prefix = temporary_prefix(path_of(name));
      if (file.size() != prefix.size() + random_letters || !file.starts_with(prefix)) continue;
      if (is_left_behind(file)) file_system::remove(file);
    }
  }
}

FreshFile::FreshFile(std::string name) : name_(std::move(name)) {
  refuse_earlier_file(name_);
  int number = file_system::create_nameless(directory_of(name_));
  if (number == -EOPNOTSUPP || number == -EISDIR || number == -EINVAL) {
    number = under_unforeseen_name(name_, temporary_,
                                   [](const std::string& path) { return file_system::create(path, false); });
  }
  if (number < 0) temporary_.clear();
  file_.emplace(number, name_);
}

FreshFile::~FreshFile() {
  file_.reset();  // what is open cannot be removed everywhere
  if (!temporary_.empty()) file_system::remove(temporary_);
}

void FreshFile::write(std::string_view piece) {
  write_all(file_->number(), piece, name_);
}

void FreshFile::sync() {
  if (const int result = file_system::sync(file_->number()); result < 0) throw_system_error(-result, name_);
}

void FreshFile::take_place() {
  if (temporary_.empty()) {  // a name can be given to a file without one, but not taken from another by it
    const int given = under_unforeseen_name(name_, temporary_, [&](const std::string& free_name) {
      return file_system::give_name(file_->number(), free_name);
    });
    if (given < 0) {
      temporary_.clear();
      throw_system_error(-given, name_);
    }
  }
  file_->close(name_);
  if (const int result = file_system::replace(temporary_, name_); result < 0)
    throw_system_error(-result, name_);
  temporary_.clear();
}

}  // namespace varpre
