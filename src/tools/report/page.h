#pragma once

#include <optional>
#include <string>

#include "files/store_data.h"

namespace varpre {

struct NamedStore {
  std::string name;  // as the user gave it
  std::string file;  // the path of the store file
  const StoreData& data;
};

// A page that shows a store file in any browser and needs nothing besides: its texts, style, script, the
// chart library and the data are in it. With another store file it shows both, and what differs.
std::string page_of(const NamedStore& store, const std::optional<NamedStore>& other);

}  // namespace varpre
