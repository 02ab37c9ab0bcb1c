#include "engine/primitives/blank_text.h"

#include <ostream>

#include <gtest/gtest.h>

namespace tolvane {
namespace {

struct TrimCase {
  const char* text;
  const char* expected;
};
void PrintTo(const TrimCase& c, std::ostream* out) {
  *out << '"' << c.text << '"';
}

class TrimmedTest : public ::testing::TestWithParam<TrimCase> {};

TEST_P(TrimmedTest, LeavesWhatStandsBetweenTheBlanks) {
  EXPECT_EQ(trimmed(GetParam().text), GetParam().expected);
  EXPECT_EQ(isBlank(GetParam().text), *GetParam().expected == '\0');
}

INSTANTIATE_TEST_SUITE_P(Texts,
                         TrimmedTest,
                         ::testing::Values(TrimCase{"", ""},
                                           TrimCase{" \t\r\n\f", ""},
                                           TrimCase{"\u2003\u00A0\u0085\u3000", ""},
                                           TrimCase{"\n a b \u2028", "a b"},
                                           TrimCase{"\u00A0\u00E4\u2003\u00A0", "\u00E4"},
                                           // Their last bytes are those of a blank.
                                           TrimCase{"\u0105", "\u0105"},
                                           TrimCase{"\u2020", "\u2020"}));

}  // namespace
}  // namespace tolvane
