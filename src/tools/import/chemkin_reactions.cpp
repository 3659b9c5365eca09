#include "tools/import/chemkin_reactions.h"

#include <algorithm>
#include <cmath>

#include "tools/import/chemkin_equation.h"
#include "tools/import/chemkin_words.h"
#include "tools/import/completion.h"
#include "tools/import/equal_reactions.h"

namespace varpre {
namespace {

constexpr double bar_per_atm = 1.01325;
constexpr std::size_t longest_reaction = 4000;  // characters, with the lines that go on

// One thing that a line behind a reaction says.
struct Said {
  const ChemkinLine* line;
  ChemkinItem item;

  Place place() const { return line->place(item.word); }
};

// A reaction of the file: its line, and those behind it.
struct ReactionLines {
  ChemkinLine equation;
  std::vector<ChemkinLine> further;
};

// What the reactions of a section share.
struct ReactionSection {
  RateUnits units;
  bool on_surface = false;
  std::optional<bool> Motz_Wise;  // MWON or MWOFF
  bool uses_Motz_Wise = false;    // some coefficient goes without a word of its own
  EqualReactions equal;
};

class ReactionReader {
 public:
  ReactionReader(const ReactionLines& lines, ReactionSection& section, Import& import)
      : lines_(lines), section_(section), units_(section.units), import_(import) {}

  void read() {
    const ChemkinLine& line = lines_.equation;
    reaction_.place = line.place();
    if (!read_numbers() || !read_further_lines()) return;
    const auto equation = read_chemkin_equation(line, length_, import_);
    if (!equation) return;
    equation_ = *equation;
    settle_names();
    if (!is_of_taken_species() || !check_balance() || !check_rate_form()) return;
    if (is_global_) {
      take_global();
      return;
    }
    if (!read_efficiencies() || !read_law() || !read_coverage()) return;
    section_.equal.add(reaction_, reaction_.reversible && said("REV") == nullptr,
                       (has_falloff() ? "f" : "") + equation_.partner, import_.findings);
    take();
  }

 private:
  bool refuse(const Place& place, std::string_view reason, std::string_view help = {},
              Findings::Site kind = Findings::Site::current()) {
    import_.refuse(place, message("reaction ", reaction_.equation), reason, help, kind);
    return false;
  }
  bool fail(const Place& place, std::string_view what, std::string_view help = {}) {
    import_.findings.error(place, what, help);
    return false;
  }

  // --- the lines as text ---

  // A, b and E, the last three words of the line.
  bool read_numbers() {
    const ChemkinLine& line = lines_.equation;
    std::vector<Word> words = words_of(line.text);
    for (std::size_t i = 3; i > 0; --i) {
      const Word word = words.empty() ? Word{} : words.back();
      const auto value = chemkin_number(word.text);
      if (!value || words.size() < 2) {
        return fail(value || word.text.empty() ? line.place() : line.place(word),
                    "A, b and E are due behind the equation",
                    word.text.find('=') == std::string_view::npos && !value
                        ? message("'", word.text, "' is not a number")
                        : "three numbers, with blanks between them");
      }
      numbers_[i - 1] = *value;
      words.pop_back();
    }
    const Word& last = words.back();
    length_ = begin_of(last) + last.text.size();
    reaction_.equation = std::string(trimmed(
        std::string_view(line.text).substr(begin_of(words.front()), length_ - begin_of(words.front()))));
    if (chemkin_number(last.text)) {
      return fail(line.place(last), "four numbers stand behind the equation, not A, b and E");
    }
    return true;
  }

  bool read_further_lines() {
    for (const ChemkinLine& line : lines_.further) {
      const auto items = items_of(line, import_.findings);
      if (!items) return false;
      for (const ChemkinItem& item : *items) {
        if (!take_item({&line, item})) return false;
      }
    }
    return true;
  }

  bool take_item(const Said& said) {
    const std::string name = import_.resolved(std::string(said.item.word.text));
    const std::string_view keyword = keyword_of(said.item.word.text);
    const bool is_efficiency = said.item.has_content && chemkin_number(said.item.content.text);
    if (is_efficiency && (keyword.empty() || import_.find(name) != nullptr)) {
      efficiencies_.push_back(said);
      return true;
    }
    if (keyword.empty())
      return fail(
          said.place(), message("'", said.item.word.text, "' behind a reaction is not understood"),
          Nearest(said.item.word.text).offer_all(reaction_keywords).offer_all(import_.declared).help());
    said_[keyword].push_back(said);
    return true;
  }

