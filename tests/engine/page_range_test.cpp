#include "engine/page_range.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/failure_text.h"

namespace tolvane {
namespace {

const struct {
  std::string text;
  int count;
  std::set<int> expected;  // empty: refused
} pageRangeCases[] = {
    {"", 4, {0, 1, 2, 3}},
    {" \t ", 2, {0, 1}},
    {"1-3, 5", 5, {0, 1, 2, 4}},
    {"3", 5, {2}},
    {"2-2", 5, {1}},
    {"2-3,1,3", 5, {0, 1, 2}},
    {"\t 1-3 ,4 ", 5, {0, 1, 2, 3}},
    {"+2", 5, {1}},
    {"001-002", 5, {0, 1}},
    {"3-1", 5, {}},
    {"0", 5, {}},
    {"6", 5, {}},
    {"4-6", 5, {}},
    {"1,,2", 5, {}},
    {"1,", 5, {}},
    {"-2", 5, {}},
    {"2-", 5, {}},
    {"1-2-3", 5, {}},
    {"a", 5, {}},
    {"1a", 5, {}},
    {"1 - 3", 5, {}},
    {"\n", 5, {}},
    {"+", 5, {}},
    {"++1", 5, {}},
    {"99999999999999999999", 5, {}},
};

TEST(PageRangeTest, SelectsOrRefuses) {
  for (const auto& c : pageRangeCases) {
    SCOPED_TRACE(c.text);
    std::set<int> pages;
    const std::string failure =
        support::failureText([&] { return pages = pageRange(c.text, c.count); });
    EXPECT_EQ(pages, c.expected);
    EXPECT_EQ(
        failure,
        pages.empty() ? "Use page ranges such as 1-3, 5 within this document." : "(no failure)");
  }
}

}  // namespace
}  // namespace tolvane
