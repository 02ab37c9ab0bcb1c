#include "formats/format_inspection.h"

#include <filesystem>
#include <ostream>
#include <string>
#include <sys/resource.h>

#include <gtest/gtest.h>

#include "engine/primitives/conversion_failure.h"
#include "platform/files/platform_error.h"
#include "tests/support/temporary_folder.h"

namespace tolvane {
namespace {

using namespace std::string_literals;
using support::TemporaryFolder;

const char* const notSupported =
    "This file type is not supported. Choose a document, image, media file, subtitle or archive.";
const char* const notSelfContained =
    "Use a self-contained SVG without scripts or external references.";
const char* const notText = "Choose a UTF-8 text file.";
const char* const noCues = "No valid subtitle cues were found.";
const char* const noMedia = "This file does not contain a recognized local media stream.";

/// "kind: detail", or the message of the refusal.
std::string outcome(const std::filesystem::path& file) {
  try {
    const FileInfo info = UniversalFormats::inspect(file);
    EXPECT_EQ(info.url, file);
    return std::string(name(info.kind)) + ": " + info.detail;
  } catch (const ConversionFailure& failure) {
    return failure.errorDescription();
  }
}

struct FormatCase {
  const char* name;
  std::string content;
  std::string expected;
};
void PrintTo(const FormatCase& c, std::ostream* out) {
  *out << c.name << " " << c.content.substr(0, 24);
}

class FormatTest : public ::testing::TestWithParam<FormatCase> {};
TEST_P(FormatTest, IsAdmittedOrRefused) {
  const TemporaryFolder folder;
  EXPECT_EQ(outcome(folder.write(GetParam().name, GetParam().content)), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds,
    FormatTest,
    ::testing::Values(FormatCase{"a.mp4", "....ftyp", "video: MP4 · video"},
                      FormatCase{"a.mov", "....moov", "video: MOV · video"},
                      FormatCase{"a.m4v", "....mdat", "video: M4V · video"},
                      FormatCase{"a.mp3", "ID3", "audio: MP3 · audio"},
                      FormatCase{"a.m4a", "....ftypM4A ", "audio: M4A · audio"},
                      FormatCase{"a.wav", "RIFF", "audio: WAV · audio"},
                      FormatCase{"a.flac", "fLaC", "audio: FLAC · audio"},
                      FormatCase{"a.ogg", "OggS", "audio: OGG · audio"},
                      FormatCase{"a.opus", "OggS", "audio: OPUS · audio"},
                      FormatCase{"a.aiff", "FORM", "audio: AIFF · audio"},
                      FormatCase{"a.aif", "FORM", "audio: AIF · audio"},
                      FormatCase{"a.pptx", "PK", "presentation: PPTX · presentation"},
                      FormatCase{"a.ppt", "\xD0", "presentation: PPT · presentation"},
                      FormatCase{"a.key", "x", "presentation: KEY · presentation"},
                      FormatCase{"a.xlsx", "PK", "spreadsheet: XLSX · spreadsheet"},
                      FormatCase{"a.xls", "\xD0", "spreadsheet: XLS · spreadsheet"},
                      FormatCase{"a.ods", "PK", "spreadsheet: ODS · spreadsheet"},
                      FormatCase{"a.csv", "a,b", "spreadsheet: CSV · spreadsheet"},
                      FormatCase{"a.tsv", "a\tb", "spreadsheet: TSV · spreadsheet"},
                      FormatCase{"a.numbers", "x", "spreadsheet: NUMBERS · spreadsheet"},
                      FormatCase{"a.epub", "PK", "ebook: EPUB · ebook"},
                      FormatCase{"a.srt", "1 --> 2", "subtitle: SRT · subtitle"},
                      FormatCase{"a.vtt", "-->", "subtitle: VTT · subtitle"},
                      FormatCase{"a.zip", "\xFF", "archive: ZIP · archive"},
                      FormatCase{"a.tar", "x", "archive: TAR · archive"},
                      FormatCase{"a.gz", "x", "archive: GZ · archive"},
                      FormatCase{"a.gzip", "x", "archive: GZIP · archive"},
                      FormatCase{"a.rar", "x", "archive: RAR · archive"},
                      FormatCase{"a.7z", "x", "archive: 7Z · archive"},
                      FormatCase{"a.docx", "PK\3\4", "document: DOCX · document"},
                      FormatCase{"a.pages", "x", "document: PAGES · document"},
                      FormatCase{"a.md", "# a", "document: MD · document"},
                      FormatCase{"a.markdown", "# a", "document: MARKDOWN · document"},
                      FormatCase{"a.rtf", "\xFF\0"s, "document: RTF · document"},
                      FormatCase{"a.rtfd", "x", "document: RTFD · document"},
                      FormatCase{"A.TxT", "é", "document: TXT · document"},
                      FormatCase{"a.html", "<p>", "document: HTML · document"},
                      FormatCase{"a.htm", "<p>", "document: HTM · document"},
                      FormatCase{"a.odt", "PK", "document: ODT · document"},
                      FormatCase{"a.textclipping", "x", "document: TEXTCLIPPING · document"}));

INSTANTIATE_TEST_SUITE_P(
    Images,
    FormatTest,
    ::testing::Values(
        FormatCase{"a.svg", "<SVG width='1'/>", "image: SVG · vector image"},
        FormatCase{"a.SVG", "<?xml?><svg/>", "image: SVG · vector image"},
        FormatCase{"a.svg", "<!DocType svg><svg/>", notSelfContained},
        FormatCase{"a.svg", "<svg><!ENTITY a></svg>", notSelfContained},
        FormatCase{"a.svg", "<svg><Script/></svg>", notSelfContained},
        FormatCase{"a.svg", "<svg><use xlink:href='#a'/></svg>", notSelfContained},
        FormatCase{"a.svg", "<svg><use HREF ='#a'/></svg>", notSelfContained},
        FormatCase{"a.svg", "<svg><use href  ='#a'/></svg>", "image: SVG · vector image"},
        FormatCase{"a.svg", "no vectors, href=", notSupported},
        FormatCase{"a.svg", "<svg>\xFF</svg>", notSupported},
        FormatCase{"a.webp", "RIFF....WEBP", "image: WEBP · image"},
        FormatCase{"a.webp", "RIFF....WEB", "This is not a valid WEBP image."},
        FormatCase{"a.webp", "RIFX....WEBP", "This is not a valid WEBP image."},
        FormatCase{"a.avif", "....ftypavif", "image: AVIF · image"},
        FormatCase{
            "a.avif", "....ftypmif1" + std::string(496, ' ') + "avis", "image: AVIF · image"},
        FormatCase{"a.avif",
                   "....ftypmif1" + std::string(497, ' ') + "avis",
                   "This is not a valid AVIF image."},
        FormatCase{"a.avif", "....ftyp", "This is not a valid AVIF image."},
        FormatCase{"a.avif", "avif", "This is not a valid AVIF image."},
        FormatCase{"a.bmp", "BM", "image: BMP · image"},
        FormatCase{"a.bmp", "B", "This is not a valid BMP image."}));

INSTANTIATE_TEST_SUITE_P(
    Refusals,
    FormatTest,
    ::testing::Values(FormatCase{"a.pdf", "text", notSupported},
                      FormatCase{"txt", "text", notSupported},
                      FormatCase{".txt", "text", notSupported},
                      FormatCase{"a.docx", "P", "This file is not a valid DOCX container."},
                      FormatCase{"a.pptx", "pk", "This file is not a valid PPTX container."},
                      FormatCase{"a.xlsx", "x", "This file is not a valid XLSX container."},
                      FormatCase{"a.odt", "x", "This file is not a valid ODT container."},
                      FormatCase{"a.ods", "x", "This file is not a valid ODS container."},
                      FormatCase{"a.epub", "x", "This file is not a valid EPUB container."},
                      FormatCase{"a.txt", "caf\xE9", notText},
                      FormatCase{"a.md", "\xFF", notText},
                      FormatCase{"a.markdown", "\xFF", notText},
                      FormatCase{"a.html", "\xFF", notText},
                      FormatCase{"a.htm", "\xFF", notText},
                      FormatCase{"a.tsv", "\xFF", notText},
                      FormatCase{"a.csv", std::string(511, 'a') + '\0', notText},
                      FormatCase{
                          "a.csv", std::string(512, 'a') + '\0', "spreadsheet: CSV · spreadsheet"},
                      FormatCase{"a.srt", "--> \xFF", notText},
                      FormatCase{"a.vtt", "-->\0"s, notText},
                      FormatCase{"a.srt", "1 -> 2", noCues},
                      FormatCase{"a.vtt", "WEBVTT", noCues}));

INSTANTIATE_TEST_SUITE_P(Media,
                         FormatTest,
                         ::testing::Values(FormatCase{"a.mov", "....wide", noMedia},
                                           FormatCase{"a.mov", "....ftyp", "video: MOV · video"},
                                           FormatCase{"a.mov", "FORM", "video: MOV · video"},
                                           FormatCase{
                                               "a.mp3", "\xFF\xFB......", "audio: MP3 · audio"},
                                           FormatCase{"a.mp3", "\xFF\xFB.....", noMedia},
                                           FormatCase{"a.mp3", "ID", noMedia},
                                           FormatCase{"a.mp3", "........ftyp", noMedia},
                                           FormatCase{"a.ogg", "oggs....", noMedia}));

constexpr std::size_t textSample = 2'097'152;

struct BoundaryCase {
  const char* label;
  std::size_t before;  // bytes of ASCII
  std::string rest;
  std::string expected;
};
void PrintTo(const BoundaryCase& c, std::ostream* out) {
  *out << c.label;
}

const BoundaryCase boundaryCases[] = {
    {"character ends with the sample", textSample - 6, "-->€\xFF", "subtitle: SRT · subtitle"},
    {"character cut by the sample", textSample - 2, "€", notText},
    {"cue within the sample", textSample - 3, "-->", "subtitle: SRT · subtitle"},
    {"cue cut by the sample", textSample - 2, "-->", noCues},
    {"malformed last byte of the sample", textSample - 1, "\xFF", notText},
    {"malformed after the sample", textSample - 3, "-->\xFF", "subtitle: SRT · subtitle"},
};

class BoundaryTest : public ::testing::TestWithParam<BoundaryCase> {};
TEST_P(BoundaryTest, JudgesTheFirstTwoMebibytes) {
  const TemporaryFolder folder;
  const std::string content = std::string(GetParam().before, 'a') + GetParam().rest;
  EXPECT_EQ(outcome(folder.write("a.srt", content)), GetParam().expected);
}
INSTANTIATE_TEST_SUITE_P(All, BoundaryTest, ::testing::ValuesIn(boundaryCases));

long peakKibibytes() {
  rusage usage = {};
  ::getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

TEST(Inspect, DoesNotLoadLargeFiles) {
  const TemporaryFolder folder;
  for (const char* file : {"a.zip", "a.mp3", "a.csv"}) {
    std::filesystem::resize_file(folder.write(file, "ID3"), 268'435'456);
  }
  const long before = peakKibibytes();
  EXPECT_EQ(outcome(folder / "a.zip"), "archive: ZIP · archive");
  EXPECT_EQ(outcome(folder / "a.mp3"), "audio: MP3 · audio");
  EXPECT_EQ(outcome(folder / "a.csv"), notText);
  EXPECT_LT(peakKibibytes() - before, 32 * 1024);
}

TEST(Inspect, PassesOnWhatTheSystemSays) {
  const TemporaryFolder folder;
  EXPECT_THROW(static_cast<void>(UniversalFormats::inspect(folder / "gone.txt")), PlatformError);
}

}  // namespace
}  // namespace tolvane
