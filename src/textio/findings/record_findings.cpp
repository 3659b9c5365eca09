#include "textio/findings/record_findings.h"

#include <algorithm>

#include "textio/findings/odd_characters.h"
#include "textio/record/number_format.h"

// Findings about the columns of a record. All of this runs only when there is something to report.
namespace varpre {
namespace {

struct NumericField {
  Edit edit;
  int column;  // first, from 1
};

// The line as the user wrote it, from which the unit may hold a part only.
std::string line_of(const Input& input, int record) {
  return std::string(input.origin(record).text);
}

std::string columns_of(const std::string& line, int column, int width) {
  std::string field;
  for (int i = column; i < column + width; ++i) {
    const auto at = static_cast<std::size_t>(i) - 1;
    field += i >= 1 && at < line.size() ? line[at] : ' ';
  }
  return field;
}

// The numeric fields of the record of a statement in which field `number` stands; the format without
// reversion.
std::vector<NumericField> numeric_fields(const FormatView& format, int number) {
  std::vector<NumericField> fields;
  Walk walk(format);
  int column = 1;
  for (int field = 0;;) {
    const Edit& edit = walk.next();
    if (edit.kind == Edit::Kind::slash || edit.kind == Edit::Kind::end) {
      if (field >= number || edit.kind == Edit::Kind::end) return fields;
      fields.clear();
      column = 1;
    } else if (edit.kind != Edit::Kind::scale && edit.kind != Edit::Kind::colon) {
      if (edit.takes_item()) ++field;
      if (edit.takes_item() && edit.kind != Edit::Kind::text) fields.push_back({edit, column});
      column += edit.width + edit.gap;
    }
  }
}

bool reads(const Edit& edit, std::string_view field) {
  if (edit.kind == Edit::Kind::integer) return read_integer(field).has_value();
  return read_real(field, {edit.width, edit.value, 0}).has_value();
}

bool belongs_to_number(const std::string& line, int column) {
  const auto i = static_cast<std::size_t>(column) - 1;
  return column >= 1 && i < line.size() && line[i] != ' ';
}

// Tells when all numeric fields of the record would read, and hold whole numbers, if it were moved by some
// columns.
std::string shift_help(const std::string& line, const std::vector<NumericField>& fields) {
  for (const int shift : {1, -1, 2, -2, 3, -3}) {
    const bool all_read = std::all_of(fields.begin(), fields.end(), [&](const NumericField& field) {
      const int column = field.column + shift;
      const std::string text = columns_of(line, column, field.edit.width);
      const int behind = column + field.edit.width;
      const bool cut = text.back() != ' ' && belongs_to_number(line, behind) &&
                       line[static_cast<std::size_t>(behind) - 1] != '-';
      return !cut && !trimmed(text).empty() && reads(field.edit, text);
    });
    if (all_read && !fields.empty()) {
      return message("the columns look shifted by ", std::abs(shift),
                     shift > 0 ? " to the right" : " to the left");
    }
  }
  return {};
}

// The first character of a field that cannot belong to a number, counted from 0; 0 when each could.
int first_bad_character(std::string_view field, bool integer) {
  const std::string_view allowed = integer ? " +-0123456789" : " +-.0123456789EDed";
  const std::size_t unknown = field.find_first_not_of(allowed);
  const std::size_t exponent = field.find_first_of("EDed");
  const std::size_t second =
      exponent == std::string_view::npos ? exponent : field.find_first_of("EDed", exponent + 1);
  const std::size_t bad = std::min(unknown, second);
  return bad == std::string_view::npos ? static_cast<int>(field.find_first_not_of(' '))
                                       : static_cast<int>(bad);
}

std::string without_blanks_around(std::string_view text) {
  text = trimmed(text);
  return std::string(text.substr(std::min(text.find_first_not_of(' '), text.size())));
}

// What keeps a field from being a number: a character in or before it, shifted columns, a comma.
std::string unreadable_help(const std::string& line, const std::vector<NumericField>& fields, int column,
                            int width, bool integer) {
  const std::string until_its_end = columns_of(line, 1, column + width - 1);
  if (std::string help = odd_character_help(until_its_end, 1); !help.empty()) return help;
  const std::string odd =
      integer ? "" : odd_number_help(without_blanks_around(columns_of(line, column, width)), column);
  return odd.empty() ? shift_help(line, fields) : odd;
}

}  // namespace

void report_unreadable(Findings& findings, const Input& input, const ReadResult& result,
                       std::string_view name, Findings::Severity severity, std::string_view consequence,
                       Findings::Site kind) {
  const auto [number, record, column, width] = result.unreadable;
  const std::string line = line_of(input, record);
  const std::string field = columns_of(line, column, width);
  const std::vector<NumericField> fields = numeric_fields(*result.format, number);
  const auto found = std::find_if(fields.begin(), fields.end(),
                                  [&, c = column](const NumericField& f) { return f.column == c; });
  const bool integer = found != fields.end() && found->edit.kind == Edit::Kind::integer;
  const Place place{&input, record, column, width, column + first_bad_character(field, integer)};
  findings.report(
      severity, place,
      message("cannot read ", name, ": expected ", integer ? "an integer" : "a number", " in columns ",
              column, "-", column + width - 1, ", found '", without_blanks_around(field), "'", consequence),
      unreadable_help(line, fields, column, width, integer), kind);
}

namespace record_detail {

void warn_without_point(Findings& findings, const Input& input, const ReadResult& result,
                        std::string_view name, const Findings::Site& kind) {
  const auto [number, record, column, width] = result.without_point;
  const std::string field = columns_of(line_of(input, record), column, width);
  const std::size_t first = field.find_first_not_of(' ');
  const std::string written(trimmed(field).substr(first));
  double value = 0;
  for (const NumericField& f : numeric_fields(*result.format, number)) {
    if (f.column == column) value = read_real(field, {f.edit.width, f.edit.value, 0}).value_or(0);
  }
  findings.warning({&input, record, column + static_cast<int>(first), static_cast<int>(written.size())},
                   message(name, " is written without a decimal point: '", written, "' is read as ", value),
                   message("with a point: '", written, ".'"), kind);
}

void warn_of_scale(Findings& findings, const Input& input, const ReadResult& result, std::string_view name,
                   const Findings::Site& kind) {
  const auto& [number, record, column, width] = result.scaled;
  const std::string written = without_blanks_around(columns_of(line_of(input, record), column, width));
  findings.warning({&input, record, column, width},
                   message(name, " is written without an exponent: '", written, "' is divided by 10"),
                   message("write ", written, "E+00"), kind);
}

// The number around the border of two fields: of other digits that touch nothing can be said.
bool warn_of_cut(Findings& findings, const Input& input, const ReadResult& result, std::string_view name,
                 const Findings::Site& kind) {
  const FieldPlace& border = result.cut;
  const std::string line = line_of(input, border.record);
  const auto at = static_cast<std::size_t>(border.column) - 1;
  if (at >= line.size()) return false;
  const std::size_t begin = line.find_last_of(' ', at) + 1;
  const std::string text = line.substr(begin, line.find(' ', at) - begin);
  if (!read_free_real(text)) return false;
  findings.warning(
      {&input, border.record, static_cast<int>(begin) + 1, static_cast<int>(text.size())},
      message("'", text, "' runs over the end of its columns: ", name, " begins in column ", border.column),
      "the columns look shifted", kind);
  return true;
}

void warn_of_gap(Findings& findings, const Input& input, const ReadResult& result, std::string_view name,
                 const Findings::Site& kind) {
  const FieldPlace& gap = result.digit_in_gap;
  const bool sign = columns(input.origin(gap.record).text, gap.column, 1) == "-";
  findings.warning({&input, gap.record, gap.column, 1},
                   message(sign ? "the minus sign in column " : "the digit in column ", gap.column,
                           " is not read: it stands beside ", name),
                   "the columns look shifted", kind);
}

}  // namespace record_detail
}  // namespace varpre
