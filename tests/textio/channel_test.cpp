#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "textio/channel/statement.h"
#include "textio/findings/record_findings.h"

namespace varpre {
namespace {

namespace fs = std::filesystem;

Input input_holding(std::string_view text) {
  Input input(11, "MEC", Storage::memory);
  input.text = text;
  input.rewind();
  return input;
}

using Records = std::vector<std::string>;

// The records from where the input stands.
Records all_records(Input& input) {
  Records records;
  for (std::string_view record; input.next(record);) records.emplace_back(record);
  return records;
}

Records all_records(std::string_view text) {
  Input input = input_holding(text);
  return all_records(input);
}

TEST(Input, RecordsEndAtALineFeedOrTheEndOfTheFileWithoutCarriageReturn) {
  EXPECT_EQ(all_records(""), Records{});
  EXPECT_EQ(all_records("a\nb\n"), (Records{"a", "b"}));
  EXPECT_EQ(all_records("a\n\n  b"), (Records{"a", "", "  b"}));
  EXPECT_EQ(all_records("\n"), Records{""});
  EXPECT_EQ(all_records(std::string_view("a\0b\n\xFF\n", 6)), (Records{std::string("a\0b", 3), "\xFF"}));
  EXPECT_EQ(all_records("a\r\n\r\nb\r"), (Records{"a", "", "b"}));
  EXPECT_EQ(all_records("a\rb\r\r\n"), (Records{"a\rb\r"}));
}

TEST(Input, ByteOrderMarkIsDroppedAtTheStartOnly) {
  EXPECT_EQ(all_records("\xEF\xBB\xBF"), Records{});
  EXPECT_EQ(all_records("\xEF\xBB\xBFMECH\n\xEF\xBB\xBF\n"), (Records{"MECH", "\xEF\xBB\xBF"}));
  EXPECT_EQ(all_records("\xEF\xBBMECH"), Records{"\xEF\xBBMECH"});
}

TEST(Input, LooksAheadAndRewinds) {
  Input input = input_holding("one\n\nthree\n");
  std::string_view record;
  EXPECT_TRUE(input.peek(record));
  EXPECT_EQ(record, "one");
  EXPECT_EQ(all_records(input), (Records{"one", "", "three"}));
  EXPECT_EQ(all_records(input), Records{});
  EXPECT_FALSE(input.peek(record));
  EXPECT_EQ(input.record_number(), 3);
  input.rewind();
  EXPECT_EQ(input.record_number(), 0);
  EXPECT_EQ(all_records(input), (Records{"one", "", "three"}));
}

TEST(Input, CopiesKnowWhatWasRead) {
  Input source = input_holding("passed\nread\nmarked\nlooked at\n");
  Input copy(11, "fort.11", Storage::memory);
  copy.begin_copy(source, 8);
  for (std::string_view record; source.next(record);) copy.copy();
  copy.rewind();
  std::string_view record;
  copy.pass(record);
  copy.next(record);
  copy.pass(record);
  copy.mark_read();
  copy.peek(record);
  EXPECT_EQ((std::array{copy.is_read(1), copy.is_read(2), copy.is_read(3), copy.is_read(4)}),
            (std::array{false, true, true, false}));
}

TEST(Input, CopiesTellWhereTheirRecordsComeFrom) {
  Input source = input_holding("\xEF\xBB\xBF**** comment\r\n\xEF\xBB\xBFH2 + O2\r\n\nEND");
  Input copy(11, "fort.11", Storage::memory);
  copy.begin_copy(source, 8);
  for (std::string_view record; source.next(record);) {
    if (!record.starts_with("****")) copy.copy();
  }
  copy.rewind();
  EXPECT_EQ(all_records(copy), (Records{"\xEF\xBB\xBFH2 + ", "", "END"}));
  EXPECT_EQ(copy.cut_records, std::set{1});

  constexpr std::array texts{"\xEF\xBB\xBFH2 + O2", "", "END"};
  for (int record = 1; record <= 3; ++record) {
    const Origin origin = copy.origin(record);
    EXPECT_EQ(origin.file, "MEC");
    EXPECT_EQ(origin.line, record + 1);
    EXPECT_EQ(origin.text, texts[static_cast<std::size_t>(record - 1)]);
  }
  EXPECT_EQ(copy.origin(0).file, "MEC");
  EXPECT_EQ(copy.origin(0).line, 4);
  EXPECT_EQ(source.origin(1).text, "**** comment");
}

TEST(Input, CopiesReadAsTheirFilesDo) {
  Input source =
      input_holding("seven77\r ! cut behind the carriage return\nseven77\r\r\nsix666\r\r\nseven77\r\n");
  Input copy(11, "fort.11", Storage::memory);
  copy.begin_copy(source, 8);
  for (std::string_view record; source.next(record);) copy.copy();
  std::string file;
  copy.for_each_record([&](int, std::string_view record) {
    file += std::string(record) + std::string(8 - record.size(), ' ') + '\n';
  });
  EXPECT_EQ(file, "seven77\r\nseven77\r\nsix666\r \nseven77 \n");
  Input read_back = input_holding(file);
  copy.rewind();
  EXPECT_EQ(all_records(copy), (Records{"seven77", "seven77", "six666\r", "seven77"}));
  EXPECT_EQ(all_records(read_back), (Records{"seven77", "seven77", "six666\r ", "seven77 "}));
}

// Each test works in a directory of its own.
TEST(StoreFile, TakesFiniteNumbersOnlyAndRemembersAsterisks) {
  StoreFile store;
  write<"(I3,F6.3,1X,A3)">(store, 999, 99.999, Text<3>("***"));
  EXPECT_FALSE(store.has_asterisks);
  const double fraction = 0;
  const std::array values{1.0, 1 / fraction};
  EXPECT_THROW((write<"(2(F6.3))">(store, values)), RunStop);
  EXPECT_THROW((write<"(2(F6.3))">(store, std::span<const double>(values))), RunStop);
  EXPECT_EQ(store.text, "99999.999 ***\n");

  for (const int too_large : {1000, -100}) {
    StoreFile other;
    write<"(I3)">(other, too_large);
    EXPECT_TRUE(other.has_asterisks) << too_large;
  }
  write<"(5F6.3)">(store, std::span<const double>(std::array{1.0, 100.0}));
  EXPECT_TRUE(store.has_asterisks);
}

class ChannelOnDisk : public testing::Test {
 protected:
  ChannelOnDisk() {
    std::string name = testing::TempDir() + "varpre_channel_XXXXXX";
    directory = ::mkdtemp(name.data());
  }
  ~ChannelOnDisk() override { fs::remove_all(directory); }

