#include "files/databases.h"

#include "textio/findings/findings.h"

namespace varpre {

std::string thermo_field(int number) {
  if (number < 10) return message("the atom count of element ", (number - 1) / 2);
  constexpr std::array limits{"the lower temperature limit", "the upper temperature limit",
                              "the switch temperature"};
  if (number < 13) return limits[static_cast<std::size_t>(number - 10)];
  return message("a", (number - 13) % 7 + 1, number < 20 ? " of the upper range" : " of the lower range");
}

std::string molecule_field(MoleculeField field) {
  return message("the ", molecule_fields[static_cast<std::size_t>(field)]);
}

std::string molecule_field(int number) {
  return molecule_field(static_cast<MoleculeField>(number - 1));
}

}  // namespace varpre
