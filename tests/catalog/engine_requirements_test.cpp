#include "catalog/engine_requirements.h"

#include <gtest/gtest.h>

#include "catalog/capability_catalog.h"
#include "tests/support/installed_engines.h"
#include "tests/support/words.h"

namespace tolvane {
namespace {

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
  const char* engine;  // the one engine that the route needs; empty: none
};
const RouteCase routeCases[] = {
    {pdf, "pdf", "docx pptx epub", "pandoc"},
    {pdf, "pdf", "xlsx jpg png txt md", ""},
    {video, "mov", "mp4 mov gif m4a mp3", "ffmpeg"},
    {audio, "wav", "mp3 wav aiff", "ffmpeg"},
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
    {archive, "zip", "zip tar gz", "7zz"},
    {subtitle, "srt", "srt vtt txt", ""},
};

TEST(RouteTest, NeedsItsEngineAndNoOther) {
  for (const auto& [kind, source, targets, engine] : routeCases) {
    SCOPED_TRACE(::testing::Message() << name(kind) << " ." << source << " to " << targets);
    const InstalledEngines bare{};
    const InstalledEngines equipped{*engine == 0 ? "unrelated" : engine};
    const std::string missing =
        std::string("Requires local ") + engine + ". Install it and reselect the file.";
    for (const std::string& target : support::words(targets)) {
      EXPECT_EQ(lacks(equipped, kind, source, target), std::nullopt) << target;
      EXPECT_EQ(lacks(bare, kind, source, target),
                *engine == 0 ? std::nullopt : std::optional(missing))
          << target;
    }
  }
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
