#include "textio/names/scanning.h"

#include <array>
#include <gtest/gtest.h>
#include <string>
#include <string_view>

#include "textio/channel/run_stop.h"

namespace varpre {
namespace {

constexpr std::string_view flags = "*+>";
constexpr std::string_view arrows = "+=<>%";
constexpr NameLimits roomy{line_length, line_length};

// What a scan comes to, or the listing when it stops the run.
template <class Scan>
std::string outcome(Scan scan) {
  Listing listing;
  try {
    return scan(listing);
  } catch (const RunStop& stop) {
    EXPECT_EQ(stop.ending, RunStop::Ending::silent);
    return listing.file.text;
  }
}

// A line after COMPDE, up to its last character; behind it there must be blanks.
std::string compressed(std::string line, std::string_view DELCH = flags) {
  return outcome([&](Listing& listing) {
    const auto NL = static_cast<std::size_t>(COMPDE(line, DELCH, listing));
    EXPECT_EQ(line.find_first_not_of(' ', NL), std::string::npos) << line;
    return line.substr(0, NL);
  });
}

// The <names> of a line and the {delimiter strings} behind them.
template <class Splitter>
std::string cut(Splitter splitter, std::string line, std::string_view DELCH,
                const NameLimits& limits = roomy) {
  return outcome([&](Listing& listing) {
    NameList names;
    splitter(line, limits, DELCH, names, listing, nullptr);
    std::string shown;
    for (int i = 0; i < names.NSYM(); ++i) {
      const auto k = static_cast<std::size_t>(i);
      shown.append("<").append(names.SYMS[k]).append(">");
      if (i < names.NDEL()) shown.append("{").append(names.DELS[k]).append("}");
    }
    return shown;
  });
}

TEST(Scanning, ComparisonIgnoresTheCaseOfAsciiLettersOnly) {
  EXPECT_TRUE(EQUSYM(3, "end card", "END"));
  EXPECT_FALSE(EQUSYM(4, "end card", "END!"));
  EXPECT_TRUE(EQUSYM(8, "h2o     x", "H2O"));
  EXPECT_FALSE(EQUSYM(8, "h2o    x", "H2O"));
  EXPECT_TRUE(EQUSYM(0, "a", "b"));
  EXPECT_TRUE(EQUSYM(2, "az", "AZ"));
  for (const std::string_view pair : {"[{", "@`", "0P", "\xC4\xE4"})
    EXPECT_FALSE(EQUSYM(1, pair, pair.substr(1)));
}

TEST(Scanning, DelimitersAreFoundWhenThereAreAny) {
  EXPECT_EQ(IFDE("CH4*H2", flags), 4);
  EXPECT_EQ(IFDE("H2 O2", flags), 3);
  EXPECT_EQ(IFDE("H2=O2", flags), 0);
  EXPECT_EQ(IFDE("", flags), 0);
  EXPECT_EQ(IFDE("H2 O2", ""), 0);
  EXPECT_EQ(ILDE("* +H2", flags), 3);
  EXPECT_EQ(ILDE("H2*", flags), 0);
  EXPECT_EQ(ILDE("* +", flags), 1);  // nothing but delimiters
  EXPECT_EQ(ILDE("", flags), 1);
  EXPECT_EQ(ILDE("  H2", ""), 0);
}

TEST(Scanning, CompressionKeepsOneBlankBetweenNamesAndNoneBesideADelimiter) {
  EXPECT_EQ(compressed("  H2 * ,O2  N2+   "), "H2*O2 N2+");
  EXPECT_EQ(compressed(",,H2,,O2, ,N2,"), "H2 O2 N2");
  EXPECT_EQ(compressed("H2  +  > O2 +"), "H2+>O2+");  // the last column in use
  EXPECT_EQ(compressed("H2 =  O2"), "H2 = O2");
  EXPECT_EQ(compressed("+ H2 +  O2", ""), "+ H2 + O2");
  EXPECT_EQ(compressed("H2 +! O2 ! N2"), "H2+");
  EXPECT_EQ(compressed("  ! + O2"), "");
  EXPECT_EQ(compressed("  ,  "), "");
}

TEST(Scanning, LineThatBeginsWithADelimiterStopsTheRun) {
  const std::string second = "  Delimiter found at the beginning of line in COMPDE\n";
  EXPECT_EQ(compressed("*H2"), "           1 **H2\n" + second);
  EXPECT_EQ(compressed(" ,> H2,O2! N2 "), "           3 >> H2 O2       \n" + second);  // cleaned so far
}

TEST(Scanning, SplittingKeepsTheDelimitersBehindEachName) {
  EXPECT_EQ(cut(SYDEL, "H2 O2", flags), "<H2>{ }<O2>");
  EXPECT_EQ(cut(SYDEL, "CH4*", flags), "<CH4>{*}");
  EXPECT_EQ(cut(SYDEL, "H+O2=>OH+O", arrows), "<H>{+}<O2>{=>}<OH>{+}<O>");
  EXPECT_EQ(cut(SYDEL, "H + O2", arrows), "<H>{ + }<O2>");
  EXPECT_EQ(cut(SYDEL, "*H2", flags), "<>{*}<H2>");
  EXPECT_EQ(cut(SYDEL, "H2 O2", ""), "<H2 O2>");
  EXPECT_EQ(cut(GETNAM, " H2,O2 , N2 + ", flags), "<H2>{ }<O2>{ }<N2>{+}");
  EXPECT_EQ(cut(GETNAM, "   ! H2", flags), "");
  EXPECT_EQ(cut(SYDEL, "H2++", flags), "<H2>{+}<>{+}");  // delimiters at the end: one by one
  EXPECT_EQ(cut(SYDEL, "H2+ *", flags), "<H2>{+}<>{ }<>{*}");
  EXPECT_EQ(cut(SYDEL, std::string(line_length, '+'), flags).size(), 5U * line_length);  // <>{+}
}

TEST(Scanning, NamesAndDelimitersBeyondTheirLimitsStopTheRun) {
  constexpr NameLimits limits{8, 2};
  EXPECT_EQ(cut(RYDEL, "ABCDEFGH=>B", arrows, limits), "<ABCDEFGH>{=>}<B>");
  EXPECT_EQ(cut(RYDEL, "A+++", arrows, limits), "<A>{+}<>{+}<>{+}");
  EXPECT_EQ(cut(SYDEL, "A+ABCDEFGHI+B", arrows, limits), "  Name too long in SYDEL:ABCDEFGHI\n");
  EXPECT_EQ(cut(RYDEL, "ABCDEFGHI", arrows, limits), "  Name too long in SYDEL:ABCDEFGHI\n");
  EXPECT_EQ(cut(SYDEL, "A=>+B", arrows, limits), "  Delim too long in SYDEL:=>+\n");
  EXPECT_EQ(cut(RYDEL, "A=> B", arrows, limits), "  Delim too long in RYDEL:=> \n");
}

TEST(Scanning, ISTDECSortsItsTwoGroups) {
  constexpr std::array KIN{1, 5, 3, 2, 9, 4, 0, 8, -6, 8, 10, 11};
  EXPECT_EQ(ISTDEC(KIN, 3), (std::array{5, 3, 1, 9, 4, 2, 0, 8, -6, 8, 10, 11}));
  EXPECT_EQ(ISTDEC(KIN, 6), (std::array{9, 5, 4, 3, 2, 1, 11, 10, 8, 8, 0, -6}));
}

}  // namespace
}  // namespace varpre
