#include "tools/export/held_mechanism.h"

#include <algorithm>
#include <numeric>

#include "mechanism/phase.h"
#include "textio/record/number_format.h"
#include "textio/record/numbered.h"

namespace varpre {
namespace {

std::string name_of(const RunData& data, int number) {
  return std::string(trimmed(at(data.species.SYMB, number).view()));
}

const Phase& phase_of(const HeldReaction& held) {
  return held.on_surface ? Phase::surface : Phase::gas;
}

// Species that a reaction may name; the numbers of collision partners are greater.
int species_count(const RunData& data, const HeldReaction& held) {
  return held.on_surface ? data.NGAS + data.NSURF : data.NGAS;
}

std::string side_text(const RunData& data, const Side& side) {
  std::string text;
  for (const auto& [number, count] : side) {
    text += message(text.empty() ? "" : " + ", count > 1 ? message(count, " ") : "", name_of(data, number));
  }
  return text;
}

class Holder {
 public:
  Holder(const RunData& data, bool skip_unsupported, Findings& findings)
      : data_(data), skip_(skip_unsupported), findings_(findings) {}

  HeldMechanism hold() {
    for (int number = 1; number <= data_.NGAS + data_.NSURF; ++number)
      held_.species.push_back(holds_species(number));
    held_.gas_reactions = reactions_of(data_.gas_mechanism, false);
    held_.surface_reactions = reactions_of(data_.surface_mechanism, true);
    mark_duplicates(held_.gas_reactions);
    mark_duplicates(held_.surface_reactions);
    refuse_all(data_.complex_reactions, "complex reaction");
    refuse_all(data_.photo_reactions, "photo reaction");
    return std::move(held_);
  }

 private:
  bool refuse(const Place& place, const std::string& what, std::string_view reason,
              std::string_view help = {}, Findings::Site kind = Findings::Site::current()) {
    findings_.report(skip_ ? Findings::Severity::warning : Findings::Severity::error, place,
                     message(what, skip_ ? " is left out: " : ": ", reason), help, kind);
    return false;
  }

  void refuse_all(const std::vector<Place>& lines, std::string_view kind) {
    for (std::size_t i = 0; i < lines.size(); ++i) {
      refuse(lines[i], message(kind, " ", static_cast<int>(i) + 1), "the format has no such reactions");
    }
  }

  bool holds_species(int number) {
    const std::string name = name_of(data_, number);
    const std::string what = message("species ", name);
    const Place& listed = at(data_.species.listed, number);
    if (name == "M" || read_free_real(name)) {
      return refuse(locate(listed, name), what, "an equation of the format takes its name for something else",
                    name == "M" ? "M is any collision partner" : "numbers are coefficients");
    }
    const ThermoFit& fit = at(data_.species.fit, number);
    const auto& [low, common, high] = fit.TLIM;
    if (low < common && common < high) return true;
    return refuse(fit.entry, what, "its temperature limits do not rise",
                  "the format needs the switch temperature between the lower and the upper limit");
  }

  std::vector<HeldReaction> reactions_of(const Mechanism& mechanism, bool on_surface) {
    const auto& all = mechanism.reactions;
    std::vector<HeldReaction> held;
    for (std::size_t k = 0; k < all.size(); ++k) {
      const bool generated = k > 0 && all[k].line == all[k - 1].line;
      if (generated) continue;
      HeldReaction reaction{.reaction = &all[k], .on_surface = on_surface};
      reaction.reversible = k + 1 < all.size() && all[k + 1].line == all[k].line;
      if (holds_reaction(reaction)) held.push_back(reaction);
    }
    return held;
  }

  bool holds_reaction(HeldReaction& held) {
    const Reaction& reaction = *held.reaction;
    const int NS = species_count(data_, held);
    int lost_species = 0;
    int partners = 0;
    phase_of(held).for_each(reaction.MAT, [&](int number, int sign) {
      if (number > NS) {
        held.partner = number - NS;
        partners += sign < 0 ? 1 : 0;
      } else if (!held_.holds(number)) {
        lost_species = number;
      }
    });
    const auto no = [&](std::string_view reason, std::string_view help = {},
                        Findings::Site kind = Findings::Site::current()) {
      return refuse(reaction.line, message("reaction ", yaml_equation(data_, held)), reason, help, kind);
    };
    if (lost_species > 0) return no(message("its species ", name_of(data_, lost_species), " cannot be held"));
    if (partners > 1) return no("it has more than one collision partner");
    if (reaction.MARK) return no("its mark * has no place in the format");
    if (reaction.IARRH >= non_arrhenius) return no("the meaning of its \"@\" record is the solver's own");
    if (!(held.on_surface ? holds_surface_rate(held, no) : holds_gas_rate(held, no))) return false;
    if (held.reversible && (reaction.ISTICK != 0 || reaction.IARRH == coverage_dependent)) {
      findings_.warning(reaction.line,
                        "the reverse of this reaction is not that of equilibrium; in the format it is",
                        "write the reverse as a reaction of its own");
    }
    return true;
  }

