#include <cerrno>
#include <csignal>
#include <exception>
#include <fcntl.h>
#include <malloc.h>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <unistd.h>

#include "driver/run.h"
#include "textio/channel/file.h"
#include "textio/findings/findings.h"

namespace {

constexpr int machine_fault = 2;  // exit status

// There is nobody left to tell when standard error itself fails.
void say(const std::string& text) {
  try {
    varpre::write_all(STDERR_FILENO, text, "standard error");
  } catch (const std::runtime_error&) {
  }
}

int fail(std::string_view reason) {
  say("varpre: " + std::string(reason) + "\n");
  return machine_fault;
}

// Failures to write are to be reported, not to end the process: a reader of the listing that goes away, a
// limit on the size of files.
void ignore_signals_of_failed_writes() {
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

// The process keeps the memory that a stage has done with: every page that went back to the system and came
// again for the next stage would be cleared once more.
void keep_freed_memory() {
#ifdef __GLIBC__
  // NOLINTBEGIN(concurrency-mt-unsafe): there is one thread only
  constexpr int megabyte = 1 << 20;
  ::mallopt(M_MMAP_THRESHOLD, 32 * megabyte);
  ::mallopt(M_TRIM_THRESHOLD, 256 * megabyte);
  ::mallopt(M_TOP_PAD, megabyte);
  // NOLINTEND(concurrency-mt-unsafe)
#endif
}

// A standard descriptor that the caller closed would be taken by the next file to be opened, and the listing
// would go there. What takes its place here can be written no more than the closed one.
void occupy_closed_descriptors() {
  for (int number = STDIN_FILENO; number <= STDERR_FILENO; ++number) {
    if (::fcntl(number, F_GETFD) < 0) ::open("/", O_RDONLY | O_DIRECTORY);  // takes the lowest free number
  }
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
    varpre::write_all(STDOUT_FILENO, argument == "--help" ? help_text : "varpre " VARPRE_VERSION "\n",
                      "standard output");
    return 0;
  }
  return fail("takes no arguments; it reads INP, MEC, THERMO and MOLNEW in the working directory");
}

}  // namespace

// Exit status 0 for every orderly end, 2 when the machine does not let it work, or at an argument.
int main(int argc, char** argv) {
  ignore_signals_of_failed_writes();
  occupy_closed_descriptors();
  keep_freed_memory();
  try {
    return argc > 1 ? answer(argc == 2 ? argv[1] : "") : run_on_disk();
  } catch (const std::bad_alloc&) {
    return fail("memory: " + std::generic_category().message(ENOMEM));
  } catch (const std::exception& error) {
    return fail(error.what());
  }
}
