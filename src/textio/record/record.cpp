#include "textio/record/record.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "textio/record/number_format.h"

namespace varpre::record_detail {
namespace {

// Takes the values of an item list one by one; zipped items take turns.
template <class Pointer>
class Values {
 public:
  explicit Values(std::span<const Item<Pointer>> items) : items_(items) { skip_empty(); }

  bool left() const { return first_ < items_.size(); }
  const Item<Pointer>& item() const { return items_[first_ + column_]; }

  template <class T>
  T* value() const {
    using Byte = std::conditional_t<std::is_const_v<T>, const char, char>;
    return reinterpret_cast<T*>(static_cast<Byte*>(item().data) + row_ * item().stride);
  }

  // How many values from this one on stand in one item, one after the other.
  int run() const {
    constexpr std::size_t most = format_detail::widest_field;
    return item().zipped > 1 || column_ > 0 ? 1 : static_cast<int>(std::min(item().count - row_, most));
  }
  void advance(int count = 1) {
    if (++column_ < items_[first_].zipped) return;
    column_ = 0;
    row_ += static_cast<std::size_t>(count);
    if (row_ < items_[first_].count) return;
    row_ = 0;
    first_ += items_[first_].zipped;
    skip_empty();
  }

 private:
  void skip_empty() {
    while (left() && items_[first_].count == 0) first_ += items_[first_].zipped;
  }

  std::span<const Item<Pointer>> items_;
  std::size_t first_ = 0;   // of the group of items in turn
  std::size_t column_ = 0;  // within the group
  std::size_t row_ = 0;
};

// Collects the characters of a statement and appends them in few pieces.
class Output {
 public:
  explicit Output(std::string& out) : out_(out) {}

  // Room for the next `count` characters.
  char* extend(int count) {
    if (end_ - at_ < count) pass_on();
    at_ += count;
    return at_ - count;
  }
  void blanks(int count) {
    constexpr std::string_view usual = "        ";
    char* const at = extend(count);
    if (count <= static_cast<int>(usual.size())) {
      std::memcpy(at, usual.data(), usual.size());  // a fixed size is a single store; the rest is overwritten
    } else {
      std::memset(at, ' ', static_cast<std::size_t>(count));
    }
  }
  void put(char c) { *extend(1) = c; }
  void put(const char* text, std::size_t count) {
    if (count == 0) return;  // an empty text may have no address
    if (count > piece) {     // a text item longer than any field
      pass_on();
      out_.append(text, count);
      return;
    }
    std::memcpy(extend(static_cast<int>(count)), text, count);
  }

  void pass_on() {
    out_.append(chars_.data(), static_cast<std::size_t>(at_ - chars_.data()));
    at_ = chars_.data();
  }

 private:
  static constexpr std::size_t piece = 1024;
  static_assert(piece >= format_detail::widest_field);

  std::string& out_;
  std::array<char, piece + 8> chars_;  // room for what `blanks` stores beyond the end
  char* at_ = chars_.data();
  char* end_ = chars_.data() + piece;
};

void append_text(Output& out, std::string_view text, int width) {
  const int length = static_cast<int>(text.size());
  if (width == 0) width = length;  // A takes as many columns as the item holds
  if (length < width) out.blanks(width - length);
  out.put(text.data(), static_cast<std::size_t>(std::min(length, width)));
}

template <class T>
T value_at(const char* place) {
  T value;
  std::memcpy(&value, place, sizeof value);
  return value;
}

// Edits a value, a text with its length, into its field. False when the field holds asterisks.
inline bool edit_value(char* field, const FieldEdit& edit, const char* value, std::size_t length) {
  const auto width = static_cast<std::size_t>(edit.places.width);
  switch (edit.kind) {
    case Edit::Kind::exponent: return edit_exponent(field, edit.places, value_at<double>(value));
    case Edit::Kind::fixed: return edit_fixed(field, edit.places, value_at<double>(value));
    case Edit::Kind::integer: return edit_integer(field, edit.places.width, value_at<int>(value));
    case Edit::Kind::text:
      std::memcpy(field + width - std::min(length, width), value, std::min(length, width));
      return true;
    default: std::memset(field, '*', width); return false;
  }
}

bool is_numeric(const Edit& edit) {
  return edit.takes_item() && edit.kind != Edit::Kind::text;
}

// One record while it is read: columns beyond its end are blanks.
class Columns {
 public:
  explicit Columns(std::string_view record) : record_(record) {}

  int at = 0;  // columns taken so far

  // What stands in the next `width` columns, without those beyond the end of the record.
  std::string_view take(int width) {
    const std::size_t start = std::min(static_cast<std::size_t>(at), record_.size());
    at += width;
    return record_.substr(start, static_cast<std::size_t>(width));
  }

  bool digit_at(int column) const { return is_digit(at_column(column)); }
  bool sign_at(int column) const { return at_column(column) == '-'; }

