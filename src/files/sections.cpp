#include "files/sections.h"

namespace varpre {

Heading find_section(const Section& section, Input& input,
                     const std::function<bool(std::string_view)>& passed) {
  if (section.start == Section::Start::first_record) input.rewind();
  Heading heading;
  while (input.pass(heading.record)) {
    heading.found = section.opens_with(heading.record);
    if (heading.found) input.mark_read();
    if (heading.found || (passed && !passed(heading.record))) return heading;
  }
  return heading;
}

}  // namespace varpre
