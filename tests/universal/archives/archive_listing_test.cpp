#include "universal/archives/archive_listing.h"

#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/failure_text.h"

namespace tolvane {
namespace {

using namespace std::string_literals;

const std::string fine = "(no failure)";
const std::string refused = "This archive contains unsafe paths, links or too much expanded data.";
const std::string unreadable = "This archive is empty or cannot be inspected safely.";

std::string judged(const std::string& listing) {
  return support::failureText([&] {
    ArchiveListing::judge(listing);
    return 0;
  });
}

struct ListingCase {
  std::string listing;
  std::string expected;
};
void PrintTo(const ListingCase& c, std::ostream* out) {
  *out << c.listing;
}

class ListingTest : public ::testing::TestWithParam<ListingCase> {};
TEST_P(ListingTest, IsJudged) {
  EXPECT_EQ(judged(GetParam().listing), GetParam().expected);
  // The entry counts wherever it stands.
  EXPECT_EQ(judged("\n\nPath = a\n\n" + GetParam().listing),
            GetParam().expected == unreadable ? fine : GetParam().expected);
}
INSTANTIATE_TEST_SUITE_P(Paths,
                         ListingTest,
                         ::testing::Values(ListingCase{"Path = a", fine},
                                           ListingCase{"Path = a..b/...c/.d", fine},
                                           ListingCase{"Path = ", fine},
                                           ListingCase{"Path = b\xFF\xFE/\xE9", fine},
                                           ListingCase{"Path = ../evil", refused},
                                           ListingCase{"Path = dir/../../x", refused},
                                           ListingCase{"Path = dir/..", refused},
                                           ListingCase{"Path = /etc/x", refused},
                                           ListingCase{"Path = a\\b", refused},
                                           ListingCase{"Path = C:x", refused},
                                           ListingCase{"Path = a\0b"s, refused},
                                           ListingCase{"Path = a = ../b", fine},
                                           ListingCase{"Path = a = /../b", refused}));
INSTANTIATE_TEST_SUITE_P(
    Fields,
    ListingTest,
    ::testing::Values(ListingCase{"Path = a\nMode = -rw-r--r--", fine},
                      ListingCase{"Path = a\nMode = drwxr-xr-x", fine},
                      ListingCase{"Path = a\nMode = ", fine},
                      ListingCase{"Path = a\nMode = crw-r--r--", refused},
                      ListingCase{"Path = a\nSymbolic Link = \nHard Link = ", fine},
                      ListingCase{"Path = a\nSymbolic Link = b", refused},
                      ListingCase{"Path = a\nHard Link = b", refused},
                      ListingCase{"Path = a\nAttributes = D drwxr-xr-x", fine},
                      ListingCase{"Path = a\nAttributes = LvX", fine},
                      ListingCase{"Path = a\nAttributes = A lrwxrwxrwx", refused},
                      ListingCase{"Path = a\nName without value\nMode = l", refused},
                      ListingCase{"Path = ok\nPath = ../evil", refused},
                      ListingCase{"Size = 5\nMode = -", unreadable},
                      ListingCase{"", unreadable},
                      ListingCase{"ERROR: a", unreadable}));
INSTANTIATE_TEST_SUITE_P(
    Sizes,
    ListingTest,
    ::testing::Values(
        ListingCase{"Path = a\nSize = 536870912", fine},
        ListingCase{"Path = a\nSize = +536870912", fine},
        ListingCase{"Path = a\nSize = 536870913", refused},
        ListingCase{"Path = a\nSize = 536870912\n\nPath = b\nSize = 1", refused},
        ListingCase{"Path = a\nSize = 1\n\nPath = b\nSize = 9223372036854775807", refused},
        ListingCase{"Path = a\nSize = \n\nPath = b\nSize = 5 \n\nPath = c\nSize = x", fine},
        ListingCase{"Path = a\nSize = 99999999999999999999", fine}));

TEST(ListingTest, AllowsTenThousandEntries) {
  std::string listing;
  for (int entry = 0; entry < 10'000; ++entry) {
    listing += "Path = a\nSize = 0\n\n";
  }
  EXPECT_EQ(judged(listing + "Size = 0"), fine);
  EXPECT_EQ(judged(listing + "Path = a"), refused);
}

}  // namespace
}  // namespace tolvane
