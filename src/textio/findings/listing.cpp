#include "textio/findings/listing.h"

namespace varpre {

void Listing::flush() {
  if (descriptor_ == no_file) return;
  write_all(descriptor_, text, "standard output");
  text.clear();
}

}  // namespace varpre
