#include "conditions/particle_data.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <span>
#include <string_view>
#include <vector>

#include "textio/record.h"
#include "thermo/species.h"

namespace varpre {
namespace {

struct Particles {
  int NRGP = 0;                    // grid size
  std::vector<SpeciesName> names;  // particle species, NPL of them
  std::vector<double> XPA;         // their initial fractions
};

// Stands behind the next record that begins with a word of four characters; false when there is none.
bool find_record(std::string_view word, Unit& NFICON) {
  Text<4> record;
  do {
    if (!read<"(A4)">(NFICON, record)) return false;
  } while (record.view() != word);
  return true;
}

bool read_grid_size(Unit& NFICON, int& NRGP) {
  Text<4> word;
  do {
    if (!read<"(A4,1X,I6)">(NFICON, word, NRGP)) return false;
  } while (word.view() != "NRGP");
  return true;
}

bool read_names(Unit& NFICON, std::vector<SpeciesName>& names) {
  for (;;) {
    std::array<SpeciesName, 7> record;
    if (!read<"(7(A8,1X))">(NFICON, record)) return false;
    if (record[0].first(3) == "END") return true;
    std::copy_if(record.begin(), record.end(), std::back_inserter(names),
                 [](const SpeciesName& name) { return !name.blank(); });
    if (names.size() > NSMAX) return false;
  }
}

// Grid size and list of the section, up to the heading of the fractions.
bool read_section(Unit& NFICON, Particles& particles) {
  NFICON.rewind();
  return find_record("PART", NFICON) && read_grid_size(NFICON, particles.NRGP) &&
         find_record("PASP", NFICON) && read_names(NFICON, particles.names) && find_record("PARi", NFICON);
}

// Takes the fraction records up to END; false, some with a message of their own, at an error.
bool read_fractions(Unit& NFICON, Listing& MSGFIL, Particles& particles) {
  particles.XPA.assign(particles.names.size(), 0.0);
  for (;;) {
    SpeciesName name;
    double value = 0;
    const ReadResult result = read<"(A8,1X,E10.2)">(NFICON, name, value);
    if (result.end_of_file()) return false;
    if (name.first(3) == "END") return true;
    if (name.first(4) == "****") continue;
    const auto found = std::find(particles.names.begin(), particles.names.end(), name);
    if (found == particles.names.end()) {
      write<"('*!* ERROR: UNKNOWN SPECIES OR MISSING END')">(MSGFIL);
      return false;
    }
    if (!result) return false;
    double& XPA = particles.XPA[static_cast<std::size_t>(found - particles.names.begin())];
    if (XPA > 0 || value < 0) {
      write<"('*!* ERROR IN SPECIES CONCENTRATION')">(MSGFIL);
      return false;
    }
    XPA = value;
  }
}

// Makes the fractions sum up to 1; without any, the first species gets all.
void normalise(std::vector<double>& XPA) {
  const double S = std::accumulate(XPA.begin(), XPA.end(), 0.0);
  if (!XPA.empty() && S < 1.0E-20) {
    std::fill(XPA.begin(), XPA.end(), 0.0);
    XPA[0] = 1;
  } else {
    for (double& x : XPA) x /= S;
  }
}

// Finds a species in the database and copies its data; false when it is not there or cannot be read.
bool write_species(const SpeciesName& name, Unit& thermliq, Unit& NFISTO) {
  SpeciesName record;
  thermliq.rewind();
  do {
    if (!read<"(A8)">(thermliq, record)) return false;
  } while (record != name);
  write<"(A8)">(NFISTO, name);
  std::array<double, 24> data{};
  if (!read<"(6(1PE11.4,1X))">(thermliq, data)) return false;
  const auto group = [&](std::size_t k) { return std::span<const double>(data).subspan(4 * k, 4); };
  write<"('XTROL,VOLCH,WAFSRK,WAF:',4(1PE11.4,1X))">(NFISTO, group(0));
  write<"('PCRIT,TCRIT,TBOIL,VPA: ',4(1PE11.4,1X))">(NFISTO, group(1));
  write<"('VPB,VPC,VPD,CA:        ',4(1PE11.4,1X))">(NFISTO, group(2));
  write<"('CB,CC,CD,XDIAST:       ',4(1PE11.4,1X))">(NFISTO, group(3));
  write<"('ALPH,BETA,GAM,XXXX:    ',4(1PE11.4,1X))">(NFISTO, group(4));
  write<"('XXXX,XXXX,XXXX,XXXX:   ',4(1PE11.4,1X))">(NFISTO, group(5));
  return true;
}

bool write_block(const Particles& particles, Unit& thermliq, Listing& MSGFIL, Unit& NFISTO) {
  write<"('>PARTICLE DATA FROM THERMLIQ')">(NFISTO);
  write<"(I5,' GRIDP.  ')">(NFISTO, particles.NRGP);
  write<"(I5,' PARTICLE SPECIES ')">(NFISTO, static_cast<int>(particles.names.size()));
  write<"('PARTICLE SPECIES-LIST:')">(NFISTO);
  write<"(5(A8,2X),6X)">(NFISTO, std::span(particles.names));
  write<"('PARDAT OF CONDENSED SPECIES')">(NFISTO);
  write<"('--* OUTPUT OF SPECIES DATA')">(MSGFIL);
  for (const SpeciesName& name : particles.names) {
    if (!write_species(name, thermliq, NFISTO)) return false;
  }
  write<"(' XPA     ',3X,5(1PE11.4,1X))">(NFISTO, std::span(particles.XPA));
  write<"('<')">(NFISTO);
  return true;
}

bool process(int NPART, Unit& NFICON, Unit& thermliq, Listing& MSGFIL, Unit& NFISTO) {
  Particles particles;
  if (!read_section(NFICON, particles)) return false;
  if (static_cast<int>(particles.names.size()) != NPART) {
    write_free(MSGFIL, std::string_view(" *** NUMBER OF PARTICLE SPECIES INCONSISTENT *** "));
    return false;
  }
  if (!read_fractions(NFICON, MSGFIL, particles)) return false;
  normalise(particles.XPA);
  return write_block(particles, thermliq, MSGFIL, NFISTO);
}

}  // namespace

void GENPART(int NPART, Unit& NFICON, Unit& thermliq, Listing& MSGFIL, Unit& NFISTO) {
  thermliq.open();
  write<"('--* PROCESSING PARTICLE DATA')">(MSGFIL);
  if (!process(NPART, NFICON, thermliq, MSGFIL, NFISTO)) {
    write<"('*!* ERROR WHILE PROCESSING PARTICLE SPECIES DATA')">(MSGFIL);
  }
}

}  // namespace varpre
