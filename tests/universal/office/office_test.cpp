#include "universal/office/office.h"

#include <filesystem>
#include <ostream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/documents/pdf_document.h"
#include "tests/support/failure_text.h"
#include "tests/support/universal_fixture.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;
using support::contentOf;
using support::failureText;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

constexpr const char* notExported =
    "The office engine could not export this file. It may be encrypted or unsupported.";

/// Stands in for the suite: leaves the file that it was asked for. The arguments that matter are
/// the eighth (the filter) and the tenth (the folder) after the one with the socket folder.
constexpr const char* exporting = R"(
name="${output##*/}"
printf exported > "${10}/${name%.*}.${8%%:*}"
)";

class OfficeTest : public support::UniversalFixture {
 protected:
  [[nodiscard]] fs::path output() const { return workspace() / "result.out"; }

  /// What the suite was told, without the argument that names the folder of its sockets.
  [[nodiscard]] std::vector<std::string> told(std::size_t run) const {
    std::vector<std::string> arguments = runsOf("soffice").at(run);
    EXPECT_THAT(arguments.front(), StartsWith("-env:OSL_SOCKET_PATH=/tmp/"));
    arguments.erase(arguments.begin());
    return arguments;
  }

  /// A letter with one short paragraph a line, as a word processor writes it.
  [[nodiscard]] fs::path makeLetter(const std::string& font, std::size_t lines) const {
    const std::string format = R"(<w:rPr><w:rFonts w:ascii=")" + font + R"(" w:hAnsi=")" + font +
                               R"("/><w:sz w:val="22"/></w:rPr>)";
    const std::string line = "<w:p><w:pPr>" + format + "</w:pPr><w:r>" + format +
                             "<w:t>Dear reader, this is a line.</w:t></w:r></w:p>";
    for (const char* folder : {"_rels", "word"}) {
      fs::create_directory(workspace() / folder);
    }
    folder_.write("work/[Content_Types].xml",
                  R"(<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">)"
                  R"(<Default Extension="rels" )"
                  R"(ContentType="application/vnd.openxmlformats-package.relationships+xml"/>)"
                  R"(<Override PartName="/word/document.xml" ContentType=")"
                  R"(application/vnd.openxmlformats-officedocument.wordprocessingml.document)"
                  R"(.main+xml"/></Types>)");
    folder_.write("work/_rels/.rels",
                  R"(<Relationships xmlns=")"
                  R"(http://schemas.openxmlformats.org/package/2006/relationships">)"
                  R"(<Relationship Id="r1" Target="word/document.xml" Type=")"
                  R"(http://schemas.openxmlformats.org/officeDocument/2006/relationships/)"
                  R"(officeDocument"/></Relationships>)");
    folder_.write("work/word/document.xml",
                  R"(<w:document xmlns:w=")"
                  R"(http://schemas.openxmlformats.org/wordprocessingml/2006/main"><w:body>)" +
                      support::repeated(line, lines) +
                      R"(<w:sectPr><w:pgSz w:w="12240" w:h="15840"/><w:pgMar w:top="1440" )"
                      R"(w:right="1440" w:bottom="1440" w:left="1440"/></w:sectPr>)"
                      "</w:body></w:document>");
    withEngines().run("zip", {"-qr", font + ".docx", "[Content_Types].xml", "_rels", "word"}, 60);
    return workspace() / (font + ".docx");
  }

  std::string failureOf(const fs::path& input, const JobContext& context) {
    return failureText([&] {
      office(input, "pdf", output(), context);
      return 0;
    });
  }
};

struct FilterCase {
  const char* target;
  const char* filter;
};

void PrintTo(const FilterCase& c, std::ostream* out) {
  *out << c.target;
}

class FilterTest : public OfficeTest, public ::testing::WithParamInterface<FilterCase> {};

TEST_P(FilterTest, TellsTheSuite) {
  standIn("soffice", exporting);
  office("/in/My report.v2.ods", GetParam().target, output(), withStandIns());
  EXPECT_EQ(contentOf(output()), "exported");
  EXPECT_THAT(told(0),
              ElementsAre("-env:UserInstallation=file://" + workspace().string() + "/lo-profile",
                          "--headless",
                          "--nologo",
                          "--nodefault",
                          "--norestore",
                          "--convert-to",
                          GetParam().filter,
                          "--outdir",
                          StartsWith(workspace().string() + "/office-"),
                          "/in/My report.v2.ods"));
}

