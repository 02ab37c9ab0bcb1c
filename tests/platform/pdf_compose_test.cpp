#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFWriter.hh>

#include "platform/documents/pdf_document.h"
#include "platform/files/file_system.h"
#include "tests/support/pdf_builder.h"
#include "tests/support/temporary_folder.h"

namespace tolvane {

namespace {

namespace fs = std::filesystem;
using support::PdfBuilder;
using support::TemporaryFolder;

class ComposeTest : public ::testing::Test {
 protected:
  std::shared_ptr<PdfDocument> reopened(PdfComposer& composer) {
    const fs::path file = folder_ / (FileSystem::newUuid() + ".pdf");
    const Bytes bytes = composer.serialise();
    EXPECT_EQ(pdfLibrary().countPages(bytes), composer.pageCount());
    FileSystem::writeAtomically(file, bytes);
    return pdfLibrary().open(file);
  }

  static std::string fileOf(PdfComposer& composer) {
    return std::string(asText(composer.serialise()));
  }

  /// "<text>@<rotation>" of each page.
  static std::vector<std::string> summary(PdfDocument& document) {
    std::vector<std::string> pages;
    pages.reserve(static_cast<std::size_t>(document.pageCount()));
    for (int page = 0; page < document.pageCount(); ++page) {
      pages.push_back(document.text(page) + "@" + std::to_string(document.geometry(page).rotation));
    }
    return pages;
  }

