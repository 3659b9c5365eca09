#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
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
  FieldPlace scaled;         // a real field without exponent, its value moved by the scale factor
  FieldPlace cut;            // a digit directly behind one of the field before
  FieldPlace digit_in_gap;   // a digit, or a minus sign, in a column that is not read, next to this field;
                             // `column` is its own
  const FormatView* format = nullptr;

  explicit operator bool() const { return status == Status::ok; }
  bool end_of_file() const { return status == Status::end_of_file; }
  bool is_unreadable() const { return status == Status::unreadable; }
};

// What an integer field of asterisks is read as where they are taken; of a real it is not a number.
inline constexpr int absent_integer = std::numeric_limits<int>::min();

namespace record_detail {

// What became of an output statement: with asterisks where a value did not fit its field; or nothing was
// appended, since a NaN or an infinity must not be written.
enum class Written { whole, with_asterisks, not_finite };

bool all_finite(std::span<const OutputItem> items);

// Append the records of an output statement, each ended by a line feed: of a format, or of an image and its
// fields.
Written append_records(std::string& text, const FormatView& format, std::span<const OutputItem> items);
Written append_image(std::string& text, std::string_view image, const Field* field,
                     std::span<const OutputItem> items);

// Where a read statement takes its records from: next(from, record) is false when none is left.
struct RecordSource {
  void* from;
  bool (*next)(void* from, std::string_view& record);
  int record_number;  // of the record before the statement
  bool takes_asterisks =
      false;  // a number that did not fit its field is taken as none, instead of unreadable
};
ReadResult read_records(RecordSource source, const FormatView& format, std::span<const InputItem> items);
void append_free_record(std::string& text, std::span<const OutputItem> items);

// Whether a format serves the items: those before the first array or span one by one, the others by kind.
template <class T>
struct Check {
  static constexpr bool has_descriptor(const FormatView& format) {
    for (const Edit& edit : format.edits) {
      if (takes(edit, Traits<T>::kind)) return true;
    }
    return false;
  }
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
  static constexpr bool next_descriptor_takes(Walk&) { return true; }
};

template <class... Items>
constexpr bool items_fit(const FormatView& format) {
  Walk walk(format);
  bool counted = true;
  bool fit = true;
  [[maybe_unused]] const auto check = [&]<class T>(std::type_identity<T>) {
    counted = counted && Traits<T>::values == 1;
    fit = fit && (counted ? Check<T>::next_descriptor_takes(walk) : Check<T>::has_descriptor(format));
  };
  (check(std::type_identity<std::remove_const_t<Items>>{}), ...);
  if (!fit) format_detail::format_error_item_has_no_descriptor_of_its_type();
  return fit;
}

template <class... Items>
consteval bool are_items() {
  constexpr bool all = (RecordItem<Items> && ...);
  static_assert(
      all, "an item of a record is an int, a double, a text, an array or span of these, or a zip of spans");
  return all;
}

template <FormatText Text, class... Items>
Written append_statement(std::string& text, bool finite_only, const Items&... items) {
  if constexpr (are_items<Items...>()) {
    static_assert(items_fit<Items...>(Format<Text>::view));
    const auto list = describe<const void*>(items...);
    if (finite_only && !all_finite(list)) return Written::not_finite;
    if constexpr ((Traits<Items>::fixed && ...)) {
      using Records = Image<Text, Items...>;
      return append_image(text, Records::characters, Records::fields.data(), list);
    } else {
      return append_records(text, Format<Text>::view, list);
    }
  } else {
    return Written::whole;  // where the compiler goes on to look for other faults
  }
}

// Appends a free-form record.
template <class... Items>
void append_free(std::string& text, const Items&... items) {
  if constexpr (are_items<Items...>()) {
    static_assert(
        ((Traits<Items>::kind != ItemKind::real && !std::is_same_v<Items, std::optional<int>>)&&...));
    append_free_record(text, describe<const void*>(items...));
  }
}

template <FormatText Text, class... Items>
ReadResult read_statement(const RecordSource& source, Items&... items) {
  if constexpr (are_items<std::remove_reference_t<Items>...>()) {
    static_assert(items_fit<std::remove_reference_t<Items>...>(Format<Text>::view));
    return read_records(source, Format<Text>::view, describe<void*>(items...));
  } else {
    return {};
  }
}

}  // namespace record_detail
}  // namespace varpre
