#include <cstdint>
#include <numeric>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/documents/pdf_document.h"
#include "tests/support/pdf_builder.h"
#include "tests/support/temporary_folder.h"

namespace tolvane {

namespace {

using support::PdfBuilder;
using support::PdfPage;
using support::TemporaryFolder;

constexpr std::uint32_t white = 0xFFFFFF;
constexpr std::uint32_t red = 0xFF0000;

/// 0xRRGGBB of a painted page.
std::uint32_t colorAt(const Bitmap& bitmap, int x, int y) {
  const BytesView pixel = bitmap.row(y).subspan(static_cast<std::size_t>(x) * 4, 3);
  return static_cast<std::uint32_t>(pixel[2] << 16 | pixel[1] << 8 | pixel[0]);
}

Bitmap painted(const PdfBuilder& builder, int width, int height) {
  const TemporaryFolder folder;
  Bitmap bitmap;
  pdfLibrary().open(builder.write(folder / "page.pdf"))->render(0, width, height, bitmap);
  return bitmap;
}

struct CornerCase {
  const char* label;
  PdfPage page;  // 100 x 200 points with a red square in the lower left corner
  const char* inherited;
  int width, height, redX, redY;
};

const CornerCase renderCases[] = {
    {"upright", {}, "", 100, 200, 0, 1},
    {"scaled", {}, "", 200, 400, 0, 1},
    {"out of proportion", {}, "", 333, 50, 0, 1},
    {"90", {.rotation = 90}, "", 200, 100, 0, 0},
    {"inherited 180", {}, "/Rotate 180", 100, 200, 1, 0},
    {"-90", {.rotation = -90}, "", 200, 100, 1, 1},
    {"450", {.rotation = 450}, "", 200, 100, 0, 0},
    {"cropped", {.entries = "/CropBox [40 40 60 60]"}, "", 100, 200, 0, 1},
    {"inherited crop box", {}, "/CropBox [40 40 60 60]", 100, 200, 0, 1},
    {"box off the origin",
     {.drawing = "1 1 1 rg 0 0 99 99 re f 1 0 0 rg -50 -100 20 20 re f",
      .mediaBox = "[-50 -100 50 100]",
      .entries = "/CropBox [0 0 50 100]"},
     "",
     100,
     200,
     0,
     1},
};

TEST(RenderTest, PaintsTheWholeMediaBoxTurnedOverWhite) {
  for (const auto& [label, page, inherited, width, height, redX, redY] : renderCases) {
    SCOPED_TRACE(label);
    PdfPage marked = page;
    marked.width = 100;
    marked.height = 200;
    marked.drawing = "1 0 0 rg 0 0 20 20 re f " + page.drawing;
    const Bitmap bitmap = painted(PdfBuilder().page(marked).inherited(inherited), width, height);

    ASSERT_EQ(std::pair(bitmap.width, bitmap.height), std::pair(width, height));
    ASSERT_EQ(bitmap.layout, PixelLayout::bgrx);
    ASSERT_EQ(bitmap.pixels.size(), bitmap.stride() * static_cast<std::size_t>(height));
    for (const int x : {2, width - 3}) {
      for (const int y : {2, height - 3}) {
        const bool marker = (x < width / 2) == (redX == 0) && (y < height / 2) == (redY == 0);
        EXPECT_EQ(colorAt(bitmap, x, y), marker ? red : white) << x << ", " << y;
      }
    }
  }
}

TEST(PdfDocumentTest, ShowsAnnotations) {
  const PdfBuilder builder = PdfBuilder().page(
      {.width = 50,
       .height = 50,
       .entries = "/Annots [<< /Type /Annot /Subtype /Square /Rect [0 0 50 50] /F 4 /C [1 0 0] "
                  "/IC [1 0 0] /BS << /W 10 >> >>]"});
  EXPECT_EQ(colorAt(painted(builder, 50, 50), 25, 25), red);
}

TEST(PdfDocumentTest, GivesTheTextInReadingOrder) {
  const TemporaryFolder folder;
  const auto document = pdfLibrary().open(PdfBuilder()
                                              .page({.text = "First line\nSecond (line)"})
                                              .page({.drawing = "0 0 9 9 re f"})
                                              .write(folder / "text.pdf"));
  EXPECT_EQ(document->text(0), "First line\nSecond (line)");
  EXPECT_EQ(document->text(1), "");
}

TEST(PdfDocumentTest, GivesEachCharacterItsBox) {
  const TemporaryFolder folder;
  const auto document = pdfLibrary().open(PdfBuilder()
                                              .page({.text = "Wi fi\nX"})
                                              .page({.drawing = "0 0 9 9 re f"})
                                              .write(folder / "a.pdf"));
  const std::vector<PdfGlyph> glyphs = document->glyphs(0);
  ASSERT_EQ(glyphs.size(), 6U);
  std::string text;
  for (const PdfGlyph& glyph : glyphs) {
    text += glyph.text;
    EXPECT_GT(glyph.width, 0) << glyph.text;
    EXPECT_NEAR(glyph.height, 24, 8) << glyph.text;
  }
  EXPECT_EQ(text, "Wi fiX");
  EXPECT_NEAR(glyphs[0].width, 0.944 * 24, 0.5);  // the widths that Helvetica states
  EXPECT_NEAR(glyphs[1].width, 0.222 * 24, 0.5);
  EXPECT_NEAR(glyphs[1].minX(), glyphs[0].maxX(), 0.5);
  EXPECT_EQ(glyphs[0].midY(), glyphs[4].midY());
  EXPECT_EQ(glyphs[5].minX(), glyphs[0].minX());
  EXPECT_GT(glyphs[5].midY(), glyphs[0].midY() + 20);
  EXPECT_TRUE(document->glyphs(1).empty());
  EXPECT_THROW((void)document->glyphs(2), PlatformError);
}

// The first pages are read from the file itself, later ones from a copy made for reading.
TEST(PdfDocumentTest, GivesThePageAgainHoweverOftenItIsAsked) {
  const TemporaryFolder folder;
  const auto document = pdfLibrary().open(
      PdfBuilder().page({.rotation = 90, .text = "Again"}).write(folder / "a.pdf"));
  Bitmap first;
  document->render(0, 396, 306, first);
  const std::string text = document->text(0);
  Bitmap later;
  for (int round = 0; round < 4; ++round) {
    document->render(0, 396, 306, later);
    EXPECT_EQ(later.pixels, first.pixels) << round;
    EXPECT_EQ(document->text(0), text) << round;
  }
}

TEST(PdfDocumentTest, GivesEveryPageItsOwnTextInWhateverOrder) {
  constexpr int count = 43;
  const TemporaryFolder folder;
  PdfBuilder builder;
  for (int page = 0; page < count; ++page) {
    builder.page({.text = "Number " + std::to_string(page)});
  }
  const auto document = pdfLibrary().open(builder.write(folder / "long.pdf"));
  std::vector<int> order(count);
  std::iota(order.begin(), order.end(), 0);
  order.insert(order.end(),
               {40, 2, 17, 18, 42, 0, 1, 30});  // and leaves while pages are read ahead
  for (const int page : order) {
    EXPECT_EQ(document->text(page), "Number " + std::to_string(page));
  }
}

TEST(PdfDocumentTest, RefusesPagesThatAreNotThere) {
  const TemporaryFolder folder;
  const auto document = pdfLibrary().open(
      PdfBuilder().page({}).page({.mediaBox = "[0 0 0 0]"}).write(folder / "a.pdf"));
  Bitmap bitmap;
  for (const int page : {-1, 2}) {
    EXPECT_THROW((void)document->geometry(page), PlatformError) << page;
    EXPECT_THROW(document->render(page, 10, 10, bitmap), PlatformError) << page;
    EXPECT_THROW((void)document->text(page), PlatformError) << page;
  }
  EXPECT_THROW(document->render(1, 10, 10, bitmap), PlatformError);
  EXPECT_THROW(document->render(0, 0, 10, bitmap), PlatformError);
  EXPECT_THROW(document->render(0, 40'000, 1, bitmap), PlatformError);
}

TEST(PdfDocumentTest, KeepsComplaintsAboutContentToItself) {
  ::testing::internal::CaptureStderr();
  painted(PdfBuilder().page({.drawing = "/Missing Do /F9 12 Tf ] ) 1 0 0 rg q q Q Q Q",
                             .entries = "/Annots [<< /Subtype /Odd >> 7 0 R (text)]"}),
          61,
          79);
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

}  // namespace

}  // namespace tolvane
