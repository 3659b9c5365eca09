#include "tools/import/chemkin_reader.h"

#include <algorithm>
#include <filesystem>

#include "tools/import/chemkin_reactions.h"
#include "tools/import/chemkin_thermo.h"
#include "tools/import/completion.h"

namespace varpre {
namespace {

using Kind = ChemkinSection::Kind;

class MechanismReader {
 public:
  MechanismReader(const ImportOptions& options, SourceFiles& files, const Molecules& molecules,
                  Findings& findings)
      : options_(options), files_(files), molecules_(molecules), import_{options, findings} {}

  ImportedMechanism read() {
    const Input& file = files_.open(options_.file);
    mechanism().file = std::filesystem::path(options_.file).filename();
    mechanism().gas_phase = "gas";
    const std::vector<ChemkinSection> sections = sections_of(file, {}, findings());
    const std::vector<ChemkinSection> surface = sections_of_surface();
    add_data(sections, surface);
    declare_gas(sections, file);
    for (const ChemkinSection& section : surface) declare_sites(section);
    read_species();
    settle_transport(molecules_, whole(file), import_);
    read_reactions(sections, false);
    read_reactions(surface, true);
    compare_named_partners("mark-duplicate", import_);
    complete(whole(file), import_);
    set_state();
    return mechanism();
  }

 private:
  ImportedMechanism& mechanism() { return import_.mechanism; }
  Findings& findings() { return import_.findings; }

  // --- the files ---

  std::vector<ChemkinSection> sections_of_surface() {
    if (options_.surface_file.empty()) return {};
    const Input& file = files_.open(options_.surface_file);
    std::vector<ChemkinSection> sections = sections_of(file, {}, findings());
    const auto is_site = [](const ChemkinSection& s) { return s.kind == Kind::site; };
    if (std::none_of(sections.begin(), sections.end(), is_site))
      findings().error(whole(file), "the file has no section SITE");
    return sections;
  }

  // Where several files have a species, the mechanism comes before the surface, and both before the other
  // files.
  void add_data(const std::vector<ChemkinSection>& sections, const std::vector<ChemkinSection>& surface) {
    for (const auto* const all : {&sections, &surface}) {
      for (const ChemkinSection& section : *all) {
        if (section.kind == Kind::elements) read_elements(section, elements_, findings());
        if (section.kind == Kind::thermo) thermo_.add(section, findings());
        if (section.kind == Kind::transport) transport_.add(section);
      }
    }
    if (!options_.thermo.empty()) {
      for (const ChemkinSection& section :
           sections_of(files_.open(options_.thermo), Kind::thermo, findings())) {
        if (section.kind == Kind::thermo) thermo_.add(section, findings());
      }
    }
  }

  // --- the species ---

  void declare(const std::string& name, const Place& place, KnownSpecies::Phase phase) {
    if (import_.declare(name, {KnownSpecies::Fate::left_out, phase, 0})) {
      places_.push_back(place);
    } else {
      findings().warning(place, message("species ", name, " is listed twice"));
    }
  }

  void declare_gas(const std::vector<ChemkinSection>& sections, const Input& file) {
    for (const Kind kind : {Kind::elements, Kind::species, Kind::reactions}) {
      constexpr std::array<std::string_view, 4> names{"ELEMENTS", "SPECIES", "THERMO", "REACTIONS"};
      if (std::any_of(sections.begin(), sections.end(),
                      [kind](const ChemkinSection& s) { return s.kind == kind; }))
        continue;
      findings().error(whole(file),
                       message("the file has no section ", names[static_cast<std::size_t>(kind)]));
    }
    for (const ChemkinSection& section : sections) {
      if (section.kind == Kind::site || section.kind == Kind::bulk)
        findings().error(section.heading.place(section.keyword, 4),
                         "this belongs into the file of the surface, --surface-file");
      if (section.kind != Kind::species) continue;
      for (const ChemkinLine& line : section.lines) {
        for (const Word& word : words_of(line.text))
          declare(std::string(word.text), line.place(word), KnownSpecies::Phase::gas);
      }
    }
  }

  // "SITE/name/ SDEN/2.7E-9/ H_Pt O2_Pt/2/", or "BULK/name/ C(B)/2.25/": what its lines say, one after the
  // other.
  void declare_sites(const ChemkinSection& section) {
    if (section.kind != Kind::site && section.kind != Kind::bulk) return;
    if (section.kind == Kind::site) begin_site(section);
    bool first = true;
    for (const ChemkinLine& line : section.lines) {
      const auto items = items_of(line, findings());
      if (!items) return;
      for (const ChemkinItem& item : *items) {
        const bool is_name = first && item.word.text.empty();
        first = false;
        if (is_name) {
          if (section.kind == Kind::site) mechanism().surface_phase = std::string(trimmed(item.content.text));
        } else {
          take_site_item(section.kind, line, item);
        }
      }
    }
    if (section.kind == Kind::site && mechanism().site_density <= 0)
      findings().error(section.heading.place(section.keyword, 4),
                       "the site density is missing: SDEN/.../, in mol/cm2");
  }

