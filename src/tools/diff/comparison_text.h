#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "tools/diff/comparison.h"

// A comparison for people, and for programs.
namespace varpre {

// A line for each change, aligned, the largest effect first; then the notes. Nothing for no difference.
std::string text_of(const Comparison& comparison);

// The same as JSON; a size that is infinite, and a value that is no number, are null.
nlohmann::ordered_json json_of(const Comparison& comparison);

}  // namespace varpre
