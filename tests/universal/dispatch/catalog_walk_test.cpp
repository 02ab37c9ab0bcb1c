#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <ostream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "catalog/capability_catalog.h"
#include "tests/support/sample_fixture.h"
#include "universal/media/media_probe.h"

namespace tolvane {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;

struct WalkCase {
  const char* sample;
  std::string word;  ///< legible in every result that is text; empty where none is
  /// What a result shows, by the offer's id, its extension or "picture": of pictures, frames of
  /// clips and pages of PDFs the size and the colours of the corner and a quarter inwards; of clips
  /// the streams.
  std::map<std::string, std::string> shown{};
  std::string report{};  ///< what the metadata tell beyond name and size
  int pages = 1;
};

void PrintTo(const WalkCase& c, std::ostream* out) {
  *out << c.sample;
}

/// What a file of each type holds whatever it tells; nothing for plain text.
const std::map<std::string, std::string> textMarks = {
    {"docx", "wordprocessingml.document.main+xml"},
    {"xlsx", "spreadsheetml.sheet.main+xml"},
    {"pptx", "presentationml.presentation.main+xml"},
    {"odt", "application/vnd.oasis.opendocument.text"},
    {"ods", "application/vnd.oasis.opendocument.spreadsheet"},
    {"epub", "application/epub+zip"},
    {"rtf", "{\\rtf1"},
    {"html", "<"},
    {"vtt", "WEBVTT\n\n00:00:01.000 --> 00:00:02.500\n"},
    {"srt", "1\n00:00:01,000 --> 00:00:02,500\n"},
    {"csv", "Price"},
    {"tsv", "\t"},
    {"md", ""},
    {"txt", ""}};

bool isOneOf(const std::string& extension, const std::string& extensions) {
  const auto all = support::words(extensions);
  return std::find(all.begin(), all.end(), extension) != all.end();
}

bool isPicture(const std::string& extension) {
  return isOneOf(extension, "png jpg webp heic tiff avif bmp");
}

int component(const Bitmap& bitmap, int x, int y, int index) {
  const int size = bytesPerPixel(bitmap.layout);
  return bitmap.row(y)[static_cast<std::size_t>(x * size + (size == 1 ? 0 : index))];
}

/// "#f08": each component none, half or all of it, so that lossy coders and dithering do not show.
std::string colorAt(const Bitmap& bitmap, int left, int top) {
  const int side = std::max(1, bitmap.width / 160);
  std::string color = "#";
  for (const int index : {0, 1, 2}) {
    const int place = bitmap.layout == PixelLayout::bgrx ? 2 - index : index;
    int sum = 0;
    for (int pixel = 0; pixel < side * side; ++pixel) {
      sum += component(bitmap, left + pixel % side, top + pixel / side, place);
    }
    color += "08f"[(sum / (side * side) + 64) / 128];
  }
  return color;
}

int contrast(const Bitmap& bitmap) {
  int darkest = 255;
  int lightest = 0;
  for (int y = 0; y < bitmap.height; ++y) {
    for (int x = 0; x < bitmap.width; ++x) {
      darkest = std::min(darkest, component(bitmap, x, y, 1));
      lightest = std::max(lightest, component(bitmap, x, y, 1));
    }
  }
  return lightest - darkest;
}

/// "160x120 #fff #f08". No result is blank.
std::string shownBy(const Bitmap& bitmap) {
  EXPECT_GT(contrast(bitmap), 100);
  return std::to_string(bitmap.width) + "x" + std::to_string(bitmap.height) + " " +
         colorAt(bitmap, 0, 0) + " " + colorAt(bitmap, bitmap.width / 4, bitmap.height / 4);
}

std::string shownBy(const fs::path& picture) {
  constexpr int mostPixels = 4096;
  return shownBy(imageDecoder().decode(picture, mostPixels));
}

/// Runs everything that is offered for a file, as a user does who changes no option.
class CatalogWalkTest : public SampleFixture, public ::testing::WithParamInterface<WalkCase> {
 protected:
  std::vector<fs::path> runOffer(const FileCapability& offer) {
    Value::Map options = {{"capabilityID", offer.id}};
    for (const Value& field : offer.fields) {
      options[*field["key"].text()] = field["default"];
    }
    return runJob({GetParam().sample}, options, offer.nativeAction.value_or("universal"));
  }

  /// The result is what its name says, and holds what the sample held.
  void check(const fs::path& result, const FileCapability& offer) {
    EXPECT_TRUE(result.string().ends_with("." + offer.ext));
    const std::string extension = FileNames::extension(result);
    if (isPicture(extension)) {
      const auto header = imageDecoder().probe(result);
      ASSERT_TRUE(header);
      EXPECT_EQ(header->extension, extension == "jpg" ? "jpeg" : extension);
      EXPECT_EQ(shownBy(result), expected(offer));
    } else if (isOneOf(extension, "gif mp4 mov m4a mp3 wav aiff flac ogg opus")) {
      checkClip(result, offer);
    } else if (extension == "pdf") {
      checkPdf(result, offer);
    } else if (isOneOf(extension, "zip tar gz")) {
      checkArchive(result);
    } else if (extension == "json") {
      checkReport(result);
    } else {
      checkText(result);
    }
  }

