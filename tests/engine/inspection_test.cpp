#include <fstream>
#include <functional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "engine/conversion_engine.h"
#include "engine/primitives/conversion_failure.h"
#include "platform/files/platform_error.h"
#include "tests/support/failure_text.h"
#include "tests/support/pdf_builder.h"
#include "tests/support/pictures.h"
#include "tests/support/temporary_folder.h"

namespace tolvane {
namespace {

namespace fs = std::filesystem;
using support::failureText;
using support::gradient;
using support::PdfBuilder;
using support::TemporaryFolder;

/// A file to make and what the gate says of it: "kind: detail", or the refusal.
auto text(const char* content) {
  return [content](const fs::path& file) { std::ofstream(file) << content; };
}
auto pdfPages(int count) {
  return [count](const fs::path& file) {
    PdfBuilder builder;
    for (int page = 0; page < count; ++page) {
      builder.page({.text = "Page"});
    }
    builder.write(file);
  };
}
auto pngHeader(std::uint32_t width, std::uint32_t height) {
  return [=](const fs::path& file) { std::ofstream(file) << support::pngHeader(width, height); };
}
void folderOf(const fs::path& path) {
  fs::create_directory(path);
}
void png(const fs::path& file) {
  support::writePng(file, gradient(30, 20, PixelLayout::rgb));
}
void jpeg(const fs::path& file) {
  support::writeJpeg(file, gradient(30, 20, PixelLayout::rgb));
}
/// Two lines, each compressed by itself. Readers that unpack files to look into them stumble here.
void twoMembers(const fs::path& file) {
  constexpr std::string_view member(
      "\x1f\x8b\x08\x00\x00\x00\x00\x00\x02\x03\xcb\xcf\x4b\xe5\x02\x00\x9f\xa8\x17\xf8"
      "\x04\x00\x00\x00",
      24);
  std::ofstream(file) << member << member;
}
auto sized(std::uintmax_t size) {
  return [size](const fs::path& file) {
    std::ofstream stream(file);
    fs::resize_file(file, size);
  };
}
void locked(const fs::path& file) {
  PdfBuilder().page({.text = "Secret"}).writeLocked(file, "key");
}

constexpr const char* wrongSize = "Choose a nonempty file smaller than 256 MB.";
constexpr const char* tooManyPixels =
    "Images must fit within 16,384 pixels per side and 80 megapixels.";

const struct {
  std::string label, name;
  std::function<void(const fs::path&)> make;
  const char* expected;
} inspectionCases[] = {
    {"onePage", "a.pdf", pdfPages(1), "pdf: 1 pages · PDF"},
    {"manyPages", "a.pdf", pdfPages(500), "pdf: 500 pages · PDF"},
    {"pdfNamedText", "a.txt", pdfPages(2), "pdf: 2 pages · PDF"},
    {"png", "a.png", png, "image: 30 × 20 · PNG"},
    {"jpeg", "a.jpg", jpeg, "image: 30 × 20 · JPEG"},
    {"jpegNamedText", "a.txt", jpeg, "image: 30 × 20 · JPEG"},
    {"widest", "a.png", pngHeader(16'384, 4'882), "image: 16384 × 4882 · PNG"},
    {"package", "a.RTFD", folderOf, "document: RTFD · package"},
    {"slides", "a.key", folderOf, "presentation: KEY · package"},
    {"flatPackage", "a.pages", text("x"), "document: PAGES · document"},
    {"table", "a.csv", text("a,b"), "spreadsheet: CSV · spreadsheet"},
    {"twoMembers", "a.gz", twoMembers, "archive: GZ · archive"},
    {"largest", "a.zip", sized(ConversionEngine::maxBytes), "archive: ZIP · archive"},
    {"folder", "a", folderOf, "Folders and unavailable files are not supported."},
    {"empty", "a.txt", sized(0), wrongSize},
    {"large", "a.zip", sized(ConversionEngine::maxBytes + 1), wrongSize},
    {"damaged", "a.pdf", text("%PDF-1.7 nothing else"), "This PDF is damaged or unreadable."},
    {"locked",
     "a.pdf",
     locked,
     "Unlock this password-protected PDF in Preview and save a copy first."},
    {"longPdf", "a.pdf", pdfPages(501), "PDFs must contain 1–500 pages."},
    {"textNamedPdf",
     "a.pdf",
     text("text"),
     "This file type is not supported. Choose a document, image, media file, subtitle or archive."},
    {"tooManyPixels", "a.png", pngHeader(16'384, 4'883), tooManyPixels},
    {"tooWide", "a.png", pngHeader(16'385, 1), tooManyPixels},
    {"noPixels", "a.png", pngHeader(0, 1), tooManyPixels},
    {"impossiblyHigh", "a.png", pngHeader(1, 0x80000000), tooManyPixels},
    {"clipping",
     "a.textclipping",
     sized(ConversionEngine::maxBytes + 1),
     "This legacy or unsupported text clipping must first be saved as TXT in Finder."},
};

TEST(InspectionTest, AdmitsOrRefuses) {
  for (const auto& c : inspectionCases) {
    SCOPED_TRACE(c.label);
    const TemporaryFolder folder;
    const fs::path file = folder / c.name;
    c.make(file);
    std::string answer;
    try {
      const AdmittedFile admitted = ConversionEngine().admit(file);
      const FileInfo& info = admitted.info;
      EXPECT_EQ(info.url, file);
      EXPECT_EQ(admitted.document != nullptr, info.kind == FileKind::pdf);
      answer = std::string(name(info.kind)) + ": " + info.detail;
    } catch (const ConversionFailure& failure) {
      answer = failure.errorDescription();
    }
    EXPECT_EQ(answer, c.expected);
  }
}

TEST(InspectionPathsTest, FollowsSymbolicLinks) {
  const TemporaryFolder folder;
  png(folder / "real.png");
  fs::create_symlink("real.png", folder / "link.pdf");
  EXPECT_EQ(ConversionEngine().inspect(folder / "link.pdf").url, folder / "real.png");
}

TEST(InspectionPathsTest, RefusesAddresses) {
  EXPECT_EQ(failureText([] { return ConversionEngine().inspect("https://example.org/a.pdf"); }),
            "Choose a local file.");
}

TEST(InspectionPathsTest, PassesOnWhatTheSystemSays) {
  const TemporaryFolder folder;
  EXPECT_THROW((void)ConversionEngine().inspect(folder / "missing.pdf"), PlatformError);
  fs::create_symlink("loop", folder / "loop");
  EXPECT_THROW((void)ConversionEngine().inspect(folder / "loop"), PlatformError);
}

}  // namespace
}  // namespace tolvane
