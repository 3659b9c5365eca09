#pragma once

#include <map>
#include <string>
#include <vector>

#include "tools/import/imported_mechanism.h"

namespace varpre {

// The reactions of a section, among which equal ones must be marked as duplicates.
class EqualReactions {
 public:
  // Adds a reaction of this form and collision partner; reports an earlier one that has the same species, or
  // whose reverse has them, where not both are marked.
  void add(const ImportedReaction& reaction, bool reversible, const std::string& form, Findings& findings);

 private:
  struct Seen {
    Place place;
    bool reversible;
    bool duplicate;
  };
  std::map<std::string, std::vector<Seen>> seen_;  // by the two sides and the form
};

}  // namespace varpre
