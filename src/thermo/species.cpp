#include "thermo/species.h"

#include <bit>

namespace varpre {
namespace {

// The eight characters as one number, letters a-z as A-Z.
std::uint64_t key_of(const SpeciesName& name) {
  std::uint64_t key = 0;
  for (const char c : name.chars) {
    key = key << 8 | static_cast<unsigned char>(upper(c));
  }
  return key;
}

}  // namespace

NameIndex::NameIndex(int most) : slots_(std::bit_ceil(2 * static_cast<std::size_t>(most) + 1)) {}

NameIndex::NameIndex(std::span<const SpeciesName> names) : NameIndex(count_of(names)) {
  for (const SpeciesName& name : names) add(name);
}

int NameIndex::add(const SpeciesName& name) {
  ++count_;
  const std::uint64_t key = key_of(name);
  Slot& found = slots_[slot(key)];
  if (found.number != 0) return found.number;
  found = {key, count_};
  return 0;
}

int NameIndex::find(const SpeciesName& name) const {
  return slots_[slot(key_of(name))].number;
}

// Where a key stands, or the free slot where it would go.
std::size_t NameIndex::slot(std::uint64_t key) const {
  constexpr std::uint64_t golden_ratio = 0x9E3779B97F4A7C15;
  const std::size_t mask = slots_.size() - 1;
  std::size_t at = (key * golden_ratio >> 32) & mask;
  while (slots_[at].number != 0 && slots_[at].key != key) at = (at + 1) & mask;
  return at;
}

}  // namespace varpre
