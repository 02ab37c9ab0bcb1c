#include "universal/documents/pandoc.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <ostream>
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
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
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
    return failureText([&] {
      pandoc(withStandIns(), "markdown", "docx", folder_.write("a.md", ""), output());
      return 0;
    });
  }
};

TEST_F(PandocTest, RunsInItsSandbox) {
  standIn("pandoc");
  const fs::path page = folder_.write("a.html", "<p>Text</p>");
  pandoc(withStandIns(), "html", "plain", page, output());
  EXPECT_THAT(
      runsOf("pandoc"),
      ElementsAre(ElementsAre(
          "--sandbox", "--from=html", "--to=plain", page.string(), "-o", output().string())));
}

TEST_F(PandocTest, WritesWholeRichTextDocuments) {
  convert("markdown", "rtf", folder_.write("a.md", "# Größe\n\nTwo *words*.\n"));
  const std::string written = contentOf(output());
  EXPECT_THAT(written, ::testing::StartsWith("{\\rtf1"));
  EXPECT_THAT(RichText::plainText(written).value_or(""),
              AllOf(HasSubstr("Größe\n"), HasSubstr("Two words.")));
}

TEST_F(PandocTest, KeepsTheSandboxWhereItCanWritePackages) {
  standIn("pandoc", ": > \"$output\"");
  pandoc(withStandIns(), "odt", "docx", "/in/a.odt", output());
  ASSERT_EQ(runsOf("pandoc").size(), 2U);  // an empty document first
  EXPECT_THAT(
      runsOf("pandoc")[1],
      ElementsAre("--sandbox", "--from=odt", "--to=docx", "/in/a.odt", "-o", output().string()));
}

TEST_F(PandocTest, TriesTheSandboxOnceForEachWriter) {
  standIn("pandoc", ": > \"$output\"");
  for (const char* writer : {"docx", "docx", "epub3", "docx"}) {
    pandoc(withStandIns(), "odt", writer, "/in/a.odt", output());
  }
  EXPECT_EQ(runsOf("pandoc").size(), 4U + 2U);
  const fs::path engine = folder_ / "bin" / "pandoc";
  fs::last_write_time(engine, fs::last_write_time(engine) + std::chrono::seconds(1));
  pandoc(withStandIns(), "odt", "docx", "/in/a.odt", output());
  EXPECT_EQ(runsOf("pandoc").size(), 6U + 2U);
}

struct TextCase {
  const char* label;
  std::string text;
  std::size_t runs;
};
void PrintTo(const TextCase& c, std::ostream* out) {
  *out << c.label;
}

class TextRunsTest : public PandocTest, public ::testing::WithParamInterface<TextCase> {};
TEST_P(TextRunsTest, AreTwoUnlessTheTextCanNameNothing) {
  standIn("pandoc", "case \"$*\" in --sandbox*--to=docx*) exit 97;; esac\n: > \"$output\"");
  pandoc(withStandIns(), "markdown", "docx", folder_.write("a.md", GetParam().text), output());
  EXPECT_EQ(runsOf("pandoc").size(), 1U + GetParam().runs);
}
INSTANTIATE_TEST_SUITE_P(
    All,
    TextRunsTest,
    ::testing::Values(
        TextCase{"plain", "---\ntitle: T\n---\r\n# A!\n\n[b](c) \\* `d` > \\[ $x$\n", 1},
        TextCase{"picture", "![a](b)", 2},
        TextCase{"divided picture", "!\r[a](b)", 2},
        TextCase{"HTML", "a <img src=b>", 2},
        TextCase{"TeX", "\\input{a}", 2},
        TextCase{"escaped letter", "---\na: \"\\x21[b](c)\"\n---\n", 2},
        TextCase{"escaped line break", "---\na: \"!\\\n[b](c)\"\n---\n", 2},
        TextCase{"escaped TeX", "---\na: \"\\\\input{b}\"\n---\n", 2}));