  template <class Refuse>
  bool holds_gas_rate(const HeldReaction& held, Refuse no) {
    const Reaction& reaction = *held.reaction;
    if (reaction.ISTICK != 0) return no("a sticking reaction of the gas phase");
    if (reaction.IARRH == coverage_dependent) return no("a rate in the gas phase that depends on a coverage");
    if (reaction.IARRH == falloff && held.partner == 0)
      return no("a falloff reaction without collision partner");
    if (reaction.FALL.back() != 0) {
      return no("its fifth falloff parameter is not 0", "the format has Troe's a, T3, T1 and T2 only");
    }
    if (reaction.FALL[6] == 0 && (reaction.FALL[3] != 0 || reaction.FALL[4] != 0 || reaction.FALL[5] != 0)) {
      return no("its T** of 0 adds 1 to the Fc of Troe",
                "the format has no such term: 1.0E+30 means that there is none");
    }
    if (held.partner == 0 || data_.efficiencies.of_others != 0) return true;
    const auto& row = at(data_.efficiencies.EFF, held.partner);
    if (std::find(row.begin(), row.end(), 0.0) == row.end()) return true;
    return no(
        message("species that the definition of ", partner_name(held.partner), " does not name count 0"),
        "in the format they count 1: write TROE below COLLISION EFFICIENCIES, and the zeros");
  }

  template <class Refuse>
  bool holds_surface_rate(const HeldReaction& held, Refuse no) {
    const Reaction& reaction = *held.reaction;
    if (held.partner > 0) return no("a surface reaction with a collision partner");
    if (reaction.IARRH == falloff) return no("a falloff reaction of the surface");
    if (reaction.ISTICK > data_.NGAS) return no("the species that sticks belongs to the surface");
    if (reaction.IARRH != coverage_dependent) return true;
    if (reaction.ICOV <= data_.NGAS) return no("the species whose coverage counts belongs to the gas phase");
    return held_.holds(reaction.ICOV) || no(message("the species ", name_of(data_, reaction.ICOV),
                                                    ", whose coverage counts, cannot be held"));
  }

  // Reactions of one form with the same educts and products, or in the other direction where one of them is
  // reversible; multiples count as the same.
  void mark_duplicates(std::vector<HeldReaction>& reactions) const {
    enum class Form { plain, three_body, falloff };
    using Key = std::pair<Form, std::pair<Side, Side>>;
    std::map<Key, std::vector<HeldReaction*>> groups;
    for (HeldReaction& held : reactions) {
      const bool has_falloff = held.reaction->IARRH == falloff;
      const Form form = has_falloff ? Form::falloff : held.partner > 0 ? Form::three_body : Form::plain;
      auto sides = sides_of(data_, held);
      reduce(sides);
      for (HeldReaction* const other : groups[{form, sides}]) held.duplicate = other->duplicate = true;
      for (HeldReaction* const other : groups[{form, {sides.second, sides.first}}]) {
        if (held.reversible || other->reversible) held.duplicate = other->duplicate = true;
      }
      groups[{form, sides}].push_back(&held);
    }
  }

  static void reduce(std::pair<Side, Side>& sides) {
    int divisor = 0;
    for (const Side* const side : {&sides.first, &sides.second}) {
      for (const auto& [number, count] : *side) divisor = std::gcd(divisor, count);
    }
    for (Side* const side : {&sides.first, &sides.second}) {
      for (auto& [number, count] : *side) count /= std::max(divisor, 1);
    }
  }

  const RunData& data_;
  bool skip_;
  Findings& findings_;
  HeldMechanism held_;
};

}  // namespace

std::pair<Side, Side> sides_of(const RunData& data, const HeldReaction& held) {
  std::pair<Side, Side> sides;
  phase_of(held).for_each(held.reaction->MAT, [&](int number, int sign) {
    if (number <= species_count(data, held)) ++(sign < 0 ? sides.first : sides.second)[number];
  });
  return sides;
}

std::string yaml_equation(const RunData& data, const HeldReaction& held) {
  const auto [educts, products] = sides_of(data, held);
  const std::string_view partner = held.partner == 0                 ? ""
                                   : held.reaction->IARRH == falloff ? " (+M)"
                                                                     : " + M";
  return message(side_text(data, educts), partner, held.reversible ? " <=> " : " => ",
                 side_text(data, products), partner);
}

HeldMechanism held_mechanism(const RunData& data, bool skip_unsupported, Findings& findings) {
  return Holder(data, skip_unsupported, findings).hold();
}

}  // namespace varpre