  const Said* said(std::string_view keyword) const {
    const auto found = said_.find(keyword);
    return found == said_.end() ? nullptr : &found->second.back();
  }

  // The numbers between the strokes behind a keyword. None after an error.
  std::optional<std::vector<double>> numbers_of(const Said& said, std::size_t least, std::size_t most) {
    const auto& [line, item] = said;
    std::vector<double> values;
    const std::vector<Word> words = words_of(item.content.text);
    for (const Word& word : words) {
      const auto value = chemkin_number(word.text);
      if (!value) {
        fail(line->place(item.content, word), message("'", word.text, "' is not a number"));
        return std::nullopt;
      }
      values.push_back(static_cast<double>(*value));
    }
    if (values.size() >= least && values.size() <= most) return values;
    fail(said.place(), message("behind ", in_capitals(std::string(item.word.text)), " ",
                               counted(static_cast<int>(least), "number"),
                               most > least ? message(" or ", static_cast<int>(most)) : std::string(),
                               " are due between strokes, not ", static_cast<int>(values.size())));
    return std::nullopt;
  }

  // --- the equation ---

  using Fate = KnownSpecies::Fate;

  template <class Visit>
  void for_each_species(Visit visit) const {
    for (const GlobalTerm& term : equation_.educts) visit(term.species, -term.coefficient);
    for (const GlobalTerm& term : equation_.products) visit(term.species, term.coefficient);
    if (!equation_.partner.empty() && equation_.partner != "M") visit(equation_.partner, 0);
  }

  bool is_of_taken_species() {
    bool is_chosen = true;
    std::string left_out;
    std::string of_surface;
    for_each_species([&](const std::string& name, double) {
      const KnownSpecies& species = *import_.find(name);
      is_chosen = is_chosen && species.fate != Fate::not_chosen;
      if (species.fate == Fate::left_out) left_out = name;
      if (species.phase != KnownSpecies::Phase::gas) of_surface = name;
    });
    if (!is_chosen) return false;
    if (!left_out.empty()) return refuse(reaction_.place, message("its species ", left_out, " was left out"));
    if (!of_surface.empty() && !section_.on_surface)
      return fail(reaction_.place,
                  message("the surface species ", of_surface, " cannot react in the gas phase"));
    return true;
  }

  bool check_balance() {
    if (equation_.has_photon) return refuse(reaction_.place, "a reaction with a photon cannot be held");
    std::map<std::string, double> atoms;
    for_each_species([&](const std::string& name, double coefficient) {
      for (const auto& [symbol, count] : import_.species(name).atoms) atoms[symbol] += coefficient * count;
    });
    for (const auto& [symbol, surplus] : atoms) {
      constexpr double tolerance = 1.0E-3;
      if (std::abs(surplus) > tolerance)
        return fail(reaction_.place, message("the equation does not balance: ", std::abs(surplus), " ",
                                             symbol, " more ", surplus > 0 ? "on the right" : "on the left"));
    }
    return true;
  }

  // The names of the two sides, each as often as it counts; a coefficient that is no whole number, or a very
  // large one, makes the reaction a global one.
  void settle_names() {
    constexpr double most = 100;
    for (const auto& [terms, names] : {std::pair(&equation_.educts, &reaction_.educts),
                                       std::pair(&equation_.products, &reaction_.products)}) {
      for (const GlobalTerm& term : *terms) {
        const bool whole = term.coefficient == std::floor(term.coefficient) && term.coefficient <= most;
        is_global_ = is_global_ || !whole;
        if (whole) names->insert(names->end(), static_cast<std::size_t>(term.coefficient), term.species);
      }
    }
    reaction_.reversible = equation_.reversible;
    reaction_.duplicate = said("DUPLICATE") != nullptr;
  }

  // --- the rate ---

