#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>

#include "textio/record/format.h"
#include "textio/record/items.h"
#include "textio/record/number_format.h"
#include "textio/record/text.h"

// Output statements whose number of values is known while the program is compiled. Their records are laid out
// then, as an image with empty fields; at run time the image is copied and the values are edited into it.
namespace varpre::record_detail {

// A value as its type shows it, with the characters of a text.
struct ValueType {
  ItemKind kind = ItemKind::integer;
  int length = 0;
};

// How many values an item holds, and of which type its i-th one is; count 0 of an item that does not tell.
template <class T>
struct Fixed {
  static constexpr std::size_t count = refers_to_values<T> ? 0 : Traits<T>::items;
  static constexpr ValueType type(std::size_t) { return {Traits<T>::kind, text_length<T>}; }
};
template <class T, std::size_t N>
struct Fixed<std::array<T, N>> {
  static constexpr std::size_t count = N * Fixed<T>::count;
  static constexpr ValueType type(std::size_t i) { return Fixed<T>::type(i); }
};
template <class T, std::size_t N>
struct Fixed<std::span<T, N>> : Fixed<std::array<std::remove_const_t<T>, N == std::dynamic_extent ? 0 : N>> {
};
template <class... Spans>
struct Fixed<Zip<Spans...>> {
  static constexpr bool fixed = ((Fixed<Spans>::count > 0) && ...);
  static constexpr std::size_t count = fixed ? (Fixed<Spans>::count + ...) : 0;
  static_assert(((!fixed || Fixed<Spans>::count * sizeof...(Spans) == count) && ...), "one length");
  static constexpr ValueType type(std::size_t i) {
    return std::array{Fixed<Spans>::type(0)...}[i % sizeof...(Spans)];
  }
};

// Place of a value in the image.
struct Field {
  std::size_t offset = 0;
  std::size_t width = 0;  // of a text: the characters taken
  RealEdit edit{};
  Edit::Kind kind = Edit::Kind::literal;  // of its descriptor; `literal` where that is for another type
};

// Lays records out: counts their characters, and fills image and fields unless they are empty.
template <std::size_t Values>
struct ImageSink {
  const std::array<ValueType, Values>& types;
  std::span<char> image;
  std::span<Field> fields_;
  std::size_t length = 0;
  std::size_t value = 0;

  constexpr bool left() const { return value < Values; }
  constexpr void text(std::string_view characters) {
    for (const char c : characters) put(c);
  }
  constexpr void blanks(int count) { fill(' ', count); }
  constexpr void end_record() { put('\n'); }
  constexpr bool fields(const Edit& edit, int scale, Walk&) {
    const ValueType& type = types[value];
    const int width = edit.width > 0 ? edit.width : type.length;  // A takes as many columns as the item holds
    const bool fits = takes(edit, type.kind);
    if (!fields_.empty()) {
      const int taken = type.kind == ItemKind::text ? std::min(width, type.length) : width;
      fields_[value] = {length + static_cast<std::size_t>(width - taken),
                        static_cast<std::size_t>(taken),
                        {edit.width, edit.value, scale},
                        fits ? edit.kind : Edit::Kind::literal};
    }
    fill(fits ? ' ' : '*', width);
    blanks(edit.gap);
    ++value;
    return true;
  }

 private:
  constexpr void put(char c) {
    if (!image.empty()) image[length] = c;
    ++length;
  }
  constexpr void fill(char c, int count) {
    for (int i = 0; i < count; ++i) put(c);
  }
};

template <FormatText Text, class... Items>
class Image {
 public:
  static constexpr std::size_t values = (Fixed<Items>::count + ... + 0);

 private:
  static constexpr auto types = [] {
    std::array<ValueType, values> list{};
    [[maybe_unused]] std::size_t at = 0;
    [[maybe_unused]] const auto add = [&]<class Item>(std::type_identity<Item>) {
      for (std::size_t i = 0; i < Fixed<Item>::count; ++i) list[at++] = Fixed<Item>::type(i);
    };
    (add(std::type_identity<Items>{}), ...);
    return list;
  }();
  static constexpr std::size_t length = [] {
    ImageSink<values> sink{types, {}, {}};
    walk_output(Format<Text>::view, sink);
    return sink.length;
  }();
  struct Layout {
    std::array<char, length> characters{};
    std::array<Field, values> fields{};
  };
  static constexpr Layout layout = [] {
    Layout made;
    ImageSink<values> sink{types, made.characters, made.fields};
    walk_output(Format<Text>::view, sink);
    return made;
  }();

 public:
  static constexpr std::string_view characters{layout.characters.data(), length};
  static constexpr std::span<const Field> fields{layout.fields};
};

// Edit the values of an item into the records, from the next field on.
inline void edit_into(char* records, const Field*& field, int value) {
  if (field->kind == Edit::Kind::integer) {
    edit_integer(records + field->offset, static_cast<int>(field->width), value);
  }
  ++field;
}
inline void edit_into(char* records, const Field*& field, double value) {
  if (field->kind == Edit::Kind::exponent) {
    edit_exponent(records + field->offset, field->edit, value);
  } else if (field->kind == Edit::Kind::fixed) {
    edit_fixed(records + field->offset, field->edit, value);
  }
  ++field;
}
template <std::size_t N>
void edit_into(char* records, const Field*& field, const Text<N>& value) {
  if (field->kind == Edit::Kind::text) {
    std::memcpy(records + field->offset, value.chars.data(), field->width);
  }
  ++field;
}
template <class Range>
requires requires(const Range& range) {
  range.begin();
}
void edit_into(char* records, const Field*& field, const Range& values) {
  for (const auto& value : values) edit_into(records, field, value);
}

template <class First, class... Others>
void edit_into(char* records, const Field*& field, const Zip<First, Others...>& zip) {
  for (std::size_t i = 0; i < First::extent; ++i) {
    std::apply([&](const auto&... span) { (edit_into(records, field, span[i]), ...); }, zip.spans);
  }
}

inline bool finite(int) {
  return true;
}
inline bool finite(double value) {
  return std::isfinite(value);
}
template <std::size_t N>
bool finite(const Text<N>&) {
  return true;
}
template <class Range>
requires requires(const Range& range) {
  range.begin();
}
bool finite(const Range& values) {
  for (const auto& value : values) {
    if (!finite(value)) return false;
  }
  return true;
}

template <class... Spans>
bool finite(const Zip<Spans...>& zip) {
  return std::apply([](const auto&... span) { return (finite(span) && ...); }, zip.spans);
}

// Appends the records of one output statement. False, with nothing appended, when `finite_only` is set and a
// value is a NaN or an infinity.
template <FormatText Text, class... Items>
bool write_image(std::string& text, bool finite_only, const Items&... items) {
  if (finite_only && !(finite(items) && ...)) return false;
  using Records = Image<Text, Items...>;
  const std::size_t start = text.size();
  text.append(Records::characters);
  [[maybe_unused]] const Field* field = Records::fields.data();
  (edit_into(text.data() + start, field, items), ...);
  return true;
}

}  // namespace varpre::record_detail
