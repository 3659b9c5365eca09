#include "tools/import/short_names.h"

#include <algorithm>
#include <set>

#include "files/keywords.h"
#include "files/partners.h"
#include "files/words.h"
#include "textio/findings/findings.h"
#include "textio/record/number_format.h"

namespace varpre {
namespace {

constexpr std::size_t longest = sizeof(SpeciesName);

// Characters that neither a reaction line nor a species list nor the start of a record takes for another
// thing.
bool is_of_names(char c) {
  constexpr std::string_view others = "+=<>%!,*#$@'\"";
  return c > ' ' && c <= '~' && others.find(c) == std::string_view::npos;
}

// Whether a record that begins with the name is taken for another thing, or the name for a collision partner.
bool has_another_meaning(const std::string& name) {
  return words::opens_another_record(name) || is_keyword_of<MixtureSection>(name) ||
         std::ranges::any_of(MCOLLI, [&](std::string_view partner) { return same_word(partner, name); });
}

bool is_usable(const std::string& name) {
  return !name.empty() && name.size() <= longest && std::all_of(name.begin(), name.end(), is_of_names) &&
         !has_another_meaning(name) && !read_free_real(name);
}

// The name with a stroke for each character that does not belong into names, made unlike a keyword.
std::string cleaned(const std::string& name) {
  std::string text;
  for (const char c : name) {
    const bool inside_character = (static_cast<unsigned char>(c) & 0xC0) == 0x80;  // of several bytes
    if (!inside_character) text += is_of_names(c) ? c : '_';
  }
  return text.empty() || has_another_meaning(text) || read_free_real(text) ? message("x", text) : text;
}

// In capitals, but for what stands in parentheses: CH2(s). The program compares some names letter by letter.
std::string raised(const std::string& name) {
  const std::size_t end = std::min(name.find('('), name.size());
  return in_capitals(name.substr(0, end)) + name.substr(end);
}

// The first name of this kind that is free: cut, and with a number where that is taken.
std::string free_name(const std::string& name, const std::set<std::string>& taken) {
  const std::string text = raised(cleaned(name));
  std::string candidate = text.substr(0, longest);
  for (int number = 2; taken.count(in_capitals(candidate)) > 0 || !is_usable(candidate); ++number) {
    const std::string end = message("_", number);
    candidate = text.substr(0, longest - end.size()) + end;
  }
  return candidate;
}

}  // namespace

std::string in_capitals(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), upper);
  return text;
}

std::map<std::string, SpeciesName> short_names(std::span<const std::string> names) {
  std::map<std::string, SpeciesName> result;
  std::set<std::string> taken;
  for (const bool in_capitals_already : {true, false}) {
    for (const std::string& name : names) {
      const bool now = (name == raised(name)) == in_capitals_already;
      if (now && is_usable(raised(name)) && taken.insert(in_capitals(name)).second)
        result[name] = raised(name);
    }
  }
  for (const std::string& name : names) {
    if (result.count(name) > 0) continue;
    const std::string chosen = free_name(name, taken);
    taken.insert(in_capitals(chosen));
    result[name] = chosen;
  }
  return result;
}

}  // namespace varpre
