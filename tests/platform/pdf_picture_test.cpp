#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/documents/pdf_document.h"
#include "platform/files/file_system.h"
#include "platform/images/image_encoder.h"
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

struct BitmapCase {
  const char* label;
  PixelLayout layout;
  Bytes left;  // colour of the left half, as stored
  Bytes right;
  std::array<int, 3> leftShown;  // red, green, blue over white
  std::array<int, 3> rightShown;
};

void PrintTo(const BitmapCase& c, std::ostream* out) {
  *out << c.label;
}

class BitmapPageTest : public ::testing::TestWithParam<BitmapCase> {};

TEST_P(BitmapPageTest, ShowsThePicture) {
  Bitmap picture{8, 3, GetParam().layout, {}};
  for (int pixel = 0; pixel < picture.width * picture.height; ++pixel) {
    const Bytes& color = pixel % picture.width < 4 ? GetParam().left : GetParam().right;
    picture.pixels.insert(picture.pixels.end(), color.begin(), color.end());
  }
  const auto composer = pdfLibrary().compose();
  composer->append(picture);
  const Bitmap page = painted(*composer);

  ASSERT_EQ(page.width, picture.width);
  ASSERT_EQ(page.height, picture.height);
  for (std::size_t x = 0; x < 8; ++x) {
    const BytesView pixel = page.row(1).subspan(x * 4, 3);
    const std::array<int, 3>& shown = x < 4 ? GetParam().leftShown : GetParam().rightShown;
    EXPECT_NEAR(pixel[2], shown[0], 1) << x;
    EXPECT_NEAR(pixel[1], shown[1], 1) << x;
    EXPECT_NEAR(pixel[0], shown[2], 1) << x;
  }
}

using Rgb = std::array<int, 3>;
INSTANTIATE_TEST_SUITE_P(
    Layouts,
    BitmapPageTest,
    ::testing::Values(
        BitmapCase{"grey", PixelLayout::grey, {0}, {200}, Rgb{0, 0, 0}, Rgb{200, 200, 200}},
        BitmapCase{"rgb", PixelLayout::rgb, {255, 0, 0}, {1, 2, 3}, Rgb{255, 0, 0}, Rgb{1, 2, 3}},
        BitmapCase{
            "bgrx", PixelLayout::bgrx, {9, 8, 7, 0}, {0, 0, 255, 0}, Rgb{7, 8, 9}, Rgb{255, 0, 0}},
        BitmapCase{"rgba",
                   PixelLayout::rgba,
                   {255, 0, 0, 0},
                   {0, 0, 255, 51},
                   Rgb{255, 255, 255},
                   Rgb{204, 204, 255}},
        BitmapCase{"opaque rgba",
                   PixelLayout::rgba,
                   {255, 0, 0, 255},
                   {0, 0, 255, 255},
                   Rgb{255, 0, 0},
                   Rgb{0, 0, 255}}));

/// Quarters in red, green, blue and black: upper left, upper right, lower left, lower right.
JpegPhoto quarters() {
  Bitmap picture{64, 32, PixelLayout::rgb, {}};
  for (int y = 0; y < picture.height; ++y) {
    for (int x = 0; x < picture.width; ++x) {
      const bool right = x >= picture.width / 2;
      const bool lower = y >= picture.height / 2;
      for (const bool full : {!right && !lower, right && !lower, !right && lower}) {
        picture.pixels.push_back(full ? 255 : 0);
      }
    }
  }
  return {ImageEncoder::jpeg(picture, 1.0), picture.width, picture.height, 3, 1, {}};
}

char colorName(BytesView bgrx) {
  constexpr std::string_view names = "bgr";
  const auto brightest = std::max_element(bgrx.begin(), bgrx.begin() + 3);
  return *brightest < 128 ? 'k' : names[static_cast<std::size_t>(brightest - bgrx.begin())];
}

struct OrientationCase {
  int orientation;
  const char* expected;  // the quarters of the page, row by row
};

void PrintTo(const OrientationCase& c, std::ostream* out) {
  *out << "orientation " << c.orientation;
}

class PhotoPageTest : public ::testing::TestWithParam<OrientationCase> {};

TEST_P(PhotoPageTest, ShowsThePhotoUpright) {
  JpegPhoto photo = quarters();
  photo.orientation = GetParam().orientation;
  const auto composer = pdfLibrary().compose();
  composer->append(photo);
  const Bitmap page = painted(*composer);

  EXPECT_EQ(page.width, photo.orientation >= 5 ? 32 : 64);
  EXPECT_EQ(page.height, photo.orientation >= 5 ? 64 : 32);
  std::string shown;
  for (const int y : {page.height / 4, page.height * 3 / 4}) {
    for (const int x : {page.width / 4, page.width * 3 / 4}) {
      shown += colorName(page.row(y).subspan(static_cast<std::size_t>(x) * 4, 4));
    }
  }
  EXPECT_EQ(shown, GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Orientations,
                         PhotoPageTest,
                         ::testing::Values(OrientationCase{1, "rgbk"},
                                           OrientationCase{2, "grkb"},
                                           OrientationCase{3, "kbgr"},
                                           OrientationCase{4, "bkrg"},
                                           OrientationCase{5, "rbgk"},
                                           OrientationCase{6, "brkg"},
                                           OrientationCase{7, "kgbr"},
                                           OrientationCase{8, "gkrb"}));

struct ProfileCase {
  const char* label;
  int components;
  Bytes profile;
  bool used;
};

void PrintTo(const ProfileCase& c, std::ostream* out) {
  *out << c.label;
}

class PhotoProfileTest : public ::testing::TestWithParam<ProfileCase> {};

TEST_P(PhotoProfileTest, KeepsTheDataAndTheProfile) {
  JpegPhoto photo = quarters();
  photo.components = GetParam().components;
  photo.colorProfile = GetParam().profile;
  const auto composer = pdfLibrary().compose();
  composer->append(photo);
  const Bytes bytes = composer->serialise();
  const std::string text(bytes.begin(), bytes.end());

  EXPECT_THAT(text, ::testing::HasSubstr(std::string(photo.data.begin(), photo.data.end())));
  EXPECT_EQ(text.find("/ICCBased") != std::string::npos, GetParam().used);
  EXPECT_THAT(text, ::testing::HasSubstr(photo.components == 1 ? "/DeviceGray" : "/DeviceRGB"));
}

INSTANTIATE_TEST_SUITE_P(Profiles,
                         PhotoProfileTest,
                         ::testing::Values(ProfileCase{"rgb", 3, Bytes(132, 7), true},
                                           ProfileCase{"grey", 1, Bytes(132, 7), true},
                                           ProfileCase{"none", 3, {}, false}));

}  // namespace

}  // namespace tolvane
