#pragma once

#include <array>
#include <span>
#include <string_view>

#include "files/keywords.h"
#include "files/store_records.h"
#include "textio/channel/statement.h"

// The records of the store file that hold values under keywords: which value stands in which place. From here
// follow what the stages write and what is read again.
namespace varpre {

// A place of a record; without a word it is not used and holds 0.
struct StoreItem {
  std::string_view word = {};
  std::string_view unit = {};
  std::string_view meaning = {};
};

struct ValueRecord {
  FormatView format;
  std::span<const StoreItem> items;
};

namespace store_values {

template <class Description>
constexpr StoreItem item_of(double Description::Values::*value) {
  if (value == nullptr) return {};
  const auto& row = keyword<Description>(value);
  return {trimmed(row.word), row.stored_unit.empty() ? row.unit : row.stored_unit, row.meaning};
}

// A record with the values of a section in its places; nullptr: a place that is not used.
template <class Description, FormatText Record, auto... Values>
struct RecordOf {
  static constexpr std::array<StoreItem, sizeof...(Values)> items{item_of<Description>(Values)...};
  static constexpr ValueRecord record{Format<Record>::view, items};

  static double value_of(const typename Description::Values& values, double Description::Values::*value) {
    return value == nullptr ? 0 : values.*value;
  }
  // To the store file, or to a text.
  template <class Sink>
  static void write(Sink& sink, const typename Description::Values& values) {
    varpre::write<Record>(sink, value_of(values, Values)...);
  }
};

// Records that follow one another.
template <class... Records>
struct Block {
  static constexpr std::array<ValueRecord, sizeof...(Records)> records{Records::record...};

  template <class Sink, class Values>
  static void write(Sink& sink, const Values& values) {
    (Records::write(sink, values), ...);
  }
};

using F = FlameConditions;
template <FormatText Record, auto... Values>
using FlameRecord = RecordOf<FlameSection, Record, Values...>;
// Its first records hold whole numbers.
using FlameCounts =
    Block<FlameRecord<store_records::grid, &F::NG, &F::NGK>, FlameRecord<store_records::geometry, &F::GE>>;
using FlameValues =
    Block<FlameRecord<store_records::radii, &F::RI, &F::RO, nullptr, &F::VPLU>,
          FlameRecord<store_records::times, &F::TSTA, &F::TE, &F::NT, &F::NMAX>,
          FlameRecord<store_records::energy_source, &F::SE, &F::SW, &F::ST, &F::SOGR>,
          FlameRecord<store_records::steps, &F::STEP, &F::ATOL, &F::RTOL, &F::RS>,
          FlameRecord<store_records::profile, &F::AMPL, &F::SIGM, &F::RMAX, &F::ALPH, &F::OMEG>,
          FlameRecord<store_records::stops, &F::TSTO, &F::MSTO, &F::ART, &F::RB>,
          FlameRecord<store_records::weights, &F::WFR, &F::WFP, &F::WFU, &F::WFT>>;

using D = TwoDimensionalParameters;
template <FormatText Record, auto... Values>
using PlaneRecord = RecordOf<TwoDimensionalSection, Record, Values...>;
using TwoDimensionalValues =
    Block<PlaneRecord<store_records::velocities, &D::UINI, &D::VINI, &D::RI2, &D::DIST>,
          PlaneRecord<store_records::limits, nullptr, &D::TMAX, &D::HMAX, &D::REDF>,
          PlaneRecord<store_records::sources, &D::XSOU, &D::YSOU, nullptr, nullptr>,
          PlaneRecord<store_records::gravity, &D::GACC, nullptr, nullptr, nullptr>>;

// A keyword of the surface conditions, which have a record each; only its word where it is none of them.
constexpr StoreItem surface_item(std::string_view word) {
  for (const auto& row : SurfaceSection::keywords) {
    if (trimmed(row.word) == word) return item_of<SurfaceSection>(row.value);
  }
  return {word};
}

// The values of THERMLIQ in their order, four to a record.
inline constexpr std::array<StoreItem, 24> particle{{{"XTROL"},
                                                     {"VOLCH"},
                                                     {"WAFSRK"},
                                                     {"WAF"},
                                                     {"PCRIT", "Pa", "critical pressure"},
                                                     {"TCRIT", "K", "critical temperature"},
                                                     {"TBOIL", "K", "boiling temperature"},
                                                     {"VPA"},
                                                     {"VPB"},
                                                     {"VPC"},
                                                     {"VPD"},
                                                     {"CA"},
                                                     {"CB"},
                                                     {"CC"},
                                                     {"CD"},
                                                     {"XDIAST"},
                                                     {"ALPH"},
                                                     {"BETA"},
                                                     {"GAM"},
                                                     {"XXXX"},
                                                     {"XXXX"},
                                                     {"XXXX"},
                                                     {"XXXX"},
                                                     {"XXXX"}}};
template <FormatText Record, std::size_t Group>
inline constexpr ValueRecord particle_record{Format<Record>::view, std::span(particle).subspan(4 * Group, 4)};
inline constexpr std::array particles{particle_record<store_records::particle_values_1, 0>,
                                      particle_record<store_records::particle_values_2, 1>,
                                      particle_record<store_records::particle_values_3, 2>,
                                      particle_record<store_records::particle_values_4, 3>,
                                      particle_record<store_records::particle_values_5, 4>,
                                      particle_record<store_records::particle_values_6, 5>};

}  // namespace store_values
}  // namespace varpre