  bool check_rate_form() {
    constexpr std::array<std::string_view, 9> not_held{"LT",   "RLT",  "JAN",  "FIT1", "HV",
                                                       "TDEP", "EXCI", "MOME", "XSMI"};
    for (const std::string_view keyword : not_held) {
      if (const Said* const one = said(keyword))
        return refuse(one->place(), message("a rate of the form ", keyword, " cannot be held"));
    }
    return read_units() && check_partner() && read_orders();
  }

  bool read_units() {
    const Said* const one = said("UNITS");
    if (one == nullptr) return true;
    std::string text = in_capitals(std::string(one->item.content.text));
    std::replace(text.begin(), text.end(), '/', ' ');
    for (const Word& word : words_of(text)) {
      if (!set_unit(std::string(word.text), units_))
        return fail(one->line->place(one->item.content, word),
                    message("'", word.text, "' is no unit that is known"));
    }
    return true;
  }

  bool has_falloff() const { return said("LOW") != nullptr || said("HIGH") != nullptr; }
  bool depends_on_pressure() const { return said("PLOG") != nullptr || said("CHEB") != nullptr; }

  bool check_partner() {
    if (depends_on_pressure() && equation_.partner == "M") {  // the pressure says it all
      equation_.partner.clear();
      equation_.in_parentheses = false;
    }
    if (section_.on_surface) {
      for (const char* const keyword : {"LOW", "HIGH", "TROE", "SRI", "PLOG", "CHEB"}) {
        if (said(keyword) != nullptr)
          return fail(said(keyword)->place(), message(keyword, " does not belong to a surface reaction"));
      }
      return equation_.partner.empty() ||
             fail(reaction_.place, "a surface reaction has no collision partner");
    }
    for (const char* const keyword : {"STICK", "COV", "MWON", "MWOFF"}) {
      if (said(keyword) != nullptr)
        return fail(said(keyword)->place(), message(keyword, " belongs to a surface reaction"));
    }
    if (has_falloff() && !equation_.in_parentheses)
      return fail(reaction_.place, "a falloff reaction has a collision partner in parentheses, (+M)");
    if (!has_falloff() && equation_.in_parentheses)
      return fail(reaction_.place,
                  "LOW is missing: a collision partner in parentheses belongs to a falloff reaction");
    for (const char* const keyword : {"TROE", "SRI"}) {
      if (said(keyword) != nullptr && !has_falloff())
        return fail(said(keyword)->place(), message(keyword, " belongs to a falloff reaction, with LOW"));
    }
    return check_form();
  }

  // What cannot be held of falloff reactions.
  bool check_form() {
    if (said("HIGH") != nullptr)
      return refuse(said("HIGH")->place(), "a chemically activated reaction cannot be held");
    if (said("SRI") != nullptr)
      return refuse(said("SRI")->place(), "a falloff of the form SRI cannot be held");
    if (said("REV") != nullptr && (has_falloff() || depends_on_pressure()))
      return refuse(said("REV")->place(),
                    "a reverse rate of its own beside one that depends on the pressure cannot be held");
    return !has_falloff() || !import_.options.no_falloff ||
           refuse(reaction_.place, "a falloff reaction, which --no-falloff refuses");
  }

  double count_among_educts(const std::string& name) const {
    double count = 0;
    for (const GlobalTerm& term : equation_.educts) count += term.species == name ? term.coefficient : 0;
    return count;
  }

  bool read_orders() {
    if (const Said* const one = said("RORD"))
      return refuse(one->place(), "orders of the reverse reaction cannot be held");
    const auto found = said_.find("FORD");
    if (found == said_.end()) return true;
    for (const Said& one : found->second) {
      const std::vector<Word> words = words_of(one.item.content.text);
      const auto order = words.size() == 2 ? chemkin_number(words[1].text) : std::nullopt;
      if (!order) return fail(one.place(), "a species and its order are due between strokes");
      const std::string name = import_.resolved(std::string(words[0].text));
      const KnownSpecies* const species = import_.find(name);
      if (species == nullptr)
        return fail(one.line->place(one.item.content, words[0]),
                    message("'", words[0].text, "' is no species of the phase"));
      const auto value = static_cast<double>(*order);
      if (value == count_among_educts(name)) continue;
      if (species->fate != Fate::taken || species->on_surface() != section_.on_surface)
        return refuse(one.place(), message("the order ", value, " of ", name, " cannot be held"));
      reaction_.orders[name] = value;
      is_global_ = is_global_ || !section_.on_surface;
    }
    return true;
  }

