#include "textio/record/record.h"

// The items that a STATEMENT may name.
void statement(varpre::Unit& unit) {
  using namespace varpre;
  [[maybe_unused]] int number = 0;
  [[maybe_unused]] Text<8> name;
  [[maybe_unused]] std::array<Text<8>, 2> names;
  [[maybe_unused]] std::array<double, 2> values{};
  STATEMENT;
}
