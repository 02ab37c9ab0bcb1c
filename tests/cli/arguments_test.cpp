#include "cli/arguments.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/job_settings.h"
#include "tests/support/failure_text.h"

namespace tolvane {
namespace {

using support::failureText;
using ::testing::ElementsAre;
using ::testing::Pair;

TEST(ArgumentsTest, TakesOptionsAnywhereUntilTheyAreEnded) {
  const Arguments arguments = Arguments::parse({"--quiet",
                                                "action",
                                                "split_pdf",
                                                "--out=/results",
                                                "a.pdf",
                                                "--set",
                                                "range=1=2",
                                                "--json",
                                                "--",
                                                "--help"});
  EXPECT_EQ(arguments.command, "action");
  EXPECT_THAT(arguments.operands, ElementsAre("split_pdf", "a.pdf", "--help"));
  EXPECT_EQ(arguments.out, "/results");
  EXPECT_THAT(arguments.settings, ElementsAre(Pair("range", "1=2")));
  EXPECT_TRUE(arguments.quiet && arguments.json);
  EXPECT_FALSE(arguments.help);
}

struct UsageCase {
  std::vector<std::string> words;
  const char* expected;
  const char* action = "edit_pdf";
};
void PrintTo(const UsageCase& c, std::ostream* out) {
  *out << ::testing::PrintToString(c.words);
}

class UsageTest : public testing::TestWithParam<UsageCase> {};

TEST_P(UsageTest, SaysWhatIsWrong) {
  const auto options = [] {
    return actionOptions(Arguments::parse(GetParam().words), GetParam().action);
  };
  EXPECT_EQ(failureText(options), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Words,
    UsageTest,
    testing::Values(
        UsageCase{{"--wrong"}, "There is no option --wrong."},
        UsageCase{{"--json=1"}, "There is no option --json=1."},
        UsageCase{{"--out"}, "The option --out needs a value."},
        UsageCase{{"--set", "range"}, "Write --set KEY=VALUE, not --set range."},
        UsageCase{{"--set", "range=2"}, "This has no option range, only pages, rotations."},
        UsageCase{{"--set", "range=2"}, "This has no option range, nor any other.", "rotate_pdf"},
        UsageCase{{"--set", "dpi=300"}, "This has no option dpi, only quality.", "pdf_jpeg"},
        UsageCase{{"--set", "quality=high"},
                  "The option quality needs a number such as 0.8.",
                  "image_jpeg"},
        UsageCase{{"--set", "quality=true"},
                  "The option quality needs a number such as 0.8.",
                  "pdf_jpeg"},
        UsageCase{{"--set", "maxDimension=16.5"},
                  "The option maxDimension needs a whole number such as 1600.",
                  "resize"},
        UsageCase{{"--set", "pages={}"}, "The option pages needs a list such as [2,0]."},
        UsageCase{{"--set", R"(pages=["a"])"}, "The option pages needs a list such as [2,0]."},
        UsageCase{{"--out", ""}, "A file name is empty."}));

TEST(JobSettingsTest, GivesEachOptionItsType) {
  const auto typed = [](const char* action, std::vector<std::string> settings) {
    return Value(actionOptions(Arguments::parse(std::move(settings)), action));
  };
  EXPECT_EQ(typed("split_pdf", {"--set", "range=3"}), Value(Value::Map{{"range", "3"}}));
  EXPECT_EQ(typed("pdf_jpeg", {"--set", "quality=0.5"}), Value(Value::Map{{"quality", 0.5}}));
  EXPECT_EQ(typed("resize", {"--set", "maxDimension=8"}), Value(Value::Map{{"maxDimension", 8}}));
  EXPECT_EQ(typed("edit_pdf", {"--set", "pages=[2,0]", "--set", R"(rotations={"2":90})"}),
            Value(Value::Map{{"pages", Value::List{2, 0}}, {"rotations", Value::Map{{"2", 90}}}}));
}

}  // namespace
}  // namespace tolvane
