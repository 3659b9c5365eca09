#pragma once

#include <cstddef>
#include <span>

// Species, reactions, slots and places are numbered from 1, in the data as in the files. Numbers and counts
// are `int`.
namespace varpre {

// The element with a number from 1 on.
template <class Range>
constexpr decltype(auto) at(Range&& range, int number) {
  return range[static_cast<std::size_t>(number - 1)];
}

// The elements 1..count.
template <class Range>
constexpr auto first(Range&& range, int count) {
  return std::span(range).first(static_cast<std::size_t>(count));
}

// The `count` elements behind those.
template <class Range>
constexpr auto behind(Range&& range, int before, int count) {
  return std::span(range).subspan(static_cast<std::size_t>(before), static_cast<std::size_t>(count));
}

// How many elements there are.
template <class Range>
constexpr int count_of(const Range& range) {
  return static_cast<int>(range.size());
}

}  // namespace varpre
