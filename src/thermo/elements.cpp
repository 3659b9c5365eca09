#include "thermo/elements.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "files/store_records.h"
#include "textio/channel/statement.h"
#include "textio/record/numbered.h"

namespace varpre {
namespace {

struct TableElement {
  std::string_view SATOM;
  double XATOM;  // kg/mol
};

// The order fixes the order of every element list.
constexpr std::array<TableElement, 23> element_table{{
    {"H ", 0.0010079}, {"C ", 0.012011}, {"O ", 0.0159994}, {"N ", 0.0140067}, {"HE", 0.0040026},
    {"NE", 0.0201179}, {"AR", 0.039948}, {"KR", 0.0838},    {"XE", 0.13129},   {"F ", 0.0189984},
    {"NA", 0.0229898}, {"MG", 0.024305}, {"AL", 0.0269815}, {"SI", 0.0280855}, {"P ", 0.0309738},
    {"S ", 0.03206},   {"CL", 0.035453}, {"K ", 0.0390983}, {"CA", 0.04008},   {"BR", 0.079904},
    {"I ", 0.126905},  {"Pt", 0.19509},  {"YY", 1.0},
}};

bool is_present(std::string_view symbol, std::span<const ElementFields> species) {
  return std::any_of(species.begin(), species.end(), [&](const ElementFields& fields) {
    return std::any_of(fields.ELSYM.begin(), fields.ELSYM.end(),
                       [&](const ElementSymbol& field) { return same_word(field.view(), symbol); });
  });
}

void report_elements(const std::vector<TableElement>& present, const Place& list, Findings& findings) {
  std::string symbols;
  for (const TableElement& element : present) symbols.append(" ").append(trimmed(element.SATOM));
  findings.error(list, message("the species of this list are made of ", count_of(present), " elements"),
                 message("at most ", NEMAX, " elements may occur; these do:", symbols));
}

// Fills the element list; false when there are more than NEMAX.
bool find_elements(const SpeciesView& species, Elements& elements, Listing& MSGFIL) {
  std::vector<TableElement> present;
  std::copy_if(element_table.begin(), element_table.end(), std::back_inserter(present),
               [&](const TableElement& element) { return is_present(element.SATOM, species.elements); });
  const int NE = static_cast<int>(present.size());
  if (NE > NEMAX) {
    write<"('0','ERROR: number of elements (',I2,') > NEMAX (',I2,')')">(MSGFIL, NE, NEMAX);
    if (species.listed.front()) report_elements(present, species.listed.front(), MSGFIL.findings);
    return false;
  }
  elements.NE = NE;
  for (std::size_t e = 0; e < present.size(); ++e) {
    elements.SYME[e] = present[e].SATOM;
    elements.EMOL[e] = present[e].XATOM;
  }
  return true;
}

// Fills the atom counts of species i; false at a symbol that is no element.
bool count_atoms(const SpeciesView& species, std::size_t i, Elements& elements, Listing& MSGFIL) {
  const ElementFields& fields = species.elements[i];
  elements.NCOMP[i].fill(0);
  elements.XE[i].fill(0.0);
  const auto symbols = first(elements.SYME, elements.NE);
  for (std::size_t j = 0; j < fields.ELSYM.size(); ++j) {
    const ElementSymbol& symbol = fields.ELSYM[j];
    if (is_empty_field(symbol)) continue;
    const auto found = std::find_if(symbols.begin(), symbols.end(), [&](const ElementSymbol& element) {
      return same_word(element.view(), symbol.view());
    });
    if (found == symbols.end()) {
      write<"('0','ERROR: element ',A2,' not found in elements list')">(MSGFIL, symbol);
      Place field = species.fit[i].entry;
      field.column = 25 + 5 * static_cast<int>(j);
      field.width = 2;
      const Place& place = field ? field : species.listed[i];
      MSGFIL.findings.error(
          place, message("'", symbol, "' is not an element that is known here"),
          "columns 25-44 hold up to four elements, a symbol (2 columns) and a count (3 columns) each");
      return false;
    }
    elements.NCOMP[i].begin()[found - symbols.begin()] = fields.ELCNT[j];
  }
  return true;
}

// Molar mass of species i, and its element mass fractions.
double molar_mass(std::size_t i, Elements& elements) {
  const int NE = elements.NE;
  const auto& NCOMP = elements.NCOMP[i];
  double XMOL = 0;
  for (int e = 1; e <= NE; ++e) XMOL += at(NCOMP, e) * at(elements.EMOL, e);
  for (int e = 1; e <= NE; ++e) at(elements.XE[i], e) = at(NCOMP, e) * at(elements.EMOL, e) / XMOL;
  return XMOL;
}

void warn_of_no_elements(const SpeciesView& species, std::size_t i, Findings& findings) {
  if (!species.fit[i].entry || !species.listed[i]) return;  // what is wrong with it was reported
  Place fields = species.fit[i].entry;
  fields.column = 25;
  fields.width = 20;
  findings.warning(
      fields, message("species '", species.SYMB[i], "' consists of no element: its molar mass is 0"),
      "columns 25-44 hold up to four elements, a symbol (2 columns) and a count (3 columns) each");
}

}  // namespace

double element_mass(std::string_view symbol) {
  const auto* const found =
      std::find_if(element_table.begin(), element_table.end(),
                   [&](const TableElement& element) { return same_word(element.SATOM, symbol); });
  return found == element_table.end() ? 0.0 : found->XATOM;
}

std::string atoms_spelt_by(std::string_view text) {
  constexpr std::size_t most = 200;
  std::string atoms;
  while (!text.empty() && atoms.size() < most) {
    const bool two =
        text.size() > 1 && element_mass(text.substr(0, 2)) > 0 && text[1] >= 'a' && text[1] <= 'z';
    if (!two && element_mass(text.substr(0, 1)) == 0) return {};
    const std::string_view symbol = text.substr(0, two ? 2 : 1);
    text.remove_prefix(symbol.size());
    const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
    const std::size_t count =
        digits == 0 ? 1 : static_cast<std::size_t>(read_integer(text.substr(0, digits)).value_or(0));
    for (std::size_t k = 0; k < std::min(count, most); ++k) atoms += symbol;
    text.remove_prefix(digits);
  }
  std::sort(atoms.begin(), atoms.end());
  return atoms;
}

double mass_spelt_by(std::string_view text) {
  const std::size_t end = text.find('(');
  text = text.substr(0, end);
  if (const double single = element_mass(text); single > 0) return single;
  double mass = 0;
  const std::string atoms = atoms_spelt_by(text);
  for (char symbol : atoms) {
    symbol = upper(symbol);
    if (symbol < 'A' || symbol > 'Z') return 0;
    mass += element_mass(std::string_view(&symbol, 1));
  }
  return mass;
}

bool is_empty_field(const ElementSymbol& symbol) {
  return symbol.blank() || symbol.view() == "0 " || symbol.view() == "00";
}

bool ELECOM(const SpeciesPlaces& species, Elements& elements, Listing& MSGFIL) {
  if (!find_elements(species, elements, MSGFIL)) return false;
  for (std::size_t i = 0; i < species.SYMB.size(); ++i) {
    if (!count_atoms(species, i, elements, MSGFIL)) return false;
    const auto& atoms = elements.NCOMP[i];
    if (std::any_of(atoms.begin(), atoms.end(), [](int count) { return count != 0; })) {
      species.XMOL[i] = molar_mass(i, elements);
    } else {
      write<
          "(' ','Warning: No element composition defined for species', ' no.',I4,'.',/,"
          "' This will cause the element vectors', ' and the molar mass to become 0')">(
          MSGFIL, static_cast<int>(i) + 1);
      warn_of_no_elements(species, i, MSGFIL.findings);
      species.XMOL[i] = 0.0;
    }
  }
  return true;
}

void INIMOI(const SpeciesView& species, const Elements& elements, StoreFile& NFISTO) {
  write<store_records::species_count>(NFISTO, species.size());
  write<store_records::element_count>(NFISTO, elements.NE);
  if (species.size() == 0) return;
  const int NE = elements.NE;
  std::vector<double> XE;
  for (int i = 1; i <= species.size(); ++i) {
    XE.insert(XE.end(), at(elements.XE, i).begin(), at(elements.XE, i).begin() + NE);
  }
  write<store_records::species_names>(NFISTO, species.SYMB);
  write<store_records::molar_masses>(NFISTO, species.XMOL);
  write<store_records::element_symbols>(NFISTO, first(elements.SYME, NE));
  write<store_records::element_masses>(NFISTO, first(elements.EMOL, NE));
  write<store_records::mass_fractions>(NFISTO, std::span<const double>(XE));
}

}  // namespace varpre
