#include "engine/primitives/blank_text.h"

#include <tuple>

#include <gtest/gtest.h>

namespace tolvane {
namespace {

const std::tuple<std::string, std::string> trimmedCases[] = {
    {"", ""},
    {" \t\r\n\f", ""},
    {"\u2003\u00A0\u0085\u3000", ""},
    {"\n a b \u2028", "a b"},
    {"\u00A0\u00E4\u2003\u00A0", "\u00E4"},
    // Their last bytes are those of a blank.
    {"\u0105", "\u0105"},
    {"\u2020", "\u2020"},
};

TEST(TrimmedTest, LeavesWhatStandsBetweenTheBlanks) {
  for (const auto& [text, expected] : trimmedCases) {
    SCOPED_TRACE(::testing::Message() << '"' << text << '"');
    EXPECT_EQ(trimmed(text), expected);
    EXPECT_EQ(isBlank(text), expected.empty());
  }
}

}  // namespace
}  // namespace tolvane
