#include "universal/documents/pandoc.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <random>
#include <string>
#include <utility>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/files/file_system.h"
#include "platform/images/image_encoder.h"
#include "platform/text/base64.h"
#include "platform/text/rich_text.h"
#include "tests/support/failure_text.h"
#include "tests/support/pictures.h"
#include "tests/support/universal_fixture.h"
#include "universal/documents/document_writer.h"
#include "universal/documents/read_text.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;
using support::contentOf;
using support::failureText;
using ::testing::HasSubstr;
using ::testing::Not;

/// The address of a picture of noise, which cannot be compressed: 40 KB for a side of 100.
std::string dataAddress(int side) {
  Bitmap noise{side, side, PixelLayout::rgb, {}};
  noise.pixels.resize(noise.stride() * static_cast<std::size_t>(side));
  std::mt19937 random(1);
  std::generate(noise.pixels.begin(), noise.pixels.end(), [&random] {
    return static_cast<std::uint8_t>(random());
  });
  return "data:image/png;base64," + Base64::encode(ImageEncoder::png(noise));
}

/// A picture for a Markdown text.
std::string dataPicture(int side) {
  return "![held](" + dataAddress(side) + ")";
}

/// How often `part` stands in a file.
int countIn(const fs::path& file, const std::string& part) {
  const std::string content = contentOf(file);
  int count = 0;
  for (std::size_t at = content.find(part); at != std::string::npos;
       at = content.find(part, at + 1)) {
    ++count;
  }
  return count;
}

class PandocTest : public support::UniversalFixture {
 protected:
  [[nodiscard]] fs::path output() const { return workspace() / "out"; }

  void convert(const std::string& reader, const std::string& writer, const fs::path& input) {
    pandoc(withEngines(), reader, writer, input, output());
  }

  std::string failureOf(const std::string& script) {
    standIn("pandoc", script);
    return failureText(
        [&] { pandoc(withStandIns(), "markdown", "docx", folder_.write("a.md", ""), output()); });
  }
};

TEST_F(PandocTest, WritesWholeRichTextDocuments) {
  convert("markdown", "rtf", folder_.write("a.md", "# Größe\n\nTwo *words*.\n"));
  const std::string written = contentOf(output());
  EXPECT_THAT(written, ::testing::StartsWith("{\\rtf1"));
  EXPECT_THAT(RichText::plainText(written).value_or(""),
              AllOf(HasSubstr("Größe\n"), HasSubstr("Two words.")));
}

const struct {
  const char* label;
  std::string script, reader, writer;
  std::vector<std::string> runs;  ///< but for the trial with an empty document
} sandboxCases[] = {
    {"a text",
     "",
     "html",
     "plain",
     {"--sandbox --from=html --to=plain 'WORK/a b.html' -o WORK/out"}},
    {"a sandbox that can write packages",
     ": > \"$output\"",
     "odt",
     "docx",
     {"--sandbox --from=odt --to=docx 'WORK/a b.html' -o WORK/out"}},
    {"a filter in the place of one that cannot",
     "[ \"$1\" = --sandbox ] && exit 97\n: > \"$output\"",
     "odt",
     "epub3",
     {"--lua-filter=filter-*.lua --from=odt --to=epub3 'WORK/a b.html' -o WORK/out"}},
    {"a text, which is read in the sandbox all the same",
     "case \"$*\" in --sandbox*--to=pptx*) exit 97;; esac\n: > \"$output\"",
     "html",
     "pptx",
     {"--sandbox --lua-filter=filter-*.lua --from=html --to=json 'WORK/a b.html' -o "
      "'WORK/pandoc-*/a b.html'",
      "--from=json --to=pptx 'WORK/pandoc-*/a b.html' -o WORK/out"}},
};

TEST_F(PandocTest, TriesTheSandboxOnceForEachWriter) {
  standIn("pandoc", ": > \"$output\"");
  for (const char* writer : {"docx", "docx", "epub3", "docx"}) {
    pandoc(withStandIns(), "odt", writer, "/in/a.odt", output());
  }
  EXPECT_EQ(linesOf("pandoc").size(), 4U + 2U);
  const fs::path engine = folder_ / "bin" / "pandoc";
  fs::last_write_time(engine, fs::last_write_time(engine) + std::chrono::seconds(1));
  pandoc(withStandIns(), "odt", "docx", "/in/a.odt", output());
  EXPECT_EQ(linesOf("pandoc").size(), 6U + 2U);
}

