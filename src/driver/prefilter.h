#pragma once

#include "textio/channel/unit.h"
#include "textio/findings/listing.h"

namespace varpre {

// Characters of a line that the stages can read.
constexpr int copied_width = 80;

// Copies the lines of an input unit to another one, each cut or padded to 80 characters, without comment
// lines (those that begin with **** or ----), and stands before the first record of the copy. The copy knows
// the origin of its records.
//
// When the input cannot be read to its end, reports it in the listing and throws on (std::system_error).
void REMCOM(Input& input, Unit& copy, Listing& MSGFIL);

}  // namespace varpre
