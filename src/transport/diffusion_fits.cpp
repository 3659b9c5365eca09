#include "transport/diffusion_fits.h"

#include <algorithm>
#include <cmath>

#include "math/elementary.h"
#include "math/wide_vectors.h"
#include "transport/collision_integrals.h"

namespace varpre {
namespace {

constexpr double polar_limit = 1.0e-20;  // debye

double cube(double x) {
  return x * (x * x);
}

// Potential parameters of a pair.
struct Pair {
  double EPS;    // K
  double SIGMA;  // angstrom
  double DSTAR;  // reduced dipole moment
};

// A polar and a nonpolar species: the dipole induces a moment, which deepens the well and draws the pair
// together.
Pair induced_pair(const Molecule& polar, const Molecule& nonpolar) {
  constexpr double minus_one_sixth = -1.0F / 6.0F;
  const double dipole = 7243.23F * (polar.DI1 * polar.DI1) / (polar.EPS * cube(polar.SIGMA));
  const double polarizability = nonpolar.DI2 / cube(nonpolar.SIGMA);
  const double xi = 1 + 0.25 * polarizability * dipole * std::sqrt(polar.EPS / nonpolar.EPS);
  return {xi * xi * std::sqrt(polar.EPS * nonpolar.EPS),
          0.5 * (polar.SIGMA + nonpolar.SIGMA) * math::pow(xi, minus_one_sixth), 0};
}

Pair plain_pair(const Molecule& i, const Molecule& j) {
  const double EPS = std::sqrt(i.EPS * j.EPS);
  const double SIGMA = 0.5 * (i.SIGMA + j.SIGMA);
  return {EPS, SIGMA, 3621.5 * i.DI1 * j.DI1 / (EPS * cube(SIGMA))};
}

Pair combine(const Molecule& i, const Molecule& j) {
  const auto polar = [](const Molecule& m) { return m.DI1 > polar_limit; };
  const auto nonpolar = [](const Molecule& m) { return m.DI1 < polar_limit; };
  if (polar(i) && nonpolar(j)) return induced_pair(i, j);
  if (nonpolar(i) && polar(j)) return induced_pair(j, i);
  return plain_pair(i, j);
}

// p D(T), Pa m2/s, from T^3 and the collision integrals.
VARPRE_WIDE_VECTORS
void diffusion_coefficients(const Pair& pair, double Mi, double Mj, std::span<const double> T3,
                            std::span<const double> OMEGA, std::span<double> D) {
  const double sigma2 = pair.SIGMA * pair.SIGMA;
  for (std::size_t k = 0; k < D.size(); ++k) {
    D[k] = 0.02663F * std::sqrt(T3[k] * (Mi + Mj) / (2 * Mi * Mj)) / (sigma2 * OMEGA[k]);
  }
}

VARPRE_WIDE_VECTORS
void reduced_temperatures(std::span<const double> T, double EPS, std::span<double> TSTAR) {
  for (std::size_t k = 0; k < T.size(); ++k) TSTAR[k] = T[k] / EPS;
}

// p D of one pair after the other on the grid. Holds the room that it needs.
class Coefficients {
 public:
  explicit Coefficients(const FitGrid& grid)
      : T_(grid.T), T3_(grid.points()), TSTAR_(grid.points()), OMEGA_(grid.points()), D_(grid.points()) {
    std::transform(T_.begin(), T_.end(), T3_.begin(), cube);
  }

  // p D(T) of a pair up to the first temperature at which the collision integral is undefined; how many
  // points that are.
  std::size_t compute(const Pair& pair, double Mi, double Mj, Listing& MSGFIL) {
    const std::size_t points = collision_integrals_of(pair, MSGFIL);
    diffusion_coefficients(pair, Mi, Mj, T3_, OMEGA_, D_);
    return points;
  }
  std::span<const double> D() const { return D_; }

 private:
  std::size_t collision_integrals_of(const Pair& pair, Listing& MSGFIL) {
    constexpr auto diffusion = CollisionIntegral::diffusion;
    reduced_temperatures(T_, pair.EPS, TSTAR_);
    if (collision_integrals(diffusion, TSTAR_, pair.DSTAR, OMEGA_)) return T_.size();
    for (std::size_t k = 0; k < T_.size(); ++k) {
      bool LOK = true;
      OMEGA_[k] = MXIOME(diffusion, TSTAR_[k], pair.DSTAR, MSGFIL, LOK);
      if (!LOK) return k;
    }
    return T_.size();
  }

  std::span<const double> T_;
  std::vector<double> T3_;
  std::vector<double> TSTAR_;
  std::vector<double> OMEGA_;
  std::vector<double> D_;
};

// Whether one of the two records has been told of, which explains the failure.
bool follows_from_a_record(const Molecule& a, const Molecule& b, Findings& findings) {
  constexpr auto error = Findings::Severity::error;
  return findings.follows(a.record, "failed fit", error) || findings.follows(b.record, "failed fit", error);
}

}  // namespace

bool GENDIF(std::span<const SpeciesName> SYMB, std::span<const double> XMOL,
            std::span<const Molecule> molecules, const FitGrid& grid, bool print, Listing& MSGFIL,
            std::vector<FitCoefficients>& DBIN) {
  if (print) write<"(/,7X,'RESULTS OF GENDIF AT P = 1.00 BAR')">(MSGFIL);
  DBIN.reserve(SYMB.size() * (SYMB.size() + 1) / 2);
  Coefficients coefficients(grid);
  for (std::size_t i = 0; i < SYMB.size(); ++i) {
    for (std::size_t j = 0; j <= i; ++j) {
      if (print) {
        write<"(/,2X)">(MSGFIL);
        write<"(1X,5X,'SPECIES PAIR ',A,'-',A)">(MSGFIL, Text<21>(SYMB[i].view()), Text<21>(SYMB[j].view()));
      }
      const auto the_pair = [&] { return message("the species pair '", SYMB[i], "' and '", SYMB[j], "'"); };
      const Place& record = molecules[i].record;
      const Pair pair = combine(molecules[i], molecules[j]);
      const std::size_t points = coefficients.compute(pair, XMOL[i], XMOL[j], MSGFIL);
      if (points < grid.points()) {
        if (follows_from_a_record(molecules[i], molecules[j], MSGFIL.findings)) return false;
        MSGFIL.findings.error(record,
                              message(the_pair(), " has no collision integral at ", grid.T[points],
                                      " K with a mean well depth of ", about(pair.EPS), " K"),
                              collision_domain);
        return false;
      }
      const FitResult fit = LOGFIT(grid, coefficients.D(), print, MSGFIL, worst_fit);
      if (!fit.LOK) {
        if (follows_from_a_record(molecules[i], molecules[j], MSGFIL.findings)) return false;
        MSGFIL.findings.error(record,
                              message("the diffusion coefficient of ", the_pair(), " is not positive"));
        return false;
      }
      DBIN.push_back(fit.COEF);
      warn_of_poor_fit<
          "(3X,'WARNING: FIT OF DIFFUSION COEFFICIENT CAUSES', ' AN ERROR OF',/,3X,2PF5.1,"
          "'%  FOR SPECIES PAIR  ', A8,'-',A8,' AT ',0PF5.0,' K')">(
          fit, grid, record, Findings::Site::current(), MSGFIL,
          [&] { return message("diffusion coefficient of ", the_pair()); }, SYMB[i], SYMB[j]);
      if (print) write<"(1X,2X,'COEFF. OF BIN. D :',4(3X,1PE9.2))">(MSGFIL, fit.COEF);
    }
  }
  return true;
}

}  // namespace varpre
