#include "tools/diff/rate_effect.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "mechanism/reaction.h"

namespace varpre {
namespace {

double logarithm(const Rate& rate, double T) {
  return std::log(std::abs(rate.A)) + rate.b * std::log(T) - rate.E / (gas_constant * T);
}

std::string at_temperature(double T) {
  return " at " + number_text(T) + " K";
}

// The largest factor between two quantities over temperature, told by their logarithms.
template <class Before, class After>
Effect largest_factor(const std::string& name, Before before, After after) {
  constexpr double rounding = 1E-9;
  double largest = 0;
  double T_largest = 0;
  bool constant = true;
  for (int T = 300; T <= 2500; T += 50) {
    const double factor = after(T) - before(T);
    if (!std::isfinite(factor)) return {another_thing, name + " cannot be told"};
    constant = constant && (T == 300 || std::abs(factor - largest) < rounding);
    if (std::abs(factor) <= std::abs(largest) + rounding) continue;
    largest = factor;
    T_largest = T;
  }
  const std::string ratio = ratio_text(std::exp(largest));
  if (ratio.empty()) return {std::abs(largest), name};
  return {std::abs(largest), name + " " + ratio + (constant ? "" : at_temperature(T_largest))};
}

// ln of the broadening factor of a falloff reaction in its centre.
double broadening(const std::array<double, 8>& fall, double T) {
  const double a = fall[3];
  const double centre =
      (1 - a) * std::exp(-T / fall[4]) + a * std::exp(-T / fall[5]) + std::exp(-fall[6] / T);
  return std::log(std::max(centre, 1E-30));
}

Effect falloff_effect(const StoredReaction& before, const StoredReaction& after) {
  const auto low = [](const StoredReaction& r) { return Rate{r.falloff[0], r.falloff[1], r.falloff[2]}; };
  Effect limit = rate_effect("low-pressure rate", low(before), low(after));
  if (std::equal(before.falloff.begin() + 3, before.falloff.end(), after.falloff.begin() + 3, same))
    return limit;
  Effect centre = largest_factor(
      "broadening", [&](double T) { return broadening(before.falloff, T); },
      [&](double T) { return broadening(after.falloff, T); });
  return centre.size > limit.size ? centre : limit;
}

}  // namespace

Effect larger(const Effect& a, const Effect& b) {
  return b.size > a.size ? b : a;
}

Effect rate_effect(const std::string& name, const Rate& before, const Rate& after) {
  if (before.A == 0 && after.A == 0) return {};
  if (before.A == after.A && before.b == after.b && before.E == after.E) return {};
  if (before.A == 0) return {another_thing, name + " was 0"};
  if (after.A == 0) return {another_thing, name + " is 0 now"};
  if ((before.A < 0) != (after.A < 0)) return {another_thing, name + " has another sign"};
  return largest_factor(
      name, [&](double T) { return logarithm(before, T); }, [&](double T) { return logarithm(after, T); });
}
Effect effect_of(const Mechanisms& both, int i, int j) {
  const StoredReaction& x = both.before.reaction(i);
  const StoredReaction& y = both.after.reaction(j);
  if (x.form != y.form) return {another_thing, "another rate form"};
  if (both.before.name_of(x.sticking) != both.after.name_of(y.sticking))
    return {another_thing, "another species sticks"};
  if (both.before.name_of(x.coverage) != both.after.name_of(y.coverage))
    return {another_thing, "the coverage of another species"};
  Effect effect;
  for (std::size_t k = 0; k < x.values.size(); ++k) {
    const std::string name = "VT" + std::to_string(k + 4);
    effect = larger(effect, relative_effect(x.values[k], y.values[k], name));
  }
  if (x.falloff != y.falloff) effect = larger(effect, falloff_effect(x, y));
  const std::string name = std::abs(x.form) == falloff ? "high-pressure rate" : "rate";
  return larger(effect, rate_effect(name, {x.A, x.b, x.E}, {y.A, y.b, y.E}));
}

}  // namespace varpre
