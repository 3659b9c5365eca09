#include <cmath>
#include <gtest/gtest.h>

#include "support/stages.h"
#include "textio/channel/run_stop.h"
#include "transport/conductivity_fits.h"
#include "transport/diffusion_fits.h"
#include "transport/transport_data.h"

namespace varpre {
namespace {

double value(const FitCoefficients& c, double T) {
  const double x = std::log(T);
  return std::exp(c[0] + x * (c[1] + x * (c[2] + x * c[3])));
}

std::vector<double> hundreds(int first, int last) {
  std::vector<double> T;
  for (int k = first; k <= last; ++k) T.push_back(100. * k);
  return T;
}

// On as many points as coefficients a fit passes through them.
const FitGrid four_points({400, 1000, 2000, 4000});

TEST(LogFit, ReproducesWhatFollowsItsLaw) {
  const FitGrid grid(hundreds(2, 26));
  constexpr FitCoefficients law{-16, 4.05, -0.46, 0.0207};
  std::vector<double> V;
  for (const double T : grid.T) V.push_back(value(law, T));
  Listing listing;
  const FitResult fit = LOGFIT(grid, V, false, listing);
  EXPECT_TRUE(fit.LOK);
  EXPECT_LT(fit.ERRMAX, 1e-9);
  EXPECT_EQ(listing.file.text, "");
}

TEST(LogFit, ReportsTheLastOfItsWorstPoints) {
  const FitGrid grid(hundreds(2, 26));
  Listing listing;
  // ln 1 = 0: no deviation anywhere.
  EXPECT_EQ(LOGFIT(grid, std::vector<double>(25, 1), false, listing).IMAX, 25);
  std::vector<double> V(25, 1);
  V[6] = 1.5;
  EXPECT_EQ(LOGFIT(grid, V, false, listing).IMAX, 7);
}

TEST(LogFit, FailsWithItsMessages) {
  const auto message = [](const std::vector<double>& T, const std::vector<double>& V) {
    Listing listing;
    const FitResult fit = LOGFIT(FitGrid(T), V, false, listing);
    EXPECT_FALSE(fit.LOK);
    return listing.file.text;
  };
  const std::string stationary = "      STATIONARITY IN -GENLAM-(AGL)\n";
  Listing listing;
  EXPECT_TRUE(LOGFIT(FitGrid({300, 350, 400, 450}), std::vector<double>(4, 1), false, listing).LOK);
  EXPECT_EQ(message({200, 300, 400}, {1, 1, 1}),
            "\n     NUMBER OF UNKNOWN VALUES IN -INIAGL- TOO LARGE\n" + stationary);
  // The smallest pivot is 0.94E-5; of steps of 50 K it is 1.04E-5, enough.
  EXPECT_EQ(message({300, 349, 398, 447}, {1, 1, 1, 1}), "\n     STATIONARITY IN -INIAGL-\n" + stationary);
  for (const double bad : {0., -1., double(NAN), double(INFINITY)}) {
    EXPECT_EQ(message({200, 300, 400, 500}, {1, bad, bad, 1}), "      VALUE TO FIT IS NOT POSITIVE\n") << bad;
  }
}

// A nonpolar and a polar molecule; neither name nor geometry matters here.
Molecule molecule(double EPS, double SIGMA, double DI1, double DI2) {
  Molecule m;
  m.EPS = EPS, m.SIGMA = SIGMA, m.DI1 = DI1, m.DI2 = DI2;
  return m;
}
const std::vector pair{molecule(100, 3, 0, 2), molecule(400, 2.5, 1.5, 0)};

TEST(DiffusionFits, FollowTheCombinationRules) {
  Listing listing;
  std::vector<FitCoefficients> DBIN;
  ASSERT_TRUE(GENDIF(names("A B"), std::array{20., 18.}, pair, four_points, false, listing, DBIN));
  ASSERT_EQ(DBIN.size(), 3U);
  // T* = 4, 10, 20, 40 are rows of the table: 0.02663 sqrt(400^3 / 20) / (9 * 0.8845), ...
  EXPECT_NEAR(value(DBIN[0], 400), 47.63719 / 7.9605, 6e-6);
  EXPECT_NEAR(value(DBIN[0], 4000), 280.650605, 3e-4);
  // xi = 1.0965764, epsilon = 240.49596 K, sigma = 2.7080622.
  EXPECT_NEAR(value(DBIN[1], 400), 5.79901800, 6e-6);
  EXPECT_NEAR(value(DBIN[1], 2000), 97.4137499, 1e-4);
  // delta* = 1.30374, between the columns of row 1.
  EXPECT_NEAR(value(DBIN[2], 400), 4.42507765, 5e-6);
  EXPECT_NEAR(value(DBIN[2], 1000), 28.0294502, 3e-5);
}

TEST(ConductivityFits, OfAnAtomAreItsViscosityTimesAConstant) {
  const std::array fit{thermo_fit({2.5 * 8.3143}, {2.5 * 8.3143})};
  Listing listing;
  std::vector<ConductivityFits> fits;
  ASSERT_TRUE(
      GENLAM(names("A"), fit, std::array{20.}, std::span(pair).first(1), four_points, false, listing, fits));
  EXPECT_NEAR(value(fits[0].ETA, 400), 2.669e-6 * std::sqrt(8000.) / (9 * 0.9699), 3e-11);
  // Without rotation and vibration: lambda = eta / M * 2.5 * 12.47145, eta in g/(cm s).
  EXPECT_NEAR(value(fits[0].XLMO, 1000) / value(fits[0].ETA, 1000), 1558.93125, 1e-2);
  EXPECT_NEAR(value(fits[0].XLAM, 1000) / value(fits[0].XLMO, 1000), 1, 1e-5);
}

TEST(ConductivityFits, CorrectWaterByItsExactName) {
  const std::array fit{thermo_fit({45}, {45}), thermo_fit({45}, {45})};
  Molecule water = pair[1];
  water.IGEOM = 2;
  water.DI3 = 4;
  Listing listing;
  std::vector<ConductivityFits> fits;
  ASSERT_TRUE(GENLAM(names("H2O h2o"), fit, std::array{18., 18.}, std::array{water, water}, four_points,
                     false, listing, fits));
  EXPECT_NEAR(value(fits[0].XLAM, 1000), 0.149781638, 2e-7);
  EXPECT_NEAR(value(fits[1].XLAM, 1000), 0.158658187, 2e-7);
  EXPECT_NEAR(value(fits[1].XLMO, 1000), 0.0749743797, 1e-7);
  EXPECT_NEAR(value(fits[0].ETA, 1000), 4.55212105e-5, 5e-11);
  EXPECT_EQ(fits[0].ETA, fits[1].ETA);
}

// The temperatures on which a run fits this interval, "first +points"; the message when it does not.
std::string grid_of(const TemperatureInterval& interval) {
  Species species;
  const SpeciesPlaces gas = species.places(0, 1);
  gas.SYMB[0] = "AR";
  gas.XMOL[0] = 0.04;
  gas.fit[0] = thermo_fit({21}, {21}, {280, 1000, 9999});
  Input NFIMOL = input_of("ar       0    39.948   136.500     3.330\n");
  StoreFile NFISTO;
  Listing listing;
  try {
    GENSPD(gas, interval, NFIMOL, true, listing, NFISTO);
  } catch (const RunStop&) {
    EXPECT_EQ(NFISTO.text, "");
    const std::size_t message = listing.file.text.find("\n  \n") + 4;
    return listing.file.text.substr(message, listing.file.text.find('\n', message) - message);
  }
  constexpr std::string_view heading = "ERROR    \n", behind = "     COEFF";
  std::string_view text = listing.file.text;
  text.remove_prefix(text.find(heading) + heading.size());
  text = text.substr(0, text.find(behind));
  return std::string(text.substr(2, 10)) + " +" + std::to_string(std::count(text.begin(), text.end(), '\n'));
}

TEST(TransportData, CoverTheTemperatureInterval) {
  EXPECT_EQ(grid_of({0, 2500}), " 2.000E+02 +25");
  EXPECT_EQ(grid_of({300, 2000}), " 2.000E+02 +20");
  EXPECT_EQ(grid_of({501, 1499}), " 5.000E+02 +12");
  EXPECT_EQ(grid_of({0, 4900}), " 2.000E+02 +49");
  EXPECT_EQ(grid_of({0, 5000}), "     TEMPERATURE INTERVAL TOO LARGE, TB-TU > 5000 K");
  EXPECT_EQ(grid_of({0, 250}), "     TEMPERATURE INTERVAL TOO SMALL, TB-TU < 300 K");
}

}  // namespace
}  // namespace varpre
