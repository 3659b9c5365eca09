#include "tools/report/store_json.h"

#include <algorithm>

#include "files/options.h"
#include "files/partners.h"
#include "files/store_equations.h"
#include "mechanism/reaction.h"
#include "textio/record/record.h"

namespace varpre {
namespace {

using Json = nlohmann::ordered_json;

// --- any stored struct, by its fields ---

Json json_of_item(double value) {
  return value;
}
Json json_of_item(int value) {
  return value == absent_integer ? Json() : Json(value);
}
template <std::size_t N>
Json json_of_item(const Text<N>& text) {
  return trimmed(text.view());
}
Json json_of_item(const StoredValue& value) {
  return {{"name", value.name}, {"value", value.value}, {"unit", value.unit}, {"meaning", value.meaning}};
}
template <class S>
Json json_of_item(const S& stored);
template <class T, std::size_t N>
Json json_of_item(const std::array<T, N>& items);

template <class T>
Json json_of_item(const std::vector<T>& items) {
  Json list = Json::array();
  for (const T& item : items) list.push_back(json_of_item(item));
  return list;
}
template <class T, std::size_t N>
Json json_of_item(const std::array<T, N>& items) {
  Json list = Json::array();
  for (const T& item : items) list.push_back(json_of_item(item));
  return list;
}
template <class S>
Json json_of_item(const S& stored) {
  Json json;
  S::fields([&](const char* name, auto member, const char*, const char*) {
    json[name] = json_of_item(stored.*member);
  });
  return json;
}

// --- what is told in another form than it is stored ---

// The slots with their names; those of the two-dimensional options where these have replaced the others.
Json options_of(const StoreData& data) {
  const OptionNames& names = data.two_dimensional.empty() ? NTOPT : N2TOPT;
  Json list = Json::array();
  for (std::size_t slot = 0; slot < data.options.size(); ++slot) {
    const std::string name(trimmed(names[slot]));
    list.push_back({{"slot", slot + 1},
                    {"name", name.starts_with("---") ? "" : name},
                    {"value", json_of_item(data.options[slot])}});
  }
  return list;
}

// Without the members that mean nothing in its rate form.
Json json_of_reaction(const StoredReaction& r, const Sides& sides, const std::string& equation) {
  Json json{{"equation", equation}, {"educts", json_of_item(sides[0])}, {"products", json_of_item(sides[1])}};
  json.update(json_of_item(r));
  json.erase("species");
  if (std::all_of(r.values.begin(), r.values.end(), [](double v) { return v == 0; })) json.erase("values");
  if (std::abs(r.form) != falloff &&
      std::all_of(r.falloff.begin(), r.falloff.end(), [](double v) { return v == 0; }))
    json.erase("falloff");
  if (r.sticking == 0) json.erase("sticking");
  if (r.coverage == 0) json.erase("coverage");
  return json;
}

Json reactions_of(const StoreData& data, const StoredMechanism& mechanism, StoredPhaseOf phase) {
  const NumberedNames name(data, phase);
  std::vector<Sides> sides;
  sides.reserve(mechanism.reactions.size());
  for (const StoredReaction& r : mechanism.reactions) sides.push_back(sides_of(r, phase));
  const std::vector<int> reverses = reverses_of(sides);
  Json list = Json::array();
  for (std::size_t i = 0; i < sides.size(); ++i) {
    const std::string arrow = reverses[i] >= 0 ? " = " : " > ";
    Json json = json_of_reaction(mechanism.reactions[i], sides[i],
                                 side_text(sides[i][0], name) + arrow + side_text(sides[i][1], name));
    if (reverses[i] >= 0) json["reverse"] = reverses[i];
    if (i < mechanism.pair_codes.size()) json["pair_code"] = json_of_item(mechanism.pair_codes[i]);
    list.push_back(json);
  }
  return list;
}

Json json_of_mechanism(const StoreData& data, const StoredMechanism& mechanism, StoredPhaseOf phase) {
  return {{"reactions", reactions_of(data, mechanism, phase)},
          {"partners", mechanism.partners},
          {"inert", mechanism.inert},
          {"pointers", json_of_item(mechanism.pointers)}};
}

Json efficiencies_of(const StoreData& data) {
  Json json = Json::object();
  for (std::size_t c = 0; c < data.efficiencies.size(); ++c)
    json[std::string(MCOLLI[c])] = json_of_item(data.efficiencies[c]);
  return json;
}

// Each value of a particle species by itself, and what the values are once.
Json particles_of(const StoredParticles& particles) {
  Json json = json_of_item(particles);
  json["items"] = Json::array();
  for (std::size_t i = 0; i < particles.data.size(); ++i) {
    Json values = Json::array();
    for (const StoredValue& value : particles.data[i]) {
      values.push_back(value.value);
      if (i == 0)
        json["items"].push_back({{"name", value.name}, {"unit", value.unit}, {"meaning", value.meaning}});
    }
    json["data"][i] = values;
  }
  return json;
}

// What the members of a struct are.
template <class S>
Json items_of() {
  Json json;
  S::fields([&](const char* name, auto, const char* unit, const char* meaning) {
    json[name] = {{"unit", unit}, {"meaning", meaning}};
  });
  return json;
}

}  // namespace

nlohmann::ordered_json json_of(const StoreData& data) {
  Json json{{"complete", data.complete}, {"lines", data.lines}};
  if (!data.stopped.empty()) json["stopped"] = {{"line", data.stopped_at}, {"reason", data.stopped}};
  json["options"] = options_of(data);
  json["gas"] = json_of_item(data.gas);
  json["transport"] = json_of_item(data.transport);
  json["surface"] = json_of_item(data.surface);
  json["surface_conditions"] = json_of_item(data.surface_conditions);
  json["gas_mechanism"] = json_of_mechanism(data, data.gas_mechanism, StoredPhaseOf::gas);
  json["efficiencies"] = efficiencies_of(data);
  json["surface_mechanism"] = json_of_mechanism(data, data.surface_mechanism, StoredPhaseOf::surface);
  json["complex_reactions"] = json_of_item(data.complex_reactions);
  json["photo_reactions"] = json_of_item(data.photo_reactions);
  json["mixtures"] = json_of_item(data.mixtures);
  json["flame_conditions"] = json_of_item(data.flame_conditions);
  json["two_dimensional"] = json_of_item(data.two_dimensional);
  json["flags"] = json_of_item(data.flags);
  if (data.particles) json["particles"] = particles_of(*data.particles);
  json["items"] = {{"phase", items_of<StoredPhase>()},
                   {"thermo", items_of<StoredThermo>()},
                   {"transport", items_of<StoredTransport>()},
                   {"mechanism", items_of<StoredMechanism>()},
                   {"reaction", items_of<StoredReaction>()},
                   {"complex_reaction", items_of<StoredComplexReaction>()},
                   {"photo_reaction", items_of<StoredPhotoReaction>()},
                   {"mixture", items_of<StoredMixture>()},
                   {"particles", items_of<StoredParticles>()}};
  return json;
}

}  // namespace varpre
