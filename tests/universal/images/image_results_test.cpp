#include <algorithm>
#include <array>
#include <ostream>

#include <gmock/gmock.h>

#include "platform/images/image_decoder.h"
#include "tests/support/failure_text.h"
#include "tests/support/pictures.h"
#include "tests/support/universal_fixture.h"
#include "universal/images/engine_path.h"
#include "universal/images/image.h"
#include "universal/images/image_tools.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;

using support::failureText;

constexpr int anySize = 16384;

Bitmap decoded(const fs::path& file) {
  return imageDecoder().decode(file, anySize);
}

/// Red, green and blue.
Bytes pixelAt(const Bitmap& picture, int x, int y) {
  const auto size = static_cast<std::size_t>(bytesPerPixel(picture.layout));
  const BytesView pixel = picture.row(y).subspan(static_cast<std::size_t>(x) * size, size);
  return size == 1 ? Bytes(3, pixel.front()) : Bytes(pixel.begin(), pixel.begin() + 3);
}

/// The pictures that ImageMagick itself makes of pictures and tools.
class ImageResultsTest : public support::UniversalFixture {
 protected:
  /// @param arguments between the gradient of 40 x 30 and the file.
  fs::path picture(const std::string& name, std::vector<std::string> arguments) const {
    const fs::path source = folder_ / "gradient.png";
    support::writePng(source, support::gradient(40, 30, PixelLayout::rgb));
    arguments.insert(arguments.begin(), source.string());
    arguments.push_back((workspace() / name).string());
    static_cast<void>(withEngines().run("magick", arguments, 60));
    return workspace() / name;
  }

  fs::path run(const fs::path& input, const std::string& id, const Value::Map& options) const {
    return imageTool({input, FileKind::image, ""}, id, options, withEngines());
  }
};

class OrientationTest : public ImageResultsTest,
                        public ::testing::WithParamInterface<const char*> {};

