#include "tools/report/store_json.h"

#include <algorithm>

#include "conditions/options.h"
#include "conditions/two_dimensional_options.h"
#include "mechanism/reaction.h"

namespace varpre {
namespace {

using Json = nlohmann::ordered_json;

template <class Names>
Json texts(const Names& names) {
  Json list = Json::array();
  for (const auto& name : names) list.push_back(std::string(trimmed(name.view())));
  return list;
}

Json json_of(const StoredValue& value);
Json json_of(const StoredThermo& thermo);
Json json_of(const StoredComplexReaction& r);
Json json_of(const StoredPhotoReaction& r);
Json json_of(const StoredMixture& m);

template <class Item>
Json list_of_objects(const std::vector<Item>& items) {
  Json list = Json::array();
  for (const Item& item : items) list.push_back(json_of(item));
  return list;
}

Json json_of(const StoredValue& value) {
  return {{"name", value.name}, {"value", value.value}};
}

// The slots with their names; those of the two-dimensional options where these have replaced the others.
Json options_of(const StoreData& data) {
  const OptionNames& names = data.two_dimensional.empty() ? option_names() : two_dimensional_option_names();
  Json list = Json::array();
  for (std::size_t slot = 0; slot < data.options.size(); ++slot) {
    const std::string name(trimmed(names[slot]));
    list.push_back(
        {{"slot", slot + 1}, {"name", name.starts_with("---") ? "" : name}, {"value", data.options[slot]}});
  }
  return list;
}

Json json_of(const StoredThermo& thermo) {
  return {{"lower", thermo.lower}, {"upper", thermo.upper}, {"limits", thermo.limits}};
}

Json json_of(const StoredPhase& phase) {
  return {{"species", texts(phase.names)},          {"molar_masses", phase.molar_masses},
          {"elements", texts(phase.elements)},      {"element_masses", phase.element_masses},
          {"mass_fractions", phase.mass_fractions}, {"thermo", list_of_objects(phase.thermo)}};
}

Json json_of(const StoredTransport& t) {
  return {{"conductivity", t.conductivity},
          {"monoatomic_conductivity", t.monoatomic_conductivity},
          {"viscosity", t.viscosity},
          {"diffusion", t.diffusion},
          {"well_depths", t.well_depths},
          {"diameters", t.diameters},
          {"dipole_moments", t.dipole_moments},
          {"polarizabilities", t.polarizabilities},
          {"collision_numbers", t.collision_numbers}};
}

// What a species number of a reaction stands for.
class NumberedNames {
 public:
  NumberedNames(const StoreData& data, bool surface) : names_(data.gas.names) {
    if (surface) names_.insert(names_.end(), data.surface.names.begin(), data.surface.names.end());
  }
  std::string operator()(int number) const {
    if (number < 1) return "?";
    if (number <= count_of(names_)) return std::string(trimmed(at(names_, number).view()));
    const int partner = number - count_of(names_);
    return partner <= partner_count ? std::string(at(MCOLLI, partner)) : "?";
  }

