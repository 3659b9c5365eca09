#pragma once

#include <string>

#include "textio/channel/input.h"
#include "textio/channel/store_file.h"
#include "textio/findings/listing.h"

namespace varpre {

// The files of one run. Held in memory, whole runs can be made without touching the disk.
struct Files {
  // Files of the working directory, the listing on standard output.
  static Files on_disk();
  // Files that exist in memory only; fill in the `text` of the inputs before the run.
  static Files in_memory();
  // The inputs of a directory, which findings name in front of them unless it is "."; nothing is written
  // there, and the listing goes nowhere.
  static Files in_directory(const std::string& directory);

  // The copies refer to the inputs they are made of, which therefore stay where they are.
  ~Files() = default;
  Files(const Files&) = delete;
  Files& operator=(const Files&) = delete;

  Input molecules;        // 1 MOLNEW: molecular database
  Input conditions;       // 2 INP
  StoreFile store;        // 3 fort.3: store file
  Input mechanism;        // 4 MEC
  Input thermo;           // 9 THERMO: thermochemical database
  Input conditions_copy;  // 10, 11, 12: the inputs without comment lines, files fort.10 to fort.12
  Input mechanism_copy;
  Input thermo_copy;
  Input particles;  // 55 THERMLIQ: particle database, opened only when it is needed
  Listing listing;

  Storage storage;

 private:
  Files(Storage where, const std::string& directory, int listing_descriptor);
};

enum class RunEnd { normal, abnormal };

// How much the input holds, as far as the run came.
struct RunCounts {
  int gas_species = 0;
  int surface_species = 0;
  int particle_species = 0;
  int elements = 0;       // of the gas phase
  int gas_reactions = 0;  // elementary ones, the reverse ones that were generated included
  int surface_reactions = 0;
};

// How a run ended. All findings as data: set `keep_all` of `listing.findings` before the run, and ask it for
// its `reports` afterwards, while the files of the run are still there.
struct RunResult {
  RunEnd end = RunEnd::normal;
  std::string store_state;  // "complete", "incomplete (ended in the options)"
  RunCounts counts;
  int errors = 0;
  int warnings = 0;
  std::string diagnostics;  // for standard error; nothing when there is nothing to say
};

// One run: opens the files, saves the copies, and runs the stages in their order. Whatever the input holds,
// the run ends in an orderly way, with its banner or its message in the listing. What the listing has not
// passed on yet, and the store file, which is to take its place, are left to the caller. Throws
// std::runtime_error when a file cannot be opened, read or written.
RunResult run(Files& files);

// The same, which leaves in `data` (run_data.h) what the stages read.
struct RunData;
RunResult run(Files& files, RunData& data);

}  // namespace varpre
