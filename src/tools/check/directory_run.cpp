#include "tools/check/directory_run.h"

#include <array>
#include <cerrno>
#include <new>
#include <stdexcept>
#include <system_error>

#include "textio/channel/directory.h"
#include "textio/findings/odd_characters.h"
#include "tools/check/baseline.h"

namespace varpre {
namespace {

// The line that a finding is about; nothing for a file as a whole.
std::string_view line_of(const Files& files, const FindingReport& finding) {
  if (finding.width == 0) return {};
  const std::array inputs{&files.conditions, &files.mechanism, &files.thermo, &files.molecules,
                          &files.particles};
  for (const Input* input : inputs) {
    if (input->name == finding.file) return input->origin(finding.line).text;
  }
  return {};
}

// The number of the character, from 1, that holds a column, a byte from 1.
int character_of(std::string_view line, int column) {
  int character = 1;
  for (auto left = static_cast<std::size_t>(std::max(column - 1, 0)); left > 0 && !line.empty();
       ++character) {
    const std::size_t bytes = show_first_character(line).bytes;
    if (bytes > left) break;
    left -= bytes;
    line.remove_prefix(bytes);
  }
  return character;
}

std::vector<CheckedFinding> checked_findings(const Files& files) {
  const std::size_t prefix = files.conditions.name.size() - std::string_view("INP").size();
  std::vector<CheckedFinding> findings;
  for (FindingReport& report : files.listing.findings.reports()) {
    const std::string_view line = line_of(files, report);
    CheckedFinding finding;
    if (report.width > 0) {
      finding.first_character = character_of(line, report.column);
      finding.end_character =
          std::max(character_of(line, report.column + report.width), finding.first_character + 1);
    }
    report.file.erase(0, prefix);
    finding.report = std::move(report);
    findings.push_back(std::move(finding));
  }
  return findings;
}

void compare(DirectoryRun& run, const Baseline& baseline, Findings& findings) {
  run.gone = baseline.compare(run.directory, run.findings);
  std::vector<bool> known;
  for (const CheckedFinding& finding : run.findings) {
    known.push_back(finding.known);
    if (finding.known) ++run.known;
  }
  findings.leave_out(known);
  run.result.diagnostics = findings.render(run.result.store_state);
}

void make_run(DirectoryRun& run, Wanted wanted, const Baseline* baseline) {
  require_directory(run.directory);
  Files files = Files::in_directory(run.directory);
  Findings& findings = files.listing.findings;
  findings.keep_all = wanted == Wanted::all || baseline != nullptr;
  if (baseline != nullptr)
    findings.most_shown = std::string::npos;  // a new one shows behind known ones of its kind
  run.result = varpre::run(files);
  // It was there all the time: no file counts as empty because all are gone.
  require_directory(run.directory);
  if (findings.keep_all) run.findings = checked_findings(files);
  if (baseline != nullptr) compare(run, *baseline, findings);
}

}  // namespace

DirectoryRun run_in_directory(const std::string& directory, Wanted findings, const Baseline* baseline) {
  DirectoryRun run;
  run.directory = directory;
  try {
    make_run(run, findings, baseline);
  } catch (const std::bad_alloc&) {
    run.no_memory = true;
  } catch (const std::system_error& error) {
    run.no_memory = error.code() == std::errc::not_enough_memory;
    run.fault = error.what();
  } catch (const std::exception& error) {
    run.fault = error.what();
  }
  if (run.fault.empty() && run.no_memory)
    run.fault = directory + ": " + std::generic_category().message(ENOMEM);
  return run;
}

}  // namespace varpre
