#include "engine/primitives/decimal_text.h"

#include <limits>
#include <ostream>

#include <gtest/gtest.h>

namespace tolvane {
namespace {

struct FormatCase {
  double number;
  const char* expected;
};

void PrintTo(const FormatCase& c, std::ostream* out) {
  *out << c.expected;
}

class DecimalFormatTest : public ::testing::TestWithParam<FormatCase> {};

TEST_P(DecimalFormatTest, IsTheShortestThatReadsBack) {
  const std::string text = DecimalText::format(GetParam().number);
  EXPECT_EQ(text, GetParam().expected);
  EXPECT_EQ(DecimalText::parse(text), GetParam().number);
}

INSTANTIATE_TEST_SUITE_P(Numbers,
                         DecimalFormatTest,
                         ::testing::Values(FormatCase{5, "5.0"},
                                           FormatCase{0, "0.0"},
                                           FormatCase{1.5, "1.5"},
                                           FormatCase{0.25, "0.25"},
                                           FormatCase{0.01, "0.01"},
                                           FormatCase{-2, "-2.0"},
                                           FormatCase{86400, "86400.0"},
                                           FormatCase{1e6, "1000000.0"},
                                           FormatCase{0.1 + 0.2, "0.30000000000000004"},
                                           FormatCase{0.00005, "5e-05"}));

TEST(DecimalTextTest, ParsesWholeTextsOnly) {
  EXPECT_EQ(DecimalText::parse("12"), 12.0);
  EXPECT_EQ(DecimalText::parse("+1e3"), 1000.0);
  EXPECT_EQ(DecimalText::parse("inf"), std::numeric_limits<double>::infinity());
  for (const char* text : {"", "abc", "1.5 ", " 1", "1,5", "+-1", "0x10", "1.5s"}) {
    EXPECT_FALSE(DecimalText::parse(text)) << text;
  }
}

TEST(DecimalTextTest, ParsesWholeNumbersOf64Bits) {
  EXPECT_EQ(DecimalText::parseWhole("+012"), 12);
  EXPECT_EQ(DecimalText::parseWhole("-9223372036854775808"),
            std::numeric_limits<std::int64_t>::min());
  for (const char* text : {"", "+", "1.0", "1 ", " 1", "+-1", "++1", "9223372036854775808"}) {
    EXPECT_FALSE(DecimalText::parseWhole(text)) << text;
  }
}

}  // namespace
}  // namespace tolvane