INSTANTIATE_TEST_SUITE_P(
    Targets,
    FilterTest,
    ::testing::Values(FilterCase{"pdf", "pdf"},
                      FilterCase{"xlsx", "xlsx"},
                      FilterCase{"csv", "csv:Text - txt - csv (StarCalc):44,34,76,1"},
                      FilterCase{"tsv", "csv:Text - txt - csv (StarCalc):9,34,76,1"}));

struct ReadingCase {
  const char* input;
  const char* option;  // in front of "--convert-to"
};

void PrintTo(const ReadingCase& c, std::ostream* out) {
  *out << c.input;
}

class ReadingTest : public OfficeTest, public ::testing::WithParamInterface<ReadingCase> {};

TEST_P(ReadingTest, TellsHowToReadTheFile) {
  standIn("soffice", "shift\n" + std::string(exporting));
  office(GetParam().input, "pdf", output(), withStandIns());
  EXPECT_EQ(told(0)[5], GetParam().option);
  EXPECT_EQ(told(0)[6], "--convert-to");
}

INSTANTIATE_TEST_SUITE_P(
    Inputs,
    ReadingTest,
    ::testing::Values(ReadingCase{"/in/a.CSV", "--infilter=CSV:44,34,76,1"},
                      ReadingCase{"/in/a.tsv", "--infilter=CSV:9,34,76,1"},
                      ReadingCase{"/in/a.html", "--infilter=HTML (StarWriter)"},
                      ReadingCase{"/in/a.htm", "--infilter=HTML (StarWriter)"}));

TEST_F(OfficeTest, UsesAFolderOfItsOwnAndTheSameProfileEachTime) {
  standIn("soffice", exporting);
  office("/in/a.odt", "pdf", output(), withStandIns());
  office("/in/a.odt", "docx", workspace() / "b.docx", withStandIns());
  EXPECT_EQ(told(0).front(), told(1).front());
  EXPECT_NE(told(0)[8], told(1)[8]);
}

TEST_F(OfficeTest, EscapesTheAddressOfTheProfile) {
  standIn("soffice", exporting);
  const fs::path folder = workspace() / "two words #1";
  fs::create_directory(folder);
  office("/in/a.odt", "pdf", output(), withStandIns().in(folder));
  const std::string record = contentOf(folder / "soffice.runs");
  EXPECT_THAT(record, HasSubstr("-env:UserInstallation=file://"));
  EXPECT_THAT(record, HasSubstr("/two%20words%20%231/lo-profile"));
}

TEST_F(OfficeTest, ReportsWhatWentWrong) {
  EXPECT_EQ(failureOf("/in/a.odt", withStandIns()),
            "Install soffice to use this local operation, then reopen the file.");
  standIn("soffice", "exit 3");
  EXPECT_THAT(failureOf("/in/a.odt", withStandIns()),
              StartsWith("soffice could not process this file (exit 3)."));
  standIn("soffice");
  EXPECT_EQ(failureOf("/in/a.odt", withStandIns()), notExported);
  standIn("soffice", exporting);
  fs::create_directory(output());
  EXPECT_THAT(failureOf("/in/a.odt", withStandIns()), HasSubstr("Is a directory"));
}

// The suite itself, confined.

TEST_F(OfficeTest, SparesTheSuiteItsSecondStart) {
  office(folder_.write("a.csv", "a,b\n"), "tsv", output(), withEngines());
  EXPECT_THAT(contentOf(workspace() / "lo-profile/user/registrymodifications.xcu"),
              AllOf(HasSubstr("ooSetupInstCompleted"), Not(HasSubstr("RestartInProgress"))));
}

