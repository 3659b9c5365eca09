#include "transport/conductivity_fits.h"

#include <cmath>

#include "textio/findings/record_findings.h"
#include "thermo/thermo_functions.h"
#include "transport/collision_integrals.h"

namespace varpre {
namespace {

constexpr double R = gas_constant;
constexpr double cv_trans = 12.47145;  // 1.5 R, J/(mol K)
constexpr double worst_fit = 0.02F;

// The properties of one species on the grid.
struct Properties {
  explicit Properties(std::size_t points) : lambda(points), lambda_mono(points), eta(points) {}
  std::vector<double> lambda;       // heat conductivity, J/(m K s)
  std::vector<double> lambda_mono;  // its monoatomic part, J/(m K s)
  std::vector<double> eta;          // viscosity, kg/(m s)
};

// Rotational heat capacity, J/(mol K); the geometry index is 0, 1 or 2.
double rotational_heat_capacity(int IGEOM) {
  return IGEOM == 0 ? 0 : IGEOM == 1 ? R : 1.5 * R;
}

// Polar water molecules exchange internal energy in collisions, which slows its diffusion.
bool exchanges_internal_energy(const SpeciesName& name) {
  return name.view() == "H2O     ";
}

// Evaluates one species at every grid temperature; false when a collision integral is undefined.
bool compute(int I, const SpeciesName& name, const Molecule& molecule, double M,
             std::span<const ThermoFit> fit, const FitGrid& grid, Properties& properties, Listing& MSGFIL) {
  const double EPS = molecule.EPS;
  const double sigma2 = molecule.SIGMA * molecule.SIGMA;
  const double sigma3 = molecule.SIGMA * sigma2;
  const double DSTAR = 3621.6F * (molecule.DI1 * molecule.DI1) / (EPS * sigma3);
  const double cv_rot = rotational_heat_capacity(molecule.IGEOM);

  for (std::size_t k = 0; k < grid.points(); ++k) {
    const double T = grid.T[k];
    const double TSTAR = T / EPS;
    double Zrot = molecule.DI3 * MXIPAR(T, EPS);
    if (Zrot < 1.0E-20F) Zrot = 1.0E20F;  // no rotation: its relaxation drops out
    const double cp = CALCPI(I, T, fit, MSGFIL);
    const double cv_vib = cp - R - cv_rot - 1.5 * R;

    bool LOK = true;
    const double omega22 = MXIOME(CollisionIntegral::viscosity, TSTAR, DSTAR, MSGFIL, LOK);
    if (!LOK) {
      MSGFIL.findings.error(molecule.record,
                            message("the collision integrals of species '", name, "' are undefined at ", T,
                                    " K: reduced temperature ", TSTAR, ", reduced dipole moment ", DSTAR),
                            collision_domain);
      return false;
    }
    const double eta = 2.669E-5 * std::sqrt(M * T) / (sigma2 * omega22);
    // Both integrals have one domain: where the first is defined, so is the second.
    const double omega11 = MXIOME(CollisionIntegral::diffusion, TSTAR, DSTAR, MSGFIL, LOK);
    double Ds = 0.002662 * std::sqrt(T * (T * T) / M) / (sigma2 * omega11);  // self-diffusion
    if (exchanges_internal_energy(name)) {
      Ds = Ds / (1 + 2.37E6 / (T * T * omega11 * sigma2 * (cv_vib + cv_rot) / R));
    }

    const double A = 0.01203F * M / T * Ds / eta;  // density times Ds over viscosity, at 1 bar
    const double B = Zrot + 0.63662F * (1.6667F * cv_rot / R + A);
    const double f_trans = 2.5 * (1 - 0.63662F * cv_rot * (2.5 - A) / (B * cv_trans));
    const double f_rot = A * (1 + 0.63662F * (2.5 - A) / B);
    const double f_vib = A;
    const double lambda = eta / M * (f_trans * cv_trans + f_rot * cv_rot + f_vib * cv_vib);
    const double lambda_mono = eta / M * f_trans * cv_trans;
    properties.lambda[k] = 100 * lambda;
    properties.lambda_mono[k] = 100 * lambda_mono;
    properties.eta[k] = 0.1 * eta;
  }
  return true;
}

// Fits one property; false, after the message, when that fails. The three properties differ in their texts
// only.
template <FormatText Heading, FormatText Coefficients, FormatText Warning>
bool fit_property(std::string_view property, std::span<const double> V, const SpeciesName& name,
                  const Place& record, const FitGrid& grid, bool print, Listing& MSGFIL,
                  FitCoefficients& COEF) {
  if (print) write<Heading>(MSGFIL);
  const FitResult fit = LOGFIT(grid, V, print, MSGFIL, worst_fit);
  if (!fit.LOK) {
    write<"(1X,' ERROR WHILE FITTING DATA FOR -GENLAM- ')">(MSGFIL);
    MSGFIL.findings.error(
        record,
        message("the ", property, " of species '", name, "' cannot be fitted: not every value is positive"),
        "its molecular data and its heat capacity must give positive values from 200 to 2600 K");
    return false;
  }
  COEF = fit.COEF;
  if (print) write<Coefficients>(MSGFIL, COEF);
  if (fit.ERRMAX > worst_fit) {
    const double T = grid.T[static_cast<std::size_t>(fit.IMAX - 1)];
    write<Warning>(MSGFIL, fit.ERRMAX, name, T);
    MSGFIL.findings.warning(record, message("the fit of the ", property, " of species '", name,
                                            "' is off by ", percent(fit.ERRMAX), " % at ", T, " K"));
  }
  return true;
}

bool fit_all(const Properties& properties, const SpeciesName& name, const Place& record, const FitGrid& grid,
             bool print, Listing& MSGFIL, ConductivityFits& fits) {
  return fit_property<
             "(1X,4X,' VALUES OF HEAT CONDUCTIVITY (J/(M*K*S))',/)",
             "(1X,4X,'COEFF. OF LAMBDA :',4(3X,1PE9.2),/)",
             "(3X,'WARNING: FIT OF LAMBDA COEFFICIENT CAUSES', ' AN ERROR OF',/,3X,2PF5.1,'%  FOR SPECIES ', A,"
             "' AT ',0PF5.0,' K')">("heat conductivity", properties.lambda, name, record, grid, print, MSGFIL,
                                    fits.XLAM) &&
         fit_property<
             "(1X,5X,'VALUES OF MONOATOMIC PART OF LAMBDA (J/(M*K*S))',/)",
             "(1X,4X,'COEFF. OF LAMMON :',4(3X,1PE9.2),/)",
             "(3X,'WARNING: FIT OF XLM       COEFFICIENT CAUSES', ' AN ERROR OF',/,3X,2PF5.1,'%  FOR SPECIES ', A,"
             "' AT ',0PF5.0,' K')">("monoatomic heat conductivity", properties.lambda_mono, name, record,
                                    grid, print, MSGFIL, fits.XLMO) &&
         fit_property<
             "(1X,4X,' VALUES OF VISCOSITY (KG/(M*S))',/)", "(1X,4X,'COEFF. OF ETA    :',4(3X,1PE9.2))",
             "(3X,'WARNING: FIT OF VISCOSITY COEFFICIENT CAUSES', ' AN ERROR OF',/,3X,2PF5.1,'%  FOR SPECIES ', A,"
             "' AT ',0PF5.0,' K')">("viscosity", properties.eta, name, record, grid, print, MSGFIL, fits.ETA);
}

}  // namespace

bool GENLAM(std::span<const SpeciesName> SYMB, std::span<const ThermoFit> fit, std::span<const double> XMOL,
            std::span<const Molecule> molecules, const FitGrid& grid, bool print, Listing& MSGFIL,
            std::vector<ConductivityFits>& fits) {
  Properties properties(grid.points());
  fits.reserve(SYMB.size());
  for (std::size_t i = 0; i < SYMB.size(); ++i) {
    if (print) write<"(/,4X,'RESULTS OF -INLAM- FOR SPECIES ',A,' AT 1 BAR',/)">(MSGFIL, SYMB[i]);
    const int IGEOM = molecules[i].IGEOM;
    if (IGEOM < 0 || IGEOM > 2) {
      write<"(1X,5X,'ERROR - Species ',A8,' has the unknown geometry',I3)">(MSGFIL, SYMB[i], IGEOM);
      MSGFIL.findings.error(
          {.unit = molecules[i].record.unit, .record = molecules[i].record.record, .column = 9, .width = 2},
          message("species '", SYMB[i], "' has the unknown geometry index ", IGEOM),
          "columns 9-10 hold 0 for an atom, 1 for a linear, 2 for a non-linear molecule");
      return false;
    }
    const int I = static_cast<int>(i) + 1;
    if (!compute(I, SYMB[i], molecules[i], XMOL[i], fit, grid, properties, MSGFIL)) return false;
    if (!fit_all(properties, SYMB[i], molecules[i].record, grid, print, MSGFIL, fits.emplace_back()))
      return false;
  }
  return true;
}

}  // namespace varpre
