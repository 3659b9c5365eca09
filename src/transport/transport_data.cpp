#include "transport/transport_data.h"

#include <algorithm>
#include <vector>

#include "files/store_records.h"
#include "textio/channel/run_stop.h"
#include "textio/channel/statement.h"
#include "textio/record/numbered.h"
#include "thermo/thermo_database.h"
#include "transport/conductivity_fits.h"
#include "transport/diffusion_fits.h"
#include "transport/log_fit.h"

namespace varpre {
namespace {

// The work space that a run of NSMAX species may take, as reals and as integers.
static_assert(4 * NSMAX * NSMAX + 22 * NSMAX <= 400000 && NSMAX <= 500);

// The interval in hundreds of kelvin. The division is made in single precision.
int hundreds(double T) {
  return static_cast<int>(static_cast<float>(static_cast<int>(T)) / 100.0F);
}

FitGrid fit_grid(int ITU, int ITB) {
  std::vector<double> T;
  for (int k = std::max(ITU, 2); k <= ITB; ++k) T.push_back(100.0 * k);
  return FitGrid(std::move(T));
}

bool has_molar_masses(const SpeciesView& gas, Listing& MSGFIL) {
  bool LOK = true;
  for (std::size_t i = 0; i < gas.SYMB.size(); ++i) {
    if (gas.XMOL[i] > 0) continue;
    write<"(' ',5X,'ERROR - Species ',A8,' has no molar mass')">(MSGFIL, gas.SYMB[i]);
    LOK = false;
    if (!gas.listed[i]) continue;
    if (MSGFIL.findings.follows(gas.fit[i].entry, "failed fit", Findings::Severity::error)) continue;
    MSGFIL.findings.error(
        locate(gas.listed[i], gas.SYMB[i].view()),
        message("the molar mass of species '", gas.SYMB[i], "' is ", gas.XMOL[i], " kg/mol"),
        "a gas species needs elements in columns 25-44 of its thermochemical entry");
  }
  return LOK;
}

struct TransportFits {
  std::vector<ConductivityFits> single;
  std::vector<FitCoefficients> DBIN;  // pairs (1,1), (2,1), (2,2), ...
};

// `grams` are the molar masses in g/mol.
bool fit_transport(const SpeciesView& gas, std::span<const double> grams, std::span<const Molecule> molecules,
                   const FitGrid& grid, bool print, Listing& MSGFIL, TransportFits& fits) {
  return GENLAM(gas.SYMB, gas.fit, grams, molecules, grid, print, MSGFIL, fits.single) &&
         GENDIF(gas.SYMB, grams, molecules, grid, print, MSGFIL, fits.DBIN);
}

void write_block(const SpeciesView& gas, std::span<const Molecule> molecules, const TransportFits& fits,
                 StoreFile& NFISTO) {
  const int NG = gas.size();
  for (int i = 1; i <= NG; ++i) write<store_records::conductivity>(NFISTO, i, at(fits.single, i).XLAM);
  for (int i = 1; i <= NG; ++i)
    write<store_records::monoatomic_conductivity>(NFISTO, i, at(fits.single, i).XLMO);
  for (int i = 1; i <= NG; ++i) write<store_records::viscosity>(NFISTO, i, at(fits.single, i).ETA);
  auto pair = fits.DBIN.begin();
  for (int i = 1; i <= NG; ++i) {
    for (int j = 1; j <= i; ++j) write<store_records::diffusion>(NFISTO, i, j, *pair++);
  }
  const auto column = [&](double Molecule::*property) {
    std::vector<double> values;
    for (const Molecule& molecule : molecules) values.push_back(molecule.*property);
    return values;
  };
  const auto list = [](const std::vector<double>& values) { return std::span<const double>(values); };
  write<store_records::well_depths>(NFISTO, list(column(&Molecule::EPS)));
  write<store_records::diameters>(NFISTO, list(column(&Molecule::SIGMA)));
  write<store_records::dipole_moments>(NFISTO, list(column(&Molecule::DI1)));
  write<store_records::polarizabilities>(NFISTO, list(column(&Molecule::DI2)));
  write<store_records::collision_numbers>(NFISTO, list(column(&Molecule::DI3)));
}

// Checks the interval, fits, and writes the block; false after its messages, nothing written.
bool GENTRA(SpeciesView gas, const TemperatureInterval& interval, TransportData& data, bool print,
            Listing& MSGFIL, StoreFile& NFISTO) {
  const int ITB = hundreds(interval.TB + 101);
  const int ITU = hundreds(interval.TU - 1);
  if (ITB - ITU > 50) {
    write<"(5X,'TEMPERATURE INTERVAL TOO LARGE, TB-TU > 5000 K')">(MSGFIL);
    return false;
  }
  if (ITB - ITU <= 3) {
    write<"(5X,'TEMPERATURE INTERVAL TOO SMALL, TB-TU < 300 K')">(MSGFIL);
    return false;
  }
  if (!has_molar_masses(gas, MSGFIL)) return false;

  std::vector<double> grams;
  for (const double XMOL : gas.XMOL) grams.push_back(1000 * XMOL);
  for (const double M : grams) data.XMOL.push_back(M / 1000);
  TransportFits fits;
  if (!fit_transport(gas, grams, data.molecules, fit_grid(ITU, ITB), print, MSGFIL, fits)) return false;
  write_block(gas, data.molecules, fits, NFISTO);
  gas.XMOL = data.XMOL;
  PRTHD(gas, NFISTO);
  return true;
}

}  // namespace

TransportData GENSPD(const SpeciesView& gas, const TemperatureInterval& interval, Input& NFIMOL, bool print,
                     Listing& MSGFIL, StoreFile& NFISTO) {
  TransportData data;
  bool LOK = GENSPE(gas, NFIMOL, MSGFIL, data.molecules, print);
  write<"(2X)">(MSGFIL);
  if (LOK) {
    LOK = GENTRA(gas, interval, data, print, MSGFIL, NFISTO);
    write<"(2X)">(MSGFIL);
  }
  if (LOK) return data;
  write<"(3(/,6X,15('*'),'ABNORMAL END IN GENSPD',15('*')))">(MSGFIL);
  throw RunStop{};
}

}  // namespace varpre
