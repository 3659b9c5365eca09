#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "textio/record/text.h"

// Formats of the record notation: the text of a format is a template argument, parsed while the program is
// compiled into a table of edits. Output walks it with `walk_output`, input in record.cpp.
namespace varpre {

// One step of a format.
struct Edit {
  enum class Kind : std::uint8_t {
    literal,   // 'text' or nHtext
    blanks,    // nX
    integer,   // Iw
    fixed,     // Fw.d
    exponent,  // Ew.d
    text,      // Aw or A
    scale,     // kP that does not stand directly before a real field
    slash,     // /
    colon,     // :
    open,      // r(
    close,     // )
    end        // the final closing parenthesis
  };
  static constexpr std::int16_t same_scale = -1000;

  Kind kind = Kind::end;
  std::int16_t repeat = 1;  // of a data descriptor or a group
  std::int16_t width = 0;   // w (0: A without width), n of nX, length of a literal
  std::int16_t value = 0;   // d, or the place of a literal in the table's texts, or of a group's opening edit
  std::int16_t scale = same_scale;  // k, where the factor is set here: kP alone or directly before a field
  std::int16_t gap = 0;             // n of nX directly behind a field

  constexpr bool takes_item() const {
    return kind == Kind::integer || kind == Kind::fixed || kind == Kind::exponent || kind == Kind::text;
  }
};

// A parsed format as the engine sees it.
struct FormatView {
  std::span<const Edit> edits;  // the last one is `end`
  const char* literals;
  int restart;   // where control goes back to while items remain: the last inner group, or the beginning
  bool reverts;  // whether it finds a data descriptor there; if not, the statement ends
};

// The text of a format as a template argument.
template <std::size_t N>
struct FormatText {
  char chars[N] = {};
  consteval FormatText(const char (&text)[N]) {  // NOLINT(google-explicit-constructor)
    for (std::size_t i = 0; i < N; ++i) chars[i] = text[i];
  }
  constexpr std::string_view view() const { return {chars, N - 1}; }
};

// Takes the edits of a format from left to right, repeats and groups unrolled.
class Walk {
 public:
  constexpr explicit Walk(FormatView format) : format_(format) {}

  // The next edit, never `open` or `close`; at the end of the format `end`, however often it is asked.
  constexpr const Edit& next() {
    if (repeats_left_ > 0) {
      --repeats_left_;
      return format_.edits[at_ - 1];
    }
    for (;;) {
      const Edit& edit = format_.edits[at_];
      if (edit.kind == Edit::Kind::end) return edit;
      ++at_;
      if (edit.kind == Edit::Kind::open) {
        passes_left_[static_cast<std::size_t>(depth_++)] = edit.repeat - 1;
      } else if (edit.kind == Edit::Kind::close) {
        int& left = passes_left_[static_cast<std::size_t>(depth_ - 1)];
        if (left > 0) {
          --left;
          at_ = static_cast<std::size_t>(edit.value) + 1;
        } else {
          --depth_;
        }
      } else {
        if (edit.takes_item()) repeats_left_ = edit.repeat - 1;
        return edit;
      }
    }
  }

  // Takes the edit that `next` returned as often again as its repeat count says, at most `most` times; how
  // often that is.
  constexpr int repeat(int most) {
    const int count = repeats_left_ < most ? repeats_left_ : most;
    repeats_left_ -= count;
    return count;
  }

  // Goes back to the restart point of the format; `next` must have returned `end`.
  constexpr void revert() { at_ = static_cast<std::size_t>(format_.restart); }

  static constexpr int deepest_group = 4;

