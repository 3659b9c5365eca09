#include "thermo/species_list.h"

#include <gtest/gtest.h>

#include "support/stages.h"

namespace varpre {
namespace {

constexpr const Section& gas_section = sections::named("the gas-phase species list");

// The names and flags that a list fills in, "H2 1, O2 0, "; its message when it is absent.
std::string list_from(const std::string& text, const Section& section = gas_section, int places = NSMAX) {
  Species species;
  species.IFLAG.fill(9);  // an earlier list stood here
  Input NFICON = input_of("a title\n" + text);
  Listing listing;
  const SpeciesList list = GENSYM(section, NFICON, listing, species.places(0, places));
  if (list.absent) return listing.file.text;
  std::string filled;
  for (std::size_t i = 0; i < static_cast<std::size_t>(list.NS); ++i) {
    filled += std::string(trimmed(species.SYMB[i].view())) + ' ' + std::to_string(species.IFLAG[i]) + ", ";
  }
  return filled;
}

std::string gas_list(const std::string& lines) {
  return list_from("gas phase\n" + lines + "\nEND\n");
}

constexpr auto no_list = "     Warning In species input: No heading, no end card, or missing data\n";

TEST(SpeciesList, FlagsBelongToTheNameBeforeThemOnALineThatEndsInAFlag) {
  EXPECT_EQ(gas_list("CH4* CO+ O2>"), "CH4 1, CO 2, O2 3, ");
  EXPECT_EQ(gas_list("H2 O2 N2*"), "H2 0, O2 0, N2 1, ");
  EXPECT_EQ(gas_list("H2*, O2 + ! a comment *"), "H2 1, O2 2, ");
}

TEST(SpeciesList, FlagsBelongToTheNextNameOnALineThatEndsInAName) {
  EXPECT_EQ(gas_list("H2 O2 N2"), "H2 0, O2 0, N2 0, ");
  EXPECT_EQ(gas_list("H2* O2"), "H2 0, O2 1, ");
  EXPECT_EQ(gas_list("H2*O2 N2> CO\nAR+"), "H2 0, O2 1, N2 0, CO 3, AR 2, ");
  EXPECT_EQ(gas_list("H2*+ O2"), "H2 0, O2 1, ");  // the first of a run counts
}

TEST(SpeciesList, NamesAreCutToEightCharacters) {
  EXPECT_EQ(gas_list("ABCDEFGHIJKL " + std::string(50, 'X')), "ABCDEFGH 0, XXXXXXXX 0, ");
}

TEST(SpeciesList, EndsAtALineThatBeginsWithEnd) {
  EXPECT_EQ(gas_list(""), "");
  EXPECT_EQ(gas_list("H2\nendosulfan O2\nN2"), "H2 0, ");
  EXPECT_EQ(list_from("Gas Phase\nH2\n"), no_list);
}

TEST(SpeciesList, HeadingBeginsTheLineInAnyCase) {
  const std::string lines = "\nPT(S)\nEND\n";
  EXPECT_EQ(list_from("SURFACE" + lines, sections::named("the surface species list")), "PT(S) 0, ");
  EXPECT_EQ(list_from("surface species" + lines, sections::named("the surface species list")), "PT(S) 0, ");
  EXPECT_EQ(list_from("SURFACES" + lines, sections::named("the surface species list")), no_list);
  EXPECT_EQ(list_from(" SURFACE" + lines, sections::named("the surface species list")), no_list);
  EXPECT_EQ(list_from("Surface Conditions\nTW 900.0\nEND\nSurface" + lines,
                      sections::named("the surface species list")),
            "PT(S) 0, ");
  EXPECT_EQ(list_from("surface cond\nTW 900.0\nEND\n", sections::named("the surface species list")), no_list);
}

TEST(SpeciesList, FillsItsPlacesToTheLast) {
  EXPECT_EQ(list_from("Gas Phase\nH2\nO2 N2\nEND\n", sections::named("the gas-phase species list"), 3),
            "H2 0, O2 0, N2 0, ");
  EXPECT_EQ(list_from("Gas Phase\nH2\nO2 N2 AR\nEND\n", sections::named("the gas-phase species list"), 3),
            "0  ERROR in GENSYM - Too many species: NS(   4) > NSMAX(   3)\n");
}

}  // namespace
}  // namespace varpre
