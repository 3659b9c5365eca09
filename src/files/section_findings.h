#pragma once

#include <string>

#include "files/sections.h"
#include "textio/channel/input.h"
#include "textio/findings/findings.h"

// Findings about the sections of the input files: one that is missing, or that does not end where it should.
namespace varpre {

// The section of the same files (Section::files) that a record seems to open, in any letter case; nullptr:
// none.
const Section* section_of(std::string_view record, std::uint8_t files);

// Whether a record is the heading of a section, or one that is misspelt; not that of another section.
bool may_mean(const Section& section, std::string_view record);

// Whether a record is an END that is misspelt, or that another program writes so, or that does not stand in
// column 1.
bool is_meant_as_end(std::string_view record);

// Where the heading of a section stands, when it was the record last read.
Place heading_place(const Section& section, const Input& input);

// Reports a section that was searched and not found: an error or a warning, by what follows from its absence.
// `consequence` goes on where the sentence ends. The help shows the heading that was probably meant, or those
// that the file has.
void report_missing(const Section& section, const Input& input, Findings& findings,
                    std::string_view consequence = {});

// What the finding of `report_missing` begins with.
std::string missing_heading(const Section& section);

// Reports that the file ended inside a section, whose heading stands at `heading`.
void report_not_closed(const Section& section, const Place& heading, Findings& findings);

// Reports, where the record last read, or the first one behind blank ones, turns out to be the heading of
// another section, that the END of this one is missing. False, without a finding, where it is none.
bool report_heading_inside(const Section& section, const Place& heading, const Input& input,
                           Findings& findings, Findings::Severity severity = Findings::Severity::error);

// Warns of a section that nothing reads without another one, which is not there: surface conditions without
// surface species; at the heading that seems to mean this one, if there is one. `input` is where the other
// one was searched.
void warn_of_use_without(const Section& missing, const Section& used, const Input& input,
                         const Input& used_in, Findings& findings);

}  // namespace varpre
