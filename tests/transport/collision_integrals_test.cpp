#include "transport/collision_integrals.h"

#include <gtest/gtest.h>
#include <string>

namespace varpre {
namespace {

constexpr auto diffusion = CollisionIntegral::diffusion;
constexpr auto viscosity = CollisionIntegral::viscosity;

TEST(CollisionIntegrals, InterpolateInTheirTables) {
  struct {
    CollisionIntegral IOM;
    double TSTAR, DSTAR, value;
  } const rows[] = {
      // On a table point.
      {diffusion, 0.1, 0, 4.008F},
      {viscosity, 0.1, 0, 4.1F},
      {diffusion, 0.1 + 0.5e-7, 0.5, 4.655F},
      {diffusion, 0.6F, 2.5, 3.747F},
      {viscosity, 1, 0.25, 1.6F},
      {viscosity, 50, 2, 0.6534F},
      {viscosity, 100, 0, 0.5887F},
      {diffusion, 100, 2.5, 0.5187F},
      // A dipole moment this small counts as none.
      {viscosity, 20, 1e-6, 0.7436F},
      {viscosity, 20, -0.9e-5, 0.7436F},
      // In the first interval of rows 1.2, 1.4, 1.6: lines 1.2772 and 1.267, weights 1 and 0.25.
      {diffusion, 1.3, 0, 1.59395 / 1.25},
      // In the second interval of the last rows 50, 75, 100: lines 0.5368 and 0.53454, weights 1 and 0.4.
      {diffusion, 80, 0, 0.750616 / 1.4},
      // In the first interval of columns 0.25, 0.5, 0.75, on row 1: lines 1.458 and 1.4308, weights 1 and
      // 0.1.
      {diffusion, 1, 0.3, 1.60108 / 1.1},
      // Between four rows and columns.
      {viscosity, 0.15, 0.3, 3.7906909},
      // The cubic formula.
      {diffusion, 150, 0, 0.48527375},
      {viscosity, 150, 0, 0.55274875},
      {viscosity, 500, 0.9e-5, 0.703 - 0.73 + 0.8925 - 0.42875},
  };
  for (const auto& row : rows) {
    Listing listing;
    bool LOK = false;
    EXPECT_NEAR(MXIOME(row.IOM, row.TSTAR, row.DSTAR, listing, LOK), row.value, 1e-6 * row.value)
        << row.TSTAR << ' ' << row.DSTAR;
    EXPECT_TRUE(LOK);
    EXPECT_EQ(listing.file.text, "");
  }
}

TEST(CollisionIntegrals, EndWhereTheTablesEnd) {
  const std::string undefined = "\n     ERROR: Collision integral undefined in -MXIOME-\n";
  const std::string no_bracket = "\n     ERROR: Table of collision integrals in -MXIOME- incorrect\n";
  struct {
    double TSTAR, DSTAR;
    std::string message;
  } const rows[] = {{0.09998, 0, undefined},  {500.01, 0, undefined},    {150, 0.5, undefined},
                    {1, 2.5001, undefined},   {1, -2e-5, undefined},     {0.09995, 0, undefined},
                    {0.09999, 0, no_bracket}, {0.099995, 0, no_bracket}, {0.099995, 1, no_bracket}};
  for (const auto& row : rows) {
    Listing listing;
    bool LOK = true;
    EXPECT_EQ(MXIOME(viscosity, row.TSTAR, row.DSTAR, listing, LOK), 0);
    EXPECT_FALSE(LOK);
    EXPECT_EQ(listing.file.text, row.message) << row.TSTAR << ' ' << row.DSTAR;
  }
}

TEST(CollisionIntegrals, InterpolationPassesThroughItsPoints) {
  constexpr std::array XT{1., 2., 4.};
  constexpr std::array YT{3., 7., -5.};
  EXPECT_EQ(MXIINT(1, XT, YT), 3);
  EXPECT_EQ(MXIINT(2, XT, YT), 7);
  EXPECT_EQ(MXIINT(4, XT, YT), -5);
  EXPECT_DOUBLE_EQ(MXIINT(1.5, XT, YT), (5 + 0.25 * 10) / 1.25);
  EXPECT_DOUBLE_EQ(MXIINT(3, XT, YT), (1 + 0.25 * 11) / 1.25);
}

TEST(CollisionIntegrals, RotationalFactorIs1At298K) {
  EXPECT_EQ(MXIPAR(298, 97.53), 1);
  // EPS/298 = 1, EPS/T = 0.25.
  EXPECT_NEAR(MXIPAR(4 * 298, 298), 13.8199 / 4.2049875, 1e-6);
}

}  // namespace
}  // namespace varpre
