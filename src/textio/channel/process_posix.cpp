#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>
#ifdef __GLIBC__
#include <malloc.h>
#endif

#include "textio/channel/process.h"

namespace varpre {
namespace {

// A reader of the listing that goes away, a limit on the size of files.
void ignore_signals_of_failed_writes() {
  std::signal(SIGPIPE, SIG_IGN);
  let_large_files_fail();
}

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

// What takes the place here can be written no more than the closed one.
void occupy_closed_descriptors() {
  for (int number = STDIN_FILENO; number <= STDERR_FILENO; ++number) {
    if (::fcntl(number, F_GETFD) < 0) ::open("/", O_RDONLY | O_DIRECTORY);  // takes the lowest free number
  }
}

}  // namespace

std::vector<std::string> words_of_command_line(int argc, char** argv) {
  return {argv + (argc > 0 ? 1 : 0), argv + argc};
}

void write_bytes_as_they_are() {}

void prepare_for_a_run() {
  ignore_signals_of_failed_writes();
  occupy_closed_descriptors();
  keep_freed_memory();
}

void let_large_files_fail() {
  std::signal(SIGXFSZ, SIG_IGN);
}

bool is_terminal(int descriptor) {
  return ::isatty(descriptor) == 1;
}

int error_of_access(const std::string& directory) {
  return ::access(directory.c_str(), R_OK | X_OK) == 0 ? 0 : errno;
}

}  // namespace varpre