TEST_F(PandocTest, ReadsATextOnceWhenItCanNameNothing) {
  struct TextCase {
    const char* label;
    const char* text;
    std::size_t runs;
  };
  const TextCase cases[] = {
      {"plain", "---\ntitle: T\n---\r\n# A!\n\n[b](c) \\* `d` > \\[ $x$\n", 1},
      {"picture", "![a](b)", 2},
      {"divided picture", "!\r[a](b)", 2},
      {"HTML", "a <img src=b>", 2},
      {"TeX", "\\input{a}", 2},
      {"escaped letter", "---\na: \"\\x21[b](c)\"\n---\n", 2},
      {"escaped line break", "---\na: \"!\\\n[b](c)\"\n---\n", 2},
      {"escaped TeX", "---\na: \"\\\\input{b}\"\n---\n", 2}};
  for (const TextCase& c : cases) {
    standIn("pandoc", "case \"$*\" in --sandbox*--to=docx*) exit 97;; esac\n: > \"$output\"");
    const fs::path text = folder_.write("a.md", c.text);
    pandoc(withStandIns(), "markdown", "docx", text, output());
    fs::remove(workspace() / "pandoc.runs");
    pandoc(withStandIns(), "markdown", "docx", text, output());
    EXPECT_EQ(linesOf("pandoc").size(), c.runs) << c.label;
  }
}

TEST_F(PandocTest, ReadsNoOtherFile) {
  const fs::path input = folder_.write("work/a b.html", "");
  for (const auto& c : sandboxCases) {
    SCOPED_TRACE(c.label);
    fs::remove(workspace() / "pandoc.runs");
    standIn("pandoc", c.script);
    pandoc(withStandIns(), c.reader, c.writer, input, output());
    std::vector<std::string> runs = linesOf("pandoc");
    runs.erase(runs.begin(), runs.end() - static_cast<std::ptrdiff_t>(c.runs.size()));
    EXPECT_EQ(runs, c.runs);
  }
}

TEST_F(PandocTest, WorksInAFolderWhoseNameIsNotUtf8) {
  const fs::path folder = workspace() / "latin \xE9;";
  fs::create_directory(folder);
  const fs::path text = folder / "a \xE9.md";
  fs::copy_file(folder_.write("a.md", "Text\n"), text);
  const JobContext context = withEngines().in(folder);
  pandoc(context, "markdown", "docx", text, folder / "a.docx");
  pandoc(context, "docx", "odt", folder / "a.docx", folder / "a.odt");
  EXPECT_EQ(readText({folder / "a.odt", FileKind::document, ""}, context), "Text\n");
}

TEST_F(PandocTest, ReportsItsFailures) {
  const std::string sentence =
      "pandoc could not process this file (exit {}). Check that the file is valid and the selected "
      "options fit its content.";
  EXPECT_EQ(failureOf("exit 64"), fmt::format(fmt::runtime(sentence), 64));
  EXPECT_EQ(failureOf("exit 97"), fmt::format(fmt::runtime(sentence), 97));
  const LocalToolchain none(EngineLocations{{}});
  EXPECT_EQ(failureText([&] {
              pandoc({base_, none, token_, workspace()},
                     "html",
                     "rtf",
                     folder_.write("a.html", ""),
                     output());
            }),
            "Install pandoc to use this local operation, then reopen the file.");
}

constexpr const char* intruding = R"(---
title: Title
cover-image: {0}/secret.png
css: {0}/secret.css
stylesheet: {0}/secret.css
background-image: {0}/secret.png
---

# Heading {{background-image="{0}/secret.png"}}

![first]({0}/secret.png) ![second](secret.png) ![third](../secret.png) ![fourth](file://{0}/secret.png)
![fifth](%2e%2e/secret.png)

{1}

Inline <img src="{0}/secret.png"> and <IMG SRC="{0}/secret.png">

<pre><img src="{0}/secret.png"></pre>

<video src="{0}/secret.css"></video>
)";

/// Where packages keep their pictures.
const std::pair<const char*, const char*> pictureFolders[] = {{"docx", "word/media/"},
                                                              {"odt", "Pictures/"},
                                                              {"epub3", "EPUB/media/"},
                                                              {"pptx", "ppt/media/"}};

TEST_F(PandocTest, TakesNoFileOfThisMachineIn) {
  support::writePng(folder_ / "secret.png", support::gradient(20, 20, PixelLayout::rgb));
  support::writePng(workspace() / "secret.png", support::gradient(20, 20, PixelLayout::rgb));
  folder_.write("secret.css", "p { color: red }");
  const fs::path input = folder_.write(
      "a.md", fmt::format(fmt::runtime(intruding), folder_.path().string(), dataPicture(8)));
  for (const auto& [writer, pictures] : pictureFolders) {
    SCOPED_TRACE(writer);
    convert("markdown", writer, input);
    // The picture that the document holds itself: its name stands before the entry and in the list
    // at the end.
    EXPECT_EQ(countIn(output(), pictures), 2);
    EXPECT_EQ(countIn(output(), "secret"), 0);
    EXPECT_EQ(countIn(output(), "color: red"), 0);
  }
}

