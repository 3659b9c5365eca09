#include "tools/diff/matching.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <unordered_map>

#include "textio/findings/findings.h"
#include "textio/record/record.h"

namespace varpre {

bool Matches::same_order() const {
  int last = -1;
  for (const int index : after) {
    if (index < 0) continue;
    if (index < last) return false;
    last = index;
  }
  return true;
}

Matches match(const std::vector<std::string>& before, const std::vector<std::string>& after) {
  std::unordered_map<std::string, std::vector<int>> places;  // the last first
  for (std::size_t k = after.size(); k-- > 0;) places[after[k]].push_back(static_cast<int>(k));
  Matches matches;
  std::vector<bool> taken(after.size());
  for (const std::string& name : before) {
    std::vector<int>& left = places[name];
    matches.after.push_back(left.empty() ? -1 : left.back());
    if (left.empty()) continue;
    taken[static_cast<std::size_t>(left.back())] = true;
    left.pop_back();
  }
  for (std::size_t k = 0; k < after.size(); ++k) {
    if (!taken[k]) matches.only_after.push_back(static_cast<int>(k));
  }
  return matches;
}

bool same(double before, double after) {
  return before == after || (std::isnan(before) && std::isnan(after));
}

double number_of(int value) {
  return value == absent_integer ? std::numeric_limits<double>::quiet_NaN() : value;
}

std::string number_text(double value) {
  if (std::isnan(value)) return "*****";
  std::array<char, 32> text{};
  const auto end = std::to_chars(text.begin(), text.end(), value).ptr;
  return {text.begin(), end};
}

namespace {

std::string short_text(double value) {
  std::array<char, 32> text{};
  const auto end = std::to_chars(text.begin(), text.end(), value, std::chars_format::general, 3).ptr;
  return {text.begin(), end};
}

}  // namespace

std::string ratio_text(double ratio) {
  if (!std::isfinite(ratio) || ratio <= 0) return "";
  if (ratio > 1.9995 || ratio < 0.5005) return "x " + short_text(ratio);
  return message(ratio > 1 ? "+" : "", short_text(100 * (ratio - 1)), " %");
}

Change change_of(const std::string& name, double before, double after, const std::string& unit) {
  return {name, before, after, unit};
}

Effect relative_effect(double before, double after, const std::string& quantity) {
  if (same(before, after)) return {};
  if (!std::isfinite(before) || !std::isfinite(after)) return {another_thing, ""};
  const double size = std::abs(after / 2 - before / 2) / std::max(std::abs(before), std::abs(after)) * 2;
  const std::string text = before * after < 0 ? "another sign"
                           : before == 0      ? "from 0"
                           : after == 0       ? "to 0"
                                              : ratio_text(after / before);
  return {size, text.empty() || quantity.empty() ? text : quantity + " " + text};
}

void add(Difference& difference, Change change, const Effect& effect) {
  difference.changes.push_back(std::move(change));
  if (difference.changes.size() == 1 || effect.size > difference.effect.size) difference.effect = effect;
}

void add_change(Difference& difference, const std::string& name, const std::string& unit, double before,
                double after) {
  if (!same(before, after)) difference.changes.push_back(change_of(name, before, after, unit));
}

void add_if_changed(Difference& difference, const std::string& name, double before, double after,
                    const std::string& unit) {
  if (!same(before, after))
    add(difference, change_of(name, before, after, unit), relative_effect(before, after));
}

void add(Comparing& comparing, Difference difference) {
  if (!difference.changes.empty()) comparing.differences.push_back(std::move(difference));
}

void add_removed(Comparing& comparing, const std::string& kind, const std::string& which, int place) {
  comparing.differences.push_back({kind, which, {}, {another_thing, "removed"}, place, -1});
}

void add_added(Comparing& comparing, const std::string& kind, const std::string& which, int place) {
  comparing.differences.push_back({kind, which, {}, {another_thing, "added"}, -1, place});
}

void note_order(Comparing& comparing, const Matches& matches, const std::string& what) {
  if (!matches.same_order()) comparing.notes.push_back("the " + what + " stand in another order");
}

}  // namespace varpre
