#include "tools/import/transport_file.h"

#include <array>
#include <cmath>

namespace varpre {
namespace {

constexpr std::size_t numbers_of_a_line = 6;

// A comment of MOLNEW, or the mark at its end.
bool is_comment(std::string_view word) {
  return word.starts_with("----") || word.starts_with("****");
}

// Whether the third word of a line is the molar mass of the species, as in MOLNEW.
bool holds_molar_mass(const std::vector<Word>& words, const ImportedSpecies& species) {
  const double mass = molar_mass(species);
  const auto value = words.size() == numbers_of_a_line + 2 ? chemkin_number(words[2].text) : std::nullopt;
  constexpr double tolerance = 0.005;
  return value && std::abs(static_cast<double>(*value) - mass) < tolerance * mass;
}

}  // namespace

void TransportLines::add(const ChemkinSection& section) {
  for (const ChemkinLine& line : section.lines) {
    const Word name = words_of(line.text).front();
    if (is_comment(name.text)) continue;
    const auto [entry, first] = lines_.add(std::string(name.text), {line, {}});
    if (!first) entry.repeated.push_back(line.place(name));
  }
}

std::optional<ImportedMolecule> TransportLines::read(const ImportedSpecies& species,
                                                     Findings& findings) const {
  const auto& [line, repeated] = *lines_.find(species.name);
  for (const Place& place : repeated) {
    findings.warning(place, message("this line of ", species.name, " is not read: the first one counts"));
  }
  std::vector<Word> words = words_of(line.text);
  if (holds_molar_mass(words, species)) words.erase(words.begin() + 2);
  if (words.size() <= numbers_of_a_line) {
    findings.error(line.place(),
                   message("the transport data of ", species.name, " are six numbers, not ",
                           static_cast<int>(words.size()) - 1),
                   "geometry, well depth, diameter, dipole moment, polarizability, collision number");
    return std::nullopt;
  }
  const auto place_of = [&line = line](const Word& word) { return line.place(word); };
  std::array<double, numbers_of_a_line> values{};
  for (std::size_t i = 0; i < values.size(); ++i) {
    const auto value = chemkin_number(words[i + 1].text);
    if (!value) {
      findings.error(place_of(words[i + 1]), message("'", words[i + 1].text, "' is not a number"));
      return std::nullopt;
    }
    values[i] = static_cast<double>(*value);
  }
  if (values[0] != 0 && values[0] != 1 && values[0] != 2) {
    findings.error(place_of(words[1]), message("'", words[1].text, "' is no geometry"),
                   "0 for an atom, 1 for a linear molecule, 2 for others");
    return std::nullopt;
  }
  if (words.size() > numbers_of_a_line + 1) {
    findings.warning(place_of(words[numbers_of_a_line + 1]),
                     message("what stands behind the six numbers of ", species.name, " is not read"));
  }
  return ImportedMolecule{static_cast<int>(values[0]), values[1], values[2], values[3], values[4], values[5]};
}

void settle_transport(const Molecules& molecules, const Place& file, Import& import) {
  if (import.options.without_transport) return;
  std::vector<std::string> missing;
  auto& gas = import.mechanism.gas;
  for (ImportedSpecies& species : gas) {
    if (species.molecule) continue;
    const auto found = molecules.by_name.find(in_capitals(species.name));
    if (found != molecules.by_name.end()) {
      species.molecule = found->second;
    } else if (molecules.lines.has(species.name)) {
      species.molecule = molecules.lines.read(species, import.findings);
    } else {
      missing.push_back(species.name);
    }
    if (!species.molecule) import.known[species.name].fate = KnownSpecies::Fate::left_out;
  }
  std::erase_if(gas, [](const ImportedSpecies& species) { return !species.molecule; });
  for (std::size_t i = 0; i < gas.size(); ++i) import.known[gas[i].name].index = i;
  if (missing.empty()) return;
  import.refuse(
      file, message(static_cast<int>(missing.size()), " species without transport data"),
      message(list_of(missing)),
      "--transport names a file that has them; --without-transport takes none, and MOLNEW is yours then");
}

}  // namespace varpre
