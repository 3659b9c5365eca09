#pragma once

#include "textio/findings/findings.h"

namespace varpre {

// Reports a line of a mechanism or of the efficiencies, which could not be read, as one that is written as
// other programs write it, with the form that is right here: their arrows, "(+M)", auxiliary lines with
// slashes, DUPLICATE, headings, YAML. False, without a finding, for any other.
bool report_foreign_form(const Place& line, Findings& findings);

}  // namespace varpre
