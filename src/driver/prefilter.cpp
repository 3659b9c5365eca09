#include "driver/prefilter.h"

#include <system_error>

#include "textio/record/record.h"

namespace varpre {

void REMCOM(Input& input, Unit& copy, Listing& MSGFIL) {
  copy.begin_copy(input, copied_width);
  try {
    for (std::string_view line; input.next(line);) {
      if (line.starts_with("****") || line.starts_with("----")) continue;
      copy.copy();
    }
  } catch (const std::system_error&) {
    write<"(1H0,5X,'ERROR - DEFECT INPUT ON UNIT ',I3)">(MSGFIL, input.number);
    throw;
  }
  copy.rewind();
}

}  // namespace varpre
