#include "tools/import/composition.h"

#include "tools/import/units.h"

namespace varpre {

std::optional<Composition> parse_composition(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\n";
  Composition composition;
  const auto skip = [&](std::string_view characters) {
    text.remove_prefix(std::min(text.find_first_not_of(characters), text.size()));
  };
  for (skip(" \t\r\n,"); !text.empty(); skip(" \t\r\n,")) {
    // The name ends at the last colon before the next blank or comma, or at one behind a blank.
    std::size_t end = std::min(text.find_first_of(" \t\r\n,"), text.size());
    std::size_t colon = text.substr(0, end).rfind(':');
    if (colon == std::string_view::npos) colon = text.find_first_not_of(blanks, end);
    if (colon == std::string_view::npos || colon == 0 || text[colon] != ':') return std::nullopt;
    const std::string name(text.substr(0, std::min(end, colon)));
    text.remove_prefix(colon + 1);
    skip(blanks);
    end = std::min(text.find_first_of(" \t\r\n,"), text.size());
    const auto amount = parse_number(text.substr(0, end));
    if (!amount) return std::nullopt;
    composition.emplace_back(name, static_cast<double>(*amount));
    text.remove_prefix(end);
  }
  if (composition.empty()) return std::nullopt;
  return composition;
}

}  // namespace varpre
