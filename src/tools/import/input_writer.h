#pragma once

#include <string>

#include "tools/import/conditions_writer.h"

namespace varpre {

// The input files of a mechanism. INP has two mixtures of the state that the
// phase gives, and conditions to start from.
struct InputTexts {
  std::string MEC;
  std::string THERMO;
  std::string MOLNEW;
  std::string INP;
};

// Writes a mechanism in the forms of the input files; and warns, of the file as a whole, of what everybody
// should know: the meaning of falloff records and sticking coefficients, lost digits, and the reference
// pressure.
InputTexts write_inputs(const ImportedMechanism& mechanism, const std::array<ImportedState, 2>& mixtures,
                        const ConditionsOptions& options, const Input& file, Findings& findings);

// Adds lines to the comments with which MEC begins.
void add_comments(const std::vector<std::string>& lines, InputTexts& texts);

}  // namespace varpre
