#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <tuple>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/documents/pdf_document.h"
#include "platform/files/file_system.h"
#include "platform/images/image_encoder.h"
#include "tests/support/pictures.h"
#include "tests/support/temporary_folder.h"

namespace tolvane {

namespace {

using support::TemporaryFolder;

/// The first page of what was composed, one pixel a point.
Bitmap painted(PdfComposer& composer) {
  const TemporaryFolder folder;
  FileSystem::writeAtomically(folder / "picture.pdf", composer.serialise());
  const auto document = pdfLibrary().open(folder / "picture.pdf");
  const PdfPageGeometry page = document->geometry(0);
  Bitmap bitmap;
  document->render(0, static_cast<int>(page.width), static_cast<int>(page.height), bitmap);
  return bitmap;
}

const struct {
  const char* label;
  PixelLayout layout;
  Bytes left, right;                         // colours of the halves, as stored
  std::array<int, 3> leftShown, rightShown;  // red, green, blue over white
} bitmapPageCases[] = {
    {"grey", PixelLayout::grey, {0}, {200}, {0, 0, 0}, {200, 200, 200}},
    {"rgb", PixelLayout::rgb, {255, 0, 0}, {1, 2, 3}, {255, 0, 0}, {1, 2, 3}},
    {"bgrx", PixelLayout::bgrx, {9, 8, 7, 0}, {0, 0, 255, 0}, {7, 8, 9}, {255, 0, 0}},
    {"rgba", PixelLayout::rgba, {255, 0, 0, 0}, {0, 0, 255, 51}, {255, 255, 255}, {204, 204, 255}},
    {"opaque rgba",
     PixelLayout::rgba,
     {255, 0, 0, 255},
     {0, 0, 255, 255},
     {255, 0, 0},
     {0, 0, 255}},
};

TEST(BitmapPageTest, ShowsThePicture) {
  for (const auto& c : bitmapPageCases) {
    SCOPED_TRACE(c.label);
    Bitmap picture{8, 3, c.layout, {}};
    for (int pixel = 0; pixel < picture.width * picture.height; ++pixel) {
      const Bytes& color = pixel % picture.width < 4 ? c.left : c.right;
      picture.pixels.insert(picture.pixels.end(), color.begin(), color.end());
    }
    const auto composer = pdfLibrary().compose();
    composer->append(picture);
    const Bitmap page = painted(*composer);

    ASSERT_EQ(std::pair(page.width, page.height), std::pair(picture.width, picture.height));
    for (std::size_t x = 0; x < 8; ++x) {
      const BytesView pixel = page.row(1).subspan(x * 4, 3);
      const std::array<int, 3>& shown = x < 4 ? c.leftShown : c.rightShown;
      EXPECT_NEAR(pixel[2], shown[0], 1) << x;
      EXPECT_NEAR(pixel[1], shown[1], 1) << x;
      EXPECT_NEAR(pixel[0], shown[2], 1) << x;
    }
  }
}

JpegPhoto quarters() {
  const Bitmap picture = support::quarters(64, 32);
  return {ImageEncoder::jpeg(picture, 1.0), picture.width, picture.height, 3, 1, {}};
}

char colorName(BytesView bgrx) {
  constexpr std::string_view names = "bgr";
  const auto brightest = std::max_element(bgrx.begin(), bgrx.begin() + 3);
  return *brightest < 128 ? 'k' : names[static_cast<std::size_t>(brightest - bgrx.begin())];
}

TEST(PhotoPageTest, ShowsThePhotoUpright) {
  JpegPhoto photo = quarters();
  photo.orientation = 0;
  // The quarters of the page, row by row, for each orientation.
  for (const char* expected : {"rgbk", "grkb", "kbgr", "bkrg", "rbgk", "brkg", "kgbr", "gkrb"}) {
    SCOPED_TRACE(++photo.orientation);
    const auto composer = pdfLibrary().compose();
    composer->append(photo);
    const Bitmap page = painted(*composer);

    EXPECT_EQ(std::pair(page.width, page.height),
              std::pair(photo.orientation >= 5 ? 32 : 64, photo.orientation >= 5 ? 64 : 32));
    std::string shown;
    for (const int y : {page.height / 4, page.height * 3 / 4}) {
      for (const int x : {page.width / 4, page.width * 3 / 4}) {
        shown += colorName(page.row(y).subspan(static_cast<std::size_t>(x) * 4, 4));
      }
    }
    EXPECT_EQ(shown, expected);
  }
}

const std::tuple<const char*, int, Bytes, bool> photoProfileCases[] = {
    {"rgb", 3, Bytes(132, 7), true},
    {"grey", 1, Bytes(132, 7), true},
    {"none", 3, {}, false},
};

TEST(PhotoProfileTest, KeepsTheDataAndTheProfile) {
  for (const auto& [label, components, profile, used] : photoProfileCases) {
    SCOPED_TRACE(label);
    JpegPhoto photo = quarters();
    photo.components = components;
    photo.colorProfile = profile;
    const auto composer = pdfLibrary().compose();
    composer->append(photo);
    const Bytes bytes = composer->serialise();
    const std::string text(asText(bytes));

    EXPECT_NE(text.find(asText(photo.data)), std::string::npos);
    EXPECT_EQ(text.find("/ICCBased") != std::string::npos, used);
    EXPECT_THAT(text, ::testing::HasSubstr(photo.components == 1 ? "/DeviceGray" : "/DeviceRGB"));
  }
}

}  // namespace

}  // namespace tolvane
