#include "platform/images/image_decoder.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <limits>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <vips/vips8>

#include "platform/files/platform_error.h"
#include "platform/images/color_profile.h"
#include "tests/support/image_samples.h"
#include "tests/support/temporary_folder.h"

/// The encoder of the HEIC samples keeps memory of its own until the process ends.
extern "C" const char* __lsan_default_suppressions() {  // NOLINT: the sanitizer gives the name
  return "leak:libx265";
}

namespace tolvane {
namespace {

using namespace std::string_literals;
using support::gradient;
using support::plain;
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
  EXPECT_EQ(a.width, b.width);
  EXPECT_EQ(a.height, b.height);
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

struct KindCase {
  const char* extension;
  const char* suffix;
  double tolerance;
  PixelLayout layout = PixelLayout::rgb;
};
void PrintTo(const KindCase& c, std::ostream* out) {
  *out << c.suffix;
}

class ImageKindTest : public ImageDecoderTest, public ::testing::WithParamInterface<KindCase> {};

TEST_P(ImageKindTest, IsKnownAndDecodes) {
  const KindCase& c = GetParam();
  const Bitmap original = gradient(61, 46, c.layout);
  const std::string content = written(vipsImage(original), c.suffix);
  const auto found = header(content);
  ASSERT_TRUE(found);
  EXPECT_EQ(found->extension, c.extension);
  EXPECT_EQ(found->width, 61);
  EXPECT_EQ(found->height, 46);
  EXPECT_LE(meanDifference(decoded(content), original), c.tolerance);
  const Bitmap half = decoded(content, 30);
  EXPECT_LE(meanDifference(half, gradient(30, 23, c.layout)), c.tolerance + 6)
      << "half a pixel aside";
}

INSTANTIATE_TEST_SUITE_P(
    Kinds,
    ImageKindTest,
    ::testing::Values(KindCase{"jpeg", ".jpg[Q=95]", 2},
                      KindCase{"jpeg", ".jpg[Q=95]", 2, PixelLayout::grey},
                      KindCase{"jpeg", ".jpg[Q=95,interlace]", 2},
                      KindCase{"png", ".png[filter=none]", 0},
                      KindCase{"png", ".png[filter=sub]", 0},
                      KindCase{"png", ".png[filter=up]", 0},
                      KindCase{"png", ".png[filter=avg]", 0, PixelLayout::rgba},
                      KindCase{"png", ".png[filter=paeth]", 0, PixelLayout::rgba},
                      KindCase{"png", ".png[filter=paeth]", 0, PixelLayout::grey},
                      KindCase{"png", ".png[filter=paeth]", 0},
                      KindCase{"png", ".png[interlace]", 0},
                      KindCase{"png", ".png[palette]", 3, PixelLayout::rgba},
                      KindCase{"gif", ".gif", 6},
                      KindCase{"tiff", ".tif[compression=deflate]", 0},
                      KindCase{"tiff", ".tif", 0, PixelLayout::grey},
                      KindCase{"webp", ".webp[lossless]", 0},
                      KindCase{"webp", ".webp[lossless]", 0, PixelLayout::rgba},
                      KindCase{"heic", ".heic[compression=hevc,Q=90]", 4},
                      KindCase{"avif", ".avif[compression=av1,Q=90]", 4},
                      KindCase{"jp2", ".jp2[lossless]", 0}));

struct ColorCase {
  const char* label;
  const char* suffix;
  double tolerance;
  std::function<VImage(const VImage&)> convert;
};
void PrintTo(const ColorCase& c, std::ostream* out) {
  *out << c.label;
}

class ImageColorTest : public ImageDecoderTest, public ::testing::WithParamInterface<ColorCase> {};

TEST_P(ImageColorTest, ComesBackAsStandardColors) {
  const ColorCase& c = GetParam();
  const Bitmap original = gradient(40, 30, PixelLayout::rgb);
  const std::string content = written(c.convert(vipsImage(original)), c.suffix);
  EXPECT_LE(meanDifference(decoded(content), original), c.tolerance);
}

INSTANTIATE_TEST_SUITE_P(
    Colors,
    ImageColorTest,
    ::testing::Values(
        ColorCase{"16 bits",
                  ".png",
                  0.5,
                  [](const VImage& image) { return image.colourspace(VIPS_INTERPRETATION_RGB16); }},
        ColorCase{"CMYK",
                  ".jpg[Q=100]",
                  25,
                  [](const VImage& image) { return image.colourspace(VIPS_INTERPRETATION_CMYK); }},
        ColorCase{"Lab",
                  ".tif",
                  1,
                  [](const VImage& image) { return image.colourspace(VIPS_INTERPRETATION_LAB); }},
        ColorCase{"linear float",
                  ".tif",
                  1,
                  [](const VImage& image) { return image.colourspace(VIPS_INTERPRETATION_scRGB); }},
        ColorCase{"wide gamut in PNG",
                  ".png",
                  1,
                  [](const VImage& image) { return image.icc_transform("p3"); }},
        ColorCase{"wide gamut in JPEG", ".jpg[Q=100]", 2.5, [](const VImage& image) {
                    return image.icc_transform("p3");
                  }}));

TEST_F(ImageDecoderTest, ConvertsByTheProfileAndNotWithoutOne) {
  const VImage wide = vipsImage(gradient(40, 30, PixelLayout::rgb)).icc_transform("p3");
  EXPECT_GT(meanDifference(decoded(written(wide, ".png[strip]")), decoded(written(wide, ".png"))),
            2);
}

TEST_F(ImageDecoderTest, TellsStandardProfilesFromOthers) {
  const VImage image = vipsImage(gradient(8, 8, PixelLayout::rgb));
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
  struct Corner {
    bool right;
    bool bottom;
  };
  const std::vector<Corner> corners = {{false, false},
                                       {true, false},
                                       {true, true},
                                       {false, true},
                                       {false, false},
                                       {true, false},
                                       {true, true},
                                       {false, true}};
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
        ASSERT_EQ(upright.width, orientation < 5 ? size : size / 2);
        ASSERT_EQ(upright.height, orientation < 5 ? size / 2 : size);
        const auto [right, bottom] = corners.at(static_cast<std::size_t>(orientation - 1));
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
  struct SizeCase {
    int width, height, limit, scaledWidth, scaledHeight;
  };
  for (const SizeCase& c : {SizeCase{400, 300, 160, 160, 120},
                            SizeCase{300, 400, 160, 120, 160},
                            SizeCase{3001, 1, 16, 16, 1},
                            SizeCase{101, 67, 50, 50, 33},
                            SizeCase{1000, 667, 333, 333, 222},
                            SizeCase{1000, 777, 61, 61, 47},
                            SizeCase{50, 50, 16, 16, 16},
                            SizeCase{30, 20, 1600, 30, 20}}) {
    for (const char* suffix : {".jpg", ".png", ".jp2"}) {
      const Bitmap scaled = decoded(
          written(vipsImage(gradient(c.width, c.height, PixelLayout::rgb)), suffix), c.limit);
      EXPECT_EQ(scaled.width, c.scaledWidth) << suffix << c.width << " at " << c.limit;
      EXPECT_EQ(scaled.height, c.scaledHeight) << suffix << c.width << " at " << c.limit;
    }
  }
}

std::string bigEndian(std::uint32_t value) {
  return {static_cast<char>(value >> 24U),
          static_cast<char>(value >> 16U),
          static_cast<char>(value >> 8U),
          static_cast<char>(value)};
}

/// A PNG file that announces the size and holds nothing else.
std::string pngHeader(std::uint32_t width, std::uint32_t height) {
  const std::string chunk = "IHDR" + bigEndian(width) + bigEndian(height) + "\x08\x02\0\0\0"s;
  std::uint32_t sum = 0xFFFFFFFFU;
  for (const char byte : chunk) {
    sum ^= static_cast<std::uint8_t>(byte);
    for (int bit = 0; bit < 8; ++bit) {
      sum = sum >> 1U ^ ((sum & 1U) != 0 ? 0xEDB88320U : 0U);
    }
  }
  return "\x89PNG\r\n\x1A\n" + bigEndian(13) + chunk + bigEndian(~sum);
}

std::string littleEndian(std::uint32_t value) {
  const std::string reversed = bigEndian(value);
  return {reversed.rbegin(), reversed.rend()};
}

/// 24 bits; rows from the bottom, blue first.
std::string bmp(std::uint32_t width, std::uint32_t height, const std::string& rows) {
  return "BM" + littleEndian(static_cast<std::uint32_t>(54 + rows.size())) + littleEndian(0) +
         littleEndian(54) + littleEndian(40) + littleEndian(width) + littleEndian(height) +
         "\x01\0\x18\0"s + std::string(24, '\0') + rows;
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
  for (const auto& [width, height] : {std::pair{16385, 1}, std::pair{20000, 20000}}) {
    const auto side = [](int value) { return static_cast<std::uint32_t>(value); };
    for (const std::string& content :
         {pngHeader(side(width), side(height)), bmp(side(width), side(height), "")}) {
      const auto found = header(content);
      ASSERT_TRUE(found);
      EXPECT_EQ(found->width, width);
      EXPECT_EQ(found->height, height);
      EXPECT_THROW((void)decoded(content), PlatformError);
    }
  }
}

/// A JPEG file that announces the size and holds nothing else.
std::string jpegHeader(char width, char height) {
  return "\xFF\xD8\xFF\xC0\0\x0B\x08\0"s + height + '\0' + width + "\1\1\x11\0"s;
}

TEST_F(ImageDecoderTest, ReportsImpossibleSizesWithoutDecoding) {
  constexpr int most = std::numeric_limits<int>::max();
  struct SizeCase {
    std::string content;
    int width, height;
  };
  for (const SizeCase& c : {SizeCase{pngHeader(0, 7), 0, 7},
                            SizeCase{pngHeader(7, 0), 7, 0},
                            SizeCase{pngHeader(0x80000000, 1), most, 1},
                            SizeCase{pngHeader(1, 0xFFFFFFFF), 1, most},
                            SizeCase{jpegHeader(5, 0), 5, 0}}) {
    const auto found = header(c.content);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->width, c.width);
    EXPECT_EQ(found->height, c.height);
    EXPECT_THROW((void)decoded(c.content), PlatformError);
  }
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
  const VImage image = vipsImage(gradient(200, 150, PixelLayout::rgb));
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
  const std::string content = written(vipsImage(gradient(12, 8, PixelLayout::rgb)), ".tif");
  EXPECT_EQ(imageDecoder().decode(folder.write("scan[page=3]", content), anySize).width, 12);
}

struct PropertiesCase {
  const char* label;
  const char* suffix;
  std::function<VImage(VImage)> change;
  ImageProperties expected;
};
void PrintTo(const PropertiesCase& c, std::ostream* out) {
  *out << c.label;
}
class ImagePropertiesTest : public ImageDecoderTest,
                            public ::testing::WithParamInterface<PropertiesCase> {};

TEST_P(ImagePropertiesTest, AreThoseOfTheStoredPicture) {
  const VImage image = GetParam().change(vipsImage(gradient(6, 4, PixelLayout::rgb)));
  const auto properties = imagePropertiesOf(written(image, GetParam().suffix));
  ASSERT_TRUE(properties.has_value());
  const ImageProperties& expected = GetParam().expected;
  EXPECT_EQ(properties->width, 6);
  EXPECT_EQ(properties->height, 4);
  EXPECT_EQ(properties->orientation, expected.orientation);
  EXPECT_EQ(properties->colorModel, expected.colorModel);
  EXPECT_EQ(properties->depth, expected.depth);
  EXPECT_EQ(properties->hasAlpha, expected.hasAlpha);
  EXPECT_EQ(properties->hasColorProfile, expected.hasColorProfile);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds,
    ImagePropertiesTest,
    ::testing::Values(
        PropertiesCase{"turned JPEG",
                       ".jpg",
                       [](VImage image) {
                         image = image.copy();
                         image.set("orientation", 6);
                         return image;
                       },
                       {.orientation = 6, .colorModel = "RGB"}},
        PropertiesCase{"deep PNG with alpha",
                       ".png",
                       [](const VImage& image) {
                         return image.colourspace(VIPS_INTERPRETATION_RGB16).bandjoin(65535);
                       },
                       {.colorModel = "RGB", .depth = 16, .hasAlpha = true}},
        PropertiesCase{
            "grey PNG",
            ".png",
            [](const VImage& image) { return image.colourspace(VIPS_INTERPRETATION_B_W); },
            {.colorModel = "Gray"}},
        PropertiesCase{"press TIFF",
                       ".tiff",
                       [](const VImage& image) {
                         return image.icc_export(VImage::option()->set("output_profile", "cmyk"));
                       },
                       {.colorModel = "CMYK", .hasColorProfile = true}}));

TEST_F(ImageDecoderTest, KnowsNoPropertiesOfOtherFiles) {
  EXPECT_FALSE(imagePropertiesOf("junk").has_value());
}

}  // namespace
}  // namespace tolvane
