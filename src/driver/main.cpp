#include <cerrno>
#include <exception>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

#include "driver/run.h"
#include "textio/channel/file.h"
#include "textio/channel/process.h"
#include "textio/findings/findings.h"

namespace {

constexpr int machine_fault = 2;  // exit status

// There is nobody left to tell when standard error itself fails.
void say(const std::string& text) {
  try {
    varpre::write_all(varpre::standard_error, text, "standard error");
  } catch (const std::runtime_error&) {
  }
}

int fail(std::string_view reason) {
  say("varpre: " + std::string(reason) + "\n");
  return machine_fault;
}

// What was found goes out before the store file takes its place: who sees the new one has been told of it.
int run_on_disk() {
  varpre::Files files = varpre::Files::on_disk();
  bool told = false;
  const auto tell = [&](const std::string& diagnostics) {
    files.listing.file.flush();
    say(diagnostics);
    told = true;
  };
  try {
    const varpre::RunResult result = varpre::run(files);
    files.store.flush();
    tell(result.diagnostics);
    files.listing.file.finish();
    files.store.take_place();
    return 0;
  } catch (const std::runtime_error& error) {
    if (!told) tell(files.listing.findings.render("not written"));
    return fail(error.what());
  }
}

constexpr std::string_view help_text =
    "usage: varpre > listing\n"
    "\n"
    "Reads in the working directory\n"
    "  INP        options, species, mixtures, run conditions\n"
    "  MEC        reactions, collision efficiencies\n"
    "  THERMO     thermochemical database\n"
    "  MOLNEW     molecular database\n"
    "  THERMLIQ   particle database, with option Impuls -5 only\n"
    "and writes there\n"
    "  fort.3     the store file for the solver\n"
    "  fort.10, fort.11, fort.12   INP, MEC and THERMO as they were read\n"
    "\n"
    "The listing goes to standard output; what is wrong with the input, and where, to standard error.\n"
    "\n"
    "  --help, --version   print this, or the version, and do nothing else\n"
    "\n"
    "Manual: man varpre. Documents: README.md in share/doc/varpre, beside the bin of the program.\n";

// What an argument brings about: the program knows nothing to be told.
int answer(std::string_view argument) {
  if (argument == "--help" || argument == "--version") {
    varpre::write_all(varpre::standard_output,
                      argument == "--help" ? help_text : "varpre " VARPRE_VERSION "\n", "standard output");
    return 0;
  }
  return fail("takes no arguments; it reads INP, MEC, THERMO and MOLNEW in the working directory");
}

}  // namespace

// Exit status 0 for every orderly end, 2 when the machine does not let it work, or at an argument.
int main(int argc, char** argv) {
  varpre::prepare_for_a_run();
  varpre::write_bytes_as_they_are();
  try {
    return argc > 1 ? answer(argc == 2 ? argv[1] : "") : run_on_disk();
  } catch (const std::bad_alloc&) {
    return fail("memory: " + std::generic_category().message(ENOMEM));
  } catch (const std::exception& error) {
    return fail(error.what());
  }
}
