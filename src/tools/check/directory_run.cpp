#include "tools/check/directory_run.h"

#include <cerrno>
#include <filesystem>
#include <new>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <system_error>
#include <unistd.h>

#include "textio/findings/odd_characters.h"

namespace varpre {
namespace {

void make_run(DirectoryRun& run, bool with_findings) {
  require_directory(run.directory);
  Files files = Files::in_directory(run.directory);
  files.listing.findings.keep_all = with_findings;
  run.result = varpre::run(files);
  require_directory(
      run.directory);  // it was there all the time: no file counts as empty because all are gone
  if (!with_findings) return;
  const std::size_t prefix = files.conditions.name.size() - std::string_view("INP").size();
  run.findings = files.listing.findings.reports();
  for (FindingReport& finding : run.findings) finding.file.erase(0, prefix);
}

nlohmann::ordered_json json_of(const FindingReport& finding) {
  return {{"file", finding.file},
          {"line", finding.line},
          {"column", finding.column},
          {"width", finding.width},
          {"caret", finding.caret},
          {"severity", finding.severity == FindingReport::Severity::error ? "error" : "warning"},
          {"text", finding.text},
          {"help", finding.help}};
}

nlohmann::ordered_json json_of(const RunCounts& counts, const RunResult& result) {
  return {{"gas_species", counts.gas_species},
          {"surface_species", counts.surface_species},
          {"particle_species", counts.particle_species},
          {"elements", counts.elements},
          {"gas_reactions", counts.gas_reactions},
          {"surface_reactions", counts.surface_reactions},
          {"errors", result.errors},
          {"warnings", result.warnings}};
}

}  // namespace

void require_directory(const std::string& directory) {
  const auto status = std::filesystem::status(directory);
  if (status.type() != std::filesystem::file_type::directory) {
    throw_system_error(exists(status) ? ENOTDIR : ENOENT, directory);
  }
  if (::access(directory.c_str(), R_OK | X_OK) != 0) throw_system_error(errno, directory);
}

DirectoryRun run_in_directory(const std::string& directory, bool with_findings) {
  DirectoryRun run;
  run.directory = directory;
  try {
    make_run(run, with_findings);
  } catch (const std::bad_alloc&) {
    run.fault = directory + ": " + std::generic_category().message(ENOMEM);
  } catch (const std::runtime_error& error) {
    run.fault = error.what();
  }
  return run;
}

std::string as_text(const DirectoryRun& run) {
  const RunResult& result = run.result;
  const std::string& all = result.diagnostics;
  std::string text = all.substr(0, all.empty() ? 0 : all.rfind("varpre: "));
  text += message(for_terminal(run.directory), ": ", summary(result.errors, result.warnings), "; store file ",
                  result.store_state, "\n");
  return text;
}

std::string as_json(const DirectoryRun& run) {
  nlohmann::ordered_json json{{"directory", run.directory}};
  if (!run.fault.empty()) {
    json["fault"] = run.fault;
  } else {
    json["end"] = run.result.end == RunEnd::normal ? "normal" : "abnormal";
    json["store_file"] = run.result.store_state;
    json["counts"] = json_of(run.result.counts, run.result);
    json["findings"] = nlohmann::ordered_json::array();
    for (const FindingReport& finding : run.findings) json["findings"].push_back(json_of(finding));
  }
  return json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

}  // namespace varpre
