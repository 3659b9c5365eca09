#include "transport/collision_integrals.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

#include "math/wide_vectors.h"
#include "transport/collision_tables.h"
#include "transport/log_fit.h"

namespace varpre {
namespace {

constexpr std::size_t most_points = FitGrid::most_points;
constexpr double dipole_tolerance = 1.0e-5;     // a DSTAR this close to 0 is 0
constexpr double first_row_tolerance = 1.0e-7;  // a TSTAR this close to 0.1 is the first row

// First of the three neighbouring points, counted from 0, whose first interval holds x (the second one for
// the last three): the last bracket with points[first] < x <= points[first + 2]. -1 when x lies at or before
// all points.
int bracket(std::span<const float> points, double x) {
  const auto above = std::lower_bound(points.begin(), points.end(), x);
  const int below = static_cast<int>(above - points.begin()) - 1;
  return std::min(below, static_cast<int>(points.size()) - 3);
}

std::array<double, 3> three(std::span<const float> points, int first) {
  const auto i = static_cast<std::size_t>(first);
  return {points[i], points[i + 1], points[i + 2]};
}

// A DSTAR that is not a number lies beyond none of the limits.
bool out_of_domain(double TSTAR, double DSTAR) {
  return DSTAR < -dipole_tolerance || DSTAR > 2.5 || TSTAR < 0.09995 || TSTAR > 500 ||
         (TSTAR > 100 && std::abs(DSTAR) > dipole_tolerance);
}

double high_temperature(CollisionIntegral IOM, double TSTAR) {
  const double T2 = TSTAR * TSTAR;
  const double T3 = TSTAR * T2;
  return IOM == CollisionIntegral::diffusion ? 0.623 - 0.00136 * TSTAR + 3.46E-6 * T2 - 3.43E-9 * T3
                                             : 0.703 - 0.00146 * TSTAR + 3.57E-6 * T2 - 3.43E-9 * T3;
}

const CollisionTable& table_of(CollisionIntegral IOM) {
  return IOM == CollisionIntegral::diffusion ? omega_11 : omega_22;
}

// A column of the table as straight lines from row to row: line i is Y[i] + rise[i] (X - row[i]) / step[i].
struct Lines {
  std::array<double, temperature_rows> Y{};
  std::array<double, temperature_rows> rise{};

  constexpr void set_rises(std::size_t first, std::size_t last) {
    for (std::size_t i = first; i < last; ++i) rise[i] = Y[i + 1] - Y[i];
  }
};

constexpr Lines nonpolar_lines(const CollisionTable& table) {
  Lines lines;
  for (std::size_t i = 0; i < table.size(); ++i) lines.Y[i] = table[i][0];
  lines.set_rises(0, temperature_rows - 1);
  return lines;
}

constexpr auto rows = [] {
  std::array<double, temperature_rows> wide{};
  std::copy(TSTERN.begin(), TSTERN.end(), wide.begin());
  return wide;
}();
constexpr auto steps = [] {
  std::array<double, temperature_rows> step{};
  for (std::size_t i = 0; i + 1 < step.size(); ++i) step[i] = rows[i + 1] - rows[i];
  return step;
}();
constexpr Lines nonpolar_diffusion = nonpolar_lines(omega_11);
constexpr Lines nonpolar_viscosity = nonpolar_lines(omega_22);

// The column between those of the table that belongs to a reduced dipole moment, from a row on to another.
Lines polar_lines(const CollisionTable& table, double DSTAR, std::size_t first, std::size_t last) {
  Lines lines;
  const int column = bracket(DELTA, DSTAR);
  for (std::size_t i = first; i <= last; ++i) {
    lines.Y[i] = MXIINT(DSTAR, three(DELTA, column), three(table[i], column));
  }
  lines.set_rises(first, last);
  return lines;
}

// Ends of the first intervals of the brackets; the last bracket goes on to the end of the table.
constexpr auto ends = [] {
  std::array<double, temperature_rows - 2> end{};
  std::copy(rows.begin() + 1, rows.end() - 2, end.begin());
  end.back() = std::numeric_limits<double>::infinity();
  return end;
}();

// Finds brackets without a search: the leading bits of a reduced temperature above 0.1 and up to 100 name a
// stretch, a thirty-second of a power of two, in which at most one row lies.
class RowFinder {
 public:
  constexpr RowFinder() {
    for (std::size_t s = 0, i = 0; s < before_.size(); ++s) {
      while (ends[i] < start(s)) ++i;
      before_[s] = static_cast<std::uint8_t>(i);
    }
  }
  // As `bracket`.
  std::size_t operator()(double x) const {
    const std::size_t i = before_[(std::bit_cast<std::uint64_t>(x) - first_bits) >> shift];
    return i + (ends[i] < x ? 1 : 0);
  }

 private:
  static constexpr int shift = 52 - 5;
  static constexpr std::uint64_t first_bits = std::bit_cast<std::uint64_t>(0x1p-4);
  static constexpr std::uint64_t end_bits = std::bit_cast<std::uint64_t>(0x1p7);

  static constexpr double start(std::size_t stretch) {
    return std::bit_cast<double>(first_bits + (std::uint64_t{stretch} << shift));
  }