TEST_F(OfficeTest, ReadsDelimitedTextAsUtf8) {
  const fs::path commas = folder_.write("sheet of Jürgen.csv", "a,\"b, c\",ä\n1,2,3\n");
  office(commas, "tsv", output(), withEngines());
  EXPECT_EQ(contentOf(output()), "\"a\"\t\"b, c\"\t\"ä\"\n1\t2\t3\n");
  const fs::path tabs = folder_.write("a.tsv", "a\tb, c\tä\n1\t2\t3\n");
  office(tabs, "csv", output(), withEngines());
  EXPECT_EQ(contentOf(output()), "\"a\",\"b, c\",\"ä\"\n1,2,3\n");
}

TEST_F(OfficeTest, ReadsAndWritesUnderNamesThatTheSuiteDoesNotUnderstand) {
  const fs::path plain = folder_.write("a.csv", "a,b\n");
  for (const char* name : {"semi;colon", "latin \xE9"}) {
    const fs::path folder = workspace() / name;
    fs::create_directory(folder);
    office(plain, "tsv", folder / "plain.tsv", withEngines().in(folder));
    EXPECT_EQ(contentOf(folder / "plain.tsv"), "\"a\"\t\"b\"\n");
    const fs::path odd = folder / (std::string(name) + ".csv");
    fs::copy_file(plain, odd);
    office(odd, "tsv", output(), withEngines());
    EXPECT_EQ(contentOf(output()), "\"a\"\t\"b\"\n");
  }
  EXPECT_EQ(failureOf("/in/semi;colon.odt", withEngines()),
            "Could not copy /in/semi;colon.odt: No such file or directory.");
}

TEST_F(OfficeTest, ConvertsAPageWithRemotePicturesWithoutFetchingThem) {
  const fs::path page = folder_.write(
      "a.html",
      "<html><head><link rel='stylesheet' href='http://192.0.2.1/a.css'></head><body><p>Grüße "
      "first</p><img src='http://192.0.2.1/a.png'><p>Second</p></body></html>");
  office(page, "pdf", output(), withEngines());
  EXPECT_THAT(pdfLibrary().open(output())->text(0),
              AllOf(HasSubstr("Grüße first"), HasSubstr("Second")));
}

TEST_F(OfficeTest, ACalibriLetterHasAsManyPagesAsWithThatFont) {
  // Its lines of 11 points are 13.43 apart: 48 on Letter paper within an inch.
  office(makeLetter("Calibri", 5 * 48 + 1), "pdf", output(), withEngines());
  EXPECT_EQ(pdfLibrary().open(output())->pageCount(), 6);
}

constexpr const char* encryptedManifest = R"(<?xml version="1.0" encoding="UTF-8"?>
<m:manifest xmlns:m="urn:oasis:names:tc:opendocument:xmlns:manifest:1.0" m:version="1.2">
<m:file-entry m:full-path="/" m:version="1.2"
  m:media-type="application/vnd.oasis.opendocument.text"/>
<m:file-entry m:full-path="content.xml" m:media-type="text/xml" m:size="500"><m:encryption-data
  m:checksum-type="urn:oasis:names:tc:opendocument:xmlns:manifest:1.0#sha256-1k"
  m:checksum="AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA="><m:algorithm
  m:algorithm-name="http://www.w3.org/2001/04/xmlenc#aes256-cbc"
  m:initialisation-vector="AAAAAAAAAAAAAAAAAAAAAA=="/><m:key-derivation
  m:key-derivation-name="PBKDF2" m:key-size="32" m:iteration-count="1024"
  m:salt="AAAAAAAAAAAAAAAAAAAAAA=="/><m:start-key-generation
  m:start-key-generation-name="http://www.w3.org/2000/09/xmldsig#sha256" m:key-size="32"/>
</m:encryption-data></m:file-entry></m:manifest>)";

TEST_F(OfficeTest, SaysThatAnEncryptedFileCannotBeExported) {
  fs::create_directory(workspace() / "META-INF");
  const JobContext context = withEngines();
  folder_.write("work/mimetype", "application/vnd.oasis.opendocument.text");
  folder_.write("work/content.xml", std::string(512, '\x5A'));
  folder_.write("work/META-INF/manifest.xml", encryptedManifest);
  context.run("zip", {"-q0", "a.odt", "mimetype", "content.xml", "META-INF/manifest.xml"}, 60);
  EXPECT_EQ(failureOf(workspace() / "a.odt", context), notExported);
}

}  // namespace

}  // namespace tolvane::UniversalEngine
