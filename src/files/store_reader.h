#pragma once

#include <string_view>

#include "files/store_data.h"

namespace varpre {

// Reads the text of a store file by the formats it was written with, as far as it goes: where a record is
// missing, stands in another place or cannot be read, the rest is left empty and `stopped` says so.
StoreData read_store(std::string_view text);

}  // namespace varpre
