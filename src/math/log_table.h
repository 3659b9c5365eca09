#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "math/double_double.h"
#include "math/fixed_point.h"

// What the logarithms know beforehand: x = 2^e z with z in [11/16, 11/8), and for each of 256 pieces of that
// interval a short c near 1/z, so that ln x = e ln 2 - ln c + ln(1 + r) with a small and exact r = c z - 1
// (P. T. P. Tang, ACM Trans. Math. Software 16 (1990) 378).
namespace varpre::math {

// high + low, `high` a multiple of 2^-42 so that a multiple of it up to 2^10 is exact.
struct LogValue {
  double high;
  double low;
};

constexpr LogValue log_value(const Fixed<2>& value) {
  constexpr int places = 42;
  constexpr std::uint64_t unit = std::uint64_t{1} << (64 - places);
  Fixed<2> half_unit;
  half_unit.word[1] = unit / 2;
  const Fixed<2> sum = value + half_unit;
  const auto units = static_cast<std::int64_t>(sum.word[2] << places | sum.word[1] / unit);
  const auto rest = static_cast<std::int64_t>(sum.word[1] % unit) - static_cast<std::int64_t>(unit / 2);
  return {static_cast<double>(units) * 0x1p-42,
          static_cast<double>(rest) * 0x1p-64 + static_cast<double>(sum.word[0]) * 0x1p-128};
}

inline constexpr LogValue log_of_two = log_value(ln2<2>);

struct LogPiece {
  double c;  // of nine bits behind the point, above 1 of eight; 1 next to z = 1
  LogValue minus_log;
};

inline constexpr double first_z = 0.6875;
inline constexpr int pieces_below_one = 160;
inline constexpr int log_pieces = 256;

// Where piece i begins, and where piece i-1 ends.
constexpr double begin_of_piece(int i) {
  return i < pieces_below_one ? first_z + i / 512.0 : 1 + (i - pieces_below_one) / 256.0;
}

// 512 c of piece i.
constexpr int reciprocal_of_piece(int i) {
  if (i == pieces_below_one) return 512;
  const double middle = (begin_of_piece(i) + begin_of_piece(i + 1)) / 2;
  const int step = i < pieces_below_one ? 2 : 1;
  return step * static_cast<int>((512.0 / step + middle / 2) / middle);  // the nearest multiple
}

// ln(512/n) for n from 372 to 745, from ln(n/(n-1)) = 2 artanh(1/(2n-1)) one by one.
inline constexpr std::size_t lowest_reciprocal = 372;
inline constexpr std::size_t highest_reciprocal = 745;
inline constexpr auto reciprocal_logs = [] {
  std::array<Fixed<2>, highest_reciprocal - lowest_reciprocal + 1> logs{};
  const auto step = [](std::size_t n) {
    const Fixed<2> half = artanh_of_reciprocal<2>(2 * n - 1);
    return half + half;
  };
  for (std::size_t n = 512; n > lowest_reciprocal; --n) {
    logs[n - 1 - lowest_reciprocal] = logs[n - lowest_reciprocal] + step(n);
  }
  for (std::size_t n = 513; n <= highest_reciprocal; ++n) {
    logs[n - lowest_reciprocal] = logs[n - 1 - lowest_reciprocal] - step(n);
  }
  return logs;
}();

inline constexpr std::array<LogPiece, log_pieces> log_table = [] {
  std::array<LogPiece, log_pieces> table{};
  for (int i = 0; i < log_pieces; ++i) {
    const auto n = static_cast<std::size_t>(reciprocal_of_piece(i));
    table[static_cast<std::size_t>(i)] = {static_cast<double>(n) / 512,
                                          log_value(reciprocal_logs[n - lowest_reciprocal])};
  }
  return table;
}();

// Whether r has 53 bits in all of piece i, and does not exceed what it is added to.
constexpr bool is_sound(int i) {
  const LogPiece& piece = log_table[static_cast<std::size_t>(i)];
  const double from = piece.c * begin_of_piece(i) - 1;
  const double to = piece.c * begin_of_piece(i + 1) - 1;  // itself in the next piece
  const auto size = [](double a) { return a < 0 ? -a : a; };
  const double largest = size(from) > size(to) ? size(from) : size(to);
  return largest <= 0x1p-8 && (piece.c == 1 ? piece.minus_log.high == 0 && piece.minus_log.low == 0
                                            : size(piece.minus_log.high) > largest);
}
static_assert([] {
  for (int i = 0; i < log_pieces; ++i) {
    if (!is_sound(i)) return false;
  }
  return true;
}());

// A positive, normal x as 2^exponent z, and the piece of z.
struct LogArgument {
  explicit LogArgument(std::uint64_t bits) {
    const std::uint64_t above = bits - std::bit_cast<std::uint64_t>(first_z);
    exponent = static_cast<std::int32_t>(static_cast<std::int64_t>(above) >> 52);
    z = std::bit_cast<double>(bits - (above & ~((std::uint64_t{1} << 52) - 1)));
    piece = static_cast<std::uint32_t>(above >> 44) & (log_pieces - 1);
  }
  double z;
  std::int32_t exponent;
  std::uint32_t piece;
};

// r = c z - 1, exact: c has 10 bits, and the parts of z have 27 and 26. The difference is exact because its
// terms are near each other, the sum because c z is a multiple of 2^-61 and |r| <= 2^-8.
inline double reduced(double c, double z) {
  const double head = rounded_to(z, 0x1p-26);
  return (c * head - 1) + c * (z - head);
}

}  // namespace varpre::math
