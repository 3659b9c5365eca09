#include "tools/arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <limits>
#include <new>
#include <type_traits>

#include "textio/channel/process.h"
#include "textio/findings/odd_characters.h"

namespace varpre {
namespace {

constexpr int not_done = 2;

// Refuses what is no number of this kind, from `least` up.
template <class Number>
CLI::Validator at_least(Number least, const std::string& kind) {
  const auto judge = [=](const std::string& text) {
    Number number{};
    const bool is_one = CLI::detail::lexical_cast(text, number) && number >= least &&
                        number <= std::numeric_limits<Number>::max();
    return is_one ? std::string() : "expected " + kind + ", found '" + text + "'";
  };
  return {judge, ""};
}

CLI::Option* declare(CLI::App& app, const Argument& argument) {
  return std::visit(
      [&](auto* target) {
        using T = std::remove_pointer_t<decltype(target)>;
        if constexpr (std::is_same_v<T, bool>)
          return app.add_flag(argument.name, *target, argument.help);
        else
          return app.add_option(argument.name, *target, argument.help);
      },
      argument.target);
}

void add(CLI::App& app, const Argument& argument) {
  CLI::Option* const option = declare(app, argument);
  option->type_name(argument.value)->required(argument.required);
  if (std::holds_alternative<bool*>(argument.target)) option->disable_flag_override();
  if (std::holds_alternative<std::vector<std::string>*>(argument.target)) {
    option->allow_extra_args(option->get_positional());  // one value each time the option is given
    if (argument.delimiter != '\0') option->delimiter(argument.delimiter);
  }
  if (std::holds_alternative<int*>(argument.target)) {
    option->check(at_least(1, "a whole number of at least 1"));
  }
  if (std::holds_alternative<double*>(argument.target)) {
    option->check(at_least(0.0, "a number of at least 0"));
  }
}

// The words as the library wants them, the last first. It takes "[a,b]" for a list; a NUL, which no word of a
// command line holds, keeps it from that.
std::vector<std::string> protected_words(std::vector<std::string> words) {
  std::reverse(words.begin(), words.end());
  for (std::string& word : words) {
    if (word.starts_with('[')) word.push_back('\0');
  }
  return words;
}

void unprotect(const Argument& argument) {
  if (const auto* text = std::get_if<std::string*>(&argument.target)) std::erase(**text, '\0');
  if (const auto* texts = std::get_if<std::vector<std::string>*>(&argument.target)) {
    for (std::string& text : **texts) std::erase(text, '\0');
  }
}

int fail(const Program& program, std::string reason) {
  std::erase(reason, '\0');
  std::fprintf(stderr, "%s: %s\n", program.name, for_terminal(reason).c_str());
  return not_done;
}

}  // namespace

const char* version() {
  return VARPRE_VERSION;
}

int run_program(const Program& program, const std::vector<Argument>& arguments, int argc, char** argv,
                const std::function<int()>& work) try {
  let_large_files_fail();
  write_bytes_as_they_are();
  CLI::App app(program.purpose, program.name);
  for (const Argument& argument : arguments) add(app, argument);
  app.set_help_flag("-h,--help", "print this text");
  app.set_version_flag("--version", std::string(program.name) + " " VARPRE_VERSION, "print the version");
  app.footer("Exit status: " + std::string(program.exit_status));
  int status = 0;
  try {
    app.parse(protected_words(words_of_command_line(argc, argv)));
    for (const Argument& argument : arguments) unprotect(argument);
    status = work();
  } catch (const CLI::Success& help) {
    app.exit(help);
  } catch (const CLI::ParseError& error) {
    return fail(program, error.what() + std::string("; --help tells the arguments"));
  }
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return status;
  std::perror((std::string(program.name) + ": standard output").c_str());
  return not_done;
} catch (const std::bad_alloc&) {
  return fail(program, "not enough memory");
} catch (const std::exception& error) {
  return fail(program, error.what());
}

}  // namespace varpre
