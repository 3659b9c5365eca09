#pragma once

#include "files/options.h"
#include "textio/channel/input.h"
#include "textio/channel/store_file.h"
#include "textio/findings/listing.h"

namespace varpre {

// Reads the flame conditions ("COND" section of NFICON), completes them from defaults, lists them and writes
// their block of nine records to the store file. Lengths in m, times in s.
//
// False, after its message and without a block: no heading, an unknown keyword, a value that cannot be read,
// no END, or one of GE, NG, RI, RO, TE, NT not given. GE, NG or NGK outside five columns are written as
// asterisks: an error for people only.
[[nodiscard]] bool INICON(const OptionVector& IOPT, Input& NFICON, Listing& MSGFIL, StoreFile& NFISTO);

}  // namespace varpre