TEST_F(PandocTest, KeepsDescriptionsOfPicturesThatItLeavesOut) {
  convert("markdown", "docx", folder_.write("a.md", "See ![the harbour](/tmp/harbour.png) here."));
  fs::rename(output(), workspace() / "made.docx");
  EXPECT_EQ(readText({workspace() / "made.docx", FileKind::document, ""}, withEngines()),
            "See the harbour here.\n");
}

TEST_F(PandocTest, KeepsThePicturesOfContainers) {
  convert("markdown", "docx", folder_.write("a.md", "A picture: " + dataPicture(8)));
  fs::rename(output(), folder_ / "a.docx");
  convert("docx", "odt", folder_ / "a.docx");
  EXPECT_EQ(countIn(output(), "Pictures/"), 2);
}

TEST_F(PandocTest, MakesSlidesOfLargePictures) {
  const std::string slides = "# Page 1\n\n" + dataPicture(100) + "\n\n# Page 2\n\n" +
                             dataPicture(120) +
                             "\n\n# Page 3\n\n`![](data:image/png;base64,AAAA)`\n";
  document(slides, output(), "pptx", Markup::markdown, withEngines());
  EXPECT_EQ(countIn(output(), "ppt/media/"), 4);
  EXPECT_EQ(countIn(output(), "ppt/slides/slide3.xml"), 2);
}

TEST_F(PandocTest, KeepsLargePicturesOfTexts) {
  const std::string one = dataAddress(100);
  const std::string other = dataAddress(120);
  const fs::path page = folder_.write(
      "a.html", "<p>Text</p><img src=\"" + one + "\"><p>More</p><img src='" + other + "'>");
  const fs::path text = folder_.write("a.md", "![](" + one + ")\n\n![](" + other + ")\n");
  for (const auto& [reader, input] : {std::pair("html", page), std::pair("markdown", text)}) {
    for (const char* writer : {"html", "markdown"}) {
      convert(reader, writer, input);
      EXPECT_EQ(countIn(output(), one), 1) << reader << " to " << writer;
      EXPECT_EQ(countIn(output(), other), 1) << reader << " to " << writer;
      EXPECT_EQ(countIn(output(), "picture-"), 0);
    }
    // The text is not to hold a name in the place of an address.
    EXPECT_THAT(readText({page, FileKind::document, ""}, withEngines()), Not(HasSubstr("picture")));
    convert(reader, "docx", input);
    EXPECT_EQ(countIn(output(), "word/media/"), 4);
  }
  const fs::directory_iterator entries(workspace());
  EXPECT_EQ(std::count_if(begin(entries),
                          end(entries),
                          [](const fs::directory_entry& entry) {
                            return entry.path().filename().string().starts_with("lighter-") &&
                                   entry.file_size() < 1000;
                          }),
            8);  // of the six conversions and the two readings
}

TEST_F(PandocTest, KeepsThePicturesOfTextsThatBecomeRichText) {
  for (const int side : {8, 100}) {
    const std::string secret = (folder_ / "secret.png").string();
    support::writePng(secret, support::gradient(20, 20, PixelLayout::rgb));
    convert("markdown",
            "rtf",
            folder_.write("a.md", dataPicture(side) + "\n\nText ![](" + secret + ")\n"));
    EXPECT_THAT(contentOf(output()), ::testing::StartsWith("{\\rtf1"));
    EXPECT_EQ(countIn(output(), "\\pngblip"), 1);
    EXPECT_EQ(countIn(output(), "base64"), 0);
  }
}

TEST_F(PandocTest, KeepsLargePicturesOfAPageThatStatesItsAddress) {
  const std::string address = dataAddress(100);
  convert("html",
          "markdown",
          folder_.write("a.html",
                        "<head><BASE href='http://192.0.2.1/'></head><img src='" + address + "'>"));
  EXPECT_EQ(countIn(output(), "(" + address), 1);
}

TEST_F(PandocTest, FetchesNothing) {
  const fs::path page = folder_.write(
      "a.html",
      "<p>Before</p><iframe src='http://192.0.2.1/a'></iframe><iframe src='/etc/hostname'></iframe>"
      "<img src='http://192.0.2.1/b.png' alt='remote'><p>After</p>");
  EXPECT_THAT(readText({page, FileKind::document, ""}, withEngines()),
              AllOf(HasSubstr("Before"), HasSubstr("After")));
  convert("html", "docx", page);
  EXPECT_EQ(countIn(output(), "word/media/"), 0);
}

}  // namespace

}  // namespace tolvane::UniversalEngine
