#include "conditions/particle_data.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "files/databases.h"
#include "files/keywords.h"
#include "files/store_records.h"
#include "textio/channel/statement.h"
#include "textio/findings/record_findings.h"
#include "thermo/species.h"

namespace varpre {
namespace {

constexpr const Section& names_section = sections::named("the names of the particle data");
constexpr const Section& fractions_section = sections::named("the particle fractions");

struct Particles {
  int NRGP = 0;                    // grid size
  Place grid;                      // where it is given
  std::vector<SpeciesName> names;  // particle species, NPL of them
  std::vector<double> XPA;         // their initial fractions
};

// Stands behind the heading of a part of the section; false, after the finding, when there is none.
bool find_part(const Section& part, Input& NFICON, Findings& findings) {
  if (find_section(part, NFICON)) return true;
  report_missing(part, NFICON, findings, " where it is due");
  return false;
}

// Marks the next record where that is NRGP misspelt.
void report_no_grid_size(const Place& heading, Findings& findings) {
  const Place next{heading.unit, heading.record + 1, 1, 4};
  const std::string_view text = heading.unit->origin(next.record).text;
  const std::string help = Nearest(text.substr(0, 4)).offer("NRGP").help();
  findings.error(help.empty() ? heading : next, "the particle data that begin here have no record NRGP",
                 help);
}

bool read_grid_size(Input& NFICON, Particles& particles, Findings& findings) {
  Text<4> word;
  const Place heading = here(NFICON, 1, 4);
  do {
    const ReadResult result = read<"(A4,1X,I6)">(NFICON, word, particles.NRGP);
    if (!result && word.view() == "NRGP") {
      report_unreadable(findings, NFICON, result, "the particle grid size");
    } else if (!result) {
      report_no_grid_size(heading, findings);
    }
    if (!result) return false;
  } while (word.view() != "NRGP");
  particles.grid = here(NFICON, 6, 6);
  if (particles.NRGP < 3) {
    findings.warning(particles.grid, message("a grid of ", particles.NRGP, " points has no point inside"),
                     "NRGP is the number of grid points of a particle, an integer");
  }
  return true;
}

bool read_names(Input& NFICON, std::vector<SpeciesName>& names, Findings& findings) {
  const Place heading = here(NFICON, 1, 4);
  for (;;) {
    std::array<SpeciesName, 7> record;
    if (!read<"(7(A8,1X))">(NFICON, record)) {
      report_not_closed(names_section, heading, findings);
      return false;
    }
    if (record[0].first(3) == "END") return true;
    std::copy_if(record.begin(), record.end(), std::back_inserter(names),
                 [](const SpeciesName& name) { return !name.blank(); });
    if (names.size() > NSMAX) {
      findings.error(here(NFICON), message("more than ", NSMAX, " particle species"));
      return false;
    }
  }
}

// Grid size and list of the section, up to the heading of the fractions.
bool read_section(Input& NFICON, Particles& particles, Findings& findings) {
  return find_part(sections::named("the particle data"), NFICON, findings) &&
         read_grid_size(NFICON, particles, findings) && find_part(names_section, NFICON, findings) &&
         read_names(NFICON, particles.names, findings) && find_part(fractions_section, NFICON, findings);
}

// The records of the fractions: names of particle species.
struct Fractions {
  Particles& particles;
  const Input& NFICON;
  Listing& MSGFIL;

