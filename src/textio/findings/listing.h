#pragma once

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

}  // namespace varpre