  Input input(const char* name) const {
    Input opened(3, directory / name, Storage::disk);
    opened.open();
    opened.load();
    return opened;
  }
  StoreFile store() const { return {directory / "fort.3", Storage::disk}; }
  void put(const char* name, std::string_view text) const { std::ofstream(directory / name) << text; }
  std::string content(const char* name) const {
    std::ifstream file(directory / name);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  std::size_t files() const {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(directory), {}));
  }

  fs::path directory;
};

TEST_F(ChannelOnDisk, OpeningReadsTheFileOrCreatesIt) {
  const std::string long_text(200000, 'x');
  put("INP", "one\r\n" + long_text);
  Input inp = input("INP");
  EXPECT_EQ(all_records(inp), (Records{"one", long_text}));
  EXPECT_FALSE(inp.was_absent());
  EXPECT_TRUE(input("MEC").was_absent());
  EXPECT_TRUE(fs::is_regular_file(directory / "MEC"));
}

TEST_F(ChannelOnDisk, StoreFileLeavesTheEarlierOneUntilItIsComplete) {
  put("fort.3", "earlier\n");
  StoreFile complete = store();
  complete.text = "of no use";
  complete.open();
  EXPECT_EQ(complete.text, "");
  complete.text = "new\n";
  EXPECT_EQ(content("fort.3"), "earlier\n");
  complete.take_place();
  EXPECT_EQ(content("fort.3"), "new\n");
  {
    StoreFile given_up = store();
    given_up.open();
    given_up.text = "half of the\n";
    given_up.flush();
  }
  EXPECT_EQ(content("fort.3"), "new\n");
  EXPECT_EQ(files(), 1U);
}

TEST_F(ChannelOnDisk, RecordsPassOnOnlyAfterTheyMay) {
  StoreFile file = store();
  file.open();
  std::string written;
  const auto write_records = [&](int count) {
    for (int i = 0; i < count; ++i) {
      write<"(I10)">(file, i);
      written += std::string(10 - std::to_string(i).size(), ' ') + std::to_string(i) + '\n';
    }
  };
  write_records(20000);
  EXPECT_EQ(file.text, written);
  file.begin_to_pass_on();
  write_records(20000);
  EXPECT_LT(file.text.size(), written.size() / 5);
  EXPECT_FALSE(fs::exists(directory / "fort.3"));
  file.take_place();
  EXPECT_EQ(content("fort.3"), written);
}

}  // namespace
}  // namespace varpre
