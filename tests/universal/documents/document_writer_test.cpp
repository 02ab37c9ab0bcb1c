#include "universal/documents/document_writer.h"

#include <filesystem>
#include <ostream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/text/rich_text.h"
#include "tests/support/universal_fixture.h"
#include "universal/documents/pandoc.h"
#include "universal/documents/read_text.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;
using support::contentOf;

struct WriterCase {
  const char* target;
  const char* expected;
};

void PrintTo(const WriterCase& c, std::ostream* out) {
  *out << c.target;
}

class WriterTest : public ::testing::TestWithParam<WriterCase> {};

TEST_P(WriterTest, NamesTheFormat) {
  EXPECT_EQ(writer(GetParam().target), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Targets,
                         WriterTest,
                         ::testing::Values(WriterCase{"md", "markdown"},
                                           WriterCase{"txt", "plain"},
                                           WriterCase{"epub", "epub3"},
                                           WriterCase{"pptx", "pptx"},
                                           WriterCase{"rtf", "rtf"}));

class DocumentWriterTest : public support::UniversalFixture {
 protected:
  [[nodiscard]] fs::path output() const { return workspace() / "out"; }

  std::string written(const std::string& text, const char* format, Markup markup) {
    document(text, output(), format, markup, withEngines());
    return contentOf(output());
  }

  /// The Markdown that was handed to pandoc.
  [[nodiscard]] std::string markdown() const {
    for (const fs::directory_entry& entry : fs::directory_iterator(workspace())) {
      if (entry.path().filename().string().starts_with("document-")) {
        return contentOf(entry.path());
      }
    }
    return "(none)";
  }
};

struct FileCase {
  const char* label;
  const char* format;
  Markup markup;
  const char* text;
  const char* expected;
};

void PrintTo(const FileCase& c, std::ostream* out) {
  *out << c.label;
}

class WrittenFileTest : public DocumentWriterTest,
                        public ::testing::WithParamInterface<FileCase> {};

TEST_P(WrittenFileTest, HoldsTheText) {
  EXPECT_EQ(written(GetParam().text, GetParam().format, GetParam().markup), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Files,
    WrittenFileTest,
    ::testing::Values(
        FileCase{"text is left alone", "txt", Markup::plain, "*a* <b>\n# c", "*a* <b>\n# c"},
        FileCase{"also when it is Markdown", "txt", Markup::markdown, "**a**\n", "**a**\n"},
        FileCase{"Markdown signs", "md", Markup::plain, "`*_<>#[]", "\\`\\*\\_\\<\\>\\#\\[\\]"},
        FileCase{"a backslash", "md", Markup::plain, "\\*", "\\\\\\*"},
        FileCase{"signs left alone", "md", Markup::plain, "1. a+b-(c)!\nd", "1. a+b-(c)!\nd"},
        FileCase{
            "html",
            "html",
            Markup::plain,
            "a < b & \"c\"\nd",
            "<!doctype html><meta charset=\"utf-8\"><pre>a &lt; b &amp; &quot;c&quot;\nd</pre>"},
        FileCase{"html by pandoc", "html", Markup::markdown, "*a*", "<p><em>a</em></p>\n"},
        FileCase{"Markdown by pandoc", "md", Markup::markdown, "__a__", "**a**\n"}));

TEST_F(DocumentWriterTest, WritesRichText) {
  const std::string text = "Grüße 😀\n{second} \\line";
  EXPECT_EQ(RichText::plainText(written(text, "rtf", Markup::plain)), text);
}

TEST_F(DocumentWriterTest, EscapesPlainTextForPandocLineByLine) {
  standIn("pandoc", ": > \"$output\"");
  document("a\\`*_{}[]<>()#+-.!|z\nsecond\n", output(), "docx", Markup::plain, withStandIns());
  EXPECT_EQ(markdown(), "a\\\\\\`\\*\\_\\{\\}\\[\\]\\<\\>\\(\\)\\#\\+\\-\\.\\!\\|z  \nsecond  \n");
}

TEST_F(DocumentWriterTest, LeavesMarkdownAsItIs) {
  standIn("pandoc", ": > \"$output\"");
  document("*a*\nb", output(), "docx", Markup::markdown, withStandIns());
  EXPECT_EQ(markdown(), "*a*\nb");
}

class PlainRoundTripTest : public DocumentWriterTest,
                           public ::testing::WithParamInterface<const char*> {};

TEST_P(PlainRoundTripTest, KeepsEveryLine) {
  const fs::path file = workspace() / (std::string("out.") + GetParam());
  document("1. Not a list\n*not* a_b_c <tag> | $5\n- Grüße 😀",
           file,
           GetParam(),
           Markup::plain,
           withEngines());
  EXPECT_EQ(readText({file, FileKind::document, ""}, withEngines()),
            "1. Not a list\n*not* a_b_c <tag> | $5\n- Grüße 😀\n");
}

INSTANTIATE_TEST_SUITE_P(Formats, PlainRoundTripTest, ::testing::Values("docx", "odt"));

}  // namespace

}  // namespace tolvane::UniversalEngine
