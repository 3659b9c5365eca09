#include "mechanism/reaction.h"

#include "textio/findings/findings.h"

namespace varpre {
namespace {

std::vector<SpeciesName> with_partners(std::span<const SpeciesName> SYMB) {
  std::vector<SpeciesName> names(SYMB.begin(), SYMB.end());
  for (const std::string_view partner : MCOLLI) names.emplace_back(partner);
  return names;
}

}  // namespace

ReactionNames::ReactionNames(std::span<const SpeciesName> SYMB)
    : NS_(count_of(SYMB)), names_(with_partners(SYMB)), index_(names_) {}

int last_of_name(std::span<const SpeciesName> species, const SpeciesName& name) {
  int number = count_of(species);
  while (number > 0 && !same_word(at(species, number).view(), name.view())) --number;
  return number;
}

void report_unknown_name(const Place& record, const SpeciesName& name, std::span<const SpeciesName> known,
                         std::string_view where, Findings& findings) {
  findings.error(locate(record, name.view()), message("unknown species '", name, "'", where),
                 Nearest(name.view()).offer_all(known).help());
}

}  // namespace varpre
