#include "broken/case.h"

namespace varpre {
namespace {

// Finds blocks of lines, each behind the one before and divided by lines "...", and returns the end of the
// last.
std::size_t find_blocks(std::string text, std::string blocks) {
  text.insert(0, "\n");
  blocks.insert(0, "\n");
  for (std::size_t end = 0;;) {
    const std::size_t gap = blocks.find("\n...\n");
    const std::string block = blocks.substr(0, gap) + (gap == std::string::npos ? "" : "\n");
    const std::size_t place = text.find(block, end);
    if (place == std::string::npos) {
      ADD_FAILURE() << "Missing:" << block << "The text ends:\n"
                    << text.substr(text.size() - std::min<std::size_t>(text.size(), 1500));
      return 0;
    }
    end = place + block.size() - 1;
    if (gap == std::string::npos) return end;
    blocks.erase(0, gap + 4);
  }
}

std::string last_line(const std::string& text) {
  return text.substr(text.substr(0, text.size() - 1).rfind('\n') + 1);
}

class CaseOfInput : public testing::TestWithParam<std::string> {};

TEST_P(CaseOfInput, ComesOutAsExpected) {
  const Case input(GetParam());
  const FinishedRun run = varpre::run(input.inputs);

  const std::string& listing = run.listing();
  const std::size_t end_of_message =
      input.expects("listing") ? find_blocks(listing, input.expected("listing")) : 0;
  const std::string banner = "ABNORMAL END" + std::string(31, '*') + "\n\n";
  const std::string ends = run.result.end == RunEnd::normal   ? "normally"
                           : listing.ends_with(banner)        ? "abnormally"
                           : end_of_message == listing.size() ? "at the message"
                                                              : "behind the message";
  EXPECT_EQ(ends, input.ends);
  if (input.expects("store")) find_blocks(run.store(), input.expected("store"));
  if (input.expects("store-ends-with")) {
    EXPECT_EQ(last_line(run.store()), input.expected("store-ends-with"));
  }
  if (input.expects("stderr")) {
    EXPECT_EQ(run.result.diagnostics, input.expected("stderr"));
  }

  const FinishedRun again = varpre::run(input.inputs);
  EXPECT_EQ(again.listing(), listing);
  EXPECT_EQ(again.store(), run.store());
  EXPECT_EQ(again.result.diagnostics, run.result.diagnostics);
}

INSTANTIATE_TEST_SUITE_P(Cases, CaseOfInput, testing::ValuesIn(directories_with("case", "broken")),
                         directory_name);

}  // namespace
}  // namespace varpre
