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

nlohmann::ordered_json json_of(const NamedStore& store) {
  nlohmann::ordered_json json = json_of(store.data);
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
  const std::string data = embedded(
      {{"version", VARPRE_VERSION},
       {"store", json_of(store)},
       {"other", other ? json_of(*other) : nlohmann::ordered_json()},
       {"comparison", other ? json_of_comparison(other->data, store.data) : nlohmann::ordered_json()}});
  return filled(page_parts::html, {{"/*style*/", page_parts::css},
                                   {"/*data*/", data},
                                   {"/*charts*/", page_parts::charts},
                                   {"/*script*/", page_parts::js}});
}

}  // namespace varpre
