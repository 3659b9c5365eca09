#include <regex>

#include "support/runs.h"

// Runs as data: faulty inputs, and what certain records must bring forth. Each directory with a file `case`
// is one:
//
//   case             the base, a directory under tests/runs, its edits, and how the run ends:
//                      base h2o2
//                      in INP replace "TE  " with "TEND"
//                      in INP from "LEFT" delete "END"
//                      ends abnormally
//   listing, store   lines that the listing, and the store file, hold one directly behind the other; "..."
//                    stands for any others
//   store-ends-with  the last line of the store file
//   stderr           what goes to standard error, all of it
//
// An edit applies to the first place of its text, behind the text of `from` when it has that:
//   replace "text" with "text"
//   delete "text"        the line that holds it
//   insert after "text"  the lines that follow in `case`, marked by "| "
//   cut after "text"     all lines behind that one
//   empty                the whole file
// A run ends `normally` or `abnormally`, with its banner, or `at the message`, the last lines of `listing`.
namespace varpre {
namespace {

// The first place of a text that must be there.
std::size_t find(const std::string& in, const std::string& text, std::size_t start = 0) {
  const std::size_t place = in.find(text, start);
  if (place == std::string::npos) throw std::runtime_error("nothing to edit: no \"" + text + '"');
  return place;
}

void edit(std::string& file, const std::string& from, const std::string& verb, const std::string& text,
          const std::string& added) {
  if (verb == "empty") return file.clear();
  const std::size_t place = find(file, text, find(file, from));
  const std::size_t line = file.rfind('\n', place) + 1;
  const std::size_t next = find(file, "\n", place) + 1;
  if (verb == "replace") file.replace(place, text.size(), added);
  if (verb == "delete") file.erase(line, next - line);
  if (verb == "insert after") file.insert(next, added);
  if (verb == "cut after") file.erase(next);
}

struct Case {
  explicit Case(const std::string& name) : directory(test_data / name) {
    const std::regex edit_line(
        R"re(in (\w+)(?: from "(.*?)")? (replace|delete|insert after|cut after|empty)(?: "(.*?)")?(?: with "(.*)")?)re");
    std::istringstream lines(read_file(directory / "case"));
    for (std::string line; std::getline(lines, line);) {
      std::smatch part;
      if (line.starts_with("base ")) {
        inputs = load_inputs("runs/" + line.substr(5));
      } else if (line.starts_with("ends ")) {
        ends = line.substr(5);
      } else if (std::regex_match(line, part, edit_line)) {
        std::string added = part[5];
        for (std::string more; lines.peek() == '|' && std::getline(lines, more);) {
          added += more.erase(0, 2) + '\n';
        }
        edit(inputs.at(part[1]), part[2], part[3], part[4], added);
      } else {
        throw std::runtime_error("no edit: " + line);
      }
    }
  }
  bool expects(const std::string& file) const { return exists(directory / file); }
  std::string expected(const std::string& file) const { return read_file(directory / file); }

  std::filesystem::path directory;
  Inputs inputs;
  std::string ends;
};

// Finds blocks of lines, each behind the one before and divided by lines "...", and returns the end of the
// last.
std::size_t find_blocks(std::string text, std::string blocks) {
  text.insert(0, "\n");
  blocks.insert(0, "\n");
  for (std::size_t end = 0;;) {
    const std::size_t gap = blocks.find("\n...\n");
    const std::string block = blocks.substr(0, gap) + (gap == std::string::npos ? "" : "\n");
    const std::size_t place = text.find(block, end);
    if (place == std::string::npos) {
      ADD_FAILURE() << "Missing:" << block << "The text ends:\n"
                    << text.substr(text.size() - std::min<std::size_t>(text.size(), 1500));
      return 0;
    }
    end = place + block.size() - 1;
    if (gap == std::string::npos) return end;
    blocks.erase(0, gap + 4);
  }
}

std::string last_line(const std::string& text) {
  return text.substr(text.substr(0, text.size() - 1).rfind('\n') + 1);
}

class CaseOfInput : public testing::TestWithParam<std::string> {};

TEST_P(CaseOfInput, ComesOutAsExpected) {
  const Case input(GetParam());
  const FinishedRun run = varpre::run(input.inputs);

  const std::string& listing = run.listing();
  const std::size_t end_of_message =
      input.expects("listing") ? find_blocks(listing, input.expected("listing")) : 0;
  const std::string banner = "ABNORMAL END" + std::string(31, '*') + "\n\n";
  const std::string ends = run.result.end == RunEnd::normal   ? "normally"
                           : listing.ends_with(banner)        ? "abnormally"
                           : end_of_message == listing.size() ? "at the message"
                                                              : "behind the message";
  EXPECT_EQ(ends, input.ends);
  if (input.expects("store")) find_blocks(run.store(), input.expected("store"));
  if (input.expects("store-ends-with")) {
    EXPECT_EQ(last_line(run.store()), input.expected("store-ends-with"));
  }
  if (input.expects("stderr")) {
    EXPECT_EQ(run.result.diagnostics, input.expected("stderr"));
  }

  const FinishedRun again = varpre::run(input.inputs);
  EXPECT_EQ(again.listing(), listing);
  EXPECT_EQ(again.store(), run.store());
  EXPECT_EQ(again.result.diagnostics, run.result.diagnostics);
}

INSTANTIATE_TEST_SUITE_P(Cases, CaseOfInput, testing::ValuesIn(directories_with("case", "broken")),
                         directory_name);

}  // namespace
}  // namespace varpre
