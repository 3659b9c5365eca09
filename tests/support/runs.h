#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "driver/run.h"

// Whole runs in memory, and the directories of test data under tests/.
namespace varpre {

// The input files of a run by name; one that is not there is empty.
using Inputs = std::map<std::string, std::string>;

// A run that has ended, with all its files.
struct FinishedRun {
  explicit FinishedRun(const Inputs& inputs) {
    for (Input* unit :
         {&files.conditions, &files.mechanism, &files.thermo, &files.molecules, &files.particles}) {
      if (const auto input = inputs.find(unit->name); input != inputs.end()) unit->text = input->second;
    }
    result = varpre::run(files);
  }
  const std::string& listing() const { return files.listing.file.text; }
  const std::string& store() const { return files.store.text; }

  Files files = Files::in_memory();
  RunResult result;
};

inline FinishedRun run(const Inputs& inputs) {
  return FinishedRun(inputs);
}

inline const std::filesystem::path test_data = VARPRE_TEST_DATA;

inline std::string read_file(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("no file " + path.string());
  return {std::istreambuf_iterator<char>(file), {}};
}

// The inputs of a directory under tests/.
inline Inputs load_inputs(const std::string& directory) {
  Inputs inputs;
  for (const auto& entry : std::filesystem::directory_iterator(test_data / directory)) {
    if (entry.is_regular_file()) inputs[entry.path().filename()] = read_file(entry.path());
  }
  return inputs;
}

// The directories under tests/`folder` that hold `file`, "folder/directory".
inline std::vector<std::string> directories_with(const std::string& file, const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(test_data / folder)) {
    if (exists(entry.path() / file)) names.push_back(folder / entry.path().filename());
  }
  std::sort(names.begin(), names.end());
  return names;
}

// Shows a test of a directory under its name.
inline std::string directory_name(const testing::TestParamInfo<std::string>& directory) {
  std::string name = std::filesystem::path(directory.param).filename();
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

}  // namespace varpre