  static std::string expected(const FileCapability& offer) {
    for (const std::string& key : {offer.id, offer.ext, std::string("picture")}) {
      const auto found = GetParam().shown.find(key);
      if (found != GetParam().shown.end() && (key != "picture" || isPicture(offer.ext))) {
        return found->second;
      }
    }
    return "nothing that this test knows";
  }

  void checkClip(const fs::path& clip, const FileCapability& offer) {
    constexpr double tolerance = 0.2;  // seconds
    const support::TemporaryFolder workspace;
    const ConversionEngine base;
    const Value::Map probed =
        UniversalEngine::probe(clip, JobContext{base, toolchain_, token_, workspace.path()});
    EXPECT_THAT(*valueAt(probed, "format")["format_name"].text(),
                HasSubstr(offer.ext == "opus" ? "ogg" : offer.ext));
    std::string streams;
    for (const Value& stream : *valueAt(probed, "streams").list()) {
      const std::string* seconds = stream["duration"].text();
      EXPECT_NEAR(seconds != nullptr ? std::stod(*seconds) : 0,
                  offer.id == "tool.speed" ? 0.8 : 1,
                  tolerance);
      streams += (streams.empty() ? "" : ", ") + *stream["codec_name"].text() + " ";
      if (*stream["codec_type"].text() == "video") {
        streams += shownBy(partOf(clip, "-frames:v 1", workspace / "frame.png"));
      } else {
        streams += std::to_string(stream["channels"].integer().value_or(0));
        EXPECT_GT(loudest(partOf(clip, "-map 0:a -f s16le", workspace / "sound")), 1000);
      }
    }
    EXPECT_EQ(streams, expected(offer));
  }

  fs::path partOf(const fs::path& clip, const std::string& arguments, const fs::path& part) {
    const Names all =
        support::words("-v error -i " + clip.string() + " " + arguments + " " + part.string());
    toolchain_.run({.name = "ffmpeg",
                    .arguments = all,
                    .in = part.parent_path(),
                    .timeout = 60,
                    .inputs = {clip}},
                   token_);
    return part;
  }

  /// Of samples of 16 bits.
  static int loudest(const fs::path& sound) {
    const std::string bytes = support::contentOf(sound);
    int most = 0;
    for (std::size_t at = 1; at < bytes.size(); at += 2) {
      most = std::max(most, std::abs(int{static_cast<signed char>(bytes[at])}) * 256);
    }
    return most;
  }

  void checkPdf(const fs::path& pdf, const FileCapability& offer) {
    const auto side = [](double points) { return static_cast<int>(std::lround(points)); };
    const auto document = pdfLibrary().open(pdf);
    EXPECT_EQ(document->pageCount(), GetParam().pages);
    for (int page = 0; page < document->pageCount(); ++page) {
      const PdfPageGeometry box = document->geometry(page);
      const bool isTurned = box.rotation % 180 != 0;
      Bitmap seen;
      document->render(page,
                       side(isTurned ? box.height : box.width),
                       side(isTurned ? box.width : box.height),
                       seen);
      EXPECT_EQ(shownBy(seen), expected(offer));
    }
    if (!isPicture(FileNames::extension(GetParam().sample))) {
      expectWord(textOf(pdf.filename()), GetParam().word);
    }
  }

  /// The only entry is a text, whole.
  void checkArchive(const fs::path& archive) {
    const bool isZip = FileNames::extension(archive) == "zip";
    const auto unpacked = [&](const std::string& option) {
      return std::string(asText(toolchain_.run({.name = isZip ? "unzip" : "tar",
                                                .arguments = {option, archive.string()},
                                                .in = results_.path(),
                                                .timeout = 60},
                                               token_)));
    };
    EXPECT_EQ(unpacked(isZip ? "-Z1" : "-tf"), isZip ? "notes.md\n" : "./\n./notes.md\n");
    const std::string text = unpacked(isZip ? "-p" : "-xOf");
    EXPECT_EQ(text, support::contentOf(sources_ / "notes.md"));
    expectWord(text, GetParam().word);
  }

  void checkReport(const fs::path& report) {
    const std::string sample = GetParam().sample;
    const std::string told = support::contentOf(report);
    expectWord(told, GetParam().report);
    expectWord(told, "\"name\": \"" + sample + "\"");
    expectWord(told, "\"bytes\": " + std::to_string(fs::file_size(sources_ / sample)));
  }

