#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "files/options.h"
#include "textio/channel/input.h"
#include "textio/channel/store_file.h"
#include "textio/findings/listing.h"

namespace varpre {

// One field of an option record: a name (six characters) and a value, absent when it cannot be read.
struct OptionField {
  OptionName name;
  std::optional<int> value;
  Place place;               // the name and the value
  bool value_given = false;  // not left blank
  bool runs_over = false;    // a digit stands in the column behind the value

  bool ends_section() const { return name.first(3) == "END"; }
};
constexpr int fields_per_record = 7;
using OptionRecord = std::array<OptionField, fields_per_record>;

// Reads the seven fields of the next record; false at end of file.
[[nodiscard]] bool read_option_record(Input& NFICON, OptionRecord& record);

// Reports, once for all its fields, that the record last read has options beside their columns: then it is
// true. Else warns of values that run into the next column.
bool examine_columns(const OptionRecord& record, const OptionNames& options, const Input& NFICON,
                     Findings& findings);

// Reports an option field whose value cannot be read.
void report_option_value(const OptionField& field, Findings& findings);

// The option that a misspelt name probably means.
std::string nearest_option(const OptionName& name, const OptionNames& options);

// Lists the slots that are not 0 as pairs (name, value), five to a record; the last record holds the pairs
// that are left, or none.
void list_options(const OptionNames& names, const OptionVector& IOPT, Listing& MSGFIL);

// Reads the option section at the beginning of NFICON: title records, the heading, option records up to END.
// Lists titles and options, fills IOPT (a value of 0 or none sets 1) and `titles`, and writes the option
// block to the store file.
//
// False, after its message: a wrong heading, an option record that cannot be read, or no END (no block then);
// an unknown option (the others are taken, listed and written).
[[nodiscard]] bool GENOPT(Input& NFICON, Listing& MSGFIL, StoreFile& NFISTO, OptionVector& IOPT,
                          std::vector<std::string>& titles);

}  // namespace varpre
