#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>
#include <type_traits>

#include "textio/record/format.h"
#include "textio/record/items.h"
#include "textio/record/number_format.h"

// Output statements whose number of values is known while the program is compiled. Their records are laid out
// then, as an image with empty fields; at run time the image is copied and the values are edited into it.
namespace varpre::record_detail {

// A value as its type shows it, with the characters of a text.
struct ValueType {
  ItemKind kind = ItemKind::integer;
  int length = 0;
};

// The type of the i-th value of an item.
template <class T>
struct TypeOfValue {
  static constexpr ValueType at(std::size_t) {
    return {Traits<T>::kind, static_cast<int>(Traits<T>::length)};
  }
};
template <class... Spans>
struct TypeOfValue<Zip<Spans...>> {
  static constexpr ValueType at(std::size_t i) {
    return std::array{TypeOfValue<Spans>::at(0)...}[i % sizeof...(Spans)];
  }
};

// How a value is edited into its field; a descriptor of kind `literal` is for another type.
struct FieldEdit {
  Edit::Kind kind = Edit::Kind::literal;
  RealEdit places{};
};

constexpr FieldEdit field_edit(const Edit& edit, int width, int scale, ItemKind kind) {
  return {takes(edit, kind) ? edit.kind : Edit::Kind::literal, {width, edit.value, scale}};
}

// Place of a value in the image.
struct Field {
  std::size_t offset = 0;
  FieldEdit edit{};
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
  constexpr void blanks(int count) {
    for (int i = 0; i < count; ++i) put(' ');
  }
  constexpr void end_record() { put('\n'); }
  constexpr void fields(const Edit& edit, int scale, Walk&) {
    const ValueType& type = types[value];
    const int width = edit.width > 0 ? edit.width : type.length;  // A takes as many columns as the item holds
    if (!fields_.empty()) fields_[value] = {length, field_edit(edit, width, scale, type.kind)};
    blanks(width + edit.gap);
    ++value;
  }

 private:
  constexpr void put(char c) {
    if (!image.empty()) image[length] = c;
    ++length;
  }
};

template <FormatText Text, class... Items>
class Image {
 public:
  static constexpr std::size_t values = (Traits<Items>::values + ... + 0);

 private:
  static constexpr auto types = [] {
    std::array<ValueType, values> list{};
    [[maybe_unused]] std::size_t at = 0;
    [[maybe_unused]] const auto add = [&]<class Item>(std::type_identity<Item>) {
      for (std::size_t i = 0; i < Traits<Item>::values; ++i) list[at++] = TypeOfValue<Item>::at(i);
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

}  // namespace varpre::record_detail
