#pragma once

#include <string>
#include <vector>

// What a program asks of the system for itself, one file of sources for each system: process_posix.cpp,
// process_windows.cpp.
namespace varpre {

// The descriptors that every process begins with.
constexpr int standard_output = 1;
constexpr int standard_error = 2;

// The words of the command line behind the name of the program, in UTF-8 (on POSIX the bytes that were
// given).
std::vector<std::string> words_of_command_line(int argc, char** argv);

// What is written to the standard streams goes out byte for byte, and shows on a terminal as the UTF-8 that
// it is.
void write_bytes_as_they_are();

// A failure to write is reported, and does not end the process; a standard descriptor that the caller closed
// does not become that of the next file to be opened, which the listing would go to; and memory that a stage
// has done with stays with the process, where every page that went back and came again would be cleared once
// more.
void prepare_for_a_run();

// A file that becomes too large is an error of writing, told as such.
void let_large_files_fail();

bool is_terminal(int descriptor);

// The errno of looking for files in a directory and reading it; 0 when that is allowed.
int error_of_access(const std::string& directory);

}  // namespace varpre
