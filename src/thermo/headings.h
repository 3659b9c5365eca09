#pragma once

#include <array>
#include <string_view>

// The words that open the sections of the input files, for findings about one that is missing.
namespace varpre {

inline constexpr std::array<std::string_view, 13> condition_headings{
    "OPTI",         "Gas Phas", "Surface ", "PASPECIES", "LEFT", "RIGH", "COND",
    "SURFACE COND", "PART",     "PARi",     "2DOP",      "2DIN", "COLL"};

inline constexpr std::array<std::string_view, 5> mechanism_headings{"MECH", "SURF", "COLL", "COMP", "PHOT"};

}  // namespace varpre
