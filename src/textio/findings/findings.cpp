#include "textio/findings/findings.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <functional>

#include "textio/findings/odd_characters.h"

namespace varpre {
namespace {

constexpr std::size_t longest_excerpt = 160;  // of a line
constexpr std::string_view margin = "    ";

// A part of a line, and which of its columns it begins with.
struct Excerpt {
  std::string_view text;
  std::size_t first = 0;  // characters of the line before it
};

Excerpt excerpt(std::string_view line, int column) {
  if (line.size() <= longest_excerpt) return {line};
  const std::size_t before = longest_excerpt / 2;
  const auto at = std::min(static_cast<std::size_t>(column), line.size());
  const std::size_t first = at > before ? at - before : 0;
  return {line.substr(first, longest_excerpt), first};
}

// The line, and below it the marks under the columns of a place.
std::string marked_line(std::string_view line, const Place& place) {
  auto [text, first] = excerpt(line, place.column);
  std::string shown(margin);
  std::string marks(margin);
  const auto caret = static_cast<std::size_t>(place.column_to_show());
  const auto begin = static_cast<std::size_t>(place.column);
  const auto end = std::max(begin + static_cast<std::size_t>(place.width), caret + 1);
  for (std::size_t column = first + 1; column < end || !text.empty();) {
    const bool tab = text.starts_with('\t');
    const ShownCharacter c =
        text.empty() || tab ? ShownCharacter{tab ? "\t" : "", 1} : show_first_character(text);
    const std::size_t next = column + c.bytes;
    if (column < end) {
      const char mark = column >= begin ? '~' : tab ? '\t' : ' ';
      marks += caret >= column && caret < next ? '^' : mark;
      if (c.text.size() > c.bytes) marks.append(c.text.size() - 1, mark);
    }
    shown += c.text;
    text.remove_prefix(std::min(c.bytes, text.size()));
    column = next;
  }
  return shown + "\n" + marks + "\n";
}

Origin origin_of(const Place& place) {
  return place ? place.unit->origin(place.record) : Origin{};
}

// Columns count characters there, as they are shown.
std::string header(const Origin& origin, int column) {
  if (origin.file.empty()) return "varpre: ";
  return message(for_terminal(origin.file), ":", origin.line, ":", character_column(origin.text, column),
                 ": ");
}

std::size_t hash_of_record(const Place& place) {
  constexpr std::size_t odd = 0x9E3779B97F4A7C15;
  return (reinterpret_cast<std::uintptr_t>(place.unit) ^ static_cast<std::size_t>(place.record) * odd) * odd;
}

// Of what makes a finding the same as another of its kind.
std::size_t hash_of(const Place& place, std::string_view what) {
  std::size_t hash = std::hash<std::string_view>{}(what);
  const auto mix = [&](std::size_t value) {
    constexpr std::size_t odd = 0x9E3779B97F4A7C15;
    hash = (hash ^ value) * odd;
    hash ^= hash >> 29;
  };
  mix(reinterpret_cast<std::uintptr_t>(place.unit));
  for (const int part : {place.record, place.column, place.width, place.caret}) {
    mix(static_cast<std::size_t>(part));
  }
  return hash;
}

// Twice the edits (insert, delete, replace, exchange of neighbours) that turn one text into the other; a
// character that looks like the right one counts half.
int edit_distance(std::string_view a, std::string_view b) {
  constexpr std::size_t longest = 24;
  if (a.size() > longest || b.size() > longest) return longest;
  std::array<std::array<int, longest + 1>, longest + 1> d{};
  for (std::size_t i = 0; i <= a.size(); ++i) {
    for (std::size_t j = 0; j <= b.size(); ++j) {
      if (i == 0 || j == 0) {
        d[i][j] = 2 * static_cast<int>(i + j);
        continue;
      }
      const int replaced = LSAME(a[i - 1], b[j - 1]) ? 0 : look_alike(a[i - 1], b[j - 1]) ? 1 : 2;
      d[i][j] = std::min({d[i - 1][j] + 2, d[i][j - 1] + 2, d[i - 1][j - 1] + replaced});
      if (i > 1 && j > 1 && LSAME(a[i - 1], b[j - 2]) && LSAME(a[i - 2], b[j - 1])) {
        d[i][j] = std::min(d[i][j], d[i - 2][j - 2] + 2);
      }
    }
  }
  return d[a.size()][b.size()];
}

// Tells the first character of a name from that of another one which looks the same: "the letter O, not the
// digit 0". Nothing when the names do not look the same, or differ in letter case only.
std::string look_alikes(std::string_view name, std::string_view meant) {
  if (!std::equal(name.begin(), name.end(), meant.begin(), meant.end(), look_alike)) return {};
  const auto kind = [](char c) {
    return message(is_digit(c)                  ? "the digit "
                   : LSAME(c, '`') || c == '\'' ? "the stroke "
                                                : "the letter ",
                   std::string_view(&c, 1));
  };
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (!LSAME(name[i], meant[i])) return message(kind(meant[i]), ", not ", kind(name[i]));
  }
  return {};
}

}  // namespace

