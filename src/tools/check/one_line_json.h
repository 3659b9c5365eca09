#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace varpre {

// JSON in ASCII alone: whatever a reader takes for the end of a line, or may not show, is escaped. Bytes that
// are no UTF-8 become U+FFFD.
inline std::string one_line(const nlohmann::ordered_json& json) {
  constexpr bool ascii = true;
  return json.dump(-1, ' ', ascii, nlohmann::ordered_json::error_handler_t::replace);
}

}  // namespace varpre
