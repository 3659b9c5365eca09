#include "transport/log_fit.h"

#include <algorithm>
#include <cmath>

#include "textio/record.h"

namespace varpre {
namespace {

constexpr std::size_t NDI = 4;  // coefficients of a fit

FitCoefficients design_row(double T) {
  const double x = std::log(T);
  return {1, x, x * x, x * (x * x)};
}

double fitted_value(const FitCoefficients& COEF, const FitCoefficients& row) {
  double sum = 0;
  for (std::size_t j = 0; j < NDI; ++j) sum += COEF[j] * row[j];
  return std::exp(sum);
}

}  // namespace

FitGrid::FitGrid(std::vector<double> temperatures) : T(std::move(temperatures)) {
  constexpr double EPSIL = 1.0e-5;  // smallest pivot
  for (const double t : T) A.push_back(design_row(t));
  if (points() < NDI) {
    state = State::too_few_points;
    return;
  }
  for (std::size_t i = 0; i < NDI; ++i) {
    for (std::size_t j = 0; j <= i; ++j) {
      double s = 0;
      for (const FitCoefficients& row : A) s += row[i] * row[j];
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

double percent(double deviation) {
  return std::round(1000 * deviation) / 10;
}

bool INIAGL(const FitGrid& grid, std::span<const double> Y, FitCoefficients& X, Listing& MSGFIL) {
  if (grid.state == FitGrid::State::too_few_points) {
    write<"(/,5X,'NUMBER OF UNKNOWN VALUES IN -INIAGL- TOO LARGE')">(MSGFIL);
    return false;
  }
  if (grid.state == FitGrid::State::stationary) {
    write<"(/,5X,'STATIONARITY IN -INIAGL-')">(MSGFIL);
    return false;
  }
  X.fill(0);
  for (std::size_t k = 0; k < grid.points(); ++k) {
    for (std::size_t i = 0; i < NDI; ++i) X[i] += grid.A[k][i] * Y[k];
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

FitResult LOGFIT(const FitGrid& grid, std::span<const double> V, bool print, Listing& MSGFIL) {
  FitResult fit;
  if (!std::all_of(V.begin(), V.end(), [](double v) { return v > 0 && std::isfinite(v); })) {
    write<"(1X,5X,'VALUE TO FIT IS NOT POSITIVE')">(MSGFIL);
    return fit;
  }
  std::vector<double> YL(V.size());
  std::transform(V.begin(), V.end(), YL.begin(), [](double v) { return std::log(v); });
  fit.LOK = INIAGL(grid, YL, fit.COEF, MSGFIL);
  if (!fit.LOK) write<"(1X,5X,'STATIONARITY IN -GENLAM-(AGL)')">(MSGFIL);

  if (print) write<"(2X,'  T(K)    ',2X,' V(EXACT) ',2X,' V(FITTED)', 2X,' ERROR    ')">(MSGFIL);
  for (std::size_t k = 0; k < grid.points(); ++k) {
    const double VFIT = fitted_value(fit.COEF, grid.A[k]);
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
