#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "textio/findings/listing.h"
#include "textio/record/numbered.h"
#include "textio/record/text.h"

// Cutting of input lines into names and delimiters, and the comparison of names. Positions count from 1; a
// blank is the space character. With a delimiter set (DELCH) that is not empty a blank is a delimiter as
// well.
namespace varpre {

// Length of a free-form input line; longer ones are cut.
constexpr int line_length = 255;
using Line = Text<line_length>;

// Names cut from a line of at most 255 characters, and the delimiter strings behind them: SYMS[k] is followed
// by DELS[k]; the last name may have none. Both view the line they were cut from.
struct NameList {
  std::vector<std::string_view> SYMS;
  std::vector<std::string_view> DELS;

  int NSYM() const { return count_of(SYMS); }
  int NDEL() const { return count_of(DELS); }
};

// Lengths that a name and a delimiter string may have.
struct NameLimits {
  int LSYM;
  int LDEL;
};

// Position of the first character that is a delimiter or blank; 0 when there is none.
int IFDE(std::string_view text, std::string_view DELCH);

// Length of the leading run of delimiters and blanks; 1 when the text is empty or holds nothing else.
int ILDE(std::string_view text, std::string_view DELCH);

// The routines below report an error at `record`, the record the line was read from; not without one.

// Cleans a line in place: commas become blanks, leading blanks go, "!" begins a comment that is cut off, runs
// of blanks shrink to one, and no blank remains beside a delimiter. Returns the position of the last
// character that is not blank. A line that begins with a delimiter stops the run, with two free-form records
// in the listing.
int COMPDE(std::span<char> line, std::string_view DELCH, Listing& MSGFIL, const Place* record = nullptr);

// Cuts a cleaned line into names and delimiter strings. A name or delimiter string longer than its limit
// stops the run, with a free-form record in the listing. The two differ only in the wording of that record.
void SYDEL(std::string_view text, const NameLimits& limits, std::string_view DELCH, NameList& names,
           Listing& MSGFIL, const Place* record = nullptr);
void RYDEL(std::string_view text, const NameLimits& limits, std::string_view DELCH, NameList& names,
           Listing& MSGFIL, const Place* record = nullptr);

// COMPDE, then SYDEL.
void GETNAM(std::span<char> line, const NameLimits& limits, std::string_view DELCH, NameList& names,
            Listing& MSGFIL, const Place* record = nullptr);

// Copies twelve integers and sorts the groups KOUT(1..n) and KOUT(n+1..2n) in decreasing order, n = 3 or 6.
std::array<int, 12> ISTDEC(const std::array<int, 12>& KIN, int n);

}  // namespace varpre
