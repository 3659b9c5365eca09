#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <memory>
#include <windows.h>
// behind windows.h, of which it makes use
#include <shellapi.h>

#include "textio/channel/file_name.h"
#include "textio/channel/process.h"

namespace varpre {

// What `argv` holds is in the code page of the user, which lacks most characters.
std::vector<std::string> words_of_command_line(int /*argc*/, char** /*argv*/) {
  int count = 0;
  const std::unique_ptr<LPWSTR, decltype(&::LocalFree)> words(
      ::CommandLineToArgvW(::GetCommandLineW(), &count), &::LocalFree);
  std::vector<std::string> result;
  for (int i = 1; i < count; ++i) result.push_back(name_of(words.get()[i]));
  return result;
}

void write_bytes_as_they_are() {
  ::_setmode(standard_output, _O_BINARY);
  ::_setmode(standard_error, _O_BINARY);
  if (is_terminal(standard_output) || is_terminal(standard_error)) ::SetConsoleOutputCP(CP_UTF8);
}

// There are no signals of failed writes here, and the C library keeps memory by itself.
void prepare_for_a_run() {
  for (;;) {
    const int lowest = ::_open("NUL", _O_RDONLY);
    if (lowest > standard_error) ::_close(lowest);
    if (lowest < 0 || lowest > standard_error) return;
  }
}

void let_large_files_fail() {}

bool is_terminal(int descriptor) {
  return ::_isatty(descriptor) != 0;
}

// Only the attempt tells here.
int error_of_access(const std::string& directory) {
  std::error_code error;
  const std::filesystem::directory_iterator attempt(path_of(directory), error);
  return error ? error.default_error_condition().value() : 0;
}

}  // namespace varpre
