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

void writePdf(const fs::path& file, int pages) {
  PdfBuilder builder;
  for (int page = 0; page < pages; ++page) {
    builder.page({.text = "Page"});
  }
  builder.write(file);
}

void writeSparse(const fs::path& file, std::uintmax_t size) {
  std::ofstream(file) << "x";
  fs::resize_file(file, size);
}

/// A file to make and what the gate says of it: "kind: detail", or the refusal.
struct InspectionCase {
  const char* label;
  const char* name;
  std::function<void(const fs::path&)> make;
  const char* expected;
};
void PrintTo(const InspectionCase& c, std::ostream* out) {
  *out << c.name;
}

class InspectionTest : public ::testing::TestWithParam<InspectionCase> {};

TEST_P(InspectionTest, AdmitsOrRefuses) {
  const TemporaryFolder folder;
  const fs::path file = folder / GetParam().name;
  GetParam().make(file);
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
  EXPECT_EQ(answer, GetParam().expected);
}

auto text(const char* content) {
  return [content](const fs::path& file) { std::ofstream(file) << content; };
}
auto pdfPages(int count) {
  return [count](const fs::path& file) { writePdf(file, count); };
}
auto pngHeader(std::uint32_t width, std::uint32_t height) {
  return [=](const fs::path& file) { support::writePngHeader(file, width, height); };
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
void empty(const fs::path& file) {
  std::ofstream stream(file);
}
void largest(const fs::path& file) {
  writeSparse(file, ConversionEngine::maxBytes);
}
void tooLarge(const fs::path& file) {
  writeSparse(file, ConversionEngine::maxBytes + 1);
}
void locked(const fs::path& file) {
  PdfBuilder builder;
  builder.page({.text = "Secret"});
  builder.writeLocked(file, "key");
}

INSTANTIATE_TEST_SUITE_P(
    Admitted,
    InspectionTest,
    ::testing::Values(
        InspectionCase{"onePage", "a.pdf", pdfPages(1), "pdf: 1 pages · PDF"},
        InspectionCase{"manyPages", "a.pdf", pdfPages(500), "pdf: 500 pages · PDF"},
        InspectionCase{"pdfNamedText", "a.txt", pdfPages(2), "pdf: 2 pages · PDF"},
        InspectionCase{"png", "a.png", png, "image: 30 × 20 · PNG"},
        InspectionCase{"jpeg", "a.jpg", jpeg, "image: 30 × 20 · JPEG"},
        InspectionCase{"jpegNamedText", "a.txt", jpeg, "image: 30 × 20 · JPEG"},
        InspectionCase{"widest", "a.png", pngHeader(16'384, 4'882), "image: 16384 × 4882 · PNG"},
        InspectionCase{"package", "a.RTFD", folderOf, "document: RTFD · package"},
        InspectionCase{"slides", "a.key", folderOf, "presentation: KEY · package"},
        InspectionCase{"flatPackage", "a.pages", text("x"), "document: PAGES · document"},
        InspectionCase{"table", "a.csv", text("a,b"), "spreadsheet: CSV · spreadsheet"},
        InspectionCase{"twoMembers", "a.gz", twoMembers, "archive: GZ · archive"},
        InspectionCase{"largest", "a.zip", largest, "archive: ZIP · archive"}),
    [](const auto& test) { return test.param.label; });

INSTANTIATE_TEST_SUITE_P(
    Refused,
    InspectionTest,
    ::testing::Values(
        InspectionCase{"folder", "a", folderOf, "Folders and unavailable files are not supported."},
        InspectionCase{"empty", "a.txt", empty, "Choose a nonempty file smaller than 256 MB."},
        InspectionCase{"large", "a.zip", tooLarge, "Choose a nonempty file smaller than 256 MB."},
        InspectionCase{"damaged",
                       "a.pdf",
                       text("%PDF-1.7 nothing else"),
                       "This PDF is damaged or unreadable."},
        InspectionCase{"locked",
                       "a.pdf",
                       locked,
                       "Unlock this password-protected PDF in Preview and save a copy first."},
        InspectionCase{"longPdf", "a.pdf", pdfPages(501), "PDFs must contain 1–500 pages."},
        InspectionCase{"textNamedPdf",
                       "a.pdf",
                       text("text"),
                       "This file type is not supported. Choose a document, image, media file, "
                       "subtitle or archive."},
        InspectionCase{"tooManyPixels",
                       "a.png",
                       pngHeader(16'384, 4'883),
                       "Images must fit within 16,384 pixels per side and 80 megapixels."},
        InspectionCase{"tooWide",
                       "a.png",
                       pngHeader(16'385, 1),
                       "Images must fit within 16,384 pixels per side and 80 megapixels."},
        InspectionCase{"noPixels",
                       "a.png",
                       pngHeader(0, 1),
                       "Images must fit within 16,384 pixels per side and 80 megapixels."},
        InspectionCase{"impossiblyHigh",
                       "a.png",
                       pngHeader(1, 0x80000000),
                       "Images must fit within 16,384 pixels per side and 80 megapixels."},
        InspectionCase{"clipping",
                       "a.textclipping",
                       tooLarge,
                       "This legacy or unsupported text clipping must first be saved as TXT in "
                       "Finder."}),
    [](const auto& test) { return test.param.label; });

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
  EXPECT_THROW(static_cast<void>(ConversionEngine().inspect(folder / "missing.pdf")),
               PlatformError);
  fs::create_symlink("loop", folder / "loop");
  EXPECT_THROW(static_cast<void>(ConversionEngine().inspect(folder / "loop")), PlatformError);
}

}  // namespace
}  // namespace tolvane
