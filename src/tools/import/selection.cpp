#include "tools/import/selection.h"

#include <map>

#include "tools/import/import.h"

namespace varpre {

std::vector<Selection> read_selections(const Value& list, const char* own_section) {
  if (!list) return {};
  if (list.is_scalar()) return {{own_section, list, {}, list.text()}};
  std::vector<Selection> selections;
  for (const Value& item : list.items()) {
    if (item.is_scalar()) {
      if (selections.empty() || !selections.back().rule.empty() || selections.back().section != own_section) {
        selections.push_back({own_section, item, {}, {}});
      }
      selections.back().names.push_back(item);
      continue;
    }
    for (const auto& [section, place, value] : item.members()) {
      const bool rule = value.is_scalar();
      selections.push_back(
          {section, item, rule ? std::vector<Value>() : value.items(), rule ? value.text() : ""});
    }
  }
  return selections;
}

std::vector<Selection> read_reaction_selections(const Value& list, const Value& phase) {
  if (list && list.is_scalar()) return {{"reactions", list, {}, list.text()}};
  std::vector<Selection> selections;
  if (!list) selections.push_back({"reactions", phase, {}, "all"});
  for (const Value& item : list.items()) {
    if (item.is_scalar()) {
      selections.push_back({item.text(), item, {}, "all"});
      continue;
    }
    for (const auto& [section, place, value] : item.members()) {
      selections.push_back({section, item, {}, value.string().value_or("")});
    }
  }
  return selections;
}

std::vector<Value> selected_species(const Selection& selection, YamlFiles& files) {
  Findings& findings = selection.where.findings();
  std::vector<Value> all = files.section(selection.section, selection.where).items();
  if (selection.rule == "all") return all;
  std::vector<Value> chosen;
  if (!selection.rule.empty()) {
    findings.error(selection.where.place(), message("'", selection.rule, "' is no choice of species"),
                   "all, or a list of names");
    return chosen;
  }
  std::map<std::string, const Value*> by_name;
  std::vector<std::string> names;
  for (const Value& entry : all) {
    names.push_back(entry["name"].string().value_or(""));
    if (!by_name.emplace(names.back(), &entry).second) {
      findings.error(entry.place(), message("species ", names.back(), " is defined twice in this section"));
    }
  }
  for (const Value& name : selection.names) {
    const auto found = by_name.find(name.string().value_or(""));
    if (found != by_name.end()) {
      chosen.push_back(*found->second);
    } else if (!all.empty()) {
      findings.error(name.place(),
                     message("there is no species '", name.string().value_or(""), "' in the section '",
                             selection.section, "'"),
                     findings.errors() > most_helped
                         ? std::string()
                         : Nearest(name.string().value_or("")).offer_all(names).help());
    }
  }
  return chosen;
}

}  // namespace varpre
