#include "support/runs.h"

namespace varpre {
namespace {

// The names G1, G2, ... one to a line.
std::string list(char letter, int count) {
  std::string lines;
  for (int i = 1; i <= count; ++i) lines += letter + std::to_string(i) + '\n';
  return lines;
}

// A run of this many species of each kind, all of them hydrogen atoms, without reactions.
FinishedRun run_of_species(int gas, int surface, int particles) {
  Inputs inputs;
  const std::string mixture = "P               1.0\nT             300.0\nG1              1.0\nEND\n";
  inputs["INP"] =
      "OPTIONS\nEND\nGAS PHASE\n" + list('G', gas) + "END\nSURFACE\n" + list('S', surface) +
      "END\nPASPECIES\n" + list('P', particles) + "END\nLEFT\n" + mixture + "RIGHT\n" + mixture +
      "SURFACE CONDITIONS\nEND\nCONDITIONS\nGE   0.0\nNG   10.0\nRI   0.0\nRO   1.0\nTE   1.0\nNT   10.0\nEND\n";
  inputs["MEC"] = "MECHANISM\nEND\nCOLLISION\nEND\nSURFACE\nEND\n";
  const auto add = [&](char letter, int count) {
    for (int i = 1; i <= count; ++i) {
      std::string name = letter + std::to_string(i);
      name.resize(24, ' ');
      inputs["THERMO"] +=
          name + "H   1                     300.0    5000.0\n 2.5\n           0.0            0.0 2.5\n\n";
      inputs["MOLNEW"] += name.substr(0, 8) + " 0     1.008   145.000     2.050\n";
    }
  };
  add('G', gas);
  add('S', surface);
  return run(inputs);
}

const std::string end_mark = "<   \n";
const std::string flags_label = " Spec. Flags   ";
std::string flags(int count) {
  std::string line = flags_label;
  for (int i = 0; i < count; ++i) line += "  0";
  return line + '\n';
}

TEST(Limits, FlagsOfASpeciesCountAtTheEndOfALine) {
  EXPECT_TRUE(run_of_species(1, 18, 0).store().ends_with("\n" + flags(19) + end_mark));
  EXPECT_TRUE(run_of_species(1, 19, 0).store().ends_with("\n" + flags(20) + flags(0) + end_mark));
  std::string five_lines;
  for (int i = 0; i < 5; ++i) five_lines += flags(20);
  EXPECT_TRUE(run_of_species(1, 99, 0).store().ends_with("\n" + five_lines + end_mark));
  EXPECT_TRUE(run_of_species(1, 100, 0).store().ends_with("\n" + five_lines + "\n" + flags(1) + end_mark));
}

TEST(Limits, OneSpeciesFillsTwoLinesOfAConditionSet) {
  const FinishedRun run = run_of_species(1, 0, 0);
  EXPECT_EQ(run.result.end, RunEnd::normal);
  const std::size_t set = run.store().find(" T ,P ,X ");
  const std::size_t next = run.store().find(" T ,P ,X ", set + 1);
  EXPECT_EQ(run.store().substr(set, next - set),
            " T ,P ,X     3.0000E+02  6.1868E+06  1.0000E+05  1.0000E+00  0.0000E+00 \n"
            " 0.0000E+00  0.0000E+00  0.0000E+00  0.0000E+00  0.0000E+00 \n");
}

TEST(Limits, SpeciesOfAllListsShareTheirPlaces) {
  const FinishedRun full = run_of_species(2, 290, 8);
  EXPECT_EQ(full.result.end, RunEnd::normal);
  EXPECT_EQ(full.listing().find("Too many species"), std::string::npos);

  const std::string too_many =
      "0  ERROR in GENSYM - Too many species: NS(   9) > NSMAX(   8)\n  NO PARTICLE SPECIES \n";
  EXPECT_NE(run_of_species(2, 290, 9).listing().find(too_many), std::string::npos);
  const std::string no_surface =
      "0  ERROR in GENSYM - Too many species: NS( 299) > NSMAX( 298)\n  no surface species\n";
  EXPECT_NE(run_of_species(2, 300, 0).listing().find(no_surface), std::string::npos);
  EXPECT_EQ(run_of_species(301, 0, 0).result.end, RunEnd::abnormal);
}

}  // namespace
}  // namespace varpre
