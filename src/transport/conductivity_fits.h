#pragma once

#include <span>
#include <vector>

#include "textio/findings/listing.h"
#include "thermo/species.h"
#include "transport/log_fit.h"
#include "transport/molecular_database.h"

namespace varpre {

// Fits of one gas species at 1 bar.
struct ConductivityFits {
  FitCoefficients XLAM{};  // heat conductivity, J/(m K s)
  FitCoefficients XLMO{};  // its monoatomic (translational) part, J/(m K s)
  FitCoefficients ETA{};   // viscosity, kg/(m s)
};

// Computes and fits viscosity (Chapman-Enskog theory) and heat conductivity (Mason and Monchick:
// translational, rotational and vibrational parts) of every gas species. `fit` are the thermochemical fits,
// XMOL the molar masses in g/mol; `fits` receives one entry per species. A fit that is off by more than 2 %
// gets a warning; with `print` every fit is listed. False, after its messages, at an unknown geometry index,
// an undefined collision integral or a fit that fails; the species from there on are missing.
[[nodiscard]] bool GENLAM(std::span<const SpeciesName> SYMB, std::span<const ThermoFit> fit,
                          std::span<const double> XMOL, std::span<const Molecule> molecules,
                          const FitGrid& grid, bool print, Listing& MSGFIL,
                          std::vector<ConductivityFits>& fits);

}  // namespace varpre
