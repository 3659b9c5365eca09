#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

#include "textio/record/format.h"
#include "textio/record/items.h"
#include "textio/record/record_image.h"
#include "textio/record/text.h"

// The record notation: formatted and free-form output, formatted input. What reads and writes the files of a
// run by it is in channel/statement.h and findings/listing.h.
//
//   write<"(' XMOL',7X,5(1PE20.13,1X))">(NFISTO, XMOL);
//   if (!read<"(A8,1X,E10.2)">(NFICON, name, value)) ...
//
// Items are integers (int; std::optional<int>, written as asterisks when empty), reals (double), texts
// (Text<N>, std::string_view), arrays and spans of them, and zip(a, b, ...), which takes one value of each
// span in turn. A format that is malformed, or has no descriptor for an item's type, does not compile.
namespace varpre {

// A field of a read statement; number 0: none.
struct FieldPlace {
  int number = 0;  // in the statement, from 1
  int record = 0;  // of the input
  int column = 0;  // its first column, from 1
  int width = 0;
};

// How a read statement ended. Converts to true when all items were read. Besides it tells what reads without
// error but was hardly meant.
struct ReadResult {
  enum class Status { ok, end_of_file, unreadable };
  Status status = Status::ok;
  FieldPlace unreadable;
  FieldPlace without_point;  // a real field without decimal point, its value moved by the implied one
  FieldPlace
      digit_in_gap;  // a digit in a column that is not read, next to this field; `column` is the digit's
  const FormatView* format = nullptr;

  explicit operator bool() const { return status == Status::ok; }
  bool end_of_file() const { return status == Status::end_of_file; }
  bool is_unreadable() const { return status == Status::unreadable; }
};

namespace record_detail {

// Appends the records of one output statement, each ended by a line feed. False, with nothing appended, when
// `finite_only` is set and an item is a NaN or an infinity.
bool format_records(std::string& text, const FormatView& format, std::span<const OutputItem> items,
                    bool finite_only);

// Where a read statement takes its records from: next(from, record) is false when none is left.
struct RecordSource {
  void* from;
  bool (*next)(void* from, std::string_view& record);
  int record_number;  // of the record before the statement
};
ReadResult read_records(RecordSource source, const FormatView& format, std::span<const InputItem> items);
void format_free(std::string& text, std::span<const OutputItem> items);

// Whether a format serves the items: those before the first array or span one by one, the others by kind.
template <class T>
struct Check {
  static constexpr bool has_descriptor(const FormatView& format) {
    for (const Edit& edit : format.edits) {
      if (takes(edit, Traits<T>::kind)) return true;
    }
    return false;
  }
  static constexpr std::size_t items = Traits<T>::items;
  static constexpr bool next_descriptor_takes(Walk& walk) {
    for (bool reverted = false;;) {
      const Edit& edit = walk.next();
      if (edit.takes_item()) return takes(edit, Traits<T>::kind);
      if (edit.kind == Edit::Kind::end) {
        if (reverted) return false;
        walk.revert();
        reverted = true;
      }
    }
  }
};
template <class... Spans>
struct Check<Zip<Spans...>> {
  static constexpr bool has_descriptor(const FormatView& format) {
    return (Check<Spans>::has_descriptor(format) && ...);
  }
  static constexpr std::size_t items = 0;
  static constexpr bool next_descriptor_takes(Walk&) { return true; }
};

template <class... Items>
constexpr bool items_fit(const FormatView& format) {
  Walk walk(format);
  bool counted = true;
  bool fit = true;
  [[maybe_unused]] const auto check = [&]<class T>(std::type_identity<T>) {
    counted = counted && Check<T>::items == 1;
    fit = fit && (counted ? Check<T>::next_descriptor_takes(walk) : Check<T>::has_descriptor(format));
  };
  (check(std::type_identity<std::remove_const_t<Items>>{}), ...);
  if (!fit) format_detail::format_error_item_has_no_descriptor_of_its_type();
  return fit;
}

// False, with nothing appended, when `finite_only` is set and an item is a NaN or an infinity.
template <FormatText Text, class... Items>
bool append_statement(std::string& text, bool finite_only, const Items&... items) {
  static_assert(items_fit<Items...>(Format<Text>::view));
  if constexpr (((Fixed<Items>::count > 0) && ...)) {
    return write_image<Text>(text, finite_only, items...);
  } else {
    return format_records(text, Format<Text>::view, describe<const void*>(items...), finite_only);
  }
}

// Appends a free-form record.
template <class... Items>
void append_free(std::string& text, const Items&... items) {
  static_assert(((Traits<Items>::kind != ItemKind::real && !std::is_same_v<Items, std::optional<int>>)&&...));
  const auto list = describe<const void*>(items...);
  format_free(text, list);
}

template <FormatText Text, class... Items>
ReadResult read_statement(const RecordSource& source, Items&... items) {
  static_assert(items_fit<std::remove_reference_t<Items>...>(Format<Text>::view));
  const auto list = describe<void*>(items...);
  return read_records(source, Format<Text>::view, list);
}

}  // namespace record_detail
}  // namespace varpre
