#pragma once

#include "textio/channel/input.h"
#include "textio/findings/listing.h"

namespace varpre {

// Characters of a line that the stages can read.
constexpr int copied_width = 80;

// Copies the lines of an input to another one, each cut or padded to 80 characters, without comment lines
// (those that begin with **** or ----), and stands before the first record of the copy. The copy knows the
// origin of its records.
//
// An input that could not be read to its end is reported; the copy holds the lines before the fault.
void REMCOM(Input& input, Input& copy, Listing& MSGFIL);

}  // namespace varpre
