#include "catalog/engine_requirements.h"

#include <gtest/gtest.h>

#include "catalog/capability_catalog.h"
#include "tests/support/installed_engines.h"
#include "tests/support/words.h"

namespace tolvane {
namespace {

namespace fs = std::filesystem;
using support::InstalledEngines;
using enum FileKind;

/// What the route lacks on a machine with the given engines and one application bundle at most.
std::optional<std::string> lacks(const InstalledEngines& engines,
                                 FileKind kind,
                                 std::string_view source,
                                 std::string_view target,
                                 const std::filesystem::path& bundle = "") {
  EngineLookup lookup(engines.toolchain(), [&](const auto& path) { return path == bundle; });
  return CapabilityCatalog::requirement(kind, source, target, lookup);
}

struct RouteCase {
  FileKind kind;
  std::string source, targets;
  std::string needed;  // the engines that the route needs, in the order of asking
};
const RouteCase routeCases[] = {
    {pdf, "pdf", "docx pptx epub", "pandoc"},
    {pdf, "pdf", "xlsx jpg png txt md", ""},
    {video, "mov", "mp4 mov gif m4a mp3", "ffmpeg ffprobe"},
    {audio, "wav", "mp3 wav aiff", "ffmpeg ffprobe"},
    {presentation, "pptx", "pdf jpg png", "soffice"},
    {spreadsheet, "csv", "csv tsv xlsx", ""},
    {spreadsheet, "tsv", "csv tsv xlsx", ""},
    {spreadsheet, "csv", "ods pdf", "soffice"},
    {spreadsheet, "xlsx", "csv tsv xlsx pdf", "soffice"},
    {document, "docx", "pdf png jpg", "soffice"},
    {document, "odt", "pdf png jpg", "soffice"},
    {document, "docx", "md txt docx odt", "pandoc"},
    {document, "html", "pdf txt html", "pandoc"},
    {document, "htm", "pdf rtf", "pandoc"},
    {document, "md", "pdf png jpg txt md rtf html", ""},
    {document, "txt", "pdf html", ""},
    {document, "rtf", "pdf html", ""},
    {document, "rtfd", "pdf html", ""},
    {document, "textclipping", "pdf html", ""},
    {document, "md", "docx epub odt", "pandoc"},
    {ebook, "epub", "pdf docx txt", "pandoc"},
    {document, "markdown", "pdf png jpg txt md rtf html", ""},
    {document, "markdown", "docx epub odt", "pandoc"},
    {archive, "zip", "zip", "7zz"},
    {archive, "zip", "tar gz", "7zz tar"},
    {subtitle, "srt", "srt vtt txt", ""},
};

TEST(RouteTest, NeedsItsEnginesAndNoOther) {
  for (const auto& [kind, source, targets, needed] : routeCases) {
    SCOPED_TRACE(::testing::Message() << name(kind) << " ." << source << " to " << targets);
    for (const std::string& target : support::words(targets)) {
      const InstalledEngines machine{"unrelated"};
      for (const std::string& engine : support::words(needed)) {
        EXPECT_EQ(lacks(machine, kind, source, target),
                  "Requires local " + engine + ". Install it and reselect the file.");
        machine.install(engine);
      }
      EXPECT_EQ(lacks(machine, kind, source, target), std::nullopt) << target;
    }
  }
}

TEST(RequirementTest, WebPagesAreLaidOutByTheSuiteOrReadByPandoc) {
  for (const char* engine : {"soffice", "pandoc"}) {
    EXPECT_EQ(lacks(InstalledEngines{engine}, document, "html", "pdf"), std::nullopt) << engine;
  }
  EXPECT_EQ(lacks(InstalledEngines{"soffice"}, document, "htm", "txt"),
            "Requires local pandoc. Install it and reselect the file.");
}

TEST(RequirementTest, RarNeedsAnEngineWithTheCodec) {
  // What 7zz lists on machines with and without it; a format is not yet a codec.
  const std::string formats = "Formats:\n   F      Rar5     rar r00\n";
  const std::pair<std::string, bool> listings[] = {
      {formats + "\nCodecs:\n 4ED   303011B BCJ2\n    D     40305 Rar5\n", true},
      {formats + "\nCodecs:\n 4ED   303011B BCJ2\n", false},
      {"", false}};
  for (const auto& [listing, unpacks] : listings) {
    const InstalledEngines machine{"tar"};
    machine.install("7zz", "#!/bin/sh\ncat <<'END'\n" + listing + "END\n");
    EXPECT_EQ(lacks(machine, archive, "rar", "zip"),
              unpacks ? std::nullopt
                      : std::optional<std::string>("Requires a local 7zz that unpacks RAR. Install "
                                                   "it and reselect the file."));
    EXPECT_EQ(lacks(machine, archive, "7z", "zip"), std::nullopt);
  }
}

TEST(RequirementTest, VectorImagesNeedARendererWhereMagickHasNone) {
  const support::TemporaryFolder folder;
  for (const char* program : {"convert", "adapter"}) {
    fs::permissions(folder.write(program, ""), fs::perms::owner_all);
  }
  fs::create_directory(folder / "bin");
  const LocalToolchain toolchain(EngineLocations{
      {folder / "bin"}, {}, {{"magick", {folder / "adapter", folder / "convert"}}}});
  const auto lacking = [&toolchain] {
    EngineLookup lookup(toolchain);
    const auto tool = CapabilityCatalog::toolRequirement(image, "svg", "crop", lookup);
    EXPECT_EQ(CapabilityCatalog::requirement(image, "svg", "png", lookup), tool);
    EXPECT_EQ(CapabilityCatalog::toolRequirement(image, "svg", "metadata", lookup), std::nullopt);
    EXPECT_EQ(CapabilityCatalog::requirement(image, "png", "jpg", lookup), std::nullopt);
    return tool;
  };
  EXPECT_EQ(lacking(), "Requires local rsvg-convert. Install it and reselect the file.");
  fs::permissions(folder.write("bin/rsvg-convert", ""), fs::perms::owner_all);
  EXPECT_EQ(lacking(), std::nullopt);
  fs::remove(folder / "bin/rsvg-convert");
  fs::permissions(folder.write("bin/magick", ""), fs::perms::owner_all);
  EXPECT_EQ(lacking(), std::nullopt);  // version 7 draws by itself
}

TEST(RequirementTest, ImagesNeedImageMagickBeforeAnythingElse) {
  const InstalledEngines pandoc{"pandoc"};
  EXPECT_EQ(lacks(pandoc, image, "png", "jpg"), "Requires local ImageMagick (magick).");
  EXPECT_EQ(lacks(pandoc, image, "png", "docx"), "Requires local ImageMagick (magick).");
  const InstalledEngines magick{"magick"};
  EXPECT_EQ(lacks(magick, image, "png", "jpg"), std::nullopt);
  EXPECT_EQ(lacks(magick, image, "png", "docx"),
            "Requires local pandoc. Install it and reselect the file.");
  magick.install("pandoc");
  EXPECT_EQ(lacks(magick, image, "png", "docx"), std::nullopt);
}

TEST(RequirementTest, OfficeFilesNeedTheirApplicationOnly) {
  const InstalledEngines bare{};
  const InstalledEngines engines{"soffice", "pandoc"};
  const std::vector<std::tuple<FileKind, std::string, std::string>> applications = {
      {document, "pages", "Pages"},
      {presentation, "key", "Keynote"},
      {spreadsheet, "numbers", "Numbers"}};
  for (const auto& [kind, source, name] : applications) {
    for (const char* target : {"pdf", "docx", "csv"}) {
      EXPECT_EQ(lacks(bare, kind, source, target, "/Applications/" + name + ".app"), std::nullopt);
      EXPECT_EQ(lacks(engines, kind, source, target),
                "Requires Apple " + name + ", which is not installed.");
    }
  }
}

TEST(EngineLookupTest, AsksOnceForEachProgram) {
  const InstalledEngines machine{"ffmpeg"};
  int questions = 0;
  EngineLookup lookup(machine.toolchain(), [&](const auto&) { return ++questions == 1; });
  for (int file = 0; file < 2; ++file) {
    EXPECT_TRUE(lookup.hasEngine("ffmpeg"));
    EXPECT_FALSE(lookup.hasEngine("qpdf"));
    EXPECT_TRUE(lookup.hasApplication("/Applications/Pages.app"));
    machine.remove("ffmpeg");
    machine.install("qpdf");
  }
  EXPECT_EQ(questions, 1);
}

TEST(EngineLookupTest, LooksForBundlesOnDisk) {
  const support::TemporaryFolder disk;
  const LocalToolchain toolchain;
  EngineLookup lookup(toolchain);
  EXPECT_TRUE(lookup.hasApplication(disk.path().string()));
  EXPECT_FALSE(lookup.hasApplication((disk / "Keynote.app").string()));
}

}  // namespace
}  // namespace tolvane
