#include "conditions/two_dimensional_options.h"

#include <gtest/gtest.h>

#include "support/stages.h"

namespace varpre {
namespace {

TEST(TwoDimensionalOptions, NeedFlameConditionsInTheStoreFile) {
  const std::string start = ">INPUT  \n OPTIONS 1\n OPTIONS 2\n OPTIONS 3\n";
  for (const std::string& store : {start + "<   \n", start + "INNER AND OUTER\n2\n3\n4\n5\n6\n"}) {
    Input NFICON = input_of("2DOP\nEND\n2DIN\nEND\n");
    StoreFile NFISTO;
    NFISTO.text = store;
    Listing listing;
    G2OPT(NFICON, listing, NFISTO);
    EXPECT_EQ(NFISTO.text, store);
    EXPECT_TRUE(listing.file.text.ends_with("\n*!* ERROR: NO FLAME CONDITIONS IN THE STORE FILE!\n"));
  }
}

}  // namespace
}  // namespace varpre