TEST_P(OrientationTest, CropsAndRedactsWhatTheUserSees) {
  const fs::path file = picture("photo.tiff", {"-orient", GetParam()});
  const Bitmap seen = decoded(file);
  const bool isPortrait = seen.height > seen.width;
  // Ends on the right and the bottom edge.
  const int x = isPortrait ? 10 : 20;
  const int y = isPortrait ? 30 : 25;
  const Value::Map area = {
      {"x", x}, {"y", y}, {"width", seen.width - x}, {"height", seen.height - y}};
  const Bitmap cropped = decoded(run(file, "crop", area));
  const Bitmap redacted = decoded(run(file, "redact", area));
  ASSERT_EQ(cropped.width, seen.width - x);
  ASSERT_EQ(cropped.height, seen.height - y);
  ASSERT_EQ(redacted.width, seen.width);
  ASSERT_EQ(redacted.height, seen.height);
  for (int row = 0; row < seen.height; ++row) {
    for (int column = 0; column < seen.width; ++column) {
      const bool isInside = column >= x && row >= y;
      ASSERT_EQ(pixelAt(redacted, column, row),
                isInside ? Bytes(3, 0) : pixelAt(seen, column, row));
      if (isInside) {
        ASSERT_EQ(pixelAt(cropped, column - x, row - y), pixelAt(seen, column, row));
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(All,
                         OrientationTest,
                         ::testing::Values("TopLeft",
                                           "TopRight",
                                           "BottomRight",
                                           "BottomLeft",
                                           "LeftTop",
                                           "RightTop",
                                           "RightBottom",
                                           "LeftBottom"));

struct KindCase {
  const char* name;
  std::vector<std::string> making;
  double tolerance;  ///< of a component
};
void PrintTo(const KindCase& c, std::ostream* out) {
  *out << c.name;
}
class OddPictureTest : public ImageResultsTest, public ::testing::WithParamInterface<KindCase> {};

TEST_P(OddPictureTest, IsCroppedAsItIsSeen) {
  const fs::path file = picture(GetParam().name, GetParam().making);
  const Bitmap before = decoded(file);
  const Bitmap after =
      decoded(run(file, "crop", {{"x", 25}, {"y", 20}, {"width", 15}, {"height", 10}}));
  ASSERT_EQ(after.width, 15);
  ASSERT_EQ(after.height, 10);
  for (const auto& [x, y] : {std::pair{0, 0}, {14, 9}}) {
    EXPECT_NEAR(pixelAt(after, x, y).front(),
                pixelAt(before, x + 25, y + 20).front(),
                GetParam().tolerance);
  }
}

TEST_P(OddPictureTest, LosesNothingButTheRedactedBox) {
  const fs::path file = picture(GetParam().name, GetParam().making);
  const Bitmap before = decoded(file);
  const Bitmap after =
      decoded(run(file, "redact", {{"x", 5}, {"y", 5}, {"width", 10}, {"height", 10}}));
  ASSERT_EQ(after.width, 40);
  ASSERT_EQ(after.height, 30);
  for (const auto& [x, y] : {std::pair{5, 5}, {14, 14}}) {
    EXPECT_EQ(pixelAt(after, x, y), Bytes(3, 0));
  }
  for (const auto& [x, y] : {std::pair{4, 5}, {15, 14}, {39, 29}}) {
    EXPECT_NEAR(pixelAt(after, x, y).front(), pixelAt(before, x, y).front(), GetParam().tolerance);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Kinds,
    OddPictureTest,
    ::testing::Values(
        KindCase{"deep.png", {"-depth", "16"}, 1},
        KindCase{"press.jpg", {"-colorspace", "CMYK", "-quality", "100"}, 60},
        KindCase{"moving.gif", {"(", "-clone", "0", "-negate", ")"}, 0},
        KindCase{"grey.webp", {"-colorspace", "Gray", "-quality", "100"}, 3},
        KindCase{"clear.png", {"-alpha", "set", "-channel", "A", "-evaluate", "set", "50%"}, 1},
        KindCase{"two.bmp", {"-monochrome"}, 0}));

TEST_F(ImageResultsTest, ShowsWhiteThroughWhereAFormatHasNoTransparency) {
  const fs::path clear = picture("clear.png", {"-alpha", "transparent"});
  for (const char* name : {"result.jpg", "result.bmp", "result.heic", "result.avif"}) {
    image(clear, workspace() / name, {}, {}, withEngines());
    const Bitmap picture = decoded(workspace() / name);
    EXPECT_TRUE(std::all_of(picture.pixels.begin(), picture.pixels.end(), [](std::uint8_t value) {
      return value >= 250;
    })) << name;
  }
  image(clear, workspace() / "result.webp", {}, {}, withEngines());
  EXPECT_EQ(decoded(workspace() / "result.webp").layout, PixelLayout::rgba);
  const Bitmap red = decoded(run(clear, "background", {{"color", "#ff0000"}}));
  EXPECT_EQ(pixelAt(red, 0, 0), Bytes({255, 0, 0}));
}

/// @param content shown over red.
std::string svg(const std::string& content) {
  return R"(<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink" )"
         R"(width="40" height="30"><rect width="40" height="20" fill="#ff0000"/>)" +
         content + "</svg>";
}

TEST_F(ImageResultsTest, DrawsSvg) {
  for (const std::string name : {"a.svg", "50% [x].SVG"}) {
    const fs::path file = folder_.write(name, svg(""));
    image(file, workspace() / "result.png", {}, {}, withEngines());
    const Bitmap drawn = decoded(workspace() / "result.png");
    ASSERT_EQ(drawn.width, 40);
    ASSERT_EQ(drawn.height, 30);
    EXPECT_EQ(pixelAt(drawn, 2, 2), Bytes({255, 0, 0}));
    EXPECT_EQ(pixelAt(drawn, 37, 17), Bytes({255, 0, 0}));
    ASSERT_EQ(drawn.layout, PixelLayout::rgba);
    EXPECT_EQ(drawn.row(25)[3], 0);  // clear where nothing is drawn
    const Value::Map area = {{"x", 0}, {"y", 0}, {"width", 10}, {"height", 10}};
    EXPECT_EQ(pixelAt(decoded(run(file, "redact", area)), 5, 5), Bytes(3, 0));
  }
  image(folder_.write("a.svg", svg("")), workspace() / "result.jpg", {}, {}, withEngines());
  EXPECT_GE(pixelAt(decoded(workspace() / "result.jpg"), 5, 27).at(1), 250);
}

class IntruderTest : public ImageResultsTest,
                     public ::testing::WithParamInterface<std::pair<const char*, const char*>> {};

TEST_P(IntruderTest, ShowsNoFileOfThisMachine) {
  fs::copy_file(picture("blue.png", {"-fill", "blue", "-colorize", "100"}), folder_ / "secret.png");
  const auto& [name, pattern] = GetParam();
  std::string content = pattern;
  for (std::size_t at = 0; (at = content.find("DIR")) != std::string::npos;) {
    content.replace(at, 3, folder_.path().string());
  }
  const bool isSvg = content.starts_with('<');
  const fs::path file = folder_.write(name, isSvg ? svg(content) : content);
  const fs::path output = workspace() / "result.png";
  const std::string failure = failureText([&] {
    image(file, output, {}, {}, withEngines());
    return 0;
  });
  // Either nothing is drawn, or only what the picture itself holds.
  if (fs::exists(output)) {
    EXPECT_EQ(pixelAt(decoded(output), 5, 5), Bytes({255, 0, 0})) << failure;
  } else {
    EXPECT_THAT(failure, ::testing::HasSubstr("magick could not process this file"));
  }
}

INSTANTIATE_TEST_SUITE_P(
    Pictures,
    IntruderTest,
    ::testing::Values(
        std::pair{"a.svg", R"(<image width="20" height="20" xlink:href="DIR/secret.png"/>)"},
        std::pair{"a.svg", R"(<image width="20" height="20" href="DIR/secret.png"/>)"},
        std::pair{"a.svg", R"(<image width="20" height="20" href="../secret.png"/>)"},
        std::pair{"a.svg", R"(<image width="20" height="20" href="file://DIR/secret.png"/>)"},
        std::pair{"a.svg", R"(<image width="20" height="20" href="http://127.0.0.1:9/a.png"/>)"},
        std::pair{"a.svg", R"(<image width="20" height="20" href="png:DIR/secret.png"/>)"},
        std::pair{"a.svg", R"(<image width="20" height="20" href="@DIR/secret.png"/>)"},
        std::pair{"a.svg", R"(<rect width="20" height="20" fill='url(DIR/secret.png)'/>)"},
        std::pair{"a.svg",
                  R"(<g font-family="x&quot; image Over 0,0 20,20 'DIR/secret.png'"><text/></g>)"},
        std::pair{"a.mvg", "viewbox 0 0 40 30 image Over 0,0 20,20 'DIR/secret.png'"},
        std::pair{"a.svg", "viewbox 0 0 40 30 image Over 0,0 20,20 'DIR/secret.png'"},
        std::pair{"a.png",
                  "push graphic-context\nviewbox 0 0 40 30\n"
                  "image Over 0,0 20,20 'DIR/secret.png'\npop graphic-context\n"}));

TEST_F(ImageResultsTest, DrawsTheTextAtItsPlaceInItsColor) {
  const fs::path dark =
      picture("dark.png", {"-fill", "black", "-colorize", "100", "-resize", "300x100!"});
  for (const char* text : {"50% off", "'\"\\", "two\nlines", "日本 😀", "-x", "%[fx:1]"}) {
    const Bitmap note = decoded(
        run(dark, "annotate", {{"text", text}, {"x", 40}, {"y", 30}, {"color", "#FF0000"}}));
    int left = note.width;
    int top = note.height;
    for (int y = 0; y < note.height; ++y) {
      for (int x = 0; x < note.width; ++x) {
        if (pixelAt(note, x, y).front() > 128) {
          left = std::min(left, x);
          top = std::min(top, y);
          EXPECT_EQ(pixelAt(note, x, y).at(1), 0);
        }
      }
    }
    EXPECT_NEAR(left, 43, 5) << text;
    EXPECT_NEAR(top, 43, 16) << text;
  }
}

TEST_F(ImageResultsTest, ReadsAndWritesTheFileThatIsMeantWhateverItsName) {
  const fs::path red = picture("red.png", {"-fill", "red", "-colorize", "100"});
  const fs::path blue = picture("blue.png", {"-fill", "blue", "-colorize", "100"});
  constexpr std::array names = {"50%d",
                                "%03d",
                                "%%x",
                                "a*b",
                                "q?",
                                "[0]",
                                "x[0]",
                                "c:d",
                                "png:x",
                                "{a,b}",
                                "s p'\"",
                                "b\\n",
                                "~",
                                "@at",
                                "-dash",
                                "line\nend",
                                "äß→",
                                "%[fx:1]",
                                "%o"};
  for (const char* decoy : {"500", "000", "%x", "aXb", "qX", "x", "d", "a", "0"}) {
    fs::create_directory(folder_ / decoy);
    fs::copy_file(blue, folder_ / decoy / (std::string(decoy) + ".png"));
  }
  for (const std::string name : names) {
    const fs::path folder = folder_ / name;
    fs::create_directory(folder);
    for (const std::string extension : {".png", ""}) {
      const fs::path input = folder / (name + extension);
      fs::copy_file(red, input);
      const JobContext job = withEngines().in(folder);
      const fs::path result = imageTool({input, FileKind::image, ""}, "compress", {}, job);
      ASSERT_EQ(result, folder / "result-compress.png");
      EXPECT_EQ(pixelAt(decoded(result), 9, 9), Bytes({255, 0, 0})) << input;
      EXPECT_NO_THROW(
          static_cast<void>(job.run("magick", {"identify", enginePath(result, job)}, 60)));
      fs::remove(result);
    }
  }
}

}  // namespace

}  // namespace tolvane::UniversalEngine
