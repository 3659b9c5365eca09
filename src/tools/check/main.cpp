#include <algorithm>
#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <optional>
#include <thread>
#include <unistd.h>

#include "textio/findings/odd_characters.h"
#include "tools/arguments.h"
#include "tools/check/directory_run.h"

namespace {

using varpre::DirectoryRun;

struct Arguments {
  std::vector<std::string> directories;
  bool strict = false;
  bool json = false;
  int jobs = 0;  // 0: one for each core
};

// Runs all directories on some threads; `next` hands them out in the order of the arguments.
class Runs {
 public:
  explicit Runs(const Arguments& arguments) : arguments_(arguments), runs_(arguments.directories.size()) {
    const unsigned cores = std::max(1U, std::thread::hardware_concurrency());
    const auto jobs = std::min<std::size_t>(
        arguments.jobs > 0 ? static_cast<unsigned>(arguments.jobs) : cores, runs_.size());
    for (std::size_t i = 0; i < jobs; ++i) threads_.emplace_back([this] { work(); });
  }
  ~Runs() {
    for (std::thread& thread : threads_) thread.join();
  }
  Runs(const Runs&) = delete;
  Runs& operator=(const Runs&) = delete;

  DirectoryRun next() {
    std::unique_lock lock(mutex_);
    std::optional<DirectoryRun>& run = runs_[handed_out_++];
    finished_.wait(lock, [&] { return run.has_value(); });
    DirectoryRun taken = std::move(*run);
    run.reset();
    return taken;
  }

 private:
  void work() {
    std::unique_lock lock(mutex_);
    while (begun_ < runs_.size()) {
      const std::size_t i = begun_++;
      lock.unlock();
      DirectoryRun run = varpre::run_in_directory(arguments_.directories[i], arguments_.json);
      lock.lock();
      runs_[i] = std::move(run);
      finished_.notify_one();
    }
  }

  const Arguments& arguments_;
  std::mutex mutex_;
  std::condition_variable finished_;
  std::vector<std::optional<DirectoryRun>> runs_;
  std::size_t begun_ = 0;
  std::size_t handed_out_ = 0;
  std::vector<std::thread> threads_;
};

// How many directories came to which end.
struct Tally {
  int without_findings = 0;
  int with_warnings = 0;  // and no error
  int with_errors = 0;
  int without_run = 0;

  void add(const DirectoryRun& run) {
    const bool complete = run.result.store_state == "complete";
    ++(!run.fault.empty()                   ? without_run
       : run.result.errors > 0 || !complete ? with_errors
       : run.result.warnings > 0            ? with_warnings
                                            : without_findings);
  }
  int exit_status(bool strict) const {
    if (without_run > 0) return 2;
    return with_errors > 0 || (strict && with_warnings > 0) ? 1 : 0;
  }
  std::string text() const {
    using varpre::message;
    return message("varpre-check: ", with_errors, " with errors, ", with_warnings, " with warnings, ",
                   without_findings, " without findings",
                   without_run > 0 ? message(", ", without_run, " not run") : std::string(), "\n");
  }
};

// A line on the terminal that tells how far it is; none where standard error is no terminal.
class Progress {
 public:
  explicit Progress(std::size_t all) : all_(all), shown_(all > 1 && ::isatty(STDERR_FILENO) == 1) {}
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

int check(const Arguments& arguments) {
  Runs runs(arguments);
  Tally tally;
  const Progress progress(arguments.directories.size());
  for (std::size_t i = 0; i < arguments.directories.size(); ++i) {
    progress.show(i);
    const DirectoryRun run = runs.next();
    tally.add(run);
    progress.clear();
    if (!run.fault.empty())
      std::fprintf(stderr, "varpre-check: %s\n", varpre::for_terminal(run.fault).c_str());
    if (arguments.json) {
      std::fputs(as_json(run).c_str(), stdout);
    } else if (run.fault.empty()) {
      std::fputs(as_text(run).c_str(), stdout);
    }
  }
  if (!arguments.json) std::fputs(tally.text().c_str(), stdout);
  return tally.exit_status(arguments.strict);
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
       {"--jobs", &arguments.jobs, "directories at the same time (one for each core)", "N"}},
      argc, argv, [&] {
        if (arguments.directories.empty()) arguments.directories.emplace_back(".");
        return check(arguments);
      });
}
