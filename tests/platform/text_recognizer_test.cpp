#include "platform/recognition/text_recognizer.h"

#include <cstdlib>
#include <iostream>
#include <memory>

#include <cairo.h>
#include <gtest/gtest.h>

#include "platform/files/platform_error.h"
#include "tests/support/temporary_folder.h"

/// Fonts and word lists keep memory of their own until the process ends.
extern "C" const char* __lsan_default_suppressions() {  // NOLINT: the sanitizer gives the name
  return "leak:libfontconfig\nleak:libtesseract";
}

namespace tolvane {
namespace {

constexpr int resolution = 144;

/// Two lines of text, black on white.
Bitmap page() {
  Bitmap bitmap{900, 260, PixelLayout::bgrx, {}};
  bitmap.pixels.resize(bitmap.stride() * static_cast<std::size_t>(bitmap.height));
  const std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> surface(
      cairo_image_surface_create_for_data(bitmap.pixels.data(),
                                          CAIRO_FORMAT_RGB24,
                                          bitmap.width,
                                          bitmap.height,
                                          static_cast<int>(bitmap.stride())),
      cairo_surface_destroy);
  const std::unique_ptr<cairo_t, decltype(&cairo_destroy)> context(cairo_create(surface.get()),
                                                                   cairo_destroy);
  cairo_set_source_rgb(context.get(), 1, 1, 1);
  cairo_paint(context.get());
  cairo_set_source_rgb(context.get(), 0, 0, 0);
  cairo_select_font_face(
      context.get(), "DejaVu Sans", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
  cairo_set_font_size(context.get(), 36);
  cairo_move_to(context.get(), 40, 90);
  cairo_show_text(context.get(), "The quick brown fox jumps");
  cairo_move_to(context.get(), 40, 170);
  cairo_show_text(context.get(), "over the lazy dog");
  cairo_surface_flush(surface.get());
  return bitmap;
}

/// The page with its dark pixels as black ink, its light ones as `paper`.
Bitmap inLayout(const Bitmap& source, PixelLayout layout, const Bytes& ink, const Bytes& paper) {
  Bitmap bitmap{source.width, source.height, layout, {}};
  for (std::size_t i = 0; i < source.pixels.size(); i += 4) {
    const Bytes& pixel = source.pixels[i] < 128 ? ink : paper;
    bitmap.pixels.insert(bitmap.pixels.end(), pixel.begin(), pixel.end());
  }
  return bitmap;
}

const std::vector<std::string> expectedLines = {"The quick brown fox jumps", "over the lazy dog"};

TEST(TextRecognizerTest, ReadsEveryLayout) {
  const Bitmap drawn = page();
  const Bitmap grey = inLayout(drawn, PixelLayout::grey, {0}, {255});
  const Bitmap blueOnYellow = inLayout(drawn, PixelLayout::rgb, {0, 0, 120}, {255, 255, 180});
  const Bitmap overNothing = inLayout(drawn, PixelLayout::rgba, {0, 0, 0, 255}, {0, 0, 0, 0});
  for (const Bitmap* picture : {&drawn, &grey, &blueOnYellow, &overNothing}) {
    EXPECT_EQ(textRecognizer().lines(*picture, resolution, {}), expectedLines);
  }
}

TEST(TextRecognizerTest, FindsNothingOnABlankPage) {
  Bitmap blank{300, 200, PixelLayout::grey, Bytes(60000, 255)};
  EXPECT_TRUE(textRecognizer().lines(blank, resolution, {}).empty());
}

TEST(TextRecognizerTest, StopsWhenTold) {
  int asked = 0;
  const auto stopsAtTheSecondLine = [&asked] { return ++asked == 2; };
  EXPECT_TRUE(textRecognizer().lines(page(), resolution, stopsAtTheSecondLine).empty());
  EXPECT_EQ(asked, 2);
  EXPECT_EQ(textRecognizer().lines(page(), resolution, [] { return false; }), expectedLines);
}

TEST(TextRecognizerTest, RefusesIncompletePictures) {
  const Bitmap cut{300, 200, PixelLayout::bgrx, Bytes(100)};
  EXPECT_THROW((void)textRecognizer().lines(cut, resolution, {}), PlatformError);
}

/// Prints the failure and nothing else, in a process of its own.
[[noreturn]] void recognizeWithoutData(const std::string& folder) {
  ::setenv("TESSDATA_PREFIX", folder.c_str(), 1);
  try {
    (void)textRecognizer().lines(page(), resolution, {});
  } catch (const PlatformError& error) {
    std::cerr << error.what();
    std::_Exit(3);
  }
  std::_Exit(0);
}

TEST(TextRecognizerDeathTest, NamesThePackageThatIsMissing) {
  ::testing::FLAGS_gtest_death_test_style = "threadsafe";
  const support::TemporaryFolder empty;
  EXPECT_EXIT(recognizeWithoutData(empty.path().string()),
              ::testing::ExitedWithCode(3),
              "^Text recognition has no language data. Install the package tesseract-ocr-eng.$");
}

}  // namespace
}  // namespace tolvane
