#include "universal/documents/read_text.h"

#include <filesystem>
#include <string>
#include <tuple>

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

class ReadTextTest : public support::UniversalFixture {
 protected:
  std::string textOf(const fs::path& file) {
    return readText({file, FileKind::document, ""}, withEngines());
  }
};

const std::tuple<std::string, std::string, std::string> plainTextCases[] = {
    {"a.TXT", "*a*\r\nä", "*a*\r\nä"},
    {"a.md", "# a", "# a"},
    {"a.markdown", "<b>", "<b>"},
    {"a.rtf", "{\\rtf1\\ansi\\b bold\\b0  and \\u228?\\par more}", "bold and ä\nmore"},
    {"flat.rtfd", "{\\rtf1 text}", "text"},
    {"packed.rtfd", "rtfd\x03\x07TXT.rtf\x02{\\rtf1 packed}\x01tail", "packed"},
    {"a.htm", "<p>One <b>two</b></p><p>3", "One two\n\n3\n"},
    {"a.unknown", "*a* b", "a b\n"},
    {"a.textclipping",
     "<plist><dict><key>UTI-Data</key><dict><key>public.utf8-plain-text</key>"
     "<string>Clipped</string></dict></dict></plist>",
     "Clipped"},
};

TEST_F(ReadTextTest, ReadsTheFile) {
  for (const auto& [name, content, expected] : plainTextCases) {
    EXPECT_EQ(textOf(folder_.write(name, content)), expected) << name;
  }
}

TEST_F(ReadTextTest, ReadsTheTextOfAPackage) {
  fs::create_directory(folder_ / "Letter.rtfd");
  folder_.write("Letter.rtfd/TXT.rtf", "{\\rtf1 Dear {\\b reader}}");
  folder_.write("Letter.rtfd/picture.png", "");
  EXPECT_EQ(textOf(folder_ / "Letter.rtfd"), "Dear reader");
}

TEST_F(ReadTextTest, ReadsWhatPandocMade) {
  for (const char* value : {"docx", "odt", "epub", "html"}) {
    SCOPED_TRACE(value);
    const fs::path source = folder_.write("a.md", "# Title\n\nFirst *paragraph*, äöü.\n\n- item\n");
    const fs::path made = workspace() / (std::string("made.") + value);
    pandoc(withEngines(), "markdown", writer(value), source, made);
    EXPECT_THAT(textOf(made),
                AllOf(HasSubstr("Title\n"), HasSubstr("First paragraph, äöü."), HasSubstr("item")));
  }
}

TEST_F(ReadTextTest, ExtractsIntoTheWorkspace) {
  standIn("pandoc", "printf text > \"$output\"");
  EXPECT_EQ(readText({"/in/a.docx", FileKind::document, ""}, withStandIns()), "text");
  EXPECT_THAT(linesOf("pandoc"),
              ElementsAre("--sandbox --from=docx --to=plain /in/a.docx -o WORK/extracted-*.txt"));
}

constexpr const char* damaged = "This rich text document is damaged or unreadable.";

const std::tuple<std::string, std::string, std::string> refusedTextCases[] = {
    {"a.rtf", "plain", damaged},
    {"a.rtfd", "rtfd without text", damaged},
    {"b.rtfd", "", damaged},
    {"a.txt", "\xFF", "It is no UTF-8 text."},
    {"a.docx", "PK no archive", "pandoc could not process this file"},
};

TEST_F(ReadTextTest, SaysWhy) {
  for (const auto& [name, content, sentence] : refusedTextCases) {
    SCOPED_TRACE(name);
    const fs::path file = folder_.write(name, content);
    EXPECT_THAT(failureText([&] { return textOf(file); }), HasSubstr(sentence));
  }
}

TEST_F(ReadTextTest, RefusesPackagesWhoseTextIsNoFile) {
  fs::create_directories(folder_ / "a.rtfd/TXT.rtf");
  EXPECT_EQ(failureText([&] { return textOf(folder_ / "a.rtfd"); }), damaged);
  fs::create_directory(folder_ / "b.rtfd");
  EXPECT_THAT(failureText([&] { return textOf(folder_ / "b.rtfd"); }), HasSubstr("TXT.rtf"));
}

}  // namespace

}  // namespace tolvane::UniversalEngine