 private:
  FormatView format_;
  std::size_t at_ = 0;
  int repeats_left_ = 0;
  int depth_ = 0;
  std::array<int, deepest_group> passes_left_{};
};

// Walks a format for output until the items are used up, and has the sink write: text(characters),
// blanks(count), end_record(), and fields(edit, scale, walk) for the next value, or as many of the same edit
// as it takes from the walk. left(): is there a value?
template <class Sink>
constexpr void walk_output(const FormatView& format, Sink& sink) {
  Walk walk(format);
  for (int scale = 0;;) {
    const Edit& edit = walk.next();
    switch (edit.kind) {
      case Edit::Kind::literal:
        sink.text({format.literals + edit.value, static_cast<std::size_t>(edit.width)});
        continue;
      case Edit::Kind::blanks: sink.blanks(edit.width); continue;
      case Edit::Kind::scale: scale = edit.scale; continue;
      case Edit::Kind::slash: sink.end_record(); continue;
      case Edit::Kind::end:
        if (!sink.left() || !format.reverts) break;
        sink.end_record();
        walk.revert();
        continue;
      default:  // a colon, or a descriptor: the statement ends here when no item is left
        if (!sink.left()) break;
        if (edit.kind == Edit::Kind::colon) continue;
        if (edit.scale != Edit::same_scale) scale = edit.scale;
        sink.fields(edit, scale, walk);
        continue;
    }
    return sink.end_record();
  }
}

// Columns of a record.
struct FieldColumns {
  int first = 0;  // from 1
  int width = 0;
  constexpr int last() const { return first + width - 1; }
};

// Where the field of an item, by its number from 1, stands in the first record of a format.
constexpr FieldColumns field_columns(const FormatView& format, int number) {
  Walk walk(format);
  for (int column = 1;;) {
    const Edit& edit = walk.next();
    if (edit.kind == Edit::Kind::slash || edit.kind == Edit::Kind::end) return {};
    if (edit.takes_item() && --number == 0) return {column, edit.width};
    column += edit.width + edit.gap;
  }
}

namespace format_detail {

// Reaching one of these while a format is parsed stops the compilation; the name is the message.
void format_error_opening_parenthesis_missing();
void format_error_closing_parenthesis_missing();
void format_error_text_after_closing_parenthesis();
void format_error_comma_missing();
void format_error_quote_not_closed();
void format_error_unknown_descriptor();
void format_error_width_missing();
void format_error_digits_missing_after_point();
void format_error_number_too_large();
void format_error_repeat_count_is_zero();
void format_error_repeat_count_not_allowed_here();
void format_error_groups_nested_too_deep();
void format_error_item_has_no_descriptor_of_its_type();

constexpr int widest_field = 300;

// The edits and literal characters of a format of at most N characters, with room to spare.
template <std::size_t N>
struct Parsed {
  std::array<Edit, N + 1> edits{};
  std::array<char, N> literals{};
  std::size_t edit_count = 0;
  std::size_t literal_count = 0;
  int restart = 0;
};

template <std::size_t N>
class Parser {
 public:
  constexpr explicit Parser(std::string_view text) : text_(text) {}

  constexpr Parsed<N> parse() {
    skip_blanks();
    if (!take('(')) format_error_opening_parenthesis_missing();
    parse_items(0);
    skip_blanks();
    if (at_ != text_.size()) format_error_text_after_closing_parenthesis();
    add({.kind = Edit::Kind::end});
    return out_;
  }

 private:
  // The items up to and including the closing parenthesis of a group.
  constexpr void parse_items(int depth) {
    bool separated = true;  // a comma may be left out before and after / and : and after kP
    for (;;) {
      skip_blanks();
      if (at_ == text_.size()) return format_error_closing_parenthesis_missing();
      if (take(')')) return;
      if (take(',')) {
        separated = true;
      } else if (take('/')) {
        add({.kind = Edit::Kind::slash});
        separated = true;
      } else if (take(':')) {
        add({.kind = Edit::Kind::colon});
        separated = true;
      } else {
        if (!separated) format_error_comma_missing();
        separated = parse_item(depth);
      }
    }
  }

  // One literal, descriptor, scale factor or group; true after a scale factor, which needs no comma behind
  // it.
  constexpr bool parse_item(int depth) {
    if (take('\'')) {
      parse_quoted();
      return false;
    }
    const bool negative = take('-');
    const int count = number(-1);
    const char letter = at_ < text_.size() ? upper(text_[at_++]) : ' ';
    if (letter == 'P') {
      if (count < 0) format_error_unknown_descriptor();
      add({.kind = Edit::Kind::scale, .scale = narrow(negative ? -count : count)});
      return true;
    }
    if (negative) format_error_repeat_count_not_allowed_here();
    switch (letter) {
      case 'X':
        if (count < 1) format_error_width_missing();
        if (last().takes_item() && last().repeat == 1 && last().gap + count <= widest_field) {
          last().gap = narrow(last().gap + count);
        } else {
          add({.kind = Edit::Kind::blanks, .width = narrow(count)});
        }
        break;
      case 'H': parse_hollerith(count); break;
      case '(': parse_group(repeat(count), depth + 1); break;
      case 'I': add({.kind = Edit::Kind::integer, .repeat = repeat(count), .width = width()}); break;
      case 'A': add({.kind = Edit::Kind::text, .repeat = repeat(count), .width = narrow(number(0))}); break;
      case 'F': add_real(Edit::Kind::fixed, count); break;
      case 'E': add_real(Edit::Kind::exponent, count); break;
      case '\'': format_error_repeat_count_not_allowed_here(); break;
      default: format_error_unknown_descriptor();
    }
    return false;
  }

