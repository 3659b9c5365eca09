#pragma once

#include <array>
#include <string>
#include <string_view>

#include "textio/record/format.h"

// How the entries of the databases are laid out, and what their fields are called.
namespace varpre {

// What findings about an entry need: the columns of its name, and the names of its fields by their number.
struct DatabaseLayout {
  int name_width;
  std::string (*field_name)(int number);
};

// THERMO: four records an entry. Name; four elements with their atom counts; lower limit, upper limit and
// switch temperature, K; the coefficients a1..a7 of the upper range, then those of the lower range.
inline constexpr FormatText thermo_entry{"(A16,8X,4(A2,I3),2X,2E10.0,E8.0/,5E15.8,/,5E15.8,/,4E15.8)"};
std::string thermo_field(int number);
inline constexpr DatabaseLayout thermo_layout{field_columns(Format<thermo_entry>::view, 1).width,
                                              thermo_field};

// MOLNEW: one record an entry.
inline constexpr FormatText molecule_entry{"(A8,I2,6F10.3)"};
enum class MoleculeField {
  name,
  geometry,         // 0 atom, 1 linear, 2 non-linear
  molar_mass,       // g/mol
  well_depth,       // K
  diameter,         // angstrom
  dipole_moment,    // debye
  polarizability,   // cubic angstrom
  collision_number  // at 298 K
};
inline constexpr std::array<std::string_view, 8> molecule_fields{
    "name",     "geometry index", "molar mass",     "well depth",
    "diameter", "dipole moment",  "polarizability", "rotational collision number"};
constexpr FieldColumns columns_of(MoleculeField field) {
  return field_columns(Format<molecule_entry>::view, static_cast<int>(field) + 1);
}
// What messages call a field: "the well depth".
std::string molecule_field(MoleculeField field);
std::string molecule_field(int number);
inline constexpr DatabaseLayout molecule_layout{columns_of(MoleculeField::name).width, molecule_field};

// THERMLIQ: a name, then the values of the particle species.
inline constexpr FormatText particle_name{"(A8)"};
inline constexpr FormatText particle_values{"(6(1PE11.4,1X))"};
inline constexpr int particle_value_count = 24;

}  // namespace varpre
