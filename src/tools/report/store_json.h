#pragma once

#include <nlohmann/json.hpp>

#include "files/store_data.h"

namespace varpre {

// All that a store file holds, as one object (docs/report.md). What is not a number is null.
nlohmann::ordered_json json_of(const StoreData& data);

}  // namespace varpre
