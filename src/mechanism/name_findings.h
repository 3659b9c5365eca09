#pragma once

#include "mechanism/reaction.h"

// Findings about the names of a reaction line, and about lines that are no reactions.
namespace varpre {

// What is told with the first name that has an entry in the database but is not in the list of species
// (Findings::tell_with).
inline constexpr std::string_view list_lacks_names = "the list of species lacks names";

// Reports a name of a reaction line that is no species of the phase and no partner: what it is instead, or
// which one was probably meant. A name is told of once; where it stands again it is counted.
void report_unknown(const SpeciesName& name, const ReactionNames& names, const Place& line,
                    Findings& findings);

// Reports a record of rate parameters ("$", "#", "@") that does not stand behind a reaction; false, without a
// finding, for any other line.
bool report_stray_record(const Place& line, Findings& findings);

// Reports a reaction line that ends in fewer or more than three numbers; false, without a finding, for any
// other.
bool report_count_of_numbers(const Place& line, Findings& findings);

}  // namespace varpre
