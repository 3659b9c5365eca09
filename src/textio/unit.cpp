#include "textio/unit.h"

#include <algorithm>
#include <cstring>

#include "textio/file.h"

namespace varpre {
namespace {

constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

std::size_t first_record(std::string_view text) {
  return text.starts_with(byte_order_mark) ? byte_order_mark.size() : 0;
}

// The line that starts at `start`, without its line end; `after` becomes the start of the next one.
std::string_view line_at(std::string_view text, std::size_t start, std::size_t& after) {
  const std::size_t feed = text.find('\n', start);
  const std::size_t end = std::min(feed, text.size());
  after = std::min(end + 1, text.size());
  std::string_view line = text.substr(start, end - start);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

}  // namespace

Unit::Unit(int unit_number, std::string file_name, Storage where)
    : number(unit_number), name(std::move(file_name)), storage_(where) {}

void Unit::open() {
  if (storage_ == Storage::disk) text = load_or_create_file(name, read_error_);
  rewind();
}

void Unit::open_for_replacement() {
  if (storage_ == Storage::disk) prepare_replacement(name);
  clear();
}

void Unit::save() const {
  if (storage_ == Storage::disk) save_file(name, text);
}

void Unit::replace() const {
  if (storage_ == Storage::disk) replace_file(name, text);
}

bool Unit::next(std::string_view& record) {
  if (position_ >= text.size()) {
    if (read_error_ != 0) throw_system_error(read_error_, name);
    return false;
  }
  last_ = position_;
  record = line_at(text, last_, position_);
  ++record_number_;
  return true;
}

void Unit::rewind() {
  position_ = last_ = source_ == nullptr ? first_record(text) : 0;  // a copy holds no mark of its own
  record_number_ = 0;
}

void Unit::step_back() {
  if (position_ == last_) return;
  position_ = last_;
  --record_number_;
}

void Unit::clear() {
  text.clear();
  source_ = nullptr;
  source_lines_.clear();
  cut_records.clear();
  rewind();
}

void Unit::begin_copy(const Unit& source) {
  clear();
  source_ = &source;
}

void Unit::copy(std::string_view record, std::size_t width) {
  source_lines_.push_back({source_->last_, source_->record_number_});
  const std::size_t length = std::min(record.size(), width);
  if (record.find_first_not_of(' ', length) != std::string_view::npos) {
    cut_records.insert(cut_records.end(), static_cast<int>(source_lines_.size()));
  }
  text.append(record.substr(0, length));
  text.append(width - length, ' ');
  text.push_back('\n');
}

Origin Unit::origin(int record) const {
  if (source_ != nullptr) {
    if (record == 0) return source_->origin(0);
    return source_->origin_at(source_lines_[static_cast<std::size_t>(record - 1)]);
  }
  if (record == 0) {
    const auto lines =
        std::count(text.begin(), text.end(), '\n') + (text.empty() || text.back() == '\n' ? 0 : 1);
    return {name, std::max(static_cast<int>(lines), 1), {}};
  }
  std::size_t offset = first_record(text);
  for (int i = 1; i < record; ++i) line_at(text, offset, offset);
  return origin_at({offset, record});
}

Origin Unit::origin_at(const SourceLine& line) const {
  std::size_t after = 0;
  return {name, line.number, line_at(text, line.offset, after)};
}

}  // namespace varpre
