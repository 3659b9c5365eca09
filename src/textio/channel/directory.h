#pragma once

#include <string>

namespace varpre {

// Throws std::system_error unless inputs can be looked for in the directory.
void require_directory(const std::string& directory);

}  // namespace varpre