  std::optional<SectionEnd> take(const KeywordRecord& record) const {
    const auto& [name, value, result] = record;
    const auto found = std::find(particles.names.begin(), particles.names.end(), name);
    if (found == particles.names.end()) return SectionEnd::unknown_word;
    const FieldColumns& field = keyword_columns<ParticleSection>.value;
    if (!value_is_readable(result, name.view(), value, field, {}, NFICON, MSGFIL.findings)) {
      return SectionEnd::unreadable_value;
    }
    double& XPA = particles.XPA.begin()[found - particles.names.begin()];
    if (XPA > 0 || value < 0) {
      if (!failed) write<"('*!* ERROR IN SPECIES CONCENTRATION')">(MSGFIL);
      MSGFIL.findings.error(here(NFICON, 1, field.last()),
                            value < 0 ? message("the fraction of ", name, " is negative")
                                      : message("the fraction of ", name, " is given twice"));
      return SectionEnd::given_up;
    }
    XPA = value;
    return std::nullopt;
  }
  void offer_to(Nearest& nearest) const { nearest.offer_all(particles.names); }
  bool knows(std::string_view word) const {
    return std::find(particles.names.begin(), particles.names.end(), SpeciesName(word)) !=
           particles.names.end();
  }
  void behind_error() { failed = true; }
  bool failed = false;  // what follows is only looked at
};

// Takes the fraction records up to END; false after the finding.
bool read_fractions(Input& NFICON, Listing& MSGFIL, Particles& particles) {
  particles.XPA.assign(particles.names.size(), 0.0);
  GivenKeywords<ParticleSection> given;
  const SectionEnd end =
      read_keywords(fractions_section, NFICON, MSGFIL.findings, given, Fractions{particles, NFICON, MSGFIL});
  if (end == SectionEnd::unknown_word) write<"('*!* ERROR: UNKNOWN SPECIES OR MISSING END')">(MSGFIL);
  const bool any = NFICON.record_number() > given.heading.record + 1;
  const auto is_zero = [](double x) { return x == 0; };
  if (end == SectionEnd::closed && any && std::all_of(particles.XPA.begin(), particles.XPA.end(), is_zero)) {
    MSGFIL.findings.warning({&NFICON, given.heading.record + 1, 10, 10},
                            "the particle fractions add up to 0: the first species gets 1",
                            "give each species its fraction");
  }
  return end == SectionEnd::closed;
}

// Makes the fractions sum up to 1; without any, the first species gets all. False when their sum is not
// finite.
bool normalise(std::vector<double>& XPA) {
  const double S = std::accumulate(XPA.begin(), XPA.end(), 0.0);
  if (!std::isfinite(S)) return false;
  if (!XPA.empty() && S < 1.0E-20) {
    std::fill(XPA.begin(), XPA.end(), 0.0);
    XPA[0] = 1;
  } else {
    for (double& x : XPA) x /= S;
  }
  return true;
}

// `entry` is the record with the name.
void warn_of_values(const SpeciesName& name, const std::array<double, particle_value_count>& data,
                    const Place& entry, Findings& findings) {
  struct Positive {
    std::string_view word;
    int number;  // from 1
  };
  constexpr int values_per_record = 6;
  constexpr int spacing = 12;
  const auto place_of_value = [&](int number) {
    return Place{entry.unit, entry.record + 1 + (number - 1) / values_per_record,
                 1 + spacing * ((number - 1) % values_per_record), spacing - 1};
  };
  for (const auto& [word, number] : {Positive{"VOLCH", 2}, {"PCRIT", 5}, {"TCRIT", 6}, {"TBOIL", 7}}) {
    const double value = at(data, number);
    const Place place = place_of_value(number);
    if (value > 0 || findings.is_told(place)) continue;
    findings.warning(place, message(word, " of particle species '", name, "' is ", about(value)),
                     "it is positive: was a value left out?");
    return;
  }
  const double TCRIT = at(data, 6);
  const double TBOIL = at(data, 7);
  if (TBOIL <= TCRIT || findings.is_told(place_of_value(7))) return;
  findings.warning(place_of_value(7),
                   message("particle species '", name, "' boils at ", TBOIL,
                           " K, above its critical temperature of ", TCRIT, " K"),
                   "TCRIT is the last value of the first record, TBOIL the first one of the second");
}

// Finds a species in the database and copies its data; false, after the finding, when it is not there or
// cannot be read.
bool write_species(const SpeciesName& name, Input& thermliq, Findings& findings, StoreFile& NFISTO) {
  SpeciesName record;
  thermliq.rewind();
  do {
    if (!read<particle_name>(thermliq, record)) {
      findings.error(whole(thermliq), message("no data of particle species '", name, "' in this file"),
                     "a record with the name, letter for letter, precedes four records of six values each");
      return false;
    }
  } while (record != name);
  write<store_records::particle_name>(NFISTO, name);
  std::array<double, particle_value_count> data{};
  const Place name_record = here(thermliq, 1, 8);
  const ReadResult result = read<particle_values>(thermliq, data);
  const auto name_of = [&](int number) {
    return message("value ", number, " of particle species '", name, "'");
  };
  if (result.end_of_file())
    findings.error(name_record, "the file ends before the 24 values of this particle species");
  if (result.is_unreadable())
    report_unreadable(findings, thermliq, result, name_of(result.unreadable.number));
  if (!result) return false;
  warn_of_columns(findings, thermliq, result, name_of);
  warn_of_values(name, data, name_record, findings);
  const auto group = [&](std::size_t k) { return std::span<const double>(data).subspan(4 * k, 4); };
  write<store_records::particle_values_1>(NFISTO, group(0));
  write<store_records::particle_values_2>(NFISTO, group(1));
  write<store_records::particle_values_3>(NFISTO, group(2));
  write<store_records::particle_values_4>(NFISTO, group(3));
  write<store_records::particle_values_5>(NFISTO, group(4));
  write<store_records::particle_values_6>(NFISTO, group(5));
  return true;
}

bool write_block(const Particles& particles, Input& thermliq, Listing& MSGFIL, StoreFile& NFISTO) {
  write<store_records::particle_heading>(NFISTO);
  write<store_records::particle_grid>(NFISTO, particles.NRGP);
  write<store_records::particle_count>(NFISTO, static_cast<int>(particles.names.size()));
  write<store_records::particle_list>(NFISTO);
  write<store_records::particle_names>(NFISTO, std::span(particles.names));
  write<store_records::particle_data>(NFISTO);
  write<"('--* OUTPUT OF SPECIES DATA')">(MSGFIL);
  for (const SpeciesName& name : particles.names) {
    if (!write_species(name, thermliq, MSGFIL.findings, NFISTO)) return false;
  }
  write<store_records::particle_fractions>(NFISTO, std::span(particles.XPA));
  write<store_records::particle_end>(NFISTO);
  return true;
}

bool process(int NPART, Input& NFICON, Input& thermliq, Listing& MSGFIL, StoreFile& NFISTO) {
  Particles particles;
  if (!read_section(NFICON, particles, MSGFIL.findings)) return false;
  if (static_cast<int>(particles.names.size()) != NPART) {
    write_free(MSGFIL, std::string_view(" *** NUMBER OF PARTICLE SPECIES INCONSISTENT *** "));
    MSGFIL.findings.error(
        here(NFICON, 1, 4),
        message("the list of particle species has ", static_cast<int>(particles.names.size()),
                " names read in columns of nine, but ", NPART, " read by blanks"),
        "names stand in columns 1-8, 10-17, 19-26, 28-35, 37-44, 46-53 and 55-62");
    return false;
  }
  if (particles.NRGP < -9999 || particles.NRGP > 99999) {
    MSGFIL.findings.error(particles.grid,
                          message("NRGP of ", particles.NRGP,
                                  " does not fit the five columns of the store file, which has asterisks"));
  }
  if (!read_fractions(NFICON, MSGFIL, particles)) return false;
  if (!normalise(particles.XPA)) {
    MSGFIL.findings.error(here(NFICON), "the particle fractions add up to a number that is not finite");
    return false;
  }
  return write_block(particles, thermliq, MSGFIL, NFISTO);
}

}  // namespace

void GENPART(int NPART, Input& NFICON, Input& thermliq, Listing& MSGFIL, StoreFile& NFISTO) {
  thermliq.open();
  thermliq.load();
  if (thermliq.read_error() != 0) throw_system_error(thermliq.read_error(), thermliq.name);
  write<"('--* PROCESSING PARTICLE DATA')">(MSGFIL);
  if (process(NPART, NFICON, thermliq, MSGFIL, NFISTO)) return;
  write<"('*!* ERROR WHILE PROCESSING PARTICLE SPECIES DATA')">(MSGFIL);
}

}  // namespace varpre
