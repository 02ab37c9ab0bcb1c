#include "universal/dispatch/conversion.h"

#include <ostream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "formats/delimited_text.h"
#include "platform/documents/pdf_document.h"
#include "platform/files/file_system.h"
#include "platform/text/base64.h"
#include "tests/support/pdf_builder.h"
#include "tests/support/sample_fixture.h"
#include "tests/support/words.h"

namespace tolvane {
namespace {

namespace fs = std::filesystem;
using support::contentOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

using ConversionTest = SampleFixture;

struct RouteCase {
  std::string input, target, results;
  std::string text;  ///< in the last result
};

void PrintTo(const RouteCase& c, std::ostream* out) {
  *out << c.input << " to " << c.target;
}

class RouteTest : public ConversionTest, public ::testing::WithParamInterface<RouteCase> {};

TEST_P(RouteTest, GivesAReadableResult) {
  const auto& [input, target, results, text] = GetParam();
  makeSample(input);
  const Names before = sources_.names();
  ASSERT_EQ(run("convert." + target, {input}), support::words(results));
  EXPECT_THAT(textOf(support::words(results).back()), HasSubstr(text));
  EXPECT_EQ(sources_.names(), before);
}

const RouteCase routes[] = {
    {"two.pdf", "png", "two-page-1.png two-page-2.png", "a picture"},
    {"two.pdf", "jpg", "two-page-1.jpg two-page-2.jpg", "a picture"},
    {"two.pdf", "pptx", "two.pptx", "Page 2"},
    {"two.pdf", "txt", "two.txt", "Alpha page\n\nBeta page"},
    {"two.pdf", "docx", "two.docx", "Beta page"},
    {"two.pdf", "epub", "two.epub", "Beta page"},
    {"prices.csv", "tsv", "prices.tsv", "Tea, green\t1,5\r\n<b>&\t2"},
    {"prices.csv", "xlsx", "prices.xlsx", "&lt;b&gt;&amp;"},
    {"prices.xlsx", "csv", "prices.csv", "\"Tea, green\""},
    {"prices.ods", "csv", "prices.csv", "\"Tea, green\",\"1,5\"\n\"<b>&\",2"},
    {"report.docx", "png", "document-page-1.png", "a picture"},
    {"report.docx", "md", "report.md", "First *paragraph*."},
    {"suite.docx", "md", "suite.md", "# Heading\n\nFirst *paragraph*.\n\nŽluťoučký kůň."},
    {"report.odt", "docx", "report.docx", "Heading"},
    {"notes.md", "pdf", "notes.pdf", "First *paragraph*."},
    {"notes.md", "docx", "notes.docx", "Heading"},
    {"letter.rtf", "docx", "letter.docx", "Dear reader’s cat"},
    {"letter.rtf", "md", "letter.md", "Dear reader’s cat"},
    {"suite.rtf", "md", "suite.md", "First paragraph.\nŽluťoučký kůň."},
    {"saved.html", "md", "saved.md", "# Heading\n\nFirst *paragraph*.\n\nŽluťoučký kůň."},
    {"talk.pptx", "jpg", "slides-page-1.jpg slides-page-2.jpg", "a picture"},
    {"film.srt", "vtt", "film.vtt", "WEBVTT\n\n00:00:01.000"},
    {"film.srt", "txt", "film.txt", "Hello there\n"},
    {"mixed.srt",
     "vtt",
     "mixed.vtt",
     "WEBVTT\n\n00:00:01.000 --> 00:00:02.500\nHello\nthere\n\n"
     "00:00:03.000 --> 00:00:04.000\nBye\n"},
};

INSTANTIATE_TEST_SUITE_P(All, RouteTest, ::testing::ValuesIn(routes));

TEST_F(ConversionTest, APictureBecomesAPageOfAPdf) {
  makeSample("scan.png");
  const Names names = run("convert.pdf", {"scan.png"});
  ASSERT_EQ(names.size(), 1U);
  EXPECT_EQ(pdfLibrary().open(results_ / names.front())->pageCount(), 1);
}

TEST_F(ConversionTest, ARichTextPackageIsLaidOutLikeItsText) {
  const std::string text = R"({\rtf1\ansi Dear {\b reader}\par})";
  fs::create_directory(sources_ / "folder.rtfd");
  sources_.write("folder.rtfd/TXT.rtf", text);
  sources_.write("packed.rtfd", "rtfd\x03\x07TXT.rtf\x02" + text + "\x01");
  for (const std::string name : {"folder", "packed"}) {
    EXPECT_EQ(run("convert.pdf", {name + ".rtfd"}), Names{name + ".pdf"});
    EXPECT_THAT(textOf(name + ".pdf"), HasSubstr("Dear reader"));
  }
  EXPECT_EQ(run("convert.png", {"folder.rtfd"}).size(), 1U);
  fs::rename(sources_ / "folder.rtfd/TXT.rtf", sources_ / "elsewhere.rtf");
  fs::create_symlink(sources_ / "elsewhere.rtf", sources_ / "folder.rtfd/TXT.rtf");
  EXPECT_EQ(failureOf("convert.pdf", {"folder.rtfd"}),
            "This rich text document is damaged or unreadable.");
}

TEST_F(ConversionTest, ATableIsNeededForASheet) {
  makeSample("two.pdf");
  EXPECT_EQ(failureOf("convert.xlsx", {"two.pdf"}),
            "No consistent table was recognized. PDF → Excel requires aligned columns or clearly "
            "delimited rows.");
  EXPECT_THAT(results_.names(), IsEmpty());
}

TEST_F(ConversionTest, PagesWithoutTextAreRecognisedUnlessTheUserSaysNo) {
  support::PdfBuilder().page({}).write(sources_ / "blank.pdf");
  EXPECT_EQ(failureOf("convert.txt", {"blank.pdf"}),
            "No text was recognized. Try a clearer image.");
  EXPECT_EQ(failureOf("convert.txt", {"blank.pdf"}, {{"ocr", false}}),
            "No text could be extracted or recognized.");
}

TEST_F(ConversionTest, OnlyPicturesThatADocumentHoldsGetIntoIt) {
  const support::TemporaryFolder elsewhere;
  const fs::path secret = elsewhere / "secret.png";
  makeSample("scan.png");
  fs::copy_file(sources_ / "scan.png", secret);
  const std::string held =
      "data:image/png;base64," + Base64::encode(FileSystem::readAll(sources_ / "scan.png"));
  const auto hasPictures = [&](const std::string& name, const std::string& address) {
    const bool isPage = name.ends_with(".html");
    sources_.write(name,
                   isPage ? "<p>Text</p><img src='" + address + "'>" : "![](" + address + ")");
    const Names names = run("convert.docx", {name});
    return contentOf(results_ / names.at(0)).find("word/media/") != std::string::npos;
  };
  for (const char* name : {"a.md", "b.html"}) {
    EXPECT_FALSE(hasPictures(name, secret.string())) << name;
    EXPECT_FALSE(hasPictures(name, fs::relative(secret, sources_.path()).string())) << name;
    EXPECT_TRUE(hasPictures(name, held)) << name;
  }
}

TEST_F(ConversionTest, ATableKeepsEveryCellOnItsWayThroughASheet) {
  makeSample("table.pdf");
  Table expected;
  for (int row = 0; row < 40; ++row) {
    const std::string number = std::to_string(row);
    expected.push_back({"Item " + number, std::to_string(row * 7), "total " + number});
  }
  ASSERT_EQ(run("convert.xlsx", {"table.pdf"}), Names{"table.xlsx"});
  fs::rename(results_ / "table.xlsx", sources_ / "table.xlsx");
  ASSERT_EQ(run("convert.csv", {"table.xlsx"}), Names{"table.csv"});
  EXPECT_EQ(UniversalFormats::csv(contentOf(results_ / "table.csv"), ','), expected);
}

const struct {
  const char* label;
  const char* input;
  const char* target;
  const char* sentence;
} badInputCases[] = {
    {"a cue without length", "flash.srt", "vtt", "Subtitle cue end must follow its start."},
    {"an open quote", "open.csv", "xlsx", "The delimited file has an unclosed quoted cell."},
    {"an encrypted document", "sealed.docx", "pdf", "This file is not a valid DOCX container."},
    {"a locked PDF",
     "locked.pdf",
     "txt",
     "Unlock this password-protected PDF in Preview and save a copy first."},
    {"a book whose text is encrypted",
     "locked.epub",
     "md",
     "pandoc could not process this file (exit 1). Check that the file is valid and the selected "
     "options fit its content."},
};

TEST_F(ConversionTest, ABadInputIsRefusedAndLeavesTheFolderAsItWas) {
  results_.write("kept.txt", "kept");
  for (const auto& c : badInputCases) {
    SCOPED_TRACE(c.label);
    makeSample(c.input);
    EXPECT_EQ(failureOf("convert." + std::string(c.target), {c.input}), c.sentence);
    EXPECT_THAT(results_.names(), ElementsAre("kept.txt"));
  }
}

}  // namespace
}  // namespace tolvane
