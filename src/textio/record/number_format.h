#pragma once

#include <optional>
#include <string_view>

// Editing of one value into, or out of, one field of a record: the bottom layer of the record notation.
namespace varpre {

// The places of a real edit descriptor: kPFw.d or kPEw.d.
struct RealEdit {
  int width;   // w, columns of the field
  int digits;  // d, digits after the point
  int scale;   // k, scale factor
};

// Each routine below fills the `width` characters at `field`, right-justified; when the value does not fit,
// with asterisks, and returns false. Digits are rounded to the nearest decimal of the exact value held, exact
// ties to the even digit.

// Iw: decimal digits, a minus sign before the first one of a negative value.
bool edit_integer(char* field, int width, int value);

// kPFw.d: the value times 10^k with d decimals. The zero before the point of a value below 1 is left out when
// it is all that does not fit.
bool edit_fixed(char* field, const RealEdit& edit, double value);

// kPEw.d: significand and exponent, as 0.1235E+01 (k = 0) or 1.2346E+04 (k = 1); an exponent of three digits
// takes the place of its letter (1.0000+100).
bool edit_exponent(char* field, const RealEdit& edit, double value);

// An integer field: optional sign and digits, blanks ignored wherever they stand, a blank field is 0.
// Nothing when a character does not belong there, no digit stands in a non-blank field, or the value
// overflows.
std::optional<int> read_integer(std::string_view field);

// A real field: optional sign, digits with an optional point, optional exponent (E, D, e or d and an
// optionally signed integer, or a signed integer alone); blanks ignored, a blank field is 0. Without a point
// the last `digits` digits are decimals; without an exponent the value is divided by 10^scale. Nothing as
// above.
std::optional<double> read_real(std::string_view field, const RealEdit& edit);
// The usual ones, whose value depends on neither: a blank field, or one with a point and, unless the scale is
// 0, with an exponent. Nothing for any other.
std::optional<double> read_plain_real(std::string_view field, int scale);

// A real number written as one token, in the same form but without blanks or implied decimals.
std::optional<double> read_free_real(std::string_view token);

}  // namespace varpre
