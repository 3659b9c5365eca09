#include "textio/channel/unit.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <set>
#include <string>
#include <system_error>
#include <vector>

#include "textio/record/record.h"

namespace varpre {
namespace {

namespace fs = std::filesystem;

Unit unit_holding(std::string_view text) {
  Unit unit(11, "MEC", Unit::Storage::memory);
  unit.text = text;
  unit.open();
  return unit;
}

using Records = std::vector<std::string>;

// The records from where the unit stands.
Records records_of(Unit& unit) {
  Records records;
  for (std::string_view record; unit.next(record);) records.emplace_back(record);
  return records;
}

Records records_of(std::string_view text) {
  Unit unit = unit_holding(text);
  return records_of(unit);
}

TEST(Unit, RecordsEndAtALineFeedOrTheEndOfTheFileWithoutCarriageReturn) {
  EXPECT_EQ(records_of(""), Records{});
  EXPECT_EQ(records_of("a\nb\n"), (Records{"a", "b"}));
  EXPECT_EQ(records_of("a\n\n  b"), (Records{"a", "", "  b"}));
  EXPECT_EQ(records_of("\n"), Records{""});
  EXPECT_EQ(records_of(std::string_view("a\0b\n\xFF\n", 6)), (Records{std::string("a\0b", 3), "\xFF"}));
  EXPECT_EQ(records_of("a\r\n\r\nb\r"), (Records{"a", "", "b"}));
  EXPECT_EQ(records_of("a\rb\r\r\n"), (Records{"a\rb\r"}));
}

TEST(Unit, ByteOrderMarkIsDroppedAtTheStartOnly) {
  EXPECT_EQ(records_of("\xEF\xBB\xBF"), Records{});
  EXPECT_EQ(records_of("\xEF\xBB\xBFMECH\n\xEF\xBB\xBF\n"), (Records{"MECH", "\xEF\xBB\xBF"}));
  EXPECT_EQ(records_of("\xEF\xBBMECH"), Records{"\xEF\xBBMECH"});
}

TEST(Unit, StepsBackOneRecordAndRewinds) {
  Unit unit = unit_holding("one\n\nthree\n");
  unit.step_back();  // nothing read yet
  EXPECT_EQ(records_of(unit), (Records{"one", "", "three"}));
  EXPECT_EQ(records_of(unit), Records{});
  EXPECT_EQ(unit.record_number(), 3);
  unit.step_back();
  EXPECT_EQ(unit.record_number(), 2);
  EXPECT_EQ(records_of(unit), Records{"three"});
  unit.rewind();
  EXPECT_EQ(unit.record_number(), 0);
  EXPECT_EQ(records_of(unit), (Records{"one", "", "three"}));
}

TEST(Unit, CopiesTellWhereTheirRecordsComeFrom) {
  Unit source = unit_holding("\xEF\xBB\xBF**** comment\r\n\xEF\xBB\xBFH2 + O2\r\n\nEND");
  Unit copy(11, "fort.11", Unit::Storage::memory);
  copy.begin_copy(source, 8);
  for (std::string_view record; source.next(record);) {
    if (!record.starts_with("****")) copy.copy();
  }
  copy.rewind();
  EXPECT_EQ(records_of(copy), (Records{"\xEF\xBB\xBFH2 + ", "", "END"}));
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

  copy.clear();
  EXPECT_EQ(copy.origin(0).file, "fort.11");
}

TEST(Unit, CopiesReadAsTheirFilesDo) {
  Unit source =
      unit_holding("seven77\r ! cut behind the carriage return\nseven77\r\r\nsix666\r\r\nseven77\r\n");
  Unit copy(11, "fort.11", Unit::Storage::memory);
  copy.begin_copy(source, 8);
  for (std::string_view record; source.next(record);) copy.copy();
  std::string file;
  copy.for_each_record([&](int, std::string_view record) {
    file += std::string(record) + std::string(8 - record.size(), ' ') + '\n';
  });
  EXPECT_EQ(file, "seven77\r\nseven77\r\nsix666\r \nseven77 \n");
  Unit read_back = unit_holding(file);
  copy.rewind();
  EXPECT_EQ(records_of(copy), (Records{"seven77", "seven77", "six666\r", "seven77"}));
  EXPECT_EQ(records_of(read_back), (Records{"seven77", "seven77", "six666\r ", "seven77 "}));
}

// Each test works in a directory of its own.
class UnitOnDisk : public testing::Test {
 protected:
  UnitOnDisk() {
    std::string name = testing::TempDir() + "varpre_unit_XXXXXX";
    directory = ::mkdtemp(name.data());
  }
  ~UnitOnDisk() override { fs::remove_all(directory); }

