#include <cstdio>
#include <exception>
#include <random>

#include "../bench/limit_case.h"
#include "broken/case.h"

// Writes working directories to try the same program on many machines: the faulty inputs of tests/broken, and
// generated cases, of which one in three is whole, one has digits of numbers changed, so that any size
// occurs, and one has whole lines and characters out of place.
namespace varpre {
namespace {

class Random {
 public:
  explicit Random(std::uint64_t seed) : bits_(seed) {}

  std::size_t below(std::size_t limit) { return static_cast<std::size_t>(bits_() % limit); }
  bool one_in(std::size_t many) { return below(many) == 0; }

 private:
  std::mt19937_64 bits_;
};

// Digits behind a point and in exponents: species, elements and counts stay what they are.
void change_digits(std::string& text, std::size_t one_in, Random& random) {
  bool changeable = false;
  char before = ' ';
  for (char& c : text) {
    const bool digit = c >= '0' && c <= '9';
    const bool exponent = (c == '+' || c == '-') && before == 'E';
    changeable = c == '.' || exponent || (digit && changeable);
    before = c;
    if (digit && changeable && random.one_in(one_in)) c = static_cast<char>('0' + random.below(10));
  }
}

void damage(std::string& text, Random& random) {
  constexpr std::string_view characters = "0159.+-=()/!# ENDehM\t\r\xC3";
  const std::size_t place = random.below(text.size());
  const std::size_t line = text.rfind('\n', place) + 1;
  const std::size_t next = text.find('\n', place) + 1;
  switch (random.below(5)) {
    case 0: text.erase(line, next - line); break;
    case 1: text.insert(line, text.substr(line, next - line)); break;
    case 2: text.erase(place, 1); break;
    case 3: text.insert(place, 1, characters[random.below(characters.size())]); break;
    default: text[place] = characters[random.below(characters.size())];
  }
}

varpre_bench::Case generated_case(std::uint64_t seed) {
  Random random(seed);
  varpre_bench::CaseSize size;
  size.species = 20 + static_cast<int>(random.below(50));
  size.reactions = 20 + static_cast<int>(random.below(200));
  size.entries = size.species + static_cast<int>(random.below(40));
  size.seed = seed;
  varpre_bench::Case result = varpre_bench::generate(size);
  const std::size_t rare = seed % 2 == 0 ? 30 : 1000;
  for (std::string* text : {&result.INP, &result.MEC, &result.THERMO, &result.MOLNEW}) {
    if (seed % 3 == 1) change_digits(*text, rare, random);
    for (std::size_t i = random.below(4); seed % 3 == 2 && i > 0; --i) damage(*text, random);
  }
  return result;
}

void write_cases(const std::filesystem::path& to, std::uint64_t generated) {
  for (const std::string& name : directories_with("case", "broken")) {
    std::filesystem::create_directories(to / name);
    for (const auto& [file, text] : Case(name).inputs) {
      std::ofstream(to / name / file, std::ios::binary) << text;
    }
  }
  for (std::uint64_t seed = 1; seed <= generated; ++seed) {
    write_case(generated_case(seed), to / "generated" / std::to_string(seed));
  }
}

}  // namespace
}  // namespace varpre

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fputs("usage: varpre_portable_cases DIRECTORY GENERATED\n", stderr);
    return 1;
  }
  try {
    varpre::write_cases(argv[1], std::stoull(argv[2]));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "varpre_portable_cases: %s\n", error.what());
    return 1;
  }
}