Place locate(const Place& record, std::string_view text) {
  if (!record) return record;
  const Origin origin = record.unit->origin(record.record);
  const std::string_view line = origin.text;
  text = trimmed(text);
  const auto belongs_to_names = [&](std::size_t i) {
    constexpr std::string_view separators = " \t,+=<>%!*";
    return i < line.size() && separators.find(line[i]) == std::string_view::npos;
  };
  Place place = record;
  for (std::size_t at = line.find(text); at != std::string_view::npos && !text.empty();
       at = line.find(text, at + 1)) {
    place.column = static_cast<int>(at) + 1;
    place.width = static_cast<int>(text.size());
    const bool stands_alone = (at == 0 || !belongs_to_names(at - 1)) && !belongs_to_names(at + text.size());
    if (stands_alone) break;
  }
  return place;
}

std::size_t Findings::kind_of(const Site& site) {
  const auto same = [&](const Kind& kind) {
    return kind.site.line == site.line && std::string_view(kind.site.file) == site.file;
  };
  const auto found = std::find_if(kinds_.begin(), kinds_.end(), same);
  const auto number = static_cast<std::size_t>(found - kinds_.begin());
  if (found == kinds_.end()) kinds_.push_back({site, {}});
  return number;
}

Findings::Entry* Findings::add(Severity severity, const Place& place, std::string_view what,
                               const Site& site) {
  if (place.unit == nullptr) return add_entry(severity, place, what, site);
  const Input& file = place.unit->file();
  if (severity == Severity::error && fault_of(file)) {
    tell_fault(file, *fault_of(file));
    return nullptr;
  }
  const auto judged = faults_.find(&file);
  if (judged != faults_.end() && judged->second) return nullptr;
  return add_entry(severity, place, what, site);
}

Findings::Entry* Findings::add_entry(Severity severity, const Place& place, std::string_view what,
                                     const Site& site) {
  const std::size_t number = kind_of(site);
  auto& taken = kinds_[number].taken;
  if (!taken.insert(hash_of(place, what)).second) return nullptr;
  ++(severity == Severity::error ? errors_ : warnings_);
  const bool shown = taken.size() <= most_shown;
  if (!shown && !keep_all) return nullptr;
  records_[hash_of_record(place)].entry = entries_.size();
  return &entries_.emplace_back(Entry{severity, shown, false, number, place, std::string(what), {}});
}

void Findings::raise(Entry& entry, Severity severity) {
  if (severity != Severity::error || entry.severity == Severity::error) return;
  entry.severity = Severity::error;
  --warnings_;
  ++errors_;
}

const std::optional<FileFault>& Findings::fault_of(const Input& file) {
  static const std::optional<FileFault> none;
  if (!judge_file) return none;
  const auto [judged, is_new] = faults_.try_emplace(&file);
  if (is_new) judged->second = judge_file(file);
  return judged->second;
}

