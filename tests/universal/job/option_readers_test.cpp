#include "universal/job/option_readers.h"

#include <cmath>
#include <ostream>

#include <gtest/gtest.h>

#include "tests/support/failure_text.h"

namespace tolvane {
namespace {

constexpr double fallback = 0.8;

struct NumberCase {
  const char* label;
  Value value;
  double expected;
};

void PrintTo(const NumberCase& c, std::ostream* out) {
  *out << c.label;
}

class NumberTest : public ::testing::TestWithParam<NumberCase> {};

TEST_P(NumberTest, ReadsLooselyTypedValues) {
  EXPECT_EQ(UniversalEngine::number({{"quality", GetParam().value}}, "quality", fallback, 0.1, 1),
            GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Values,
                         NumberTest,
                         ::testing::Values(NumberCase{"missing", Value(), fallback},
                                           NumberCase{"number", 0.5, 0.5},
                                           NumberCase{"whole number", 1, 1.0},
                                           NumberCase{"text", "0.25", 0.25},
                                           NumberCase{"no number", "abc", fallback},
                                           NumberCase{"flag counts as 1", true, 1.0},
                                           NumberCase{"list", Value::List{0.5}, fallback},
                                           NumberCase{"lower bound", 0.1, 0.1}));

struct RefusalCase {
  const char* key;
  Value value;
  const char* expected;
};

void PrintTo(const RefusalCase& c, std::ostream* out) {
  *out << c.key << ": " << c.expected;
}

class IntegerRefusalTest : public ::testing::TestWithParam<RefusalCase> {};

TEST_P(IntegerRefusalTest, NamesTheOption) {
  const auto& [key, value, expected] = GetParam();
  EXPECT_EQ(support::failureText([&, &key = key, &value = value] {
              return UniversalEngine::integer({{key, value}}, key, 0, 0, 16'384);
            }),
            expected);
}

INSTANTIATE_TEST_SUITE_P(
    Values,
    IntegerRefusalTest,
    ::testing::Values(RefusalCase{"x", -1, "X must be between 0.0 and 16384.0."},
                      RefusalCase{
                          "maxDimension", 16'385, "Maxdimension must be between 0.0 and 16384.0."},
                      RefusalCase{"x", std::nan(""), "X must be between 0.0 and 16384.0."},
                      RefusalCase{"x", "inf", "X must be between 0.0 and 16384.0."},
                      RefusalCase{"x", "1e400", "X must be between 0.0 and 16384.0."},
                      RefusalCase{"x", 20'000.5, "X must be between 0.0 and 16384.0."},
                      RefusalCase{"width", "12.5", "Width must be a whole number."}));

TEST(OptionReadersTest, IntegersComeAsTextToo) {
  EXPECT_EQ(UniversalEngine::integer({{"x", "12"}}, "x", 0, 0, 100), 12);
  EXPECT_EQ(UniversalEngine::integer({{"x", "abc"}}, "x", 7, 0, 100), 7);
}

TEST(OptionReadersTest, ColorsAreSixDigits) {
  EXPECT_EQ(UniversalEngine::color({}), "#FFFFFF");
  EXPECT_EQ(UniversalEngine::color({{"color", 12}}), "#FFFFFF");
  EXPECT_EQ(UniversalEngine::color({{"color", "#ffcc00"}}), "#ffcc00");
  for (const char* text : {"ffcc00", "#ffcc0", "#ffcc000", "#ffcc0g", "", "red"}) {
    EXPECT_EQ(support::failureText([&] {
                return UniversalEngine::color({{"color", text}});
              }),
              "Enter a color such as #FFFFFF.");
  }
}

}  // namespace
}  // namespace tolvane
