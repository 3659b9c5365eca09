#include "mechanism/collision_efficiencies.h"

#include <gtest/gtest.h>

#include "support/stages.h"
#include "textio/findings/record_findings.h"

namespace varpre {
namespace {

// The efficiency table of a mechanism with three third bodies.
struct Table {
  Table(std::string_view species, std::string in_mechanism, std::string in_conditions = "")
      : NFIMEC(input_of(std::move(in_mechanism))), NFICON(input_of(std::move(in_conditions))) {
    Mechanism mechanism;
    mechanism.complete = true;
    mechanism.NCOLL = 3;
    result = GENCEF(ReactionNames(names(species)), mechanism, NFIMEC, NFICON, listing, NFISTO);
  }
  Input NFIMEC;
  Input NFICON;
  StoreFile NFISTO;
  Listing listing;
  CollisionEfficiencies result;
};

std::string rows(const std::array<std::vector<double>, 3>& EFF) {
  StoreFile NFISTO;
  for (std::size_t c = 0; c < 3; ++c) {
    write<"(' EFF.',A4,3X,5(1PE11.4,1X))">(NFISTO, SpeciesName(MCOLLI[c]), std::span(EFF[c]));
  }
  return NFISTO.text;
}

TEST(CollisionEfficiencies, HoldForSpeciesAndForVibrationalStates) {
  Table table("N2(V1) N2 O2(V9) AR N2(V22) H2",
              "MECH\nEND\nCOLL\n"
              "M'      =N2(V)   +H2      +ar\n"
              "            2.000    3.000    0.500\n"
              "M''     =O2(V3)\n"
              "            4.000\n"
              "M'      =H2\n"
              "            7.000\n"
              "END\nnext\n");
  EXPECT_TRUE(table.result.LOK);
  EXPECT_EQ(table.NFISTO.text, rows({{{1, 1, 1, 1, 1, 1}, {2, 0, 0, 0.5, 2, 7}, {0, 0, 4, 0, 0, 0}}}));
  EXPECT_EQ(table.result.last_record, 10);
}

TEST(CollisionEfficiencies, MayStandInTheConditionsAndStartAt1) {
  Table table("H2 O2", "MECH\nEND\n", "OPTIONS\nEND\ncoll\ntroe\nM''     =O2\n            0.000\nend\n");
  EXPECT_TRUE(table.result.LOK);
  EXPECT_EQ(table.NFISTO.text, rows({{{1, 1}, {1, 1}, {1, 0}}}));
  EXPECT_EQ(table.result.last_record, 2);
}

TEST(CollisionEfficiencies, FifteenSpeciesAreABlock) {
  std::string line = "M'      =", values = std::string(9, ' ');
  for (int k = 1; k <= 15; ++k) {
    line += (k == 1 ? "S" : "+S") + std::to_string(k);
    values += "   " + std::to_string(k + 10) + ".00 ";
  }
  const Table table("S1 S14 S15", "COLL\n" + line + '\n' + values + "\nEND\n");
  EXPECT_TRUE(table.result.LOK);
  EXPECT_EQ(table.NFISTO.text, rows({{{1, 1, 1}, {11, 24, 25}, {0, 0, 0}}}));
}

TEST(CollisionEfficiencies, FillTheirPlacesToTheLast) {
  const auto message = [](int NCOLL, std::size_t NS) {
    Mechanism mechanism;
    mechanism.complete = true;
    mechanism.NCOLL = NCOLL;
    Input NFIMEC = input_of("COLL\nEND\n"), NFICON;
    StoreFile NFISTO;
    Listing listing;
    const bool LOK =
        GENCEF(ReactionNames(std::vector<SpeciesName>(NS)), mechanism, NFIMEC, NFICON, listing, NFISTO).LOK;
    EXPECT_EQ(LOK, !NFISTO.text.empty());
    return LOK ? "" : listing.file.text;
  };
  EXPECT_EQ(message(25, 300), "");
  EXPECT_EQ(message(27, 278), "1     ERROR: collision efficiencies exceed  7500 places\n");
}

}  // namespace
}  // namespace varpre
