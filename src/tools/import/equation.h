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
  // The terms as they stand; with coefficients that are no whole numbers, the lists of names are empty.
  bool whole = true;
  std::vector<GlobalTerm> educt_terms;
  std::vector<GlobalTerm> product_terms;

  std::vector<std::string> names() const;  // of all species, the partner too
};

// Takes the value of `equation` apart. None after an error.
std::optional<Equation> read_equation(const Value& value, Import& import);

}  // namespace varpre
