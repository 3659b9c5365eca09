#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/import/import.h"
#include "tools/import/yaml_value.h"

namespace varpre {

// An equation, taken apart.
struct Equation {
  std::vector<std::string> educts;  // each as often as it counts
  std::vector<std::string> products;
  std::string partner;  // "M", or the species in "(+N2)"; empty: none
  bool in_parentheses = false;
  bool reversible = false;
};

// Takes the value of `equation` apart. None after an error, or when it has coefficients that are no whole
// numbers, which are refused.
std::optional<Equation> read_equation(const Value& value, Import& import);

}  // namespace varpre
