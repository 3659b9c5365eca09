#pragma once

#include <memory>
#include <string>

#include "textio/channel/file.h"
#include "textio/channel/input.h"

namespace varpre {

// The file of the solver's records, which are appended (statement.h) and are finite numbers all. They may
// pass on to the file in pieces while they are written, as soon as nobody will edit them.
class StoreFile {
 public:
  StoreFile() = default;  // in memory
  StoreFile(std::string file_name, Storage where);

  std::string text;            // the records that were not passed on, each with its line feed
  bool dropping = false;       // what is written now goes nowhere (Dropped)
  bool has_asterisks = false;  // a value did not fit its field

  // Begins a fresh file, which leaves an earlier one as it is until `take_place`. Throws (file.h).
  void open();
  // From here on no record written so far or later is edited: they may leave the memory. Nothing in memory.
  void begin_to_pass_on();
  // Passes on what has collected once it exceeds a piece. Throws.
  void pass_on() {
    if (dropping) {
      text.clear();
    } else if (text.size() >= longest_text_) {
      flush();
    }
  }
  // Passes on all that is left; then the file takes the place of an earlier one. Nothing in memory. Throws.
  void flush();
  void take_place();

 private:
  std::string name_;
  Storage storage_ = Storage::memory;
  std::unique_ptr<FreshFile> file_;
  std::size_t longest_text_ = std::string::npos;
};

}  // namespace varpre