  TemporaryFolder folder_;
};

TEST_F(ComposeTest, KeepsOrderAndTurnsPages) {
  const auto letters = pdfLibrary().open(PdfBuilder()
                                             .page({.rotation = 270, .text = "A"})
                                             .page({.text = "B"})
                                             .inherited("/Rotate 90")
                                             .write(folder_ / "letters.pdf"));
  const auto digits =
      pdfLibrary().open(PdfBuilder().page({.text = "1"}).write(folder_ / "digits.pdf"));
  const auto composer = pdfLibrary().compose();
  composer->append(letters, 1, std::nullopt);
  composer->append(digits, 0, 180);
  composer->append(letters, 0, std::nullopt);
  composer->append(letters, 1, -90);
  composer->append(letters, 1, 0);

  EXPECT_EQ(composer->pageCount(), 5);
  EXPECT_THAT(summary(*reopened(*composer)),
              ::testing::ElementsAre("B@90", "1@180", "A@270", "B@-90", "B@0"));
}

TEST_F(ComposeTest, IsHardlyLargerThanAPackedSource) {
  PdfBuilder builder;
  for (int page = 0; page < 100; ++page) {
    builder.page({.text = "Page"});
  }
  QPDF original;
  original.processFile(builder.write(folder_ / "plain.pdf").c_str());
  const fs::path packed = folder_ / "packed.pdf";
  QPDFWriter writer(original, packed.c_str());
  writer.setObjectStreamMode(qpdf_o_generate);
  writer.write();
  const auto source = pdfLibrary().open(packed);
  const auto composer = pdfLibrary().compose();
  for (int page = 0; page < source->pageCount(); ++page) {
    composer->append(source, page, std::nullopt);
  }
  EXPECT_LE(composer->serialise().size(), fs::file_size(packed) * 102 / 100);
}

TEST_F(ComposeTest, LeavesTheSourceAsItIs) {
  const auto source = pdfLibrary().open(PdfBuilder()
                                            .page({.text = "Turned", .mediaBox = ""})
                                            .inherited("/Rotate 90 /MediaBox [0 0 700 800]")
                                            .write(folder_ / "source.pdf"));
  const auto first = pdfLibrary().compose();
  first->append(source, 0, 180);
  const std::vector<std::string> turned = summary(*reopened(*first));
  const auto second = pdfLibrary().compose();
  second->append(source, 0, std::nullopt);
  const auto copy = reopened(*second);

  EXPECT_THAT(turned, ::testing::ElementsAre("Turned@180"));
  EXPECT_EQ(summary(*copy), summary(*source));
  EXPECT_EQ(copy->geometry(0).width, 700);
  Bitmap sourcePixels;
  Bitmap copyPixels;
  source->render(0, 400, 350, sourcePixels);
  copy->render(0, 400, 350, copyPixels);
  EXPECT_EQ(copyPixels.pixels, sourcePixels.pixels);
}

TEST_F(ComposeTest, KeepsBoxesAnnotationsAndDataOfPages) {
  const std::string content = "% kept to the byte\n0 0 1 rg 0 0 9 9 re f";
  auto source = pdfLibrary().open(
      PdfBuilder()
          .page({.drawing = content,
                 .entries = "/Annots [<< /Type /Annot /Subtype /Text /Rect [0 0 9 9] "
                            "/Contents (A remark) >>]"})
          .inherited("/CropBox [1 2 30 40]")
          .write(folder_ / "source.pdf"));
  const auto composer = pdfLibrary().compose();
  composer->append(source, 0, std::nullopt);
  Bitmap bitmap;
  source->render(0, 10, 10, bitmap);  // from a copy without the crop box
  source.reset();                     // the composer keeps it

  const std::string text = fileOf(*composer);
  EXPECT_THAT(text, ::testing::HasSubstr(content));
  EXPECT_THAT(text, ::testing::HasSubstr("A remark"));
  EXPECT_THAT(text, ::testing::HasSubstr("[ 1 2 30 40 ]"));
}

TEST_F(ComposeTest, WritesProtectedPagesInTheClear) {
  const auto source = pdfLibrary().open(
      PdfBuilder().page({.text = "Clear"}).writeRestricted(folder_ / "owner.pdf", "secret"));
  const auto composer = pdfLibrary().compose();
  composer->append(source, 0, std::nullopt);
  EXPECT_THAT(fileOf(*composer), ::testing::Not(::testing::HasSubstr("/Encrypt")));
  EXPECT_THAT(summary(*reopened(*composer)), ::testing::ElementsAre("Clear@0"));
}

/// A page with a link to the page of that number in the same file, counted from 0.
support::PdfPage linked(const std::string& text, int target, bool byAction = false) {
  const std::string destination = "[" + std::to_string(2 * target + 4) + " 0 R /Fit]";
  return {
      .text = text,
      .entries = "/Annots [<< /Type /Annot /Subtype /Link /Rect [0 0 9 9] " +
                 (byAction ? "/A << /S /GoTo /D " + destination + " >>" : "/Dest " + destination) +
                 " >>]"};
}

/// What the composed document's first link on each page leads to: a page, or -1.
std::vector<int> linkTargets(PdfComposer& composer) {
  const Bytes bytes = composer.serialise();
  QPDF document;
  document.processMemoryFile("composed", reinterpret_cast<const char*>(bytes.data()), bytes.size());
  std::vector<int> targets;
  for (QPDFObjectHandle page : document.getAllPages()) {
    QPDFObjectHandle link = page.getKey("/Annots").getArrayItem(0);
    QPDFObjectHandle destination =
        link.hasKey("/A") ? link.getKey("/A").getKey("/D") : link.getKey("/Dest");
    QPDFObjectHandle target = destination.getArrayItem(0);
    targets.push_back(target.isNull() ? -1 : document.findPage(target));
  }
  return targets;
}

TEST_F(ComposeTest, KeepsLinksBetweenThePagesThatAreTaken) {
  const auto source = pdfLibrary().open(PdfBuilder()
                                            .page(linked("A", 1))
                                            .page(linked("B", 2, true))
                                            .page(linked("C", 0))
                                            .page(linked("D", 3))
                                            .write(folder_ / "a.pdf"));
  const auto other = pdfLibrary().open(
      PdfBuilder().page(linked("1", 1, true)).page(linked("2", 0)).write(folder_ / "b.pdf"));
  const auto whole = pdfLibrary().compose();
  for (int page = 0; page < 4; ++page) {
    whole->append(source, page, 90);
  }
  whole->append(other, 0, std::nullopt);
  whole->append(other, 1, std::nullopt);
  EXPECT_THAT(linkTargets(*whole), ::testing::ElementsAre(1, 2, 0, 3, 5, 4));

  const auto part = pdfLibrary().compose();
  for (const int page : {2, 1, 0, 2}) {
    part->append(source, page, std::nullopt);
  }
  EXPECT_THAT(linkTargets(*part), ::testing::ElementsAre(2, 0, 1, 2));

  const auto pair = pdfLibrary().compose();
  pair->append(source, 0, std::nullopt);
  pair->append(source, 2, std::nullopt);
  EXPECT_THAT(linkTargets(*pair), ::testing::ElementsAre(-1, 0));
  EXPECT_THAT(fileOf(*pair), ::testing::Not(::testing::HasSubstr("(B) Tj")));
}

TEST_F(ComposeTest, PassesOverLinksThatMakeNoSense) {
  const auto source = pdfLibrary().open(
      PdfBuilder()
          .page({.entries = "/Annots [null 7 (text) << /Dest [] >> << /Dest (name) >> "
                            "<< /Dest [0 /Fit] >> << /A [9] >> << /A << /S /GoTo >> >> "
                            "<< /Dest [99 0 R /Fit] >> << /Dest [2 0 R /Fit] >>]"})
          .page({.entries = "/Annots (none)"})
          .write(folder_ / "odd.pdf"));
  const auto composer = pdfLibrary().compose();
  composer->append(source, 0, std::nullopt);
  composer->append(source, 1, std::nullopt);
  EXPECT_EQ(pdfLibrary().countPages(composer->serialise()), 2);
}

TEST_F(ComposeTest, RefusesPagesThatAreNotThere) {
  const auto source = pdfLibrary().open(PdfBuilder().page({}).write(folder_ / "one.pdf"));
  const auto composer = pdfLibrary().compose();
  EXPECT_THROW(composer->append(source, 1, std::nullopt), PlatformError);
  EXPECT_THROW(composer->append(source, -1, 90), PlatformError);
  EXPECT_EQ(composer->pageCount(), 0);
  EXPECT_EQ(pdfLibrary().countPages(composer->serialise()), 0);
}

}  // namespace

}  // namespace tolvane
