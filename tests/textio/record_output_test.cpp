#include <array>
#include <gtest/gtest.h>
#include <limits>
#include <optional>
#include <span>
#include <string>

#include "textio/channel/run_stop.h"
#include "textio/channel/statement.h"
#include "textio/findings/listing.h"

namespace varpre {
namespace {

// The records that one statement writes.
template <FormatText Text, class... Items>
std::string written(const Items&... items) {
  Listing listing;
  write<Text>(listing, items...);
  return listing.file.text;
}

template <class... Items>
std::string written_free(const Items&... items) {
  Listing listing;
  write_free(listing, items...);
  return listing.file.text;
}

// One value under one descriptor; the bar behind it shows that the field is as wide as it should be.
#define EXPECT_FIELD(descriptor, value, field) EXPECT_EQ(written<"(" descriptor ",'|')">(value), field "|\n")

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double smallest = std::numeric_limits<double>::denorm_min();

constexpr std::array one_to_nine{1, 2, 3, 4, 5, 6, 7, 8, 9};
constexpr std::span<const int> up_to(std::size_t n) {
  return std::span(one_to_nine).first(n);
}

TEST(RecordOutput, IntegersAreRightJustified) {
  EXPECT_FIELD("I4", 7, "   7");
  EXPECT_FIELD("I4", -999, "-999");
  EXPECT_FIELD("I4", 10000, "****");
  EXPECT_FIELD("I12", std::numeric_limits<int>::min(), " -2147483648");
  EXPECT_FIELD("I5", std::optional(42), "   42");
  EXPECT_FIELD("I5", std::optional<int>(), "*****");
}

TEST(RecordOutput, FixedRoundsTheExactValueAndTiesToEven) {
  EXPECT_FIELD("F4.1", 0.05, " 0.1");  // held above 0.05
  EXPECT_FIELD("F4.1", 0.15, " 0.1");  // held below 0.15
  EXPECT_FIELD("F4.1", 0.25, " 0.2");  // a tie, as the next two
  EXPECT_FIELD("F4.1", -0.75, "-0.8");
  EXPECT_FIELD("F5.0", 2.5, "   2.");
  EXPECT_FIELD("F5.1", 0.096, "  0.1");
  EXPECT_FIELD("F3.1", 9.96, "***");
  EXPECT_FIELD("F7.0", 99999.5, "100000.");
  EXPECT_FIELD("F34.32", 1e-14, "0.00000000000000999999999999999999");  // held below 1e-14
  EXPECT_FIELD("F25.0", 1e22, " 10000000000000000000000.");
}

TEST(RecordOutput, FixedLeavesOutTheZeroBeforeThePointButNoSign) {
  EXPECT_FIELD("F4.2", 0.5, "0.50");
  EXPECT_FIELD("F3.2", 0.5, ".50");
  EXPECT_FIELD("F3.2", -0.5, "***");
  EXPECT_FIELD("F1.0", 0.0, "*");
  EXPECT_FIELD("F5.1", -0.04, " -0.0");  // the sign stays, whatever becomes of the digits
  EXPECT_FIELD("F3.1", -0.04, "-.0");
  EXPECT_FIELD("F5.0", -0.5, "  -0.");
  EXPECT_FIELD("F8.3", -smallest, "  -0.000");
  EXPECT_FIELD("1PE11.4", -0.0, "-0.0000E+00");
}

TEST(RecordOutput, ScaledFixedShiftsTheDecimalDigits) {
  EXPECT_FIELD("-3PF10.1", 250000.0, "     250.0");
  EXPECT_FIELD("-3PF6.1", 70250.0, "  70.2");
  EXPECT_FIELD("-3PF6.1", -70350.0, " -70.4");
  EXPECT_FIELD("-3PF6.1", 50.0, "   0.0");
  EXPECT_FIELD("-3PF6.1", 50.001, "   0.1");
  EXPECT_FIELD("3PF9.3", 0.00123, "    1.230");
  EXPECT_FIELD("2PF6.2", 0.00125, "  0.13");  // held above 0.00125, but 100 times it is 0.125
  EXPECT_FIELD("3PF6.0", 1.0005, " 1000.");   // held below 1.0005, but 1000 times it is 1000.5
}

TEST(RecordOutput, ExponentFormPutsKDigitsBeforeThePoint) {
  EXPECT_FIELD("E11.4", 1.2345, " 0.1234E+01");  // held below 1.2345
  EXPECT_FIELD("1PE11.4", 12345.678, " 1.2346E+04");
  EXPECT_FIELD("1PE9.2", -1.5e-7, "-1.50E-07");
  EXPECT_FIELD("2PE9.2", 0.0015, " 15.0E-04");
  EXPECT_FIELD("3PE9.2", 0.0015, " 150.E-05");
  EXPECT_FIELD("1PE11.4", 0.0, " 0.0000E+00");
  EXPECT_FIELD("3PE9.2", 0.0, " 000.E+00");
  EXPECT_FIELD("E9.4", 1.0, ".1000E+01");
  EXPECT_FIELD("E9.4", -1.0, "*********");
}

TEST(RecordOutput, ExponentFormCarriesAcrossPowersOfTenAndDropsItsLetter) {
  EXPECT_FIELD("1PE9.2", 1.125, " 1.12E+00");
  EXPECT_FIELD("1PE9.2", 1.375, " 1.38E+00");
  EXPECT_FIELD("1PE11.4", 9.99994, " 9.9999E+00");
  EXPECT_FIELD("1PE11.4", 9.99996, " 1.0000E+01");
  EXPECT_FIELD("E11.4", 9.99996, " 0.1000E+02");
  EXPECT_FIELD("3PE9.2", 0.0099996, " 100.E-04");
  EXPECT_FIELD("1PE11.4", 1e-100, " 1.0000-100");
  EXPECT_FIELD("1PE11.4", 9.99996e99, " 1.0000+100");
  EXPECT_FIELD("1PE11.4", -9.99996e-100, "-1.0000E-99");
  EXPECT_FIELD("3PE9.2", 1e101, " 100.E+99");
  EXPECT_FIELD("1PE20.13", std::numeric_limits<double>::max(), " 1.7976931348623+308");
  EXPECT_FIELD("1PE11.4", smallest, " 4.9407-324");
}

TEST(RecordOutput, NumbersThatAreNotFiniteBecomeTheLongestWordThatFits) {
  EXPECT_FIELD("1PE11.4", -nan, "        NaN");
  EXPECT_FIELD("F2.1", nan, "**");
  EXPECT_FIELD("F8.1", infinity, "Infinity");
  EXPECT_FIELD("E9.2", -infinity, "-Infinity");
  EXPECT_FIELD("F8.1", -infinity, "    -Inf");
  EXPECT_FIELD("F3.1", -infinity, "***");
}

TEST(RecordOutput, TextsAreCutOnTheRightAndPaddedOnTheLeft) {
  const Text<8> water("H2O");
  EXPECT_FIELD("A", water, "H2O     ");
  EXPECT_FIELD("A2", water, "H2");
  EXPECT_FIELD("A10", water, "  H2O     ");
  EXPECT_FIELD("A4", Text<2>("PT"), "  PT");
  const std::string any_length(3000, 'x');
  EXPECT_EQ(written<"(I3,A,I3)">(1, std::string_view(any_length), 2), "  1" + any_length + "  2\n");
  EXPECT_FIELD("A3", std::string_view(), "   ");
}

TEST(RecordOutput, LiteralsAndBlanksAreWrittenAsTheyStand) {
  EXPECT_EQ(written<"(1H1,5X,'it''s',3H') ,'')">(), "1     it's') \n");
  EXPECT_EQ(written<"('  Mixed  case, ( / : )'  ,  1X)">(), "  Mixed  case, ( / : ) \n");
  EXPECT_EQ(written<"(2X)">(), "  \n");
  EXPECT_EQ(written<"(I3,2x)">(5), "  5  \n");
}

TEST(RecordOutput, ScaleFactorStaysInForceUntilTheStatementEnds) {
  EXPECT_EQ((written<"(1X,'SE  =',1PE9.2,' J,m', 2X,'SW  =',3PF9.3,' mm ', 2X,'ST  =',E9.2,' ms ')">(
                0.5, 0.00125, 0.25)),
            " SE  = 5.00E-01 J,m  SW  =    1.250 mm   ST  = 250.E-03 ms \n");
  EXPECT_EQ(written<"(1PE9.2/F7.1,0PF7.1)">(1.5, 1.5, 1.5), " 1.50E+00\n   15.0    1.5\n");
  EXPECT_EQ(written<"(F7.1,1P,'|')">(1.5, 1.5), "    1.5|\n   15.0|\n");  // through reversion
}

TEST(RecordOutput, ReversionBeginsANewRecordAtTheLastGroup) {
  std::array<double, 12> masses;
  masses.fill(0.5);
  EXPECT_EQ(written<"(' XMOL',7X,5(2PF4.1,1X))">(masses),
            " XMOL       50.0 50.0 50.0 50.0 50.0 \n50.0 50.0 50.0 50.0 50.0 \n50.0 50.0 \n");
  EXPECT_EQ(written<"(I2,I3,'|')">(1, 2, 3), " 1  2|\n 3\n");
  EXPECT_EQ(written<"(I2,2(I3,'|'),'.')">(up_to(6)), " 1  2|  3|.\n  4|  5|.\n  6|\n");
  EXPECT_EQ(written<"(2(I1),'-',2(I2),'|')">(up_to(6)), "12- 3 4|\n 5 6|\n");
  EXPECT_EQ(written<"(2(I2,2('a',I2)),'z')">(up_to(7)), " 1a 2a 3 4a 5a 6z\n 7a\n");
  EXPECT_EQ(written<"(I2,2('a'))">(up_to(3)), " 1aa\n");  // nothing to go back to
}

TEST(RecordOutput, WhatStandsBeforeTheNextDataDescriptorIsWrittenWithoutItems) {
  EXPECT_EQ(written<"(I3,' mid',I3,' end')">(1), "  1 mid\n");
  EXPECT_EQ(written<"(' none',I4)">(), " none\n");
  EXPECT_EQ(written<"(2(I2,:,','),'|')">(1, 2), " 1, 2\n");
  EXPECT_EQ(written<"(2(I2,:,','),'|')">(1, 2, 3), " 1, 2,|\n 3\n");
  EXPECT_EQ(written<"(/,I3,//,I3)">(1, 2), "\n  1\n\n  2\n");

  const std::string label = " Spec. Flags   ";
  const std::string full = label + "  0  0  0  0  0  0  0  0  0  0  0  0  0  0  0  0  0  0  0  0\n";
  const auto flags = [](std::size_t count) {
    constexpr std::array<int, 45> zeros{};
    return written<"(' Spec. Flags',3X,20I3,4(/,' Spec. Flags',3X,20I3))">(std::span(zeros).first(count));
  };
  EXPECT_EQ(flags(45), full + full + label + "  0  0  0  0  0\n");
  EXPECT_EQ(flags(20), full + label + "\n");
}

TEST(RecordOutput, ArraysSpansAndZippedSpansGiveTheirValuesInTurn) {
  const std::array<Text<8>, 3> names{Text<8>("H2"), Text<8>("O2"), Text<8>("N2")};
  const std::array<int, 3> counts{1, 2, 3};
  const std::array<std::array<double, 2>, 2> matrix{{{1, 2}, {3, 4}}};
  EXPECT_EQ(written<"(2(A4,I2,'|'))">(zip(names, counts)), "H2   1|O2   2|\nN2   3|\n");
  EXPECT_EQ(written<"(I2,3(A3,A3,F4.0),I2)">(7, zip(names, std::span(names), std::array{.1, .2, .3}), 8),
            " 7H2 H2   0.O2 O2   0.N2 N2   0. 8\n");
  EXPECT_EQ(written<"(9I2)">(zip(counts, std::vector{4, 5, 6})), " 1 4 2 5 3 6\n");
  EXPECT_EQ(written<"(4F3.0)">(matrix), " 1. 2. 3. 4.\n");
  EXPECT_EQ(written<"(9I2)">(up_to(2), 5, up_to(0), 6), " 1 2 5 6\n");
  EXPECT_EQ(written<"(I2,A3,'|')">(counts), " 1***|\n 3\n");  // an integer under A
}

// Records laid out while compiling, of arrays, against those that the engine makes of spans at run time.
template <FormatText Text, class First, std::size_t N, class... Others>
void expect_same_records(const std::array<First, N>& first, const Others&... others) {
  EXPECT_EQ(written<Text>(first, others...), written<Text>(std::span<const First>(first), others...));
}

TEST(RecordOutput, RecordsLaidOutWhileCompilingAreTheSame) {
  constexpr std::array numbers{1.5, -2.25e-7, infinity, 0.0, -99999.5, smallest, 1e100};
  constexpr std::array integers{7, -999, 10000, std::numeric_limits<int>::min()};
  constexpr std::array words{Text<8>("H2O"), Text<8>("CH3CHO-X"), Text<8>()};
  expect_same_records<"(' D(',2I4,')',5(1PE11.4,1X))">(integers);  // two items reach a field for reals
  expect_same_records<"(' D(',I4,')',5(1PE11.4,1X))">(std::array{1}, numbers);
  expect_same_records<"(I5,/,3(1X,E12.5,2X),F9.2,-3PF12.1)">(integers, numbers, numbers);
  expect_same_records<"(2(F8.1,1PE9.2))">(numbers);  // the scale factor lasts beyond its group
  expect_same_records<"(1P,' p',2(E10.3),0P,F9.1,3X)">(numbers);
  expect_same_records<"(6(A,A2),:,' behind')">(words, words);
  expect_same_records<"(A3,1X,A10,' | ',I3)">(words, integers);
  expect_same_records<"(4(2X,3I5))">(std::array{std::array{1, 2, 3}, std::array{40, 50, 600000}});
  expect_same_records<"(F5.1,300X,300X,300X,300X,'|')">(std::array{1.0});
  const std::array codes{Text<2>("+"), Text<2>("->"), Text<2>()};
  EXPECT_EQ((written<"(1X,2(A,A2),I3)">(zip(std::span(words).first<3>(), std::span(codes).first<3>(),
                                            std::span(integers).first<3>()))),
            (written<"(1X,2(A,A2),I3)">(
                zip(std::span(words).first(3), std::span(codes).first(3), std::span(integers).first(3)))));
}

TEST(RecordOutput, FreeFormSeparatesAllButTexts) {
  EXPECT_EQ(written_free(), " \n");
  EXPECT_EQ(written_free(std::string_view(" two"), Text<4>("ab"), std::string_view("c")), "  twoab  c\n");
  EXPECT_EQ(written_free(std::array{1, -2147483647 - 1}), "           1 -2147483648\n");
  EXPECT_EQ(written_free(std::string_view("n ="), 7, std::string_view("+"), Text<3>("X")),
            " n =           7 +X  \n");
}

TEST(RecordOutput, StoreFileTakesFiniteNumbersOnlyOrRefusesTheWholeStatement) {
  StoreFile store;
  write<"(' first',F4.1)">(store, 1.0);
  const auto expect_refusal = [&](auto statement) {
    try {
      statement();
      ADD_FAILURE() << store.text;
    } catch (const RunStop& stop) {
      EXPECT_EQ(stop.ending, RunStop::Ending::number_not_finite);
    }
    EXPECT_EQ(store.text, " first 1.0\n");
  };
  for (const double value : {nan, infinity, -infinity}) {
    expect_refusal([&] { write<"(' HL',F4.1,9(200X),/,' HH',2F4.1)">(store, 1.0, 2.0, value); });
    const std::array values{1.0, value};  // the second one reaches a field for integers
    expect_refusal([&] { write<"(F6.1,I4)">(store, values); });
    expect_refusal([&] { write<"(F6.1,I4)">(store, std::span<const double>(values)); });
  }
}

}  // namespace
}  // namespace varpre
