#include "textio/channel/input.h"

#include <algorithm>
#include <iterator>

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

Input::Input(int unit_number, std::string file_name, Storage where)
    : number(unit_number), name(std::move(file_name)), storage_(where) {}

void Input::open() {
  if (storage_ == Storage::disk) file_.emplace(open_or_create_input(name, was_absent_));
  if (storage_ == Storage::read_only) {
    file_ = open_input(name);
    was_absent_ = !file_;
  }
}

void Input::load() {
  if (file_) text = read_to_end(*file_, name, read_error_);
  file_.reset();
  lines_ = {};
  rewind();
}

void Input::save() const {
  if (storage_ != Storage::disk) return;
  FreshFile file(name);
  std::string padded;
  for_each_record([&](int, std::string_view record) {
    padded.append(record).append(width_ - record.size(), ' ').push_back('\n');
    if (padded.size() < file_piece) return;
    file.write(padded);
    padded.clear();
  });
  file.write(padded);
  file.take_place();
}

bool Input::take(Cursor& cursor, std::string_view& record) const {
  if (!advance(cursor, record)) return false;
  // A line cut directly behind a carriage return: in the file of the copy that is part of the line end.
  if (source_ != nullptr && record.size() == width_ && record.ends_with('\r')) record.remove_suffix(1);
  return true;
}

bool Input::pass(std::string_view& record) {
  return take(cursor_, record);
}

bool Input::next(std::string_view& record) {
  if (!pass(record)) return false;
  mark_read();
  return true;
}

void Input::mark_read() {
  if (source_ != nullptr && cursor_.record_number > 0)
    read_[static_cast<std::size_t>(cursor_.record_number) - 1] = true;
}

bool Input::is_read(int record) const {
  return read_[static_cast<std::size_t>(record) - 1];
}

bool Input::peek(std::string_view& record) const {
  Cursor cursor = cursor_;
  return take(cursor, record);
}

Input::Cursor Input::beginning() const {
  const std::size_t first = first_record(text);
  return {.position = first, .last = first};
}

bool Input::advance(Cursor& cursor, std::string_view& record) const {
  if (source_ == nullptr) {
    if (cursor.position >= text.size()) return false;
    cursor.last = cursor.position;
    record = line_at(text, cursor.last, cursor.position);
  } else {
    if (cursor.record_number == copied_) return false;
    if (cursor.stretches < stretches_.size() &&
        stretches_[cursor.stretches].record == cursor.record_number + 1) {
      cursor.position = stretches_[cursor.stretches++].offset;
    }
    cursor.last = cursor.position;
    record = line_at(source_->text, cursor.last, cursor.position).substr(0, width_);
  }
  ++cursor.record_number;
  return true;
}

void Input::rewind() {
  cursor_ = beginning();
}

void Input::begin_copy(const Input& source, std::size_t width) {
  text.clear();
  source_ = &source;
  width_ = width;
  copied_ = 0;
  stretches_.clear();
  read_.clear();
  lines_ = {};
  cut_records.clear();
  rewind();
}

void Input::copy() {
  constexpr int longest_stretch = 64;  // bounds the way from its first record to any other
  const Cursor& from = source_->cursor_;
  ++copied_;
  read_.push_back(false);
  const bool follows = !stretches_.empty() && copied_ - stretches_.back().record < longest_stretch &&
                       from.record_number - stretches_.back().line == copied_ - stretches_.back().record;
  if (!follows) stretches_.push_back({copied_, from.record_number, from.last});
  if (from.position - from.last <= width_) return;
  std::size_t after = 0;
  if (line_at(source_->text, from.last, after).find_first_not_of(' ', width_) != std::string_view::npos) {
    cut_records.insert(cut_records.end(), copied_);
  }
}

int Input::count_lines() const {
  if (lines_.count == 0) {
    const auto feeds = std::count(text.begin(), text.end(), '\n');
    lines_.count = static_cast<int>(feeds) + (text.empty() || text.back() == '\n' ? 0 : 1);
  }
  return std::max(lines_.count, 1);
}

// A line of this file from which the one asked for is not far.
Input::Stretch Input::nearest_line(int record) const {
  constexpr int distance = 64;
  std::vector<std::size_t>& starts = lines_.starts;
  if (starts.empty()) starts.push_back(first_record(text));
  const int before = (record - 1) / distance;
  while (static_cast<int>(starts.size()) <= before) {
    std::size_t offset = starts.back();
    for (int i = 0; i < distance; ++i) line_at(text, offset, offset);
    starts.push_back(offset);
  }
  const int line = before * distance + 1;
  return {line, line, starts[static_cast<std::size_t>(before)]};
}

Origin Input::origin(int record) const {
  const Input& file = source_ == nullptr ? *this : *source_;
  if (record == 0) return {file.name, file.count_lines(), {}};
  // The line before which to begin, and how far it is from there.
  Stretch stretch{};
  if (record == cursor_.record_number) {
    const Stretch first = source_ == nullptr ? Stretch{} : stretches_[cursor_.stretches - 1];
    stretch = {record, first.line + record - first.record, cursor_.last};
  } else if (source_ == nullptr) {
    stretch = nearest_line(record);
  } else {
    stretch = *std::prev(std::upper_bound(stretches_.begin(), stretches_.end(), record,
                                          [](int wanted, const Stretch& r) { return wanted < r.record; }));
  }
  std::size_t offset = stretch.offset;
  for (int i = stretch.record; i < record; ++i) line_at(file.text, offset, offset);
  std::size_t after = 0;
  return {file.name, stretch.line + record - stretch.record, line_at(file.text, offset, after)};
}

}  // namespace varpre