  Unit unit(const char* name) const { return {3, directory / name, Unit::Storage::disk}; }
  void put(const char* name, std::string_view text) const { std::ofstream(directory / name) << text; }
  std::string content(const char* name) const {
    std::ifstream file(directory / name);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  fs::path directory;
};

template <class Operation>
void expect_system_error(int number, const std::string& name, Operation operation) {
  try {
    operation();
    ADD_FAILURE() << name << ": no error";
  } catch (const std::system_error& error) {
    EXPECT_EQ(error.what(), name + ": " + std::generic_category().message(number));
  }
}

TEST_F(UnitOnDisk, OpeningReadsTheFileOrCreatesIt) {
  const std::string long_text(200000, 'x');
  put("INP", "one\r\n" + long_text);
  Unit inp = unit("INP");
  inp.open();
  EXPECT_EQ(records_of(inp), (Records{"one", long_text}));

  unit("MEC").open();
  EXPECT_TRUE(fs::is_regular_file(directory / "MEC"));
  fs::create_symlink("elsewhere", directory / "THERMO");  // a link to a file that is not there yet
  unit("THERMO").open();
  EXPECT_TRUE(fs::is_regular_file(directory / "elsewhere"));
}

TEST_F(UnitOnDisk, ReplacementLeavesTheEarlierFileUntilItIsComplete) {
  put("fort.3", "earlier\n");
  put("fort.3.tmp", "left over from a run that was killed, and longer than the new one\n");
  Unit store = unit("fort.3");
  store.text = "of no use";
  store.open_for_replacement();
  EXPECT_EQ(store.text, "");
  store.text = "new\n";
  EXPECT_EQ(content("fort.3"), "earlier\n");
  store.replace();
  EXPECT_EQ(content("fort.3"), "new\n");
  EXPECT_FALSE(fs::exists(directory / "fort.3.tmp"));
  {
    Unit given_up = unit("fort.3");
    given_up.open_for_replacement();
    given_up.text = "half of the\n";
  }
  EXPECT_EQ(content("fort.3"), "new\n");
  EXPECT_FALSE(fs::exists(directory / "fort.3.tmp"));
}

TEST_F(UnitOnDisk, RecordsPassOnOnlyAfterTheyMay) {
  Unit store = unit("fort.3");
  store.open_for_replacement();
  std::string written;
  const auto write_records = [&](int count) {
    for (int i = 0; i < count; ++i) {
      write<"(I10)">(store, i);
      written += std::string(10 - std::to_string(i).size(), ' ') + std::to_string(i) + '\n';
    }
  };
  write_records(20000);
  EXPECT_EQ(store.text, written);
  store.begin_to_pass_on();
  write_records(20000);
  EXPECT_LT(store.text.size(), written.size() / 5);
  EXPECT_FALSE(fs::exists(directory / "fort.3"));
  store.replace();
  EXPECT_EQ(content("fort.3"), written);

  store.open_for_replacement();  // begins anew
  written.clear();
  write_records(20000);
  EXPECT_EQ(store.text, written);
}

TEST_F(UnitOnDisk, ReplacementFollowsLinks) {
  fs::create_directory(directory / "results");
  fs::create_symlink("second", directory / "fort.3");
  fs::create_symlink("results/old", directory / "second");
  Unit store = unit("fort.3");
  for (const char* text : {"the file is not there yet\n", "now it is\n"}) {
    store.open_for_replacement();
    store.text = text;
    store.replace();
    EXPECT_EQ(content("results/old"), text);
    EXPECT_TRUE(fs::is_symlink(directory / "fort.3"));
    EXPECT_TRUE(fs::is_symlink(directory / "second"));
    EXPECT_FALSE(fs::exists(directory / "results/old.tmp"));
  }
}

TEST_F(UnitOnDisk, DirectoriesAreRefused) {
  fs::create_directory(directory / "INP");
  const std::string name = directory / "INP";
  expect_system_error(EISDIR, name, [&] { unit("INP").open(); });
  expect_system_error(EISDIR, name, [&] { unit("INP").open_for_replacement(); });
  expect_system_error(EISDIR, name, [&] { unit("INP").save(); });
  EXPECT_FALSE(fs::exists(directory / "INP.tmp"));
  expect_system_error(ENOENT, directory / "none/INP", [&] { unit("none/INP").open(); });
  expect_system_error(ENOENT, directory / "none/INP", [&] { unit("none/INP").open_for_replacement(); });
}

}  // namespace
}  // namespace varpre
