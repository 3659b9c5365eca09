#include "transport/conductivity_fits.h"

#include <algorithm>
#include <cmath>

#include "textio/record/numbered.h"
#include "thermo/thermo_functions.h"
#include "transport/collision_integrals.h"
#include "transport/molecule_findings.h"

namespace varpre {
namespace {

constexpr double R = gas_constant;
constexpr double cv_trans = 12.47145;  // 1.5 R, J/(mol K)

// A species, and what its two databases say of it.
struct Subject {
  int I;  // its number, from 1
  const SpeciesName& name;
  const Molecule& molecule;
  std::span<const ThermoFit> fits;  // of all species

  const ThermoFit& fit() const { return at(fits, I); }
};

// The properties of one species on the grid.
struct Properties {
  explicit Properties(std::size_t points) : cp(points), lambda(points), lambda_mono(points), eta(points) {}
  std::vector<double> cp;           // heat capacity, J/(mol K)
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

// The value to blame when the collision integrals of a species are undefined.
MoleculeField cause_of_undefined(const Molecule& molecule, double TSTAR) {
  if (TSTAR < 0.1 || TSTAR > 100) return MoleculeField::well_depth;
  return molecule.SIGMA < 1 ? MoleculeField::diameter : MoleculeField::dipole_moment;
}

double value_of(const Molecule& molecule, MoleculeField cause) {
  if (cause == MoleculeField::well_depth) return molecule.EPS;
  return cause == MoleculeField::diameter ? molecule.SIGMA : molecule.DI1;
}

// Heat conductivity by Mason and Monchick, from the heat capacities in J/(mol K), the ratio A of density
// times self-diffusion coefficient to viscosity, and viscosity over molar mass.
struct HeatConductivity {
  double whole;
  double monoatomic;
};
HeatConductivity heat_conductivity(double cv_rot, double cv_vib, double Zrot, double A, double eta_by_M) {
  const double B = Zrot + 0.63662F * (1.6667F * cv_rot / R + A);
  const double f_trans = 2.5 * (1 - 0.63662F * cv_rot * (2.5 - A) / (B * cv_trans));
  const double f_rot = A * (1 + 0.63662F * (2.5 - A) / B);
  const double f_vib = A;
  return {eta_by_M * (f_trans * cv_trans + f_rot * cv_rot + f_vib * cv_vib), eta_by_M * f_trans * cv_trans};
}

// Evaluates one species, of molar mass M, at every grid temperature; false when a collision integral is
// undefined.
bool compute(const Subject& species, double M, const FitGrid& grid, Properties& properties, Listing& MSGFIL) {
  const Molecule& molecule = species.molecule;
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
    const double cp = CALCPI(species.I, T, species.fits, MSGFIL);
    const double cv_vib = cp - R - cv_rot - 1.5 * R;

    bool LOK = true;
    const double omega22 = MXIOME(CollisionIntegral::viscosity, TSTAR, DSTAR, MSGFIL, LOK);
    if (!LOK) {
      const MoleculeField cause = cause_of_undefined(molecule, TSTAR);
      if (MSGFIL.findings.follows(molecule.record, "failed fit", Findings::Severity::error)) return false;
      MSGFIL.findings.error(place_of(molecule, cause),
                            message("species '", species.name, "' has no collision integrals at ", T,
                                    " K with ", molecule_field(cause), " of ", value_of(molecule, cause)),
                            collision_domain);
      return false;
    }
    const double eta = 2.669E-5 * std::sqrt(M * T) / (sigma2 * omega22);
    // Both integrals have one domain: where the first is defined, so is the second.
    const double omega11 = MXIOME(CollisionIntegral::diffusion, TSTAR, DSTAR, MSGFIL, LOK);
    double Ds = 0.002662 * std::sqrt(T * (T * T) / M) / (sigma2 * omega11);  // self-diffusion
    if (exchanges_internal_energy(species.name)) {
      Ds = Ds / (1 + 2.37E6 / (T * T * omega11 * sigma2 * (cv_vib + cv_rot) / R));
    }

    const double A = 0.01203F * M / T * Ds / eta;  // at 1 bar
    const auto [lambda, lambda_mono] = heat_conductivity(cv_rot, cv_vib, Zrot, A, eta / M);
    properties.cp[k] = cp;
    properties.lambda[k] = 100 * lambda;
    properties.lambda_mono[k] = 100 * lambda_mono;
    properties.eta[k] = 0.1 * eta;
  }
  return true;
}

// A property has no logarithm: because of a negative heat capacity, or of the molecule.
void report_not_positive(std::string_view property, const Subject& species, const Properties& properties,
                         const FitGrid& grid, Findings& findings) {
  if (findings.follows(species.fit().entry, "failed fit", Findings::Severity::error)) return;
  const auto lowest = std::min_element(properties.cp.begin(), properties.cp.end());
  if (*lowest < 0) {
    const double T = grid.T.begin()[lowest - properties.cp.begin()];
    findings.error(species.fit().entry,
                   message("the ", property, " of species '", species.name,
                           "' cannot be fitted: its heat capacity is ", *lowest, " J/(mol K) at ", T, " K"),
                   "a gas has 20.8 J/(mol K) at least");
    return;
  }
  if (findings.follows(species.molecule.record, "failed fit", Findings::Severity::error)) return;
  findings.error(species.molecule.record,
                 message("the ", property, " of species '", species.name,
                         "' cannot be fitted: not every value is positive"),
                 "its molecular data and its heat capacity must give positive values from 200 to 2600 K");
}

// Fits one property; false, after the message, when that fails. The three properties differ in their texts
// only.
template <FormatText Heading, FormatText Coefficients, FormatText Warning>
bool fit_property(std::string_view property, std::span<const double> V, const Subject& species,
                  const Properties& properties, const FitGrid& grid, bool print, Listing& MSGFIL,
                  FitCoefficients& COEF) {
  if (print) write<Heading>(MSGFIL);
  const FitResult fit = LOGFIT(grid, V, print, MSGFIL, worst_fit);
  if (!fit.LOK) {
    write<"(1X,' ERROR WHILE FITTING DATA FOR -GENLAM- ')">(MSGFIL);
    report_not_positive(property, species, properties, grid, MSGFIL.findings);
    return false;
  }
  COEF = fit.COEF;
  if (print) write<Coefficients>(MSGFIL, COEF);
  const Place& entry = species.fit().entry;
  warn_of_poor_fit<Warning>(
      fit, grid, MSGFIL.findings.is_told(entry) ? entry : species.molecule.record, Findings::Site::current(),
      MSGFIL, [&] { return message(property, " of species '", species.name, "'"); }, species.name);
  return true;
}

bool fit_all(const Properties& properties, const Subject& species, const FitGrid& grid, bool print,
             Listing& MSGFIL, ConductivityFits& fits) {
  return fit_property<
             "(1X,4X,' VALUES OF HEAT CONDUCTIVITY (J/(M*K*S))',/)",
             "(1X,4X,'COEFF. OF LAMBDA :',4(3X,1PE9.2),/)",
             "(3X,'WARNING: FIT OF LAMBDA COEFFICIENT CAUSES', ' AN ERROR OF',/,3X,2PF5.1,'%  FOR SPECIES ', A,"
             "' AT ',0PF5.0,' K')">("heat conductivity", properties.lambda, species, properties, grid, print,
                                    MSGFIL, fits.XLAM) &&
         fit_property<
             "(1X,5X,'VALUES OF MONOATOMIC PART OF LAMBDA (J/(M*K*S))',/)",
             "(1X,4X,'COEFF. OF LAMMON :',4(3X,1PE9.2),/)",
             "(3X,'WARNING: FIT OF XLM       COEFFICIENT CAUSES', ' AN ERROR OF',/,3X,2PF5.1,'%  FOR SPECIES ', A,"
             "' AT ',0PF5.0,' K')">("monoatomic heat conductivity", properties.lambda_mono, species,
                                    properties, grid, print, MSGFIL, fits.XLMO) &&
         fit_property<
             "(1X,4X,' VALUES OF VISCOSITY (KG/(M*S))',/)", "(1X,4X,'COEFF. OF ETA    :',4(3X,1PE9.2))",
             "(3X,'WARNING: FIT OF VISCOSITY COEFFICIENT CAUSES', ' AN ERROR OF',/,3X,2PF5.1,'%  FOR SPECIES ', A,"
             "' AT ',0PF5.0,' K')">("viscosity", properties.eta, species, properties, grid, print, MSGFIL,
                                    fits.ETA);
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
      MSGFIL.findings.error(place_of(molecules[i], MoleculeField::geometry),
                            message("species '", SYMB[i], "' has the unknown geometry index ", IGEOM),
                            "columns 9-10 hold 0 for an atom, 1 for a linear, 2 for a non-linear molecule");
      return false;
    }
    const Subject species{static_cast<int>(i) + 1, SYMB[i], molecules[i], fit};
    if (!compute(species, XMOL[i], grid, properties, MSGFIL)) return false;
    if (!fit_all(properties, species, grid, print, MSGFIL, fits.emplace_back())) return false;
  }
  return true;
}

}  // namespace varpre
