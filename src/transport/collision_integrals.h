#pragma once

#include <array>
#include <span>
#include <string_view>

#include "textio/findings/listing.h"

namespace varpre {

// Which reduced collision integral: Omega(1,1)* (diffusion) or Omega(2,2)* (viscosity).
enum class CollisionIntegral { diffusion = 1, viscosity = 2 };

// Reduced collision integral at the reduced temperature TSTAR = T/EPS and the reduced dipole moment DSTAR, by
// three-point interpolation in the tables of Monchick and Mason, above TSTAR = 100 by a cubic formula. LOK
// becomes true, or false with a message and a result of 0: "undefined" outside 0.09995 <= TSTAR <= 500 (100
// when DSTAR is not 0) and 0 <= DSTAR <= 2.5; "table incorrect" where that holds but no rows or columns
// surround the point, between 0.09995 and the first row, 0.1, and for a DSTAR that is not a number.
double MXIOME(CollisionIntegral IOM, double TSTAR, double DSTAR, Listing& MSGFIL, bool& LOK);

// MXIOME at many reduced temperatures, which increase, with one reduced dipole moment: the same numbers, with
// the table's columns interpolated once per row and the rows found without a search. OMEGA is as long as
// TSTAR. False when some point is on a row, before the first or behind the last but one, when there are more
// than a grid has, or the dipole moment is out of the domain: MXIOME has the answer then.
bool collision_integrals(CollisionIntegral IOM, std::span<const double> TSTAR, double DSTAR,
                         std::span<double> OMEGA);

// What MXIOME needs, for findings about molecules that it cannot serve.
inline constexpr std::string_view collision_domain =
    "the well depth lies between 5.2 and 2000 K (from 26 K with a dipole moment), the diameter is some 2 to 10 "
    "angstrom, the dipole moment at most some 10 debye";

// Three-point interpolation of Y at X, XT increasing: the line through the near two points dominates, the
// other one enters with a weight that grows to a third at the middle point.
double MXIINT(double X, const std::array<double, 3>& XT, const std::array<double, 3>& YT);

// Parker's temperature factor of the rotational collision number at T [K] for the well depth EPS [K], 1 at
// 298 K.
double MXIPAR(double T, double EPS);

}  // namespace varpre
