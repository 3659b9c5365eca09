#pragma once

#include <optional>

#include "textio/channel/input.h"
#include "textio/findings/findings.h"

namespace varpre {

// What is wrong with an input file as a whole, as its text tells: it is empty, no text, in another encoding
// or of another kind, all of it is shifted, or, in THERMO, its entries are out of step. Nothing where it
// looks like what its name says. To be asked when an error in it is known.
std::optional<FileFault> fault_of_file(const Input& file);

// The first mark of a conflict of two versions of a file, as version control leaves it.
std::optional<FileFault> conflict_in(const Input& file);

}  // namespace varpre
