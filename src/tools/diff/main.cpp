#include <cstdio>

#include "textio/findings/odd_characters.h"
#include "tools/arguments.h"
#include "tools/diff/comparison_text.h"
#include "tools/diff/store_of.h"

namespace {

struct Arguments {
  std::string before;
  std::string after;
  double tolerance = 0;
  bool json = false;
};

enum ExitStatus { equal = 0, different = 1, unreadable = 2 };

// Whether a file was read to its end; if not, says up to where.
bool is_whole(const std::string& name, const varpre::StoreData& store) {
  if (store.stopped.empty()) return true;
  std::fprintf(stderr, "varpre-diff: %s: line %d: %s\n", varpre::for_terminal(name).c_str(), store.stopped_at,
               varpre::for_terminal(store.stopped).c_str());
  return false;
}

int diff(const Arguments& arguments) {
  const varpre::StoreData before = varpre::store_of(arguments.before);
  const varpre::StoreData after = varpre::store_of(arguments.after);
  const bool whole = is_whole(arguments.before, before);
  if (!is_whole(arguments.after, after) || !whole) return unreadable;
  const varpre::Comparison comparison = varpre::compare(before, after, arguments.tolerance);
  std::fputs(arguments.json ? (varpre::json_of(comparison)
                                   .dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) +
                               "\n")
                                  .c_str()
                            : varpre::text_of(comparison).c_str(),
             stdout);
  return comparison.differences.empty() ? equal : different;
}

constexpr varpre::Program program{
    "varpre-diff",
    "Tells what differs between the store files, fort.3, of two directories, the largest effect first.",
    "0 no difference, 1 differences, 2 wrong usage, or a file that cannot be read to its end."};

}  // namespace

int main(int argc, char** argv) {
  Arguments arguments;
  return varpre::run_program(
      program,
      {{"A", &arguments.before, "a directory with fort.3, or such a file", "", true},
       {"B", &arguments.after, "another one", "", true},
       {"--json", &arguments.json, "the differences as one JSON object"},
       {"--tolerance", &arguments.tolerance, "leave out differences whose effect is not larger", "R"}},
      argc, argv, [&] { return diff(arguments); });
}
