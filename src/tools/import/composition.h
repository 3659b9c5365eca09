#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace varpre {

using Composition = std::vector<std::pair<std::string, double>>;

// Names and amounts, "H2:2, O2:1", with blanks or commas between them. None when it is something else.
std::optional<Composition> parse_composition(std::string_view text);

}  // namespace varpre
