#pragma once

#include <array>
#include <string_view>

namespace varpre {

// The names of the collision partners ("third bodies"), which a reaction may name like species.
inline constexpr int partner_count = 27;
inline constexpr std::array<std::string_view, partner_count> MCOLLI{
    "M",    "M'",   "M''",   "M'''",   "M''''",   "M'''''",   "M''''''", "M'''''''", "M*",
    "M**",  "M***", "M****", "M*****", "M******", "M*******", "M(1)",    "M(2)",     "M(3)",
    "M(4)", "M(5)", "M(6)",  "M(7)",   "M(8)",    "M(9)",     "M(10)",   "M(11)",    "M(12)"};

}  // namespace varpre
