#pragma once

#include <span>

// The elementary functions of the core. Each result is the double that is nearest to the true value, so it is
// the same with every compiler, level, C library, processor and system; the rounding mode must be to nearest,
// and products must not be fused with sums. Special values are those of IEEE 754 (and of the C standard's
// Annex F); no floating-point exception is promised. Every function tries a quick way, with a bound of its
// error that has been proved, and where a value within that bound would be rounded otherwise, an exact one
// (A. Ziv, ACM Trans. Math. Software 17 (1991) 410).
namespace varpre::math {

double exp(double x);
double log(double x);
double pow(double x, double y);

// result[k] = log(x[k]), the same doubles, several at a time. The spans are of equal length.
void log(std::span<const double> x, std::span<double> result);

}  // namespace varpre::math
