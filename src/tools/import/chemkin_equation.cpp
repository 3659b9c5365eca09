#include "tools/import/chemkin_equation.h"

#include <algorithm>

#include "textio/record/text.h"

namespace varpre {
namespace {

constexpr std::size_t longest_name = 80;

struct Side {
  std::vector<GlobalTerm> species;
  std::string partner;
  bool in_parentheses = false;
  bool has_photon = false;
};

class EquationReader {
 public:
  EquationReader(const ChemkinLine& line, std::size_t length, Import& import) : line_(line), import_(import) {
    for (std::size_t i = 0; i < length; ++i) {
      if (line.text[i] == ' ') continue;
      text_ += line.text[i];
      column_.push_back(i);
    }
    column_.push_back(length);
  }

  std::optional<ChemkinEquation> read() {
    const std::size_t sign = text_.find('=');
    if (sign == std::string::npos || text_.find('=', sign + 1) != std::string::npos) {
      fail(0, text_.size(), "an equation has one arrow: <=>, = or =>");
      return std::nullopt;
    }
    const bool to_left = sign > 0 && text_[sign - 1] == '<';
    const bool to_right = sign + 1 < text_.size() && text_[sign + 1] == '>';
    if (to_left && !to_right) {
      fail(sign - 1, 2, "an equation has one arrow: <=>, = or =>");
      return std::nullopt;
    }
    const auto educts = read_side(0, sign - (to_left ? 1 : 0));
    const auto products = educts ? read_side(sign + (to_right ? 2 : 1), text_.size()) : std::nullopt;
    if (!products) return std::nullopt;
    if (educts->partner != products->partner || educts->in_parentheses != products->in_parentheses) {
      fail(0, text_.size(), "the collision partner must stand on both sides of the equation");
      return std::nullopt;
    }
    return ChemkinEquation{educts->species,      products->species,
                           educts->partner,      educts->in_parentheses,
                           to_left || !to_right, educts->has_photon || products->has_photon};
  }

 private:
  bool fail(std::size_t begin, std::size_t length, std::string_view reason, std::string_view help = {}) {
    const std::size_t first = column_[std::min(begin, column_.size() - 1)];
    const std::size_t last =
        column_[std::min(begin + std::max<std::size_t>(length, 1) - 1, column_.size() - 1)];
    import_.findings.error(line_.place(first, last - first + 1),
                           message("cannot read the equation: ", reason), help);
    return false;
  }

  std::optional<Side> read_side(std::size_t begin, std::size_t end) {
    Side side;
    if (!take_partner_in_parentheses(begin, end, side)) return std::nullopt;
    for (std::size_t at = begin;;) {
      const std::size_t next = read_term(at, end, side);
      if (next == at) return std::nullopt;
      if (next == end) break;
      at = next + 1;
    }
    return side;
  }

  // "(+M)" or "(+AR)" at the end, which is taken away.
  bool take_partner_in_parentheses(std::size_t begin, std::size_t& end, Side& side) {
    const std::size_t open = text_.find("(+", begin);
    if (open == std::string::npos || open >= end || text_[end - 1] != ')') return true;
    if (end - open < 4) return true;  // an ion, "O2(+)"
    if (import_.find(import_.resolved(text_.substr(open, end - open))) != nullptr) return true;
    const std::string name = text_.substr(open + 2, end - open - 3);
    side.in_parentheses = true;
    side.partner = is_any_partner(name) ? "M" : import_.resolved(name);
    if (side.partner != "M" && import_.find(side.partner) == nullptr)
      return fail(open + 2, name.size(), message("'", name, "' is no species of the phase"), nearest(name));
    end = open;
    return true;
  }

  bool is_any_partner(const std::string& name) const {
    return name.size() == 1 && LSAME(name.front(), 'M') && import_.find(import_.resolved(name)) == nullptr;
  }

  std::string nearest(const std::string& name) const {
    return Nearest(name).offer_all(import_.declared).help();
  }

  // Takes a term, of which the longest species counts that it can be: names may end in "+". Where it ends;
  // where it begins, after an error.
  std::size_t read_term(std::size_t begin, std::size_t end, Side& side) {
    std::vector<std::size_t> ends;  // where it may end, the last one first
    for (std::size_t i = std::min(end, begin + longest_name); i > begin; --i) {
      if (i == end || text_[i] == '+') ends.push_back(i);
    }
    if (ends.empty()) {
      fail(begin, 1, "a species is due here");
      return begin;
    }
    for (const std::size_t at : ends) {
      if (take_term(begin, at, side)) return at;
    }
    const std::size_t shortest = ends.back();
    const std::size_t digits = text_.find_first_not_of("0123456789.", begin);
    const std::size_t name = digits < shortest ? digits : begin;
    fail(name, shortest - name,
         message("'", text_.substr(name, shortest - name), "' is no species of the phase"),
         nearest(text_.substr(name, shortest - name)));
    return begin;
  }

  // Whether it is a species, M or a photon, with or without a coefficient.
  bool take_term(std::size_t begin, std::size_t end, Side& side) {
    const std::string whole = text_.substr(begin, end - begin);
    if (take_name(whole, 1, side)) return true;
    const std::size_t digits = std::min(whole.find_first_not_of("0123456789."), whole.size());
    const auto coefficient = chemkin_number(whole.substr(0, digits));
    return digits > 0 && coefficient && *coefficient > 0 &&
           take_name(whole.substr(digits), static_cast<double>(*coefficient), side);
  }

  bool take_name(const std::string& name, double coefficient, Side& side) {
    const std::string resolved = import_.resolved(name);
    if (import_.find(resolved) != nullptr) {
      side.species.push_back({resolved, coefficient, coefficient});
    } else if (is_any_partner(name) && side.partner.empty() && coefficient == 1) {
      side.partner.assign(1, 'M');
    } else if (name.size() == 2 && EQUSYM(2, name, "HV")) {
      side.has_photon = true;
    } else {
      return false;
    }
    return true;
  }

  const ChemkinLine& line_;
  Import& import_;
  std::string text_;                 // without blanks
  std::vector<std::size_t> column_;  // of each character in the line
};

}  // namespace

std::optional<ChemkinEquation> read_chemkin_equation(const ChemkinLine& line, std::size_t length,
                                                     Import& import) {
  return EquationReader(line, length, import).read();
}

}  // namespace varpre
