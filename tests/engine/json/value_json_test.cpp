#include "engine/json/value_json.h"

#include <limits>
#include <string>
#include <tuple>
#include <utility>

#include <gtest/gtest.h>

#include "tests/support/failure_text.h"

namespace tolvane {
namespace {

const std::tuple<Value, const char*> jsonRoundTripCases[] = {
    {nullptr, "null"},
    {5.0, "5.0"},
    {5, "5"},
    {INT64_MIN, "-9223372036854775808"},
    {INT64_MAX, "9223372036854775807"},
    {"a · \"b\"\n", R"("a · \"b\"\n")"},
    {Value::Bytes{}, R"({"$bytes":""})"},
    {Value::Bytes{0xFB, 0xFF}, R"({"$bytes":"+/8="})"},
    {Value::Map{{"$bytes", "no base64"}}, R"({"$bytes":"no base64"})"},
    {Value::Map{{"$bytes", ""}, {"a", true}}, R"({"$bytes":"","a":true})"},
    {Value::Map{{"a", Value::List{1, Value::Map{}}}}, R"({"a":[1,{}]})"},
};

TEST(JsonRoundTripTest, KeepsTypesBothWays) {
  for (const auto& [value, text] : jsonRoundTripCases) {
    SCOPED_TRACE(text);
    EXPECT_EQ(ValueJson::write(value), text);
    EXPECT_EQ(ValueJson::parse(text), value);
  }
}

TEST(ValueJsonTest, WritesWhatJsonCannotHoldInsteadOfFailing) {
  EXPECT_EQ(ValueJson::write("/a\xFF"), "\"/a\xEF\xBF\xBD\"");
  EXPECT_EQ(ValueJson::write(std::numeric_limits<double>::infinity()), "null");
}

TEST(ValueJsonTest, IndentsForPeople) {
  EXPECT_EQ(
      ValueJson::write(Value::Map{{"b", Value::List{1}}, {"a", "ä"}}, ValueJson::Layout::indented),
      "{\n  \"a\": \"ä\",\n  \"b\": [\n    1\n  ]\n}");
}

TEST(ValueJsonTest, ReadsNumbersPast64BitsAsDoubles) {
  EXPECT_EQ(ValueJson::parse("9223372036854775808"), Value(9223372036854775808.0));
  EXPECT_EQ(ValueJson::parse("1e3"), Value(1000.0));
}

TEST(ValueJsonTest, RefusesWhatIsTooLargeBeforeItIsRead) {
  const std::pair<std::string, const char*> cases[] = {
      {std::string(60'000'000, '['), "The text is too long."},
      {std::string(16'000'000, '['), "The text is nested too deeply."},
      {R"({"a":[[],"\"[[",)" + std::string(512, '['), "The text is nested too deeply."},
      {"[" + std::string(1'000'000, ',') + "]", "The text has too many members."}};
  for (const auto& [text, sentence] : cases) {
    EXPECT_EQ(support::failureText([&text = text] { return ValueJson::parse(text); }), sentence);
  }
  std::string flat = "[0";
  for (int member = 1; member < 999'999; ++member) {
    flat += ",0";
  }
  EXPECT_EQ(ValueJson::parse(flat + "]").list()->size(), 999'999U);
  const std::string brackets(1'000, '[');
  EXPECT_EQ(ValueJson::parse("\"" + brackets + "\""), Value(brackets));
}

TEST(ValueJsonTest, RefusesWhatIsNoJsonOrTooDeep) {
  for (const char* text : {"", "{", "[1,]", "{} {}", "nul", "\"\xFF\"", "1e999"}) {
    EXPECT_THROW((void)ValueJson::parse(text), ValueJson::ParseError) << text;
  }
  EXPECT_NO_THROW((void)ValueJson::parse(std::string(512, '[') + std::string(512, ']')));
  for (const std::size_t depth : {std::size_t{513}, std::size_t{100'000}}) {
    EXPECT_THROW((void)ValueJson::parse(std::string(depth, '[') + std::string(depth, ']')),
                 ValueJson::ParseError);
  }
}

}  // namespace
}  // namespace tolvane
