#include <cstdio>
#include <exception>
#include <vector>

#include "limit_case.h"

// Writes a generated case to look at, or to try programs on.
int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  if (arguments.size() != 5) {
    std::fputs("usage: varpre_limit_case DIRECTORY SPECIES REACTIONS ENTRIES SEED\n", stderr);
    return 1;
  }
  try {
    write_case(varpre_bench::generate({std::stoi(arguments[1]), std::stoi(arguments[2]),
                                       std::stoi(arguments[3]), std::stoull(arguments[4])}),
               arguments[0]);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "varpre_limit_case: %s\n", error.what());
    return 1;
  }
}
