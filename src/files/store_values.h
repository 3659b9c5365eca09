#pragma once

#include <array>
#include <span>
#include <string_view>

#include "files/store_records.h"

// The records of the store file that hold values under keywords: what stands in which place. Without a word a
// place is not used; it holds 0.
namespace varpre {

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

template <FormatText Record, const auto& Items>
inline constexpr ValueRecord record{Format<Record>::view, Items};

inline constexpr auto grid =
    std::to_array<StoreItem>({{"NG", "", "grid points"}, {"NGK", "", "grid points, second count"}});
inline constexpr auto geometry =
    std::to_array<StoreItem>({{"GE", "", "geometry: 0 slab, 1 cylinder, 2 sphere"}});
inline constexpr auto radii = std::to_array<StoreItem>({{"RI", "m", "inner radius"},
                                                        {"RO", "m", "outer radius"},
                                                        {},
                                                        {"VPLU", "", "fourth value of the radius record"}});
inline constexpr auto times = std::to_array<StoreItem>({{"TSTA", "s", "start of time"},
                                                        {"TE", "s", "end of time"},
                                                        {"NT", "", "time steps"},
                                                        {"Nmax", "", "NMAX of the store file"}});
inline constexpr auto energy_source = std::to_array<StoreItem>({{"SE", "J", "energy of the source"},
                                                                {"SW", "m", "width of the source"},
                                                                {"ST", "s", "time of the source"},
                                                                {"SOGR", "", "GRA of the source"}});
inline constexpr auto steps = std::to_array<StoreItem>({{"STEP", "s", "step size"},
                                                        {"ATOL", "", "absolute tolerance"},
                                                        {"RTOL", "", "relative tolerance"},
                                                        {"RS", "s", "second step size"}});
inline constexpr auto profile = std::to_array<StoreItem>({{"AMPL", "K", "AM of the initial profile"},
                                                          {"SIGM", "m", "SIG of the initial profile"},
                                                          {"RMAX", "m", "RM of the initial profile"},
                                                          {"ALPH", "", "ALPHA of the initial profile"},
                                                          {"OMEG", "m", "OMEGA of the initial profile"}});
inline constexpr auto stops = std::to_array<StoreItem>({{"TSTO", "", "TSOP of the store file"},
                                                        {"MSTO", "", "MSTOP of the store file"},
                                                        {"ART", "", "ART of the store file"},
                                                        {"RB", "", "RB of the store file"}});
inline constexpr auto weights = std::to_array<StoreItem>({{"WFr", "", "weight WFR"},
                                                          {"WFp", "", "weight WFP"},
                                                          {"WFu", "", "weight WFU"},
                                                          {"WFT", "", "weight WFT"}});
inline constexpr std::array flame_conditions{record<store_records::grid, grid>,
                                             record<store_records::geometry, geometry>,
                                             record<store_records::radii, radii>,
                                             record<store_records::times, times>,
                                             record<store_records::energy_source, energy_source>,
                                             record<store_records::steps, steps>,
                                             record<store_records::profile, profile>,
                                             record<store_records::stops, stops>,
                                             record<store_records::weights, weights>};

inline constexpr auto velocities = std::to_array<StoreItem>({{"UINI"}, {"VINI"}, {"RI2"}, {"DIST"}});
inline constexpr auto limits = std::to_array<StoreItem>({{}, {"TMAX"}, {"HMAX"}, {"REDF"}});
inline constexpr auto sources = std::to_array<StoreItem>({{"XSOU"}, {"YSOU"}, {}, {}});
inline constexpr auto gravity = std::to_array<StoreItem>({{"GACC"}, {}, {}, {}});
inline constexpr std::array two_dimensional{
    record<store_records::velocities, velocities>, record<store_records::limits, limits>,
    record<store_records::sources, sources>, record<store_records::gravity, gravity>};

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

// A record each, in this order.
inline constexpr auto surface_conditions =
    std::to_array<StoreItem>({{"TW", "K", "wall temperature"},
                              {"SITE", "mol/m²", "site density"},
                              {"EPSW", "", "emissivity"},
                              {"EPSA", "", "emission coefficient"},
                              {"EPSB", "", "emission coefficient"},
                              {"TRAD", "K", "as given"},
                              {"POW", "", "power"},
                              {"RHOZ", "", "specific resistance"},
                              {"RHOA", "", "specific resistance"},
                              {"RHOB", "", "specific resistance"},
                              {"CWIR", "", "specific heat"},
                              {"STFL", "", "Stefan flux"},
                              {"CATD", "m", "thickness of the catalyst"},
                              {"CATB", "m", "width of the catalyst"},
                              {"CATL", "m", "length of the catalyst"}});

}  // namespace store_values
}  // namespace varpre
