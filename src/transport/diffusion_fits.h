#pragma once

#include <span>
#include <vector>

#include "textio/findings/listing.h"
#include "thermo/species.h"
#include "transport/log_fit.h"
#include "transport/molecular_database.h"

namespace varpre {

// Fits pressure times binary diffusion coefficient, Pa m2/s (it does not depend on the pressure), of every
// pair of gas species, a species with itself included, from Chapman-Enskog theory with the Lennard-Jones and
// Stockmayer combination rules:
//   p D(T) = 0.02663 sqrt(T^3 (Mi+Mj) / (2 Mi Mj)) / (sigma_ij^2 Omega(1,1)*), T in K, M in g/mol (XMOL),
//   sigma in angstrom.
// DBIN receives the coefficients of the pairs (1,1), (2,1), (2,2), (3,1), ... A fit that is off by more than
// 2 % gets a warning; with `print` every pair is listed. False, after its messages, when a collision integral
// is undefined or a fit fails; the pairs from there on are missing.
[[nodiscard]] bool GENDIF(std::span<const SpeciesName> SYMB, std::span<const double> XMOL,
                          std::span<const Molecule> molecules, const FitGrid& grid, bool print,
                          Listing& MSGFIL, std::vector<FitCoefficients>& DBIN);

}  // namespace varpre
