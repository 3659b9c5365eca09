#include "tools/export/yaml_text.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "textio/findings/findings.h"
#include "textio/record/number_format.h"
#include "textio/record/text.h"

namespace varpre {
namespace {

constexpr std::size_t longest_line = 80;

// Whether a text, read without quotation marks, is just that text, also in a list and as a key.
bool is_plain(std::string_view text) {
  constexpr std::array<std::string_view, 7> words{"NO", "YES", "ON", "OFF", "TRUE", "FALSE", "NULL"};
  constexpr std::string_view others = "()*_-./'+<>=^";
  const auto is_letter_or_digit = [](char c) { return is_digit(c) || (upper(c) >= 'A' && upper(c) <= 'Z'); };
  const auto belongs = [&](char c) {
    return is_letter_or_digit(c) || c == ' ' || others.find(c) != others.npos;
  };
  const auto is_word = [&](std::string_view word) { return same_word(word, text); };
  return !text.empty() && (is_letter_or_digit(text.front()) || text.front() == '(') && text.back() != ' ' &&
         std::all_of(text.begin(), text.end(), belongs) && !read_free_real(text) &&
         std::none_of(words.begin(), words.end(), is_word);
}

// The length of the UTF-8 sequence at the beginning; 0 where there is none.
std::size_t sequence_length(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const std::size_t length = byte(0) < 0x80   ? 1
                             : byte(0) < 0xC2 ? 0
                             : byte(0) < 0xE0 ? 2
                             : byte(0) < 0xF0 ? 3
                             : byte(0) < 0xF5 ? 4
                                              : 0;
  if (length > text.size()) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 0;
  }
  return length;
}

// The first character between quotation marks, and how many bytes it takes.
std::pair<std::string, std::size_t> quoted_character(std::string_view text) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  const char c = text.front();
  const auto code = static_cast<unsigned char>(c);
  if (c == '"' || c == '\\') return {std::string("\\") + c, 1};
  const std::size_t length = sequence_length(text);
  if (length == 0 || code < ' ' || code == 0x7F)
    return {std::string("\\x") + digits[code / 16] + digits[code % 16], 1};
  return {std::string(text.substr(0, length)), length};
}

// `start` is what stands before the list.
std::string lines(const std::string& start, char open, const std::vector<std::string>& items, char close) {
  const std::size_t indent =
      start.find_first_not_of(" -") == std::string::npos ? start.size() : start.find_first_not_of(" -") + 2;
  std::string text = start + open;
  std::size_t line = text.size();
  for (std::size_t i = 0; i < items.size(); ++i) {
    const bool last = i + 1 == items.size();
    const std::string item = items[i] + (last ? close : ',');
    if (line + item.size() + 1 > longest_line && i > 0) {
      text.append("\n").append(indent, ' ');
      line = indent;
    } else if (i > 0) {
      text += ' ';
      ++line;
    }
    text += item;
    line += item.size();
  }
  if (items.empty()) text += close;
  return text + "\n";
}

std::vector<std::string> joined(const YamlMembers& members) {
  std::vector<std::string> items;
  items.reserve(members.size());
  for (const auto& [name, value] : members) items.push_back(message(name, ": ", value));
  return items;
}

}  // namespace

std::string yaml_number(double value) {
  std::array<char, 32> buffer{};
  const auto result = std::to_chars(buffer.begin(), buffer.end(), value);
  std::string text(buffer.begin(), result.ptr);
  if (text.find('.') == std::string::npos) text.insert(std::min(text.find('e'), text.size()), ".0");
  return text;
}

std::string yaml_text(std::string_view text) {
  if (is_plain(text)) return std::string(text);
  std::string quoted = "\"";
  while (!text.empty()) {
    const auto [character, bytes] = quoted_character(text);
    quoted += character;
    text.remove_prefix(bytes);
  }
  return quoted + "\"";
}

std::string yaml_description(const std::vector<std::string>& lines) {
  if (lines.empty()) return {};
  if (lines.size() == 1) return "description: " + yaml_text(lines.front()) + "\n";
  const bool printable = std::all_of(lines.begin(), lines.end(), [](std::string_view line) {
    return !line.starts_with(' ') &&
           std::all_of(line.begin(), line.end(), [](char c) { return c >= ' ' && c <= '~'; });
  });
  std::string text;
  for (const std::string& line : lines) text += printable ? "  " + line + "\n" : line + "\n";
  if (printable) return "description: |-\n" + text;
  text.pop_back();
  return "description: " + yaml_text(text) + "\n";
}

std::string yaml_map(const YamlMembers& members) {
  std::string text;
  for (const std::string& item : joined(members)) text.append(text.empty() ? "" : ", ").append(item);
  return "{" + text + "}";
}

std::string yaml_list_lines(const std::string& key, const std::vector<std::string>& items) {
  return lines(key + ": ", '[', items, ']');
}

std::string yaml_map_lines(const std::string& key, const YamlMembers& members) {
  return lines(key + ": ", '{', joined(members), '}');
}

std::string yaml_item_lines(const std::string& dash, const std::vector<std::string>& items) {
  return lines(dash, '[', items, ']');
}

}  // namespace varpre
