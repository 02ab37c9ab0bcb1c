#include "universal/dispatch/text_rows.h"

#include <ostream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tolvane {
namespace {

struct RowsCase {
  const char* label;
  const char* text;
  Table expected;
  bool isConsistent;
};

void PrintTo(const RowsCase& c, std::ostream* out) {
  *out << c.label;
}

class TextRowsTest : public ::testing::TestWithParam<RowsCase> {};

TEST_P(TextRowsTest, SplitsLinesIntoCells) {
  const Table rows = UniversalEngine::rowsOf(GetParam().text);
  EXPECT_EQ(rows, GetParam().expected);
  EXPECT_EQ(UniversalEngine::isConsistent(rows), GetParam().isConsistent);
}

INSTANTIATE_TEST_SUITE_P(
    Texts,
    TextRowsTest,
    ::testing::Values(RowsCase{"nothing", "", {}, false},
                      RowsCase{
                          "blank lines go", "\n \t \na  b\n\nc  d", {{"a", "b"}, {"c", "d"}}, true},
                      RowsCase{"tabs keep what stands between them",
                               "a\t b  c\t\nx\ty\tz",
                               {{"a", " b  c", ""}, {"x", "y", "z"}},
                               true},
                      RowsCase{"wide gaps are one gap",
                               "  one     two words   \n1  2",
                               {{"one", "two words"}, {"1", "2"}},
                               true},
                      RowsCase{"single spaces join", "a b c", {{"a b c"}}, false},
                      RowsCase{"one row", "a  b", {{"a", "b"}}, false},
                      RowsCase{"one column", "a\nb", {{"a"}, {"b"}}, false},
                      RowsCase{"ragged", "a  b\nc  d  e", {{"a", "b"}, {"c", "d", "e"}}, false}));

}  // namespace
}  // namespace tolvane