  std::array<std::uint8_t, ((end_bits - first_bits) >> shift)>
      before_{};  // per stretch: bracket of its start
};
constexpr RowFinder row_of;

// Points between the first two of the three rows of their bracket: on the lines that begin at these rows,
// Y + numerator / step.
struct BetweenRows {
  using Pair = std::array<double, 2>;
  std::array<Pair, most_points> Y, numerator, step;
  std::array<double, most_points> from1, from2;  // X - X1, X - X2
};

// MXIINT before the middle row, apart from the search for the rows, so that several divisions are made at a
// time. False when a point is not before it.
VARPRE_WIDE_VECTORS
bool weigh(const BetweenRows& r, std::span<double> OMEGA) {
  std::int64_t beyond = 0;
  for (std::size_t k = 0; k < OMEGA.size(); ++k) {
    const double P1 = r.Y[k][0] + r.numerator[k][0] / r.step[k][0];
    const double P2 = r.Y[k][1] + r.numerator[k][1] / r.step[k][1];
    const double W = 0.5 * r.from1[k] / r.step[k][0];
    OMEGA[k] = (P1 + W * P2) / (1 + W);
    beyond += r.from2[k] < 0 ? 0 : 1;
  }
  return beyond == 0;
}

// MXIINT along the lines; false when a point is on a row or beyond the last but one.
bool interpolate(const Lines& lines, std::span<const double> TSTAR, std::span<double> OMEGA) {
  BetweenRows r;  // NOLINT(cppcoreguidelines-pro-type-member-init)
  for (std::size_t k = 0; k < TSTAR.size(); ++k) {
    const double X = TSTAR[k];
    const std::size_t i = row_of(X);
    const double from1 = X - rows[i], from2 = X - rows[i + 1];
    r.Y[k] = {lines.Y[i], lines.Y[i + 1]};
    r.numerator[k] = {lines.rise[i] * from1, lines.rise[i + 1] * from2};
    r.step[k] = {steps[i], steps[i + 1]};
    r.from1[k] = from1;
    r.from2[k] = from2;
  }
  return weigh(r, OMEGA);
}

}  // namespace

bool collision_integrals(CollisionIntegral IOM, std::span<const double> TSTAR, double DSTAR,
                         std::span<double> OMEGA) {
  if (TSTAR.size() > most_points) return false;
  const bool in_rows = !TSTAR.empty() && TSTAR.front() > 0.1 + 2 * first_row_tolerance && TSTAR.back() <= 100;
  if (!in_rows || !(DSTAR > -dipole_tolerance && DSTAR <= 2.5)) return false;
  if (DSTAR < dipole_tolerance) {
    return interpolate(IOM == CollisionIntegral::diffusion ? nonpolar_diffusion : nonpolar_viscosity, TSTAR,
                       OMEGA);
  }
  const std::size_t last = row_of(TSTAR.back()) + 2;
  return interpolate(polar_lines(table_of(IOM), DSTAR, row_of(TSTAR.front()), last), TSTAR, OMEGA);
}

double MXIOME(CollisionIntegral IOM, double TSTAR, double DSTAR, Listing& MSGFIL, bool& LOK) {
  LOK = true;
  if (out_of_domain(TSTAR, DSTAR)) {
    write<"(/,5X,'ERROR: Collision integral undefined in -MXIOME-')">(MSGFIL);
    LOK = false;
    return 0;
  }
  if (TSTAR > 100 && !std::isnan(DSTAR)) return high_temperature(IOM, TSTAR);

  const bool polar = !(std::abs(DSTAR) < dipole_tolerance);
  const bool at_first_row = std::abs(TSTAR - 0.1) <= first_row_tolerance;
  if (at_first_row) TSTAR = TSTERN[0];
  const int row = at_first_row ? 0 : bracket(TSTERN, TSTAR);
  const int column = polar ? bracket(DELTA, DSTAR) : 0;
  if (row < 0 || column < 0) {
    write<"(/,5X,'ERROR: Table of collision integrals in -MXIOME- ', 'incorrect')">(MSGFIL);
    LOK = false;
    return 0;
  }

  const CollisionTable& table = table_of(IOM);
  std::array<double, 3> V{};
  for (int k = 0; k < 3; ++k) {
    const auto& line = table[static_cast<std::size_t>(row + k)];
    V[static_cast<std::size_t>(k)] =
        polar ? MXIINT(DSTAR, three(DELTA, column), three(line, column)) : line[0];
  }
  return MXIINT(TSTAR, three(TSTERN, row), V);
}

double MXIINT(double X, const std::array<double, 3>& XT, const std::array<double, 3>& YT) {
  const auto [X1, X2, X3] = XT;
  const auto [Y1, Y2, Y3] = YT;
  const double P1 = Y1 + (Y2 - Y1) * (X - X1) / (X2 - X1);
  const double P2 = Y2 + (Y3 - Y2) * (X - X2) / (X3 - X2);
  if (X < X2) {
    const double W = 0.5 * (X - X1) / (X2 - X1);
    return (P1 + W * P2) / (1 + W);
  }
  const double W = 0.5 * (X3 - X) / (X3 - X2);
  return (P2 + W * P1) / (1 + W);
}

double MXIPAR(double T, double EPS) {
  const auto polynomial = [](double x) {
    const double root = std::sqrt(x);
    return 1 + 2.7842F * root + 4.4674F * x + 5.5683F * x * root;
  };
  return polynomial(EPS / 298) / polynomial(EPS / T);
}

}  // namespace varpre
