#include <algorithm>
#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "transport/collision_integrals.h"
#include "transport/collision_tables.h"
#include "transport/log_fit.h"

// The quick ways of the transport fits against the plain ones, bit for bit.
namespace varpre {
namespace {

TEST(CollisionIntegralsOfAGrid, AreThoseOfSinglePoints) {
  constexpr std::array special{0.0, 1e-6, -1e-6, 1e-5, 0.25, 2.5, -1e-5, 2.6};
  std::mt19937_64 random(1);
  std::uniform_real_distribution<double> uniform(0, 1);
  Listing listing;
  int quick = 0;
  for (int i = 0; i < 20'000; ++i) {
    const double scale = std::pow(10.0, 2.5 * uniform(random) - 1.5);
    std::vector<double> TSTAR;
    for (int k = 2; k <= 26; ++k) TSTAR.push_back(k * scale);
    for (const float row : TSTERN) {  // next to the rows, where the interval changes
      if (i % 3 != 0 || row < TSTAR.front() || row > TSTAR.back()) continue;
      TSTAR.push_back(std::nextafter(row, i % 4 * 100.0));
    }
    std::sort(TSTAR.begin(), TSTAR.end());
    const double DSTAR = i % 2 == 0 ? special[random() % special.size()] : 2.5 * uniform(random);
    const auto IOM = i % 5 == 0 ? CollisionIntegral::viscosity : CollisionIntegral::diffusion;
    std::vector<double> OMEGA(TSTAR.size());
    if (!collision_integrals(IOM, TSTAR, DSTAR, OMEGA)) continue;
    ++quick;
    for (std::size_t k = 0; k < TSTAR.size(); ++k) {
      bool LOK = false;
      ASSERT_EQ(OMEGA[k], MXIOME(IOM, TSTAR[k], DSTAR, listing, LOK)) << TSTAR[k] << " " << DSTAR;
      ASSERT_TRUE(LOK);
    }
  }
  EXPECT_GT(quick, 10'000);
}

TEST(CollisionIntegralsOfAGrid, LeaveTheEdgesOfTheTableToThePlainWay) {
  std::array<double, 2> OMEGA{};
  const auto served = [&](double from, double to, double DSTAR) {
    return collision_integrals(CollisionIntegral::diffusion, std::array{from, to}, DSTAR, OMEGA);
  };
  EXPECT_TRUE(served(0.11, std::nextafter(75, 0), 0));
  EXPECT_FALSE(served(0.11, 75, 0));
  EXPECT_FALSE(served(2, 2.1, 0));
  EXPECT_FALSE(served(0.1, 1.1, 0));
  EXPECT_FALSE(served(1.1, std::nextafter(100, 101), 0));
  EXPECT_TRUE(served(1.1, 2.1, 2.5));
  EXPECT_FALSE(served(1.1, 2.1, 2.6));
  EXPECT_FALSE(served(1.1, 2.1, std::nan("")));
  EXPECT_FALSE(served(-2.1, -1.1, 0));
  std::vector<double> many(FitGrid::most_points + 1, 1.1);
  EXPECT_FALSE(collision_integrals(CollisionIntegral::diffusion, many, 0, many));
}

// Deviations from far below the tolerance to above it: they are only left out where they are no larger.
TEST(ToleranceOfAFit, LeavesOutOnlyDeviationsBelowIt) {
  constexpr double tolerance = 0.02F;
  std::mt19937_64 random(2);
  std::uniform_real_distribution<double> uniform(-1, 1);
  std::vector<double> T;
  for (int k = 2; k <= 26; ++k) T.push_back(100.0 * k);
  const FitGrid grid(T);
  Listing listing;
  int left_out = 0;
  for (int i = 0; i < 20'000; ++i) {
    const double noise = i % 2 == 0 ? 0.025 : 0.05 * std::abs(uniform(random));
    const double level = std::pow(10.0, 50 * uniform(random));
    std::vector<double> V;
    for (const double t : T) V.push_back(level * std::pow(t, 1.7) * (1 + noise * uniform(random)));
    const FitResult plain = LOGFIT(grid, V, false, listing);
    const FitResult quick = LOGFIT(grid, V, false, listing, tolerance);
    ASSERT_EQ(plain.COEF, quick.COEF);
    if (quick.ERRMAX == 0) {
      ++left_out;
      ASSERT_LE(plain.ERRMAX, tolerance);
    } else {
      ASSERT_EQ(plain.ERRMAX, quick.ERRMAX);
      ASSERT_EQ(plain.IMAX, quick.IMAX);
    }
  }
  EXPECT_GT(left_out, 1'000);
  EXPECT_LT(left_out, 19'000);
}

}  // namespace
}  // namespace varpre
