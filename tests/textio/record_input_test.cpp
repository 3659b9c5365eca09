#include <array>
#include <charconv>
#include <gtest/gtest.h>
#include <limits>
#include <optional>
#include <span>
#include <string>

#include "textio/channel/statement.h"
#include "textio/findings/record_findings.h"
#include "textio/record/number_format.h"

namespace varpre {
namespace {

Input input_holding(std::string_view text) {
  Input unit;
  unit.text = text;
  unit.open();
  return unit;
}

// The shortest digits that stand for this value and no other, the sign of zero included.
template <class Value>
std::string shown(Value value) {
  std::array<char, 32> digits;
  return {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr};
}

std::string shown(const Text<8>& text) {
  return std::string(text.view());
}

// The value of one field; the format ends with an A1 that must find the bar behind the field.
template <FormatText Text, class Value>
std::string value_of(const std::string& field) {
  Input unit = input_holding(field + "|");
  Value value{};
  varpre::Text<1> behind;
  if (const ReadResult result = read<Text>(unit, value, behind); !result) {
    EXPECT_EQ(result.status, ReadResult::Status::unreadable);
    EXPECT_EQ(result.unreadable.number, 1);
    return "unreadable";
  }
  EXPECT_EQ(behind.view(), "|") << field;
  return shown(value);
}

#define EXPECT_READ(descriptor, field, value) \
  EXPECT_EQ((value_of<"(" descriptor ",A1)", decltype(value)>(field)), shown(value))

std::string padded(std::string field, std::size_t width) {
  field.resize(width, ' ');
  return field;
}

TEST(RecordInput, BlanksInNumbersAreIgnored) {
  EXPECT_READ("E10.3", " 1.5 e-3  ", 0.0015);
  EXPECT_READ("E10.3", "- 1 . 5   ", -1.5);
  EXPECT_READ("E10.3", "1.5E - 0 3", 0.0015);
  EXPECT_READ("F10.3", "1 2 3 4   ", 1.234);
  EXPECT_READ("F10.3", "          ", 0.0);
  EXPECT_READ("I6", " 1 2  ", 12);
  EXPECT_READ("I6", "      ", 0);
}

TEST(RecordInput, NumbersWithoutPointHaveImpliedDecimals) {
  EXPECT_READ("E10.3", "     12345", 12.345);
  EXPECT_READ("F10.3", "     -1   ", -0.001);
  EXPECT_READ("F10.3", "      125.", 125.0);
  EXPECT_READ("E10.1", "      15+3", 1500.0);
  EXPECT_READ("F5.0", "   -0", -0.0);
}

TEST(RecordInput, ExponentsTakeFourLettersOrNone) {
  for (const char* field : {"1.5E+03", "1.5D+03", "1.5e3", "1.5d003", "1.5+3", "+1.5E3", "15.+02"}) {
    EXPECT_EQ((value_of<"(E9.2,A1)", double>(padded(field, 9))), "1500") << field;
  }
  EXPECT_READ("E6.0", "-.5-03", -0.0005);
}

TEST(RecordInput, ScaleFactorDividesFieldsWithoutExponent) {
  EXPECT_READ("-3PF10.1", "     250.0", 250000.0);
  EXPECT_READ("2PF6.2", "  1234", 0.1234);
  EXPECT_READ("1PF6.1", "   0.7", 0.07);  // the point moves before the conversion: 0.7 / 10 is another double
  EXPECT_READ("1PE11.4", " 1.5000E+00", 1.5);
  EXPECT_READ("1PE11.4", " 1.5000+100", 1.5e100);

  Input unit = input_holding("  1.5  1.5\n  1.5\n");
  std::array<double, 3> values{};
  ASSERT_TRUE(read<"(F5.1,2P,F5.1)">(unit, values));
  EXPECT_EQ(values, (std::array{1.5, 0.015, 0.015}));
}

TEST(RecordInput, ConversionIsToTheNearestDoubleAndUnderflowToASignedZero) {
  EXPECT_READ("F20.0", "   9007199254740993.", 9007199254740992.0);
  EXPECT_READ("F38.20", "9007199254740993.00000000000000000001 ", 9007199254740994.0);
  EXPECT_READ("E23.16", "1.7976931348623157E+308", std::numeric_limits<double>::max());
  EXPECT_READ("F300.0", "1" + std::string(298, '0') + ".", 1e298);
  EXPECT_READ("F300.0", "." + std::string(298, '0') + "1", 1e-299);
  EXPECT_READ("E10.3", "4.941E-324", std::numeric_limits<double>::denorm_min());
  EXPECT_READ("E10.3", "2.000E-324", 0.0);
  EXPECT_READ("E10.3", "-1.00E-999", -0.0);
  EXPECT_READ("E22.3", "-1.00-9999999999999999", -0.0);
  EXPECT_READ("E22.3", "0.0E+99999999999999999", 0.0);
}

TEST(RecordInput, FieldsThatAreNoNumberOfTheirKindAreUnreadable) {
  for (const char* field :
       {".",     "+",           "- .",   "E5",       "1.5E",     "1.5E+",      "1.5.",      "1,5",   "1.5X",
        "--1",   "1.5E3.0",     "1-2-3", "NaN",      "Inf",      "-Infinity",  "0x1p3",     "1.5\t", "\t",
        "1.5\r", "1.5\xC2\xA0", "*****", "1.0E+309", "-1.0E999", "9+99999999", "1.798E+308"}) {
    EXPECT_EQ((value_of<"(E10.3,A1)", double>(padded(field, 10))), "unreadable") << field;
    EXPECT_EQ((value_of<"(-3PF10.1,A1)", double>(padded(field, 10))), "unreadable") << field;
  }
  for (const char* field : {"1.", "1.0", "+", "- ", "1-2", "+-1", "1E2", "A", "\t1", "2147483648",
                            "-2147483649", "99999999999999999999"}) {
    EXPECT_EQ((value_of<"(I20,A1)", int>(padded(field, 20))), "unreadable") << field;
  }
  EXPECT_READ("I20", " -2147483648        ", std::numeric_limits<int>::min());
  EXPECT_READ("I20", "+0000000002147483647", std::numeric_limits<int>::max());
}

TEST(RecordInput, TextsTakeTheRightOfAWideFieldAndArePaddedFromANarrowOne) {
  EXPECT_READ("A4", "ABCD", Text<8>("ABCD"));
  EXPECT_READ("A10", "ABCDEFGHIJ", Text<8>("CDEFGHIJ"));
  EXPECT_READ("A", "ABCDEFGH", Text<8>("ABCDEFGH"));
}

TEST(RecordInput, ShortRecordsArePaddedAndTheRestOfLongOnesIsIgnored) {
  Input unit = input_holding("H2\n\nABCDEFGH\n12345 and more\nN2");
  Text<8> name;
  double value = 7;
  ASSERT_TRUE(read<"(A8,1X,E10.2)">(unit, name, value));
  EXPECT_EQ(name.view(), "H2      ");
  EXPECT_EQ(value, 0);
  ASSERT_TRUE(read<"(A8)">(unit, name));
  EXPECT_TRUE(name.blank());
  ASSERT_TRUE(read<"(A12)">(unit, name));  // the right of a field that the record does not fill
  EXPECT_EQ(name.view(), "EFGH    ");
  ASSERT_TRUE(read<"(E6.2/A2)">(unit, value, name));
  EXPECT_EQ(value, 123.45);
  EXPECT_EQ(name.view(), "N2      ");
}

TEST(RecordInput, StatementsTakeWholeRecords) {
  Input unit = input_holding("  1\n  2\nname  3  4\n  5  6\n  7\n  8\nlabel  9\n 10\n");
  std::array<int, 5> n{};
  Text<4> name;
  ASSERT_TRUE(read<"(I3/I3)">(unit, n[0], n[1]));
  ASSERT_TRUE(read<"(A4,2(I3))">(unit, name, n));  // goes back to the group
  EXPECT_EQ(n, (std::array{3, 4, 5, 6, 7}));
  ASSERT_TRUE(read<"(I3,:/I3)">(unit, n[0]));
  EXPECT_EQ(unit.record_number(), 6);
  ASSERT_TRUE(read<"('label',I3/I3)">(unit, n[0]));  // without a colon the slash is passed
  EXPECT_EQ(n[0], 9);
  EXPECT_EQ(unit.record_number(), 8);
}

TEST(RecordInput, ArraysSpansAndZippedSpansTakeTheirValuesInTurn) {
  Input unit = input_holding("H2  1.0O2  2.0\nN2  3.0\n         1  2  3  4\n");
  std::array<Text<3>, 3> names;
  std::array<double, 3> values{};
  std::array<std::array<int, 2>, 2> matrix{};
  ASSERT_TRUE(read<"(2(A3,F4.1))">(unit, zip(names, values)));
  EXPECT_EQ(names[1].view(), "O2 ");
  EXPECT_EQ(values, (std::array{1.0, 2.0, 3.0}));
  ASSERT_TRUE(read<"(7X,9I3)">(unit, std::span(matrix).first(1), matrix[1]));
  EXPECT_EQ(matrix[0], (std::array{1, 2}));
  EXPECT_EQ(matrix[1], (std::array{3, 4}));
}

TEST(RecordInput, EndOfFileLeavesTheRemainingItemsUntouched) {
  Input unit = input_holding("  1  2\n  3");
  std::array n{9, 9, 9, 9, 9};
  const ReadResult result = read<"(2I3)">(unit, n);
  EXPECT_TRUE(result.end_of_file());
  EXPECT_FALSE(result);
  EXPECT_EQ(n, (std::array{1, 2, 3, 0, 9}));
  unit.rewind();
  EXPECT_TRUE(read<"(//I3)">(unit, n).end_of_file());
}

TEST(RecordInput, UnreadableFieldIsLocatedAndEndsTheStatement) {
  const auto place = [](const ReadResult& result) {
    const FieldPlace& at = result.unreadable;
    return std::array{at.number, at.record, at.column, at.width};
  };
  Input unit = input_holding("abc    12  1.50  1.X0  2.50\n  1  2  3\n  4  x  6\n  7\n");
  Text<3> name;
  int n = 0;
  std::array values{9.0, 9.0, 9.0};
  EXPECT_EQ(place(read<"(A,2X,I4,3(1X,F5.2))">(unit, name, n, values)), (std::array{4, 1, 17, 5}));
  EXPECT_EQ(name.view(), "abc");
  EXPECT_EQ(n, 12);
  EXPECT_EQ(values, (std::array{1.5, 9.0, 9.0}));

  std::array numbers{9, 9, 9, 9, 9, 9};
  EXPECT_EQ(place(read<"(3I3)">(unit, numbers)), (std::array{5, 3, 4, 3}));
  EXPECT_EQ(numbers, (std::array{1, 2, 3, 4, 9, 9}));
  EXPECT_EQ(unit.record_number(), 3);
}

TEST(RecordInput, FreeRealsAreWholeTokens) {
  EXPECT_EQ(read_free_real("12"), 12);  // a whole number
  EXPECT_EQ(read_free_real("+1.5D3"), 1500);
  EXPECT_EQ(read_free_real("1-3"), 0.001);
  for (const char* token :
       {"", " ", "1 2", " 1", "1 ", ".", "-", "E5", "1.5E", "1.5.2", "1E400", "nan", "1,5"}) {
    EXPECT_EQ(read_free_real(token), std::nullopt) << token;
  }
}

}  // namespace
}  // namespace varpre
