#pragma once

#include <string>
#include <string_view>

// Characters that cannot be seen, or that look like others.
namespace varpre {

// A text in the characters that were probably meant: a blank for a tab or a no-break space, "-" for other
// dashes, "'" for other strokes and quotation marks, digits for raised, lowered and wide ones.
std::string in_plain_characters(std::string_view text);

// Names the first character of a text that cannot be seen or is not what it looks like, and what to write
// instead; nothing when there is none. The text begins in `column`, and columns count characters.
std::string odd_character_help(std::string_view text, int column);
// The same, but only of characters that nobody can tell from the right ones, or see: not of those that are
// merely no ASCII. The text begins in column 1.
std::string deceptive_character_help(std::string_view text);

// The column, from 1, of the character that a column of bytes belongs to.
int character_column(std::string_view line, int column);

// The same for a text that should be a number, where a comma may stand for the point, O for 0, and l for 1.
std::string odd_number_help(std::string_view text, int column);

// A character as a terminal may show it: controls, also those of the direction of writing, by their number,
// "<U+001B>".
struct ShownCharacter {
  std::string text;
  std::size_t bytes;  // of the character
};
ShownCharacter show_first_character(std::string_view text);
// The same for a whole text.
std::string for_terminal(std::string_view text);

// Whether two characters look alike: 0 and O; 1, I and l; strokes. Letter case does not count.
bool look_alike(char a, char b);

}  // namespace varpre