// What was told of the file before goes: it follows from the fault as well.
void Findings::tell_fault(const Input& file, const FileFault& fault) {
  const Site site = Site::current();
  const auto follows_from_it = [&](const Entry& entry) {
    return !entry.folded && entry.severity == Severity::warning && entry.place &&
           &entry.place.unit->file() == &file;
  };
  for (Entry& entry : entries_) {
    if (!follows_from_it(entry)) continue;
    entry.folded = true;
    --warnings_;
  }
  const Place place{&file, fault.record};
  if (Entry* const entry = add_entry(Severity::error, place, fault.what, site)) entry->help = fault.help;
}

bool Findings::report_fault_of(const Input& file) {
  const std::optional<FileFault>& fault = fault_of(file.file());
  if (fault) tell_fault(file.file(), *fault);
  return fault.has_value();
}

bool Findings::follows(const Place& cause, std::string_view noun, Severity severity) {
  const auto found = cause.unit == nullptr ? records_.end() : records_.find(hash_of_record(cause));
  if (found == records_.end()) return false;
  auto& counts = found->second.counts;
  const auto count =
      std::find_if(counts.begin(), counts.end(), [&](const auto& c) { return c.first == noun; });
  if (count == counts.end()) {
    counts.emplace_back(noun, 1);
  } else {
    ++count->second;
  }
  raise(entries_[found->second.entry], severity);
  return true;
}

bool Findings::is_told(const Place& place) const {
  return place && records_.count(hash_of_record(place)) > 0;
}

Place Findings::place_of(std::string_view beginning) const {
  const auto found = std::find_if(entries_.begin(), entries_.end(),
                                  [&](const Entry& entry) { return entry.what.starts_with(beginning); });
  if (found != entries_.end()) return found->place;
  const auto with = told_with_.find(std::string(beginning));
  return with == told_with_.end() ? Place{} : with->second;
}

void Findings::extend_help(const Place& place, std::string_view text) {
  constexpr std::size_t longest = 300;
  const auto found = records_.find(hash_of_record(place));
  if (found == records_.end()) return;
  std::string& help = entries_[found->second.entry].help;
  if (help.size() + text.size() <= longest) help += text;
}

bool Findings::settle(std::string_view beginning, const Place& place, std::string_view help) {
  const auto found = std::find_if(entries_.begin(), entries_.end(), [&](const Entry& entry) {
    return entry.place == whole(*place.unit) && entry.what.starts_with(beginning);
  });
  if (found == entries_.end()) return false;
  found->place = place;
  found->help = help;
  records_[hash_of_record(place)].entry = static_cast<std::size_t>(found - entries_.begin());
  return true;
}

// "<what>; 24 reactions, 1 fit follow from it"
std::string Findings::text_of(std::size_t entry) const {
  std::string text = entries_[entry].what;
  const auto found = records_.find(hash_of_record(entries_[entry].place));
  if (found == records_.end() || found->second.entry != entry || found->second.counts.empty()) return text;
  std::string list;
  int total = 0;
  for (const auto& [noun, count] : found->second.counts) {
    list += message(list.empty() ? "; " : ", ", counted(count, noun));
    total += count;
  }
  return message(text, list, total == 1 ? " follows" : " follow", " from it");
}

// A character before the end of the place that cannot be seen, or is not what it looks like, explains more
// than anything else.
std::string Findings::help_of(const Entry& entry) const {
  const Place& place = entry.place;
  if (place.record == 0) return entry.help;
  std::string_view line = place.unit->origin(place.record).text;
  const auto end = static_cast<std::size_t>(std::max({place.column + place.width - 1, place.caret, 0}));
  line = line.substr(0, std::min(end, line.find('!')));
  const std::string help = deceptive_character_help(line);
  return help.empty() ? entry.help : help;
}

