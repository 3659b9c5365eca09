#include "thermo/thermo_functions.h"

#include <cmath>
#include <gtest/gtest.h>

#include "support/stages.h"
#include "textio/channel/run_stop.h"

namespace varpre {
namespace {

// Below 1000 K the coefficients 1 to 7, above it 7 to 1.
const std::array fits{thermo_fit({1, 2, 3, 4, 5, 6, 7}, {7, 6, 5, 4, 3, 2, 1}, {280, 1000, 3000}),
                      thermo_fit({29, 0, 0, 0, 0, -100000}, {29, 0, 0, 0, 0, -100000}, {280, 1000, 3000}),
                      thermo_fit({21, 0.01, 0, 0, 0, 50000}, {30, 0.001, 0, 0, 0, 45500}, {280, 1000, 3000})};

TEST(ThermoFunctions, FollowTheirPolynomials) {
  Listing listing;
  EXPECT_DOUBLE_EQ(CALHI(1, 2, fits, listing), 68);
  EXPECT_DOUBLE_EQ(CALSI(1, 2, fits, listing), 4 + 6 + 32. / 3 + 20 + std::log(2.) + 7);
  EXPECT_DOUBLE_EQ(CALCPI(1, 2, fits, listing), 129);
  EXPECT_EQ(listing.file.text, "");
}

TEST(ThermoFunctions, ChangeRangeAtTheSwitchTemperature) {
  Listing listing;
  EXPECT_EQ(CALCPI(3, std::nextafter(1000, 0), fits, listing), 21 + 0.01 * std::nextafter(1000, 0));
  EXPECT_EQ(CALCPI(3, 1000, fits, listing), 31);
  EXPECT_EQ(CALSI(3, 1000, fits, listing), 1000 * 0.001 + 30 * std::log(1000.));
  // Continuous there: 21000 + 5000 + 50000 = 30000 + 500 + 45500.
  EXPECT_NEAR(CALHI(3, std::nextafter(1000, 0), fits, listing), CALHI(3, 1000, fits, listing), 1e-9);
  EXPECT_EQ(listing.file.text, "");
}

TEST(ThermoFunctions, WarnAboveTheUpperLimitOnly) {
  Listing listing;
  CALHI(2, 3000, fits, listing);
  CALSI(2, 1, fits, listing);
  EXPECT_EQ(listing.file.text, "");
  CALCPI(2, 100000, fits, listing);
  EXPECT_EQ(listing.file.text,
            "0WARNING: Temperature (******) exceeds upper limit of reliability ( 3000.)\n"
            " for fit of thermodynamic properties of species no.  2\n");
}

TEST(ThermoFunctions, TemperatureOfAnEnthalpyIsTheOneItCameFrom) {
  constexpr std::array X{0.0, 0.25, 0.75};
  constexpr std::array XMOL{0.002, 0.028, 0.04};
  for (const double T : {300., 999., 1000., 1200., 2900.}) {
    Listing listing;
    const double h = (X[1] * CALHI(2, T, fits, listing) + X[2] * CALHI(3, T, fits, listing)) / 0.037;
    EXPECT_NEAR(GETT(h, X, fits, XMOL, {}, listing), T, 1e-7 * T);
  }
}

TEST(ThermoFunctions, EnthalpyThatNoTemperatureHasStopsTheRun) {
  const std::array flat{thermo_fit({}, {}, {280, 1000, INFINITY})};
  Listing listing;
  EXPECT_THROW(GETT(1000, std::array{1.0}, flat, std::array{0.028}, {}, listing), RunStop);
  EXPECT_EQ(listing.file.text, "0ERROR  : NO CONVERGENCE OF NEWTON ITERATION\n");
}

}  // namespace
}  // namespace varpre
