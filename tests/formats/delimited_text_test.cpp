#include "formats/delimited_text.h"

#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/failure_text.h"

namespace tolvane {
namespace {

using support::failureText;
using UniversalFormats::csv;
using UniversalFormats::delimited;

const char* const tooLarge = "The table exceeds the row/cell safety limit.";
const char* const unclosed = "The delimited file has an unclosed quoted cell.";

const std::string mark = "\u0301";        // joins what precedes
const std::string numberSign = "\u0600";  // joins what follows

std::string repeated(const std::string& text, int count) {
  std::string result;
  for (int index = 0; index < count; ++index) {
    result += text;
  }
  return result;
}

struct ReadingCase {
  const char* label;
  std::string text;
  Table expected;
  char delimiter = ',';
};
void PrintTo(const ReadingCase& c, std::ostream* out) {
  *out << c.label;
}

const ReadingCase readingCases[] = {
    {"nothing", "", {}},
    {"a quoted delimiter", R"(a,"b,c",d)", {{"a", "b,c", "d"}}},
    {"escaped quotes", R"("He said ""hi""")", {{R"(He said "hi")"}}},
    {"only an escaped quote", R"("""")", {{"\""}}},
    {"a stray quote", "ab\"c", {{"ab\"c"}}},
    {"white space before a quote", R"( "a","b" )", {{" \"a\"", "b "}}},
    {"text after a quoted section", R"("a"b"c",d)", {{"ab\"c\"", "d"}}},
    {"empty quotes", "\"\",\"\"\n\"\"", {{"", ""}}},
    {"an open cell with a line break", "\"a\r\nb\nc\rd\",e", {{"a\r\nb\nc\rd", "e"}}},
    {"mixed line ends", "a\r\nb\nc\rd", {{"a"}, {"b"}, {"c"}, {"d"}}},
    {"blank lines", "a\n\n\rb\r\n", {{"a"}, {""}, {""}, {"b"}}},
    {"a last delimiter", "a,\n,", {{"a", ""}, {"", ""}}},
    {"rows of different lengths", "a\nb,c", {{"a"}, {"b", "c"}}},
    {"tabs", "a,b\t\"c\td\"", {{"a,b", "c\td"}}, '\t'},
    {"nothing is trimmed", " a ,\tb ", {{" a ", "\tb "}}},
    {"a marked delimiter", "a," + mark + "b,c", {{"a," + mark + "b", "c"}}},
    {"a prepended delimiter", "a" + numberSign + ",b,c", {{"a" + numberSign + ",b", "c"}}},
    {"a marked quote opens nothing", "\"" + mark + "a,b", {{"\"" + mark + "a", "b"}}},
    {"a marked quote closes nothing", "\"a\"" + mark + ",b\"", {{"a\"" + mark + ",b"}}},
    {"a marked quote escapes nothing", "\"a\"\"" + mark + ",b", {{"a\"" + mark, "b"}}},
    {"a variation selector", "a,\uFE0Fb", {{"a,\uFE0Fb"}}},
    {"nothing joins a line end", "a\n" + mark + "b\r" + mark, {{"a"}, {mark + "b"}, {mark}}},
    {"nothing joins a tab", numberSign + "\t" + mark, {{numberSign, mark}}, '\t'},
    {"other letters join nothing", "é,日本,👍🏽,\"ä\"", {{"é", "日本", "👍🏽", "ä"}}},
};

class DelimitedReadingTest : public testing::TestWithParam<ReadingCase> {};
TEST_P(DelimitedReadingTest, GivesTheRows) {
  EXPECT_TRUE(csv(GetParam().text, GetParam().delimiter) == GetParam().expected);
}
INSTANTIATE_TEST_SUITE_P(All, DelimitedReadingTest, ::testing::ValuesIn(readingCases));

TEST(DelimitedLimits, TheMostRowsAndTheLongestCellAreRead) {
  Table rows(99'999, {""});
  rows.push_back({"a"});
  EXPECT_TRUE(csv(repeated("\n", 99'999) + "a", ',') == rows);
  const std::string longest(999'999, 'a');
  EXPECT_TRUE(csv(longest + "\n", ',') == Table({{longest}}));
}

struct RefusalCase {
  const char* label;
  const char* start;
  const char* piece;  ///< repeated `count` times between start and end
  int count;
  const char* end;
  const char* message;
};
void PrintTo(const RefusalCase& c, std::ostream* out) {
  *out << c.label;
}

const RefusalCase refusalCases[] = {
    {"an unclosed quote", "a,\"b\n", "", 0, "", unclosed},
    {"a quote alone", "\"", "", 0, "", unclosed},
    {"a last escaped quote", "\"a\"\"", "", 0, "", unclosed},
    {"too many rows", "", "\n", 100'000, "", tooLarge},
    {"too many rows with text", "", "a\r\n", 100'000, "\"", tooLarge},
    {"a long cell", "", "a", 1'000'000, "", tooLarge},
    {"a long cell in bytes", "", "é", 500'000, "", tooLarge},
    {"a long quoted cell", "\"", ",", 1'000'000, "", tooLarge},
    {"a long cell in two sections", "\"", "a", 999'999, "\"b", tooLarge},
    {"a long cell of escapes", "\"", "\"\"", 1'000'000, "\"", tooLarge},
};

class DelimitedRefusalTest : public testing::TestWithParam<RefusalCase> {};
TEST_P(DelimitedRefusalTest, SaysWhy) {
  const auto& [label, start, piece, count, end, message] = GetParam();
  const std::string text = start + repeated(piece, count) + end;
  EXPECT_EQ(failureText([&] { return csv(text, ','); }), message);
}
INSTANTIATE_TEST_SUITE_P(All, DelimitedRefusalTest, ::testing::ValuesIn(refusalCases));

struct WritingCase {
  const char* label;
  Table rows;
  char separator;
  std::string expected;
};
void PrintTo(const WritingCase& c, std::ostream* out) {
  *out << c.label;
}

const WritingCase writingCases[] = {
    {"nothing", {}, ',', "\r\n"},
    {"a row without cells", {{}, {"a"}}, ',', "\r\na\r\n"},
    {"empty cells", {{"", ""}, {""}}, ',', ",\r\n\r\n"},
    {"a comma between commas", {{"1,5", "a\tb"}}, ',', "\"1,5\",a\tb\r\n"},
    {"a comma between tabs", {{"1,5", "a\tb"}}, '\t', "1,5\t\"a\tb\"\r\n"},
    {"quotes", {{"say \"hi\"", "\""}}, ',', "\"say \"\"hi\"\"\",\"\"\"\"\r\n"},
    {"line ends", {{"a\n", "\rb", "c\r\nd"}}, ',', "\"a\n\",\"\rb\",\"c\r\nd\"\r\n"},
    {"spaces", {{" a ", "é"}}, ',', " a ,é\r\n"},
};

class DelimitedWritingTest : public testing::TestWithParam<WritingCase> {};
TEST_P(DelimitedWritingTest, EnclosesWhatHasToBe) {
  EXPECT_EQ(delimited(GetParam().rows, GetParam().separator), GetParam().expected);
}
INSTANTIATE_TEST_SUITE_P(All, DelimitedWritingTest, ::testing::ValuesIn(writingCases));

}  // namespace
}  // namespace tolvane
