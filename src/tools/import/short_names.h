#pragma once

#include <map>
#include <span>
#include <string>

#include "thermo/species.h"

namespace varpre {

std::string in_capitals(std::string text);

// Gives every name one that the input files can hold: at most eight characters that stand in names, different
// from the others in any letter case, no keyword and no collision partner. A name that is such stays, in
// capitals before its first parenthesis; the others depend on nothing but the list.
std::map<std::string, SpeciesName> short_names(std::span<const std::string> names);

}  // namespace varpre
