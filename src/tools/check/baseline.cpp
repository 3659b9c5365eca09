#include "tools/check/baseline.h"

#include <cerrno>
#include <limits>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "textio/channel/file.h"
#include "textio/channel/file_name.h"
#include "textio/channel/file_system.h"
#include "tools/check/one_line_json.h"

namespace varpre {
namespace {

// A directory however it was written: "a/", "./a".
std::string plain_name(const std::string& directory) {
  std::string name = name_of(path_of(directory).lexically_normal());
  if (name.size() > 1 && name.ends_with('/')) name.pop_back();
  return name;
}

// "line 12", "lines 12-14" without the numbers.
std::string without_line_numbers(std::string_view text) {
  std::string plain;
  while (!text.empty()) {
    std::size_t taken = 1;
    for (const std::string_view word : {"line ", "lines "}) {
      if (!text.starts_with(word)) continue;
      taken = word.size();
      plain += word;
      text.remove_prefix(taken);
      text.remove_prefix(std::min(text.find_first_not_of("0123456789-"), text.size()));
      taken = 0;
    }
    plain += text.substr(0, taken);
    text.remove_prefix(taken);
  }
  return plain;
}

std::string in_utf8(const std::string& text) {
  return nlohmann::json::parse(one_line(text)).get<std::string>();
}

// How many times; no more than a file can have lines.
int count_in(const nlohmann::json& count) {
  const double number = count.get<double>();
  constexpr int most = std::numeric_limits<int>::max();
  return number >= most ? most : number >= 1 ? static_cast<int>(number) : 0;
}

}  // namespace

Baseline::Baseline(const std::string& file) {
  const auto opened = open_input(file);
  if (!opened) throw_system_error(ENOENT, file);
  int read_error = 0;
  const std::string text = read_to_end(*opened, file, read_error);
  if (read_error != 0) throw_system_error(read_error, file);
  int number = 0;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    ++number;
    try {
      const auto line = nlohmann::json::parse(text.begin() + static_cast<std::ptrdiff_t>(at),
                                              text.begin() + static_cast<std::ptrdiff_t>(end));
      warnings_[{line.at("directory"), line.at("file"), line.at("text")}] = count_in(line.at("count"));
    } catch (const nlohmann::json::exception&) {
      throw std::runtime_error(message(file, ":", number, ": no line of a baseline"));
    }
    at = end + 1;
  }
}

std::vector<std::string> Baseline::compare(const std::string& directory,
                                           std::vector<CheckedFinding>& findings) const {
  const std::string name = in_utf8(plain_name(directory));
  Warnings left;
  for (auto at = warnings_.lower_bound({name, {}, {}}); at != warnings_.end() && get<0>(at->first) == name;
       ++at) {
    left.insert(*at);
  }
  for (CheckedFinding& finding : findings) {
    const FindingReport& report = finding.report;
    if (report.severity != FindingReport::Severity::warning) continue;
    const auto found = left.find({name, report.file, in_utf8(without_line_numbers(report.text))});
    finding.known = found != left.end() && found->second-- > 0;
  }
  std::vector<std::string> gone;
  for (const auto& [key, count] : left) {
    if (count > 0)
      gone.push_back(
          message(get<1>(key), ": ", get<2>(key), count > 1 ? message(" (", count, " times)") : ""));
  }
  return gone;
}

void Baseline::accept(const DirectoryRun& run) {
  for (const CheckedFinding& finding : run.findings) {
    const FindingReport& report = finding.report;
    if (report.severity != FindingReport::Severity::warning) continue;
    ++warnings_[{in_utf8(plain_name(run.directory)), report.file,
                 in_utf8(without_line_numbers(report.text))}];
  }
}

void Baseline::accept(const Baseline& other) {
  for (const auto& [key, count] : other.warnings_) warnings_[key] += count;
}

void Baseline::write(const std::string& file) const {
  file_system::Status earlier;
  if (file_system::status_of_name(file, earlier) == 0 && earlier.kind == file_system::Status::Kind::other)
    throw std::runtime_error(file + ": not a regular file");
  FreshFile output(file);
  for (const auto& [key, count] : warnings_) {
    const auto& [directory, input, text] = key;
    output.write(one_line(nlohmann::ordered_json{
                     {"directory", directory}, {"file", input}, {"text", text}, {"count", count}}) +
                 "\n");
  }
  output.sync();
  output.take_place();
}

}  // namespace varpre
