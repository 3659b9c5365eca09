#pragma once

#include <string_view>

#include "textio/channel/statement.h"
#include "textio/findings/listing.h"

namespace varpre {

struct WallConditions {
  double TW = 0;    // wall temperature, K
  double SITE = 0;  // site density, mol/m^2
};

// Reads the surface conditions ("SURFACE COND" section of NFICON), lists them and writes their block to the
// store file: wall temperature, site density (both into `wall`) and the other wall properties; in a counter
// flow the three dimensions of the catalyst as well. A property that is not given exactly once gets a warning
// and its last, or its standard, value.
//
// False, after its message and without a block: no heading, an unknown keyword, a value that cannot be read,
// no END. A counter flow in which a dimension is not given exactly once has its message and no block either,
// but returns true: the run goes on.
[[nodiscard]] bool GENCOW(bool counter_flow, Input& NFICON, Listing& MSGFIL, StoreFile& NFISTO,
                          WallConditions& wall);

// Whether a word is a keyword of the surface conditions.
bool is_surface_keyword(std::string_view word);

}  // namespace varpre
