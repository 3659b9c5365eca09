#include "mechanism/reverse_reaction.h"

#include <cmath>
#include <gtest/gtest.h>

#include "support/stages.h"
#include "thermo/thermo_functions.h"

namespace varpre {
namespace {

constexpr double R = 8.3143;
constexpr auto message = "0     INCORRECT REVERSE REACT. ARRH. PARAM. DUE TO BAD THERMODYN. OR INPUT DATA\n";

// Species 1 to 4; collision partners have the numbers from 5 on.
ThermoFit fit_of(double cp, double a2, double h, double s, const std::array<double, 3>& TLIM) {
  return thermo_fit({cp, a2, 0, 0, 0, h, s}, {cp + 3, a2 / 2, 0, 0, 0, h - 1000, s - 20}, TLIM);
}
const std::array fit{
    fit_of(21, 0.003, 210000, -5, {280, 1000, 9000}), fit_of(29, 0.006, -9000, 30, {180, 1200, 9000}),
    fit_of(33, 0.002, 30000, 10, {480, 4600, 9000}), fit_of(37, 0.009, -240000, 7, {280, 700, 9000})};

Reaction reaction(double AFAC, double TEXP, double EXA, const SpeciesVector& MAT) {
  Reaction r;
  r.AFAC = AFAC, r.TEXP = TEXP, r.EXA = EXA, r.MAT = MAT;
  return r;
}

// Forward rate over Kc over reverse rate, less 1; Kc from Kp by concentrations in mol/cm^3.
double imbalance(const Reaction& forward, const Reaction& reverse, double T) {
  Listing listing;
  double G = 0;
  int dn = 0;
  for (std::size_t slot = 0; slot < 6; ++slot) {
    const int number = forward.MAT[slot];
    if (number < 1 || number > 4) continue;
    const int sign = slot < 3 ? -1 : 1;
    G += sign * (CALHI(number, T, fit, listing) - T * CALSI(number, T, fit, listing));
    dn += sign;
  }
  const double Kc = std::exp(-G / (R * T)) * std::pow(83.143 * T, -dn);
  const double rates = forward.AFAC / reverse.AFAC * std::exp((reverse.EXA - forward.EXA) / (R * T));
  return rates / Kc - 1;
}

TEST(ReverseReaction, IsInEquilibriumAtTwoTemperatures) {
  struct {
    SpeciesVector MAT;
    double T1, T2;
  } const rows[] = {
      {{2, 1, 0, 4, 3, 0}, 680, 2500},    // dn = 0
      {{5, 4, 0, 5, 2, 1}, 680, 2200},    // dn = 1, a partner on both sides
      {{31, 1, 1, 31, 2, 0}, 680, 2500},  // dn = -1, an educt twice
      {{3, 1, 0, 4, 0, 0}, 880, 2500},    // the limits of the educts, not those of the product
      {{3, 0, 0, 2, 1, 0}, 1000, 6100},   // T2 above 6000 K raises T1
  };
  for (const auto& row : rows) {
    const Reaction forward = reaction(3e13, -0.5, 40000, row.MAT);
    Listing listing;
    const Reaction reverse = INIMRP(Phase::gas, forward, fit, listing);
    EXPECT_NEAR(imbalance(forward, reverse, row.T1), 0, 1e-9);
    EXPECT_NEAR(imbalance(forward, reverse, row.T2), 0, 1e-9);
    EXPECT_GT(std::abs(imbalance(forward, reverse, 1.05 * row.T1)), 1e-5);
    EXPECT_GT(std::abs(imbalance(forward, reverse, 0.95 * row.T2)), 1e-5);
    EXPECT_EQ(reverse.TEXP, -0.5);
    EXPECT_EQ(reverse.IARRH, arrhenius);
    EXPECT_EQ(listing.file.text, "");
  }
}

TEST(ReverseReaction, OfACoverageDependentOneIsItsCopy) {
  Reaction forward = reaction(1e21, 0.5, 67400, {1, 2, 0, 0, 0, 0, 3});
  forward.VT4 = 1, forward.VT5 = 2, forward.VT6 = 3, forward.IARRH = coverage_dependent;
  Listing listing;
  const Reaction reverse = INIMRP(Phase::surface, forward, fit, listing);
  EXPECT_EQ((std::array{reverse.AFAC, reverse.TEXP, reverse.EXA, reverse.VT4, reverse.VT5, reverse.VT6}),
            (std::array{1e21, 0.5, 67400., 1., 2., 3.}));
  EXPECT_EQ(reverse.IARRH, -1);
}

TEST(ReverseReaction, WithoutASoundEquilibriumConstantIsReported) {
  const auto reverse = [](double AFAC, const SpeciesVector& MAT, double h_of_product,
                          const std::string& messages) {
    auto bad_fit = fit;
    bad_fit[1].HCPL[5] = bad_fit[1].HCPH[5] = h_of_product;
    Listing listing;
    const Reaction result = INIMRP(Phase::gas, reaction(AFAC, 0.7, 0, MAT), bad_fit, listing);
    EXPECT_EQ(listing.file.text, messages);
    EXPECT_EQ(result.TEXP, 0.7);
    return std::array{result.AFAC, result.EXA};
  };
  const std::string once = message;
  // Kc underflows at both temperatures and is replaced by 1E-35.
  const auto [A, E] = reverse(1e13, {1, 0, 0, 2, 0, 0}, 1e9, once + once);
  EXPECT_DOUBLE_EQ(A, 1e13 / 1.0E-35F);
  EXPECT_EQ(E, 0);
  // Kc overflows; no forward rate; no educt among the species.
  constexpr std::array none{0., 0.};
  EXPECT_EQ(reverse(1e13, {1, 0, 0, 2, 0, 0}, -1e9, once), none);
  EXPECT_EQ(reverse(0, {1, 0, 0, 2, 0, 0}, 0, once), none);
  EXPECT_EQ(reverse(1e13, {5, 0, 0, 5, 2, 0}, 0, once), none);
}

}  // namespace
}  // namespace varpre
