#include "formats/format_inspection.h"

#include <filesystem>
#include <string>
#include <sys/resource.h>
#include <tuple>

#include <gtest/gtest.h>

#include "engine/primitives/conversion_failure.h"
#include "platform/files/file_names.h"
#include "platform/files/platform_error.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/words.h"

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

/// What files of a kind may begin with, and the kind's extensions.
const std::tuple<std::string, std::string, std::string> kindCases[] = {
    {"video", "....ftyp", "mp4 mov m4v"},
    {"video", "....moov", "mp4 mov m4v"},
    {"video", "....mdat", "mp4 mov m4v"},
    {"audio", "....ftypM4A ", "m4a"},
    {"audio", "ID3", "mp3"},
    {"audio", "RIFF", "wav"},
    {"audio", "fLaC", "flac"},
    {"audio", "OggS", "ogg opus"},
    {"audio", "FORM", "aiff aif"},
    {"presentation", "PK", "pptx key"},
    {"presentation", "\xD0", "ppt key"},
    {"spreadsheet", "PK", "xlsx ods numbers"},
    {"spreadsheet", "a\t,b", "csv tsv xls numbers"},
    {"ebook", "PK", "epub"},
    {"subtitle", "1 --> 2", "srt vtt"},
    {"archive", "\xFF", "zip tar gz gzip rar 7z"},
    {"document", "PK\3\4", "docx odt"},
    {"document", "<é>", "txt TxT md markdown html htm rtf rtfd pages textclipping"},
    {"document", "\xFF\0"s, "rtf rtfd pages textclipping"},
};

TEST(FormatTest, OfEveryKindIsAdmitted) {
  const TemporaryFolder folder;
  for (const auto& [kind, content, extensions] : kindCases) {
    for (const std::string& extension : support::words(extensions)) {
      EXPECT_EQ(outcome(folder.write("a." + extension, content)),
                kind + ": " + FileNames::upper(extension) + " · " + kind);
    }
  }
}

TEST(FormatTest, IsRefusedWithoutItsMarks) {
  const TemporaryFolder folder;
  for (const std::string& extension : support::words("docx pptx xlsx odt ods epub")) {
    for (const char* content : {"P", "pk", "x"}) {
      EXPECT_EQ(outcome(folder.write("a." + extension, content)),
                "This file is not a valid " + FileNames::upper(extension) + " container.");
    }
  }
  for (const std::string& extension : support::words("txt md markdown html htm csv tsv srt vtt")) {
    EXPECT_EQ(outcome(folder.write("a." + extension, "-->caf\xE9")), notText) << extension;
  }
}

const std::tuple<std::string, std::string, std::string> formatCases[] = {
    {"a.svg", "<SVG width='1'/>", "image: SVG · vector image"},
    {"a.SVG", "<?xml?><svg/>", "image: SVG · vector image"},
    {"a.svg", "<!DocType svg><svg/>", notSelfContained},
    {"a.svg", "<svg><!ENTITY a></svg>", notSelfContained},
    {"a.svg", "<svg><Script/></svg>", notSelfContained},
    {"a.svg", "<svg><use xlink:href='#a'/></svg>", notSelfContained},
    {"a.svg", "<svg><use HREF ='#a'/></svg>", notSelfContained},
    {"a.svg", "<svg><use href  ='#a'/></svg>", "image: SVG · vector image"},
    {"a.svg", "no vectors, href=", notSupported},
    {"a.svg", "<svg>\xFF</svg>", notSupported},
    {"a.webp", "RIFF....WEBP", "image: WEBP · image"},
    {"a.webp", "RIFF....WEB", "This is not a valid WEBP image."},
    {"a.webp", "RIFX....WEBP", "This is not a valid WEBP image."},
    {"a.avif", "....ftypavif", "image: AVIF · image"},
    {"a.avif", "....ftypmif1" + std::string(496, ' ') + "avis", "image: AVIF · image"},
    {"a.avif", "....ftypmif1" + std::string(497, ' ') + "avis", "This is not a valid AVIF image."},
    {"a.avif", "....ftyp", "This is not a valid AVIF image."},
    {"a.avif", "avif", "This is not a valid AVIF image."},
    {"a.bmp", "BM", "image: BMP · image"},
    {"a.bmp", "B", "This is not a valid BMP image."},
    {"a.pdf", "text", notSupported},
    {"txt", "text", notSupported},
    {".txt", "text", notSupported},
    {"a.csv", std::string(511, 'a') + '\0', notText},
    {"a.csv", std::string(512, 'a') + '\0', "spreadsheet: CSV · spreadsheet"},
    {"a.vtt", "-->\0"s, notText},
    {"a.srt", "1 -> 2", noCues},
    {"a.vtt", "WEBVTT", noCues},
    {"a.mov", "....wide", noMedia},
    {"a.mov", "....ftyp", "video: MOV · video"},
    {"a.mov", "FORM", "video: MOV · video"},
    {"a.mp3", "\xFF\xFB......", "audio: MP3 · audio"},
    {"a.mp3", "\xFF\xFB.....", noMedia},
    {"a.mp3", "ID", noMedia},
    {"a.mp3", "........ftyp", noMedia},
    {"a.ogg", "oggs....", noMedia},
};

TEST(FormatTest, IsAdmittedOrRefused) {
  for (const auto& [name, content, expected] : formatCases) {
    SCOPED_TRACE(::testing::Message() << name << " " << content.substr(0, 24));
    const TemporaryFolder folder;
    EXPECT_EQ(outcome(folder.write(name, content)), expected);
  }
}

constexpr std::size_t textSample = 2'097'152;

const struct {
  const char* label;
  std::size_t before;  // bytes of ASCII
  std::string rest, expected;
} boundaryCases[] = {
    {"character ends with the sample", textSample - 6, "-->€\xFF", "subtitle: SRT · subtitle"},
    {"character cut by the sample", textSample - 2, "€", notText},
    {"cue within the sample", textSample - 3, "-->", "subtitle: SRT · subtitle"},
    {"cue cut by the sample", textSample - 2, "-->", noCues},
    {"malformed last byte of the sample", textSample - 1, "\xFF", notText},
    {"malformed after the sample", textSample - 3, "-->\xFF", "subtitle: SRT · subtitle"},
};

TEST(BoundaryTest, JudgesTheFirstTwoMebibytes) {
  for (const auto& c : boundaryCases) {
    SCOPED_TRACE(c.label);
    const TemporaryFolder folder;
    const std::string content = std::string(c.before, 'a') + c.rest;
    EXPECT_EQ(outcome(folder.write("a.srt", content)), c.expected);
  }
}

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
  EXPECT_THROW((void)UniversalFormats::inspect(folder / "gone.txt"), PlatformError);
}

}  // namespace
}  // namespace tolvane
