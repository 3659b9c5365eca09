#include "textio/channel/unit.h"

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

Unit::Unit(int unit_number, std::string file_name, Storage where)
    : number(unit_number), name(std::move(file_name)), storage_(where) {}

void Unit::open() {
  if (storage_ == Storage::disk) text = load_or_create_file(name, read_error_);
  lines_ = {};
  rewind();
}

void Unit::open_for_replacement() {
  replacement_.reset();  // it would wait for its own end otherwise
  if (storage_ == Storage::disk) replacement_ = std::make_unique<Replacement>(name);
  longest_text_ = std::string::npos;
  clear();
}

void Unit::begin_to_pass_on() {
  if (replacement_ != nullptr) longest_text_ = file_piece;
}

void Unit::flush() {
  replacement_->write(text);
  text.clear();
}

void Unit::replace() {
  if (replacement_ == nullptr) return;
  flush();
  replacement_->take_place();
  replacement_.reset();
}

void Unit::save() const {
  if (storage_ != Storage::disk) return;
  OutputFile file(name);
  std::string padded;
  for_each_record([&](int, std::string_view record) {
    padded.append(record).append(width_ - record.size(), ' ').push_back('\n');
    if (padded.size() < file_piece) return;
    file.write(padded);
    padded.clear();
  });
  file.write(padded);
  file.finish();
}

bool Unit::next(std::string_view& record) {
  if (advance(cursor_, record)) {
    // A line cut directly behind a carriage return: in the file of the copy that is part of the line end.
    if (source_ != nullptr && record.size() == width_ && record.ends_with('\r')) record.remove_suffix(1);
    return true;
  }
  if (read_error_ != 0) throw_system_error(read_error_, name);
  return false;
}

Unit::Cursor Unit::beginning() const {
  const std::size_t first = first_record(text);
  return {.position = first, .last = first};
}

bool Unit::advance(Cursor& cursor, std::string_view& record) const {
  if (source_ == nullptr) {
    if (cursor.position >= text.size()) return false;
    cursor.last = cursor.position;
    record = line_at(text, cursor.last, cursor.position);
  } else {
    if (cursor.record_number == copied_) return false;
    if (cursor.runs < runs_.size() && runs_[cursor.runs].record == cursor.record_number + 1) {
      cursor.position = runs_[cursor.runs++].offset;
    }
    cursor.last = cursor.position;
    record = line_at(source_->text, cursor.last, cursor.position).substr(0, width_);
  }
  ++cursor.record_number;
  return true;
}

void Unit::rewind() {
  cursor_ = beginning();
}

void Unit::step_back() {
  if (cursor_.position == cursor_.last) return;
  cursor_.position = cursor_.last;
  if (cursor_.runs > 0 && runs_[cursor_.runs - 1].record == cursor_.record_number) --cursor_.runs;
  --cursor_.record_number;
}

void Unit::clear() {
  text.clear();
  source_ = nullptr;
  copied_ = 0;
  runs_.clear();
  lines_ = {};
  cut_records.clear();
  rewind();
}

void Unit::begin_copy(const Unit& source, std::size_t width) {
  clear();
  source_ = &source;
  width_ = width;
}

void Unit::copy() {
  constexpr int longest_run = 64;  // bounds the way from its first record to any other
  const Cursor& from = source_->cursor_;
  ++copied_;
  const bool follows = !runs_.empty() && copied_ - runs_.back().record < longest_run &&
                       from.record_number - runs_.back().line == copied_ - runs_.back().record;
  if (!follows) runs_.push_back({copied_, from.record_number, from.last});
  if (from.position - from.last <= width_) return;
  std::size_t after = 0;
  if (line_at(source_->text, from.last, after).find_first_not_of(' ', width_) != std::string_view::npos) {
    cut_records.insert(cut_records.end(), copied_);
  }
}

int Unit::count_lines() const {
  if (lines_.counted != text.size()) {
    const auto feeds = std::count(text.begin(), text.end(), '\n');
    lines_.lines = static_cast<int>(feeds) + (text.empty() || text.back() == '\n' ? 0 : 1);
    lines_.counted = text.size();
  }
  return std::max(lines_.lines, 1);
}

// A line of this file from which the one asked for is not far.
Unit::Run Unit::nearest_line(int record) const {
  constexpr int distance = 64;
  std::vector<std::size_t>& starts = lines_.starts;
  if (starts.empty()) starts.push_back(first_record(text));
  const int wanted = (record - 1) / distance;
  while (static_cast<int>(starts.size()) <= wanted) {
    std::size_t offset = starts.back();
    for (int i = 0; i < distance; ++i) line_at(text, offset, offset);
    starts.push_back(offset);
  }
  const int line = wanted * distance + 1;
  return {line, line, starts[static_cast<std::size_t>(wanted)]};
}

Origin Unit::origin(int record) const {
  const Unit& file = source_ == nullptr ? *this : *source_;
  if (record == 0) return {file.name, file.count_lines(), {}};
  // The line before which to begin, and how far it is from there.
  const Run run = source_ == nullptr ? nearest_line(record)
                                     : *std::prev(std::upper_bound(
                                           runs_.begin(), runs_.end(), record,
                                           [](int wanted, const Run& r) { return wanted < r.record; }));
  std::size_t offset = run.offset;
  for (int i = run.record; i < record; ++i) line_at(file.text, offset, offset);
  std::size_t after = 0;
  return {file.name, run.line + record - run.record, line_at(file.text, offset, after)};
}

}  // namespace varpre
