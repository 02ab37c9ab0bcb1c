#include "engine/rendering.h"

#include <gtest/gtest.h>

#include "engine/primitives/conversion_failure.h"
#include "platform/images/image_decoder.h"
#include "platform/images/image_encoder.h"
#include "tests/support/failure_text.h"
#include "tests/support/pdf_builder.h"
#include "tests/support/pictures.h"
#include "tests/support/temporary_folder.h"

namespace tolvane {
namespace {

using support::failureText;
using support::gradient;
using support::PdfBuilder;
using support::PdfPage;
using support::TemporaryFolder;

std::shared_ptr<PdfDocument> onePage(const TemporaryFolder& folder, const PdfPage& page) {
  PdfBuilder().page(page).write(folder / "a.pdf");
  return pdfLibrary().open(folder / "a.pdf");
}

const struct {
  const char* label;
  PdfPage page;
  int width;  // of the bitmap at scale 2; 0: refused
  int height;
} renderCases[] = {
    {"a4", {.width = 595, .height = 842}, 1190, 1684},
    {"letter", {.width = 612, .height = 792}, 1224, 1584},
    {"quarterTurn", {.width = 612, .height = 792, .rotation = 90}, 1584, 1224},
    {"backTurn", {.width = 612, .height = 792, .rotation = -90}, 1584, 1224},
    {"halfTurn", {.width = 612, .height = 792, .rotation = 180}, 1224, 1584},
    {"largest", {.width = 4000, .height = 2500}, 8000, 5000},
    {"large", {.width = 4000, .height = 2501}, 0, 0},
    {"empty", {.width = 0, .height = 792}, 0, 0},
};

TEST(RenderTest, FitsThePixelsToThePage) {
  for (const auto& c : renderCases) {
    SCOPED_TRACE(c.label);
    const TemporaryFolder folder;
    const auto document = onePage(folder, c.page);
    Bitmap bitmap;
    if (c.width == 0) {
      EXPECT_EQ(failureText([&] { render(*document, 0, 2.0, bitmap); }),
                "This page exceeds the 40 megapixel rendering limit.");
      continue;
    }
    render(*document, 0, 2.0, bitmap);
    EXPECT_EQ(std::pair(bitmap.width, bitmap.height), std::pair(c.width, c.height));
  }
}

TEST(LoadImageTest, BoundsTheLongerSide) {
  const TemporaryFolder folder;
  support::writePng(folder / "a.png", gradient(40, 30, PixelLayout::rgb));
  const Bitmap smaller = loadImage(folder / "a.png", 16);
  EXPECT_EQ(std::pair(smaller.width, smaller.height), std::pair(16, 12));
  EXPECT_EQ(loadImage(folder / "a.png", 16'384).width, 40);
  for (const std::int64_t side : {15, 16'385, -1}) {
    EXPECT_EQ(failureText([&] { return loadImage(folder / "a.png", side); }),
              "Could not decode the image. Use a dimension between 16 and 16,384 pixels.");
  }
  EXPECT_EQ(failureText([&] { return loadImage(folder.write("b.png", "text"), 1600); }),
            "Could not decode the image. Use a dimension between 16 and 16,384 pixels.");
}

TEST(EncodeTest, ShowsTransparencyAsWhiteInJpegOnly) {
  const TemporaryFolder folder;
  const Bitmap clear = {16, 16, PixelLayout::rgba, Bytes(std::size_t{16} * 16 * 4, 0)};
  const auto reread = [&](ImageFormat format) {
    const Bytes bytes = encode(clear, format, 0.9);
    const auto file = folder.write("picture", std::string(asText(bytes)));
    return imageDecoder().decode(file, 16'384);
  };
  const Bitmap jpeg = reread(ImageFormat::jpeg);
  EXPECT_GE(jpeg.pixels.front(), 250);
  const Bitmap png = reread(ImageFormat::png);
  EXPECT_EQ(png.layout, PixelLayout::rgba);
  EXPECT_EQ(png.pixels, clear.pixels);
}

TEST(EncodeTest, ClampsTheQuality) {
  const Bitmap picture = gradient(64, 64, PixelLayout::rgb);
  const auto size = [&](double quality) {
    return encode(picture, ImageFormat::jpeg, quality).size();
  };
  EXPECT_EQ(size(0), size(0.1));
  EXPECT_EQ(size(-3), size(0.1));
  EXPECT_EQ(size(5), size(1.0));
  EXPECT_LT(size(0.1), size(1.0));
}

TEST(PreviewTest, FitsIntoItsBox) {
  const TemporaryFolder folder;
  const auto document = onePage(folder, {.width = 600, .height = 800});
  const auto size = ImageEncoder::reopen(preview(*document, 0));
  ASSERT_TRUE(size);
  EXPECT_EQ(size->width, 143);  // 190 / 800 * 600
  EXPECT_EQ(size->height, 190);
  for (const std::int64_t index : {-1, 1}) {
    EXPECT_EQ(failureText([&] { return preview(*document, index); }),
              "That page no longer exists.");
  }
}

TEST(PreviewTest, RefusesAPageWithoutArea) {
  const TemporaryFolder folder;
  const auto document = onePage(folder, {.width = 0, .height = 800});
  EXPECT_EQ(failureText([&] { return preview(*document, 0); }), "Could not preview this page.");
}

}  // namespace
}  // namespace tolvane
