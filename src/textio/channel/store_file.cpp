#include "textio/channel/store_file.h"

#include <utility>

namespace varpre {

StoreFile::StoreFile(std::string file_name, Storage where) : name_(std::move(file_name)), storage_(where) {}

void StoreFile::open() {
  if (storage_ == Storage::disk) file_ = std::make_unique<FreshFile>(name_);
  longest_text_ = std::string::npos;
  text.clear();
}

void StoreFile::begin_to_pass_on() {
  if (file_ != nullptr) longest_text_ = file_piece;
}

void StoreFile::flush() {
  if (file_ == nullptr) return;
  file_->write(text);
  text.clear();
}

void StoreFile::take_place() {
  if (file_ == nullptr) return;
  flush();
  file_->take_place();
  file_.reset();
}

}  // namespace varpre
