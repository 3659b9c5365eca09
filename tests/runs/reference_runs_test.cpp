#include <algorithm>
#include <array>
#include <cstdlib>
#include <sys/wait.h>
#include <unistd.h>

#include "support/runs.h"

namespace varpre {
namespace {

namespace fs = std::filesystem;

// Equal, or a failure that shows the first line that is not.
void expect_same_lines(const std::string& name, std::string_view actual, std::string_view expected) {
  if (actual == expected) return;
  const auto [a, e] = std::mismatch(actual.begin(), actual.end(), expected.begin(), expected.end());
  const auto line = [](std::string_view text, auto place) {
    const auto at = static_cast<std::size_t>(place - text.begin());
    const std::size_t start = text.substr(0, at).rfind('\n') + 1;
    return std::string(text.substr(start, text.find('\n', at) - start));
  };
  ADD_FAILURE() << name << ", line " << std::count(actual.begin(), a, '\n') + 1 << "\nis        |"
                << line(actual, a) << "|\nshould be |" << line(expected, e) << "|";
}

class ReferenceRun : public testing::TestWithParam<std::string> {};

TEST_P(ReferenceRun, GivesTheExpectedFilesByteForByte) {
  const FinishedRun run = varpre::run(load_inputs(GetParam()));
  EXPECT_EQ(run.result.end, RunEnd::normal);
  const fs::path expected = test_data / GetParam() / "expected";
  expect_same_lines("fort.3", run.store(), read_file(expected / "fort.3"));
  expect_same_lines("listing", run.listing(), read_file(expected / "listing"));
}

INSTANTIATE_TEST_SUITE_P(Cases, ReferenceRun, testing::ValuesIn(directories_with("expected", "runs")),
                         directory_name);

// The program itself in a working directory of its own.
class Program : public testing::Test {
 protected:
  void SetUp() override { ASSERT_NE(::mkdtemp(pattern_.data()), nullptr); }
  void TearDown() override { fs::remove_all(directory()); }

  fs::path directory() const { return pattern_.c_str(); }

  int exit_status() const {
    const std::string command =
        "cd '" + directory().string() + "' && '" VARPRE_PROGRAM "' > listing 2> messages";
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

 private:
  std::string pattern_ = (fs::temp_directory_path() / "varpre-XXXXXX").string();
};

TEST_F(Program, LeavesTheFilesOfARunInItsWorkingDirectory) {
  // One run after the other in the same place: each finds the files of the one before, shorter or longer.
  for (const std::string& run : directories_with("expected", "runs")) {
    SCOPED_TRACE(run);
    for (const auto& [name, text] : load_inputs(run)) std::ofstream(directory() / name) << text;
    EXPECT_EQ(exit_status(), 0);
    for (const char* name : {"fort.3", "fort.10", "fort.11", "fort.12", "listing"}) {
      expect_same_lines(name, read_file(directory() / name), read_file(test_data / run / "expected" / name));
    }
  }
}

// Records near its beginning are replaced when all others are there: none may have left the memory by then.
TEST_F(Program, EditsAStoreFileOfManyPieces) {
  Inputs inputs = load_inputs("runs/ndodecane");
  std::string& conditions = inputs["INP"];
  conditions.replace(conditions.find("Output  1"), 9, "Output  1 PLN2D   1");
  conditions += "2DOPTIONS\nIMPULS  1 STORE   5\nEND\n2DINPUT\nUINI        2.0\nEND\n";
  for (const auto& [name, text] : inputs) std::ofstream(directory() / name) << text;
  EXPECT_EQ(exit_status(), 0);
  const FinishedRun in_memory = run(inputs);
  EXPECT_GT(in_memory.store().size(), 500'000);
  EXPECT_NE(in_memory.store().find("\nUINI,VINI,RI2,DIST      2.0000E+00"), std::string::npos);
  expect_same_lines("fort.3", read_file(directory() / "fort.3"), in_memory.store());
}

TEST_F(Program, EndsWithStatus2WhenAFileCannotBeRead) {
  fs::create_symlink("/proc/self/mem", directory() / "MOLNEW");  // opens, but has no first byte
  std::ofstream(directory() / "fort.3") << "an earlier run\n";
  EXPECT_EQ(exit_status(), 2);
  EXPECT_TRUE(read_file(directory() / "messages").ends_with("\nvarpre: MOLNEW: Input/output error\n"));
  EXPECT_EQ(read_file(directory() / "fort.3"), "an earlier run\n");
}

}  // namespace
}  // namespace varpre
