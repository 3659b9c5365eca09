#pragma once

#include <cstddef>
#include <string>

namespace varpre {

// How many digits the columns took.
struct LostDigits {
  int numbers = 0;     // that have fewer digits than in the YAML file
  double largest = 0;  // relative change of a value by that
};

// The shortest text with a decimal point that reads as the value again, or as near to it as `width` columns
// allow, right-justified.
std::string number_text(double value, std::size_t width, LostDigits& lost);

}  // namespace varpre
