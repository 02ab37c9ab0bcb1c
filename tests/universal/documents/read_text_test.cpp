#include "universal/documents/read_text.h"

#include <filesystem>
#include <ostream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/failure_text.h"
#include "tests/support/universal_fixture.h"
#include "universal/documents/pandoc.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;
using support::failureText;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;

class ReadTextTest : public support::UniversalFixture {
 protected:
  std::string textOf(const fs::path& file) {
    return readText({file, FileKind::document, ""}, withEngines());
  }
};

struct PlainCase {
  const char* name;
  const char* content;
  const char* expected;
};

void PrintTo(const PlainCase& c, std::ostream* out) {
  *out << c.name;
}

class PlainTextTest : public ReadTextTest, public ::testing::WithParamInterface<PlainCase> {};

TEST_P(PlainTextTest, ReadsTheFile) {
  EXPECT_EQ(textOf(folder_.write(GetParam().name, GetParam().content)), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Files,
    PlainTextTest,
    ::testing::Values(
        PlainCase{"a.TXT", "*a*\r\nä", "*a*\r\nä"},
        PlainCase{"a.md", "# a", "# a"},
        PlainCase{"a.markdown", "<b>", "<b>"},
        PlainCase{"a.rtf", "{\\rtf1\\ansi\\b bold\\b0  and \\u228?\\par more}", "bold and ä\nmore"},
        PlainCase{"flat.rtfd", "{\\rtf1 text}", "text"},
        PlainCase{"packed.rtfd", "rtfd\x03\x07TXT.rtf\x02{\\rtf1 packed}\x01tail", "packed"},
        PlainCase{"a.htm", "<p>One <b>two</b></p><p>3", "One two\n\n3\n"},
        PlainCase{"a.unknown", "*a* b", "a b\n"}));

TEST_F(ReadTextTest, ReadsTheTextOfAPackage) {
  fs::create_directory(folder_ / "Letter.rtfd");
  folder_.write("Letter.rtfd/TXT.rtf", "{\\rtf1 Dear {\\b reader}}");
  folder_.write("Letter.rtfd/picture.png", "");
  EXPECT_EQ(textOf(folder_ / "Letter.rtfd"), "Dear reader");
}

TEST_F(ReadTextTest, ReadsTextClippings) {
  const fs::path clipping =
      folder_.write("a.textclipping",
                    "<plist><dict><key>UTI-Data</key><dict><key>public.utf8-plain-text</key>"
                    "<string>Clipped</string></dict></dict></plist>");
  EXPECT_EQ(textOf(clipping), "Clipped");
}

class ConvertedTextTest : public ReadTextTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(ConvertedTextTest, ReadsWhatPandocMade) {
  const fs::path source = folder_.write("a.md", "# Title\n\nFirst *paragraph*, äöü.\n\n- item\n");
  const fs::path made = workspace() / (std::string("made.") + GetParam());
  pandoc(withEngines(), "markdown", writer(GetParam()), source, made);
  EXPECT_THAT(textOf(made),
              AllOf(HasSubstr("Title\n"), HasSubstr("First paragraph, äöü."), HasSubstr("item")));
}

INSTANTIATE_TEST_SUITE_P(Formats,
                         ConvertedTextTest,
                         ::testing::Values("docx", "odt", "epub", "html"));

TEST_F(ReadTextTest, ExtractsIntoTheWorkspace) {
  standIn("pandoc", "printf text > \"$output\"");
  EXPECT_EQ(readText({"/in/a.docx", FileKind::document, ""}, withStandIns()), "text");
  EXPECT_THAT(runsOf("pandoc"),
              ElementsAre(ElementsAre("--sandbox",
                                      "--from=docx",
                                      "--to=plain",
                                      "/in/a.docx",
                                      "-o",
                                      MatchesRegex(".*/work/extracted-[0-9A-F-]+\\.txt"))));
}

struct RefusedCase {
  const char* name;
  const char* content;
  const char* sentence;
};

void PrintTo(const RefusedCase& c, std::ostream* out) {
  *out << c.name;
}

class RefusedTextTest : public ReadTextTest, public ::testing::WithParamInterface<RefusedCase> {};

TEST_P(RefusedTextTest, SaysWhy) {
  const fs::path file = folder_.write(GetParam().name, GetParam().content);
  EXPECT_THAT(failureText([&] { return textOf(file); }), HasSubstr(GetParam().sentence));
}

constexpr const char* damaged = "This rich text document is damaged or unreadable.";

INSTANTIATE_TEST_SUITE_P(Files,
                         RefusedTextTest,
                         ::testing::Values(RefusedCase{"a.rtf", "plain", damaged},
                                           RefusedCase{"a.rtfd", "rtfd without text", damaged},
                                           RefusedCase{"b.rtfd", "", damaged},
                                           RefusedCase{"a.txt", "\xFF", "It is no UTF-8 text."},
                                           RefusedCase{"a.docx",
                                                       "PK no archive",
                                                       "pandoc could not process this file"}));

TEST_F(ReadTextTest, RefusesPackagesWhoseTextIsNoFile) {
  fs::create_directories(folder_ / "a.rtfd/TXT.rtf");
  EXPECT_EQ(failureText([&] { return textOf(folder_ / "a.rtfd"); }), damaged);
  fs::create_directory(folder_ / "b.rtfd");
  EXPECT_THAT(failureText([&] { return textOf(folder_ / "b.rtfd"); }), HasSubstr("TXT.rtf"));
}

}  // namespace

}  // namespace tolvane::UniversalEngine
