#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "tools/diff/comparison.h"

// What the parts of the comparison share: which item of one file is which of the other, and what their values
// differ by.
namespace varpre {

// Items of the file before and after that are the same one. Indices are from 0.
struct Matches {
  std::vector<int> after;       // for each item before that after; -1: there is none
  std::vector<int> only_after;  // the items after that were none before

  std::size_t matched() const {
    return static_cast<std::size_t>(std::count_if(after.begin(), after.end(), [](int k) { return k >= 0; }));
  }
  bool same_order() const;
};

// Matches items by their names; of items of one name the first is the first.
Matches match(const std::vector<std::string>& before, const std::vector<std::string>& after);

// Both files, and what was found so far.
struct Comparing {
  const StoreData& before;
  const StoreData& after;
  Matches gas;  // the species
  Matches surface;
  std::vector<Difference> differences;
  std::vector<std::string> notes;
  std::vector<int> gas_reactions;  // as in the comparison
  std::vector<int> surface_reactions;
};

// Names as texts.
template <std::size_t N>
std::vector<std::string> names_of(const std::vector<Text<N>>& names) {
  std::vector<std::string> list;
  list.reserve(names.size());
  for (const auto& name : names) list.emplace_back(trimmed(name.view()));
  return list;
}

bool same(double before, double after);  // of two that are not numbers as well
double number_of(int value);             // not a number where the file shows asterisks
std::string number_text(double value);   // the digits that the file has, in the shortest form

// A change of a number, and its relative change; a text for a percentage, or the factor where that is large.
Change change_of(const std::string& name, double before, double after, const std::string& unit = {});
Effect relative_effect(double before, double after, const std::string& quantity = {});
std::string ratio_text(double ratio);

// Notes a change and its effect, which is that of the difference if it is its largest.
void add(Difference& difference, Change change, const Effect& effect);
// Both together, for a number; the first leaves its effect to the caller.
void add_change(Difference& difference, const std::string& name, const std::string& unit, double before,
                double after);
void add_if_changed(Difference& difference, const std::string& name, double before, double after,
                    const std::string& unit = {});

// Adds a difference that has changes; one of something that only one of the files has.
void add(Comparing& comparing, Difference difference);
void add_removed(Comparing& comparing, const std::string& kind, const std::string& which, int place = -1);
void add_added(Comparing& comparing, const std::string& kind, const std::string& which, int place = -1);

// Says where what both files have stands in another order.
void note_order(Comparing& comparing, const Matches& matches, const std::string& what);

// An item of a list; nullptr where the list ends before, since the file was read so far only.
template <class T>
const T* item(const std::vector<T>& list, int index) {
  return index >= 0 && index < static_cast<int>(list.size()) ? &list[static_cast<std::size_t>(index)]
                                                             : nullptr;
}

// The parts.
void compare_species(Comparing& comparing);
void compare_reactions(Comparing& comparing);
void compare_global_reactions(Comparing& comparing);
void compare_conditions(Comparing& comparing);

}  // namespace varpre
