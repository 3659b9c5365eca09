#include "textio/findings/odd_characters.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>

#include "textio/findings/findings.h"
#include "textio/record/number_format.h"

namespace varpre {
namespace {

using CodePoint = std::uint32_t;

// Code points from one to another; plain text to write instead, or nothing.
struct OddRange {
  CodePoint first;
  CodePoint last;
  std::string_view name;
  std::string_view plain;
};

constexpr std::array<OddRange, 23> odd_ranges{{{0x09, 0x09, "a tab", " "},
                                               {0x00, 0x1F, "a control character", ""},
                                               {0x7F, 0x9F, "a control character", ""},
                                               {0xA0, 0xA0, "a no-break space", " "},
                                               {0xAD, 0xAD, "a soft hyphen", "-"},
                                               {0xB4, 0xB4, "an accent", "'"},
                                               {0x2000, 0x200A, "a space of another width", " "},
                                               {0x200B, 0x200F, "a character without width", ""},
                                               {0x2010, 0x2015, "a dash", "-"},
                                               {0x2018, 0x201B, "a quotation mark", "'"},
                                               {0x201C, 0x201F, "a quotation mark", "''"},
                                               {0x2028, 0x202E, "a character without width", ""},
                                               {0x202F, 0x202F, "a no-break space", " "},
                                               {0x2032, 0x2032, "a prime", "'"},
                                               {0x2033, 0x2033, "a double prime", "''"},
                                               {0x205F, 0x205F, "a space of another width", " "},
                                               {0x2190, 0x2191, "an arrow", "="},
                                               {0x2192, 0x2192, "an arrow", ">"},
                                               {0x2194, 0x21FF, "an arrow", "="},
                                               {0x2212, 0x2212, "a minus sign", "-"},
                                               {0x3000, 0x3000, "a space of another width", " "},
                                               {0xFE63, 0xFE63, "a dash", "-"},
                                               {0xFEFF, 0xFEFF, "a byte-order mark", ""}}};

// A character of a text, in UTF-8 or, where it is none, a byte of an older code.
struct Character {
  CodePoint code = 0;
  std::size_t bytes = 1;
};

// What editors of Windows write for dashes and quotation marks, 0x91 to 0x97.
constexpr std::array<CodePoint, 7> windows_marks{0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014};

Character first_character(std::string_view text) {
  const auto byte = [&](std::size_t i) {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : CodePoint{0};
  };
  const CodePoint lead = byte(0);
  const std::size_t bytes = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC2 ? 2 : 1;
  CodePoint code = bytes == 1 ? lead : lead & (0xFFU >> (bytes + 1));
  for (std::size_t i = 1; i < bytes; ++i) {
    if ((byte(i) & 0xC0U) != 0x80) return {lead, 1};
    code = code << 6 | (byte(i) & 0x3FU);
  }
  if (bytes == 1 && code >= 0x91 && code <= 0x97) code = windows_marks[code - 0x91];
  return {code, bytes};
}

struct OddCharacter {
  std::string_view name;
  std::string plain;
  bool deceptive = true;
};

std::string hexadecimal(CodePoint code) {
  std::array<char, 8> text;
  const auto end = std::to_chars(text.data(), text.data() + text.size(), code, 16).ptr;
  std::string digits(text.data(), end);
  std::transform(digits.begin(), digits.end(), digits.begin(), upper);
  return std::string(digits.size() < 4 ? 4 - digits.size() : 0, '0') + digits;
}

// Letters of other alphabets that look like those of the species names.
struct Homoglyphs {
  std::string_view name;
  std::u32string_view letters;
  std::string_view plain;
};
constexpr std::array<Homoglyphs, 5> homoglyphs{
    {{"a Cyrillic letter", U"\u0410\u0412\u0415\u041A\u041C\u041D", "ABEKMH"},
     {"a Cyrillic letter", U"\u041E\u0420\u0421\u0422\u0425\u0406", "OPCTXI"},
     {"a Cyrillic letter", U"\u0430\u0435\u043E\u0440\u0441\u0445\u0456", "aeopcxi"},
     {"a Greek letter", U"\u0391\u0392\u0395\u0396\u0397\u0399\u039A\u039C", "ABEZHIKM"},
     {"a Greek letter", U"\u039D\u039F\u03A1\u03A4\u03A7\u03BF", "NOPTXo"}}};

// What is odd about a character; no name when nothing is.
OddCharacter oddity(CodePoint code) {
  constexpr std::string_view digits = "0123456789";
  if (code >= 0x20 && code < 0x7F) return {};
  for (const OddRange& range : odd_ranges) {
    if (code >= range.first && code <= range.last) return {range.name, std::string(range.plain)};
  }
  if (code >= 0xFF01 && code <= 0xFF5E) return {"a wide character", {static_cast<char>(code - 0xFEE0)}};
  if (code >= 0x2080 && code <= 0x2089) return {"a lowered digit", {digits[code - 0x2080]}};
  if (code >= 0x2074 && code <= 0x2079) return {"a raised digit", {digits[code - 0x2070]}, false};
  if (code == 0xB2 || code == 0xB3) return {"a raised digit", {digits[code - 0xB0]}, false};
  for (const auto& [name, letters, plain] : homoglyphs) {
    const std::size_t at = letters.find(static_cast<char32_t>(code));
    if (at != letters.npos) return {name, {plain[at]}};
  }
  return {"a character that is not ASCII", {}, false};
}

// Names the first odd character of a text: any, or only a deceptive one.
std::string name_odd_character(std::string_view text, int column, bool deceptive_only) {
  while (!text.empty()) {
    const Character c = first_character(text);
    const OddCharacter odd = oddity(c.code);
    if (!odd.name.empty() && (odd.deceptive || !deceptive_only)) {
      const std::string instead = odd.plain.empty()  ? std::string("delete it")
                                  : odd.plain == " " ? std::string("write blanks")
                                                     : message("write ", odd.plain);
      return message("column ", column, " holds ", odd.name, " (U+", hexadecimal(c.code), "): ", instead);
    }
    text.remove_prefix(std::min(c.bytes, text.size()));
    ++column;
  }
  return {};
}

// Whether a terminal would act on a character instead of showing it.
bool is_control(CodePoint code) {
  constexpr std::array<std::array<CodePoint, 2>, 7> controls{{{0x00, 0x1F},
                                                              {0x7F, 0x9F},
                                                              {0x61C, 0x61C},
                                                              {0x200B, 0x200F},
                                                              {0x2028, 0x202E},
                                                              {0x2060, 0x206F},
                                                              {0xFEFF, 0xFEFF}}};
  return std::any_of(controls.begin(), controls.end(),
                     [&](const auto& range) { return code >= range[0] && code <= range[1]; });
}

// One character for all that look alike.
char typical(char c) {
  switch (upper(c)) {
    case 'O': return '0';
    case 'I':
    case 'L': return '1';
    case '`': return '\'';
    default: return upper(c);
  }
}

}  // namespace

std::string in_plain_characters(std::string_view text) {
  std::string plain;
  while (!text.empty()) {
    const Character c = first_character(text);
    if (text.front() == '"') {
      plain += "''";
    } else if (const OddCharacter odd = oddity(c.code); !odd.name.empty()) {
      plain += odd.plain;
    } else {
      plain += text.front();
    }
    text.remove_prefix(c.bytes);
  }
  return plain;
}

std::string odd_character_help(std::string_view text, int column) {
  return name_odd_character(text, column, false);
}

std::string deceptive_character_help(std::string_view text) {
  const bool plain = std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c < 0x7F; });
  return plain ? std::string() : name_odd_character(text, 1, true);
}

