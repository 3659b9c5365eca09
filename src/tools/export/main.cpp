#include <array>
#include <cstdio>
#include <memory>

#include "driver/run.h"
#include "textio/channel/directory.h"
#include "textio/findings/odd_characters.h"
#include "tools/arguments.h"
#include "tools/export/mechanism_yaml.h"
#include "tools/output.h"

namespace {

using varpre::message;

struct Arguments {
  std::string directory;
  std::string output;
  bool skip_unsupported = false;
};

constexpr int not_held = 1;  // an exit status

void tell(const std::string& findings) {
  std::fputs(findings.c_str(), stderr);
}

void put(const std::string& path, const std::string& text, const varpre::Files& read) {
  if (path.empty()) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    return;
  }
  const std::array inputs{read.conditions.name, read.mechanism.name, read.thermo.name, read.molecules.name,
                          read.particles.name};
  if (varpre::write_output(path, text, inputs)) std::printf("wrote %s\n", varpre::for_terminal(path).c_str());
}

int give_up(int errors, int warnings) {
  tell(message("varpre-export: ", varpre::summary(errors, warnings), "; nothing was written\n"));
  return not_held;
}

int export_case(const Arguments& arguments) {
  varpre::require_directory(arguments.directory);
  varpre::Files files = varpre::Files::in_directory(arguments.directory);
  const auto data = std::make_unique<varpre::RunData>();
  const varpre::RunResult run = varpre::run(files, *data);
  if (run.errors > 0 || run.end != varpre::RunEnd::normal) {
    tell(run.diagnostics);
    return give_up(run.errors, run.warnings);
  }
  varpre::Findings findings;
  findings.most_shown = std::string::npos;
  const std::string text =
      varpre::mechanism_yaml(*data, files.conditions, arguments.skip_unsupported, findings);
  tell(findings.render());
  if (findings.errors() > 0) return give_up(findings.errors(), findings.warnings());
  put(arguments.output, text, files);
  return 0;
}

constexpr varpre::Program program{
    "varpre-export", "Writes the mechanism, the species data and the mixtures of a case as Cantera's YAML.",
    "0 done, 1 something cannot be held or the run ends with an error, 2 wrong usage, or a file that cannot be read or "
    "written."};

}  // namespace

int main(int argc, char** argv) {
  Arguments arguments;
  return varpre::run_program(
      program,
      {{"DIRECTORY", &arguments.directory, "a directory with INP, MEC, THERMO and MOLNEW", "", true},
       {"--output", &arguments.output, "where to write (standard output)", "FILE"},
       {"--skip-unsupported", &arguments.skip_unsupported,
        "leave out what the format cannot hold, with a warning each"}},
      argc, argv, [&] { return export_case(arguments); });
}