std::string Findings::render() const {
  std::vector<std::size_t> shown(kinds_.size());
  std::string all;
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    const Entry& entry = entries_[i];
    if (!entry.shown || entry.folded) continue;
    const Place& place = entry.place;
    const Origin origin = origin_of(place);
    all += header(origin, place.column_to_show());
    all +=
        message(entry.severity == Severity::error ? "error: " : "warning: ", for_terminal(text_of(i)), "\n");
    if (place.record > 0) all += marked_line(origin.text, place);
    if (const std::string help = help_of(entry); !help.empty()) {
      all += message(margin, "help: ", for_terminal(help), "\n");
    }
    const std::size_t more = kinds_[entry.kind].taken.size() - most_shown;
    if (++shown[entry.kind] == most_shown && more > 0) {
      all += message(margin, "(", static_cast<int>(more), " more of this kind)\n");
    }
  }
  return all;
}

std::string Findings::render(std::string_view state) const {
  if (errors_ + warnings_ == 0) return {};
  return render() + message("varpre: ", summary(errors_, warnings_), "; store file ", state, "\n");
}

std::vector<FindingReport> Findings::reports() const {
  std::vector<FindingReport> reports;
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    const Entry& entry = entries_[i];
    if (entry.folded) continue;
    const Place& place = entry.place;
    const Origin origin = origin_of(place);
    reports.push_back({.severity = entry.severity,
                       .file = std::string(origin.file),
                       .line = origin.line,
                       .column = place.column,
                       .width = place.record > 0 ? place.width : 0,
                       .caret = place.column_to_show(),
                       .text = text_of(i),
                       .help = help_of(entry)});
  }
  return reports;
}

void Findings::leave_out(const std::vector<bool>& which) {
  for (std::size_t i = 0; i < entries_.size(); ++i) entries_[i].shown = entries_[i].shown && !which[i];
}

std::string part_of_message(std::string_view text) {
  return std::string(text);
}

std::string part_of_message(int value) {
  return std::to_string(value);
}

namespace {

std::string in_digits(double value, int most_digits) {
  if (std::isnan(value)) return "undefined";
  std::array<char, 32> text;
  const auto end =
      std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, most_digits)
          .ptr;
  return {text.data(), end};
}

}  // namespace

std::string part_of_message(double value) {
  return in_digits(value, 6);
}

std::string about(double value) {
  std::array<char, 32> text;  // with three digits, which are read again
  const auto end =
      std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::scientific, 2).ptr;
  std::from_chars(text.data(), end, value);
  return in_digits(value, 6);
}

double percent(double fraction) {
  return std::round(1000 * fraction) / 10;
}

std::string counted(int count, std::string_view noun) {
  if (count != 1 && noun.ends_with('y')) return message(count, " ", noun.substr(0, noun.size() - 1), "ies");
  return message(count, " ", noun, count == 1 ? "" : "s");
}

std::string summary(int errors, int warnings) {
  if (errors + warnings == 0) return "no findings";
  if (errors == 0) return counted(warnings, "warning");
  return warnings == 0 ? counted(errors, "error")
                       : message(counted(errors, "error"), ", ", counted(warnings, "warning"));
}

Nearest::Nearest(std::string_view name) : name_(trimmed(name)), plain_name_(in_plain_characters(name_)) {
  plain_name_.erase(0, plain_name_.find_first_not_of(' '));
  plain_name_.resize(trimmed(plain_name_).size());
}

Nearest& Nearest::offer(std::string_view candidate) {
  candidate = trimmed(candidate);
  const int distance = edit_distance(plain_name_, candidate);
  const int length = static_cast<int>(std::max(plain_name_.size(), candidate.size()));
  const bool looks_the_same =
      std::equal(plain_name_.begin(), plain_name_.end(), candidate.begin(), candidate.end(), look_alike);
  if (distance < distance_ && (3 * distance <= 2 * length || looks_the_same) && candidate != name_) {
    distance_ = distance;
    best_ = candidate;
  }
  return *this;
}

std::string Nearest::help() const {
  if (best_.empty()) return {};
  const std::string answer = message("did you mean '", best_, "'?");
  const std::string other = look_alikes(plain_name_, best_);
  return other.empty() ? answer : message(answer, " (", other, ")");
}

}  // namespace varpre
