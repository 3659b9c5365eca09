#include "textio/findings/record_findings.h"

// The items that a STATEMENT may name.
void statement([[maybe_unused]] varpre::StoreFile& unit, [[maybe_unused]] varpre::Input& input) {
  using namespace varpre;
  [[maybe_unused]] int number = 0;
  [[maybe_unused]] Text<8> name;
  [[maybe_unused]] std::array<Text<8>, 2> names;
  [[maybe_unused]] std::array<double, 2> values{};
  STATEMENT;
}
