#include "universal/dispatch/conversion.h"

#include <chrono>
#include <future>
#include <ostream>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/documents/pdf_document.h"
#include "platform/files/file_system.h"
#include "platform/text/base64.h"
#include "tests/support/eventually.h"
#include "tests/support/pdf_builder.h"
#include "tests/support/sample_fixture.h"
#include "tests/support/words.h"

namespace tolvane {
namespace {

namespace fs = std::filesystem;
using support::contentOf;
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
    {"report.docx", "png", "document-page-1.png", "a picture"},
    {"report.docx", "md", "report.md", "First *paragraph*."},
    {"report.odt", "docx", "report.docx", "Heading"},
    {"notes.md", "pdf", "notes.pdf", "First *paragraph*."},
    {"notes.md", "docx", "notes.docx", "Heading"},
    {"letter.rtf", "docx", "letter.docx", "Dear reader’s cat"},
    {"letter.rtf", "md", "letter.md", "Dear reader’s cat"},
    {"talk.pptx", "jpg", "slides-page-1.jpg slides-page-2.jpg", "a picture"},
    {"film.srt", "vtt", "film.vtt", "WEBVTT\n\n00:00:01.000"},
    {"film.srt", "txt", "film.txt", "Hello there\n"},
};

INSTANTIATE_TEST_SUITE_P(All, RouteTest, ::testing::ValuesIn(routes));

TEST_F(ConversionTest, APictureBecomesAPageOfAPdf) {
  makeSample("scan.png");
  const Names names = run("convert.pdf", {"scan.png"});
  ASSERT_EQ(names.size(), 1U);
  EXPECT_EQ(pdfLibrary().open(results_ / names.front())->pageCount(), 1);
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

TEST_F(ConversionTest, AJobThatIsCancelledWhileAnEngineRunsLeavesNothing) {
  std::string text;
  for (int paragraph = 0; paragraph < 40'000; ++paragraph) {
    text += "Some *words* and [a link](http://example.org/" + std::to_string(paragraph) + ").\n\n";
  }
  sources_.write("long.md", text);
  const auto cancelling = std::async(std::launch::async, [this] {
    EXPECT_TRUE(support::eventually([this] { return !results_.names().empty(); }));
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    token_.cancel();
  });
  EXPECT_EQ(failureOf("convert.html", {"long.md"}), "Cancelled. Your source files are unchanged.");
  EXPECT_THAT(results_.names(), IsEmpty());
  EXPECT_EQ(contentOf(sources_ / "long.md"), text);
}

}  // namespace
}  // namespace tolvane
