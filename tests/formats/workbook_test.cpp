#include "formats/workbook.h"

#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "engine/primitives/conversion_failure.h"
#include "formats/delimited_text.h"
#include "formats/xml_text.h"
#include "platform/text/text_file.h"
#include "tests/support/failure_text.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/words.h"

namespace tolvane {
namespace {

namespace fs = std::filesystem;
using support::failureText;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using ::testing::UnorderedElementsAreArray;

const char* const unsupported = "No supported table was found.";

TEST(Xml, EscapesWhatMarkupUses) {
  EXPECT_EQ(UniversalFormats::xml("a<b> & \"c\" 'd' &amp;\x01\n"),
            "a&lt;b&gt; &amp; &quot;c&quot; 'd' &amp;amp;\x01\n");
}

class WorkbookTest : public ::testing::Test {
 protected:
  void write(const Table& rows) const {
    UniversalFormats::workbook(rows, file_, folder_.path(), toolchain_, token_);
  }

  /// Runs an engine in the workspace and returns what it printed.
  std::string run(const std::string& engine, std::vector<std::string> arguments) const {
    const Bytes printed =
        toolchain_.run({engine, std::move(arguments), folder_.path(), 60}, token_);
    return std::string(asText(printed));
  }

  support::TemporaryFolder folder_;
  fs::path file_ = folder_ / "table.xlsx";
  LocalToolchain toolchain_;
  CancellationToken token_;
};

TEST_F(WorkbookTest, HoldsTheFivePartsAndNothingElse) {
  ::setenv("ZIPOPT", "-e", 1);  // NOLINT(concurrency-mt-unsafe)
  write({{"a<b & \"c\""}, {}, {"", " d "}});
  ::unsetenv("ZIPOPT");  // NOLINT(concurrency-mt-unsafe)
  EXPECT_THAT(folder_.names(), ElementsAre(".engine-tmp", "table.xlsx"));
  EXPECT_EQ(run("unzip", {"-p", file_, "xl/worksheets/sheet1.xml"}),
            R"(<?xml version="1.0"?><worksheet xmlns=")"
            R"(http://schemas.openxmlformats.org/spreadsheetml/2006/main"><sheetData>)"
            R"(<row r="1"><c t="inlineStr"><is><t xml:space="preserve">)"
            R"(a&lt;b &amp; &quot;c&quot;</t></is></c></row><row r="2"></row>)"
            R"(<row r="3"><c t="inlineStr"><is><t xml:space="preserve"></t></is></c>)"
            R"(<c t="inlineStr"><is><t xml:space="preserve"> d </t></is></c></row>)"
            R"(</sheetData></worksheet>)");
  EXPECT_THAT(run("unzip", {"-p", file_, "xl/workbook.xml"}), HasSubstr("\"Extracted table\""));

  std::istringstream listing(run("unzip", {"-Z1", file_}));
  std::vector<std::string> parts;
  for (std::string name; std::getline(listing, name);) {
    if (!name.ends_with('/')) {
      parts.push_back(name);
    }
  }
  EXPECT_THAT(parts,
              UnorderedElementsAreArray(
                  support::words("[Content_Types].xml _rels/.rels xl/workbook.xml "
                                 "xl/_rels/workbook.xml.rels xl/worksheets/sheet1.xml")));
}

TEST_F(WorkbookTest, OpensInTheOfficeSuiteWithEveryCellAsItWas) {
  Table rows = {{"plain", "a<b> & \"c\" 'd'", "  spaces  ", "tab\there"},
                {"", "", "after empty cells", "=1+1"},
                {"form\ffeed", "\x01", "_x000C_", "_x_"},
                {"\uFFFE\uFFFF", "a\uFFFEb", "_xFFFF_", "\uFFFD\uFF21\uFFE5"},
                {"007", "1,5", "2024-01-02", "1e5"},
                {"line\nbreak", "日本語", "👨‍👩‍👧 👍🏽", "שלום עולם"},
                {"\"quoted\"", "café e\u0301", "'apostrophe", "]]>"}};
  for (int row = static_cast<int>(rows.size()); row < 3'000; ++row) {
    rows.push_back({"row " + std::to_string(row), std::string(600, 'x'), "", "end"});
  }
  write(rows);
  run("soffice",
      {"-env:UserInstallation=file://" + (folder_ / "profile").string(),
       "--headless",
       "--convert-to",
       "csv:Text - txt - csv (StarCalc):44,34,76,1",
       "--outdir",
       folder_.path(),
       file_});
  EXPECT_TRUE(UniversalFormats::csv(TextFile::read(folder_ / "table.csv"), ',') == rows);
}

TEST_F(WorkbookTest, RefusesTablesOutOfBounds) {
  EXPECT_EQ(failureText([&] { write({}); }), unsupported);
  EXPECT_EQ(failureText([&] { write(Table(100'001)); }), unsupported);
  EXPECT_EQ(failureText([&] { write({{"a"}, TableRow(16'385)}); }), unsupported);
  EXPECT_THAT(folder_.names(), IsEmpty());
  EXPECT_EQ(failureText([&] { write({TableRow(16'384)}); }), "(no failure)");
  EXPECT_EQ(failureText([&] { write(Table(100'000)); }), "(no failure)");
}

TEST_F(WorkbookTest, LeavesNoPackageBehindWhenItFails) {
  token_.cancel();
  EXPECT_THROW(write({{"a"}}), ConversionFailure);
  EXPECT_THAT(folder_.names(), IsEmpty());

  const LocalToolchain bare(EngineLocations{{folder_ / "none"}});
  const CancellationToken token;
  EXPECT_THAT(
      failureText([&] { UniversalFormats::workbook({{"a"}}, file_, folder_.path(), bare, token); }),
      StartsWith("Install zip "));
  EXPECT_THAT(folder_.names(), IsEmpty());

  EXPECT_THAT(failureText([&] {
                UniversalFormats::workbook({{"a"}}, file_, folder_ / "gone", toolchain_, token);
              }),
              HasSubstr("No such file or directory"));
}

}  // namespace
}  // namespace tolvane
