#include "tools/diff/comparison.h"

#include <algorithm>

#include "tools/diff/matching.h"

namespace varpre {

Comparison compare(const StoreData& before, const StoreData& after, double tolerance) {
  Comparing comparing{before,
                      after,
                      match(names_of(before.gas.names), names_of(after.gas.names)),
                      match(names_of(before.surface.names), names_of(after.surface.names)),
                      {},
                      {},
                      {},
                      {}};
  compare_species(comparing);
  compare_reactions(comparing);
  compare_conditions(comparing);
  auto& differences = comparing.differences;
  std::erase_if(differences,
                [&](const Difference& d) { return d.effect.size <= tolerance && tolerance > 0; });
  std::stable_sort(differences.begin(), differences.end(),
                   [](const Difference& a, const Difference& b) { return a.effect.size > b.effect.size; });
  return {std::move(differences), std::move(comparing.notes), std::move(comparing.gas_reactions),
          std::move(comparing.surface_reactions)};
}

}  // namespace varpre
