#include <algorithm>
#include <cmath>
#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "platform/documents/pdf_document.h"
#include "platform/images/image_encoder.h"
#include "platform/images/scaled_photo.h"
#include "tests/support/pdf_builder.h"
#include "tests/support/pictures.h"
#include "tests/support/temporary_folder.h"

// Pages that consist of a photo alone are decoded at the size in which they are wanted instead of
// being painted. Whatever else there is on a page must show all the same.

namespace tolvane {

namespace {

using support::PdfBuilder;
using support::PdfPage;
using support::TemporaryFolder;

constexpr int photoWidth = 128;
constexpr int photoHeight = 64;

std::string quarters() {
  const Bytes jpeg = ImageEncoder::jpeg(support::quarters(photoWidth, photoHeight), 1.0);
  return {jpeg.begin(), jpeg.end()};
}

std::string photoObject(const std::string& jpeg, std::string_view entries) {
  return fmt::format(
      "<< /Type /XObject /Subtype /Image /Width {} /Height {} /BitsPerComponent 8 /ColorSpace "
      "/DeviceRGB /Filter /DCTDecode /Length {} {} >>\nstream\n{}\nendstream",
      photoWidth,
      photoHeight,
      jpeg.size(),
      entries,
      jpeg);
}

/// w, k, r, g, b; "." for any other color.
char colorName(BytesView bgrx) {
  std::string bits;
  for (const std::uint8_t component : bgrx.first(3)) {
    bits += component < 40 ? '0' : component > 215 ? '1' : '?';
  }
  return bits == "111"   ? 'w'
         : bits == "000" ? 'k'
         : bits == "001" ? 'r'
         : bits == "010" ? 'g'
         : bits == "100" ? 'b'
                         : '.';
}

/// The colors in the middle of the page's quarters, row by row.
std::string shownIn(const Bitmap& page) {
  std::string shown;
  for (const int y : {page.height / 4, page.height * 3 / 4}) {
    for (const int x : {page.width / 4, page.width * 3 / 4}) {
      shown += colorName(page.row(y).subspan(static_cast<std::size_t>(x) * 4, 4));
    }
  }
  return shown;
}

struct ScanCase {
  const char* label;
  const char* content;
  const char* shown;
  const char* photoEntries = "";
  PdfPage page{};
};

void PrintTo(const ScanCase& c, std::ostream* out) {
  *out << c.label;
}

class ScanTest : public ::testing::TestWithParam<ScanCase> {};

TEST_P(ScanTest, ShowsWhatThePageShows) {
  PdfPage page = GetParam().page;
  page.width = 100;
  page.height = 50;
  page.drawing = GetParam().content;
  page.entries +=
      " /Resources << /XObject << /Photo 6 0 R >> /Font << /F1 << /Type /Font /Subtype /Type1 "
      "/BaseFont /Helvetica >> >> /ExtGState << /Plain << /ca 1 /BM /Normal >> /Half << /ca 0.5 >> "
      ">> /Properties << /Hidden 7 0 R >> >>";
  const TemporaryFolder folder;
  const auto document =
      pdfLibrary().open(PdfBuilder()
                            .page(page)
                            .object(photoObject(quarters(), GetParam().photoEntries))
                            .object("<< /Type /OCG /Name (hidden) >>")
                            .write(folder / "scan.pdf"));
  const bool lies = page.rotation.value_or(0) % 180 != 0;
  for (const int length : {100, 40}) {
    Bitmap bitmap;
    document->render(0, lies ? length / 2 : length, lies ? length : length / 2, bitmap);
    ASSERT_EQ(bitmap.layout, PixelLayout::bgrx);
    EXPECT_EQ(bitmap.width, lies ? length / 2 : length);
    EXPECT_EQ(bitmap.pixels.size(), static_cast<std::size_t>(length * length / 2 * 4));
    EXPECT_EQ(shownIn(bitmap), GetParam().shown) << length;
  }
}

constexpr const char* whole = "q 100 0 0 50 0 0 cm /Photo Do Q";

INSTANTIATE_TEST_SUITE_P(
    Pages,
    ScanTest,
    ::testing::Values(
        ScanCase{"a photo alone", whole, "rgbk"},
        ScanCase{"two matrices, a whole clip, plain state",
                 "0 0 100 50 re W n 1 0 0 -1 0 50 cm /Plain gs q 100 0 0 -50 0 50 cm /Photo Do Q",
                 "rgbk"},
        ScanCase{"turned right", whole, "brkg", "", {.rotation = 90}},
        ScanCase{"upside down", whole, "kbgr", "", {.rotation = 180}},
        ScanCase{"turned left", whole, "gkrb", "", {.rotation = -90}},
        ScanCase{"media box elsewhere",
                 "q 100 0 0 50 300 -20 cm /Photo Do Q",
                 "rgbk",
                 "",
                 {.mediaBox = "[300 -20 400 30]"}},
        ScanCase{"crop box", whole, "rgbk", "", {.entries = "/CropBox [0 0 50 25]"}},
        ScanCase{"mirrored", "q -100 0 0 50 100 0 cm /Photo Do Q", "grkb"},
        ScanCase{"invisible text",
                 "q 100 0 0 50 0 0 cm /Photo Do Q BT 3 Tr /F1 60 Tf (MMMM) Tj ET",
                 "rgbk"},
        ScanCase{
            "text that is seen again",
            "q 3 Tr Q q 100 0 0 50 0 0 cm /Photo Do Q BT 1 g /F1 1000 Tf -90 -300 Td (I) Tj ET",
            "wwww"},
        ScanCase{
            "a rectangle above it", "q 100 0 0 50 0 0 cm /Photo Do Q 1 g 0 0 50 25 re f", "rgwk"},
        ScanCase{"no whole page", "q 50 0 0 50 0 0 cm /Photo Do Q", "gwkw"},
        ScanCase{"more than the page", "q 200 0 0 100 0 -50 cm /Photo Do Q", "rrrr"},
        ScanCase{"clipped", "0 0 50 50 re W n q 100 0 0 50 0 0 cm /Photo Do Q", "rwbw"},
        ScanCase{"half transparent", "/Half gs q 100 0 0 50 0 0 cm /Photo Do Q", "...."},
        ScanCase{
            "twice", "q 100 0 0 50 0 0 cm /Photo Do Q q -100 0 0 50 100 0 cm /Photo Do Q", "grkb"},
        ScanCase{"inverted", whole, "...w", "/Decode [1 0 1 0 1 0]"},
        ScanCase{"mask of colors", whole, "rgbw", "/Mask [0 9 0 9 0 9]"},
        ScanCase{"an annotation above it",
                 whole,
                 "rrrr",
                 "",
                 {.entries = "/Annots [<< /Type /Annot /Subtype /Square /Rect [0 0 100 50] /F 4 /C "
                             "[1 0 0] /IC [1 0 0] /BS << /W 1 >> >>]"}}));

TEST(ScanTest, ShowsWhatThereIsOfADamagedPhoto) {
  const TemporaryFolder folder;
  std::string jpeg = quarters();
  jpeg.resize(jpeg.size() - 20);
  const auto document =
      pdfLibrary().open(PdfBuilder()
                            .page({.width = 100,
                                   .height = 50,
                                   .drawing = whole,
                                   .entries = "/Resources << /XObject << /Photo 6 0 R >> >>"})
                            .object(photoObject(jpeg, ""))
                            .write(folder / "scan.pdf"));
  Bitmap bitmap;
  document->render(0, 100, 50, bitmap);
  EXPECT_EQ(shownIn(bitmap).substr(0, 2), "rg");
}

/// Brightness of a pattern that is the same at every size; coordinates from 0 to 1.
double brightness(double x, double y) {
  return 127.5 + 90 * std::sin(9 * x) * std::cos(7 * y);
}

TEST(ScaledPhotoTest, KeepsEverythingInItsPlace) {
  // Sides that are no multiples of eight: the decoder's sizes reach beyond the photo.
  Bitmap picture{1003, 515, PixelLayout::grey, {}};
  for (int y = 0; y < picture.height; ++y) {
    for (int x = 0; x < picture.width; ++x) {
      picture.pixels.push_back(static_cast<std::uint8_t>(
          std::lround(brightness((x + 0.5) / picture.width, (y + 0.5) / picture.height))));
    }
  }
  const JpegPhoto photo{ImageEncoder::jpeg(picture, 1.0), picture.width, picture.height, 1, 1, {}};
  for (const int width : {1003, 377, 100, 9}) {
    const int height = width * 515 / 1003;
    const std::optional<Bitmap> scaled = scaledPhoto(photo, width, height);
    ASSERT_TRUE(scaled) << width;
    double worst = 0;
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) {
        const double expected = brightness((x + 0.5) / width, (y + 0.5) / height);
        const int shown = scaled->row(y)[static_cast<std::size_t>(x) * 4 + 1];
        worst = std::max(worst, std::abs(shown - expected));
      }
    }
    EXPECT_LT(worst, width > 50 ? 3 : 25) << width;
  }
  EXPECT_FALSE(scaledPhoto(photo, 1004, 515));
}

}  // namespace

}  // namespace tolvane
