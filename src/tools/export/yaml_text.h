#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

// Values in YAML, in the style of published mechanisms.
namespace varpre {

// The shortest text that reads as the value again, with a decimal point: "0.0", "26.2", "1.0e+14".
std::string yaml_number(double value);

// A text as a scalar, between quotation marks where it would mean something else without them. Bytes that are
// no UTF-8 are taken for Latin-1.
std::string yaml_text(std::string_view text);

// The line "description: ...", or a block of several; nothing for no line.
std::string yaml_description(const std::vector<std::string>& lines);

// Names and values that are YAML already.
using YamlMembers = std::vector<std::pair<std::string, std::string>>;

// "{A: 1.0, b: 0.0}".
std::string yaml_map(const YamlMembers& members);

// A line "key: [a, b, c]", with a mapping, or "- [a, b, c]" of a list of lists, that goes on in further
// lines, indented by four more, where it would be too long.
std::string yaml_list_lines(const std::string& key, const std::vector<std::string>& items);
std::string yaml_map_lines(const std::string& key, const YamlMembers& members);
std::string yaml_item_lines(const std::string& dash, const std::vector<std::string>& items);

}  // namespace varpre