  bool read_efficiencies() {
    if (!efficiencies_.empty() && equation_.partner != "M" && !depends_on_pressure())
      return fail(efficiencies_.front().place(),
                  "efficiencies belong to a reaction with the collision partner M");
    if (equation_.partner.empty()) return true;
    if (equation_.partner != "M") {
      reaction_.efficiencies = Efficiencies{0, {{equation_.partner, 1}}};
      return true;
    }
    reaction_.efficiencies.emplace();
    for (const Said& one : efficiencies_) {
      const std::string name = import_.resolved(std::string(one.item.word.text));
      const KnownSpecies* const species = import_.find(name);
      if (species == nullptr)
        return fail(one.place(), message("'", one.item.word.text, "' is no species of the phase"),
                    Nearest(name).offer_all(import_.declared).help());
      if (species->fate != Fate::taken) continue;
      reaction_.efficiencies->named[name] = static_cast<double>(*chemkin_number(one.item.content.text));
    }
    return true;
  }

  // The sum of the coefficients of a side, and 1 for the collision partner if `partner` is 1; of solids there
  // are none.
  double order(const std::vector<GlobalTerm>& side, double partner) const {
    double sum = partner;
    for (const GlobalTerm& term : side) {
      sum += import_.find(term.species)->phase == KnownSpecies::Phase::bulk ? 0 : term.coefficient;
    }
    return sum;
  }
  double forward_order(double partner) const {
    double sum = order(equation_.educts, partner);
    for (const auto& [name, of_species] : reaction_.orders) sum += of_species - count_among_educts(name);
    return sum;
  }

  ArrheniusRate rate(long double A, long double b, long double E, double order) const {
    const double of_molecules = units_.molecules ? std::pow(avogadro, order - 1) : 1;
    return {units_.molecules ? without_noise(static_cast<double>(A) * of_molecules) : static_cast<double>(A),
            static_cast<double>(b), *activation_energy(E, units_.energy)};
  }

  // The rate between the strokes of a keyword; none after an error.
  std::optional<ArrheniusRate> rate_of(const Said& said, double order) {
    const auto values = numbers_of(said, 3, 3);
    if (!values) return std::nullopt;
    return rate((*values)[0], (*values)[1], (*values)[2], order);
  }

  bool read_law() {
    const double partner = equation_.partner.empty() || has_falloff() ? 0 : 1;
    reaction_.law.arrhenius = rate(numbers_[0], numbers_[1], numbers_[2], forward_order(partner));
    if (said("STICK") != nullptr) return read_sticking();
    if (said("PLOG") != nullptr) return read_pressure_table();
    if (said("CHEB") != nullptr) return read_chebyshev();
    return !has_falloff() || read_falloff();
  }

  bool read_falloff() {
    const auto low = rate_of(*said("LOW"), forward_order(1));
    if (!low) return false;
    reaction_.low_pressure = *low;
    const Said* const troe = said("TROE");
    if (troe == nullptr) return true;
    const auto values = numbers_of(*troe, 3, 4);
    if (!values) return false;
    reaction_.Troe = {(*values)[0], (*values)[1], (*values)[2], values->size() == 4 ? (*values)[3] : 0};
    return true;
  }

  bool read_pressure_table() {
    auto& table = reaction_.law.table;
    for (const Said& one : said_.at("PLOG")) {
      const auto values = numbers_of(one, 4, 4);
      if (!values) return false;
      const double pressure = without_noise((*values)[0] * bar_per_atm);
      if (pressure <= 0) return fail(one.place(), "a pressure is greater than zero");
      const auto at =
          std::find_if(table.begin(), table.end(), [&](const auto& row) { return row.pressure >= pressure; });
      const ArrheniusRate law = rate((*values)[1], (*values)[2], (*values)[3], forward_order(0));
      if (at != table.end() && at->pressure == pressure) {
        at->rates.push_back(law);
      } else {
        table.insert(at, {pressure, {law}});
      }
    }
    return true;
  }

