#include "mechanism/mechanism_reader.h"

#include <gtest/gtest.h>

#include "support/stages.h"

namespace varpre {
namespace {

// A mechanism that has been read; the last NSURF of its species stand on the surface.
struct ReadMechanism {
  ReadMechanism(std::string reactions, std::string_view symbols, const MechanismOptions& options = {},
                int NSURF = 0) {
    const std::vector<SpeciesName> SYMB = names(symbols);
    std::copy(SYMB.begin(), SYMB.end(), species.SYMB.begin());
    species.fit.fill(thermo_fit({30, 0, 0, 0, 0, 1000, 10}, {30, 0, 0, 0, 0, 1000, 10}));
    const Phase& phase = NSURF > 0 ? Phase::surface : Phase::gas;
    if (!reactions.ends_with('\n')) reactions += '\n';
    Input NFIMEC = input_of("MECH\n" + reactions + "END\nSURF\n" + reactions + "END\n");
    LOK = GENMEC(phase, species.view(0, static_cast<int>(SYMB.size())), NSURF, ReactionNames(SYMB), options,
                 NFIMEC, listing, NFISTO, mechanism);
  }
  const Reaction& operator[](std::size_t number) const { return mechanism.reactions.at(number - 1); }
  bool lists(const std::string& line) const {
    return listing.file.text.find('\n' + line + '\n') != std::string::npos;
  }

