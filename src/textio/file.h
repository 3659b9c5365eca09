#pragma once

#include <string>
#include <string_view>

// Whole files of the working directory. Each routine throws std::system_error whose text is "NAME: reason".
namespace varpre {

[[noreturn]] void throw_system_error(int error, const std::string& name);

// The bytes of a file; an absent one is created empty. When the file opens but a read fails, `read_error`
// becomes its errno and what was read before is returned. A directory counts as not opened.
std::string load_or_create_file(const std::string& name, int& read_error);

// Writes a file, replacing its content.
void save_file(const std::string& name, std::string_view text);

// Replaces a file in two steps, so that at any moment either the old or the new one is there whole: `prepare`
// proves that the place can be written and leaves nothing there; `replace` fills the temporary file NAME.tmp
// beside it (beside the file a link points to) and renames it, or removes it when that fails. A device or a
// pipe is written as it stands.
void prepare_replacement(const std::string& name);
void replace_file(const std::string& name, std::string_view text);

// Writes all bytes to an open descriptor; `name` is for the error only.
void write_all(int descriptor, std::string_view text, const std::string& name);

}  // namespace varpre
