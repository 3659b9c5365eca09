#pragma once

#include <map>
#include <string>
#include <vector>

#include "tools/import/imported_mechanism.h"

namespace varpre {

// A collision partner and the efficiencies that its definition names.
struct Partner {
  std::string name;
  std::vector<std::pair<std::string, double>> efficiencies;
};

// The collision partners of a mechanism: reactions with the same efficiencies share one; M is the one that
// every species is with 1.
class Partners {
 public:
  // Reports the reaction for which no name is left.
  Partners(const ImportedMechanism& mechanism, Findings& findings);

  // "M'"
  std::string name_of(const Efficiencies& efficiencies) const;
  // Those that need a definition, in the order in which they occur.
  const std::vector<Partner>& all() const { return all_; }
  // The efficiency, 0 or 1, of species that a definition does not name.
  double usual() const { return usual_; }

 private:
  using Row = std::vector<double>;  // of the gas species
  Row row_of(const Efficiencies& efficiencies) const;

  const ImportedMechanism& mechanism_;
  std::map<Row, int> numbers_;
  std::vector<Partner> all_;
  double usual_ = 1;
};

}  // namespace varpre
