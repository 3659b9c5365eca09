#pragma once

#include <cstddef>
#include <string>

#include "textio/findings/findings.h"
#include "tools/import/rate_laws.h"

namespace varpre {

// What the columns took from the numbers, as far as the store file would have shown it.
struct LostDigits {
  Place place;         // where the number stands in the file that is edited
  int numbers = 0;     // that are others in the digits of the store file
  double largest = 0;  // relative change of a value by that, where, and its text
  Place of_largest;
  std::string text;
};

// The shortest text with a decimal point that reads as the value again, or as near to it as `width` columns
// allow, right-justified.
std::string number_text(double value, std::size_t width, LostDigits& lost);

// The value that the text reads as.
double value_in_columns(double value, std::size_t width);

// The same rate with b and E in these columns: what they take from b is put into A and E, what they take from
// E into A, fitted over 300 to 2500 K. A width of 0 is wide enough.
ArrheniusRate rate_in_columns(const ArrheniusRate& rate, std::size_t b_width, std::size_t E_width);

}  // namespace varpre
