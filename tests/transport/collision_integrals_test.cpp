#include "transport/collision_integrals.h"

#include <cmath>
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
      // In the second interval of the last columns, 2 to 2.5, on row 3: lines 1.3524 and 1.3572, weights
      // 0.3 and 1.
      {viscosity, 3, 2.2, 1.76292 / 1.3},
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

// The value on every point of the tables, added up along each row and each column: no entry can differ alone.
TEST(CollisionIntegrals, OnTheirPointsAddUp) {
  struct {
    float TSTAR;
    double O, P;
  } const rows[] = {
      {0.1F, 53.987, 56.524},    {0.2F, 36.183, 38.256},   {0.3F, 28.719, 30.62},    {0.4F, 24.317, 26.209},
      {0.5F, 21.33, 23.178},     {0.6F, 19.42, 20.932},    {0.7F, 17.474, 19.217},   {0.8F, 16.1552, 17.7902},
      {0.9F, 15.085, 16.655},    {1.0F, 14.2, 15.707},     {1.2F, 12.8244, 14.212},  {1.4F, 11.804, 13.096},
      {1.6F, 11.025, 12.232},    {1.8F, 10.4106, 11.551},  {2.0F, 9.908, 10.989},    {2.5F, 8.9966, 9.9723},
      {3.0F, 8.3816, 9.285},     {3.5F, 7.9378, 8.7896},   {4.0F, 7.5992, 8.4152},   {5.0F, 7.12, 7.885},
      {6.0F, 6.789, 7.5255},     {7.0F, 6.5434, 7.2606},   {8.0F, 6.3511, 7.0548},   {9.0F, 6.1952, 6.8887},
      {10.0F, 6.0651, 6.75},     {12.0F, 5.85582, 6.5287}, {14.0F, 5.6932, 6.3567},  {16.0F, 5.56006, 6.2166},
      {18.0F, 5.4485, 6.0982},   {20.0F, 5.3522, 5.9968},  {25.0F, 5.1582, 5.79122}, {30.0F, 5.0079, 5.6316},
      {35.0F, 4.88582, 5.50145}, {40.0F, 4.7836, 5.3925},  {50.0F, 4.6184, 5.2165},  {75.0F, 4.3354, 4.9158},
      {100.0F, 4.1468, 4.7154}};
  struct {
    double DSTAR, O, P;
  } const columns[] = {{0, 44.2743, 48.37547},   {0.25, 44.4304, 48.6573}, {0.5, 45.983, 50.1274},
                       {0.75, 48.5618, 52.8475}, {1, 51.8398, 56.4264},    {1.5, 59.2276, 64.6988},
                       {2, 66.8091, 73.0459},    {2.5, 74.5411, 81.1776}};
  constexpr double rounding = 4e-6;  // of single precision
  const auto value = [](CollisionIntegral IOM, double TSTAR, double DSTAR) {
    Listing listing;
    bool LOK = false;
    return MXIOME(IOM, TSTAR, DSTAR, listing, LOK);
  };
  for (const auto& [TSTAR, O, P] : rows) {
    double o = 0, p = 0;
    for (const auto& column : columns) o += value(diffusion, TSTAR, column.DSTAR);
    for (const auto& column : columns) p += value(viscosity, TSTAR, column.DSTAR);
    EXPECT_NEAR(o, O, rounding) << TSTAR;
    EXPECT_NEAR(p, P, rounding) << TSTAR;
  }
  for (const auto& [DSTAR, O, P] : columns) {
    double o = 0, p = 0;
    for (const auto& row : rows) o += value(diffusion, row.TSTAR, DSTAR);
    for (const auto& row : rows) p += value(viscosity, row.TSTAR, DSTAR);
    EXPECT_NEAR(o, O, rounding) << DSTAR;
    EXPECT_NEAR(p, P, rounding) << DSTAR;
  }
}

TEST(CollisionIntegrals, EndWhereTheTablesEnd) {
  const std::string undefined = "\n     ERROR: Collision integral undefined in -MXIOME-\n";
  const std::string no_bracket = "\n     ERROR: Table of collision integrals in -MXIOME- incorrect\n";
  struct {
    double TSTAR, DSTAR;
    std::string message;
  } const rows[] = {{std::nextafter(0.09995, 0), 0, undefined},
                    {500.01, 0, undefined},
                    {150, 0.5, undefined},
                    {1, 2.5001, undefined},
                    {1, -2e-5, undefined},
                    {0.09995, 0, no_bracket},
                    {0.099995, 0, no_bracket},
                    {0.099995, 1, no_bracket},
                    {1, NAN, no_bracket},
                    {150, NAN, no_bracket},
                    {501, NAN, undefined}};
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
