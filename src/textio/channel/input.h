#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "textio/channel/file.h"

namespace varpre {

// Whether a channel is a file of the working directory, a file of any directory in which nothing is written,
// or exists in memory only: tests, fuzzing.
enum class Storage { memory, read_only, disk };

// Where a record comes from, in the words of the person who wrote it.
struct Origin {
  std::string_view file;
  int line = 0;           // from 1
  std::string_view text;  // the whole line of the file, uncut
};

// A numbered channel over a sequential text file that is read. Records are lines: each ends at a line feed, a
// carriage return directly before it and a byte-order mark at the start of the file are not part of any
// record. The file is held in memory whole.
//
// An input may be a copy of some lines of another, cut or padded to a width. In memory it holds no text of
// its own then, only which lines they are, and its records are not padded; those of its file are. A copy
// knows which of its records somebody read.
class Input {
 public:
  Input() = default;
  Input(int unit_number, std::string file_name, Storage where);

  int number = 0;
  std::string name;
  std::string text;  // the records, each with its line end

  // Opens the file, an absent one is created empty or, where nothing is written, counts as empty; `load`
  // reads it and stands before the first record. Nothing of that in memory. Both throw (file.h).
  void open();
  void load();
  bool was_absent() const { return was_absent_; }
  // The errno of a read that failed after what `text` holds; 0: none did.
  int read_error() const { return read_error_; }

  // The next record, without its line end. False when no record is left.
  bool next(std::string_view& record);
  // The same for a search: the record does not count as read, until `mark_read` says so.
  bool pass(std::string_view& record);
  void mark_read();
  // The next record, without going there.
  bool peek(std::string_view& record) const;
  void rewind();

  // Number of the record last read or passed, from 1; 0 before the first.
  int record_number() const { return cursor_.record_number; }
  // The file whose lines these are: of a copy the one it was made of.
  const Input& file() const { return source_ == nullptr ? *this : *source_; }
  // Of a copy: whether somebody read a record (its number, from 1).
  bool is_read(int record) const;

  // Makes this an empty copy of another input, which stays where it is and as it is from now on; each `copy`
  // appends the record that the other last read.
  void begin_copy(const Input& source, std::size_t width);
  void copy();
  // Writes the records of a copy to its file. Nothing in memory. Throws.
  void save() const;

  // Origin of a record (its number, from 1), of a copy in the file the user wrote; of record 0 the file with
  // the number of its lines.
  Origin origin(int record) const;

  // Visits every record with its number, wherever the input stands.
  template <class Visit>
  void for_each_record(Visit visit) const {
    Cursor cursor = beginning();
    for (std::string_view record; advance(cursor, record);) visit(cursor.record_number, record);
  }

  std::set<int> cut_records;  // of a copy: records from which text other than blanks was cut off

 private:
  // A stretch of a copy: records that follow each other in the source as well.
  struct Stretch {
    int record;          // the first of them, from 1
    int line;            // its number in the source
    std::size_t offset;  // where it stands in the text of the source
  };
  struct Cursor {
    std::size_t position = 0;   // start of the next record
    std::size_t last = 0;       // start of the record last read
    int record_number = 0;      // of the record last read
    std::size_t stretches = 0;  // of a copy: stretches that have begun
  };
  // The lines of a file that is no copy, as far as somebody has asked for them.
  struct LineIndex {
    std::vector<std::size_t> starts;  // of every 64th line, from the first
    int count = 0;                    // of all lines; 0: not counted yet
  };
  int count_lines() const;
  Stretch nearest_line(int record) const;
  Cursor beginning() const;
  bool advance(Cursor& cursor, std::string_view& record) const;
  bool take(Cursor& cursor, std::string_view& record) const;

  Storage storage_ = Storage::memory;
  std::optional<OpenFile> file_;  // between `open` and `load`
  bool was_absent_ = false;
  int read_error_ = 0;
  Cursor cursor_;
  const Input* source_ = nullptr;   // of a copy
  std::size_t width_ = 0;           // of the records of a copy
  int copied_ = 0;                  // records of a copy
  std::vector<Stretch> stretches_;  // of a copy, in order
  std::vector<bool> read_;          // of a copy, by record
  mutable LineIndex lines_;
};

}  // namespace varpre
