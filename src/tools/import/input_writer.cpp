#include "tools/import/input_writer.h"

#include <algorithm>
#include <cmath>

#include "textio/channel/statement.h"
#include "textio/findings/odd_characters.h"
#include "tools/import/number_text.h"
#include "tools/import/partners.h"

namespace varpre {
namespace {

constexpr std::size_t record_length = 80;

std::string joined(const std::vector<std::string>& parts, std::string_view separator) {
  std::string text;
  for (const std::string& part : parts) text.append(text.empty() ? "" : separator).append(part);
  return text;
}

// Two digits are enough to tell how large a loss is.
double shortened(double value) {
  if (value == 0) return 0;
  const double scale = std::pow(10.0, std::floor(std::log10(value)) - 1);
  return std::round(value / scale) * scale;
}

class Writer {
 public:
  explicit Writer(const ImportedMechanism& mechanism) : mechanism_(mechanism), partners_(mechanism) {
    for (const auto* species : {&mechanism.gas, &mechanism.surface}) {
      for (const ImportedSpecies& one : *species)
        names_[one.name] = std::string(trimmed(one.short_name.view()));
    }
  }

  InputTexts write_all() {
    write_mechanism();
    write_thermo();
    write_molecules();
    return {MEC_, THERMO_, MOLNEW_, {}};
  }

  LostDigits& lost() { return lost_; }

  // What is to be known of the whole, once.
  void warn(const Place& file, Findings& findings) const {
    if (has_falloff()) {
      findings.warning(
          file, "falloff reactions: what the solver makes of their # records is its own",
          "the high-pressure limit stands on the reaction line, the low-pressure limit in the first record, Troe's a, T***, T*, "
          "T** in the second; --no-falloff refuses such reactions");
    }
    if (mechanism_.sticking_converted) {
      findings.warning(
          file, "sticking coefficients g are written as g/(1+g/2)",
          "STIC divides by 1-g/2, a correction that these are meant without; Motz-Wise: true asks for it");
    }
    if (mechanism_.at_one_atmosphere) {
      findings.warning(
          file,
          "entropies at 1 atm are taken for those at 1 bar: equilibrium constants change by 1.3 % for each mole that a "
          "reaction makes or takes",
          "the coefficients keep their digits; reference-pressure: 1 bar says that they are meant so");
    }
    if (lost_.numbers > 0) {
      findings.warning(lost_.of_largest,
                       message(counted(lost_.numbers, "number"),
                               " lost digits in the columns there are, most of them here: ", lost_.text),
                       message("a change by ", shortened(100 * lost_.largest), " %"));
    }
  }

 private:
  template <std::size_t Width>
  Text<Width> number(double value) {
    return Text<Width>(number_text(value, Width, lost_));
  }

  static void comment(std::string& file, std::string_view text) {
    write<"('---- ',A)">(file, std::string_view(for_terminal(text)));
  }

  void write_heading(std::string& file) const {
    comment(file, message("from ", mechanism_.file, ", phase ", mechanism_.gas_phase,
                          mechanism_.surface_phase.empty() ? "" : " and surface ", mechanism_.surface_phase,
                          ", by varpre-import"));
  }

  // The names that had to change.
  void write_names(std::string& file) const {
    for (const auto& [name, short_name] : names_) {
      if (name != short_name) comment(file, message(short_name, " stands for ", name));
    }
  }

  // --- MEC ---

  void write_mechanism() {
    write_heading(MEC_);
    write_names(MEC_);
    if (has_falloff()) {
      comment(MEC_, "Falloff reactions: the high-pressure limit stands on the line of the reaction, the");
      comment(MEC_, "low-pressure limit in the first # record, the Troe parameters a, T***, T*, T** in the");
      comment(MEC_, "second, zeros for Lindemann.");
    }
    if (mechanism_.sticking_converted) {
      comment(MEC_,
              "Sticking coefficients g are meant without correction: g/(1+g/2) stands here, from which");
      comment(MEC_, "varpre makes g again.");
    }
    write<"('MECHANISM                 A in cm, mol, s; E in kJ/mol')">(MEC_);
    write_reactions(mechanism_.gas_reactions);
    write<"('END')">(MEC_);
    write_efficiencies();
    if (!mechanism_.surface_phase.empty()) {
      write<"('SURFACE MECHANISM')">(MEC_);
      write_reactions(mechanism_.surface_reactions);
      write<"('END')">(MEC_);
    }
    write_global_reactions();
  }

  void write_global_reactions() {
    const auto& reactions = mechanism_.global_reactions;
    if (reactions.empty()) return;
    write<"('COMPLEX REACTIONS')">(MEC_);
    write<"(I4)">(MEC_, static_cast<int>(reactions.size()));
    for (const GlobalReaction& reaction : reactions) {
      lost_.place = reaction.place;
      const auto [A, b, E] = rate_in_columns(reaction.rate, 5, 5);
      write<"(A,A10)">(MEC_, std::string_view(global_side(reaction.educts)), number<10>(A));
      write<"(A,2A5)">(MEC_, std::string_view(global_side(reaction.products)), number<5>(b), number<5>(E));
    }
  }

