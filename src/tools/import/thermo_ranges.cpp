#include "tools/import/thermo_ranges.h"

#include <algorithm>
#include <cmath>

namespace varpre {
namespace {

constexpr double usual_switch = 1000;  // K

// The polynomial of cp in x = (T - switch)/scale: a constant, and four powers on either side of the switch.
constexpr std::size_t unknowns = 9;
using Row = std::array<double, unknowns + 1>;

// Least squares of an overdetermined system, its right-hand side in the last column, by Givens rotations into
// a triangle as the rows come.
class LeastSquares {
 public:
  void add(Row row) {
    for (std::size_t k = 0; k < unknowns; ++k) {
      if (row[k] == 0) continue;
      Row& own = triangle_[k];
      const double r = std::hypot(own[k], row[k]);
      const double c = own[k] / r;
      const double s = row[k] / r;
      for (std::size_t j = k; j <= unknowns; ++j) {
        const double a = own[j];
        const double b = row[j];
        own[j] = c * a + s * b;
        row[j] = c * b - s * a;
      }
    }
  }

  // Unknowns that no row has are 0.
  std::array<double, unknowns> solve() const {
    std::array<double, unknowns> x{};
    for (std::size_t k = unknowns; k-- > 0;) {
      double rest = triangle_[k][unknowns];
      for (std::size_t j = k + 1; j < unknowns; ++j) rest -= triangle_[k][j] * x[j];
      x[k] = triangle_[k][k] == 0 ? 0 : rest / triangle_[k][k];
    }
    return x;
  }

 private:
  std::array<Row, unknowns> triangle_{};
};

// sum c_k ((T - T0)/scale)^k in powers of T.
std::array<double, 7> expanded(const std::array<double, 5>& c, double T0, double scale) {
  std::array<double, 7> a{};
  for (std::size_t k = c.size(); k-- > 0;) {  // a = a (T - T0)/scale + c_k
    for (std::size_t i = 5; i-- > 0;) a[i] = ((i > 0 ? a[i - 1] : 0) - T0 * a[i]) / scale;
    a[0] += c[k];
  }
  return a;
}

// Sets the constants so that h and s are those at T.
void pin(std::array<double, 7>& a, const ThermoValues& values, double T) {
  a[5] = a[6] = 0;
  const ThermoValues own = evaluate(a, T);
  a[5] = (values.h - own.h) * T;
  a[6] = values.s - own.s;
}

}  // namespace

bool ThermoRanges::are_of_seven_coefficients() const {
  return ranges.size() <= 2 && std::all_of(ranges.begin(), ranges.end(), [](const ThermoRange& range) {
           return range.a[0] == 0 && range.a[1] == 0;
         });
}

void ThermoRanges::add(double low, double high, const std::array<double, 7>& a) {
  ranges.push_back({low, high, {0, 0, a[0], a[1], a[2], a[3], a[4]}, a[5], a[6]});
}

ThermoValues evaluate(const ThermoRange& range, double T) {
  const double ln = std::log(T);
  ThermoValues values{0, range.h / T, range.s};
  double power = 1 / (T * T);
  for (std::size_t i = 0; i < range.a.size(); ++i) {
    const int k = static_cast<int>(i) - 2;
    const double term = range.a[i] * power;
    values.cp += term;
    values.h += k == -1 ? term * ln : term / (k + 1);
    values.s += k == 0 ? term * ln : term / k;
    power *= T;
  }
  return values;
}

ThermoValues evaluate(const ThermoRanges& thermo, double T) {
  const auto range = std::find_if(thermo.ranges.begin(), thermo.ranges.end() - 1,
                                  [&](const ThermoRange& one) { return T < one.high; });
  return evaluate(*range, T);
}

ThermoValues evaluate(const std::array<double, 7>& a, double T) {
  return evaluate(ThermoRange{0, 0, {0, 0, a[0], a[1], a[2], a[3], a[4]}, a[5], a[6]}, T);
}

FittedThermo fit_seven_coefficients(const ThermoRanges& thermo) {
  constexpr double highest = 6000;  // K, as far as polynomials of the fourth degree go
  constexpr double standard = 298.15;
  constexpr int points = 400;
  FittedThermo fit;
  const double low = std::max(thermo.ranges.front().low, 1.0);
  const double high = std::min(thermo.ranges.back().high, std::max(highest, low + 1));
  const double common = low < usual_switch && usual_switch < high ? usual_switch : (low + high) / 2;
  fit.limits = {low, high, common};
  const auto temperature = [&](int point) { return low * std::pow(high / low, point / double{points}); };
  LeastSquares system;
  for (int point = 0; point <= points; ++point) {
    const double T = temperature(point);
    const double cp = evaluate(thermo, T).cp;
    const double weight = 1 / std::max(std::abs(cp), 1.0E-3);
    Row row{weight};
    const double x = (T - common) / common;
    for (std::size_t k = 1; k <= 4; ++k)
      row[T < common ? k : k + 4] = weight * std::pow(x, static_cast<double>(k));
    row[unknowns] = weight * cp;
    system.add(row);
  }
  const auto c = system.solve();
  fit.lower = expanded({c[0], c[1], c[2], c[3], c[4]}, common, common);
  fit.upper = expanded({c[0], c[5], c[6], c[7], c[8]}, common, common);
  const double pinned = std::clamp(standard, low, high);
  const bool below = pinned <= common;
  auto& first = below ? fit.lower : fit.upper;
  auto& second = below ? fit.upper : fit.lower;
  pin(first, evaluate(thermo, pinned), pinned);
  pin(second, evaluate(first, common), common);
  for (int point = 0; point <= points; ++point) {
    const double T = temperature(point);
    const ThermoValues meant = evaluate(thermo, T);
    const ThermoValues own = evaluate(T < common ? fit.lower : fit.upper, T);
    const std::array deviations{std::abs(own.cp / meant.cp - 1), std::abs(own.h - meant.h),
                                std::abs(own.s / meant.s - 1)};
    for (std::size_t i = 0; i < deviations.size(); ++i) {
      if (deviations[i] <= fit.deviation[i]) continue;
      fit.deviation[i] = deviations[i];
      fit.temperature[i] = T;
    }
  }
  return fit;
}

}  // namespace varpre