TEST_F(PandocTest, PutsAFilterInThePlaceOfASandboxThatCannotWritePackages) {
  standIn("pandoc", "[ \"$1\" = --sandbox ] && exit 97\n: > \"$output\"");
  pandoc(withStandIns(), "odt", "epub3", "/in/a.odt", output());
  ASSERT_EQ(runsOf("pandoc").size(), 2U);
  EXPECT_THAT(runsOf("pandoc")[1],
              ElementsAre(MatchesRegex("--lua-filter=filter-[0-9A-F-]+\\.lua"),
                          "--from=odt",
                          "--to=epub3",
                          "/in/a.odt",
                          "-o",
                          output().string()));
}

TEST_F(PandocTest, ReadsTextsInTheSandboxAllTheSame) {
  standIn("pandoc", "case \"$*\" in --sandbox*--to=pptx*) exit 97;; esac\n: > \"$output\"");
  const fs::path page = folder_.write("My page.html", "");
  pandoc(withStandIns(), "html", "pptx", page, output());
  ASSERT_EQ(runsOf("pandoc").size(), 3U);
  EXPECT_THAT(runsOf("pandoc")[1],
              ElementsAre("--sandbox",
                          MatchesRegex("--lua-filter=filter-[0-9A-F-]+\\.lua"),
                          "--from=html",
                          "--to=json",
                          page.string(),
                          "-o",
                          MatchesRegex(".*/pandoc-[0-9A-F-]+/My page.html")));
  EXPECT_THAT(
      runsOf("pandoc")[2],
      ElementsAre("--from=json", "--to=pptx", runsOf("pandoc")[1].back(), "-o", output().string()));
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
  EXPECT_EQ(failureText([&] {
              pandoc({base_, LocalToolchain(EngineLocations{{}}), token_, workspace()},
                     "html",
                     "rtf",
                     folder_.write("a.html", ""),
                     output());
              return 0;
            }),
            "Install pandoc to use this local operation, then reopen the file.");
}

struct PackageCase {
  const char* writer;
  const char* pictures;  // where the format keeps them
  int held;              // names of the one picture that the document holds itself
};

void PrintTo(const PackageCase& c, std::ostream* out) {
  *out << c.writer;
}

class PackageTest : public PandocTest, public ::testing::WithParamInterface<PackageCase> {};

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

TEST_P(PackageTest, TakesNoFileOfThisMachineIn) {
  const auto& [writer, pictures, held] = GetParam();
  support::writePng(folder_ / "secret.png", support::gradient(20, 20, PixelLayout::rgb));
  support::writePng(workspace() / "secret.png", support::gradient(20, 20, PixelLayout::rgb));
  folder_.write("secret.css", "p { color: red }");
  const fs::path input = folder_.write(
      "a.md", fmt::format(fmt::runtime(intruding), folder_.path().string(), dataPicture(8)));
  convert("markdown", writer, input);
  EXPECT_EQ(countIn(output(), pictures), held);
  EXPECT_EQ(countIn(output(), "secret"), 0);
  EXPECT_EQ(countIn(output(), "color: red"), 0);
}

// The names stand twice in a ZIP file: before each entry and in the list at the end.
INSTANTIATE_TEST_SUITE_P(Writers,
                         PackageTest,
                         ::testing::Values(PackageCase{"docx", "word/media/", 2},
                                           PackageCase{"odt", "Pictures/", 2},
                                           PackageCase{"epub3", "EPUB/media/", 2},
                                           PackageCase{"pptx", "ppt/media/", 2}));

TEST_F(PandocTest, KeepsDescriptionsOfPicturesThatItLeavesOut) {
  const fs::path made = workspace() / "made.docx";
  pandoc(withEngines(),
         "markdown",
         "docx",
         folder_.write("a.md", "See ![the harbour](/tmp/harbour.png) here."),
         made);
  EXPECT_EQ(readText({made, FileKind::document, ""}, withEngines()), "See the harbour here.\n");
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
