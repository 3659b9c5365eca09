#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "driver/run.h"
#include "textio/record/number_format.h"

// Whole runs in memory on arbitrary input files. One input of the fuzzer holds all files of a run: a line
// that begins with "=== NAME" opens the text of the file NAME; a file without such a line is empty. (cat's
// output of a working directory, see `./dev fuzz`, is such an input.)
namespace varpre {
namespace {

constexpr std::size_t longest_input = 24576;  // bounds the number of reactions, and so of duplicate warnings

[[noreturn]] void fail(std::string_view what, std::string_view text) {
  std::fprintf(stderr, "%.*s: %.*s\n", static_cast<int>(what.size()), what.data(),
               static_cast<int>(text.size()), text.data());
  std::abort();
}

void fill_inputs(std::string_view input, Files& files) {
  std::string* text = nullptr;
  for (std::size_t start = 0; start < input.size();) {
    const std::size_t end = std::min(input.find('\n', start), input.size() - 1) + 1;
    const std::string_view line = input.substr(start, end - start);
    start = end;
    if (!line.starts_with("=== ")) {
      if (text != nullptr) text->append(line);
      continue;
    }
    for (Input* unit :
         {&files.conditions, &files.mechanism, &files.thermo, &files.molecules, &files.particles}) {
      if (line.substr(4).starts_with(unit->name)) text = &unit->text;
    }
  }
}

// Every number of the store file is a finite one. What looks like one but is a word of the input is a name.
void check_numbers(std::string_view store, std::string_view input) {
  for (std::size_t start = 0; (start = store.find_first_not_of(" \n", start)) != store.npos;) {
    const std::size_t end = store.find_first_of(" \n", start);
    const std::string_view word = store.substr(start, end - start);
    start = std::min(end, store.size());
    const bool real =
        word.find_first_not_of("0123456789+-.E") == word.npos && word.find('.') != word.npos && word != ".";
    const bool not_finite = word.ends_with("NaN") || word.ends_with("Inf") || word.ends_with("Infinity");
    if ((not_finite || (real && !read_free_real(word))) && input.find(word) == input.npos) {
      fail("not a finite number in the store file", word);
    }
  }
}

// The listing ends in one of three ways: with a banner, or with the message of the stage that stopped the
// run.
void check_end(const RunResult& result, std::string_view listing) {
  constexpr std::array<std::string_view, 12> stop_messages{
      "***************ABNORMAL END IN GENSPD***************",
      "ERROR - Wrong operation of CHICON",
      " Delimiter found at the beginning of line in COMPDE",
      " too long in ",
      "ERROR  : NO CONVERGENCE OF NEWTON ITERATION",
      "wrong first delimiter in gencef",
      " Too many complex reactions, NBRUT (",
      " RETNAM empty line",
      " REVERSE REACTION NOT ALLOWED FOR IARRH=4",
      "   EXA   ",
      "   TEXP  ",
      "   AFAC  "};
  const bool normal =
      listing.ends_with(std::string(10, '*') + std::string(19, ' ') + " VARPRE: NORMAL END " +
                        std::string(20, ' ') + std::string(10, '*') + "\n " + std::string(79, '*') + "\n");
  if (normal != (result.end == RunEnd::normal)) fail("wrong end of the listing", listing);
  if (normal || listing.ends_with("ABNORMAL END" + std::string(31, '*') + "\n\n")) return;
  if (result.diagnostics.empty()) fail("no diagnostics", listing);
  const std::string_view last = listing.substr(listing.rfind('\n', listing.size() - 2) + 1);
  for (const std::string_view message : stop_messages) {
    if (last.find(message) != last.npos) return;
  }
  fail("no end of the listing", last);
}

}  // namespace
}  // namespace varpre

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace varpre;
  if (size > longest_input) return -1;
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const auto run_once = [&](Files& files) {
    fill_inputs(input, files);
    return run(files);
  };
  Files files = Files::in_memory();
  const RunResult result = run_once(files);
  check_end(result, files.listing.file.text);
  check_numbers(files.store.text, input);

  if (std::hash<std::string_view>{}(input) % 16 != 0) return 0;
  Files again = Files::in_memory();
  const RunResult second = run_once(again);
  if (again.listing.file.text != files.listing.file.text || again.store.text != files.store.text ||
      second.diagnostics != result.diagnostics) {
    fail("another run on the same input differs", "");
  }
  return 0;
}
