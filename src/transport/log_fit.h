#pragma once

#include <array>
#include <span>
#include <vector>

#include "textio/findings/listing.h"
#include "textio/record/numbered.h"
#include "textio/record/record.h"

namespace varpre {

// Coefficients c1..c4 of ln V = c1 + c2 ln T + c3 (ln T)^2 + c4 (ln T)^3, T in K.
using FitCoefficients = std::array<double, 4>;

// Everything of a least-squares fit that depends only on its temperatures: shared by all fits of a run.
struct FitGrid {
  static constexpr std::size_t most_points = 64;

  // Throws std::length_error when there are more than most_points temperatures.
  explicit FitGrid(std::vector<double> temperatures);

  std::size_t points() const { return T.size(); }

  std::vector<double> T;                 // K, increasing
  std::array<std::vector<double>, 4> A;  // columns of the design matrix: 1, ln T, (ln T)^2, (ln T)^3
  std::array<FitCoefficients, 4>
      L{};  // lower triangle of the Cholesky factor of A'A, its diagonal as reciprocals
  enum class State { solvable, too_few_points, stationary } state = State::solvable;
};

// One fit: how far it is off, and where.
struct FitResult {
  bool LOK = false;
  FitCoefficients COEF{};
  double ERRMAX = 0;  // largest relative deviation
  int IMAX = 1;       // point where it occurs, from 1; of equal deviations the last
};

// Least squares in ln V through the values V on the grid, all points of equal weight. With `print` the
// listing gets a table of T, value, fitted value and deviation. `LOK` is false, with messages, when a value
// is not positive or not finite, or the normal equations cannot be solved. Where the largest deviation
// provably does not exceed `tolerance` and is not printed, it is not looked for: ERRMAX is 0 then.
FitResult LOGFIT(const FitGrid& grid, std::span<const double> V, bool print, Listing& MSGFIL,
                 double tolerance = 0);

// A fit that is off by more than this gets a warning.
inline constexpr double worst_fit = 0.02F;

// Of one that is off by more than this, a finding tells: what lies between is usual, and nobody can cure it.
inline constexpr double worst_usual_fit = 0.1;

// That warning. `Warning` is its text in the listing, of the deviation, the names and the temperature;
// subject() tells what was fitted, for the finding, of which the caller says the kind.
template <FormatText Warning, class Subject, class... Names>
void warn_of_poor_fit(const FitResult& fit, const FitGrid& grid, const Place& record, Findings::Site kind,
                      Listing& MSGFIL, Subject subject, const Names&... names) {
  if (fit.ERRMAX <= worst_fit) return;
  const double T = at(grid.T, fit.IMAX);
  write<Warning>(MSGFIL, fit.ERRMAX, names..., T);
  if (fit.ERRMAX <= worst_usual_fit || MSGFIL.findings.follows(record, "poor fit")) return;
  MSGFIL.findings.warning(
      record, message("the fit of the ", subject(), " is off by ", percent(fit.ERRMAX), " % at ", T, " K"),
      "one of its molecular data, or the heat capacity of its entry in THERMO, may be wrong", kind);
}

// Solves the normal equations of min |A X - Y|^2 with the factor that the grid holds. False, with its
// message, when there are fewer points than coefficients (X untouched), or a pivot was at or below 1E-5 (X
// then holds the right-hand sides).
bool INIAGL(const FitGrid& grid, std::span<const double> Y, FitCoefficients& X, Listing& MSGFIL);

}  // namespace varpre
