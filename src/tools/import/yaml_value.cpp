#include "tools/import/yaml_value.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <stdexcept>
#include <yaml-cpp/depthguard.h>

namespace varpre {
namespace {

Place place_of_mark(const Input* file, const YAML::Mark& mark, int width = 1) {
  if (mark.is_null()) return {file};
  return {file, mark.line + 1, mark.column + 1, width};
}

}  // namespace

Value::Value(const YAML::Node& node, const Input* file, const UnitSystem& units, Findings& findings)
    : node_(node), file_(file), units_(units), findings_(&findings) {
  if (!node_.IsMap()) return;
  const YAML::Node& constant = node_;
  if (const YAML::Node given = constant["units"]; given.IsDefined()) set_units(given);
}

Place Value::place() const {
  const int width = node_.IsScalar() ? std::max(static_cast<int>(text().size()), 1) : 1;
  return place_of_mark(file_, node_.Mark(), width);
}

Value Value::inner(const YAML::Node& node) const {
  return {node, file_, units_, *findings_};
}

Value Value::operator[](const char* key) const {
  if (!node_.IsMap()) return {};
  const YAML::Node& constant = node_;
  const YAML::Node found = constant[key];
  return found.IsDefined() ? inner(found) : Value();
}

Value Value::require(const char* key) const {
  Value value = (*this)[key];
  if (!value) findings_->error(place(), message("'", key, "' is missing here"));
  return value;
}

std::vector<Value> Value::items() const {
  std::vector<Value> list;
  if (!*this) return list;
  if (!is_list()) {
    findings_->error(place(), "a list is due here");
    return list;
  }
  Value scope = *this;
  for (const YAML::Node& item : node_) {
    if (list.empty() && item.IsMap() && item.size() == 1 && item["units"].IsDefined()) {
      scope.set_units(item["units"]);
    } else {
      list.push_back(scope.inner(item));
    }
  }
  return list;
}

std::vector<Value::Member> Value::members() const {
  std::vector<Member> list;
  if (!*this) return list;
  if (!is_map()) {
    findings_->error(place(), "a mapping of names to values is due here");
    return list;
  }
  std::set<std::string> seen;
  for (const auto& member : node_) {
    const Value name = inner(member.first);
    if (!name.is_scalar()) {
      findings_->error(name.place(), "a name is due here");
      continue;
    }
    if (!seen.insert(name.text()).second)
      findings_->error(name.place(), message("'", name.text(), "' is given twice"));
    list.push_back({name.text(), name.place(), inner(member.second)});
  }
  return list;
}

void Value::check_names(std::initializer_list<const char*> known) const {
  for (const Member& member : members()) {
    const auto is_name = [&](const auto& name) { return member.name == name; };
    if (member.name == "units" || std::any_of(known.begin(), known.end(), is_name)) continue;
    findings_->warning(member.place, message("'", member.name, "' is not known here and was not read"), [&] {
      return Nearest(member.name).offer_all(std::vector<std::string_view>(known.begin(), known.end())).help();
    });
  }
}

std::optional<std::string> Value::string() const {
  if (!*this) return std::nullopt;
  if (is_scalar()) return text();
  findings_->error(place(), "a text is due here");
  return std::nullopt;
}

std::optional<bool> Value::boolean() const {
  if (!*this) return std::nullopt;
  bool value = false;
  if (is_scalar() && YAML::convert<bool>::decode(node_, value)) return value;
  findings_->error(place(), "true or false is due here");
  return std::nullopt;
}

std::optional<Value::NumberAndUnit> Value::number_and_unit() const {
  if (!*this) return std::nullopt;
  if (is_scalar()) {
    const std::string_view all = text();
    const std::size_t blank = std::min(all.find(' '), all.size());
    const auto value = parse_number(all.substr(0, blank));
    const std::size_t unit = all.find_first_not_of(' ', blank);
    if (value && unit == std::string_view::npos) return NumberAndUnit{*value, std::nullopt};
    if (value) {
      if (const auto known = parse_unit(all.substr(unit))) return NumberAndUnit{*value, known};
      findings_->error(place(), message("'", all.substr(unit), "' is no unit that is known"));
      return std::nullopt;
    }
  }
  findings_->error(place(), is_scalar() ? message("'", text(), "' is not a number") : "a number is due here");
  return std::nullopt;
}

std::optional<double> Value::number() const {
  const auto read = number_and_unit();
  if (!read) return std::nullopt;
  if (!read->unit) return static_cast<double>(read->value);
  findings_->error(place(), "no unit is due here");
  return std::nullopt;
}

std::optional<double> Value::quantity(const Unit& usual, const Unit& wanted) const {
  const auto read = number_and_unit();
  if (!read) return std::nullopt;
  const Unit& unit = read->unit ? *read->unit : usual;
  if (unit.dimensions == wanted.dimensions) return converted(read->value, unit, wanted);
  findings_->error(place(), message("the unit of '", text(), "' is of another quantity than is due here"));
  return std::nullopt;
}

std::optional<double> Value::energy() const {
  const auto read = number_and_unit();
  if (!read) return std::nullopt;
  const auto value = activation_energy(read->value, read->unit ? *read->unit : units_.activation_energy);
  if (!value) findings_->error(place(), message("the unit of '", text(), "' is no energy"));
  return value;
}

void Value::set_units(const YAML::Node& units) {
  const Value given(units, file_, {}, *findings_);
  for (const Member& member : given.members()) {
    Unit* const unit = units_.find(member.name);
    const auto value = member.value.is_scalar() ? parse_unit(member.value.text()) : std::nullopt;
    const bool is_activation = unit == &units_.activation_energy;
    const auto is_of_kind = [&] {
      return is_activation ? activation_energy(1, *value).has_value() : value->dimensions == unit->dimensions;
    };
    if (unit == nullptr) {
      findings_->error(member.place, message("'", member.name, "' has no unit to be set"));
    } else if (!value) {
      findings_->error(member.value.place(), "this is no unit that is known");
    } else if (!is_of_kind()) {
      findings_->error(member.value.place(),
                       message("'", member.value.text(), "' is no unit of ", member.name));
    } else {
      *unit = *value;
      if (is_activation) units_.activation_energy_given = true;
    }
  }
  if (!units_.activation_energy_given) units_.activation_energy = units_.energy / units_.quantity;
}

Value YamlFiles::open(const std::string& path, const Place& named) {
  const auto [known, first] = roots_.try_emplace(path);
  Value& root = known->second;
  if (!first) return root;
  const Input* file = nullptr;
  try {
    file = &sources_.open(path);
    const std::vector<YAML::Node> documents = YAML::LoadAll(file->text);
    if (documents.size() == 1 && documents.front().IsMap()) {
      root = Value(documents.front(), file, {}, findings_);
      root.members();  // of which none comes twice
    } else {
      findings_.error({file}, "the file is no mapping of sections");
    }
  } catch (const YAML::DeepRecursion& error) {
    findings_.error(place_of_mark(file, error.mark), "this is nested too deeply");
  } catch (const YAML::Exception& error) {
    findings_.error(place_of_mark(file, error.mark), message("this is no YAML: ", error.msg));
  } catch (const std::runtime_error& error) {
    if (named.unit == nullptr) throw;
    findings_.error(named, error.what(),
                    "it is looked for beside the file that names it, and in the directories of --include");
  }
  incomplete_ = incomplete_ || !root;
  return root;
}

std::string YamlFiles::find(const std::string& name, const Value& from) const {
  const auto beside = std::filesystem::path(from.file()->name).parent_path() / name;
  std::error_code ignored;
  if (std::filesystem::exists(beside, ignored)) return beside.string();
  for (const std::string& directory : directories_) {
    const auto other = std::filesystem::path(directory) / name;
    if (std::filesystem::exists(other, ignored)) return other.string();
  }
  return beside.string();
}

Value YamlFiles::section(const std::string& name, const Value& from) {
  const std::size_t slash = name.rfind('/');
  const Value root = slash == std::string::npos ? open(from.file()->name)
                                                : open(find(name.substr(0, slash), from), from.place());
  if (!root) return {};
  const std::string key = slash == std::string::npos ? name : name.substr(slash + 1);
  Value section = root[key.c_str()];
  if (!section) {
    findings_.error(from.place(), message("there is no section '", key, "' in ", root.file()->name));
    incomplete_ = true;
  }
  return section;
}

}  // namespace varpre
