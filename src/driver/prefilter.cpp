#include "driver/prefilter.h"

#include <algorithm>
#include <system_error>

#include "files/words.h"

namespace varpre {

void REMCOM(Input& input, Input& copy, Listing& MSGFIL) {
  copy.begin_copy(input, copied_width);
  for (std::string_view line; input.next(line);) {
    const auto begins = [&](std::string_view word) { return line.starts_with(word); };
    if (!std::ranges::any_of(words::comments, begins)) copy.copy();
  }
  copy.rewind();
  if (input.read_error() == 0) return;
  write<"(1H0,5X,'ERROR - DEFECT INPUT ON UNIT ',I3)">(MSGFIL, input.number);
  MSGFIL.findings.error(
      whole(input),
      message("the file cannot be read to its end: ", std::generic_category().message(input.read_error())),
      "what stands before the fault is all that the run knows of it");
}

}  // namespace varpre
