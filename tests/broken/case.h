#pragma once

#include <regex>
#include <sstream>

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

// The first place of a text that must be there.
inline std::size_t find(const std::string& in, const std::string& text, std::size_t start = 0) {
  const std::size_t place = in.find(text, start);
  if (place == std::string::npos) throw std::runtime_error("nothing to edit: no \"" + text + '"');
  return place;
}

inline void edit(std::string& file, const std::string& from, const std::string& verb, const std::string& text,
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

}  // namespace varpre
