#pragma once

#include <string_view>

#include "textio/channel/input.h"
#include "textio/findings/findings.h"
#include "textio/record/record.h"

// Findings about the columns of a record that was read.
namespace varpre {

// Reports the unreadable field of a statement, under its name: what stands in its columns, what was expected,
// and whether the columns look shifted. `consequence` goes on where that sentence ends.
void report_unreadable(Findings& findings, const Input& input, const ReadResult& result,
                       std::string_view name, Findings::Severity severity = Findings::Severity::error,
                       std::string_view consequence = {}, Findings::Site kind = Findings::Site::current());

namespace record_detail {
void warn_without_point(Findings& findings, const Input& input, const ReadResult& result,
                        std::string_view name, const Findings::Site& kind);
void warn_of_scale(Findings& findings, const Input& input, const ReadResult& result, std::string_view name,
                   const Findings::Site& kind);
// False, without a finding, where no number crosses the border of two fields.
bool warn_of_cut(Findings& findings, const Input& input, const ReadResult& result, std::string_view name,
                 const Findings::Site& kind);
void warn_of_gap(Findings& findings, const Input& input, const ReadResult& result, std::string_view name,
                 const Findings::Site& kind);
}  // namespace record_detail

// Reports what reads without error but was hardly meant, as a warning: of what is odd about the columns of a
// record that which explains most. name_of(number) is the name of a field.
template <class NameOf>
void warn_of_columns(Findings& findings, const Input& input, const ReadResult& result, NameOf name_of,
                     Findings::Site kind = Findings::Site::current()) {
  if (result.cut.number > 0 &&
      record_detail::warn_of_cut(findings, input, result, name_of(result.cut.number), kind))
    return;
  if (result.digit_in_gap.number > 0) {
    record_detail::warn_of_gap(findings, input, result, name_of(result.digit_in_gap.number), kind);
  } else if (result.without_point.number > 0) {
    record_detail::warn_without_point(findings, input, result, name_of(result.without_point.number), kind);
  } else if (result.scaled.number > 0) {
    record_detail::warn_of_scale(findings, input, result, name_of(result.scaled.number), kind);
  }
}

}  // namespace varpre
