#include "textio/channel/listing_file.h"

#include <cerrno>
#include <system_error>
#include <unistd.h>

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
  if (descriptor_ != nowhere && ::close(descriptor_) != 0 && error_ == 0) error_ = errno;
  descriptor_ = no_file;
  if (error_ != 0) throw_system_error(error_, listing_name);
}

}  // namespace varpre
