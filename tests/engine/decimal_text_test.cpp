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

struct ParseCase {
  const char* text;
  double expected;
};

void PrintTo(const ParseCase& c, std::ostream* out) {
  *out << c.text;
}

class DecimalParseTest : public ::testing::TestWithParam<ParseCase> {};

TEST_P(DecimalParseTest, IsTheNearestNumber) {
  EXPECT_EQ(DecimalText::parse(GetParam().text), GetParam().expected);
}

constexpr double infinity = std::numeric_limits<double>::infinity();

INSTANTIATE_TEST_SUITE_P(Texts,
                         DecimalParseTest,
                         ::testing::Values(ParseCase{"12", 12},
                                           ParseCase{"+1e3", 1000},
                                           ParseCase{"inf", infinity},
                                           ParseCase{"1e400", infinity},
                                           ParseCase{"+1.5e99999", infinity},
                                           ParseCase{"-1e400", -infinity},
                                           ParseCase{"1e-400", 0},
                                           ParseCase{"-2.5e-99999", 0}));

TEST(DecimalTextTest, ParsesWholeTextsOnly) {
  for (const char* text : {"", "abc", "1.5 ", " 1", "1,5", "+-1", "0x10", "1.5s", "1e400s"}) {
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
