#include <ostream>
#include <set>

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
  const char* word;  ///< legible in every result that is text
};

void PrintTo(const WalkCase& c, std::ostream* out) {
  *out << c.sample;
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
  void check(const fs::path& result) {
    static const std::set<std::string> pictures = {
        "png", "jpg", "webp", "heic", "tiff", "avif", "bmp", "gif"};
    static const std::set<std::string> clips = {
        "mp4", "mov", "m4a", "mp3", "wav", "aiff", "flac", "ogg", "opus"};
    const std::string extension = FileNames::extension(result);
    if (pictures.contains(extension)) {
      EXPECT_EQ(ConversionEngine().inspect(result).kind, FileKind::image);
    } else if (clips.contains(extension)) {
      EXPECT_NEAR(secondsOf(result), 1, 0.45);
    } else if (extension == "zip" || extension == "tar" || extension == "gz") {
      EXPECT_THAT(listingOf(result), HasSubstr("notes.md"));
    } else if (extension == "json") {
      EXPECT_THAT(support::contentOf(result), HasSubstr(GetParam().sample));
    } else if (!isPictureSample() || extension == "docx") {
      // The slides of a PDF show its pages as pictures.
      const bool isSlides = extension == "pptx";
      EXPECT_THAT(textOf(result.filename()), HasSubstr(isSlides ? "Page 1" : GetParam().word));
    }
  }

  double secondsOf(const fs::path& clip) {
    const ConversionEngine base;
    const support::TemporaryFolder workspace;
    const JobContext context = {base, toolchain_, token_, workspace.path()};
    const Value probed = UniversalEngine::probe(clip, context);
    return std::stod(*probed["format"]["duration"].text());
  }

  std::string listingOf(const fs::path& archive) {
    const bool isCompressedTar = FileNames::extension(archive) == "gz";
    const Bytes listing =
        toolchain_.run({.name = isCompressedTar ? "tar" : "7zz",
                        .arguments = {isCompressedTar ? "-tzf" : "l", archive.string()},
                        .in = results_.path(),
                        .timeout = 60},
                       token_);
    return std::string(asText(listing));
  }

  [[nodiscard]] static bool isPictureSample() {
    return FileNames::extension(GetParam().sample) == "png";
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
    ASSERT_FALSE(results.empty());
    for (const fs::path& result : results) {
      SCOPED_TRACE(result);
      check(result);
      fs::remove(result);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Samples,
                         CatalogWalkTest,
                         ::testing::Values(WalkCase{"scan.png", "Alpha"},
                                           WalkCase{"table.pdf", "total 39"},
                                           WalkCase{"film.mp4", ""},
                                           WalkCase{"song.mp3", ""},
                                           WalkCase{"film.srt", "Hello there"},
                                           WalkCase{"box.zip", ""},
                                           WalkCase{"prices.csv", "Tea, green"},
                                           WalkCase{"prices.xlsx", "Tea, green"},
                                           WalkCase{"report.docx", "paragraph"},
                                           WalkCase{"book.epub", "paragraph"},
                                           WalkCase{"talk.pptx", "Second slide"},
                                           WalkCase{"letter.rtf", "reader"},
                                           WalkCase{"page.html", "paragraph"},
                                           WalkCase{"plain.txt", "Another line"}));

}  // namespace
}  // namespace tolvane
