#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "textio/findings/findings.h"
#include "textio/findings/odd_characters.h"

namespace varpre {
namespace {

TEST(Suggestions, NameWhatLooksTheSameBeforeWhatIsMisspelt) {
  const std::vector<std::string_view> known{"H2",  "H2O",  "O",      "NO",     "CLO",
                                            "M''", "CH2O", "Energy", "PConst", "AR"};
  struct {
    const char* name;
    const char* help;
  } const rows[] = {
      {"H20", "did you mean 'H2O'? (the letter O, not the digit 0)"},
      {"0", "did you mean 'O'? (the letter O, not the digit 0)"},
      {"n0", "did you mean 'NO'? (the letter O, not the digit 0)"},
      {"C1O", "did you mean 'CLO'? (the letter L, not the digit 1)"},
      {"M\"", "did you mean 'M'''?"},
      {"M``", "did you mean 'M'''? (the stroke ', not the stroke `)"},
      {"M\xE2\x80\x99\xE2\x80\x99", "did you mean 'M'''?"},
      {"H\xE2\x82\x82O", "did you mean 'H2O'?"},
      {"H2O\t", "did you mean 'H2O'?"},
      {"energy", "did you mean 'Energy'?"},
      {"Enregy", "did you mean 'Energy'?"},
      {"CH20", "did you mean 'CH2O'? (the letter O, not the digit 0)"},
      {"Eneryg2", "did you mean 'Energy'?"},  // two edits
      {"Enexyz", ""},                         // three
      {"N2", ""},                             // one, which is half of the name
      {"H2O", "did you mean 'H2'?"},          // itself is no suggestion
  };
  for (const auto& row : rows) EXPECT_EQ(Nearest(row.name).offer_all(known).help(), row.help) << row.name;
}

TEST(Suggestions, NameCharactersThatCannotBeSeen) {
  EXPECT_EQ(odd_character_help("H2+O2", 1), "");
  EXPECT_EQ(odd_character_help("O2\t", 5), "column 7 holds a tab (U+0009): write blanks");
  EXPECT_EQ(odd_character_help("\xC2\xA0O2", 5), "column 5 holds a no-break space (U+00A0): write blanks");
  EXPECT_EQ(odd_character_help("O2\xA0", 1), "column 3 holds a no-break space (U+00A0): write blanks");
  EXPECT_EQ(odd_character_help("\xE2\x88\x92"
                               "1.5",
                               1),
            "column 1 holds a minus sign (U+2212): write -");
  EXPECT_EQ(odd_character_help("1\x96", 1), "column 2 holds a dash (U+2013): write -");
  EXPECT_EQ(odd_character_help("\xEF\xBC\x97", 1), "column 1 holds a wide character (U+FF17): write 7");
  EXPECT_EQ(odd_character_help("\xC3\xA9\xD0\x9E", 1),
            "column 1 holds a character that is not ASCII (U+00E9): delete it");
  EXPECT_EQ(deceptive_character_help("\xC3\xA9\xD0\x9E"),
            "column 2 holds a Cyrillic letter (U+041E): write O");
  EXPECT_EQ(odd_character_help("a\xF0\x9F\x98\x80", 1),
            "column 2 holds a character that is not ASCII (U+1F600): delete it");
  EXPECT_EQ(odd_character_help("\xE2\x88", 1),
            "column 1 holds a character that is not ASCII (U+00E2): delete it");
}

TEST(Suggestions, NameWhatKeepsANumberFromBeingOne) {
  EXPECT_EQ(odd_number_help("3,87E+04", 1), "write a point instead of the comma: 3.87E+04");
  EXPECT_EQ(odd_number_help("1.O", 1), "write 1.0 in digits");
  EXPECT_EQ(odd_number_help("l.5", 1), "write 1.5 in digits");
  EXPECT_EQ(odd_number_help("1.5\t", 30), "column 33 holds a tab (U+0009): write blanks");
  EXPECT_EQ(odd_number_help("abc", 1), "");
}

// The fault of a file takes the place of what was told of its lines, and of nothing else.
TEST(Findings, KeepThoseWithoutAPlaceWhenAFileIsAtFault) {
  Input faulty(1, "MEC", Storage::memory);
  Input sound(2, "INP", Storage::memory);
  Findings findings;
  findings.judge_file = [&](const Input& file) {
    return &file == &faulty ? std::optional(FileFault{0, "the file MEC is empty", {}}) : std::nullopt;
  };
  findings.warning({}, "of nothing");
  findings.warning(whole(sound), "of another file");
  findings.warning(whole(faulty), "of the file");
  findings.error(whole(faulty), "an error of it");
  EXPECT_EQ(
      findings.render(),
      "varpre: warning: of nothing\nINP:1:1: warning: of another file\nMEC:1:1: error: the file MEC is empty\n");
}

}  // namespace
}  // namespace varpre
