#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tools/import/imported_mechanism.h"

namespace varpre {

// Behind so many errors names that were probably meant are no longer looked for.
inline constexpr int most_helped = 50;

struct ImportOptions {
  std::string file;
  std::string phase;                 // empty: that of the surface, or the first ideal gas
  std::string surface;               // empty: none
  std::vector<std::string> species;  // empty: all
  std::string transport;             // a file with transport data
  std::string thermo;                // of a mechanism in CHEMKIN format, a file with thermochemistry
  std::string surface_file;          // and the file of its surface
  std::optional<double> pressure;    // bar, of rates that depend on it
  bool refit_thermo = false;
  bool skip_unsupported = false;
  bool without_transport = false;
  bool no_falloff = false;
};

// What became of a species of the phases that are imported.
struct KnownSpecies {
  enum class Fate { taken, not_chosen, left_out };
  enum class Phase { gas, surface, bulk };
  Fate fate = Fate::taken;
  Phase phase = Phase::gas;
  std::size_t index = 0;  // of one that was taken, in the list of its phase while reactions are read

  bool on_surface() const { return phase == Phase::surface; }
};

// What the readers of an import share.
struct Import {
  const ImportOptions& options;
  Findings& findings;
  ImportedMechanism mechanism{};
  std::map<std::string, KnownSpecies> known{};
  std::vector<std::string> declared{};               // names of all species of the phases, in order
  std::map<std::string, std::string> by_capitals{};  // the name, or nothing when there are several

  // Adds a species of the phases; false when its name is there already.
  bool declare(const std::string& name, const KnownSpecies& species);
  // The name as the phases have it: letter case counts only where two names differ by nothing else. As it
  // stands when there is none.
  std::string resolved(const std::string& name) const;
  const KnownSpecies* find(const std::string& name) const;
  // One that was taken.
  const ImportedSpecies& species(const std::string& name) const;

  // A species or reaction that the program cannot hold: an error, or a warning when it may be left out.
  void refuse(const Place& place, const std::string& what, std::string_view reason,
              std::string_view help = {}, Findings::Site kind = Findings::Site::current());
};

}  // namespace varpre
