#pragma once

#include <cstddef>
#include <string>

#include "textio/findings/findings.h"

namespace varpre {

// What the columns took from the numbers.
struct LostDigits {
  Place place;         // where the number stands in the YAML file that is edited
  int numbers = 0;     // that have fewer digits than there
  double largest = 0;  // relative change of a value by that, where, and its text
  Place of_largest;
  std::string text;
};

// The shortest text with a decimal point that reads as the value again, or as near to it as `width` columns
// allow, right-justified.
std::string number_text(double value, std::size_t width, LostDigits& lost);

}  // namespace varpre