  // Three slots of a coefficient, a name and an order; products have none.
  std::string global_side(const std::vector<GlobalTerm>& terms) {
    std::string line;
    for (std::size_t slot = 0; slot < 3; ++slot) {
      const bool taken = slot < terms.size();
      const GlobalTerm term = taken ? terms[slot] : GlobalTerm{};
      write<"(1X,A4,1X,A8,1X,A3,1X)">(line, number<4>(term.coefficient),
                                      SpeciesName(taken ? names_.at(term.species) : ""),
                                      number<3>(term.order));
    }
    std::erase(line, '\n');
    return line;
  }

  bool has_falloff() const {
    return std::any_of(mechanism_.gas_reactions.begin(), mechanism_.gas_reactions.end(),
                       [](const ImportedReaction& r) { return r.low_pressure.has_value(); });
  }

  void write_reactions(const std::vector<ImportedReaction>& reactions) {
    for (const ImportedReaction& reaction : reactions) {
      lost_.place = reaction.place;
      if (reaction.sticking) write<"('STIC')">(MEC_);
      const std::vector<std::string> educts = side(reaction, reaction.educts);
      const std::vector<std::string> products = side(reaction, reaction.products);
      if (!write_free_form(reaction, educts, products)) write_fixed_form(reaction, educts, products);
      if (reaction.low_pressure) write_falloff(reaction);
      if (reaction.coverage) write_coverage(*reaction.coverage);
    }
  }

  std::vector<std::string> side(const ImportedReaction& reaction,
                                const std::vector<std::string>& species) const {
    std::vector<std::string> names;
    names.reserve(species.size() + 1);
    for (const std::string& name : species) names.push_back(names_.at(name));
    if (reaction.efficiencies) names.emplace_back(partners_.name_of(*reaction.efficiencies));
    return names;
  }

  // False when the line would be too long.
  bool write_free_form(const ImportedReaction& reaction, const std::vector<std::string>& educts,
                       const std::vector<std::string>& products) {
    const std::string equation =
        joined(educts, "+") + (reaction.reversible ? "=" : ">") + joined(products, "+");
    const std::string_view mark = reaction.duplicate ? " ! dup" : "";
    LostDigits lost;
    const auto& [A, b, E] = reaction.rate;
    constexpr std::size_t any = 24;
    const auto shortest = [&](double value) {
      const std::string text = number_text(value, any, lost);
      return text.substr(text.find_first_not_of(' '));
    };
    const std::array numbers{shortest(A), shortest(b), shortest(E)};
    const std::size_t length =
        equation.size() + numbers[0].size() + numbers[1].size() + numbers[2].size() + 3 + mark.size();
    if (length > record_length) return false;
    const auto in_columns = [&](std::size_t i, std::size_t width) {
      return std::string(width - std::min(numbers[i].size(), width), ' ') + numbers[i];
    };
    constexpr std::size_t columns_of_equation = 40;
    const std::string A_text = in_columns(0, 12);
    const std::string b_text = in_columns(1, 8);
    const std::string E_text = in_columns(2, 11);
    const std::size_t wide = std::max(equation.size(), columns_of_equation) + A_text.size() + b_text.size() +
                             E_text.size() + 3 + mark.size();
    if (wide > record_length) {
      write<"(A,3(1X,A),A)">(MEC_, std::string_view(equation), std::string_view(numbers[0]),
                             std::string_view(numbers[1]), std::string_view(numbers[2]), mark);
    } else {
      const std::string padded =
          equation + std::string(columns_of_equation - std::min(equation.size(), columns_of_equation), ' ');
      write<"(A,3(1X,A),A)">(MEC_, std::string_view(padded), std::string_view(A_text),
                             std::string_view(b_text), std::string_view(E_text), mark);
    }
    return true;
  }

  // Two records of five names each.
  void write_fixed_form(const ImportedReaction& reaction, const std::vector<std::string>& educts,
                        const std::vector<std::string>& products) {
    std::array<SpeciesName, 10> names;
    std::array<Text<1>, 10> delimiters;
    std::size_t count = 0;
    for (const auto* side : {&educts, &products}) {
      for (const std::string& name : *side) {
        names[count] = name;
        delimiters[count++] = "+";
      }
      delimiters[count - 1] = side == &products ? " " : reaction.reversible ? "=" : ">";
    }
    const auto [A, b, E] = rate_in_columns(reaction.rate, 7, 10);
    write<"('MAXI')">(MEC_);
    write<"(5(A8,A1),/,5(A8,A1),A10,A7,A10,A)">(MEC_, zip(names, delimiters), number<10>(A), number<7>(b),
                                                number<10>(E),
                                                std::string_view(reaction.duplicate ? " ! dup" : ""));
  }

  void write_falloff(const ImportedReaction& reaction) {
    const auto [A, b, E] = rate_in_columns(*reaction.low_pressure, 6, 10);
    write<"('#',5X,A10,2X,A6,2X,A10)">(MEC_, number<10>(A), number<6>(b), number<10>(E));
    const auto& [a, T3, T1, T2] = reaction.Troe;
    write<"('#',5X,4(A10,2X),A6)">(MEC_, number<10>(a), number<10>(T3), number<10>(T1), number<10>(T2),
                                   number<6>(0));
  }

