#include <chrono>
#include <functional>

#include "support/runs.h"

// Text as editors, converters and transfers leave it behind.
namespace varpre {
namespace {

constexpr std::size_t megabyte = 1000000;

Inputs changed(Inputs inputs, const std::function<void(std::string&)>& change) {
  for (auto& [name, text] : inputs) change(text);
  return inputs;
}

std::string with_every(const std::string& text, char c, const std::string& replacement) {
  std::string out;
  for (const char t : text) t == c ? out += replacement : out += t;
  return out;
}

class OddText : public testing::Test {
 protected:
  // A change that is no change of the data.
  void expect_same(const std::function<void(std::string&)>& change) {
    const FinishedRun result = run(changed(inputs, change));
    EXPECT_EQ(result.listing(), good.listing());
    EXPECT_EQ(result.store(), good.store());
  }
  // The listing of a run with one edit.
  std::string listing_with(const std::string& file, const std::string& from, const std::string& to) {
    Inputs odd = inputs;
    const std::size_t place = odd.at(file).find(from);
    if (place == std::string::npos) throw std::runtime_error("nothing to edit: " + from);
    odd.at(file).replace(place, from.size(), to);
    return run(odd).listing();
  }
  void expect_line(const std::string& listing, const std::string& line) {
    EXPECT_NE(listing.find('\n' + line + '\n'), std::string::npos) << line << " is not in:\n" << listing;
  }

  const Inputs inputs = load_inputs("runs/everything");
  const FinishedRun good = run(inputs);
};

TEST_F(OddText, LineEndsAndMarksOfOtherSystemsAreNoData) {
  ASSERT_EQ(good.result.end, RunEnd::normal);
  const auto carriage_returns = [](std::string& text) { text = with_every(text, '\n', "\r\n"); };
  const auto no_last_line_feed = [](std::string& text) { text.resize(text.find_last_not_of("\r\n") + 1); };
  const auto byte_order_mark = [](std::string& text) { text.insert(0, "\xEF\xBB\xBF"); };
  expect_same(carriage_returns);
  expect_same(no_last_line_feed);
  expect_same(byte_order_mark);
  expect_same([&](std::string& text) {
    carriage_returns(text);
    no_last_line_feed(text);
    text += '\r';
    byte_order_mark(text);
  });
}

TEST_F(OddText, LinesOfAMegabyteAreReadToTheirLastColumn) {
  expect_same([](std::string& text) { text.insert(text.find('\n'), megabyte, ' '); });
  Inputs commented = inputs;
  for (const auto* file : {"INP", "MEC", "THERMO"})
    commented[file].insert(0, "----" + std::string(megabyte, 'x') + '\n');
  EXPECT_EQ(run(commented).store(), good.store());
  const std::string line = "COMMENT " + std::string(megabyte, 'x') + '\n';
  expect_line(listing_with("INP", "COMMENT", line + "COMMENT"), " *    " + std::string(64, 'x') + "    *");
}

TEST_F(OddText, BytesThatAreNoLettersAreOrdinaryCharacters) {
  const std::string bytes("\0\x01\t\x7F\x80\xFF\xC3\xA9", 8);
  expect_line(listing_with("INP", "COMMENT All stages in one run", "COMMENT " + bytes),
              " *    " + bytes + std::string(56, ' ') + "    *");
  for (const char c : bytes) {
    const std::string name = std::string("H") + c;
    const std::string listing = listing_with("INP", "\nH  O  OH", '\n' + name + "  O  OH");
    expect_line(listing, "1     ERROR - Species " + name + "       not found in thermochemical database");
    EXPECT_TRUE(listing.ends_with("ABNORMAL END" + std::string(31, '*') + "\n\n"));
    expect_line(listing_with("INP", "TE         0.05", std::string("TE         0.0") + c),
                "     ERROR IN INPUT OF CONDITIONS : TE  ");
  }
}

TEST_F(OddText, EmptyFilesAreFilesWithoutRecords) {
  for (const auto& [name, text] : inputs) {
    for (const std::string nothing : {"", "\xEF\xBB\xBF", "\n", "\r\n\r", "\n\n\n"}) {
      Inputs odd = inputs;
      odd[name] = nothing;
      const FinishedRun result = run(odd);
      EXPECT_EQ(result.result.end, name == "THERMLIQ" ? RunEnd::normal : RunEnd::abnormal) << name;
    }
  }
  const std::string listing = run({}).listing();
  expect_line(listing, "1     ERROR - Wrong heading of options :         ...");
}

TEST_F(OddText, AHundredMegabytesOfCommentsTakeSecondsAndLeaveNothing) {
  const std::string comment = "**** what somebody wanted to say about the mechanism below, more than once\n";
  std::string comments;
  comments.reserve(100 * megabyte + comment.size());
  while (comments.size() < 100 * megabyte) comments += comment;
  Inputs odd = inputs;
  // Findings behind the comments name lines far down the file.
  std::string& mechanism = odd.at("MEC");
  const std::size_t first = mechanism.find("\nO+H2=H+OH") + 1;
  const std::string reaction = mechanism.substr(first, mechanism.find('\n', first) + 1 - first);
  for (int i = 0; i < 1000; ++i) mechanism.insert(first, reaction);
  const FinishedRun expected = run(odd);
  mechanism.insert(0, comments);
  const FinishedRun result = run(odd);
  EXPECT_EQ(result.store(), expected.store());
  EXPECT_EQ(result.listing(), expected.listing());
}

// Quadratic time would take minutes.
TEST_F(OddText, FindingsTakeLinearTime) {
  constexpr int repetitions = 100000;
  Inputs odd = inputs;
  const std::string molecule = "CH4      2    16.043   141.400     3.746     0.000     2.600  1300.000\n";
  for (int i = 0; i < repetitions; ++i) {
    odd["INP"] += i % 2 == 0 ? "LEFT BOUNDARY\n" : "NG  3.0\n";
    odd["MOLNEW"] += molecule;
  }
  const auto begin = std::chrono::steady_clock::now();
  const FinishedRun result = run(odd);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
  EXPECT_GT(result.files.listing.findings.warnings(), repetitions);
  EXPECT_LT(result.result.diagnostics.size(), 20000U);
}

}  // namespace
}  // namespace varpre
