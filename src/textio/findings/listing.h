#pragma once

#include <optional>

#include "textio/channel/dropped.h"
#include "textio/channel/listing_file.h"
#include "textio/findings/findings.h"
#include "textio/record/record.h"

namespace varpre {

// What a run tells people: the listing with its fixed texts, and the findings for standard error.
struct Listing {
  explicit Listing(int descriptor = ListingFile::no_file) : file(descriptor) {}

  ListingFile file;
  Findings findings;
};

// Writes one statement: whole records, at the end of the listing.
template <FormatText Text, class... Items>
void write(Listing& listing, const Items&... items) {
  record_detail::append_statement<Text>(listing.file.text, false, items...);
  listing.file.pass_on();
}

// Writes a free-form record: one blank, then the items; texts follow each other directly, between any other
// two items stands one blank; integers are right-justified in 11 columns.
template <class... Items>
void write_free(Listing& listing, const Items&... items) {
  record_detail::append_free(listing.file.text, items...);
  listing.file.pass_on();
}

// Reading goes on behind an error to find others in the same run, within bounds: nothing of it reaches the
// listing.
class GoingOn {
 public:
  explicit GoingOn(Listing& MSGFIL) : MSGFIL_(MSGFIL), errors_before_(MSGFIL.findings.errors()) {}

  // To be called behind an error and its message in the listing. False when enough has been found.
  bool behind_error() {
    if (!dropped_) dropped_.emplace(MSGFIL_.file);
    constexpr int most_errors = 20;
    constexpr int most_failures = 500;
    return ++failures_ < most_failures && MSGFIL_.findings.errors() - errors_before_ < most_errors;
  }
  bool failed() const { return failures_ > 0; }

 private:
  Listing& MSGFIL_;
  int errors_before_;
  int failures_ = 0;
  std::optional<Dropped<ListingFile>> dropped_;
};

}  // namespace varpre
