#include "universal/archives/archive_listing.h"

#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "tests/support/failure_text.h"
#include "tests/support/words.h"

namespace tolvane {
namespace {

using namespace std::string_literals;

const std::string fine = "(no failure)";
const std::string refused = "This archive contains unsafe paths, links or too much expanded data.";
const std::string unreadable = "This archive is empty or cannot be inspected safely.";

std::string judged(const std::string& listing) {
  return support::failureText([&] { ArchiveListing::judge(listing); });
}

const std::tuple<std::string, std::string> listingCases[] = {
    {"Path = a", fine},
    {"Path = a..b/...c/.d", fine},
    {"Path = ", fine},
    {"Path = b\xFF\xFE/\xE9", fine},
    {"Path = ../evil", refused},
    {"Path = dir/../../x", refused},
    {"Path = dir/..", refused},
    {"Path = /etc/x", refused},
    {"Path = a\\b", refused},
    {"Path = C:x", refused},
    {"Path = a\0b"s, refused},
    {"Path = a = ../b", fine},
    {"Path = a = /../b", refused},
    {"Path = a\nMode = -rw-r--r--", fine},
    {"Path = a\nMode = drwxr-xr-x", fine},
    {"Path = a\nMode = ", fine},
    {"Path = a\nMode = crw-r--r--", refused},
    {"Path = a\nSymbolic Link = \nHard Link = ", fine},
    {"Path = a\nSymbolic Link = b", refused},
    {"Path = a\nHard Link = b", refused},
    {"Path = a\nAttributes = D drwxr-xr-x", fine},
    {"Path = a\nAttributes = LvX", fine},
    {"Path = a\nAttributes = A lrwxrwxrwx", refused},
    {"Path = a\nName without value\nMode = l", refused},
    {"Path = ok\nPath = ../evil", refused},
    {"Size = 5\nMode = -", unreadable},
    {"", unreadable},
    {"ERROR: a", unreadable},
    {"Path = a\nSize = 536870912", fine},
    {"Path = a\nSize = +536870912", fine},
    {"Path = a\nSize = 536870913", refused},
    {"Path = a\nSize = 536870912\n\nPath = b\nSize = 1", refused},
    {"Path = a\nSize = 1\n\nPath = b\nSize = 9223372036854775807", refused},
    {"Path = a\nSize = \n\nPath = b\nSize = 5 \n\nPath = c\nSize = x", fine},
    {"Path = a\nSize = 99999999999999999999", fine},
};

TEST(ListingTest, IsJudged) {
  for (const auto& [listing, expected] : listingCases) {
    SCOPED_TRACE(listing);
    EXPECT_EQ(judged(listing), expected);
    // The entry counts wherever it stands.
    EXPECT_EQ(judged("\n\nPath = a\n\n" + listing), expected == unreadable ? fine : expected);
  }
}

TEST(ListingTest, AllowsTenThousandEntries) {
  const std::string listing = support::repeated("Path = a\nSize = 0\n\n", 10'000);
  EXPECT_EQ(judged(listing + "Size = 0"), fine);
  EXPECT_EQ(judged(listing + "Path = a"), refused);
}

}  // namespace
}  // namespace tolvane
