#include <exception>
#include <string>
#include <string_view>
#include <unistd.h>

#include "driver/run.h"

namespace {

// There is nobody left to tell when standard error itself fails.
void say(std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = ::write(STDERR_FILENO, text.data(), text.size());
    if (count <= 0) return;
    text.remove_prefix(static_cast<std::size_t>(count));
  }
}

}  // namespace

// The program takes no arguments. Exit status 0 for every orderly end, 2 when the machine does not let it
// work.
int main() {
  try {
    varpre::Files files = varpre::Files::on_disk();
    say(varpre::run(files).diagnostics);
    return 0;
  } catch (const std::exception& error) {
    say(std::string("varpre: ") + error.what() + "\n");
    return 2;
  }
}
