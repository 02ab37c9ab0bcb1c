#include "formats/delimited_text.h"

#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "tests/support/failure_text.h"
#include "tests/support/words.h"

namespace tolvane {
namespace {

using support::failureText;
using support::repeated;
using UniversalFormats::csv;
using UniversalFormats::delimited;

const char* const tooLarge = "The table exceeds the row/cell safety limit.";
const char* const unclosed = "The delimited file has an unclosed quoted cell.";

const std::string mark = "\u0301";        // joins what precedes
const std::string numberSign = "\u0600";  // joins what follows

struct ReadingCase {
  std::string label, text;
  Table expected;
  char delimiter = ',';
};
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

TEST(DelimitedReadingTest, GivesTheRows) {
  for (const ReadingCase& c : readingCases) {
    EXPECT_TRUE(csv(c.text, c.delimiter) == c.expected) << c.label;
  }
}

TEST(DelimitedLimits, TheMostRowsAndTheLongestCellAreRead) {
  Table rows(99'999, {""});
  rows.push_back({"a"});
  EXPECT_TRUE(csv(repeated("\n", 99'999) + "a", ',') == rows);
  const std::string longest(999'999, 'a');
  EXPECT_TRUE(csv(longest + "\n", ',') == Table({{longest}}));
}

struct RefusalCase {
  std::string label, start;
  const char* piece;  ///< repeated `count` times between start and end
  std::size_t count;
  std::string end, message;
};
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

TEST(DelimitedRefusalTest, SaysWhy) {
  for (const auto& [label, start, piece, count, end, message] : refusalCases) {
    SCOPED_TRACE(label);
    const std::string text = start + repeated(piece, count) + end;
    EXPECT_EQ(failureText([&] { return csv(text, ','); }), message);
  }
}

const std::tuple<const char*, Table, char, std::string> writingCases[] = {
    {"nothing", {}, ',', "\r\n"},
    {"a row without cells", {{}, {"a"}}, ',', "\r\na\r\n"},
    {"empty cells", {{"", ""}, {""}}, ',', ",\r\n\r\n"},
    {"a comma between commas", {{"1,5", "a\tb"}}, ',', "\"1,5\",a\tb\r\n"},
    {"a comma between tabs", {{"1,5", "a\tb"}}, '\t', "1,5\t\"a\tb\"\r\n"},
    {"quotes", {{"say \"hi\"", "\""}}, ',', "\"say \"\"hi\"\"\",\"\"\"\"\r\n"},
    {"line ends", {{"a\n", "\rb", "c\r\nd"}}, ',', "\"a\n\",\"\rb\",\"c\r\nd\"\r\n"},
    {"spaces", {{" a ", "é"}}, ',', " a ,é\r\n"},
};

TEST(DelimitedWritingTest, EnclosesWhatHasToBe) {
  for (const auto& [label, rows, separator, expected] : writingCases) {
    EXPECT_EQ(delimited(rows, separator), expected) << label;
  }
}

}  // namespace
}  // namespace tolvane
