#include "tools/import/imported_mechanism.h"

#include "thermo/elements.h"

namespace varpre {

double molar_mass(const ImportedSpecies& species) {
  double mass = 0;
  for (const auto& [symbol, count] : species.atoms) mass += 1000 * count * element_mass(symbol);
  return mass;
}

}  // namespace varpre
