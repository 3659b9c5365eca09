#pragma once

#include <set>
#include <string>

#include "tools/import/imported_mechanism.h"
#include "tools/import/yaml_value.h"

namespace varpre {

struct ImportOptions {
  std::string file;
  std::string phase;                 // empty: that of the surface, or the first ideal gas
  std::string surface;               // empty: none
  std::vector<std::string> species;  // empty: all
  bool skip_unsupported = false;
  bool without_transport = false;
  bool no_falloff = false;
};

// What the readers of an import share.
struct Import {
  const ImportOptions& options;
  Findings& findings;
  YamlFiles& files;
  ImportedMechanism mechanism{};

  // A species or reaction that the program cannot hold: an error, or a warning when it may be left out.
  void refuse(const Place& place, const std::string& what, std::string_view reason,
              std::string_view help = {}, Findings::Site kind = Findings::Site::current());
};

// Reads the phases that the options name, with their species and reactions. What cannot be read or held is
// reported; the mechanism is whole only when there is no error among the findings. Throws std::runtime_error
// when the file cannot be read.
ImportedMechanism read_mechanism(const ImportOptions& options, YamlFiles& files, Findings& findings);

}  // namespace varpre
