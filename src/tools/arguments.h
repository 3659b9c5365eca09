#pragma once

#include <functional>
#include <string>
#include <variant>
#include <vector>

// What the programs around varpre have in common as programs: a table of arguments, and one way to begin and
// to end.
namespace varpre {

// An argument of the command line. Names that begin with "--" are options, others words in their order.
struct Argument {
  // A switch; a text; texts, of a word or option that may come again; a whole number of at least 1; a number
  // of at least 0. What it holds before is the default.
  using Target = std::variant<bool*, std::string*, std::vector<std::string>*, int*, double*>;

  const char* name;
  Target target;
  const char* help;
  const char* value = "";  // what the help calls the value of an option
  bool required = false;
  char delimiter = '\0';  // between texts that are given together; none: '\0'
};

struct Program {
  const char* name;
  const char* purpose;      // a sentence
  const char* exit_status;  // what they mean
};

// The main program: reads the arguments, does the work, and sees that its output has gone. Returns the exit
// status: what `work` returns; 0 after --help and --version; 2, after one line on standard error, for wrong
// usage, output that cannot be written, memory that cannot be had and any other exception.
int run_program(const Program& program, const std::vector<Argument>& arguments, int argc, char** argv,
                const std::function<int()>& work);

// Of all programs.
const char* version();

}  // namespace varpre
