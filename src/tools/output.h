#pragma once

#include <span>
#include <string>

namespace varpre {

// Writes a text under a name: to what is open under /dev/stdout, /dev/stderr or /dev/fd/NUMBER, into a pipe
// or a device, otherwise as a fresh file that takes the name's place. Returns whether it was such a file.
// Throws std::runtime_error "NAME: reason" when that fails, and when the name stands for one of the files
// that were read.
bool write_output(const std::string& name, const std::string& text, std::span<const std::string> inputs);

}  // namespace varpre