  void write_coverage(const CoverageDependence& coverage) {
    write<"('$',A33,11X,A10,A7,A10)">(MEC_, Text<33>(names_.at(coverage.species)), number<10>(coverage.a),
                                      number<7>(coverage.m), number<10>(coverage.E));
  }

  void write_efficiencies() {
    write<"('COLLISION EFFICIENCIES')">(MEC_);
    if (partners_.usual() == 1) write<"('TROE')">(MEC_);
    for (const Partner& partner : partners_.all()) {
      constexpr std::size_t in_a_record = 8;
      const auto& efficiencies = partner.efficiencies;
      for (std::size_t begin = 0; begin < efficiencies.size(); begin += in_a_record) {
        const std::size_t end = std::min(begin + in_a_record, efficiencies.size());
        std::vector<SpeciesName> names;
        std::vector<Text<1>> separators;
        std::vector<Text<8>> values;
        for (std::size_t i = begin; i < end; ++i) {
          names.emplace_back(names_.at(efficiencies[i].first));
          separators.emplace_back(i + 1 < end ? "+" : " ");
          values.push_back(number<8>(efficiencies[i].second));
        }
        write<"(A8,'=',8(A8,A1))">(MEC_, SpeciesName(partner.name), zip(names, separators));
        write<"(9X,8(A8,1X))">(MEC_, std::span<const Text<8>>(values));
      }
    }
    write<"('END')">(MEC_);
  }

  // --- THERMO, MOLNEW ---

  void write_thermo() {
    write_heading(THERMO_);
    write_names(THERMO_);
    for (const auto* all : {&mechanism_.gas, &mechanism_.surface}) {
      for (const ImportedSpecies& species : *all) write_entry(species);
    }
  }

  void write_entry(const ImportedSpecies& species) {
    lost_.place = species.place;
    ElementFields fields;
    for (std::size_t i = 0; i < species.atoms.size(); ++i) {
      fields.ELSYM[i] = species.atoms[i].first;
      fields.ELCNT[i] = species.atoms[i].second;
    }
    std::array<Text<5>, 4> elements;  // a field without element is blank
    for (std::size_t i = 0; i < species.atoms.size(); ++i) {
      std::string field;
      write<"(A2,I3)">(field, fields.ELSYM[i], fields.ELCNT[i]);
      elements[i] = trimmed(std::string_view(field).substr(0, 5));
    }
    const auto texts = [&](const std::array<double, 7>& coefficients) {
      std::array<Text<15>, 7> list;
      for (std::size_t i = 0; i < list.size(); ++i) list[i] = number<15>(coefficients[i]);
      return list;
    };
    const std::array upper = texts(species.upper);
    const std::array lower = texts(species.lower);
    const auto& [low, high, common] = species.limits;
    const std::string_view kind = species.on_surface ? "S" : "G";
    write<"(A16,8X,4A5,A1,1X,2A10,A8,5X,'1')">(THERMO_, Text<16>(species.short_name.view()), elements,
                                               Text<1>(kind), number<10>(low), number<10>(high),
                                               number<8>(common));
    const std::span<const Text<15>> u(upper);
    const std::span<const Text<15>> l(lower);
    write<"(5A15,4X,'2',/,5A15,4X,'3',/,4A15,19X,'4')">(THERMO_, u.first<7>(), l.first<7>());
  }

  void write_molecules() {
    for (const ImportedSpecies& species : mechanism_.gas) {
      if (!species.molecule) continue;
      lost_.place = species.place;
      const ImportedMolecule& m = *species.molecule;
      write<"(A8,I2,F10.3,5A10)">(MOLNEW_, species.short_name, m.geometry, molar_mass(species),
                                  number<10>(m.well_depth), number<10>(m.diameter), number<10>(m.dipole),
                                  number<10>(m.polarizability), number<10>(m.rotational_relaxation));
    }
  }

  const ImportedMechanism& mechanism_;
  Partners partners_;
  std::map<std::string, std::string> names_;
  LostDigits lost_;
  std::string MEC_;
  std::string THERMO_;
  std::string MOLNEW_;
};

}  // namespace

InputTexts write_inputs(const ImportedMechanism& mechanism, const std::array<ImportedState, 2>& mixtures,
                        const ConditionsOptions& options, const Input& file, Findings& findings) {
  Writer writer(mechanism);
  InputTexts texts = writer.write_all();
  texts.INP = write_conditions(mechanism, mixtures, options, writer.lost());
  writer.warn(whole(file), findings);
  return texts;
}

void add_comments(const std::vector<std::string>& lines, InputTexts& texts) {
  std::string comments;
  for (const std::string& line : lines) comments += message("---- ", for_terminal(line), "\n");
  texts.MEC.insert(texts.MEC.find('\n') + 1, comments);
}

}  // namespace varpre
