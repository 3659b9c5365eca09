#pragma once

#include "tools/import/import.h"

namespace varpre {

// Looks for reactions in which a species that stands on both sides is the collision partner of another
// reaction as well, that with M, and does what the phase says of them: nothing, a warning, an error, or it
// takes the species from the partners of the other.
void compare_named_partners(const Value& phase, ImportedMechanism& mechanism);

}  // namespace varpre
