#include "platform/images/image_decoder.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <limits>
#include <string>
#include <tuple>
#include <utility>

#include <gtest/gtest.h>
#include <vips/vips8>

#include "platform/files/platform_error.h"
#include "platform/images/color_profile.h"
#include "tests/support/binary_numbers.h"
#include "tests/support/image_samples.h"
#include "tests/support/pictures.h"
#include "tests/support/temporary_folder.h"

/// The encoder of the HEIC samples keeps memory of its own until the process ends.
extern "C" const char* __lsan_default_suppressions() {  // NOLINT: the sanitizer gives the name
  return "leak:libx265";
}

namespace tolvane {
namespace {

using namespace std::string_literals;
using support::littleEndian;
using support::plain;
using support::pngHeader;
using support::smooth;
using support::TemporaryFolder;
using vips::VImage;

constexpr int anySize = 16384;

VImage vipsImage(const Bitmap& bitmap) {
  static const int started = vips_init("image_decoder_test");
  EXPECT_EQ(started, 0);
  const bool grey = bitmap.layout == PixelLayout::grey;
  return VImage(vips_image_new_from_memory_copy(bitmap.pixels.data(),
                                                bitmap.pixels.size(),
                                                bitmap.width,
                                                bitmap.height,
                                                bytesPerPixel(bitmap.layout),
                                                VIPS_FORMAT_UCHAR))
      .copy(VImage::option()->set("interpretation",
                                  grey ? VIPS_INTERPRETATION_B_W : VIPS_INTERPRETATION_sRGB));
}

double meanDifference(const Bitmap& a, const Bitmap& b) {
  EXPECT_EQ(std::pair(a.width, a.height), std::pair(b.width, b.height));
  EXPECT_EQ(a.layout, b.layout);
  double sum = 0;
  for (std::size_t i = 0; i < std::min(a.pixels.size(), b.pixels.size()); ++i) {
    sum += std::abs(a.pixels[i] - b.pixels[i]);
  }
  return sum / static_cast<double>(a.pixels.size());
}

class ImageDecoderTest : public ::testing::Test {
 protected:
  Bitmap decoded(const std::string& content, int maxDimension = anySize) {
    return imageDecoder().decode(folder_.write("picture", content), maxDimension);
  }
  std::optional<ImageHeader> header(const std::string& content) {
    return imageDecoder().probe(folder_.write("picture", content));
  }
  /// The file states the size and cannot be decoded.
  void expectSize(const std::string& content, int width, int height) {
    const auto found = header(content);
    ASSERT_TRUE(found);
    EXPECT_EQ(std::pair(found->width, found->height), std::pair(width, height));
    EXPECT_THROW((void)decoded(content), PlatformError);
  }
  std::optional<ImageProperties> imagePropertiesOf(const std::string& content) {
    return imageDecoder().properties(folder_.write("picture", content));
  }
  /// The file that vips writes for the suffix, which may hold options.
  static std::string written(const VImage& image, const std::string& suffix) {
    void* buffer = nullptr;
    std::size_t size = 0;
    image.write_to_buffer(suffix.c_str(), &buffer, &size);
    const std::string content(static_cast<const char*>(buffer), size);
    g_free(buffer);
    return content;
  }

