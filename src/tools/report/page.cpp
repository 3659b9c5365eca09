#include "tools/report/page.h"

#include <array>
#include <ctime>
#include <filesystem>
#include <sys/stat.h>

#include "page_parts.h"
#include "textio/findings/odd_characters.h"
#include "tools/diff/comparison_text.h"
#include "tools/report/store_json.h"

namespace varpre {
namespace {

// As data inside a page: nothing in it ends the script it stands in.
std::string embedded(const nlohmann::ordered_json& json) {
  const std::string text = json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
  std::string safe;
  safe.reserve(text.size());
  for (const char c : text) c == '<' ? safe.append("\\u003c") : safe.append(1, c);
  return safe;
}

// When a file was last written, in local time; empty where that cannot be said.
std::string date_of(const std::string& file) {
  struct stat about {};
  std::tm date{};
  if (stat(file.c_str(), &about) != 0 || localtime_r(&about.st_mtime, &date) == nullptr) return "";
  std::array<char, 32> text{};
  const std::size_t size = std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S %z", &date);
  return {text.data(), size};
}

// A list of objects as the names of their members, and the values of each in that order, null where it has
// none: the page opens the sooner the fewer its characters are.
nlohmann::ordered_json packed(const nlohmann::ordered_json& objects) {
  nlohmann::ordered_json members = nlohmann::ordered_json::object();
  for (const auto& object : objects) members.update(object);
  nlohmann::ordered_json names = nlohmann::ordered_json::array();
  for (const auto& [name, value] : members.items()) names.push_back(name);
  nlohmann::ordered_json rows = nlohmann::ordered_json::array();
  for (const auto& object : objects) {
    nlohmann::ordered_json& row = rows.emplace_back(nlohmann::ordered_json::array());
    for (const auto& name : names) row.push_back(object.value(name, nlohmann::ordered_json()));
  }
  return {{"names", names}, {"rows", rows}};
}

nlohmann::ordered_json json_of(const NamedStore& store) {
  nlohmann::ordered_json json = json_of(store.data);
  for (const char* mechanism : {"gas_mechanism", "surface_mechanism"})
    json[mechanism]["reactions"] = packed(json[mechanism]["reactions"]);
  const auto normal = [](const std::string& name) {
    return (std::filesystem::absolute(name) / "").lexically_normal().parent_path();
  };
  json["name"] = for_terminal(normal(store.name).filename().string());
  json["path"] = for_terminal(store.name);
  json["directory"] = for_terminal(normal(store.file).parent_path().string());
  json["date"] = date_of(store.file);
  return json;
}

// What the program found, and which reactions the page draws together.
nlohmann::ordered_json json_of_comparison(const StoreData& before, const StoreData& after) {
  const Comparison comparison = compare(before, after);
  nlohmann::ordered_json json = json_of(comparison);
  json["gas_reactions"] = comparison.gas_reactions;
  json["surface_reactions"] = comparison.surface_reactions;
  return json;
}

// The diffusion coefficients of a store, most of a large one: they stand behind the script, which goes on
// meanwhile.
nlohmann::ordered_json taken_diffusion(nlohmann::ordered_json& store) {
  if (store.is_null()) return nullptr;
  nlohmann::ordered_json diffusion = nlohmann::ordered_json::array();
  diffusion.swap(store["transport"]["diffusion"]);
  return diffusion;
}

// Puts each part in place of its mark.
std::string filled(std::string_view page,
                   std::initializer_list<std::pair<std::string_view, std::string_view>> parts) {
  std::string text;
  for (const auto& [mark, part] : parts) {
    const std::size_t at = page.find(mark);
    text.append(page.substr(0, at)).append(part);
    page.remove_prefix(at + mark.size());
  }
  return text.append(page);
}

}  // namespace

std::string page_of(const NamedStore& store, const std::optional<NamedStore>& other) {
  nlohmann::ordered_json data{
      {"version", VARPRE_VERSION},
      {"store", json_of(store)},
      {"other", other ? json_of(*other) : nlohmann::ordered_json()},
      {"comparison", other ? json_of_comparison(other->data, store.data) : nlohmann::ordered_json()}};
  const auto diffusion =
      nlohmann::ordered_json::array({taken_diffusion(data["store"]), taken_diffusion(data["other"])});
  return filled(page_parts::html, {{"/*style*/", page_parts::css},
                                   {"/*data*/", embedded(data)},
                                   {"/*charts*/", page_parts::charts},
                                   {"/*script*/", page_parts::js},
                                   {"/*diffusion*/", embedded(diffusion)}});
}

}  // namespace varpre
