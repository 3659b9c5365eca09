#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "driver/run.h"

namespace varpre_bench {

// How large a generated working directory is.
struct CaseSize {
  int species = 300;
  int reactions = 4000;  // generated reverses included
  int entries = 1500;    // of each database
  std::uint64_t seed = 1;
};

// The four input files of a run.
struct Case {
  std::string INP;
  std::string MEC;
  std::string THERMO;
  std::string MOLNEW;

  std::size_t bytes() const { return INP.size() + MEC.size() + THERMO.size() + MOLNEW.size(); }
};

// A numerically sane case, the same for the same size and seed wherever it is generated: no two species are
// alike, reactions balance and do not repeat, reverse rates and collision integrals are defined, and as many
// collision partners occur as their efficiencies have room for.
Case generate(const CaseSize& size);

// Makes a case the inputs of a run in memory.
void fill(varpre::Files& files, const Case& data);

// Writes the four files into a directory, which is made when it is not there.
void write_case(const Case& data, const std::filesystem::path& directory);

}  // namespace varpre_bench
