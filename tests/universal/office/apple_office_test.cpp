#include <filesystem>
#include <ostream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/failure_text.h"
#include "tests/support/universal_fixture.h"
#include "universal/office/office.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;
using support::contentOf;
using support::failureText;
using ::testing::ElementsAre;
using ::testing::StartsWith;

struct ExportCase {
  const char* name;
  const char* target;
  const char* application;
  const char* format;
};

void PrintTo(const ExportCase& c, std::ostream* out) {
  *out << c.name << " to " << c.target;
}

class ExportTest : public support::UniversalFixture,
                   public ::testing::WithParamInterface<ExportCase> {};

TEST_P(ExportTest, TellsTheApplication) {
  standIn("osascript", "printf exported > \"$output\"");
  const fs::path input = fs::path("/in") / GetParam().name;
  const fs::path output = workspace() / "it's \"ä\".out";
  appleOffice({input, FileKind::document, ""}, GetParam().target, output, withStandIns());
  EXPECT_EQ(contentOf(output), "exported");
  EXPECT_THAT(runsOf("osascript"),
              ElementsAre(ElementsAre(
                  workspace() / "export.applescript", input.string(), output.string())));
  EXPECT_EQ(contentOf(workspace() / "export.applescript"),
            std::string("on run argv\n tell application \"") + GetParam().application +
                "\"\n set documentRef to open (POSIX file (item 1 of argv))\n export documentRef "
                "to (POSIX file (item 2 of argv)) as " +
                GetParam().format + "\n close documentRef saving no\n end tell\nend run");
}

INSTANTIATE_TEST_SUITE_P(Files,
                         ExportTest,
                         ::testing::Values(ExportCase{"a.pages", "pdf", "Pages", "PDF"},
                                           ExportCase{"a.PAGES", "docx", "Pages", "Microsoft Word"},
                                           ExportCase{"a.key", "pdf", "Keynote", "PDF"},
                                           ExportCase{"a.key", "png", "Keynote", "PDF"},
                                           ExportCase{"a.numbers", "pdf", "Numbers", "PDF"}));

class NumbersTest : public support::UniversalFixture {};

TEST_F(NumbersTest, PassesAWorkbookThroughTheSuite) {
  standIn("osascript", "printf workbook > \"$output\"");
  standIn("soffice", "cat \"$output\" > \"${10}/numbers.xlsx\"");
  appleOffice({"/in/a.numbers", FileKind::spreadsheet, ""},
              "xlsx",
              workspace() / "result.xlsx",
              withStandIns());
  EXPECT_EQ(contentOf(workspace() / "result.xlsx"), "workbook");
  EXPECT_THAT(
      runsOf("osascript"),
      ElementsAre(ElementsAre(
          workspace() / "export.applescript", "/in/a.numbers", workspace() / "numbers.xlsx")));
  EXPECT_EQ(runsOf("soffice").at(0).back(), (workspace() / "numbers.xlsx").string());
}

TEST_F(NumbersTest, NeedsTheProgramThatRunsScripts) {
  EXPECT_EQ(failureText([&] {
              appleOffice({"/in/a.numbers", FileKind::spreadsheet, ""},
                          "csv",
                          workspace() / "a.csv",
                          withStandIns());
              return 0;
            }),
            "Install osascript to use this local operation, then reopen the file.");
}

}  // namespace

}  // namespace tolvane::UniversalEngine