int character_column(std::string_view line, int column) {
  int count = 1;
  for (int bytes = 1; bytes < column; ++count) {
    const std::size_t size = line.empty() ? 1 : std::min(first_character(line).bytes, line.size());
    bytes += static_cast<int>(size);
    if (bytes > column) break;
    line.remove_prefix(std::min(size, line.size()));
  }
  return count;
}

std::string odd_number_help(std::string_view text, int column) {
  if (std::string help = odd_character_help(text, column); !help.empty()) return help;
  std::string meant(text);
  std::replace(meant.begin(), meant.end(), ',', '.');
  if (meant != text && read_free_real(meant)) return message("write a point instead of the comma: ", meant);
  for (char& c : meant) {
    if (typical(c) == '0') c = '0';
    if (typical(c) == '1') c = '1';
  }
  const bool point = meant.find('.') != std::string::npos;
  return meant != text && point && read_free_real(meant) ? message("write ", meant, " in digits")
                                                         : std::string();
}

ShownCharacter show_first_character(std::string_view text) {
  const Character c = first_character(text);
  const CodePoint code = c.bytes == 1 ? static_cast<unsigned char>(text.front()) : c.code;
  if (!is_control(code)) return {std::string(text.substr(0, c.bytes)), c.bytes};
  return {message("<U+", hexadecimal(code), ">"), c.bytes};
}

std::string for_terminal(std::string_view text) {
  std::string shown;
  while (!text.empty()) {
    const ShownCharacter c = show_first_character(text);
    shown += c.text;
    text.remove_prefix(c.bytes);
  }
  return shown;
}

bool look_alike(char a, char b) {
  return typical(a) == typical(b);
}

}  // namespace varpre
