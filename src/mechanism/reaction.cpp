#include "mechanism/reaction.h"

namespace varpre {
namespace {

std::vector<SpeciesName> with_partners(std::span<const SpeciesName> SYMB) {
  std::vector<SpeciesName> names(SYMB.begin(), SYMB.end());
  for (const std::string_view partner : MCOLLI) names.emplace_back(partner);
  return names;
}

}  // namespace

ReactionNames::ReactionNames(std::span<const SpeciesName> SYMB)
    : NS_(static_cast<int>(SYMB.size())), names_(with_partners(SYMB)), index_(names_) {}

}  // namespace varpre
