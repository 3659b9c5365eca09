#pragma once

#include <array>
#include <string>
#include <string_view>

#include "textio/channel/store_file.h"
#include "textio/findings/listing.h"
#include "thermo/species.h"

namespace varpre {

// The elements of one phase and what its species consist of.
struct Elements {
  int NE = 0;                                         // elements present
  std::array<ElementSymbol, NEMAX> SYME;              // in the order of the built-in table
  std::array<double, NEMAX> EMOL{};                   // molar masses, kg/mol
  std::array<std::array<int, NEMAX>, NSMAX> NCOMP{};  // atoms of each element in each species
  std::array<std::array<double, NEMAX>, NSMAX> XE{};  // mass fraction of each element in each species
};

// Molar mass of an element of the built-in table, in any letter case, kg/mol; 0 when it is not there.
double element_mass(std::string_view symbol);

// The atoms that a text of symbols and counts spells, as sorted symbols: "H2O" is "HHO". Empty when it is
// none.
std::string atoms_spelt_by(std::string_view text);
// Their mass, kg/mol, up to a parenthesis; 0 when it spells none, or an element of two letters that does not
// stand alone.
double mass_spelt_by(std::string_view text);

// Whether an element field of a database entry holds no element: blanks, "0 " or "00".
bool is_empty_field(const ElementSymbol& symbol);

// Finds the elements of a phase from the element fields of its species and fills `elements` and the molar
// masses XMOL (kg/mol): XMOL(i) = sum NCOMP(i,e) EMOL(e), XE(i,e) = NCOMP(i,e) EMOL(e) / XMOL(i). A species
// without any atom gets a warning and XMOL = 0.
//
// False, after its message, with more than NEMAX elements or a symbol that the built-in table lacks; species
// after that one are left as they were.
[[nodiscard]] bool ELECOM(const SpeciesPlaces& species, Elements& elements, Listing& MSGFIL);

// Writes the molar data block of a phase to the store file: counts, names, molar masses, elements, mass
// fractions (species by species); only the two counts when the phase has no species.
void INIMOI(const SpeciesView& species, const Elements& elements, StoreFile& NFISTO);

}  // namespace varpre
