#pragma once

#include <map>
#include <string>
#include <vector>

#include "tools/import/imported_mechanism.h"

namespace varpre {

// The efficiency of each gas species.
using EfficiencyRow = std::vector<double>;
EfficiencyRow efficiency_row(const Efficiencies& efficiencies, const std::vector<ImportedSpecies>& gas);

// A collision partner and the efficiencies that its definition names.
struct Partner {
  std::string name;
  std::vector<std::pair<std::string, double>> efficiencies;
};

// The collision partners of a mechanism: reactions with the same efficiencies share one; M is the one that
// every species is with 1.
class Partners {
 public:
  explicit Partners(const ImportedMechanism& mechanism);

  // "M'"
  std::string name_of(const Efficiencies& efficiencies) const;
  // Those that need a definition, in the order in which they occur.
  const std::vector<Partner>& all() const { return all_; }
  // The efficiency, 0 or 1, of species that a definition does not name.
  double usual() const { return usual_; }

 private:
  const ImportedMechanism& mechanism_;
  std::map<EfficiencyRow, int> numbers_;
  std::vector<Partner> all_;
  double usual_ = 1;
};

}  // namespace varpre
