#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

// Numbers with many bits behind the binary point: for the tables, which the compiler makes of them, and for
// the few arguments whose nearest double a double's arithmetic cannot tell.
namespace varpre::math {

__extension__ using uint128 = unsigned __int128;

// A number of [-2^63, 2^63) in units of 2^(-64 F). Sums are exact; products, quotients and shifts to the
// right are cut off towards zero, so that each is off by less than one unit.
template <std::size_t F>
struct Fixed {
  static constexpr int fraction_bits = 64 * static_cast<int>(F);

  std::array<std::uint64_t, F + 1> word{};  // the lowest first, two's complement; the last before the point

  static constexpr Fixed integer(std::int64_t value) {
    Fixed result;
    result.word[F] = static_cast<std::uint64_t>(value);
    return result;
  }

  constexpr bool is_negative() const { return word[F] >> 63 != 0; }
  constexpr bool is_zero() const { return *this == Fixed{}; }
  constexpr bool operator==(const Fixed&) const = default;
};

template <std::size_t F>
constexpr Fixed<F> operator+(const Fixed<F>& a, const Fixed<F>& b) {
  Fixed<F> sum;
  uint128 carry = 0;
  for (std::size_t i = 0; i <= F; ++i) {
    carry += uint128{a.word[i]} + b.word[i];
    sum.word[i] = static_cast<std::uint64_t>(carry);
    carry >>= 64;
  }
  return sum;
}

template <std::size_t F>
constexpr Fixed<F> operator-(Fixed<F> a) {
  for (std::uint64_t& word : a.word) word = ~word;
  Fixed<F> unit;
  unit.word[0] = 1;
  return a + unit;
}

template <std::size_t F>
constexpr Fixed<F> operator-(const Fixed<F>& a, const Fixed<F>& b) {
  return a + -b;
}

template <std::size_t F>
constexpr Fixed<F> magnitude(const Fixed<F>& a) {
  return a.is_negative() ? -a : a;
}

template <std::size_t F>
constexpr Fixed<F> operator*(const Fixed<F>& a, const Fixed<F>& b) {
  const Fixed<F> x = magnitude(a);
  const Fixed<F> y = magnitude(b);
  std::array<std::uint64_t, 2 * F + 2> all{};
  for (std::size_t i = 0; i <= F; ++i) {
    uint128 carry = 0;
    for (std::size_t j = 0; j <= F; ++j) {
      carry += uint128{x.word[i]} * y.word[j] + all[i + j];
      all[i + j] = static_cast<std::uint64_t>(carry);
      carry >>= 64;
    }
    all[i + F + 1] = static_cast<std::uint64_t>(carry);
  }
  Fixed<F> product;
  for (std::size_t i = 0; i <= F; ++i) product.word[i] = all[i + F];
  return a.is_negative() != b.is_negative() ? -product : product;
}

template <std::size_t F>
constexpr Fixed<F> operator/(const Fixed<F>& a, std::uint64_t divisor) {
  Fixed<F> quotient = magnitude(a);
  uint128 rest = 0;
  for (std::size_t i = F + 1; i-- > 0;) {
    rest = rest << 64 | quotient.word[i];
    quotient.word[i] = static_cast<std::uint64_t>(rest / divisor);
    rest %= divisor;
  }
  return a.is_negative() ? -quotient : quotient;
}

// a x 2^places; places may be negative.
template <std::size_t F>
constexpr Fixed<F> shifted(const Fixed<F>& a, int places) {
  const Fixed<F> from = magnitude(a);
  const auto source = [&](int index, int offset) -> std::uint64_t {
    const int i = index - offset;
    return i < 0 || i > static_cast<int>(F) ? 0 : from.word[static_cast<std::size_t>(i)];
  };
  const int words = places >= 0 ? places / 64 : -((63 - places) / 64);  // rounded down
  const int bits = places - 64 * words;
  Fixed<F> result;
  for (int i = 0; i <= static_cast<int>(F); ++i) {
    std::uint64_t& word = result.word[static_cast<std::size_t>(i)];
    word = source(i, words) << bits;
    if (bits > 0) word |= source(i, words + 1) >> (64 - bits);
  }
  return a.is_negative() ? -result : result;
}

// The place of the highest bit of a > 0, counted from the lowest of all.
template <std::size_t F>
constexpr int highest_bit(const Fixed<F>& a) {
  std::size_t i = F;
  while (i > 0 && a.word[i] == 0) --i;
  return 64 * static_cast<int>(i) + 63 - std::countl_zero(a.word[i]);
}

// artanh(1/n) = 1/n + 1/(3 n^3) + 1/(5 n^5) + ...
template <std::size_t F>
constexpr Fixed<F> artanh_of_reciprocal(std::uint64_t n) {
  Fixed<F> power = Fixed<F>::integer(1) / n;
  Fixed<F> sum = power;
  for (std::uint64_t k = 3; !power.is_zero(); k += 2) {
    power = power / (n * n);
    sum = sum + power / k;
  }
  return sum;
}

// ln 2, of 2 = (27/25)^9 (4802/4800)^-1 (8750/8748)^4, with ln((n+1)/(n-1)) = 2 artanh(1/n).
template <std::size_t F>
inline constexpr Fixed<F> ln2 = Fixed<F>::integer(18) * artanh_of_reciprocal<F>(26) -
                                Fixed<F>::integer(2) * artanh_of_reciprocal<F>(4801) +
                                Fixed<F>::integer(8) * artanh_of_reciprocal<F>(8749);

// e^r for |r| < 1, by Taylor's series for r/2^16 and 16 squarings: off by less than 2^24 units.
template <std::size_t F>
constexpr Fixed<F> exp_of_fraction(const Fixed<F>& r) {
  constexpr int halvings = 16;
  const Fixed<F> small = shifted(r, -halvings);
  Fixed<F> term = Fixed<F>::integer(1);
  Fixed<F> sum = term;
  for (std::uint64_t n = 1; !term.is_zero(); ++n) {
    term = term * small / n;
    sum = sum + term;
  }
  for (int i = 0; i < halvings; ++i) sum = sum * sum;
  return sum;
}

}  // namespace varpre::math
