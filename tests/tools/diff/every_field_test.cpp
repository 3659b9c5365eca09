#include <cctype>

#include "files/store_reader.h"
#include "support/runs.h"
#include "tools/diff/comparison.h"
#include "tools/report/store_json.h"

namespace varpre {
namespace {

bool is_digit_at(const std::string& text, std::size_t at) {
  return at < text.size() && std::isdigit(static_cast<unsigned char>(text[at])) != 0;
}
bool is_letter_at(const std::string& text, std::size_t at) {
  return at < text.size() && std::isalpha(static_cast<unsigned char>(text[at])) != 0;
}

// Whether a character is the last digit of a whole number, or of the significand of a real.
bool ends_number(const std::string& text, std::size_t at) {
  const bool of_exponent = at > 2 && (text[at - 2] == '+' || text[at - 2] == '-') && text[at - 3] == 'E';
  return is_digit_at(text, at) && !is_digit_at(text, at + 1) && text[at + 1] != '.' && !of_exponent;
}

bool is_real(const std::string& text, std::size_t at) {
  while (is_digit_at(text, at)) --at;
  return text[at] == '.' && is_digit_at(text, at - 1);
}

// The labels of the second and third record of the options are no fields, and nobody reads them.
bool is_in_label(const std::string& text, std::size_t at) {
  const std::size_t line = text.rfind('\n', at) + 1;
  return text.compare(line, 10, " OPTIONS :") == 0 && at - line < 10 && line > text.find(" OPTIONS");
}

std::string changed(std::string text, std::size_t at) {
  char& c = text[at];
  c = is_digit_at(text, at) ? (c == '9' ? '0' : static_cast<char>(c + 1)) : c == 'X' ? 'Y' : 'X';
  return text;
}

std::string place(const std::string& text, std::size_t at) {
  const std::size_t line = text.rfind('\n', at) + 1;
  return text.substr(line, text.find('\n', at) - line) + " at column " + std::to_string(at - line + 1);
}

// A change of any field of a store file with all blocks is read, told as JSON and compared. What is no number
// of a record may end the reading instead: a count, a number in front, a label.
TEST(EveryField, IsReadToldAndCompared) {
  const std::string text = run(load_inputs("../docs/every-section")).store();
  const StoreData whole = read_store(text);
  ASSERT_EQ(whole.stopped, "");
  ASSERT_TRUE(whole.particles && !whole.two_dimensional.empty() && !whole.surface_conditions.empty());
  ASSERT_TRUE(compare(whole, whole).differences.empty());
  const auto told = json_of(whole);
  int fields = 0;
  for (std::size_t at = 1; at + 1 < text.size(); ++at) {
    const bool begins_word =
        is_letter_at(text, at) && !is_letter_at(text, at - 1) && !is_digit_at(text, at - 1);
    if ((!ends_number(text, at) && !begins_word) || is_in_label(text, at)) continue;
    ++fields;
    const StoreData other = read_store(changed(text, at));
    if (other.stopped.empty()) {
      EXPECT_TRUE(json_of(other) != told) << place(text, at);
      EXPECT_FALSE(compare(whole, other).differences.empty()) << place(text, at);
      EXPECT_FALSE(compare(other, whole).differences.empty()) << place(text, at);
    } else {
      EXPECT_FALSE(is_digit_at(text, at) && is_real(text, at)) << place(text, at) << ": " << other.stopped;
    }
  }
  EXPECT_GT(fields, 1000);
}

// The order of elements and particle species is told, and is no difference.
TEST(EveryField, OfElementsAndParticleSpeciesTheOrderIsTold) {
  StoreData before = read_store(run(load_inputs("../docs/every-section")).store());
  before.particles->names.emplace_back("N2(L)");
  before.particles->data.push_back(before.particles->data[0]);
  before.particles->data[1][5].value = 300;
  before.particles->fractions = {0.7, 0.3};
  StoreData after = before;
  std::swap(after.gas.elements[0], after.gas.elements[2]);
  std::swap(after.gas.element_masses[0], after.gas.element_masses[2]);
  for (std::size_t i = 0; i < after.gas.names.size(); ++i)
    std::swap(after.gas.mass_fractions[3 * i], after.gas.mass_fractions[3 * i + 2]);
  std::swap(after.particles->names[0], after.particles->names[1]);
  std::swap(after.particles->data[0], after.particles->data[1]);
  std::swap(after.particles->fractions[0], after.particles->fractions[1]);
  const Comparison comparison = compare(before, after);
  EXPECT_TRUE(comparison.differences.empty());
  EXPECT_EQ(comparison.notes, (std::vector<std::string>{"the elements stand in another order",
                                                        "the particle species stand in another order"}));
}

}  // namespace
}  // namespace varpre
