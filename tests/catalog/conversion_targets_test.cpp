#include <gtest/gtest.h>

#include "catalog/capability_catalog.h"
#include "tests/support/installed_engines.h"

namespace tolvane {
namespace {

std::vector<FileCapability> offersFor(const std::vector<FileInfo>& files) {
  return CapabilityCatalog::formats(files, support::InstalledEngines{}.toolchain());
}

FileCapability offerFor(const std::vector<FileInfo>& files, const std::string& target) {
  for (const FileCapability& offer : offersFor(files)) {
    if (offer.id == "convert." + target) {
      return offer;
    }
  }
  ADD_FAILURE() << target << " is not offered";
  return {};
}

using enum FileKind;

const struct {
  std::vector<FileKind> kinds;
  std::string targets;
} targetsCases[] = {
    {{}, ""},
    {{image}, "jpg png webp heic tiff avif bmp pdf docx"},
    {{pdf}, "docx pptx xlsx jpg png epub txt md"},
    {{video}, "mp4 mov gif m4a mp3"},
    {{audio}, "mp3 m4a wav flac ogg opus aiff"},
    {{document}, "pdf docx txt md html epub png jpg rtf odt"},
    {{presentation}, "pdf jpg png"},
    {{ebook}, "pdf docx txt md html"},
    {{spreadsheet}, "xlsx ods csv tsv pdf"},
    {{subtitle}, "srt vtt txt"},
    {{archive}, "zip tar gz"},
    {{image, pdf}, "jpg png docx"},
    {{pdf, image}, "docx jpg png"},
    {{image, pdf, presentation}, "jpg png"},
    {{archive, audio}, ""},
};

TEST(TargetsTest, AreSharedByAllFiles) {
  for (const auto& c : targetsCases) {
    std::vector<FileInfo> files;
    for (const FileKind kind : c.kinds) {
      files.push_back({"/files/File", kind, ""});
    }
    std::string targets;
    for (const FileCapability& offer : offersFor(files)) {
      EXPECT_EQ(offer.id.substr(0, 8), "convert.");
      EXPECT_FALSE(offer.combined || offer.nativeAction);
      targets += (targets.empty() ? "" : " ") + offer.id.substr(8);
    }
    EXPECT_EQ(targets, c.targets);
  }
}

TEST(ConversionOffersTest, NameTheirTarget) {
  const auto text = [](FileKind kind, const char* target) {
    const FileCapability offer = offerFor({{"/files/File", kind, ""}}, target);
    return offer.title + ", " + offer.ext + ", " + offer.summary;
  };
  EXPECT_EQ(text(image, "png"), "PNG, png, Image → PNG · offline");
  EXPECT_EQ(text(image, "jpg"), "JPEG, jpg, Image → JPG · offline");
  EXPECT_EQ(text(image, "pdf"), "PDF, pdf, Image → PDF · offline");
  EXPECT_EQ(text(pdf, "docx"), "Word, docx, Pdf → DOCX · offline");
  EXPECT_EQ(text(pdf, "pptx"), "PowerPoint, pptx, Pdf → PPTX · offline");
  EXPECT_EQ(text(pdf, "xlsx"), "Excel, xlsx, Pdf → XLSX · offline");
  EXPECT_EQ(text(pdf, "md"), "Markdown, md, Pdf → MD · offline");
  EXPECT_EQ(text(subtitle, "txt"), "Plain text, txt, Subtitle → TXT · offline");
  EXPECT_EQ(text(archive, "gz"), "GZIP, tar.gz, Archive → GZ · offline");
}

const std::string rebuilt =
    "Text reconstruction: columns, tables and original layout may change. Scanned pages use local "
    "OCR; review the result.";
const std::string slides =
    "One rasterized PDF page per slide. Appearance is retained as an image; slide text is not "
    "editable.";
const std::string rows =
    "Experimental table extraction only. Requires consistently delimited rows; arbitrary PDF "
    "layouts are not spreadsheets.";
const std::string recognized =
    "Apple Vision OCR exports recognized text. The image layout is not reconstructed.";
const std::string filled =
    "Transparent areas are filled with white. Lossy formats can change quality.";
const std::string exported =
    "Export fidelity depends on the local office engine. Review fonts, formulas and page layout.";

struct WarningCase {
  const char* name;
  FileKind kind;
  std::vector<const char*> targets;
  std::string warning;
};

TEST(ConversionOffersTest, WarnOfLosses) {
  const std::vector<WarningCase> cases = {
      {"a.pdf", pdf, {"docx", "md", "txt", "epub"}, rebuilt},
      {"a.pdf", pdf, {"pptx"}, slides},
      {"a.pdf", pdf, {"xlsx"}, rows},
      {"a.pdf", pdf, {"jpg"}, filled},
      {"a.pdf", pdf, {"png"}, ""},
      {"a.png", image, {"docx"}, recognized},
      {"a.png", image, {"jpg", "bmp", "heic"}, filled},
      {"a.png", image, {"png", "webp", "tiff", "avif", "pdf"}, ""},
      {"a.docx", document, {"pdf", "docx"}, ""},
      {"a.pages", document, {"txt"}, exported},
      {"a.KEY", presentation, {"pdf", "png"}, exported},
      {"a.ppt", presentation, {"pdf"}, exported},
      {"a.pptx", presentation, {"jpg"}, filled + " " + exported},
      {"a.numbers", spreadsheet, {"csv"}, exported},
      {"a.xls", spreadsheet, {"csv"}, exported},
      {"a.xlsx", spreadsheet, {"csv"}, exported},
      {"a.ods", spreadsheet, {"csv"}, exported},
      {"a.csv", spreadsheet, {"ods"}, ""},
      {"a.key", pdf, {"txt"}, rebuilt + " " + exported}};
  for (const WarningCase& c : cases) {
    for (const char* target : c.targets) {
      EXPECT_EQ(offerFor({{c.name, c.kind, ""}}, target).warning, c.warning) << c.name << target;
    }
  }
}

TEST(ConversionOffersTest, HaveTheOptionsOfTheirRoute) {
  const Value::List quality = {
      CapabilityCatalog::field("quality", "Quality (0.1–1)", 0.9, "number")};
  const Value::List ocr = {CapabilityCatalog::field("ocr", "OCR scanned pages", true, "bool")};
  for (const FileKind kind : {image, video, audio, document, archive}) {
    const bool isMedia = kind == image || kind == video || kind == audio;
    for (const FileCapability& offer : offersFor({{"/files/File", kind, ""}})) {
      EXPECT_EQ(offer.fields, isMedia ? quality : Value::List{}) << offer.summary;
    }
  }
  for (const FileCapability& offer : offersFor({{"/files/File", pdf, ""}})) {
    const bool isPicture = offer.ext == "jpg" || offer.ext == "png" || offer.ext == "pptx";
    EXPECT_EQ(offer.fields, isPicture ? Value::List{} : ocr) << offer.id;
  }
}

TEST(ConversionOffersTest, FollowTheFirstFile) {
  const FileInfo csv = {"a.csv", spreadsheet, ""};
  const FileInfo xlsx = {"b.xlsx", spreadsheet, ""};
  EXPECT_EQ(offerFor({csv, xlsx}, "ods").warning, "");
  EXPECT_EQ(offerFor({xlsx, csv}, "ods").warning, exported);
}

TEST(ConversionOffersTest, AskForTheFirstMissingEngineUntilItIsInstalled) {
  const std::vector<FileInfo> files = {
      {"a.md", document, ""}, {"b.DOCX", document, ""}, {"c.epub", ebook, ""}};
  const support::InstalledEngines machine{};
  const auto requirement = [&] {
    return CapabilityCatalog::formats(files, machine.toolchain()).front().requirement;
  };
  EXPECT_EQ(requirement(), "Requires local soffice. Install it and reselect the file.");
  machine.install("soffice");
  EXPECT_EQ(requirement(), "Requires local pandoc. Install it and reselect the file.");
  machine.install("pandoc");
  EXPECT_EQ(requirement(), std::nullopt);
}

}  // namespace
}  // namespace tolvane
