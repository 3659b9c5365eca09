#pragma once

#include "files/sections.h"
#include "textio/channel/input.h"
#include "textio/findings/listing.h"
#include "thermo/species.h"

namespace varpre {

// What became of a species list.
struct SpeciesList {
  int NS = 0;           // names read, those that found no place included
  bool absent = false;  // no heading, no END, or too many species: the caller goes on without it
  bool heading = true;  // the heading was found
};

// Finds a list of species, reads its names and flags into `species` from its first place on, up to the END
// record, and prints the list.
//
// Reads NFICON from its first record. Names longer than 8 characters are cut to 8. A flag character (* + >)
// behind a name sets IFLAG; the delimiters of a line are aligned to its end, so that on a line whose last
// name has none each of them counts for the next name.
//
// Fails, with its message in the listing, by `absent`: no heading, end of file before END, more names than
// `species` has places. Stops the run (RunStop) at a name longer than 50 characters, more than three
// delimiter characters in a row, or a line that begins with a flag character.
SpeciesList GENSYM(const Section& section, Input& NFICON, Listing& MSGFIL, const SpeciesPlaces& species);

// Warns of surface species that have the name of a gas species.
void warn_of_species_in_both(const SpeciesView& gas, const SpeciesView& surface, Findings& findings);

}  // namespace varpre
