#pragma once

#include "files/keywords.h"
#include "textio/channel/input.h"
#include "textio/channel/store_file.h"
#include "textio/findings/listing.h"

namespace varpre {

// Reads the surface conditions ("SURFACE COND" section of NFICON) into `conditions`, lists them and writes
// their block to the store file: wall temperature, site density and the other wall properties; in a counter
// flow the three dimensions of the catalyst as well. A property that is not given exactly once gets a warning
// and its last, or its standard, value.
//
// False, after its message and without a block: no heading, an unknown keyword, a value that cannot be read,
// no END. A counter flow in which a dimension is not given exactly once has its message and no block either,
// but returns true: the run goes on.
[[nodiscard]] bool GENCOW(bool counter_flow, Input& NFICON, Listing& MSGFIL, StoreFile& NFISTO,
                          SurfaceConditions& conditions);

}  // namespace varpre
