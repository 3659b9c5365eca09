#pragma once

#include "textio/channel/input.h"
#include "textio/channel/store_file.h"
#include "textio/findings/listing.h"

namespace varpre {

// Prepares the finished store file for a two-dimensional problem: reads the sections "2DOP" (options) and
// "2DIN" (control parameters) of NFICON, replaces the option records 2-4 by the two-dimensional option vector
// and inserts four records of control parameters behind the flame conditions. All records lose their trailing
// blanks.
//
// An unknown option is a warning. Every error is reported in the listing, and as a finding, and leaves the
// store file as it was.
void G2OPT(Input& NFICON, Listing& MSGFIL, StoreFile& NFISTO);

}  // namespace varpre
