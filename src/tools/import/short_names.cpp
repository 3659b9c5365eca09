#include "tools/import/short_names.h"

#include <algorithm>
#include <set>
#include <utility>

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

// Gives names that are taken or cannot be held the first of their kind that is free.
class FreeNames {
 public:
  // Whether the name was free; it is taken now.
  bool take(const std::string& name) { return taken_.insert(in_capitals(name)).second; }

  // Takes the name cut, with a number where that is taken. The numbers that were tried before with the same
  // beginning are not tried again: thousands of names may differ behind the cut only.
  std::string take_like(const std::string& name) {
    const std::string text = raised(cleaned(name));
    std::string candidate = text.substr(0, longest);
    if (is_usable(candidate) && take(candidate)) return candidate;
    int first = 2;
    for (std::size_t digits = 1;; ++digits, first = 10 * (first == 2 ? 1 : first)) {
      const std::string begin = text.substr(0, longest - digits - 1);
      int& number = next_.try_emplace({digits, begin}, first).first->second;
      while (message(number).size() == digits) {
        candidate = message(begin, "_", number++);
        if (is_usable(candidate) && take(candidate)) return candidate;
      }
    }
  }

 private:
  std::set<std::string> taken_;
  std::map<std::pair<std::size_t, std::string>, int> next_;  // numbers, by their digits and what they follow
};

}  // namespace

std::string in_capitals(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), upper);
  return text;
}

std::map<std::string, SpeciesName> short_names(std::span<const std::string> names) {
  std::map<std::string, SpeciesName> result;
  FreeNames free;
  for (const bool in_capitals_already : {true, false}) {
    for (const std::string& name : names) {
      const bool now = (name == raised(name)) == in_capitals_already;
      if (now && is_usable(raised(name)) && free.take(name)) result[name] = raised(name);
    }
  }
  for (const std::string& name : names) {
    if (result.count(name) == 0) result[name] = free.take_like(name);
  }
  return result;
}

}  // namespace varpre
