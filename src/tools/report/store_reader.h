#pragma once

#include <string>

#include "tools/report/store_data.h"

namespace varpre {

// Reads the text of a store file by the formats it was written with, as far as it goes: where a record is
// missing, stands in another place or cannot be read, the rest is left empty and `stopped` says so.
StoreData read_store(const std::string& text);

}  // namespace varpre
