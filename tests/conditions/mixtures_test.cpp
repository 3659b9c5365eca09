#include "conditions/mixtures.h"

#include <gtest/gtest.h>

#include "support/stages.h"

namespace varpre {
namespace {

constexpr const Section& left_section = sections::named("the mixture on the left");

// Two gas and two surface species; the gas has h = 30 T.
MixtureState read_mixture(const std::string& records, const Section& section = left_section) {
  Species species;
  for (std::size_t i = 0; const SpeciesName& name : names("H2 O2 A(S) B(S)")) species.SYMB[i++] = name;
  species.fit.fill(thermo_fit({30}, {30}));
  species.XMOL[0] = 0.002;
  species.XMOL[1] = 0.032;
  Elements elements;
  elements.NE = 2;
  elements.EMOL = {0.001, 0.016};
  elements.NCOMP[0] = {2, 0};
  elements.NCOMP[1] = {0, 2};
  Input NFICON = input_of("a title\nleft side\n" + records + "end of left\n");
  Listing listing;
  MixtureState mixture;
  CHICON(section, species.view(0, 4), 2, elements, NFICON, listing, mixture);
  EXPECT_EQ(listing.file.text, section == sections::named("the mixture on the left")
                                   ? ""
                                   : "      WARNING - No composition specified\n");
  return mixture;
}

TEST(Mixtures, AreNormalisedByPhase) {
  const MixtureState m = read_mixture(
      "P              1    \nT             300.0\no2              2.0\nB(S)            6.0\nA(S)            2.0\n"
      "H2              1.0\n");
  EXPECT_EQ(m.values.P, 1000);  // two implied decimals
  EXPECT_DOUBLE_EQ(m.X[0], 1. / 3);
  EXPECT_DOUBLE_EQ(m.X[1], 2. / 3);
  EXPECT_DOUBLE_EQ(m.X[2], 0.25);
  EXPECT_DOUBLE_EQ(m.X[3], 0.75);
  EXPECT_DOUBLE_EQ(m.W[1], 2 / 0.066);
  EXPECT_EQ(m.W[3], 0);
  EXPECT_DOUBLE_EQ(m.B[1], 2. / 3);
  EXPECT_DOUBLE_EQ(m.Z[0], 1 / 0.033);
  EXPECT_DOUBLE_EQ(m.values.H, 9000 / 0.022);
  EXPECT_DOUBLE_EQ(m.values.RHO, 0.022 * 1000 / (300 * 8.3143));
}

TEST(Mixtures, TemperatureOfAnEnthalpy) {
  const MixtureState m = read_mixture("p               1.0\nh(t0)      1.5E+06\nO2              1.0\n");
  EXPECT_NEAR(m.values.T, 1600, 1e-4);
  EXPECT_EQ(m.values.H, 1.5e6);
  EXPECT_NEAR(m.values.RHO, 0.032 * 1e5 / (1600 * 8.3143), 1e-7);
}

TEST(Mixtures, KeywordsGoByTheirFirstCharacters) {
  const MixtureState m = read_mixture(
      "P               1.0\nT             300.0\nO2              1.0\nFREQFAC         2.0\nFAC             3.0\n"
      "OMEGA           4.0\nV               5.0\nphi             6.0\nG               7.0\n");
  EXPECT_EQ((std::array{m.values.FREQ, m.values.FAC, m.values.OMEG, m.values.v, m.values.PHI, m.values.G}),
            (std::array{2., 3., 4., 5., 6., 7.}));
}

TEST(Mixtures, MissingBlockLeavesZeros) {
  const MixtureState m = read_mixture("", sections::named("the mixture on the right"));
  EXPECT_EQ(m.values.T, 0);
  EXPECT_EQ(m.values.P, 0);
}

}  // namespace
}  // namespace varpre
