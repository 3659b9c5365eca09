#include "tools/import/equation.h"

#include <algorithm>
#include <cmath>

#include "textio/names/words.h"

namespace varpre {
namespace {

// The words of an equation; "(+ M)" is one word, "(+M)".
std::vector<std::string> equation_words(std::string_view text) {
  std::vector<std::string> words;
  for (const auto& [word, column] : words_of(text, " \t\n\v\f\r")) {
    const bool goes_on = !words.empty() && words.back().starts_with("(+") && !words.back().ends_with(')');
    if (goes_on) {
      words.back() += word;
    } else {
      words.emplace_back(word);
    }
  }
  return words;
}

bool is_partner(const std::string& word) {
  return word.starts_with("(+") && word.ends_with(')') && word.size() > 3;
}

struct Side {
  std::vector<std::string> species;
  std::vector<GlobalTerm> terms;
  bool whole = true;
  std::string partner;
  bool in_parentheses = false;
};

class SideReader {
 public:
  SideReader(const Value& value, Import& import) : value_(value), import_(import) {}

  std::optional<Side> read(const std::vector<std::string>& words) {
    std::vector<std::string> term;
    for (const std::string& word : words) {
      if (is_partner(word)) {
        if (!take_partner(word.substr(2, word.size() - 3), true)) return std::nullopt;
      } else if (word != "+") {
        term.push_back(word);
      } else if (!take_term(term)) {
        return std::nullopt;
      } else {
        term.clear();
      }
    }
    if (!take_term(term)) return std::nullopt;
    return side_;
  }

 private:
  bool take_partner(const std::string& name, bool in_parentheses) {
    if (!side_.partner.empty()) return fail("a second collision partner stands in the equation");
    side_.partner = name == "M" ? name : import_.resolved(name);
    side_.in_parentheses = in_parentheses;
    return true;
  }

  bool take_term(const std::vector<std::string>& term) {
    if (term.size() > 2 || term.empty()) {
      return fail("names and coefficients stand between plus signs, separated by blanks");
    }
    const std::string& name = term.back();
    double coefficient = 1;
    if (term.size() == 2) {
      const auto number = parse_number(term.front());
      if (!number) return fail(message("'", term.front(), "' is no coefficient"));
      coefficient = static_cast<double>(*number);
    }
    constexpr double most = 100;
    if (coefficient <= 0 || coefficient > most)
      return fail(message("the coefficient ", coefficient, " is not between 0 and 100"));
    if (name == "M")
      return coefficient == 1 ? take_partner(name, false) : fail("a collision partner counts once");
    side_.terms.push_back({import_.resolved(name), coefficient, coefficient});
    side_.whole = side_.whole && coefficient == std::floor(coefficient);
    side_.species.insert(side_.species.end(), static_cast<std::size_t>(coefficient),
                         side_.terms.back().species);
    return true;
  }

  bool fail(std::string_view reason) {
    import_.findings.error(value_.place(), message("cannot read the equation: ", reason));
    return false;
  }

  const Value& value_;
  Import& import_;
  Side side_;
};

}  // namespace

std::optional<Equation> read_equation(const Value& value, Import& import) {
  const auto text = value.string();
  if (!text) return std::nullopt;
  const std::vector<std::string> words = equation_words(*text);
  const auto is_arrow = [](const std::string& word) { return word == "<=>" || word == "=" || word == "=>"; };
  const auto arrow = std::find_if(words.begin(), words.end(), is_arrow);
  if (arrow == words.end() || std::count_if(words.begin(), words.end(), is_arrow) > 1) {
    import.findings.error(value.place(),
                          "an equation has one arrow: <=>, = or =>, with blanks on both sides");
    return std::nullopt;
  }
  const auto educts = SideReader(value, import).read({words.begin(), arrow});
  const auto products = educts ? SideReader(value, import).read({arrow + 1, words.end()}) : std::nullopt;
  if (!products) return std::nullopt;
  if (educts->partner != products->partner || educts->in_parentheses != products->in_parentheses) {
    import.findings.error(value.place(), "the collision partner must stand on both sides of the equation");
    return std::nullopt;
  }
  const bool whole = educts->whole && products->whole;
  return Equation{whole ? educts->species : Names(),
                  whole ? products->species : Names(),
                  educts->partner,
                  educts->in_parentheses,
                  *arrow != "=>",
                  whole,
                  educts->terms,
                  products->terms};
}

std::vector<std::string> Equation::names() const {
  std::vector<std::string> names;
  for (const auto* terms : {&educt_terms, &product_terms}) {
    for (const GlobalTerm& term : *terms) names.push_back(term.species);
  }
  if (!partner.empty() && partner != "M") names.push_back(partner);
  return names;
}

}  // namespace varpre
