#pragma once

#include "tools/import/import.h"

// What every reader does with what it has read: the form in which the program can hold it is made, or it is
// refused.
namespace varpre {

// What is added to the entropies of a species, over R, because they are meant at another pressure than 1 bar.
// 1 atm is what most files mean without a thought: nothing then.
double entropy_shift(const ImportedSpecies& species);

// Takes a species, whose thermochemistry becomes two ranges of seven coefficients. False, after a finding,
// when it cannot be held; its fate is settled either way.
bool take_species(ImportedSpecies species, Import& import);

// Takes a reaction at the end of its mechanism: bulk species leave the equation, the law becomes A, b and E,
// and one whose reverse the program would not make right stands without it, followed by the reverse. All
// species, and the site density, have to be there. False, after a finding, when it cannot be held.
bool take_reaction(ImportedReaction reaction, bool on_surface, Import& import);

// Takes a global reaction, `orders` being those that are not the coefficients. A species with an order that
// is no educt joins both sides. False, after a finding, when the columns do not hold it.
bool take_global_reaction(GlobalReaction reaction, const std::map<std::string, double>& orders,
                          Import& import);

// Looks for reactions in which a species that stands on both sides is the collision partner of another
// reaction as well, that with M. `action` says what happens then: "warn", "error", "mark-duplicate" (nothing)
// or "modify-efficiency", which takes the species from the partners of the other.
void compare_named_partners(std::string_view action, Import& import);

// The rest, when all is read: names, the order of the species, and whether there is room for all. `file` is
// where to say so.
void complete(const Place& file, Import& import);

}  // namespace varpre
