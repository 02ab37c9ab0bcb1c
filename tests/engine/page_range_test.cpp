#include "engine/page_range.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "engine/primitives/conversion_failure.h"

namespace tolvane {
namespace {

struct RangeCase {
  const char* label;
  const char* text;
  int count;
  std::set<int> expected;  // empty: refused
};
void PrintTo(const RangeCase& c, std::ostream* out) {
  *out << '"' << c.text << "\" of " << c.count;
}

class PageRangeTest : public testing::TestWithParam<RangeCase> {};

TEST_P(PageRangeTest, SelectsOrRefuses) {
  const RangeCase& c = GetParam();
  if (!c.expected.empty()) {
    EXPECT_EQ(pageRange(c.text, c.count), c.expected);
    return;
  }
  try {
    static_cast<void>(pageRange(c.text, c.count));
    ADD_FAILURE() << "was accepted";
  } catch (const ConversionFailure& failure) {
    EXPECT_EQ(failure.errorDescription(), "Use page ranges such as 1-3, 5 within this document.");
  }
}

INSTANTIATE_TEST_SUITE_P(Selections,
                         PageRangeTest,
                         testing::Values(RangeCase{"empty", "", 4, {0, 1, 2, 3}},
                                         RangeCase{"blank", " \t ", 2, {0, 1}},
                                         RangeCase{"list", "1-3, 5", 5, {0, 1, 2, 4}},
                                         RangeCase{"one", "3", 5, {2}},
                                         RangeCase{"onePageSpan", "2-2", 5, {1}},
                                         RangeCase{"overlap", "2-3,1,3", 5, {0, 1, 2}},
                                         RangeCase{"blanksAround", "\t 1-3 ,4 ", 5, {0, 1, 2, 3}},
                                         RangeCase{"plusSign", "+2", 5, {1}},
                                         RangeCase{"leadingZeros", "001-002", 5, {0, 1}}),
                         [](const auto& test) { return test.param.label; });

INSTANTIATE_TEST_SUITE_P(Refusals,
                         PageRangeTest,
                         testing::Values(RangeCase{"backwards", "3-1", 5, {}},
                                         RangeCase{"zero", "0", 5, {}},
                                         RangeCase{"pastTheEnd", "6", 5, {}},
                                         RangeCase{"spanPastTheEnd", "4-6", 5, {}},
                                         RangeCase{"emptyPart", "1,,2", 5, {}},
                                         RangeCase{"trailingComma", "1,", 5, {}},
                                         RangeCase{"noFirst", "-2", 5, {}},
                                         RangeCase{"noLast", "2-", 5, {}},
                                         RangeCase{"threeEnds", "1-2-3", 5, {}},
                                         RangeCase{"letter", "a", 5, {}},
                                         RangeCase{"trailingLetter", "1a", 5, {}},
                                         RangeCase{"blanksInside", "1 - 3", 5, {}},
                                         RangeCase{"lineEnd", "\n", 5, {}},
                                         RangeCase{"lonePlus", "+", 5, {}},
                                         RangeCase{"twoSigns", "++1", 5, {}},
                                         RangeCase{"overflow", "99999999999999999999", 5, {}}),
                         [](const auto& test) { return test.param.label; });

}  // namespace
}  // namespace tolvane
