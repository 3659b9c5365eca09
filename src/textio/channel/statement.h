#pragma once

#include <string>

#include "textio/channel/input.h"
#include "textio/channel/run_stop.h"
#include "textio/channel/store_file.h"
#include "textio/record/record.h"

// The statements of the record notation on the files of a run.
namespace varpre {

// Whether every value of an output statement fitted its field.
inline bool all_fitted(record_detail::Written written) {
  if (written == record_detail::Written::not_finite) throw RunStop{RunStop::Ending::number_not_finite};
  return written == record_detail::Written::whole;
}

// Writes one statement: whole records, at the end of a text. A NaN or an infinity stops the run (RunStop,
// number_not_finite); no record of that statement is written then. False when a value did not fit its field.
template <FormatText Text, class... Items>
bool write(std::string& text, const Items&... items) {
  return all_fitted(record_detail::append_statement<Text>(text, true, items...));
}

// The same at the end of the store file.
template <FormatText Text, class... Items>
void write(StoreFile& store, const Items&... items) {
  if (!all_fitted(record_detail::append_statement<Text>(store.text, true, items...))) {
    store.has_asterisks = true;
  }
  store.pass_on();
}

// Where a read statement takes its records from.
inline record_detail::RecordSource records_of(Input& input) {
  const auto next = [](void* from, std::string_view& record) {
    return static_cast<Input*>(from)->next(record);
  };
  return {&input, next, input.record_number()};
}

// Reads one statement from the next record on. Every field up to the end of file or to the first unreadable
// field has been stored when it returns; the input stands behind the last record touched.
template <FormatText Text, class... Items>
[[nodiscard]] ReadResult read(Input& input, Items&&... items) {
  return record_detail::read_statement<Text>(records_of(input), items...);
}

}  // namespace varpre
