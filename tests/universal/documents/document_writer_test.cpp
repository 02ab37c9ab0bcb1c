#include "universal/documents/document_writer.h"

#include <filesystem>
#include <string>
#include <tuple>

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

class DocumentWriterTest : public support::UniversalFixture {
 protected:
  [[nodiscard]] fs::path output() const { return workspace() / "out"; }

  std::string written(const std::string& text, const std::string& format, Markup markup) {
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

const std::tuple<std::string, std::string, Markup, std::string, std::string> writtenFileCases[] = {
    {"text is left alone", "txt", Markup::plain, "*a* <b>\n# c", "*a* <b>\n# c"},
    {"also when it is Markdown", "txt", Markup::markdown, "**a**\n", "**a**\n"},
    {"Markdown signs", "md", Markup::plain, "`*_<>#[]", "\\`\\*\\_\\<\\>\\#\\[\\]"},
    {"a backslash", "md", Markup::plain, "\\*", "\\\\\\*"},
    {"signs left alone", "md", Markup::plain, "1. a+b-(c)!\nd", "1. a+b-(c)!\nd"},
    {"html",
     "html",
     Markup::plain,
     "a < b & \"c\"\nd",
     "<!doctype html><meta charset=\"utf-8\"><pre>a &lt; b &amp; &quot;c&quot;\nd</pre>"},
    {"html by pandoc", "html", Markup::markdown, "*a*", "<p><em>a</em></p>\n"},
    {"Markdown by pandoc", "md", Markup::markdown, "__a__", "**a**\n"},
};

TEST_F(DocumentWriterTest, HoldsTheText) {
  for (const auto& [label, format, markup, text, expected] : writtenFileCases) {
    EXPECT_EQ(written(text, format, markup), expected) << label;
  }
}

TEST_F(DocumentWriterTest, WritesRichText) {
  const std::string text = "Grüße 😀\n{second} \\line";
  EXPECT_EQ(RichText::plainText(written(text, "rtf", Markup::plain)), text);
}

TEST_F(DocumentWriterTest, EscapesPlainTextForPandocLineByLine) {
  standIn("pandoc", ": > \"$output\"");
  document("*a*\nb", output(), "docx", Markup::markdown, withStandIns());
  EXPECT_EQ(markdown(), "*a*\nb");
  fs::remove_all(workspace());
  fs::create_directory(workspace());
  document("a\\`*_{}[]<>()#+-.!|z\nsecond\n", output(), "docx", Markup::plain, withStandIns());
  EXPECT_EQ(markdown(), "a\\\\\\`\\*\\_\\{\\}\\[\\]\\<\\>\\(\\)\\#\\+\\-\\.\\!\\|z  \nsecond  \n");
}

TEST_F(DocumentWriterTest, KeepsEveryLine) {
  for (const char* value : {"docx", "odt"}) {
    SCOPED_TRACE(value);
    const fs::path file = workspace() / (std::string("out.") + value);
    document("1. Not a list\n*not* a_b_c <tag> | $5\n- Grüße 😀",
             file,
             value,
             Markup::plain,
             withEngines());
    EXPECT_EQ(readText({file, FileKind::document, ""}, withEngines()),
              "1. Not a list\n*not* a_b_c <tag> | $5\n- Grüße 😀\n");
  }
}

}  // namespace

}  // namespace tolvane::UniversalEngine
