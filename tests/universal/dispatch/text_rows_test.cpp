#include "universal/dispatch/text_rows.h"

#include <tuple>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tolvane {
namespace {

const std::tuple<std::string, std::string, Table, bool> textRowsCases[] = {
    {"nothing", "", {}, false},
    {"blank lines go", "\n \t \na  b\n\nc  d", {{"a", "b"}, {"c", "d"}}, true},
    {"tabs keep what stands between them",
     "a\t b  c\t\nx\ty\tz",
     {{"a", " b  c", ""}, {"x", "y", "z"}},
     true},
    {"wide gaps are one gap",
     "  one     two words   \n1  2",
     {{"one", "two words"}, {"1", "2"}},
     true},
    {"single spaces join", "a b c", {{"a b c"}}, false},
    {"one row", "a  b", {{"a", "b"}}, false},
    {"one column", "a\nb", {{"a"}, {"b"}}, false},
    {"ragged", "a  b\nc  d  e", {{"a", "b"}, {"c", "d", "e"}}, false},
};

TEST(TextRowsTest, SplitsLinesIntoCells) {
  for (const auto& [label, text, expected, isConsistent] : textRowsCases) {
    SCOPED_TRACE(label);
    const Table rows = UniversalEngine::rowsOf(text);
    EXPECT_EQ(rows, expected);
    EXPECT_EQ(UniversalEngine::isConsistent(rows), isConsistent);
  }
}

}  // namespace
}  // namespace tolvane
