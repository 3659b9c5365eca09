#pragma once

#include <string>

#include "textio/channel/file.h"

namespace varpre {

// The records of the listing, which pass on to an open file in pieces, so its length is not bounded by
// memory. Without a file all are kept. When the file takes no more, what follows is dropped and the run goes
// on: `finish` tells.
class ListingFile {
 public:
  static constexpr int no_file = -1;
  static constexpr int nowhere = -2;  // nobody reads it

  explicit ListingFile(int descriptor = no_file) : descriptor_(descriptor) {}

  std::string text;       // the records not passed on yet, each with its line feed
  bool dropping = false;  // what is written now goes nowhere (Dropped)

  // Passes on what has collected once it exceeds a piece.
  void pass_on() {
    if (dropping) {
      text.clear();
    } else if (text.size() >= file_piece) {
      flush();
    }
  }
  void flush();
  // Passes on all records and closes the file. Throws std::system_error when one of them found no room.
  void finish();

 private:
  int descriptor_;
  int error_ = 0;  // errno of the write that failed first
};

}  // namespace varpre