  // Two limits that rise; `standard` where a keyword does not say so.
  std::optional<std::array<double, 2>> limits(std::string_view keyword,
                                              const std::array<double, 2>& standard) {
    const Said* const one = said(keyword);
    if (one == nullptr) return standard;
    const auto values = numbers_of(*one, 2, 2);
    if (!values) return std::nullopt;
    if (0 < (*values)[0] && (*values)[0] < (*values)[1]) return std::array{(*values)[0], (*values)[1]};
    fail(one->place(), "two limits that are positive and rise are due here");
    return std::nullopt;
  }

  bool read_chebyshev() {
    std::vector<double> numbers;
    constexpr std::size_t most = 2500;
    for (const Said& one : said_.at("CHEB")) {
      const auto values = numbers_of(one, 1, most);
      if (!values) return false;
      numbers.insert(numbers.end(), values->begin(), values->end());
    }
    const auto T = limits("TCHEB", {300, 2500});
    const auto P = limits("PCHEB", {0.001, 100});
    if (!T || !P) return false;
    const auto is_count = [](double x) { return x >= 1 && x <= 50 && x == std::floor(x); };
    if (numbers.size() < 2 || !is_count(numbers[0]) || !is_count(numbers[1]) ||
        static_cast<double>(numbers.size() - 2) != numbers[0] * numbers[1]) {
      return fail(said_.at("CHEB").front().place(),
                  "two counts n and m are due here, and n times m coefficients");
    }
    ChebyshevRate law{(*T)[0],
                      (*T)[1],
                      (*P)[0] * bar_per_atm,
                      (*P)[1] * bar_per_atm,
                      static_cast<std::size_t>(numbers[1]),
                      {numbers.begin() + 2, numbers.end()}};
    if (units_.molecules) law.factor = std::pow(avogadro, forward_order(0) - 1);
    reaction_.law.chebyshev = law;
    return true;
  }

  bool read_sticking() {
    auto& educts = reaction_.educts;
    const auto is_gas = [&](const std::string& name) {
      return import_.find(name)->phase == KnownSpecies::Phase::gas;
    };
    const auto first = std::find_if(educts.begin(), educts.end(), is_gas);
    if (std::count_if(educts.begin(), educts.end(), is_gas) != 1)
      return fail(said("STICK")->place(),
                  "one gas species sticks: on the left of this equation stand none, or several");
    std::rotate(educts.begin(), first, first + 1);
    const bool own = said("MWON") != nullptr || said("MWOFF") != nullptr;
    section_.uses_Motz_Wise = section_.uses_Motz_Wise || !own;
    StickingRate sticking{rate(numbers_[0], numbers_[1], numbers_[2], 1)};
    sticking.coefficient.A = static_cast<double>(numbers_[0]);
    sticking.Motz_Wise = own ? said("MWON") != nullptr : section_.Motz_Wise.value_or(false);
    sticking.molar_mass = molar_mass(import_.species(educts.front()));
    sticking.sites = forward_order(0) - 1;
    sticking.site_density = import_.mechanism.site_density / 1.0E4;
    reaction_.law.sticking = sticking;
    return true;
  }

  bool read_coverage() {
    const auto found = said_.find("COV");
    if (found == said_.end()) return true;
    const Said& one = found->second.front();
    if (found->second.size() > 1)
      return refuse(found->second[1].place(), "the coverage of a second species cannot be held");
    const std::vector<Word> words = words_of(one.item.content.text);
    std::array<long double, 3> values{};
    for (std::size_t i = 0; i < values.size(); ++i) {
      const auto value = words.size() == values.size() + 1 ? chemkin_number(words[i + 1].text) : std::nullopt;
      if (!value) return fail(one.place(), "a surface species and three numbers are due between strokes");
      values[i] = *value;
    }
    const std::string name = import_.resolved(std::string(words[0].text));
    const KnownSpecies* const species = import_.find(name);
    if (species == nullptr || !species->on_surface())
      return fail(one.line->place(one.item.content, words[0]),
                  message("'", words[0].text, "' is no species of the surface"));
    if (species->fate != Fate::taken)
      return refuse(one.place(), message("the species ", name, ", whose coverage counts, was left out"));
    reaction_.coverage =
        CoverageDependence{name, static_cast<double>(values[0]), static_cast<double>(values[1]),
                           *activation_energy(values[2], units_.energy)};
    return true;
  }

