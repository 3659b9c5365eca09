#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <tuple>
#include <type_traits>

#include "textio/record/format.h"
#include "textio/record/text.h"

// The items of a statement of the record notation (record.h): what their types are to it, and how a list of
// them looks to the engine.
namespace varpre {

enum class ItemKind : std::uint8_t { integer, real, text };

// One or more values of one kind, `stride` bytes apart. Pointer is const void* (output) or void* (input).
template <class Pointer>
struct Item {
  ItemKind kind;
  Pointer data;            // nullptr: an integer without value
  std::size_t count = 1;   // values
  std::size_t stride = 0;  // bytes from one value to the next
  std::size_t length = 0;  // characters of a text
  std::size_t zipped = 1;  // on the first of a group of items that take turns: how many they are
};
using OutputItem = Item<const void*>;
using InputItem = Item<void*>;

// Spans of equal length whose values take turns: a1, b1, a2, b2, ...
template <class... Spans>
struct Zip {
  std::tuple<Spans...> spans;
};
template <class... Ranges>
auto zip(Ranges&&... ranges) {
  return Zip<decltype(std::span(ranges))...>{{std::span(ranges)...}};
}

namespace record_detail {

// What a type is to the notation: the kind of its values, how many they are (0: known at run time only),
// whether each has a place in the record that is known while compiling, characters of a text.
template <ItemKind Kind, std::size_t Values = 1, bool Fixed = true, std::size_t Length = 0>
struct ItemType {
  static constexpr ItemKind kind = Kind;
  static constexpr std::size_t values = Values;
  static constexpr bool fixed = Fixed;
  static constexpr std::size_t length = Length;
};

// All types that are items. Any other has no `kind`.
template <class T>
struct Traits {};
template <>
struct Traits<int> : ItemType<ItemKind::integer> {};
template <>
struct Traits<std::optional<int>> : ItemType<ItemKind::integer, 1, false> {};
template <>
struct Traits<double> : ItemType<ItemKind::real> {};
template <std::size_t N>
struct Traits<Text<N>> : ItemType<ItemKind::text, 1, true, N> {};
template <>
struct Traits<std::string_view> : ItemType<ItemKind::text, 1, false> {};
template <class T, std::size_t N>
struct Traits<std::array<T, N>>
    : ItemType<Traits<T>::kind, N * Traits<T>::values, Traits<T>::fixed, Traits<T>::length> {};
template <class T>
struct Traits<std::span<T>> : ItemType<Traits<std::remove_const_t<T>>::kind, 0, false> {};
template <class T, std::size_t N>
struct Traits<std::span<T, N>> : Traits<std::array<std::remove_const_t<T>, N>> {};
template <class First, class... Others>
struct Traits<Zip<First, Others...>>
    : ItemType<Traits<First>::kind, Traits<First>::values*(1 + sizeof...(Others)),
               (Traits<First>::fixed && ... && Traits<Others>::fixed)> {};

template <class T>
concept RecordItem = requires {
  Traits<T>::kind;
};

// How many Item entries describe one argument.
template <class T>
constexpr std::size_t entries = 1;
template <class... Spans>
constexpr std::size_t entries<Zip<Spans...>> = sizeof...(Spans);

template <class Pointer, class T>
Item<Pointer> values(T* data, std::size_t count) {
  using Type = Traits<std::remove_const_t<T>>;
  return {Type::kind, data, count, sizeof(T), Type::length};
}
template <class Pointer, class T, std::size_t N>
Item<Pointer> values(std::array<T, N>* data, std::size_t count) {
  return values<Pointer>(data->data(), count * N);
}
template <class Pointer, class T, std::size_t N>
Item<Pointer> values(const std::array<T, N>* data, std::size_t count) {
  return values<Pointer>(data->data(), count * N);
}

// Types whose object is not itself the value, but tells where the values are.
template <class T>
constexpr bool refers_to_values = false;
template <>
inline constexpr bool refers_to_values<std::string_view> = true;
template <>
inline constexpr bool refers_to_values<std::optional<int>> = true;
template <class T, std::size_t N>
constexpr bool refers_to_values<std::span<T, N>> = true;
template <class... Spans>
constexpr bool refers_to_values<Zip<Spans...>> = true;

template <class Pointer, class T>
requires(!refers_to_values<std::remove_const_t<T>>) void add(Item<Pointer>*& out, T& value) {
  *out++ = values<Pointer>(&value, 1);
}
template <class Pointer>
void add(Item<Pointer>*& out, const std::optional<int>& value) {
  *out++ = {ItemKind::integer, value ? &*value : nullptr};
}
template <class Pointer>
void add(Item<Pointer>*& out, const std::string_view& value) {
  *out++ = {ItemKind::text, value.data(), 1, 0, value.size()};
}
template <class Pointer, class T, std::size_t N>
void add(Item<Pointer>*& out, const std::span<T, N>& span) {
  if (span.empty()) {
    *out++ = {Traits<std::remove_const_t<T>>::kind, nullptr, 0};
  } else {
    *out++ = values<Pointer>(span.data(), span.size());
  }
}
template <class Pointer, class... Spans>
void add(Item<Pointer>*& out, const Zip<Spans...>& zip) {
  Item<Pointer>* const first = out;
  std::apply([&](const auto&... span) { (add(out, span), ...); }, zip.spans);
  first->zipped = sizeof...(Spans);
}

template <class Pointer, class... Items>
auto describe(Items&... items) {
  std::array<Item<Pointer>, (entries<std::remove_const_t<Items>> + ... + 0)> list{};
  [[maybe_unused]] Item<Pointer>* out = list.data();
  (add(out, items), ...);
  return list;
}

constexpr bool takes(const Edit& edit, ItemKind kind) {
  switch (kind) {
    case ItemKind::integer: return edit.kind == Edit::Kind::integer;
    case ItemKind::real: return edit.kind == Edit::Kind::fixed || edit.kind == Edit::Kind::exponent;
    case ItemKind::text: return edit.kind == Edit::Kind::text;
  }
  return false;
}

}  // namespace record_detail
}  // namespace varpre
