#include "tools/import/equal_reactions.h"

#include <algorithm>

namespace varpre {
namespace {

// The sides in one order, by which equal reactions are found.
std::string sides(const Names& left, const Names& right) {
  std::string text;
  for (Names names : {left, right}) {
    std::sort(names.begin(), names.end());
    for (const std::string& name : names) text.append(name).append(" ");
    text += '=';
  }
  return text;
}

}  // namespace

void EqualReactions::add(const ImportedReaction& reaction, bool reversible, const std::string& form,
                         Findings& findings) {
  const auto compare = [&](const std::string& other, bool forward) {
    const auto found = seen_.find(other);
    if (found == seen_.end()) return;
    for (const Seen& seen : found->second) {
      if ((seen.duplicate && reaction.duplicate) || (!forward && !seen.reversible && !reversible)) continue;
      findings.error(reaction.place, "the reaction, or its reverse, is in the file already",
                     message("the other one stands in line ", seen.place.unit->origin(seen.place.record).line,
                             "; if both are meant, DUPLICATE stands behind each"));
      return;
    }
  };
  const std::string forward = sides(reaction.educts, reaction.products) + form;
  const std::string backward = sides(reaction.products, reaction.educts) + form;
  compare(forward, true);
  if (backward != forward) compare(backward, false);
  auto& alike = seen_[forward];  // the first of each kind is enough
  const auto is_known = [&](const Seen& seen) {
    return seen.reversible == reversible && seen.duplicate == reaction.duplicate;
  };
  if (std::none_of(alike.begin(), alike.end(), is_known))
    alike.push_back({reaction.place, reversible, reaction.duplicate});
}

}  // namespace varpre
