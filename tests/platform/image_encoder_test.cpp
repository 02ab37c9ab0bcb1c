#include "platform/images/image_encoder.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <png.h>

#include <gtest/gtest.h>

#include "platform/files/platform_error.h"
#include "platform/images/image_decoder.h"
#include "tests/support/image_samples.h"
#include "tests/support/temporary_folder.h"

namespace tolvane {
namespace {

using support::plain;
using support::smooth;

struct Case {
  const char* label;
  int width, height;
  PixelLayout layout;
};
/// As RGBA, by libpng.
Bytes pixelsOfPng(BytesView encoded) {
  png_image image = {};
  image.version = PNG_IMAGE_VERSION;
  EXPECT_TRUE(png_image_begin_read_from_memory(&image, encoded.data(), encoded.size()));
  image.format = PNG_FORMAT_RGBA;
  Bytes pixels(PNG_IMAGE_SIZE(image));
  EXPECT_TRUE(png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr)) << image.message;
  return pixels;
}

Bytes asRgba(const Bitmap& bitmap) {
  Bytes rgba;
  const auto size = static_cast<std::size_t>(bytesPerPixel(bitmap.layout));
  for (std::size_t i = 0; i < bitmap.pixels.size(); i += size) {
    const std::uint8_t* pixel = &bitmap.pixels[i];
    switch (bitmap.layout) {
      case PixelLayout::grey:
        rgba.insert(rgba.end(), {pixel[0], pixel[0], pixel[0], 255});
        break;
      case PixelLayout::rgb:
        rgba.insert(rgba.end(), {pixel[0], pixel[1], pixel[2], 255});
        break;
      case PixelLayout::rgba:
        rgba.insert(rgba.end(), {pixel[0], pixel[1], pixel[2], pixel[3]});
        break;
      case PixelLayout::bgrx:
        rgba.insert(rgba.end(), {pixel[2], pixel[1], pixel[0], 255});
        break;
    }
  }
  return rgba;
}

const Case imageEncoderCases[] = {
    {"grey", 1, 1, PixelLayout::grey},
    {"grey", 37, 21, PixelLayout::grey},
    {"rgb", 1, 1, PixelLayout::rgb},
    {"rgb", 33, 1, PixelLayout::rgb},
    {"rgb", 401, 301, PixelLayout::rgb},
    {"rgba", 1, 9, PixelLayout::rgba},
    {"rgba", 301, 401, PixelLayout::rgba},
    {"bgrx", 1, 1, PixelLayout::bgrx},
    {"bgrx", 399, 203, PixelLayout::bgrx},
};

TEST(ImageEncoderTest, PngKeepsEveryPixel) {
  for (const Case& c : imageEncoderCases) {
    SCOPED_TRACE(::testing::Message() << c.label << c.width << "x" << c.height);
    const Bitmap sloping = smooth(c.width, c.height, c.layout);
    EXPECT_EQ(pixelsOfPng(ImageEncoder::png(sloping)), asRgba(sloping));
    const Bitmap flat = plain(c.width, c.height, c.layout, 77);
    EXPECT_EQ(pixelsOfPng(ImageEncoder::png(flat)), asRgba(flat));
  }
}

TEST(ImageEncoderTest, JpegComesBackNearly) {
  for (const Case& c : imageEncoderCases) {
    SCOPED_TRACE(::testing::Message() << c.label << c.width << "x" << c.height);
    const support::TemporaryFolder folder;
    const Bitmap original = smooth(c.width, c.height, c.layout);
    const Bytes encoded = ImageEncoder::jpeg(original, 1.0);
    const Bitmap decoded = imageDecoder().decode(folder.write("photo", asText(encoded)), 16384);
    ASSERT_EQ(decoded.layout, c.layout == PixelLayout::grey ? PixelLayout::grey : PixelLayout::rgb);
    const Bytes expected = asRgba(original);
    const Bytes found = asRgba(decoded);
    ASSERT_EQ(found.size(), expected.size());
    double error = 0;
    for (std::size_t i = 0; i < found.size(); ++i) {
      error += i % 4 == 3 ? 0 : std::abs(found[i] - expected[i]);
    }
    EXPECT_LT(error / static_cast<double>(found.size()), 4.0);
  }
}

std::uint8_t colorTypeOf(BytesView encoded) {
  return encoded[25];
}

TEST(PngTest, IsGreyOnlyWhereEveryPixelIs) {
  for (const PixelLayout layout : {PixelLayout::rgb, PixelLayout::bgrx}) {
    Bitmap page = plain(67, 40, layout, 200);
    if (layout == PixelLayout::bgrx) {
      page.pixels[3] = 7;  // the byte without meaning
    }
    EXPECT_EQ(colorTypeOf(ImageEncoder::png(page)), 0);
    for (std::size_t component = 0; component < 3; ++component) {
      Bitmap tinted = page;
      const std::size_t lastPixel =
          tinted.pixels.size() - static_cast<std::size_t>(bytesPerPixel(layout));
      tinted.pixels[lastPixel + component] = 201;
      const Bytes encoded = ImageEncoder::png(tinted);
      EXPECT_EQ(colorTypeOf(encoded), 2);
      EXPECT_EQ(pixelsOfPng(encoded), asRgba(tinted));
    }
  }
}

int componentsOfJpeg(BytesView encoded) {
  constexpr std::array<std::uint8_t, 2> frame = {0xFF, 0xC0};
  const auto found = std::search(encoded.begin(), encoded.end(), frame.begin(), frame.end());
  return found[9];
}

TEST(JpegTest, IsGreyOnlyWhereEveryPixelIs) {
  for (const PixelLayout layout : {PixelLayout::rgb, PixelLayout::bgrx}) {
    Bitmap page = plain(67, 40, layout, 200);
    EXPECT_EQ(componentsOfJpeg(ImageEncoder::jpeg(page, 0.9)), 1);
    page.pixels[page.stride() * 20 + 1] = 190;
    EXPECT_EQ(componentsOfJpeg(ImageEncoder::jpeg(page, 0.9)), 3);
  }
}

TEST(FlattenedTest, MixesWithWhite) {
  const Bitmap picture{3, 1, PixelLayout::rgba, {10, 20, 30, 255, 0, 100, 255, 128, 1, 2, 3, 0}};
  const Bitmap opaque = ImageEncoder::flattened(picture);
  EXPECT_EQ(opaque.layout, PixelLayout::rgb);
  EXPECT_EQ(opaque.pixels, (Bytes{10, 20, 30, 127, 177, 255, 255, 255, 255}));
  EXPECT_EQ(ImageEncoder::flattened(plain(2, 2, PixelLayout::bgrx, 9)).layout, PixelLayout::bgrx);
}

TEST(ImageEncoderFailureTest, RefusesWhatCannotBeEncoded) {
  const Bitmap good = plain(4, 4, PixelLayout::rgb, 1);
  Bitmap cut = good;
  cut.pixels.pop_back();
  EXPECT_THROW((void)ImageEncoder::png(cut), PlatformError);
  EXPECT_THROW((void)ImageEncoder::jpeg(cut, 0.9), PlatformError);
  EXPECT_THROW((void)ImageEncoder::flattened(cut), PlatformError);
  EXPECT_THROW((void)ImageEncoder::png(Bitmap{}), PlatformError);
  for (const double quality : {0.09, 1.01, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_THROW((void)ImageEncoder::jpeg(good, quality), PlatformError) << quality;
  }
  EXPECT_THROW((void)ImageEncoder::jpeg(plain(65501, 1, PixelLayout::grey, 1), 0.9), PlatformError);
}

TEST(ReopenTest, ReadsTheSizeOrNothing) {
  const Bitmap picture = smooth(41, 23, PixelLayout::rgb);
  const std::array<Bytes, 2> files = {ImageEncoder::png(picture), ImageEncoder::jpeg(picture, 0.9)};
  for (const Bytes& file : files) {
    const auto size = ImageEncoder::reopen(file);
    ASSERT_TRUE(size);
    EXPECT_EQ(std::pair(size->width, size->height), std::pair(41, 23));
    EXPECT_FALSE(ImageEncoder::reopen(BytesView(file).first(20)));
  }
  EXPECT_FALSE(ImageEncoder::reopen({}));
  EXPECT_FALSE(ImageEncoder::reopen(Bytes(500, 'x')));
}

}  // namespace
}  // namespace tolvane
