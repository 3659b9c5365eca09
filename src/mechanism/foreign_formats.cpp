#include "mechanism/foreign_formats.h"

#include <algorithm>
#include <array>

#include "textio/names/words.h"
#include "textio/record/number_format.h"

namespace varpre {
namespace {

using Part = std::string_view;  // of a line; empty where the shape does not occur

bool is_one_of(std::string_view word, std::initializer_list<std::string_view> words) {
  return std::any_of(words.begin(), words.end(),
                     [&](std::string_view other) { return same_word(word, other); });
}

Part found(std::string_view line, std::string_view text) {
  const std::size_t at = line.find(text);
  return at == std::string_view::npos ? Part() : line.substr(at, text.size());
}

Part two_way_arrow(std::string_view line) {
  return found(line, "<=>");
}

Part one_way_arrow(std::string_view line) {
  return found(line, "=>");
}

Part third_body_in_parentheses(std::string_view line) {
  const std::size_t at = line.find("(+");
  if (at == std::string_view::npos) return {};
  const std::size_t end = line.find(')', at);
  return end == std::string_view::npos ? Part() : line.substr(at, end + 1 - at);
}

// The keyword of a line with values between slashes.
Part keyword_before_slash(std::string_view line, std::initializer_list<std::string_view> keywords) {
  Part word = next_word(line).text;
  word = word.substr(0, word.find('/'));
  return line.find('/') != std::string_view::npos && is_one_of(word, keywords) ? word : Part();
}

Part falloff_line(std::string_view line) {
  return keyword_before_slash(line, {"LOW", "HIGH", "TROE", "SRI"});
}

Part other_rate_line(std::string_view line) {
  return keyword_before_slash(line,
                              {"PLOG", "CHEB", "TCHEB", "PCHEB", "REV", "RLT", "FORD", "RORD", "LT", "COV"});
}

Part duplicate_line(std::string_view line) {
  const Part word = next_word(line).text;
  return is_one_of(word, {"DUP", "DUPLICATE"}) ? word : Part();
}

// H2/2.5/
Part name_and_value(std::string_view line) {
  if (line.find_first_of("=>") != std::string_view::npos) return {};
  const std::size_t first = line.find('/');
  const std::size_t second = first == std::string_view::npos ? first : line.find('/', first + 1);
  if (second == std::string_view::npos) return {};
  std::string_view value = trimmed(line.substr(first + 1, second - first - 1));
  value.remove_prefix(std::min(value.find_first_not_of(' '), value.size()));
  if (!read_free_real(value)) return {};
  const std::size_t begin = line.find_first_not_of(" \t");
  return line.substr(begin, second + 1 - begin);
}

Part heading(std::string_view line) {
  const Part word = next_word(line).text;
  return is_one_of(word, {"REACTIONS", "REAC", "ELEMENTS", "ELEM", "SPECIES", "SPEC", "THERMO", "THERM",
                          "TRANSPORT", "TRAN", "SITE", "MATERIAL"})
             ? word
             : Part();
}

Part yaml(std::string_view line) {
  const Part word = next_word(line).text;
  const Part key = word == "-" ? next_word(line.substr(line.find('-') + 1)).text : word;
  return key.size() > 1 && key.back() == ':' ? key : Part();
}

// A comment in a line of its own: of "!", "//", "#", or "C ".
Part comment(std::string_view line) {
  const Part word = next_word(line).text;
  const bool mark = word.starts_with("//") || word == "#" || word == "C" || word == "c";
  return mark && line.find_first_of("=>") == std::string_view::npos ? word : Part();
}

struct Shape {
  Part (*in)(std::string_view line);
  std::string_view here;  // how it is written here
};

constexpr std::array<Shape, 10> shapes{
    {{yaml,
      "a reaction is one line, such as H+O2=OH+O  2.65E+16  -0.671  71.300, with A, b and E (cm, mol, s, kJ/mol)"},
     {comment, "a comment line begins with ****; behind a reaction stands ! before a comment"},
     {falloff_line,
      "the falloff parameters stand in two records that begin with \"#\" behind the reaction, its third body in the "
      "equation"},
     {other_rate_line, "a rate is A, b and E, or has \"#\", \"$\" or \"@\" records behind its line"},
     {duplicate_line, "write ! DUPLICATE at the end of the later of the equal reactions"},
     {heading, "reactions stand between MECHANISM and END, the species in the file INP"},
     {third_body_in_parentheses,
      "name the third body like a species on both sides, H+O2+M'=HO2+M', and its falloff in two \"#\" records"},
     {name_and_value,
      "efficiencies stand in the section COLLISION EFFICIENCIES: M'      =H2+H2O, and below it their values"},
     {two_way_arrow, "write \"=\" for a reversible reaction"},
     {one_way_arrow, "write \">\" for a reaction in one direction"}}};

}  // namespace

bool report_foreign_form(const Place& line, Findings& findings) {
  if (!line) return false;
  const std::string_view text = line.unit->origin(line.record).text;
  for (const Shape& shape : shapes) {
    const Part part = shape.in(text.substr(0, text.find('!')));
    if (part.empty()) continue;
    Place place = line;
    place.column = static_cast<int>(part.data() - text.data()) + 1;
    place.width = static_cast<int>(part.size());
    findings.error(place, message("'", part, "' is the form of other programs"), shape.here);
    return true;
  }
  return false;
}

}  // namespace varpre
