#include <array>
#include <cstdio>
#include <optional>

#include "textio/findings/odd_characters.h"
#include "tools/arguments.h"
#include "tools/diff/store_of.h"
#include "tools/output.h"
#include "tools/report/page.h"
#include "tools/report/store_json.h"

namespace {

struct Arguments {
  std::string directory;
  std::string other;
  std::string output;
  bool json = false;
};

void put(const Arguments& arguments, const std::string& text) {
  if (arguments.json && arguments.output.empty()) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    return;
  }
  const std::string path = arguments.output.empty() ? "report.html" : arguments.output;
  const std::array inputs{varpre::store_file_of(arguments.directory),
                          arguments.other.empty() ? "" : varpre::store_file_of(arguments.other)};
  if (varpre::write_output(path, text, inputs)) std::printf("%s\n", varpre::for_terminal(path).c_str());
}

// What a JSON of two directories is: an object with both.
std::string json_text(const varpre::StoreData& data, const std::optional<varpre::StoreData>& other) {
  nlohmann::ordered_json json = varpre::json_of(data);
  if (other) json = {{"this", json}, {"other", varpre::json_of(*other)}};
  return json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

void tell_of_the_end(const std::string& name, const varpre::StoreData& data) {
  if (data.stopped.empty()) return;
  std::fprintf(stderr, "varpre-report: %s: %sread up to line %d: %s\n", varpre::for_terminal(name).c_str(),
               data.stopped_at >= data.lines ? "truncated: " : "", data.stopped_at,
               varpre::for_terminal(data.stopped).c_str());
}

std::string page(const Arguments& arguments, const varpre::StoreData& data,
                 const std::optional<varpre::StoreData>& other) {
  const auto named = [](const std::string& name, const varpre::StoreData& store) {
    return varpre::NamedStore{name, varpre::store_file_of(name), store};
  };
  return varpre::page_of(named(arguments.directory, data),
                         other ? std::optional(named(arguments.other, *other)) : std::nullopt);
}

int report(const Arguments& arguments) {
  const varpre::StoreData data = varpre::store_of(arguments.directory);
  std::optional<varpre::StoreData> other;
  tell_of_the_end(arguments.directory, data);
  if (!arguments.other.empty()) {
    other = varpre::store_of(arguments.other);
    tell_of_the_end(arguments.other, *other);
  }
  put(arguments, arguments.json ? json_text(data, other) : page(arguments, data, other));
  return 0;
}

constexpr varpre::Program program{
    "varpre-report",
    "Shows what the solver will read: fort.3 of DIRECTORY as a page for a browser, or as JSON.",
    "0 done, however far the file could be read; 2 wrong usage, or a file that cannot be read or written."};

}  // namespace

int main(int argc, char** argv) {
  Arguments arguments;
  return varpre::run_program(
      program,
      {{"DIRECTORY", &arguments.directory, "a directory with fort.3, or such a file", "", true},
       {"OTHER", &arguments.other, "another one, to be compared with"},
       {"--output", &arguments.output, "where to write (report.html; JSON: standard output)", "FILE"},
       {"--json", &arguments.json, "all that the file holds as one JSON object"}},
      argc, argv, [&] { return report(arguments); });
}
