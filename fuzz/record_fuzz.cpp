#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "textio/channel/statement.h"
#include "textio/record/number_format.h"

// The record notation on arbitrary records and numbers. The first byte of an input chooses a format or a
// descriptor; the rest is the text of the records to be read, or the bits of the numbers to be written.
namespace varpre {
namespace {

// Every format that the stages read with, numeric ones first in what they differ.
template <FormatText... Texts>
constexpr std::array<FormatView, sizeof...(Texts)> views{Format<Texts>::view...};
constexpr auto input_formats =
    views<"(A16,8X,4(A2,I3),2X,2E10.0,E8.0/,5E15.8,/,5E15.8,/,4E15.8)", "(A8,I2,6F10.3)",
          "(5(A8,A1),/,5(A8,A1),E10.3,F7.1,F10.1)", "(A1,A33,11X,E10.3,F7.1,F10.1)",
          "(A1,5X,4(E10.3,2X),F6.2)", "(A1,5X,E10.3,2X,F6.2,2X,F10.2)", "(3(A1,F4.1,1X,A8,1X,F3.0,1X),E10.3)",
          "(3(A1,F4.1,1X,A8,1X,F3.0,1X),2F5.1)", "(9X,15(F8.3,1X))", "(6(1PE11.4,1X))", "(A8,3(A1,A8),E10.3)",
          "(A8,1X,E11.4)", "(A8,1X,E10.2)", "(A4,1X,E10.3)", "(A4,1X,I6)", "(I4)", "(I3)", "(7(A6,A3,A1))",
          "(7(A8,1X))", "(9A8)", "(6A4)", "(1A4)", "(A200)", "(A80)", "(A72)", "(A)">;

struct Descriptor {
  char letter;
  RealEdit edit;
};
constexpr std::array<Descriptor, 34> descriptors{
    {{'E', {11, 4, 1}}, {'E', {20, 13, 1}}, {'E', {10, 3, 1}},  {'E', {11, 3, 1}}, {'E', {9, 2, 1}},
     {'E', {9, 2, 2}},  {'E', {9, 2, 3}},   {'E', {14, 7, 1}},  {'E', {10, 3, 0}}, {'E', {11, 4, 0}},
     {'E', {10, 2, 0}}, {'E', {15, 8, 0}},  {'F', {10, 1, -3}}, {'F', {6, 1, -3}}, {'F', {10, 2, 0}},
     {'F', {4, 2, 0}},  {'F', {5, 0, 0}},   {'F', {6, 2, 0}},   {'F', {8, 3, 0}},  {'F', {5, 1, 2}},
     {'F', {9, 3, 2}},  {'F', {9, 3, 3}},   {'F', {5, 3, 0}},   {'F', {7, 1, 0}},  {'F', {6, 3, 0}},
     {'F', {6, 0, 0}},  {'F', {10, 1, 0}},  {'I', {1, 0, 0}},   {'I', {2, 0, 0}},  {'I', {3, 0, 0}},
     {'I', {4, 0, 0}},  {'I', {5, 0, 0}},   {'I', {9, 0, 0}},   {'I', {11, 0, 0}}}};

void expect(bool condition, std::string_view what, std::string_view field, double value = 0) {
  if (condition) return;
  std::fprintf(stderr, "%.*s: '%.*s', %a\n", static_cast<int>(what.size()), what.data(),
               static_cast<int>(field.size()), field.data(), value);
  std::abort();
}

bool same(double a, double b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

// A field read by the C library: its blanks dropped, the implied point and the exponent letter put in.
double reference_value(std::string_view field, const RealEdit& edit) {
  std::string text;
  std::copy_if(field.begin(), field.end(), std::back_inserter(text), [](char c) { return c != ' '; });
  std::size_t end = text.find_first_not_of("0123456789.", text.find_first_of("+-") == 0 ? 1 : 0);
  end = std::min(end, text.size());
  std::string exponent = text.substr(end);
  text.resize(end);
  if (!exponent.empty() && std::strchr("EDed", exponent[0]) != nullptr) exponent.erase(0, 1);
  long power = exponent.empty() ? -edit.scale : std::strtol(exponent.c_str(), nullptr, 10);
  if (text.find('.') == text.npos) power -= edit.digits;
  power = std::clamp(power, -100000L, 100000L);
  return std::strtod((text + "e" + std::to_string(power)).c_str(), nullptr);
}

// Reads with one format into items of its own making: all that it has, and one group more where it reverts.
void read_records(const FormatView& format, std::string_view text) {
  constexpr std::size_t room = 24;
  constexpr std::size_t longest = 200;
  std::array<double, room> reals{};
  std::array<int, room> integers{};
  std::array<std::array<char, longest>, room> texts{};
  std::vector<InputItem> items;
  std::vector<Edit> edits;
  Walk walk(format);
  while (items.size() < room) {
    const Edit& edit = walk.next();
    if (edit.kind == Edit::Kind::end) {
      if (items.size() > room / 2) break;
      walk.revert();
    }
    if (!edit.takes_item()) continue;
    const std::size_t i = items.size();
    if (edit.kind == Edit::Kind::integer) {
      items.push_back({ItemKind::integer, &integers[i]});
    } else if (edit.kind == Edit::Kind::text) {
      items.push_back({ItemKind::text, texts[i].data(), 1, 0,
                       edit.width > 0 ? static_cast<std::size_t>(edit.width) : 80});
    } else {
      items.push_back({ItemKind::real, &reals[i]});
    }
    edits.push_back(edit);
  }
  Input unit;
  unit.text = text;
  unit.rewind();
  for (;;) {
    const int before = unit.record_number();
    const ReadResult result = record_detail::read_records(records_of(unit), format, items);
    for (const double value : reals)
      expect(std::isfinite(value), "a number not finite was read", text, value);
    if (result.end_of_file()) return;
    expect(unit.record_number() > before, "a read without progress", text);
    if (result) continue;
    expect(result.unreadable.number >= 1 && result.unreadable.number <= static_cast<int>(items.size()) &&
               result.unreadable.record == unit.record_number() && result.unreadable.column >= 1,
           "the place of an unreadable field", text);
    expect(items[static_cast<std::size_t>(result.unreadable.number - 1)].kind != ItemKind::text,
           "an unreadable text", text);
  }
}

// Reads the text as fields of one descriptor, against the C library.
void read_fields(const Descriptor& descriptor, std::string_view text) {
  for (const auto width = static_cast<std::size_t>(descriptor.edit.width); !text.empty();) {
    const std::string_view field = text.substr(0, width);
    text.remove_prefix(field.size());
    if (descriptor.letter == 'I') {
      const auto value = read_integer(field);
      if (value && *value != 0)
        expect(reference_value(field, {}) == *value, "a wrong integer", field, *value);
    } else if (const auto value = read_real(field, descriptor.edit)) {
      if (trimmed(field).empty()) continue;
      expect(std::isfinite(*value), "a number not finite", field, *value);
      expect(same(*value, reference_value(field, descriptor.edit)), "a wrong number", field, *value);
    }
  }
}

// Writes a number under a descriptor: what stands there is read again as the number rounded by the C library.
void write_field(const Descriptor& descriptor, double value, int integer) {
  const RealEdit& edit = descriptor.edit;
  std::array<char, 32> guarded;
  guarded.fill('#');
  char* const at = guarded.data() + 4;
  const std::string_view field(at, static_cast<std::size_t>(edit.width));
  if (descriptor.letter == 'I') {
    edit_integer(at, edit.width, integer);
    const std::string digits = std::to_string(integer);
    const bool fits = digits.size() <= field.size();
    const std::string expected =
        fits ? std::string(field.size() - digits.size(), ' ') + digits : std::string(field.size(), '*');
    expect(field == expected, "a wrong integer field", field, integer);
  } else {
    (descriptor.letter == 'F' ? edit_fixed : edit_exponent)(at, edit.width > 0 ? edit : RealEdit{}, value);
    if (!std::isfinite(value)) {
      expect(!read_real(field, edit), "not a number, but readable", field, value);
    } else if (field.find('*') == field.npos) {
      const int decimals = descriptor.letter == 'F' ? edit.digits + edit.scale
                                                    : edit.digits - (edit.scale > 0 ? 0 : 1 - edit.scale);
      const auto read = read_real(field, edit);
      std::array<char, 400> text;
      std::snprintf(text.data(), text.size(), descriptor.letter == 'F' ? "%.*f" : "%.*e",
                    std::max(decimals, 0), value);
      const double expected = std::strtod(text.data(), nullptr);
      if (decimals < 0) {
        expect(read && std::abs(*read - value) <= 0.5 * std::pow(10, -decimals), "a wrong number field",
               field, value);
      } else if (std::isfinite(expected)) {
        expect(read && same(*read, expected), "a wrong number field", field, value);
      }
    } else {
      expect(field.find_first_not_of('*') == field.npos, "asterisks and text", field, value);
    }
  }
  expect(at[-1] == '#' && at[edit.width] == '#', "written outside the field", field, value);
}

}  // namespace
}  // namespace varpre

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace varpre;
  if (size == 0) return -1;
  const std::string_view text(reinterpret_cast<const char*>(data + 1), size - 1);
  std::size_t choice = data[0];
  if (choice < 128) {
    read_records(input_formats[choice % input_formats.size()], text);
    return 0;
  }
  const Descriptor& descriptor = descriptors[choice % descriptors.size()];
  if (choice < 192) {
    read_fields(descriptor, text);
    return 0;
  }
  for (std::size_t at = 0; at + sizeof(double) <= text.size(); at += sizeof(double)) {
    double value = 0;
    int integer = 0;
    std::memcpy(&value, text.data() + at, sizeof value);
    std::memcpy(&integer, text.data() + at, sizeof integer);
    write_field(descriptor, value, integer);
  }
  return 0;
}
