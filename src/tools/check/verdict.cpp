#include "tools/check/verdict.h"

#include <algorithm>
#include <cctype>

#include "textio/channel/file_name.h"
#include "textio/findings/odd_characters.h"
#include "tools/check/one_line_json.h"

namespace varpre {
namespace {

using Json = nlohmann::ordered_json;

const char* level_of(const FindingReport& finding) {
  return finding.severity == FindingReport::Severity::error ? "error" : "warning";
}

Json json_of(const CheckedFinding& finding, bool compared) {
  const FindingReport& report = finding.report;
  Json json{{"file", report.file},   {"line", report.line},   {"column", report.column},
            {"width", report.width}, {"caret", report.caret}, {"severity", level_of(report)},
            {"text", report.text},   {"help", report.help}};
  if (compared) json["known"] = finding.known;
  return json;
}

Json json_of(const RunCounts& counts, const RunResult& result) {
  return {{"gas_species", counts.gas_species},
          {"surface_species", counts.surface_species},
          {"particle_species", counts.particle_species},
          {"elements", counts.elements},
          {"gas_reactions", counts.gas_reactions},
          {"surface_reactions", counts.surface_reactions},
          {"errors", result.errors},
          {"warnings", result.warnings}};
}

bool is_lower(char c) {
  return c >= 'a' && c <= 'z';
}

// Whether a word is the last one of a quotation.
bool ends_quotation(std::string_view word) {
  const std::size_t last = word.find_last_not_of(",;:?)");
  return last != std::string_view::npos && last > 0 && word[last] == '\'';
}

// The kind of a finding, from the words of its text that do not vary: without what is quoted, names and
// numbers. "unknown species '0H'" is of the rule unknown-species.
std::string rule_of(std::string_view text) {
  constexpr int most_words = 8;
  std::string rule;
  bool quoted = false;
  for (int words = 0; !text.empty() && words < most_words;) {
    const std::string_view word = text.substr(0, text.find(' '));
    text.remove_prefix(std::min(word.size() + 1, text.size()));
    const std::string_view letters = word.substr(0, word.find_first_of(",;:?)"));
    quoted = quoted || word.starts_with('\'');
    if (!quoted && !letters.empty() && std::all_of(letters.begin(), letters.end(), is_lower)) {
      rule.append(rule.empty() ? "" : "-").append(letters);
      ++words;
    }
    quoted = quoted && !ends_quotation(word);
  }
  return rule.empty() ? "other" : rule;
}

// A path as a reference of a URI: relative, or with its scheme.
std::string uri_of(const std::string& directory, const std::string& file) {
  const std::string path = name_of((path_of(directory) / path_of(file)).lexically_normal());
  constexpr std::string_view plain = "-._~/";
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string uri = path.starts_with('/') ? "file://" : "";
  for (const char c : path) {
    const auto byte = static_cast<unsigned char>(c);
    if (std::isalnum(byte) != 0 || plain.find(c) != std::string_view::npos) {
      uri += c;
    } else {
      uri.append({'%', digits[byte / 16U], digits[byte % 16U]});
    }
  }
  return uri;
}

Json sarif_of(const std::string& directory, const CheckedFinding& finding, const std::string& rule) {
  const FindingReport& report = finding.report;
  Json place{{"artifactLocation", {{"uri", uri_of(directory, report.file)}}}};
  if (finding.first_character > 0) {
    place["region"] = {{"startLine", report.line},
                       {"startColumn", finding.first_character},
                       {"endColumn", finding.end_character}};
  }
  const std::string text = report.help.empty() ? report.text : report.text + " (" + report.help + ")";
  Json result{{"ruleId", rule},
              {"level", level_of(report)},
              {"message", {{"text", text}}},
              {"locations", Json::array({{{"physicalLocation", place}}})}};
  if (finding.known) result["suppressions"] = Json::array({{{"kind", "external"}}});
  return result;
}

}  // namespace

bool has_errors(const DirectoryRun& run) {
  return run.result.errors > 0 || run.result.store_state != "complete";
}

int new_warnings(const DirectoryRun& run) {
  return run.result.warnings - run.known;
}

std::string as_text(const DirectoryRun& run) {
  if (!run.fault.empty()) return {};
  const RunResult& result = run.result;
  const std::string& all = result.diagnostics;
  std::string text = all.substr(0, all.empty() ? 0 : all.rfind("varpre: "));
  const std::string name = for_terminal(run.directory);
  for (const std::string& gone : run.gone) {
    text += message(name, ": gone from the baseline: ", for_terminal(gone), "\n");
  }
  return text + message(name, ": ", summary(result.errors, new_warnings(run)),
                        run.known > 0 ? message(", ", run.known, " known") : "", "; store file ",
                        result.store_state, "\n");
}

std::string as_json(const DirectoryRun& run, bool compared) {
  Json json{{"directory", run.directory}};
  if (!run.fault.empty()) {
    json["fault"] = run.fault;
  } else {
    json["end"] = run.result.end == RunEnd::normal ? "normal" : "abnormal";
    json["store_file"] = run.result.store_state;
    json["counts"] = json_of(run.result.counts, run.result);
    json["findings"] = Json::array();
    for (const CheckedFinding& finding : run.findings) json["findings"].push_back(json_of(finding, compared));
    if (compared) json["gone"] = run.gone;
  }
  return one_line(json) + "\n";
}

void append_to_list(std::string& list, std::string_view objects) {
  list.append(list.empty() || objects.empty() ? "" : ",\n").append(objects);
}

SarifParts as_sarif(const DirectoryRun& run) {
  SarifParts parts;
  if (!run.fault.empty()) {
    parts.notifications = one_line({{"level", "error"}, {"message", {{"text", run.fault}}}});
    return parts;
  }
  for (const CheckedFinding& finding : run.findings) {
    const std::string rule = rule_of(finding.report.text);
    parts.rules[rule] = level_of(finding.report);
    append_to_list(parts.results, one_line(sarif_of(run.directory, finding, rule)));
  }
  return parts;
}

std::string sarif_begin() {
  return "{\"$schema\": \"https://json.schemastore.org/sarif-2.1.0.json\", \"version\": \"2.1.0\", \"runs\": [{\n"
         "\"columnKind\": \"unicodeCodePoints\", \"results\": [\n";
}

std::string sarif_end(const SarifParts& all, const std::string& version) {
  Json rules = Json::array();
  for (const auto& [rule, level] : all.rules) {
    std::string words = rule;
    std::replace(words.begin(), words.end(), '-', ' ');
    const Json text{{"text", words}};
    rules.push_back({{"id", rule},
                     {"shortDescription", text},
                     {"fullDescription", text},
                     {"help", text},
                     {"defaultConfiguration", {{"level", level}}}});
  }
  const Json driver{{"name", "varpre-check"}, {"version", version}, {"rules", rules}};
  return message("],\n\"invocations\": [{\"executionSuccessful\": ",
                 all.notifications.empty() ? "true" : "false", ", \"toolExecutionNotifications\": [\n",
                 all.notifications, "]}],\n\"tool\": {\"driver\": ", one_line(driver), "}}]}\n");
}

}  // namespace varpre
