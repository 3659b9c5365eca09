#pragma once

#include <string>

#include "textio/channel/file.h"
#include "textio/findings/findings.h"

namespace varpre {

// What a run tells people: the listing with its fixed texts, and the findings for standard error. The records
// of the listing pass on to an open file in pieces, so its length is not bounded by memory; a listing without
// a file keeps them all.
class Listing {
 public:
  static constexpr int no_file = -1;

  explicit Listing(int descriptor = no_file) : descriptor_(descriptor) {}

  std::string text;  // the records not passed on yet, each with its line feed
  Findings findings;

  // Passes on what has collected once it exceeds a piece. Throws std::system_error when the file takes no
  // more.
  void pass_on() {
    if (text.size() >= file_piece) flush();
  }
  // Passes on all records.
  void flush();

 private:
  int descriptor_;
};

}  // namespace varpre
