#include <algorithm>

#include "tools/import/completion.h"

namespace varpre {
namespace {

using Sides = std::pair<Names, Names>;

Names sorted(Names names) {
  std::sort(names.begin(), names.end());
  return names;
}

// Whether the only species on both sides of three names is a partner, which is taken out then.
std::optional<std::string> take_out_partner(Sides& sides) {
  auto& [educts, products] = sides;
  std::set<std::string> common;
  for (const std::string& name : educts) {
    if (std::count(products.begin(), products.end(), name) > 0) common.insert(name);
  }
  if (common.size() != 1 || (educts.size() != 3 && products.size() != 3)) return std::nullopt;
  for (Names* const names : {&educts, &products})
    names->erase(std::find(names->begin(), names->end(), *common.begin()));
  return *common.begin();
}

double efficiency(const Efficiencies& efficiencies, const std::string& species) {
  const auto found = efficiencies.named.find(species);
  return found == efficiencies.named.end() ? efficiencies.usual : found->second;
}

}  // namespace

void compare_named_partners(std::string_view action, Import& import) {
  if (action == "mark-duplicate") return;
  auto& reactions = import.mechanism.gas_reactions;
  std::map<Sides, std::vector<ImportedReaction*>> with_partner;
  for (ImportedReaction& reaction : reactions) {
    if (!reaction.efficiencies || reaction.low_pressure) continue;
    with_partner[{sorted(reaction.educts), sorted(reaction.products)}].push_back(&reaction);
  }
  for (ImportedReaction& reaction : reactions) {
    Sides sides{sorted(reaction.educts), sorted(reaction.products)};
    const auto species = reaction.efficiencies ? std::nullopt : take_out_partner(sides);
    const auto others = species ? with_partner.find(sides) : with_partner.end();
    if (others == with_partner.end()) continue;
    for (ImportedReaction* const other : others->second) {
      if (efficiency(*other->efficiencies, *species) == 0 || (reaction.duplicate && other->duplicate))
        continue;
      if (action == "modify-efficiency") {
        other->efficiencies->named[*species] = 0;
      } else {
        import.findings.report(
            action == "error" ? Findings::Severity::error : Findings::Severity::warning, reaction.place,
            message("the collisions with ", *species, " count twice: here, and in ", other->equation),
            "explicit-third-body-duplicates in the phase says what is meant", Findings::Site::current());
      }
    }
  }
}

}  // namespace varpre
