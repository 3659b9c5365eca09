#pragma once

#include <string>
#include <vector>

#include "tools/import/yaml_value.h"

namespace varpre {

// What a phase takes from a section, of its own file or of another: some names of it, or what a word says.
struct Selection {
  std::string section;  // "species", "other.yaml/species"
  Value where;          // that says so
  std::vector<Value> names;
  std::string rule;  // "all", "declared-species"; empty: the names
};

// A word that stands for a section of this name; or a list of names from there, and of sections with a word
// or names.
std::vector<Selection> read_selections(const Value& list, const char* own_section);

// The same for reactions, which are chosen by word only: without a list all of the file, if it has any.
std::vector<Selection> read_reaction_selections(const Value& list, const Value& phase);

// The species entries of a selection, in the order of its names.
std::vector<Value> selected_species(const Selection& selection, YamlFiles& files);

}  // namespace varpre
