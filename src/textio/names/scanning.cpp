#include "textio/names/scanning.h"

#include <algorithm>
#include <functional>

#include "textio/channel/run_stop.h"

namespace varpre {
namespace {

bool contains(std::string_view set, char c) {
  return set.find(c) != std::string_view::npos;
}

bool separates(char c, std::string_view DELCH) {
  return !DELCH.empty() && (c == ' ' || contains(DELCH, c));
}

std::string_view view(std::span<const char> line) {
  return {line.data(), line.size()};
}

void remove_leading_blanks(std::span<char> line) {
  const auto first = std::find_if(line.begin(), line.end(), [](char c) { return c != ' '; });
  std::fill(std::copy(first, line.end(), line.begin()), line.end(), ' ');
}

void cut_comment(std::span<char> line) {
  std::fill(std::find(line.begin(), line.end(), '!'), line.end(), ' ');
}

[[noreturn]] void stop_at_leading_delimiter(std::span<const char> line, std::string_view DELCH,
                                            Listing& MSGFIL, const Place* record) {
  const int index = static_cast<int>(DELCH.find(line.front())) + 1;
  write_free(MSGFIL, index, view(line.first(1)), view(line));
  write_free(MSGFIL, std::string_view(" Delimiter found at the beginning of line in COMPDE"));
  if (record != nullptr) {
    MSGFIL.findings.error(locate(*record, view(line.first(1))),
                          message("'", view(line.first(1)), "' stands where a name is due"),
                          "a line begins with a name; a delimiter or flag stands behind one");
  }
  throw RunStop{};
}

// Drops every blank beside a blank or a delimiter; returns the length of what is left of the first `length`.
int squeeze_blanks(std::span<char> line, int length, std::string_view DELCH) {
  const auto closes_up = [&](char c) { return c == ' ' || contains(DELCH, c); };
  std::size_t kept = 0;
  for (std::size_t i = 0; i < static_cast<std::size_t>(length); ++i) {
    if (line[i] == ' ' && (closes_up(line[kept - 1]) || closes_up(line[i + 1]))) continue;
    line[kept++] = line[i];
  }
  std::fill(line.begin() + static_cast<std::ptrdiff_t>(kept), line.end(), ' ');
  return static_cast<int>(kept);
}

[[noreturn]] void stop_at_too_long(std::string_view record_text, std::string_view text, std::string_view what,
                                   int limit, Listing& MSGFIL, const Place* record) {
  write_free(MSGFIL, record_text, text);
  if (record != nullptr) {
    MSGFIL.findings.error(locate(*record, text), what,
                          message("at most ", counted(limit, "character"), " may stand here"));
  }
  throw RunStop{};
}

void split(std::string_view text, const NameLimits& limits, std::string_view DELCH, NameList& names,
           std::string_view delimiter_message, Listing& MSGFIL, const Place* record) {
  names.SYMS.clear();
  names.DELS.clear();
  while (!text.empty()) {
    const int delimiter = IFDE(text, DELCH);
    const std::string_view name = delimiter == 0 ? text : columns(text, 1, delimiter - 1);
    if (static_cast<int>(name.size()) > limits.LSYM) {
      const std::string length = counted(static_cast<int>(name.size()), "character");
      stop_at_too_long(" Name too long in SYDEL:", name, message("a name of ", length), limits.LSYM, MSGFIL,
                       record);
    }
    names.SYMS.push_back(name);
    text.remove_prefix(name.size());
    if (text.empty()) return;

    const std::string_view delimiters = columns(text, 1, ILDE(text, DELCH));
    if (static_cast<int>(delimiters.size()) > limits.LDEL) {
      stop_at_too_long(delimiter_message, delimiters, message("'", delimiters, "' stands behind a name"),
                       limits.LDEL, MSGFIL, record);
    }
    names.DELS.push_back(delimiters);
    text.remove_prefix(delimiters.size());
  }
}

}  // namespace

int IFDE(std::string_view text, std::string_view DELCH) {
  const auto found = std::find_if(text.begin(), text.end(), [&](char c) { return separates(c, DELCH); });
  return found == text.end() ? 0 : static_cast<int>(found - text.begin()) + 1;
}

int ILDE(std::string_view text, std::string_view DELCH) {
  const auto found = std::find_if(text.begin(), text.end(), [&](char c) { return !separates(c, DELCH); });
  return found == text.end() ? 1 : static_cast<int>(found - text.begin());
}

int COMPDE(std::span<char> line, std::string_view DELCH, Listing& MSGFIL, const Place* record) {
  const auto used = line.first(trimmed(view(line)).size());
  std::replace(used.begin(), used.end(), ',', ' ');
  remove_leading_blanks(used);
  cut_comment(used);
  const int NL = static_cast<int>(trimmed(view(used)).size());
  if (NL > 0 && contains(DELCH, line.front())) stop_at_leading_delimiter(line, DELCH, MSGFIL, record);
  return squeeze_blanks(used, NL, DELCH);
}

void SYDEL(std::string_view text, const NameLimits& limits, std::string_view DELCH, NameList& names,
           Listing& MSGFIL, const Place* record) {
  split(text, limits, DELCH, names, " Delim too long in SYDEL:", MSGFIL, record);
}

void RYDEL(std::string_view text, const NameLimits& limits, std::string_view DELCH, NameList& names,
           Listing& MSGFIL, const Place* record) {
  split(text, limits, DELCH, names, " Delim too long in RYDEL:", MSGFIL, record);
}

void GETNAM(std::span<char> line, const NameLimits& limits, std::string_view DELCH, NameList& names,
            Listing& MSGFIL, const Place* record) {
  const int NL = COMPDE(line, DELCH, MSGFIL, record);
  SYDEL(columns(view(line), 1, NL), limits, DELCH, names, MSGFIL, record);
}

std::array<int, 12> ISTDEC(const std::array<int, 12>& KIN, int n) {
  std::array<int, 12> KOUT = KIN;
  std::sort(KOUT.begin(), KOUT.begin() + n, std::greater<>());
  std::sort(KOUT.begin() + n, KOUT.begin() + 2 * n, std::greater<>());
  return KOUT;
}

}  // namespace varpre