 private:
  char at_column(int column) const {
    const auto i = static_cast<std::size_t>(column) - 1;
    return i < record_.size() ? record_[i] : ' ';
  }

  std::string_view record_;
};

// Watches the columns of a statement for what was hardly meant. Notes the first of each kind.
class ColumnWatch {
 public:
  ColumnWatch(const int& record_number, ReadResult& result)
      : record_number_(record_number), result_(result) {}

  // Before a field is taken.
  void field_begins(const Columns& columns, const Edit& edit, int number) {
    const bool numeric = is_numeric(edit);
    field_ = {number, 0, columns.at + 1, edit.width};
    if (numeric && skipped_) {
      if (columns.sign_at(columns.at)) note(result_.digit_in_gap, columns.at);
      note_digit(columns, columns.at);
    } else if (numeric && numeric_ && columns.digit_at(columns.at) && columns.digit_at(columns.at + 1)) {
      note(result_.cut, columns.at + 1);
    }
    skipped_ = false;
    numeric_ = numeric;
  }
  void real_taken(std::string_view field, const Edit& edit, int scale, double value) {
    if (scale != 0 && value != 0 && field.find_first_of("EeDd") == std::string_view::npos) {
      note(result_.scaled, field_.column);
    }
    if (edit.value == 0 || value == 0 || field.find('.') != std::string_view::npos) return;
    note(result_.without_point, field_.column);
  }
  // Columns are skipped, or the record is left.
  void gap_begins(const Columns& columns) {
    if (numeric_) note_digit(columns, columns.at + 1);
    skipped_ = true;
    numeric_ = false;
  }

 private:
  void note_digit(const Columns& columns, int column) {
    if (columns.digit_at(column)) note(result_.digit_in_gap, column);
  }
  void note(FieldPlace& place, int column) {
    if (place.number > 0) return;
    place = field_;
    place.column = column;
    place.record = record_number_;
  }

