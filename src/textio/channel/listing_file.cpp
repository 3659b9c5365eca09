#include "textio/channel/listing_file.h"

#include <system_error>

namespace varpre {
namespace {

constexpr const char* listing_name = "standard output";

}  // namespace

void ListingFile::flush() {
  if (descriptor_ == no_file) return;
  try {
    if (error_ == 0 && descriptor_ != nowhere) write_all(descriptor_, text, listing_name);
  } catch (const std::system_error& error) {
    error_ = error.code().value();
  }
  text.clear();
}

void ListingFile::finish() {
  if (descriptor_ == no_file) return;
  flush();
  try {
    if (descriptor_ != nowhere) OpenFile(descriptor_, listing_name).close(listing_name);
  } catch (const std::system_error& error) {
    if (error_ == 0) error_ = error.code().value();
  }
  descriptor_ = no_file;
  if (error_ != 0) throw_system_error(error_, listing_name);
}

}  // namespace varpre