  void checkText(const fs::path& result) {
    const auto mark = textMarks.find(FileNames::extension(result));
    ASSERT_NE(mark, textMarks.end()) << "nobody looks into such a result";
    const std::string text = textOf(result.filename());
    EXPECT_THAT(text, HasSubstr(mark->second));
    // The slides of a PDF show its pages as pictures.
    const bool isSlides = mark->first == "pptx";
    expectWord(text, isSlides ? "Page 1" : GetParam().word);
    expectWord(text, isSlides ? "\x89PNG" : GetParam().word);
  }

  static void expectWord(const std::string& text, const std::string& word) {
    EXPECT_FALSE(word.empty());
    EXPECT_THAT(text, HasSubstr(word));
  }
};

TEST_P(CatalogWalkTest, EveryOfferGivesWhatItPromises) {
  makeSample(GetParam().sample);
  const std::vector<FileInfo> files = {ConversionEngine().inspect(sources_ / GetParam().sample)};
  std::vector<FileCapability> offers = CapabilityCatalog::formats(files, toolchain_);
  for (const FileCapability& tool : CapabilityCatalog::tools(files, toolchain_)) {
    offers.push_back(tool);
  }
  EXPECT_GE(offers.size(), 2U);
  for (const FileCapability& offer : offers) {
    SCOPED_TRACE(offer.id);
    EXPECT_EQ(offer.requirement, std::nullopt);
    const std::vector<fs::path> results = runOffer(offer);
    ASSERT_EQ(results.size(), isPicture(offer.ext) ? std::size_t(GetParam().pages) : 1U);
    for (const fs::path& result : results) {
      SCOPED_TRACE(result);
      check(result, offer);
      fs::remove(result);
    }
  }
}

const WalkCase walkCases[] = {
    {"scan.png",
     "Alpha",
     {{"picture", "1224x1584 #fff #fff"},
      {"pdf", "1224x1584 #fff #fff"},
      {"tool.crop", "100x100 #fff #fff"},
      {"tool.redact", "1224x1584 #000 #fff"}},
     "PixelHeight = 1584; PixelWidth = 1224"},
    {"table.pdf",
     "total 39",
     {{"picture", "1224x1584 #fff #fff"},
      {"pdf", "612x792 #fff #fff"},
      {"tool.rotate", "792x612 #fff #fff"}},
     "\"pages\": 1"},
    {"film.mp4",
     "",
     {{"mp4", "h264 160x120 #000 #f0f, aac 1"},
      {"mov", "h264 160x120 #000 #f0f, aac 1"},
      {"gif", "gif 720x540 #000 #f0f"},
      {"m4a", "aac 1"},
      {"mp3", "mp3 1"},
      {"tool.mute", "h264 160x120 #000 #f0f"},
      {"tool.crop", "h264 100x100 #000 #0ff, aac 1"},
      {"tool.snapshot", "160x120 #000 #f0f"},
      {"tool.redact", "h264 160x120 #000 #000, aac 1"}},
     "\"codec_name\": \"h264\""},
    {"song.mp3",
     "",
     {{"mp3", "mp3 1"},
      {"m4a", "aac 1"},
      {"wav", "pcm_s16le 1"},
      {"flac", "flac 1"},
      {"ogg", "vorbis 2"},
      {"opus", "opus 1"},
      {"aiff", "pcm_s16be 1"},
      {"tool.visualize", "1600x400 #000 #000"}},
     "\"codec_name\": \"mp3\""},
    {"film.srt", "Hello there"},
    {"box.zip", "First *paragraph*."},
    {"prices.csv", "Tea, green", {{"pdf", "595x842 #fff #fff"}}},
    {"prices.xlsx", "Tea, green", {{"pdf", "595x842 #fff #fff"}}},
    {"report.docx",
     "paragraph",
     {{"pdf", "612x792 #fff #fff"}, {"picture", "1224x1584 #fff #fff"}}},
    {"book.epub", "paragraph", {{"pdf", "595x842 #fff #fff"}}},
    {"talk.pptx",
     "Second slide",
     {{"pdf", "720x405 #fff #fff"}, {"picture", "1440x810 #fff #fff"}},
     "",
     2},
    {"letter.rtf", "reader", {{"pdf", "612x792 #fff #fff"}, {"picture", "1224x1584 #fff #fff"}}},
    {"page.html", "paragraph", {{"pdf", "595x842 #fff #fff"}, {"picture", "1191x1684 #fff #fff"}}},
    {"plain.txt",
     "Another line",
     {{"pdf", "595x842 #fff #fff"}, {"picture", "1190x1684 #fff #fff"}}},
};

INSTANTIATE_TEST_SUITE_P(Samples, CatalogWalkTest, ::testing::ValuesIn(walkCases));

}  // namespace
}  // namespace tolvane
