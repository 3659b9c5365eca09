#include "transport/molecule_findings.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "textio/names/words.h"
#include "textio/record/number_format.h"
#include "thermo/elements.h"

namespace varpre {
namespace {

constexpr auto layout = [] {
  std::array<FieldColumns, molecule_fields.size()> fields;
  for (std::size_t k = 0; k < fields.size(); ++k) fields[k] = columns_of(static_cast<MoleculeField>(k));
  return fields;
}();
constexpr std::size_t geometry = 1;    // its place in the layout
constexpr std::size_t last_field = 7;  // that of the last field; behind it everything is a comment
constexpr int name_columns = layout[0].last();

std::string_view text_of(std::string_view line, const FieldColumns& field) {
  return columns(line, field.first, field.width);
}

// The field that a column of the line belongs to, counted from 0; one behind the last for a comment.
std::size_t field_at(int column) {
  const auto* const field = std::ranges::find_if(layout, [&](const auto& f) { return column <= f.last(); });
  return static_cast<std::size_t>(field - layout.begin());
}

bool is_number(std::string_view text) {
  return read_free_real(text).has_value();
}

// Whether each field behind the name holds one word at most, the first and the last one, and no word is cut.
bool in_columns(std::string_view line) {
  std::size_t last = 0;
  for (Word word = next_word(line, name_columns + 1); word.column > 0; word = next_word(line, word)) {
    const std::size_t field = field_at(word.column);
    if (field > last_field) return last == last_field;
    const bool in_order = last == 0 ? field == geometry : field > last;
    if (!in_order || field_at(word.last()) != field) return false;
    last = field;
  }
  return last == last_field;
}

// By how many columns all values, from the geometry index on, stand to the right of theirs; 0 when that is
// not what is wrong.
int shift_of(std::string_view line, const Word& index) {
  constexpr int place = name_columns + 2;
  const std::string moved =
      message(std::string(place - 1, ' '), line.substr(static_cast<std::size_t>(index.column) - 1));
  return in_columns(moved) ? index.column - place : 0;
}

// Tells which value stands beside its columns; empty when each that is read is whole.
std::string beside_columns(std::string_view line) {
  std::size_t last = 0;
  for (Word word = next_word(line, name_columns + 1); word.column > 0; word = next_word(line, word)) {
    const std::string_view text = word.text;
    const std::size_t field = field_at(word.column);
    const FieldColumns& columns = layout[std::min(field, last_field)];
    const std::string_view name = molecule_fields[std::min(field, last_field)];
    if (field > last_field) {
      if (last >= last_field || !is_number(text)) break;
      return message("'", text, "' stands behind the ", name, ", which is read as 0");
    }
    if (field == last) {
      const std::string_view both = text_of(line, columns);
      return message("the ", name, " is read from '", trimmed(both).substr(both.find_first_not_of(' ')),
                     "' as one number");
    }
    last = field_at(word.last());
    if (last != field && is_number(text)) {
      return message("'", text, "' is cut behind column ", columns.last(), ", the last of the ", name);
    }
  }
  // Atoms have nothing to say in the last columns.
  const bool complete =
      last >= last_field || text_of(line, layout[geometry]).find('0') != std::string_view::npos;
  return complete ? "" : message("it ends before the ", molecule_fields[last + 1], ", which is read as 0");
}

// What a species consists of, from the element fields of its thermochemical entry.
struct Atoms {
  int count = 0;
  int elements = 0;
  bool real = true;  // the made-up element YY stands for anything
};

Atoms atoms_of(const ElementFields& fields) {
  Atoms atoms;
  for (std::size_t k = 0; k < fields.ELSYM.size(); ++k) {
    if (is_empty_field(fields.ELSYM[k]) || fields.ELCNT[k] == 0) continue;
    atoms.count += fields.ELCNT[k];
    ++atoms.elements;
    if (same_word(fields.ELSYM[k].view(), "YY")) atoms.real = false;
  }
  return atoms;
}

// Two atoms lie on a line, more do not make an atom.
bool suits(int IGEOM, int atoms) {
  if (atoms <= 2) return IGEOM == atoms - 1;
  return IGEOM != 0;
}

// What molecules have, from atoms of helium to the largest of soot; 0 where nothing is known of one.
struct UsualValue {
  MoleculeField field;
  double Molecule::*value;
  double least, most;
  std::string_view unit;
};
constexpr std::array<UsualValue, 4> usual_values{
    {{MoleculeField::diameter, &Molecule::SIGMA, 1, 15, " angstrom"},
     {MoleculeField::dipole_moment, &Molecule::DI1, 0.01, 30, " debye"},
     {MoleculeField::polarizability, &Molecule::DI2, 0.05, 500, " cubic angstrom"},
     {MoleculeField::collision_number, &Molecule::DI3, 0.1, 1000, ""}}};

}  // namespace

Place place_of(const Molecule& molecule, MoleculeField field) {
  const auto [first, width] = columns_of(field);
  return {.unit = molecule.record.unit, .record = molecule.record.record, .column = first, .width = width};
}

std::string molecule_columns() {
  std::string text = "columns";
  for (std::size_t k = 0; k < layout.size(); ++k) {
    text += message(k == 0 ? " " : ", ", layout[k].first, "-", layout[k].last(), " ", molecule_fields[k]);
  }
  return text;
}

std::string foreign_layout(std::string_view line) {
  Word word = next_word(line);
  const std::string_view first = word.text;
  if (first.empty()) return {};
  if (first.starts_with('!') || first.starts_with('#') || first.starts_with("**") ||
      first.starts_with("--")) {
    return "it is a comment, and this file has none";
  }
  if (first == "-" || first.ends_with(':')) return "it is YAML";
  if (std::count(line.begin(), line.end(), ',') > 5) return "commas stand between its values";
  if (line.find_first_of("0123456789", static_cast<std::size_t>(word.last())) == std::string_view::npos)
    return "it holds no number";

  const Word index = next_word(line, word);
  if (index.text != "0" && index.text != "1" && index.text != "2") return {};
  int values = 0;
  for (word = next_word(line, index); word.column > 0 && is_number(word.text); word = next_word(line, word))
    ++values;
  if (values < 5) return {};
  if (line.find('\t') != std::string_view::npos) return "tabs stand between its values";
  if (values == 5) return "its values stand in free columns, without a molar mass";
  const int shift = shift_of(line, index);
  if (shift == 0) return "its values stand in free columns";
  return message("its values are shifted by ", std::abs(shift), shift > 0 ? " to the right" : " to the left");
}

std::string layout_fault(std::string_view line, bool mass_fits) {
  // With a blank between the geometry index and the molar mass, which stands left in its field.
  std::string apart;
  constexpr std::size_t index_end = name_columns + 2;
  if (mass_fits && line.size() > index_end && line[index_end] != ' ' && line[index_end - 2] == ' ') {
    apart = line;
    std::swap(apart[index_end - 2], apart[index_end - 1]);
    line = apart;
  }
  if (in_columns(line)) return {};
  const bool begins_right = !trimmed(text_of(line, layout[geometry])).empty();
  const std::string foreign = begins_right ? "" : foreign_layout(line);
  return foreign.empty() ? beside_columns(line) : foreign;
}

void warn_of_layout(Findings& findings, const Place& record, std::string_view line, std::string_view fault) {
  Place values = record;
  values.column = name_columns + 1;
  values.width = std::max(static_cast<int>(line.size()) - values.column + 1, 1);
  findings.warning(values, message("this record is misread: ", fault), molecule_columns());
}

void warn_of_values(Findings& findings, const SpeciesView& gas, std::size_t i, const Molecule& molecule) {
  const SpeciesName& name = gas.SYMB[i];
  const double M = 1000 * gas.XMOL[i];
  const Atoms atoms = atoms_of(gas.elements[i]);
  const bool known = atoms.real && atoms.count > 0;
  const bool geometry_exists = molecule.IGEOM >= 0 && molecule.IGEOM <= 2;
  constexpr double tolerated = 0.5;  // half an atom of hydrogen
  const bool other_atoms = M > 0 && molecule.XMDB != 0 && std::abs(molecule.XMDB - M) > tolerated;
  Place elements = gas.fit[i].entry;
  elements.column = 25;
  elements.width = 20;
  if (other_atoms && elements && !findings.is_told(elements) &&
      std::abs(molecule.XMDB - 1000 * mass_spelt_by(trimmed(name.view()))) <= tolerated) {
    findings.warning(
        elements,
        message("the elements of ", name, " have ", about(M), " g/mol; its name, and ",
                molecule.record.unit->origin(0).file, ", have ", about(molecule.XMDB)),
        "columns 25-44 hold up to four elements, a symbol (2 columns) and a count (3 columns) each");
  }
  if (findings.is_told(elements) && other_atoms) return;
  if (other_atoms) {
    findings.warning(
        place_of(molecule, MoleculeField::molar_mass),
        message("the molar mass of species '", name, "' is ", molecule.XMDB,
                " g/mol here, its elements have ", M, " g/mol"),
        "the fits take the latter; one of the two entries may be wrong, or that of another species");
  }
  if (known && !other_atoms && geometry_exists && !suits(molecule.IGEOM, atoms.count)) {
    findings.warning(
        place_of(molecule, MoleculeField::geometry),
        message("the geometry index ", molecule.IGEOM, " does not suit species '", name, "' of ",
                counted(atoms.count, "atom")),
        "0 is for atoms, 1 for linear molecules, as all of two atoms are, 2 for non-linear ones");
  }
  for (const auto& [field, value, least, most, unit] : usual_values) {
    const double x = molecule.*value;
    if (x == 0 || (x >= least && x <= most)) continue;
    if (other_atoms) {
      findings.follows(molecule.record, "unlikely value");
      continue;
    }
    findings.warning(place_of(molecule, field),
                     message(molecule_field(field), " of species '", name, "' is ", x, unit),
                     message("molecules have ", least, " to ", most, unit,
                             field == MoleculeField::diameter ? "" : ", or 0"));
  }
  const bool told = findings.is_told(molecule.record);
  if (known && !told && molecule.DI1 != 0 && atoms.elements == 1 && atoms.count <= 2) {
    findings.warning(place_of(molecule, MoleculeField::dipole_moment),
                     message("species '", name, "' has a dipole moment, but no two different atoms"),
                     "the polarizability stands in columns 51-60");
  }
}

}  // namespace varpre