  constexpr void parse_quoted() {
    const std::size_t start = out_.literal_count;
    for (;;) {
      if (at_ == text_.size()) return format_error_quote_not_closed();
      if (text_[at_] == '\'') {
        ++at_;
        if (at_ == text_.size() || text_[at_] != '\'') break;  // a doubled quote stands for one
      }
      out_.literals[out_.literal_count++] = text_[at_++];
    }
    add_literal(start);
  }

  constexpr void parse_hollerith(int count) {
    if (count < 1) format_error_width_missing();
    if (text_.size() - at_ < static_cast<std::size_t>(count)) format_error_quote_not_closed();
    const std::size_t start = out_.literal_count;
    for (int i = 0; i < count; ++i) out_.literals[out_.literal_count++] = text_[at_++];
    add_literal(start);
  }

  constexpr void parse_group(std::int16_t repeat, int depth) {
    if (depth > Walk::deepest_group) format_error_groups_nested_too_deep();
    const std::size_t open = out_.edit_count;
    add({.kind = Edit::Kind::open, .repeat = repeat});
    parse_items(depth);
    if (out_.edit_count == open + 2 && last().takes_item() && last().repeat == 1) {  // a field is no group
      out_.edits[open] = last();
      out_.edits[open].repeat = repeat;
      --out_.edit_count;
    } else {
      add({.kind = Edit::Kind::close, .value = narrow(static_cast<int>(open))});
    }
    if (depth == 1) out_.restart = static_cast<int>(open);
  }

  constexpr void add_real(Edit::Kind kind, int count) {
    const std::int16_t w = width();
    if (!take('.')) format_error_digits_missing_after_point();
    const int digits = number(-1);
    if (digits < 0) format_error_digits_missing_after_point();
    Edit edit{.kind = kind, .repeat = repeat(count), .width = w, .value = narrow(digits)};
    if (last().kind == Edit::Kind::scale) {
      edit.scale = last().scale;
      --out_.edit_count;
    }
    add(edit);
  }

  constexpr void add(Edit edit) { out_.edits[out_.edit_count++] = edit; }
  // The edit added last; at the beginning one that is none.
  constexpr Edit& last() {
    return out_.edits[out_.edit_count == 0 ? out_.edits.size() - 1 : out_.edit_count - 1];
  }
  constexpr void add_literal(std::size_t start) {
    add({.kind = Edit::Kind::literal,
         .width = narrow(static_cast<int>(out_.literal_count - start)),
         .value = narrow(static_cast<int>(start))});
  }

  constexpr std::int16_t width() {
    const int w = number(0);
    if (w == 0) format_error_width_missing();
    return narrow(w);
  }
  constexpr std::int16_t repeat(int count) {
    if (count == 0) format_error_repeat_count_is_zero();
    return narrow(count < 0 ? 1 : count);
  }

  // The digits that stand next, or `absent` when there are none.
  constexpr int number(int absent) {
    int value = absent;
    for (; at_ < text_.size() && is_digit(text_[at_]); ++at_) {
      value = (value < 0 ? 0 : value * 10) + (text_[at_] - '0');
      if (value > widest_field) format_error_number_too_large();
    }
    return value;
  }

  static constexpr std::int16_t narrow(int value) { return static_cast<std::int16_t>(value); }
  constexpr void skip_blanks() {
    while (at_ < text_.size() && text_[at_] == ' ') ++at_;
  }
  constexpr bool take(char c) {
    if (at_ == text_.size() || text_[at_] != c) return false;
    ++at_;
    return true;
  }

  std::string_view text_;
  std::size_t at_ = 0;
  Parsed<N> out_;
};

}  // namespace format_detail

// The table of the format Text, no larger than it needs to be.
template <FormatText Text>
class Format {
  static constexpr auto parsed = format_detail::Parser<sizeof(Text.chars)>(Text.view()).parse();

  template <std::size_t Count, class T, std::size_t Room>
  static constexpr auto first(const std::array<T, Room>& from) {
    std::array<T, Count> exact{};
    for (std::size_t i = 0; i < Count; ++i) exact[i] = from[i];
    return exact;
  }

  static constexpr bool reverts() {
    for (std::size_t i = static_cast<std::size_t>(parsed.restart); i < parsed.edit_count; ++i) {
      if (parsed.edits[i].takes_item()) return true;
    }
    return false;
  }

  static constexpr auto edits = first<parsed.edit_count>(parsed.edits);
  static constexpr auto literals = first<parsed.literal_count + 1>(parsed.literals);

 public:
  static constexpr FormatView view{edits, literals.data(), parsed.restart, reverts()};
};

}  // namespace varpre
