#include "tools/import/transport_file.h"

#include <algorithm>

#include "textio/record/number_format.h"
#include "tools/import/short_names.h"

namespace varpre {
namespace {

std::vector<std::string_view> words_of(std::string_view line) {
  std::vector<std::string_view> words;
  line = line.substr(0, line.find('!'));
  constexpr std::string_view blanks = " \t";
  while (true) {
    line.remove_prefix(std::min(line.find_first_not_of(blanks), line.size()));
    if (line.empty()) return words;
    words.push_back(line.substr(0, line.find_first_of(blanks)));
    line.remove_prefix(words.back().size());
  }
}

std::optional<ImportedMolecule> molecule_of(std::vector<std::string_view> words) {
  std::vector<double> numbers;
  for (std::size_t i = 1; i < words.size(); ++i) {
    const auto number = read_free_real(words[i]);
    if (!number) return std::nullopt;
    numbers.push_back(*number);
  }
  if (numbers.size() == 7) numbers.erase(numbers.begin() + 1);  // the molar mass
  if (numbers.size() != 6) return std::nullopt;
  const auto geometry = static_cast<int>(numbers[0]);
  if (geometry < 0 || geometry > 2 || geometry != numbers[0]) return std::nullopt;
  return ImportedMolecule{geometry, numbers[1], numbers[2], numbers[3], numbers[4], numbers[5]};
}

}  // namespace

Molecules read_transport_text(const Input& file, Findings& findings) {
  Molecules molecules;
  file.for_each_record([&](int record, std::string_view line) {
    const std::vector<std::string_view> words = words_of(line);
    const auto starts = [&](std::string_view word) {
      return in_capitals(std::string(words.front())).starts_with(word);
    };
    if (words.empty() || starts("----") || starts("****") ||
        (words.size() < 3 && (starts("TRAN") || starts("END"))))
      return;
    if (const auto molecule = molecule_of(words)) {
      molecules[in_capitals(std::string(words.front()))] = *molecule;
    } else {
      findings.error({&file, record, 1, static_cast<int>(std::max<std::size_t>(line.size(), 1))},
                     "this is no line of transport data",
                     "a name, the geometry 0, 1 or 2, and five numbers, or six as in MOLNEW, are due here");
    }
  });
  return molecules;
}

void settle_transport(const Molecules& molecules, const Place& file, Import& import) {
  if (import.options.without_transport) return;
  std::vector<std::string> missing;
  auto& gas = import.mechanism.gas;
  for (ImportedSpecies& species : gas) {
    if (species.molecule) continue;
    const auto found = molecules.find(in_capitals(species.name));
    if (found == molecules.end()) {
      missing.push_back(species.name);
    } else {
      species.molecule = found->second;
    }
  }
  if (missing.empty()) return;
  import.refuse(
      file, message(static_cast<int>(missing.size()), " species without transport data"),
      message(list_of(missing)),
      "--transport names a file that has them; --without-transport takes none, and MOLNEW is yours then");
  for (const std::string& name : missing) import.known[name].fate = KnownSpecies::Fate::left_out;
  std::erase_if(gas, [](const ImportedSpecies& species) { return !species.molecule; });
  for (std::size_t i = 0; i < gas.size(); ++i) import.known[gas[i].name].index = i;
}

}  // namespace varpre
