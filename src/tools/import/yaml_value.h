#pragma once

#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "textio/channel/input.h"
#include "textio/findings/findings.h"
#include "tools/import/source_files.h"
#include "tools/import/units.h"
#include "tools/import/yaml_tree.h"

namespace varpre {

// A value of a YAML file, with the units that hold where it stands. A missing value is false.
//
// Routines that read from it report what cannot be meant, and then return nothing; a missing value is
// reported by `require` only. The findings refer to the file, which YamlFiles keeps.
class Value {
 public:
  Value() = default;
  // The root of a file, with the units of the format.
  Value(const YamlNode* node, Findings& findings);

  explicit operator bool() const { return is(YamlNode::Kind::scalar) || is_list() || is_map(); }
  bool is_scalar() const { return is(YamlNode::Kind::scalar); }
  bool is_list() const { return is(YamlNode::Kind::list); }
  bool is_map() const { return is(YamlNode::Kind::map); }
  const std::string& text() const { return node_->text; }
  // Where it begins; of a text, its columns.
  Place place() const { return node_ == nullptr ? Place() : node_->place; }

  // A member of a mapping; missing when this is none.
  Value operator[](const char* key) const;
  // The same; a missing one is an error.
  Value require(const char* key) const;
  // The items of a list, a first one that sets units left out; none, after an error, of anything else.
  std::vector<Value> items() const;
  // The members of a mapping in their order, with their names; reports names given twice.
  struct Member;
  std::vector<Member> members() const;
  // Reports members of other names than these, too.
  void check_names(std::initializer_list<const char*> known) const;

  std::optional<std::string> string() const;
  std::optional<bool> boolean() const;
  // A number without unit.
  std::optional<double> number() const;
  // A number with a unit or, without one, in `usual`; in units of `wanted`.
  std::optional<double> quantity(const Unit& usual, const Unit& wanted) const;
  // kJ/mol.
  std::optional<double> energy() const;

  const UnitSystem& units() const { return *units_; }
  const Input* file() const { return place().unit; }
  Findings& findings() const { return *findings_; }

 private:
  struct NumberAndUnit {
    long double value;
    std::optional<Unit> unit;
  };
  std::optional<NumberAndUnit> number_and_unit() const;
  bool is(YamlNode::Kind kind) const { return node_ != nullptr && node_->kind == kind; }
  Value inner(const YamlNode& node) const;
  void set_units(const YamlNode& units);

  const YamlNode* node_ = nullptr;
  std::shared_ptr<const UnitSystem> units_;
  Findings* findings_ = nullptr;
};

struct Value::Member {
  std::string name;
  Place place;  // of the name
  Value value;
};

// The files of an import, each read once.
class YamlFiles {
 public:
  YamlFiles(SourceFiles& sources, std::vector<std::string> directories, Findings& findings)
      : sources_(sources), directories_(std::move(directories)), findings_(findings) {}

  // The whole of a file. Missing, after an error, when it is no YAML; `named` is where another file names it.
  // Throws std::runtime_error (file.h) when the first file cannot be read.
  Value open(const std::string& path, const Place& named = {});

  // A section, "species" or "other.yaml/species", as seen from a value: the other file is looked for beside
  // the file of the value and in the directories. Missing after an error.
  Value section(const std::string& name, const Value& from);

  // What the section `elements` of a file that is open says of atomic weights.
  const std::map<std::string, double>& atomic_weights(const std::string& path);

  // Whether a file or section that another one names could not be had: what follows from that is no news.
  bool incomplete() const { return incomplete_; }

 private:
  std::string find(const std::string& name, const Value& from) const;

  SourceFiles& sources_;
  std::vector<std::string> directories_;
  Findings& findings_;
  struct File {
    YamlTree tree;
    Value root;
    std::optional<std::map<std::string, double>> atomic_weights;
  };
  std::map<std::string, File> yaml_;
  bool incomplete_ = false;
};

}  // namespace varpre
