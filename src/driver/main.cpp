#include <exception>
#include <string>
#include <unistd.h>

#include "driver/run.h"

// The program takes no arguments. Exit status 0 for every orderly end, 2 when the machine does not let it
// work.
int main() {
  try {
    varpre::Files files = varpre::Files::on_disk();
    varpre::run(files);
    return 0;
  } catch (const std::exception& error) {
    const std::string line = "varpre: " + std::string(error.what()) + "\n";
    return ::write(STDERR_FILENO, line.data(), line.size()) < 0 ? 3 : 2;
  }
}