 private:
  std::vector<SpeciesName> names_;
};

using Sides = std::array<std::vector<int>, 2>;

Sides sides_of(const StoredReaction& reaction, bool surface) {
  const std::size_t half = surface ? 6 : 3;
  Sides sides;
  for (std::size_t slot = 0; slot < 2 * half; ++slot) {
    if (reaction.species[slot] != 0) sides[slot / half].push_back(reaction.species[slot]);
  }
  return sides;
}

// Partners come last, as one writes them.
std::string side_text(std::vector<int> numbers, const NumberedNames& name) {
  std::sort(numbers.begin(), numbers.end());
  std::string text;
  for (const int number : numbers) text += (text.empty() ? "" : " + ") + name(number);
  return text;
}

// For each reaction the number, from 0, of the one behind it that is its reverse; -1: none, or itself one.
std::vector<int> reverses_of(const std::vector<Sides>& sides) {
  std::vector<int> reverses(sides.size(), -1);
  for (std::size_t i = 0; i + 1 < sides.size(); ++i) {
    if (sides[i][0] != sides[i + 1][1] || sides[i][1] != sides[i + 1][0]) continue;
    reverses[i] = static_cast<int>(i) + 1;
    ++i;
  }
  return reverses;
}

Json reactions_of(const StoreData& data, const StoredMechanism& mechanism, bool surface) {
  const NumberedNames name(data, surface);
  std::vector<Sides> sides;
  sides.reserve(mechanism.reactions.size());
  for (const StoredReaction& r : mechanism.reactions) sides.push_back(sides_of(r, surface));
  const std::vector<int> reverses = reverses_of(sides);
  Json list = Json::array();
  for (std::size_t i = 0; i < sides.size(); ++i) {
    const StoredReaction& r = mechanism.reactions[i];
    const std::string arrow = reverses[i] >= 0 ? " = " : " > ";
    Json json{{"equation", side_text(sides[i][0], name) + arrow + side_text(sides[i][1], name)},
              {"educts", sides[i][0]},
              {"products", sides[i][1]},
              {"A", r.A},
              {"b", r.b},
              {"E", r.E},
              {"form", r.form}};
    if (reverses[i] >= 0) json["reverse"] = reverses[i];
    if (std::any_of(r.values.begin(), r.values.end(), [](double v) { return v != 0; }))
      json["values"] = r.values;
    if (std::abs(r.form) == falloff) json["falloff"] = r.falloff;
    if (r.sticking != 0) json["sticking"] = r.sticking;
    if (r.coverage != 0) json["coverage"] = r.coverage;
    if (i < mechanism.pair_codes.size()) json["pair_code"] = mechanism.pair_codes[i];
    list.push_back(json);
  }
  return list;
}

Json json_of(const StoreData& data, const StoredMechanism& mechanism, bool surface, bool pointers) {
  Json json{{"reactions", reactions_of(data, mechanism, surface)},
            {"partners", mechanism.partners},
            {"inert", mechanism.inert}};
  if (pointers) json["pointers"] = mechanism.pointers;
  return json;
}

Json efficiencies_of(const StoreData& data) {
  Json json = Json::object();
  for (std::size_t c = 0; c < data.efficiencies.size(); ++c)
    json[std::string(MCOLLI[c])] = data.efficiencies[c];
  return json;
}

Json json_of(const StoredComplexReaction& r) {
  return {{"coefficients", r.coefficients},
          {"species", r.species},
          {"orders", r.orders},
          {"A", r.rate[0]},
          {"b", r.rate[1]},
          {"E", r.rate[2]}};
}

Json json_of(const StoredPhotoReaction& r) {
  return {{"species", r.species}, {"rate", r.rate}};
}

Json json_of(const StoredMixture& m) {
  return {{"T", m.temperature},
          {"H", m.enthalpy},
          {"P", m.pressure},
          {"gas", m.gas_fractions},
          {"surface", m.surface_fractions},
          {"PHI", m.given[0]},
          {"G", m.given[1]},
          {"v", m.given[2]},
          {"FREQ", m.given[3]},
          {"FAC", m.given[4]},
          {"OMEG", m.given[5]}};
}

Json json_of(const StoredParticles& particles) {
  return {{"grid", particles.grid},
          {"species", texts(particles.names)},
          {"data", particles.data},
          {"fractions", particles.fractions}};
}

Json everything(const StoreData& data, bool pointers) {
  Json json{{"complete", data.complete}, {"lines", data.lines}};
  if (!data.stopped.empty()) json["stopped"] = {{"line", data.stopped_at}, {"reason", data.stopped}};
  json["options"] = options_of(data);
  json["gas"] = json_of(data.gas);
  json["transport"] = json_of(data.transport);
  json["surface"] = json_of(data.surface);
  json["surface_conditions"] = list_of_objects(data.surface_conditions);
  json["gas_mechanism"] = json_of(data, data.gas_mechanism, false, pointers);
  json["efficiencies"] = efficiencies_of(data);
  json["surface_mechanism"] = json_of(data, data.surface_mechanism, true, pointers);
  json["complex_reactions"] = list_of_objects(data.complex_reactions);
  json["photo_reactions"] = list_of_objects(data.photo_reactions);
  json["mixtures"] = list_of_objects(data.mixtures);
  json["flame_conditions"] = list_of_objects(data.flame_conditions);
  json["two_dimensional"] = list_of_objects(data.two_dimensional);
  json["flags"] = data.flags;
  if (data.particles) json["particles"] = json_of(*data.particles);
  return json;
}

}  // namespace

nlohmann::ordered_json json_of(const StoreData& data) {
  return everything(data, true);
}

nlohmann::ordered_json json_for_page(const StoreData& data) {
  return everything(data, false);
}

}  // namespace varpre
