#include "universal/job/option_readers.h"

#include <cmath>
#include <tuple>

#include <gtest/gtest.h>

#include "tests/support/failure_text.h"

namespace tolvane {
namespace {

constexpr double fallback = 0.8;

const std::tuple<const char*, Value, double> numberCases[] = {
    {"missing", Value(), fallback},
    {"number", 0.5, 0.5},
    {"whole number", 1, 1.0},
    {"text", "0.25", 0.25},
    {"no number", "abc", fallback},
    {"flag counts as 1", true, 1.0},
    {"list", Value::List{0.5}, fallback},
    {"lower bound", 0.1, 0.1},
};

TEST(NumberTest, ReadsLooselyTypedValues) {
  for (const auto& [label, value, expected] : numberCases) {
    EXPECT_EQ(UniversalEngine::number({{"quality", value}}, "quality", fallback, 0.1, 1), expected)
        << label;
  }
}

const std::tuple<const char*, Value, const char*> integerRefusalCases[] = {
    {"x", -1, "X must be between 0.0 and 16384.0."},
    {"maxDimension", 16'385, "Maxdimension must be between 0.0 and 16384.0."},
    {"x", std::nan(""), "X must be between 0.0 and 16384.0."},
    {"x", "inf", "X must be between 0.0 and 16384.0."},
    {"x", "1e400", "X must be between 0.0 and 16384.0."},
    {"x", 20'000.5, "X must be between 0.0 and 16384.0."},
    {"width", "12.5", "Width must be a whole number."},
};

TEST(IntegerRefusalTest, NamesTheOption) {
  for (const auto& [key, value, expected] : integerRefusalCases) {
    const Value::Map options = {{key, value}};
    EXPECT_EQ(support::failureText(
                  [&, &key = key] { return UniversalEngine::integer(options, key, 0, 0, 16'384); }),
              expected);
  }
}

TEST(OptionReadersTest, ColorsAreSixDigits) {
  EXPECT_EQ(UniversalEngine::color({}), "#FFFFFF");
  EXPECT_EQ(UniversalEngine::color({{"color", 12}}), "#FFFFFF");
  EXPECT_EQ(UniversalEngine::color({{"color", "#ffcc00"}}), "#ffcc00");
  for (const char* text : {"ffcc00", "#ffcc0", "#ffcc000", "#ffcc0g", "", "red"}) {
    const Value::Map options = {{"color", text}};
    EXPECT_EQ(support::failureText([&] { return UniversalEngine::color(options); }),
              "Enter a color such as #FFFFFF.");
  }
}

}  // namespace
}  // namespace tolvane