  const int& record_number_;
  ReadResult& result_;
  FieldPlace field_;
  bool numeric_ = false;  // the last edit was a numeric field
  bool skipped_ = false;  // the last edit skipped columns
};

// Stores the last `length` columns of a field, of which a narrower one has blanks behind it.
void store_text(char* item, std::size_t length, std::string_view field, std::size_t width) {
  if (width > length) field.remove_prefix(std::min(width - length, field.size()));
  std::memcpy(item, field.data(), field.size());
  std::memset(item + field.size(), ' ', length - field.size());
}

// Stores a field in the item in turn, blanks where the record has ended; false when its characters do not
// make a value.
bool store_value(const Values<void*>& values, const Edit& edit, int scale, std::string_view field, int width,
                 ColumnWatch& watch) {
  if (!takes(edit, values.item().kind)) return false;
  switch (values.item().kind) {
    case ItemKind::text:
      store_text(values.value<char>(), values.item().length, field, static_cast<std::size_t>(width));
      return true;
    case ItemKind::integer:
      if (const auto value = read_integer(field)) {
        *values.value<int>() = *value;
        return true;
      }
      return false;
    case ItemKind::real:
      if (const auto plain = read_plain_real(field, scale)) {
        *values.value<double>() = *plain;
        return true;
      }
      if (const auto value = read_real(field, {edit.width, edit.value, scale})) {
        *values.value<double>() = *value;
        watch.real_taken(field, edit, scale, *value);
        return true;
      }
      return false;
  }
  return false;
}

// Stores that a field of asterisks holds no number; false when the field is another one.
bool store_absent(const Values<void*>& values, std::string_view field) {
  if (field.empty() || field.find_first_not_of('*') != std::string_view::npos) return false;
  switch (values.item().kind) {
    case ItemKind::integer: *values.value<int>() = absent_integer; return true;
    case ItemKind::real: *values.value<double>() = std::numeric_limits<double>::quiet_NaN(); return true;
    case ItemKind::text: return false;
  }
  return false;
}

}  // namespace

bool all_finite(std::span<const OutputItem> items) {
  for (const OutputItem& item : items) {
    if (item.kind != ItemKind::real) continue;
    const char* at = static_cast<const char*>(item.data);
    for (std::size_t i = 0; i < item.count; ++i, at += item.stride) {
      if (!std::isfinite(value_at<double>(at))) return false;
    }
  }
  return true;
}

Written append_records(std::string& text, const FormatView& format, std::span<const OutputItem> items) {
  struct Sink {
    Output out;
    Values<const void*> values;
    bool fit = true;

    bool left() const { return values.left(); }
    void text(std::string_view characters) { out.put(characters.data(), characters.size()); }
    void blanks(int count) { out.blanks(count); }
    void end_record() { out.put('\n'); }
    void fields(const Edit& edit, int scale, Walk& walk) {
      const OutputItem& item = values.item();
      const int count = 1 + walk.repeat(values.run() - 1);
      // An integer without value gets asterisks, as does what reaches a descriptor of another type.
      FieldEdit how = field_edit(edit, edit.width, scale, item.kind);
      if (item.kind == ItemKind::integer && item.data == nullptr) how.kind = Edit::Kind::literal;
      const char* at = values.value<const char>();
      for (int i = 0; i < count; ++i, at += item.stride) {
        if (how.kind == Edit::Kind::text) {
          append_text(out, {at, item.length}, edit.width);
        } else {
          fit &= edit_value(out.extend(edit.width), how, at, item.length);
        }
        out.blanks(edit.gap);
      }
      values.advance(count);
    }
  } sink{Output(text), Values(items)};

  walk_output(format, sink);
  sink.out.pass_on();
  return sink.fit ? Written::whole : Written::with_asterisks;
}

Written append_image(std::string& text, std::string_view image, const Field* field,
                     std::span<const OutputItem> items) {
  const std::size_t start = text.size();
  text.append(image);
  char* const records = text.data() + start;
  bool fit = true;
  // Items are taken by value: what is written into the record cannot change them then.
  const auto edit = [&](const OutputItem item, std::size_t begin, std::size_t count) {
    const char* value = static_cast<const char*>(item.data) + begin * item.stride;
    for (std::size_t i = 0; i < count; ++i, value += item.stride, ++field) {
      fit &= edit_value(records + field->offset, field->edit, value, item.length);
    }
  };
  for (std::size_t first = 0; first < items.size(); first += items[first].zipped) {
    const auto in_turn = items.subspan(first, items[first].zipped);
    const std::size_t count = in_turn[0].count;
    if (in_turn.size() == 1) {
      edit(in_turn[0], 0, count);
      continue;
    }
    for (std::size_t i = 0; i < count; ++i) {
      for (const OutputItem& item : in_turn) edit(item, i, 1);
    }
  }
  return fit ? Written::whole : Written::with_asterisks;
}

ReadResult read_records(RecordSource source, const FormatView& format, std::span<const InputItem> items) {
  ReadResult result;
  result.format = &format;
  const auto end_of_file = [&] {
    result.status = ReadResult::Status::end_of_file;
    return result;
  };
  Columns columns({});
  ColumnWatch watch(source.record_number, result);
  const auto next = [&] {
    std::string_view record;
    ++source.record_number;
    const bool found = source.next(source.from, record);
    columns = Columns(record);
    return found;
  };
  const auto skip = [&](int count) {
    watch.gap_begins(columns);
    columns.at += count;
  };
  if (!next()) return end_of_file();
  Walk walk(format);
  Values<void*> values(items);
  int field = 0;
  for (int scale = 0;;) {
    const Edit& edit = walk.next();
    switch (edit.kind) {
      case Edit::Kind::literal:
      case Edit::Kind::blanks: skip(edit.width); continue;
      case Edit::Kind::scale: scale = edit.scale; continue;
      case Edit::Kind::slash:
      case Edit::Kind::end:
        if (edit.kind == Edit::Kind::end && (!values.left() || !format.reverts)) break;
        watch.gap_begins(columns);
        if (!next()) return end_of_file();
        if (edit.kind == Edit::Kind::end) walk.revert();
        continue;
      default: {  // a colon, or a descriptor: the statement ends here when no item is left
        if (!values.left()) break;
        if (edit.kind == Edit::Kind::colon) continue;
        if (edit.scale != Edit::same_scale) scale = edit.scale;
        watch.field_begins(columns, edit, ++field);
        const int width = edit.width > 0 ? edit.width : static_cast<int>(values.item().length);
        const int first_column = columns.at + 1;
        const std::string_view characters = columns.take(width);
        if (!store_value(values, edit, scale, characters, width, watch) &&
            !(source.takes_asterisks && store_absent(values, characters))) {
          result.status = ReadResult::Status::unreadable;
          result.unreadable = {field, source.record_number, first_column, width};
          return result;
        }
        values.advance();
        if (edit.gap > 0) skip(edit.gap);
        continue;
      }
    }
    watch.gap_begins(columns);
    return result;
  }
}

void append_free_record(std::string& text, std::span<const OutputItem> items) {
  constexpr int integer_width = 11;
  Output out(text);
  out.put(' ');
  bool after_text = false;
  bool first = true;
  for (Values<const void*> values(items); values.left(); values.advance()) {
    const OutputItem& item = values.item();
    const bool is_text = item.kind == ItemKind::text;
    if (!first && !(after_text && is_text)) out.put(' ');
    if (is_text) {
      out.put(values.value<const char>(), item.length);
    } else {
      edit_integer(out.extend(integer_width), integer_width, *values.value<const int>());
    }
    after_text = is_text;
    first = false;
  }
  out.put('\n');
  out.pass_on();
}

}  // namespace varpre::record_detail
