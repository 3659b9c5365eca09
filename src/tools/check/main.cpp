#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <new>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <thread>

#include "textio/channel/process.h"
#include "textio/findings/odd_characters.h"
#include "tools/arguments.h"
#include "tools/check/baseline.h"
#include "tools/check/directory_run.h"
#include "tools/check/verdict.h"
#include "tools/check/work_in_order.h"

namespace {

using varpre::Baseline;
using varpre::DirectoryRun;
using varpre::message;
using varpre::SarifParts;
using varpre::Wanted;

struct Arguments {
  std::vector<std::string> directories;
  bool strict = false;
  bool json = false;
  bool sarif = false;
  int jobs = 0;          // 0: one for each core
  std::string baseline;  // files
  std::string write_baseline;
};

// What one directory has to say.
struct Verdict {
  bool no_memory = false;
  std::string fault;  // why there was no run
  std::string output;
  bool errors = false;
  bool warnings = false;
  SarifParts sarif;
  Baseline accepted;
};

// How many directories came to which end.
struct Tally {
  int without_findings = 0;
  int with_warnings = 0;  // and no error
  int with_errors = 0;
  int without_run = 0;

  void add(const Verdict& verdict) {
    ++(!verdict.fault.empty() ? without_run
       : verdict.errors       ? with_errors
       : verdict.warnings     ? with_warnings
                              : without_findings);
  }
  int exit_status(bool strict) const {
    if (without_run > 0) return 2;
    return with_errors > 0 || (strict && with_warnings > 0) ? 1 : 0;
  }
  std::string text() const {
    return message("varpre-check: ", with_errors, " with errors, ", with_warnings, " with warnings, ",
                   without_findings, " without findings",
                   without_run > 0 ? message(", ", without_run, " not run") : std::string(), "\n");
  }
};

// A line on the terminal that tells how far it is; none where standard error is no terminal.
class Progress {
 public:
  explicit Progress(std::size_t all)
      : all_(all), shown_(all > 1 && varpre::is_terminal(varpre::standard_error)) {}
  void show(std::size_t done) const {
    if (shown_) std::fprintf(stderr, "\r%zu of %zu directories", done, all_);
  }
  void clear() const {
    if (shown_) std::fputs("\r\033[K", stderr);
  }

 private:
  std::size_t all_;
  bool shown_;
};

void print(const std::string& text) {
  std::fwrite(text.data(), 1, text.size(), stdout);
}

Verdict verdict_of(const DirectoryRun& run, const Arguments& arguments) {
  Verdict verdict;
  verdict.no_memory = run.no_memory;
  verdict.fault = run.fault;
  verdict.errors = has_errors(run);
  verdict.warnings = new_warnings(run) > 0;
  if (arguments.sarif) {
    verdict.sarif = as_sarif(run);
  } else {
    verdict.output = arguments.json ? as_json(run, !arguments.baseline.empty()) : as_text(run);
  }
  if (!arguments.write_baseline.empty()) verdict.accepted.accept(run);
  return verdict;
}

// On any thread. When memory does not suffice, nothing else is known.
Verdict judge(const std::string& directory, const Arguments& arguments, const Baseline* baseline) {
  try {
    const bool all = arguments.json || arguments.sarif || !arguments.write_baseline.empty();
    return verdict_of(run_in_directory(directory, all ? Wanted::all : Wanted::none, baseline), arguments);
  } catch (const std::bad_alloc&) {
    Verdict verdict;
    verdict.no_memory = true;
    return verdict;
  }
}

// The verdict on a directory for which memory did not suffice even without others beside it.
Verdict without_memory(const std::string& directory, const Arguments& arguments) {
  DirectoryRun run;
  run.directory = directory;
  run.fault = message(directory, ": ", std::generic_category().message(ENOMEM));
  return verdict_of(run, arguments);
}

// What all directories come to.
struct Total {
  Tally tally;
  SarifParts sarif;  // without the results, which are printed at once
  Baseline accepted;
  bool results = false;  // there were some
};

void tell(const Verdict& verdict, Total& total) {
  total.tally.add(verdict);
  if (!verdict.fault.empty()) {
    std::fprintf(stderr, "varpre-check: %s\n", varpre::for_terminal(verdict.fault).c_str());
  }
  print(verdict.output);
  const SarifParts& sarif = verdict.sarif;
  if (total.results && !sarif.results.empty()) print(",\n");
  print(sarif.results);
  total.results = total.results || !sarif.results.empty();
  varpre::append_to_list(total.sarif.notifications, sarif.notifications);
  total.sarif.rules.insert(sarif.rules.begin(), sarif.rules.end());
  total.accepted.accept(verdict.accepted);
}

Total check_all(const Arguments& arguments, const Baseline* baseline) {
  const std::vector<std::string>& directories = arguments.directories;
  const auto work = [&](std::size_t i) { return judge(directories[i], arguments, baseline); };
  const unsigned cores = std::max(1U, std::thread::hardware_concurrency());
  varpre::WorkInOrder<Verdict, decltype(work)> verdicts(
      directories.size(), arguments.jobs > 0 ? static_cast<unsigned>(arguments.jobs) : cores, work);
  const Progress progress(directories.size());
  Total total;
  for (std::size_t i = 0; i < directories.size(); ++i) {
    progress.show(i);
    const Verdict verdict = verdicts.next();
    progress.clear();
    tell(verdict.no_memory ? without_memory(directories[i], arguments) : verdict, total);
  }
  return total;
}

int check(const Arguments& arguments) {
  if (arguments.json && arguments.sarif) throw std::runtime_error("--json and --sarif exclude each other");
  if (!arguments.baseline.empty() && !arguments.write_baseline.empty()) {
    throw std::runtime_error("--baseline and --write-baseline exclude each other");
  }
  std::optional<Baseline> baseline;
  if (!arguments.baseline.empty()) baseline.emplace(arguments.baseline);
  if (arguments.sarif) print(varpre::sarif_begin());
  const Total total = check_all(arguments, baseline ? &*baseline : nullptr);
  if (arguments.sarif) {
    print(sarif_end(total.sarif, varpre::version()));
  } else if (!arguments.json) {
    print(total.tally.text());
  }
  if (!arguments.write_baseline.empty() && total.tally.without_run == 0) {
    total.accepted.write(arguments.write_baseline);
  }
  return total.tally.exit_status(arguments.strict);
}

constexpr varpre::Program program{
    "varpre-check",
    "Makes the run of varpre in each DIRECTORY without writing anything there, and tells what it finds.",
    "0 no error, 1 an error (with --strict: or a warning), 2 wrong usage, or a directory without run."};

}  // namespace

int main(int argc, char** argv) {
  Arguments arguments;
  return varpre::run_program(
      program,
      {{"DIRECTORY", &arguments.directories, "directories with INP, MEC, THERMO and MOLNEW (.)"},
       {"--strict", &arguments.strict, "warnings count like errors for the exit status"},
       {"--json", &arguments.json, "one JSON object a directory and line, with all findings"},
       {"--sarif", &arguments.sarif, "one SARIF log (2.1.0) with all findings"},
       {"--jobs", &arguments.jobs, "directories at the same time (one for each core)", "N"},
       {"--write-baseline", &arguments.write_baseline,
        "accept all warnings that there are: write them to FILE", "FILE"},
       {"--baseline", &arguments.baseline, "warnings in FILE are accepted; those that have gone are told",
        "FILE"}},
      argc, argv, [&] {
        if (arguments.directories.empty()) arguments.directories.emplace_back(".");
        return check(arguments);
      });
}
