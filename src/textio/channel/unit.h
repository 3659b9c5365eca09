#pragma once

#include <cstddef>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "textio/channel/file.h"

namespace varpre {

// Where a record comes from, in the words of the person who wrote it.
struct Origin {
  std::string_view file;
  int line = 0;           // from 1
  std::string_view text;  // the whole line of the file, uncut
};

// A numbered channel over one sequential text file. Records are lines: each ends at a line feed, a carriage
// return directly before it and a byte-order mark at the start of the file are not part of any record.
// Reading and writing take the records in order; writing appends. Inputs are held in memory whole, outputs as
// long as somebody may read or change them.
//
// A unit may be a copy of some lines of another, cut or padded to a width. In memory it holds no text of its
// own then, only which lines they are, and its records are not padded; those of its file are.
class Unit {
 public:
  enum class Storage {
    memory,  // no file: tests, fuzzing, the benchmark
    disk     // the file `name` of the working directory
  };

  Unit() = default;
  Unit(int unit_number, std::string file_name, Storage where);

  int number = 0;
  std::string name;
  bool finite_only = false;  // refuse NaN and infinity (record.h)
  std::string text;          // the records, each with its line end, that were not passed on

  // Connects the unit and stands before its first record. On disk: reads the whole file; an absent file is
  // created empty. Throws std::system_error when the file cannot be opened.
  void open();

  // Connects the unit as the output of this run and stands at the beginning of an empty file. On disk: opens
  // its replacement (file.h), which leaves an earlier file as it is until `replace`. Throws
  // std::system_error.
  void open_for_replacement();
  // From here on no record written so far or later is read again or changed: the records may leave the memory
  // while they are written. Nothing in memory.
  void begin_to_pass_on();
  // Passes on what has collected once it exceeds a piece. Throws std::system_error.
  void pass_on() {
    if (text.size() >= longest_text_) flush();
  }
  // Ends the file with the records not passed on yet; it takes the place of the earlier one. Nothing in
  // memory. Throws std::system_error.
  void replace();

  // Writes the records of a copy to its file as it stands. Nothing in memory. Throws std::system_error.
  void save() const;

  // The next record, without its line end; valid until the unit is written to. False when no record is left.
  // Throws std::system_error when the file could be opened but not read to its end.
  bool next(std::string_view& record);
  void rewind();
  // Stands before the record last read again.
  void step_back();
  // Drops all records.
  void clear();

  // Number of the record last read, from 1; 0 before the first.
  int record_number() const { return cursor_.record_number; }

  // Makes this unit an empty copy of an input, which stays where it is and as it is from now on; each `copy`
  // appends the record that the other last read.
  void begin_copy(const Unit& source, std::size_t width);
  void copy();

  // Origin of a record (its number, from 1), of a copy in the file the user wrote; of record 0 the file with
  // the number of its lines.
  Origin origin(int record) const;

  // Visits every record with its number, wherever the unit stands.
  template <class Visit>
  void for_each_record(Visit visit) const {
    Cursor cursor = beginning();
    for (std::string_view record; advance(cursor, record);) visit(cursor.record_number, record);
  }

  std::set<int> cut_records;  // of a copy: records from which text other than blanks was cut off

 private:
  // A stretch of a copy: records that follow each other in the source as well.
  struct Run {
    int record;          // the first of them, from 1
    int line;            // its number in the source
    std::size_t offset;  // where it stands in the text of the source
  };
  struct Cursor {
    std::size_t position = 0;  // start of the next record
    std::size_t last = 0;      // start of the record last read
    int record_number = 0;     // of the record last read
    std::size_t runs = 0;      // of a copy: runs that have begun
  };
  // Lines of a file that is no copy, counted as far as somebody has asked.
  struct LineIndex {
    std::vector<std::size_t> starts;  // of every 64th line, from the first
    std::size_t counted = 0;          // bytes of the text of which `lines` is the number
    int lines = 0;
  };
  Run nearest_line(int record) const;
  int count_lines() const;
  Cursor beginning() const;
  bool advance(Cursor& cursor, std::string_view& record) const;
  void flush();

  Storage storage_ = Storage::memory;
  std::unique_ptr<Replacement> replacement_;  // of an output on disk
  std::size_t longest_text_ = std::string::npos;
  int read_error_ = 0;  // errno of a read that failed after what `text` holds
  Cursor cursor_;
  const Unit* source_ = nullptr;  // of a copy
  std::size_t width_ = 0;         // of the records of a copy
  int copied_ = 0;                // records of a copy
  std::vector<Run> runs_;         // of a copy, in order
  mutable LineIndex lines_;
};

// What a stage reads, and what it writes the solver's records to.
using Input = Unit;
using StoreFile = Unit;

}  // namespace varpre