  Species species;
  StoreFile NFISTO;
  Listing listing;
  Mechanism mechanism;
  bool LOK = false;
};

constexpr std::string_view gas = "H O2 OH O H2O HO2 N2";
constexpr std::string_view with_surface = "H2 O2 PT(S) H(S) O(S)";

TEST(MechanismReader, PointersHoldTheNetCoefficientsBySpecies) {
  const ReadMechanism read("H+O2=OH+O 1 0 0\nOH+OH>H2O+O 1 0 0\nH+H2O>H+H2O 1 0 0", gas);
  ASSERT_TRUE(read.LOK);
  const std::vector<std::array<int, 3>> triples{{1, 1, -1}, {1, 2, 1},  {2, 1, -1}, {2, 2, 1},
                                                {3, 1, 1},  {3, 2, -1}, {3, 3, -2}, {4, 1, 1},
                                                {4, 2, -1}, {4, 3, 1},  {5, 3, 1}};
  EXPECT_EQ(read.mechanism.NRVEC, triples);
  EXPECT_TRUE(
      read.NFISTO.text.ends_with("\n"
                                 "   11 REACTION POINTERS   \n"
                                 "      1    1   -1      1    2    1      2    1   -1      2    2    1\n"
                                 "      3    1    1      3    2   -1      3    3   -2      4    1    1\n"
                                 "      4    2   -1      4    3    1      5    3    1  \n"
                                 " IREVER      2 3 1 1\n"
                                 "    2 INERT SPECIES :   \n"));
}

TEST(MechanismReader, PointersAndReactionsEndAtTheirLimits) {
  const std::string reactions = "H+O2>OH+O 1 0 0\nOH+OH=H2O+O 1 0 0";  // 4 + 3 + 3 pointers
  EXPECT_TRUE(ReadMechanism(reactions, gas, {.most_reactions = 3, .most_pointers = 10}).LOK);

  const ReadMechanism pointers(reactions, gas, {.most_pointers = 9});
  EXPECT_FALSE(pointers.LOK);
  EXPECT_TRUE(
      pointers.listing.file.text.ends_with("  NRINS( =   10) >  NRIMAX     \n"
                                           "     ----->  CHECK DIMENSION OF NRVEC  \n"
                                           "  NRINS( =    9) >  NRIMAX     \n"
                                           "     ----->  CHECK DIMENSION OF NRVEC  \n"));
  EXPECT_TRUE(pointers.NFISTO.text.ends_with(" 0.00E+00   0.00E+00  0.00E+00\n"));  // the third reaction

  const ReadMechanism generated(reactions, gas, {.most_reactions = 2});
  EXPECT_FALSE(generated.LOK);
  EXPECT_TRUE(generated.listing.file.text.ends_with(
      "    2   OH      + OH                ->H2O     + O                  1.00E+00  0.00   0.0\n"
      "      ERROR - More than     2 reactions\n"));
  const ReadMechanism one_read(reactions, gas, {.most_reactions = 1});
  EXPECT_FALSE(one_read.LOK);
  EXPECT_TRUE(one_read.listing.file.text.ends_with(
      "    1   H       + O2                ->OH      + O                  1.00E+00  0.00   0.0\n"
      "      ERROR - More than     1 reactions\n"));
  EXPECT_EQ(one_read.NFISTO.text, "");
}

TEST(MechanismReader, PairsAreNeighboursThatReverseEachOther) {
  const auto codes = [](const std::string& reactions) {
    return ReadMechanism(reactions, gas).mechanism.IREVER;
  };
  using Codes = std::vector<int>;
  const std::string there = "H+O2>OH+O 1 0 0\n", back = "O+OH>O2+H 1 0 0\n", both = "H+O2=OH+O 1 0 0\n";
  EXPECT_EQ(codes(both), (Codes{2, 3}));
  EXPECT_EQ(codes(there + back), (Codes{2, 3}));
  EXPECT_EQ(codes(there + "H+HO2>OH+OH 1 0 0\n" + back), (Codes{1, 1, 1}));
  EXPECT_EQ(codes(both + back), (Codes{2, 3, 1}));
  EXPECT_EQ(codes(both + there), (Codes{2, 2, 3}));  // the later pair takes the reverse of the earlier
  const std::string fixed_form = "MAXI\nH       +O2      =OH      +O\n" + std::string(44, ' ');
  EXPECT_EQ(codes(fixed_form + "* 1.000E+00    0.0       0.0"), (Codes{-2, -3}));
  EXPECT_EQ(codes(fixed_form + "  1.000E+00    0.0       0.0"), (Codes{2, 3}));
  EXPECT_TRUE(
      ReadMechanism(both + back, gas).lists("0       WARNING:    REACTION     3 IS EQUAL TO REACTION     2"));
}

TEST(MechanismReader, ConvertsAByTheOrderOfTheReaction) {
  struct {
    const char* equation;
    int NSURF;
    double factor;
  } const rows[] = {{"H2O>H+OH", 0, 1},
                    {"H+O2>OH+O", 0, 1e-6},
                    {"H2O+M>H+OH+M", 0, 1e-6},
                    {"H+O2+M(12)>HO2+M(12)", 0, 1e-12},
                    {"H(S)>H2", 3, 1},
                    {"H(S)+H(S)>H2+PT(S)+PT(S)", 3, 1e-4},
                    {"O2+PT(S)>O(S)+O(S)", 3, 1e-6},
                    {"O2+PT(S)+PT(S)+M>O(S)+O(S)+M", 3, 1e-10},
                    {"H2+O2>H(S)+O(S)", 3, 1e-8},
                    {"H(S)+H(S)+O(S)+PT(S)>H2", 3, 1e-12}};
  for (const auto& row : rows) {
    const ReadMechanism read(std::string(row.equation) + " 3.0E+13 0 0", row.NSURF ? with_surface : gas, {},
                             row.NSURF);
    ASSERT_TRUE(read.LOK) << read.listing.file.text;
    EXPECT_DOUBLE_EQ(read[1].AFAC, 3e13 * row.factor) << row.equation;
  }
}

TEST(MechanismReader, StickingHoldsForTheNextReactionOnly) {
  const ReadMechanism read("STIC\nO2+PT(S)>O(S) 0.1 2.0 30.0\nO2+PT(S)>O(S)+O(S) 0.1 2.0 30.0", with_surface,
                           {}, 3);
  EXPECT_EQ(read[1].ISTICK, 2);
  EXPECT_DOUBLE_EQ(read[1].AFAC, 0.1 / 0.95);
  EXPECT_EQ(read[1].TEXP, 0.5);
  EXPECT_EQ(read[1].EXA, 0);
  EXPECT_EQ(read[2].ISTICK, 0);
  EXPECT_EQ(read[2].EXA, 30000);
}

TEST(MechanismReader, RateLinesChangeTheFormOfTheirReaction) {
  const std::string coverage =
      "H(S)+O(S)=PT(S) 1.0E+10 0.5 20.0\n"
      "$H(S)                                         1.000E+00   2.00     3.000";
  const std::string non_arrhenius = "H+O2>OH+O 1.0 0.0 0.0\n@     4.0000E+00    5.00        6.00";
  for (const bool solver_reverses : {false, true}) {
    const ReadMechanism read(coverage, with_surface, {.solver_reverses = solver_reverses}, 3);
    ASSERT_EQ(read.mechanism.NR(), 2);
    EXPECT_EQ(read[1].IARRH, 1);
    EXPECT_EQ(read[1].VT6, 3000);
    EXPECT_EQ(read[2].IARRH, -1);
    EXPECT_EQ(read[1].ICOV, 4);
    EXPECT_EQ(read[2].ICOV, 4);
    EXPECT_DOUBLE_EQ(read[2].AFAC, solver_reverses ? 0 : 1e10);
    EXPECT_EQ(read[2].VT5, solver_reverses ? 0 : 2);
  }
  const ReadMechanism read(non_arrhenius, gas);
  EXPECT_EQ(read[1].IARRH, 4);
  EXPECT_EQ((std::array{read[1].VT4, read[1].VT5, read[1].VT6}), (std::array{4., 5., 6.}));
  EXPECT_TRUE(read.lists(" CALC. OF REV. REACTION IN VARNOK      "));
}

TEST(MechanismReader, OnlyFiveNamesCountInTheGasPhase) {
  EXPECT_EQ(ReadMechanism("A+b+C=D+E+F 1 0 0", "A B C D E F")[1].MAT, (SpeciesVector{3, 2, 1, 5, 4, 0}));
}

TEST(MechanismReader, KeepsThirdBodiesUpToTheLastUsed) {
  EXPECT_EQ(ReadMechanism("H+O2>OH+O 1 0 0", gas).mechanism.NCOLL, 2);
  EXPECT_EQ(ReadMechanism("H2O+M>H+OH+M 1 0 0", gas).mechanism.NCOLL, 2);
  EXPECT_EQ(ReadMechanism("H2O+m''>H+OH+M'' 1 0 0", gas).mechanism.NCOLL, 3);
  EXPECT_EQ(ReadMechanism("H2O+M(12)>H+OH+M(12) 1 0 0", gas).mechanism.NCOLL, 27);
}

TEST(MechanismReader, InertSpeciesBelongToTheEndOfTheList) {
  const ReadMechanism read("H+O2>OH+O 1 0 0", "H N2 O2 OH O AR");
  EXPECT_TRUE(read.LOK);
  EXPECT_TRUE(read.lists("        INERT SPECIES : N2       "));
  EXPECT_TRUE(read.lists("        INERT SPECIES : AR       "));
  EXPECT_TRUE(read.lists("  WARNING: INERT SPECIES N2       NOT AT END OF LIST"));
  EXPECT_FALSE(read.lists("  WARNING: INERT SPECIES AR       NOT AT END OF LIST"));
}

}  // namespace
}  // namespace varpre
