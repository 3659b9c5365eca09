#include "transport/log_fit.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <stdexcept>

#include "math/elementary.h"
#include "math/wide_vectors.h"

namespace varpre {
namespace {

constexpr std::size_t NDI = 4;  // coefficients of a fit

// ln of the fitted value at a point.
double fitted_logarithm(const FitCoefficients& COEF, const FitGrid& grid, std::size_t k) {
  double sum = 0;
  for (std::size_t j = 0; j < NDI; ++j) sum += COEF[j] * grid.A[j][k];
  return sum;
}

VARPRE_WIDE_VECTORS
bool all_positive_and_finite(std::span<const double> V) {
  constexpr double largest = std::numeric_limits<double>::max();
  std::int64_t others = 0;
  for (const double v : V) others += ((v > 0) & (v <= largest)) ? 0 : 1;
  return others == 0;
}

// Whether every relative deviation E = |V - exp(s)| / V, s the fitted logarithm, is certainly no larger than
// `tolerance` < 1. With r = ln V - s it is |1 - exp(-r)| <= exp(|r|) - 1 <= |r| + r^2 for |r| < 1, and a |r|
// of at most tolerance - tolerance^2 - margin makes that less than tolerance - margin. What the margin must
// cover is rounding: YL is ln V to a unit in its last place (below 2E-13, as |ln V| < 745), and YL - s, exp,
// the difference and the quotient are each off by a few 1E-16. A NaN is not within anything.
VARPRE_WIDE_VECTORS
bool deviations_within(double tolerance, const FitGrid& grid, std::span<const double> YL,
                       const FitCoefficients& COEF) {
  constexpr double margin = 1.0e-9;
  const double limit = tolerance - tolerance * tolerance - margin;
  std::int64_t outside = 0;
  for (std::size_t k = 0; k < YL.size(); ++k) {
    outside += std::abs(YL[k] - fitted_logarithm(COEF, grid, k)) <= limit ? 0 : 1;
  }
  return outside == 0;
}

}  // namespace

FitGrid::FitGrid(std::vector<double> temperatures) : T(std::move(temperatures)) {
  constexpr double EPSIL = 1.0e-5;  // smallest pivot
  if (points() > most_points) throw std::length_error("too many temperatures for a fit");
  for (const double t : T) {
    const double x = math::log(t);
    const FitCoefficients row{1, x, x * x, x * (x * x)};
    for (std::size_t j = 0; j < NDI; ++j) A[j].push_back(row[j]);
  }
  if (points() < NDI) {
    state = State::too_few_points;
    return;
  }
  for (std::size_t i = 0; i < NDI; ++i) {
    for (std::size_t j = 0; j <= i; ++j) {
      double s = 0;
      for (std::size_t k = 0; k < points(); ++k) s += A[i][k] * A[j][k];
      for (std::size_t m = 0; m < j; ++m) s -= L[i][m] * L[j][m];
      if (j < i) {
        L[i][j] = s * L[j][j];
      } else if (s > EPSIL) {
        L[i][i] = 1 / std::sqrt(s);
      } else {
        state = State::stationary;
        return;
      }
    }
  }
}

bool INIAGL(const FitGrid& grid, std::span<const double> Y, FitCoefficients& X, Listing& MSGFIL) {
  if (grid.state == FitGrid::State::too_few_points) {
    write<"(/,5X,'NUMBER OF UNKNOWN VALUES IN -INIAGL- TOO LARGE')">(MSGFIL);
    return false;
  }
  FitCoefficients sum{};  // A'Y, the points in their order
  for (std::size_t k = 0; k < grid.points(); ++k) {
    for (std::size_t i = 0; i < NDI; ++i) sum[i] += grid.A[i][k] * Y[k];
  }
  X = sum;
  if (grid.state == FitGrid::State::stationary) {
    write<"(/,5X,'STATIONARITY IN -INIAGL-')">(MSGFIL);
    return false;
  }
  const auto& L = grid.L;
  for (std::size_t i = 0; i < NDI; ++i) {
    for (std::size_t m = 0; m < i; ++m) X[i] -= L[i][m] * X[m];
    X[i] *= L[i][i];
  }
  for (std::size_t i = NDI; i-- > 0;) {
    for (std::size_t m = i + 1; m < NDI; ++m) X[i] -= L[m][i] * X[m];
    X[i] *= L[i][i];
  }
  return true;
}

FitResult LOGFIT(const FitGrid& grid, std::span<const double> V, bool print, Listing& MSGFIL,
                 double tolerance) {
  FitResult fit;
  if (!all_positive_and_finite(V)) {
    write<"(1X,5X,'VALUE TO FIT IS NOT POSITIVE')">(MSGFIL);
    return fit;
  }
  std::array<double, FitGrid::most_points> logarithms;  // NOLINT(cppcoreguidelines-pro-type-member-init)
  const auto YL = std::span(logarithms).first(V.size());
  math::log(V, YL);
  fit.LOK = INIAGL(grid, YL, fit.COEF, MSGFIL);
  if (!fit.LOK) write<"(1X,5X,'STATIONARITY IN -GENLAM-(AGL)')">(MSGFIL);
  if (!print && deviations_within(tolerance, grid, YL, fit.COEF)) return fit;

  if (print) write<"(2X,'  T(K)    ',2X,' V(EXACT) ',2X,' V(FITTED)', 2X,' ERROR    ')">(MSGFIL);
  for (std::size_t k = 0; k < grid.points(); ++k) {
    const double VFIT = math::exp(fitted_logarithm(fit.COEF, grid, k));
    const double E = std::abs((V[k] - VFIT) / V[k]);
    if (print) write<"(6(2X,1PE10.3))">(MSGFIL, grid.T[k], V[k], VFIT, E);
    if (E >= fit.ERRMAX) {
      fit.ERRMAX = E;
      fit.IMAX = static_cast<int>(k) + 1;
    }
  }
  return fit;
}

}  // namespace varpre
