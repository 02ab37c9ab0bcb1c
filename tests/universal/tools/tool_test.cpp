#include "universal/tools/tool.h"

#include <tuple>

#include <gmock/gmock.h>

#include "platform/documents/pdf_document.h"
#include "platform/files/file_system.h"
#include "tests/support/failure_text.h"
#include "tests/support/pdf_builder.h"
#include "tests/support/pictures.h"
#include "tests/support/universal_fixture.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;
using support::failureText;
using support::PdfBuilder;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ToolTest : public support::UniversalFixture {
 protected:
  std::vector<fs::path> run(const fs::path& file,
                            FileKind kind,
                            const std::string& id,
                            const Value::Map& options = {}) const {
    return tool({file, kind, ""}, id, options, withStandIns());
  }

  std::string report(const fs::path& file, FileKind kind) const {
    EXPECT_THAT(run(file, kind, "metadata"), ElementsAre(workspace() / "result-metadata.json"));
    return support::contentOf(workspace() / "result-metadata.json");
  }

  [[nodiscard]] static std::string sizeOf(const fs::path& file) {
    return std::to_string(fs::file_size(file));
  }
};

using MetadataTest = ToolTest;

TEST_F(MetadataTest, TellsNameTypeAndBytesOfAnyFile) {
  const fs::path file = folder_.write("Zoë \"1\".md", "12345");
  EXPECT_EQ(report(file, FileKind::document),
            "{\n  \"bytes\": 5,\n  \"name\": \"Zoë \\\"1\\\".md\",\n  \"type\": \"document\"\n}");
  fs::create_directory(folder_ / "letter.rtfd");
  EXPECT_EQ(report(folder_ / "letter.rtfd", FileKind::document),
            "{\n  \"bytes\": 0,\n  \"name\": \"letter.rtfd\",\n  \"type\": \"document\"\n}");
}

TEST_F(MetadataTest, TellsPagesAndAttributesOfPdfs) {
  const fs::path plain = PdfBuilder().page({}).page({}).page({}).write(folder_ / "a.pdf");
  EXPECT_EQ(report(plain, FileKind::pdf),
            "{\n  \"bytes\": " + sizeOf(plain) +
                ",\n  \"name\": \"a.pdf\",\n  \"pages\": 3,\n  \"type\": \"pdf\"\n}");
  const fs::path titled =
      PdfBuilder()
          .page({})
          .information("/Title <FEFF00DC> /CreationDate (D:20240131) /Trapped /True /Odd [1]")
          .write(folder_ / "b.pdf");
  EXPECT_EQ(report(titled, FileKind::pdf),
            "{\n  \"attributes\": {\n    \"CreationDate\": \"D:20240131\",\n    \"Title\": \"Ü\",\n"
            "    \"Trapped\": \"True\"\n  },\n  \"bytes\": " +
                sizeOf(titled) +
                ",\n  \"name\": \"b.pdf\",\n  \"pages\": 1,\n  \"type\": \"pdf\"\n}");
}

TEST_F(MetadataTest, TellsPropertiesOfImages) {
  const fs::path file = folder_ / "photo.png";
  support::writePng(file, support::gradient(4, 3, PixelLayout::rgba));
  EXPECT_EQ(report(file, FileKind::image),
            "{\n  \"bytes\": " + sizeOf(file) +
                ",\n  \"name\": \"photo.png\",\n  \"properties\": \"{ColorModel = RGB; Depth = 8; "
                "HasAlpha = 1; HasColorProfile = 0; Orientation = 1; PixelHeight = 3; PixelWidth = "
                "4}\",\n  \"type\": \"image\"\n}");
}

TEST_F(MetadataTest, LeavesOutWhatCannotBeOpened) {
  const fs::path junk = folder_.write("junk", "junk");
  for (const FileKind kind : {FileKind::pdf, FileKind::image}) {
    EXPECT_EQ(report(junk, kind),
              "{\n  \"bytes\": 4,\n  \"name\": \"junk\",\n  \"type\": \"" +
                  std::string(name(kind)) + "\"\n}");
  }
  EXPECT_EQ(failureText([&] { return report("/nowhere/a.pdf", FileKind::pdf); }),
            failureText([] { return FileSystem::attributes("/nowhere/a.pdf"); }));
}

TEST_F(MetadataTest, TellsTheStreamsOfMediaWhereTheyCanBeProbed) {
  const fs::path song = folder_.write("song.mp3", "12");
  const std::string rest = "  \"name\": \"song.mp3\",\n  \"type\": \"audio\"\n}";
  EXPECT_EQ(report(song, FileKind::audio), "{\n  \"bytes\": 2,\n" + rest);
  standIn("ffprobe", "printf '{\"streams\":[{\"index\":0,\"a\":1.5}]}'");
  EXPECT_EQ(report(song, FileKind::audio),
            "{\n  \"bytes\": 2,\n  \"media\": {\n    \"streams\": [\n      {\n        \"a\": 1.5,\n"
            "        \"index\": 0\n      }\n    ]\n  },\n" +
                rest);
  standIn("ffprobe", "exit 1");
  EXPECT_THAT(failureText([&] { return report(song, FileKind::audio); }),
              ::testing::StartsWith("ffprobe could not process this file (exit 1)."));
}

TEST_F(ToolTest, CompressesPdfsAndAcceptsWarnings) {
  standIn("qpdf", "echo warned; exit 3");
  EXPECT_THAT(run("/in/a.pdf", FileKind::pdf, "compress"),
              ElementsAre(workspace() / "result-compressed.pdf"));
  EXPECT_THAT(runsOf("qpdf"),
              ElementsAre(ElementsAre("--object-streams=generate",
                                      "--recompress-flate",
                                      "--compression-level=9",
                                      "/in/a.pdf",
                                      workspace() / "result-compressed.pdf")));
  standIn("qpdf", "exit 2");
  EXPECT_EQ(failureText([&] { return run("/in/a.pdf", FileKind::pdf, "compress"); }),
            "qpdf could not process this file (exit 2). Check that the file is valid and the "
            "selected options fit its content.");
}

TEST_F(ToolTest, MakesASmallerPdfOfTheSamePages) {
  PdfBuilder builder;
  for (int page = 0; page < 20; ++page) {
    builder.page({.text = "page " + std::to_string(page), .drawing = std::string(500, ' ')});
  }
  const fs::path file = builder.write(folder_ / "@file 50%d.pdf");
  const auto results = tool({file, FileKind::pdf, ""}, "compress", {}, withEngines());
  ASSERT_EQ(results.size(), 1U);
  EXPECT_LT(fs::file_size(results.front()), fs::file_size(file));
  const auto document = pdfLibrary().open(results.front());
  ASSERT_EQ(document->pageCount(), 20);
  EXPECT_THAT(document->text(19), ::testing::StartsWith("page 19"));
}

constexpr const char* unsupported = "Use the page editor or a supported tool for this selection.";

TEST_F(ToolTest, SaysThatThereIsNoSuchTool) {
  const std::tuple<const char*, FileKind, const char*> cases[] = {
      {"crop", FileKind::pdf, unsupported},
      {"compress", FileKind::document, unsupported},
      {"redact", FileKind::archive, unsupported},
      {"trim", FileKind::image, "This image tool is unavailable."}};
  standIn("qpdf");
  for (const auto& [id, kind, sentence] : cases) {
    EXPECT_EQ(failureText([&, kind = kind, id = id] { return run("/in", kind, id); }), sentence);
  }
  EXPECT_THAT(runsOf("qpdf"), IsEmpty());
}

}  // namespace

}  // namespace tolvane::UniversalEngine
