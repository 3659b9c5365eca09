#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "tools/import/imported_mechanism.h"
#include "tools/import/number_text.h"

namespace varpre {

// Options, grid and conditions to start from.
enum class Template { none, burner, counterflow, ignition };
std::optional<Template> template_named(std::string_view name);

struct ConditionsOptions {
  Template start = Template::none;
  bool fit_reverses = false;  // varpre fits reverse rates of the gas; else the solver works them out
};

// Writes an INP for a mechanism, with mixtures on the left and on the right, and a comment on every line that
// one edits.
std::string write_conditions(const ImportedMechanism& mechanism, const std::array<ImportedState, 2>& mixtures,
                             const ConditionsOptions& options, LostDigits& lost);

}  // namespace varpre
