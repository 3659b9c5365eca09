#include "tools/diff/comparison_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "textio/findings/odd_characters.h"
#include "tools/diff/matching.h"

namespace varpre {
namespace {

using Row = std::array<std::string, 7>;   // kind, which, quantity, before, "->", after and unit, effect
constexpr std::size_t most_changes = 12;  // of one difference that are shown

std::string rounded(double value, int digits) {
  std::array<char, 40> text{};
  const auto end = std::to_chars(text.begin(), text.end(), value, std::chars_format::general, digits).ptr;
  return {text.begin(), end};
}

// Two numbers in five digits, or in as many as it takes to tell them apart.
std::array<std::string, 2> numbers_text(double before, double after) {
  for (int digits = 5; digits < 17; ++digits) {
    std::array<std::string, 2> both{rounded(before, digits), rounded(after, digits)};
    if (both[0] != both[1]) return both;
  }
  return {number_text(before), number_text(after)};
}

std::string text_of_told(const Told& told) {
  if (const auto* number = std::get_if<double>(&told))
    return std::isnan(*number) ? number_text(*number) : rounded(*number, 5);
  if (const auto* text = std::get_if<std::string>(&told)) return *text;
  return "none";
}

std::array<std::string, 2> texts_of(const Change& change) {
  const auto* before = std::get_if<double>(&change.before);
  const auto* after = std::get_if<double>(&change.after);
  if (before && after && std::isfinite(*before) && std::isfinite(*after))
    return numbers_text(*before, *after);
  return {text_of_told(change.before), text_of_told(change.after)};
}

std::vector<Row> rows_of(const Difference& difference) {
  std::vector<Row> rows;
  for (const Change& change : difference.changes) {
    if (rows.size() == most_changes) {
      rows.push_back({"", "", "and " + std::to_string(difference.changes.size() - most_changes) + " more"});
      break;
    }
    const auto [before, after] = texts_of(change);
    rows.push_back(
        {"", "", change.name, before, "->", after + (change.unit.empty() ? "" : " " + change.unit), ""});
  }
  if (rows.empty()) rows.emplace_back();
  rows[0][0] = difference.kind;
  rows[0][1] = difference.which;
  rows[0].back() = difference.effect.text;
  return rows;
}

// Columns on a terminal: characters, not bytes.
std::size_t width_of(const std::string& text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (c & '\xC0') != '\x80'; }));
}

nlohmann::ordered_json json_of(const Told& told) {
  if (const auto* number = std::get_if<double>(&told)) return *number;
  if (const auto* text = std::get_if<std::string>(&told)) return *text;
  return nullptr;
}

const char* direction_of(const Change& change) {
  const auto* before = std::get_if<double>(&change.before);
  const auto* after = std::get_if<double>(&change.after);
  return !before || !after ? "" : *after > *before ? "up" : *after < *before ? "down" : "";
}

}  // namespace

std::string text_of(const Comparison& comparison) {
  std::vector<Row> rows;
  for (const Difference& difference : comparison.differences) {
    for (Row& row : rows_of(difference)) {
      for (std::string& cell : row) cell = for_terminal(cell);
      rows.push_back(std::move(row));
    }
  }
  std::array<std::size_t, std::tuple_size_v<Row>> widths{};
  for (const Row& row : rows) {
    for (std::size_t k = 0; k < row.size(); ++k) widths[k] = std::max(widths[k], width_of(row[k]));
  }
  std::string text;
  for (const Row& row : rows) {
    std::string line;
    for (std::size_t k = 0; k < row.size(); ++k) {
      const std::string pad(widths[k] - width_of(row[k]), ' ');
      line += (k == 3 ? pad + row[k] : row[k] + pad) + (k < 3 || k == 5 ? "  " : " ");
    }
    text += std::string(trimmed(line)) + "\n";
  }
  for (const std::string& note : comparison.notes) text += note + "\n";
  return text;
}

nlohmann::ordered_json json_of(const Comparison& comparison) {
  const auto place = [](int index) {
    return index < 0 ? nlohmann::ordered_json() : nlohmann::ordered_json(index);
  };
  nlohmann::ordered_json differences = nlohmann::ordered_json::array();
  for (const Difference& difference : comparison.differences) {
    nlohmann::ordered_json changes = nlohmann::ordered_json::array();
    for (const Change& change : difference.changes) {
      changes.push_back({{"name", change.name},
                         {"before", json_of(change.before)},
                         {"after", json_of(change.after)},
                         {"unit", change.unit},
                         {"direction", direction_of(change)}});
    }
    differences.push_back({{"kind", difference.kind},
                           {"which", difference.which},
                           {"changes", changes},
                           {"effect", {{"size", difference.effect.size}, {"text", difference.effect.text}}},
                           {"before", place(difference.before)},
                           {"after", place(difference.after)}});
  }
  return {{"differences", differences}, {"notes", comparison.notes}};
}

}  // namespace varpre
