#include "tools/import/yaml_value.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <set>
#include <stdexcept>

namespace varpre {
namespace {

// A text as messages show it.
std::string quoted(const std::string& text) {
  constexpr std::size_t longest = 60;
  return message("'", text.size() > longest ? text.substr(0, longest) + "..." : text, "'");
}

}  // namespace

Value::Value(const YamlNode* node, Findings& findings)
    : node_(node), units_(std::make_shared<UnitSystem>()), findings_(&findings) {
  if (node == nullptr) return;
  if (const YamlNode* const given = node->member("units")) set_units(*given);
}

Value Value::inner(const YamlNode& node) const {
  Value value = *this;
  value.node_ = &node;
  if (const YamlNode* const given = node.member("units")) value.set_units(*given);
  return value;
}

Value Value::operator[](const char* key) const {
  const YamlNode* const found = is_map() ? node_->member(key) : nullptr;
  return found == nullptr ? Value() : inner(*found);
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
  for (const YamlNode* const item : node_->items) {
    const YamlNode* const units = item->members.size() == 1 ? item->member("units") : nullptr;
    if (list.empty() && units != nullptr) {
      scope.set_units(*units);
    } else {
      list.push_back(scope.inner(*item));
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
  std::set<std::string_view> seen;
  for (const auto& [name, value] : node_->members) {
    if (name->kind != YamlNode::Kind::scalar) {
      findings_->error(name->place, "a name is due here");
      continue;
    }
    if (!seen.insert(name->text).second)
      findings_->error(name->place, message(quoted(name->text), " is given twice"));
    list.push_back({name->text, name->place, inner(*value)});
  }
  return list;
}

void Value::check_names(std::initializer_list<const char*> known) const {
  for (const Member& member : members()) {
    const auto is_name = [&](const auto& name) { return member.name == name; };
    if (member.name == "units" || std::any_of(known.begin(), known.end(), is_name)) continue;
    findings_->warning(member.place, message(quoted(member.name), " is not known here and was not read"),
                       [&] {
                         return Nearest(member.name)
                             .offer_all(std::vector<std::string_view>(known.begin(), known.end()))
                             .help();
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
  constexpr std::array<std::array<std::string_view, 3>, 4> yes_or_no{
      {{"true", "True", "TRUE"}, {"yes", "Yes", "YES"}, {"false", "False", "FALSE"}, {"no", "No", "NO"}}};
  for (std::size_t i = 0; is_scalar() && i < yes_or_no.size(); ++i) {
    const auto& words = yes_or_no[i];
    if (std::find(words.begin(), words.end(), text()) != words.end()) return i < 2;
  }
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
      findings_->error(place(), message(quoted(std::string(all.substr(unit))), " is no unit that is known"));
      return std::nullopt;
    }
  }
  findings_->error(place(),
                   is_scalar() ? message(quoted(text()), " is not a number") : "a number is due here");
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
  if (unit.dimensions == wanted.dimensions) {
    const double value = converted(read->value, unit, wanted);
    if (std::isfinite(value)) return value;
    findings_->error(place(), message(quoted(text()), " is too large in the units of the input files"));
    return std::nullopt;
  }
  findings_->error(place(),
                   message("the unit of ", quoted(text()), " is of another quantity than is due here"));
  return std::nullopt;
}

std::optional<double> Value::energy() const {
  const auto read = number_and_unit();
  if (!read) return std::nullopt;
  const auto value = activation_energy(read->value, read->unit ? *read->unit : units_->activation_energy);
  if (!value) findings_->error(place(), message("the unit of ", quoted(text()), " is no energy"));
  return value;
}

void Value::set_units(const YamlNode& units) {
  Value given;
  given.node_ = &units;
  given.units_ = units_;
  given.findings_ = findings_;
  auto changed = std::make_shared<UnitSystem>(*units_);
  for (const Member& member : given.members()) {
    Unit* const unit = changed->find(member.name);
    const auto value = member.value.is_scalar() ? parse_unit(member.value.text()) : std::nullopt;
    const bool is_activation = unit == &changed->activation_energy;
    const auto is_of_kind = [&] {
      return is_activation ? activation_energy(1, *value).has_value() : value->dimensions == unit->dimensions;
    };
    if (unit == nullptr) {
      findings_->error(member.place, message(quoted(member.name), " has no unit to be set"));
    } else if (!value) {
      findings_->error(member.value.place(), "this is no unit that is known");
    } else if (!is_of_kind()) {
      findings_->error(member.value.place(),
                       message(quoted(member.value.text()), " is no unit of ", member.name));
    } else {
      *unit = *value;
      if (is_activation) changed->activation_energy_given = true;
    }
  }
  if (!changed->activation_energy_given) changed->activation_energy = changed->energy / changed->quantity;
  units_ = std::move(changed);
}

Value YamlFiles::open(const std::string& path, const Place& named) {
  const auto [known, first] = yaml_.try_emplace(path);
  File& yaml = known->second;
  if (!first) return yaml.root;
  try {
    yaml.tree = read_yaml_tree(sources_.open(path), findings_);
    yaml.root = Value(yaml.tree.root, findings_);
    if (yaml.root) yaml.root.members();  // of which none comes twice
  } catch (const std::runtime_error& error) {
    if (named.unit == nullptr) throw;
    findings_.error(named, error.what(),
                    "it is looked for beside the file that names it, and in the directories of --include");
  }
  incomplete_ = incomplete_ || !yaml.root;
  return yaml.root;
}

std::string YamlFiles::find(const std::string& name, const Value& from) const {
  const auto beside = (std::filesystem::path(from.file()->name).parent_path() / name).lexically_normal();
  std::error_code ignored;
  if (std::filesystem::exists(beside, ignored)) return beside.string();
  for (const std::string& directory : directories_) {
    const auto other = (std::filesystem::path(directory) / name).lexically_normal();
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

const std::map<std::string, double>& YamlFiles::atomic_weights(const std::string& path) {
  File& file = yaml_[path];
  if (file.atomic_weights) return *file.atomic_weights;
  auto& weights = file.atomic_weights.emplace();
  for (const Value& element : file.root["elements"].items()) {
    const auto symbol = element["symbol"].string();
    const auto weight = element["atomic-weight"].number();
    if (symbol && weight) weights[*symbol] = *weight;
  }
  return weights;
}

}  // namespace varpre
