#pragma once

#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "textio/findings/findings.h"

namespace varpre {

// A value of a YAML file. Where the file refers to a value by an alias, the tree has it once.
struct YamlNode {
  enum class Kind { null, scalar, list, map };
  Kind kind = Kind::null;
  Place place;
  std::string text;                                                  // of a scalar
  std::vector<const YamlNode*> items;                                // of a list
  std::vector<std::pair<const YamlNode*, const YamlNode*>> members;  // of a mapping: name and value
  double size = 1;  // values in it, aliases as what they stand for

  // The value of a member; none when this is no mapping that has it.
  const YamlNode* member(std::string_view name) const;
};

// A file as a tree. What it costs is in proportion to the length of the text.
struct YamlTree {
  std::deque<YamlNode> nodes;
  const YamlNode* root = nullptr;  // a mapping; none after an error
};

// Reads a file of one document, a mapping. Reports what is no YAML, values nested more than 500 deep, texts
// longer than 65,536 characters, aliases within what they stand for, and aliases that stand for more than the
// file itself holds, ten times over.
YamlTree read_yaml_tree(const Input& file, Findings& findings);

}  // namespace varpre
