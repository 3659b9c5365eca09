#pragma once

#include <string>

#include "files/store_data.h"

namespace varpre {

// The path of the store file of a directory, or of one that is named itself.
std::string store_file_of(const std::string& name);

// The contents of the store file of a directory, or of one that is named itself. Throws std::system_error
// when it cannot be read, std::runtime_error when it is larger than any store file.
StoreData store_of(const std::string& name);

}  // namespace varpre