 private:
  TemporaryFolder folder_;
};

const struct {
  std::string extension, suffix;
  double tolerance;
  PixelLayout layout = PixelLayout::rgb;
} imageKindCases[] = {
    {"jpeg", ".jpg[Q=95]", 2},
    {"jpeg", ".jpg[Q=95]", 2, PixelLayout::grey},
    {"jpeg", ".jpg[Q=95,interlace]", 2},
    {"png", ".png[filter=none]", 0},
    {"png", ".png[filter=sub]", 0},
    {"png", ".png[filter=up]", 0},
    {"png", ".png[filter=avg]", 0, PixelLayout::rgba},
    {"png", ".png[filter=paeth]", 0, PixelLayout::rgba},
    {"png", ".png[filter=paeth]", 0, PixelLayout::grey},
    {"png", ".png[filter=paeth]", 0},
    {"png", ".png[interlace]", 0},
    {"png", ".png[palette]", 3, PixelLayout::rgba},
    {"gif", ".gif", 6},
    {"tiff", ".tif[compression=deflate]", 0},
    {"tiff", ".tif", 0, PixelLayout::grey},
    {"webp", ".webp[lossless]", 0},
    {"webp", ".webp[lossless]", 0, PixelLayout::rgba},
    {"heic", ".heic[compression=hevc,Q=90]", 4},
    {"avif", ".avif[compression=av1,Q=90]", 4},
    {"jp2", ".jp2[lossless]", 0},
};

TEST_F(ImageDecoderTest, IsKnownAndDecodes) {
  for (const auto& c : imageKindCases) {
    SCOPED_TRACE(c.suffix);
    const Bitmap original = smooth(61, 46, c.layout);
    const std::string content = written(vipsImage(original), c.suffix);
    const auto found = header(content);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->extension, c.extension);
    EXPECT_EQ(std::pair(found->width, found->height), std::pair(61, 46));
    EXPECT_LE(meanDifference(decoded(content), original), c.tolerance);
    const Bitmap half = decoded(content, 30);
    EXPECT_LE(meanDifference(half, smooth(30, 23, c.layout)), c.tolerance + 6)
        << "half a pixel aside";
  }
}

constexpr VipsInterpretation wideGamut = VIPS_INTERPRETATION_LAST;  // by its profile

const std::tuple<std::string, double, VipsInterpretation> imageColorCases[] = {
    {".png", 0.5, VIPS_INTERPRETATION_RGB16},
    {".jpg[Q=100]", 25, VIPS_INTERPRETATION_CMYK},
    {".tif", 1, VIPS_INTERPRETATION_LAB},
    {".tif", 1, VIPS_INTERPRETATION_scRGB},
    {".png", 1, wideGamut},
    {".jpg[Q=100]", 2.5, wideGamut},
};

TEST_F(ImageDecoderTest, ComesBackAsStandardColors) {
  const Bitmap original = smooth(40, 30, PixelLayout::rgb);
  const VImage image = vipsImage(original);
  for (const auto& [suffix, tolerance, space] : imageColorCases) {
    const VImage converted =
        space == wideGamut ? image.icc_transform("p3") : image.colourspace(space);
    EXPECT_LE(meanDifference(decoded(written(converted, suffix)), original), tolerance)
        << suffix << " of space " << space;
  }
}

TEST_F(ImageDecoderTest, ConvertsByTheProfileAndNotWithoutOne) {
  const VImage wide = vipsImage(smooth(40, 30, PixelLayout::rgb)).icc_transform("p3");
  EXPECT_GT(meanDifference(decoded(written(wide, ".png[strip]")), decoded(written(wide, ".png"))),
            2);
}

TEST_F(ImageDecoderTest, TellsStandardProfilesFromOthers) {
  const VImage image = vipsImage(smooth(8, 8, PixelLayout::rgb));
  for (const bool standard : {true, false}) {
    std::size_t size = 0;
    const VImage tagged = image.icc_transform(standard ? "srgb" : "p3");
    const auto* profile =
        static_cast<const std::uint8_t*>(tagged.get_blob(VIPS_META_ICC_NAME, &size));
    EXPECT_EQ(ColorProfile::isStandardRgb({profile, size}), standard);
    EXPECT_FALSE(ColorProfile::isStandardRgb({profile, size / 4})) << "cut short";
  }
}

TEST_F(ImageDecoderTest, TakesTheFirstFrame) {
  const VImage frames =
      vipsImage(plain(20, 10, PixelLayout::rgb, 200))
          .join(vipsImage(plain(20, 10, PixelLayout::rgb, 30)), VIPS_DIRECTION_VERTICAL)
          .copy();
  vips_image_set_int(frames.get_image(), "page-height", 10);
  for (const char* suffix : {".gif", ".webp[lossless]", ".tif"}) {
    const std::string content = written(frames, suffix);
    EXPECT_EQ(header(content)->height, 10) << suffix;
    const Bitmap first = decoded(content);
    EXPECT_EQ(first.height, 10) << suffix;
    EXPECT_EQ(first.pixels.at(0), 200) << suffix;
  }
}

TEST_F(ImageDecoderTest, GivesGreyWithAlphaAsColor) {
  const VImage image = vipsImage(plain(6, 4, PixelLayout::grey, 90)).bandjoin_const({100});
  const Bitmap bitmap = decoded(written(image, ".png"));
  ASSERT_EQ(bitmap.layout, PixelLayout::rgba);
  EXPECT_EQ(Bytes(bitmap.pixels.begin(), bitmap.pixels.begin() + 4), (Bytes{90, 90, 90, 100}));
}

/// With EXIF data, which vips makes up for JPEG only.
VImage taggedWith(int orientation, const Bitmap& bitmap) {
  const VImage image = vipsImage(bitmap).copy();
  vips_image_set_int(image.get_image(), VIPS_META_ORIENTATION, orientation);
  VipsBlob* jpeg = image.jpegsave_buffer(VImage::option()->set("Q", 100));
  const VImage tagged = VImage::jpegload_buffer(jpeg).copy_memory();
  vips_area_unref(VIPS_AREA(jpeg));
  return tagged;
}

TEST_F(ImageDecoderTest, TurnsUpright) {
  // Where the marked upper left corner of the stored picture belongs, by orientation from 1.
  const std::string corners[] = {"left top", "right top", "right bottom", "left bottom"};
  Bitmap stored = plain(64, 32, PixelLayout::grey, 20);
  for (std::size_t y = 0; y < 16; ++y) {
    std::fill_n(stored.pixels.begin() + static_cast<std::ptrdiff_t>(y * 64), 32, 240);
  }
  for (int orientation = 1; orientation <= 8; ++orientation) {
    const VImage image = taggedWith(orientation, stored);
    for (const char* suffix : {".jpg", ".png", ".tif"}) {
      const std::string content = written(image, suffix);
      EXPECT_EQ(header(content)->width, 64) << "as stored";
      for (const int size : {64, 32}) {
        const Bitmap upright = decoded(content, size);
        ASSERT_EQ(std::pair(upright.width, upright.height),
                  std::pair(orientation < 5 ? size : size / 2, orientation < 5 ? size / 2 : size));
        const std::string& corner = corners[(orientation - 1) % 4];
        const bool right = corner.starts_with("right");
        const bool bottom = corner.ends_with("bottom");
        const auto value = [&](bool atRight, bool atBottom) {
          return upright.row(atBottom
                                 ? upright.height - 3
                                 : 2)[static_cast<std::size_t>(atRight ? upright.width - 3 : 2)];
        };
        EXPECT_GT(value(right, bottom), 200) << suffix << orientation << " at " << size;
        EXPECT_LT(value(!right, bottom), 60) << suffix << orientation << " at " << size;
        EXPECT_LT(value(right, !bottom), 60) << suffix << orientation << " at " << size;
      }
    }
  }
}

TEST_F(ImageDecoderTest, ScalesToTheExactSize) {
  // Width, height, the limit, and the scaled width and height.
  const std::array<int, 5> cases[] = {{400, 300, 160, 160, 120},
                                      {300, 400, 160, 120, 160},
                                      {3001, 1, 16, 16, 1},
                                      {101, 67, 50, 50, 33},
                                      {1000, 667, 333, 333, 222},
                                      {1000, 777, 61, 61, 47},
                                      {50, 50, 16, 16, 16},
                                      {30, 20, 1600, 30, 20}};
  for (const auto& [width, height, limit, scaledWidth, scaledHeight] : cases) {
    for (const char* suffix : {".jpg", ".png", ".jp2"}) {
      const Bitmap scaled =
          decoded(written(vipsImage(smooth(width, height, PixelLayout::rgb)), suffix), limit);
      EXPECT_EQ(std::pair(scaled.width, scaled.height), std::pair(scaledWidth, scaledHeight))
          << suffix << width << " at " << limit;
    }
  }
}

/// 24 bits; rows from the bottom, blue first.
std::string bmp(std::uint32_t width, std::uint32_t height, const std::string& rows) {
  return "BM" + littleEndian(54 + rows.size(), 4) + littleEndian(0, 4) + littleEndian(54, 4) +
         littleEndian(40, 4) + littleEndian(width, 4) + littleEndian(height, 4) + "\x01\0\x18\0"s +
         std::string(24, '\0') + rows;
}

TEST_F(ImageDecoderTest, ReadsWindowsBitmaps) {
  const std::string content = bmp(2, 2, "\1\2\3\4\5\6\0\0\7\x08\x09\x0A\x0B\x0C\0\0"s);
  const auto found = header(content);
  ASSERT_TRUE(found);
  EXPECT_EQ(found->extension, "bmp");
  EXPECT_EQ(found->width, 2);
  const Bitmap bitmap = decoded(content);
  EXPECT_EQ(bitmap.layout, PixelLayout::rgb);
  EXPECT_EQ(bitmap.pixels, (Bytes{9, 8, 7, 12, 11, 10, 3, 2, 1, 6, 5, 4}));
  EXPECT_EQ(decoded(bmp(40, 20, std::string(2400, '\x50')), 20).width, 20);
  EXPECT_THROW((void)decoded(content.substr(0, content.size() - 3)), PlatformError);
}

TEST_F(ImageDecoderTest, ReportsHugeSizesWithoutDecoding) {
  for (const auto& [width, height] : {std::pair{16385U, 1U}, std::pair{20000U, 20000U}}) {
    for (const std::string& content : {pngHeader(width, height), bmp(width, height, "")}) {
      expectSize(content, static_cast<int>(width), static_cast<int>(height));
    }
  }
}

/// A JPEG file that announces the size and holds nothing else.
std::string jpegHeader(char width, char height) {
  return "\xFF\xD8\xFF\xC0\0\x0B\x08\0"s + height + '\0' + width + "\1\1\x11\0"s;
}

TEST_F(ImageDecoderTest, ReportsImpossibleSizesWithoutDecoding) {
  constexpr int most = std::numeric_limits<int>::max();
  expectSize(pngHeader(0, 7), 0, 7);
  expectSize(pngHeader(7, 0), 7, 0);
  expectSize(pngHeader(0x80000000, 1), most, 1);
  expectSize(pngHeader(1, 0xFFFFFFFF), 1, most);
  expectSize(jpegHeader(5, 0), 5, 0);
}

TEST_F(ImageDecoderTest, AdmitsNoOtherFiles) {
  for (const std::string& content :
       {"plain text"s,
        ""s,
        "BMW builds cars"s,
        "%PDF-1.4\n%%EOF\n"s,
        "P3 1 1 255 1 2 3\n"s,
        "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"9\" height=\"9\"></svg>"s,
        "\x89PNG\r\n\x1A\n"s,
        "\xFF\xD8\xFF"s,
        std::string(4096, '\0')}) {
    EXPECT_FALSE(header(content)) << content;
    EXPECT_THROW((void)decoded(content), PlatformError) << content;
  }
}

TEST_F(ImageDecoderTest, RefusesDamagedPictures) {
  const VImage image = vipsImage(smooth(200, 150, PixelLayout::rgb));
  for (const char* suffix : {".jpg", ".jpg[interlace]", ".png", ".gif", ".tif[tile]", ".webp"}) {
    const std::string whole = written(image, suffix);
    for (const int size : {anySize, 100}) {
      EXPECT_THROW((void)decoded(whole.substr(0, whole.size() * 2 / 3), size), PlatformError)
          << suffix;
    }
  }
  std::string flipped = written(image, ".png");
  flipped[flipped.size() / 2] ^= 0x10;
  EXPECT_THROW((void)decoded(flipped), PlatformError);
}

TEST_F(ImageDecoderTest, FailsInTheSystemsWordsWithoutTheFile) {
  EXPECT_THROW((void)imageDecoder().decode("/nonexistent/picture", anySize), PlatformError);
  EXPECT_THROW((void)imageDecoder().probe("/nonexistent/picture"), PlatformError);
}

TEST_F(ImageDecoderTest, TakesNamesAsTheyAre) {
  const TemporaryFolder folder;
  const std::string content = written(vipsImage(smooth(12, 8, PixelLayout::rgb)), ".tif");
  EXPECT_EQ(imageDecoder().decode(folder.write("scan[page=3]", content), anySize).width, 12);
}

const struct {
  std::string label, suffix;
  std::function<VImage(VImage)> change;
  ImageProperties expected;
} imagePropertiesCases[] = {
    {"turned JPEG",
     ".jpg",
     [](VImage image) {
       image = image.copy();
       image.set("orientation", 6);
       return image;
     },
     {.orientation = 6, .colorModel = "RGB"}},
    {"deep PNG with alpha",
     ".png",
     [](const VImage& image) {
       return image.colourspace(VIPS_INTERPRETATION_RGB16).bandjoin(65535);
     },
     {.colorModel = "RGB", .depth = 16, .hasAlpha = true}},
    {"grey PNG",
     ".png",
     [](const VImage& image) { return image.colourspace(VIPS_INTERPRETATION_B_W); },
     {.colorModel = "Gray"}},
    {"press TIFF",
     ".tiff",
     [](const VImage& image) {
       return image.icc_export(VImage::option()->set("output_profile", "cmyk"));
     },
     {.colorModel = "CMYK", .hasColorProfile = true}},
};

TEST_F(ImageDecoderTest, AreThoseOfTheStoredPicture) {
  for (const auto& c : imagePropertiesCases) {
    SCOPED_TRACE(c.label);
    const VImage image = c.change(vipsImage(smooth(6, 4, PixelLayout::rgb)));
    const auto properties = imagePropertiesOf(written(image, c.suffix));
    ASSERT_TRUE(properties.has_value());
    const ImageProperties& expected = c.expected;
    EXPECT_EQ(std::pair(properties->width, properties->height), std::pair(6, 4));
    EXPECT_EQ(properties->orientation, expected.orientation);
    EXPECT_EQ(properties->colorModel, expected.colorModel);
    EXPECT_EQ(properties->depth, expected.depth);
    EXPECT_EQ(properties->hasAlpha, expected.hasAlpha);
    EXPECT_EQ(properties->hasColorProfile, expected.hasColorProfile);
  }
}

}  // namespace
}  // namespace tolvane
