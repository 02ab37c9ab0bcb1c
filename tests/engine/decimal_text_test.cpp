#include "engine/primitives/decimal_text.h"

#include <limits>
#include <tuple>

#include <gtest/gtest.h>

namespace tolvane {
namespace {

const std::tuple<double, const char*> decimalFormatCases[] = {
    {5, "5.0"},
    {0, "0.0"},
    {1.5, "1.5"},
    {0.25, "0.25"},
    {0.01, "0.01"},
    {-2, "-2.0"},
    {86400, "86400.0"},
    {1e6, "1000000.0"},
    {0.1 + 0.2, "0.30000000000000004"},
    {0.00005, "5e-05"},
};

TEST(DecimalFormatTest, IsTheShortestThatReadsBack) {
  for (const auto& [number, expected] : decimalFormatCases) {
    SCOPED_TRACE(expected);
    const std::string text = DecimalText::format(number);
    EXPECT_EQ(text, expected);
    EXPECT_EQ(DecimalText::parse(text), number);
  }
}

constexpr double infinity = std::numeric_limits<double>::infinity();

const std::tuple<const char*, double> decimalParseCases[] = {
    {"12", 12},
    {"+1e3", 1000},
    {"inf", infinity},
    {"1e400", infinity},
    {"+1.5e99999", infinity},
    {"-1e400", -infinity},
    {"1e-400", 0},
    {"-2.5e-99999", 0},
};

TEST(DecimalParseTest, IsTheNearestNumber) {
  for (const auto& [text, expected] : decimalParseCases) {
    EXPECT_EQ(DecimalText::parse(text), expected) << text;
  }
}

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