  // --- the end ---

  // One of the gas with orders of its own, or coefficients that are no whole numbers.
  void take_global() {
    const bool plain = equation_.partner.empty() && !equation_.reversible && !has_falloff() &&
                       !depends_on_pressure() && said("REV") == nullptr;
    if (section_.on_surface || !plain) {
      refuse(reaction_.place, "orders and coefficients that are no whole numbers cannot be held here",
             "an irreversible reaction of the gas with a rate of A, b and Ea can have them");
      return;
    }
    GlobalReaction global{reaction_.place, reaction_.equation, equation_.educts, equation_.products,
                          rate(numbers_[0], numbers_[1], numbers_[2], forward_order(0))};
    take_global_reaction(std::move(global), reaction_.orders, import_);
  }

  void take() {
    const Said* const REV = said("REV");
    if (REV == nullptr) {
      take_reaction(std::move(reaction_), section_.on_surface, import_);
      return;
    }
    const auto law = rate_of(*REV, order(equation_.products, equation_.partner.empty() ? 0 : 1));
    if (!law) return;
    ImportedReaction reverse = reaction_;
    reaction_.reversible = reverse.reversible = false;
    take_reaction(std::move(reaction_), section_.on_surface, import_);
    if (law->A == 0 && law->b == 0 && law->E == 0) return;
    std::swap(reverse.educts, reverse.products);
    reverse.equation = message("the reverse of ", reverse.equation);
    reverse.law = {};
    reverse.law.arrhenius = *law;
    reverse.coverage.reset();
    reverse.orders.clear();
    take_reaction(std::move(reverse), section_.on_surface, import_);
  }

  static constexpr double avogadro = 6.02214076E23;

  const ReactionLines& lines_;
  ReactionSection& section_;
  RateUnits units_;
  Import& import_;
  std::size_t length_ = 0;  // of the equation in its line
  bool is_global_ = false;
  std::array<long double, 3> numbers_{};
  std::map<std::string_view, std::vector<Said>> said_;
  std::vector<Said> efficiencies_;
  ChemkinEquation equation_;
  ImportedReaction reaction_;
};

void read_heading(const ChemkinSection& section, ReactionSection& shared, Import& import) {
  for (const Word& word : words_of(section.heading.text)) {
    const std::string capitals = in_capitals(std::string(word.text));
    if (capitals == "MWON" || capitals == "MWOFF") {
      shared.Motz_Wise = capitals == "MWON";
    } else if (!set_unit(capitals, shared.units)) {
      import.findings.error(
          section.heading.place(word), message("'", word.text, "' is no unit that is known"),
          "CAL/MOLE, KCAL/MOLE, JOULES/MOLE, KJOULES/MOLE, KELVINS, EVOLTS; MOLES, MOLECULES");
    }
  }
}

}  // namespace

void read_chemkin_reactions(const ChemkinSection& section, bool on_surface, Import& import) {
  ReactionSection shared;
  shared.on_surface = on_surface;
  read_heading(section, shared, import);
  std::vector<ReactionLines> reactions;
  bool goes_on = false;
  for (ChemkinLine line : section.lines) {
    const bool next_goes_on = line.take_continuation();
    const bool is_equation = line.text.find('=') != std::string::npos;
    if (goes_on && !reactions.empty() &&
        reactions.back().equation.text.size() + line.text.size() < longest_reaction) {
      reactions.back().equation.append(line);
    } else if (is_equation || next_goes_on) {
      reactions.push_back({std::move(line), {}});
    } else if (reactions.empty()) {
      import.findings.error(line.place(), "an equation is due here");
    } else {
      reactions.back().further.push_back(std::move(line));
    }
    goes_on = next_goes_on;
  }
  for (const ReactionLines& lines : reactions) ReactionReader(lines, shared, import).read();
  if (shared.uses_Motz_Wise && !shared.Motz_Wise) {
    import.findings.warning(section.heading.place(section.keyword, std::string_view("REACTIONS").size()),
                            "sticking coefficients are taken without the correction of Motz and Wise",
                            "MWON or MWOFF behind REACTIONS says what is meant");
  }
}

}  // namespace varpre