  void begin_site(const ChemkinSection& section) {
    if (!mechanism().surface_phase.empty())
      findings().error(section.heading.place(section.keyword, 4), "a second kind of sites cannot be held");
    mechanism().surface_phase = "surface";
  }

  void take_site_item(Kind kind, const ChemkinLine& line, const ChemkinItem& item) {
    const Place place = line.place(item.word);
    const auto value = item.has_content ? chemkin_number(item.content.text) : std::optional<long double>(1);
    const std::string name(item.word.text);
    if (!value || *value <= 0) {
      findings().error(line.place(item.content), message("a positive number is due behind ", name));
    } else if (kind == Kind::site && in_capitals(name) == "SDEN") {
      constexpr double cm2_per_m2 = 1.0E4;
      mechanism().site_density = static_cast<double>(*value) * cm2_per_m2;
    } else {
      declare(name, place, kind == Kind::site ? KnownSpecies::Phase::surface : KnownSpecies::Phase::bulk);
      if (kind == Kind::site) sites_[name] = static_cast<double>(*value);
    }
  }

  bool is_chosen(const std::string& name) const {
    const auto& chosen = options_.species;
    return chosen.empty() || std::find(chosen.begin(), chosen.end(), name) != chosen.end();
  }

  void read_species() {
    report_missing_thermo();
    for (std::size_t i = 0; i < import_.declared.size(); ++i) read_one(import_.declared[i], places_[i]);
  }

  void read_one(const std::string& name, const Place& place) {
    KnownSpecies& known = import_.known[name];
    if (known.phase == KnownSpecies::Phase::gas && !is_chosen(name)) {
      known.fate = KnownSpecies::Fate::not_chosen;
      return;
    }
    ImportedSpecies species;
    species.name = name;
    species.place = place;
    species.on_surface = known.on_surface();
    if (const auto sites = sites_.find(name); sites != sites_.end() && sites->second != 1) {
      import_.refuse(place, message("species ", name), message("it occupies ", sites->second, " sites"),
                     "a surface species occupies one site");
      return;
    }
    if (!thermo_.has(name) || !thermo_.read(species, elements_, import_)) return;
    if (known.phase == KnownSpecies::Phase::gas && !options_.without_transport && transport_.has(name)) {
      species.molecule = transport_.read(species, findings());
      if (!species.molecule) return;
    }
    take_species(std::move(species), import_);
  }

  // One message for all species without entry.
  void report_missing_thermo() {
    std::vector<std::string> missing;
    Place first;
    for (std::size_t i = 0; i < import_.declared.size(); ++i) {
      const std::string& name = import_.declared[i];
      if (thermo_.has(name) || (import_.known[name].phase == KnownSpecies::Phase::gas && !is_chosen(name)))
        continue;
      if (missing.empty()) first = places_[i];
      missing.push_back(name);
    }
    if (missing.empty()) return;
    findings().error(first, message("there are no thermochemical data of ", list_of(missing)),
                     options_.thermo.empty() ? "--thermo names the file that has them" : "");
  }

  // --- the rest ---

  void read_reactions(const std::vector<ChemkinSection>& sections, bool on_surface) {
    for (const ChemkinSection& section : sections) {
      if (section.kind == Kind::reactions) read_chemkin_reactions(section, on_surface, import_);
    }
  }

  // The format knows no state: the mixtures are the first species, the surface is covered with its first one.
  void set_state() {
    for (const auto* const species : {&mechanism().gas, &mechanism().surface}) {
      if (!species->empty()) mechanism().state.amounts[species->front().name] = 1;
    }
  }

  const ImportOptions& options_;
  SourceFiles& files_;
  const Molecules& molecules_;
  Import import_;
  ChemkinElements elements_;
  ThermoEntries thermo_;
  TransportLines transport_;
  std::vector<Place> places_;  // of the declared species
  std::map<std::string, double> sites_;
};

}  // namespace

ImportedMechanism read_chemkin_mechanism(const ImportOptions& options, SourceFiles& files,
                                         const Molecules& molecules, Findings& findings) {
  return MechanismReader(options, files, molecules, findings).read();
}

}  // namespace varpre
