#include "conditions/keyword_records.h"

namespace varpre {

bool value_is_readable(const ReadResult& result, std::string_view name, const Input& NFICON,
                       Findings& findings) {
  if (!result) {
    report_unreadable(findings, NFICON, result, name);
  } else {
    warn_of_columns(findings, NFICON, result, [&](int) { return name; });
  }
  return bool(result);
}

void report_unknown_keyword(const Section& section, const Place& heading, std::string_view word,
                            std::string_view kinds, const Nearest& nearest, std::string_view columns,
                            const Input& NFICON, Findings& findings) {
  if (report_heading_inside(section, heading, NFICON, findings)) return;
  const std::string meant = nearest.help();
  findings.error(here(NFICON, 1, static_cast<int>(word.size())),
                 trimmed(word).empty()
                     ? message("blank line in ", section.content, ", which END would close")
                     : message("unknown ", kinds, " '", trimmed(word), "' in ", section.content),
                 meant.empty() ? columns : std::string_view(meant));
}

}  // namespace varpre
