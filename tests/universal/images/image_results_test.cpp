#include <algorithm>
#include <array>
#include <cstdlib>

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
    (void)withEngines().run("magick", arguments, 60, {folder_.path()});
    return workspace() / name;
  }

  fs::path run(const fs::path& input, const std::string& id, const Value::Map& options) const {
    return imageTool({input, FileKind::image, ""}, id, options, withEngines());
  }
};

/// @param x, y where the cropped and the redacted area begins.
void expectCropAndRedaction(
    const Bitmap& seen, const Bitmap& cropped, const Bitmap& redacted, int x, int y) {
  ASSERT_EQ(std::pair(cropped.width, cropped.height), std::pair(seen.width - x, seen.height - y));
  ASSERT_EQ(std::pair(redacted.width, redacted.height), std::pair(seen.width, seen.height));
  for (int row = 0; row < seen.height; ++row) {
    for (int column = 0; column < seen.width; ++column) {
      const bool isInside = column >= x && row >= y;
      const Bytes pixel = pixelAt(seen, column, row);
      ASSERT_EQ(pixelAt(redacted, column, row), isInside ? Bytes(3, 0) : pixel);
      ASSERT_EQ(isInside ? pixelAt(cropped, column - x, row - y) : pixel, pixel);
    }
  }
}

TEST_F(ImageResultsTest, CropsAndRedactsWhatTheUserSees) {
  for (const std::string& orientation : support::words(
           "TopLeft TopRight BottomRight BottomLeft LeftTop RightTop RightBottom LeftBottom")) {
    SCOPED_TRACE(orientation);
    const fs::path file = picture("photo.tiff", {"-orient", orientation});
    const Bitmap seen = decoded(file);
    // Ends on the right and the bottom edge.
    const auto [x, y] = seen.height > seen.width ? std::pair(10, 30) : std::pair(20, 25);
    const Value::Map area = {
        {"x", x}, {"y", y}, {"width", seen.width - x}, {"height", seen.height - y}};
    const Bitmap cropped = decoded(run(file, "crop", area));
    expectCropAndRedaction(seen, cropped, decoded(run(file, "redact", area)), x, y);
  }
}

const struct {
  const char* name;
  std::vector<std::string> making;
  double tolerance;  ///< of a component
} oddPictureCases[] = {
    {"deep.png", {"-depth", "16"}, 1},
    {"press.jpg", {"-colorspace", "CMYK", "-quality", "100"}, 60},
    {"moving.gif", {"(", "-clone", "0", "-negate", ")"}, 0},
    {"grey.webp", {"-colorspace", "Gray", "-quality", "100"}, 3},
    {"clear.png", {"-alpha", "set", "-channel", "A", "-evaluate", "set", "50%"}, 1},
    {"two.bmp", {"-monochrome"}, 0},
};

TEST_F(ImageResultsTest, ConvertsTheColorsOfAProfileThatIsDropped) {
  constexpr const char* adobe = "/usr/share/color/icc/ghostscript/a98.icc";
  const std::vector<std::string> green = {"-fill", "rgb(120,200,60)", "-colorize", "100"};
  constexpr std::array seen = {51, 201, 37};  // by another colour engine
  for (const char* source : {"adobe.jpg", "adobe.png", "adobe.tiff", "deep.png"}) {
    std::vector<std::string> making = green;
    making.insert(making.end(), {"-depth", source[0] == 'd' ? "16" : "8", "-profile", adobe});
    const fs::path file = picture(source, making);
    for (const char* result : {"png", "jpg", "tiff", "webp", "bmp", "heic", "avif"}) {
      const fs::path output = workspace() / (std::string("result.") + result);
      image(file, output, {}, {{"quality", 1}}, withEngines());
      const Bytes pixel = pixelAt(decoded(output), 20, 15);
      for (std::size_t index = 0; index < seen.size(); ++index) {
        EXPECT_NEAR(pixel[index], seen.at(index), 6) << source << " to " << result;
      }
    }
  }
}

TEST_F(ImageResultsTest, KeepsTheTransparencyOfHeifAndAvif) {
  const fs::path clear = picture("clear.png",
                                 {"-resize",
                                  "64x64!",
                                  "-alpha",
                                  "set",
                                  "-channel",
                                  "A",
                                  "-fx",
                                  "i<32",
                                  "-depth",
                                  "8",
                                  "-define",
                                  "png:color-type=6"});
  for (const char* name : {"clear.heic", "clear.avif"}) {
    const fs::path file = workspace() / name;
    const std::string making = "heif-enc -L " +
                               std::string(file.extension() == ".avif" ? "-A -p chroma=444 " : "") +
                               clear.string() + " -o " + file.string() + " >/dev/null 2>&1";
    ASSERT_EQ(std::system(making.c_str()), 0) << making;
    const Bitmap before = decoded(clear);
    for (const char* result : {"result.png", "result.tiff", "result.webp"}) {
      image(file, workspace() / result, {}, {{"quality", 1}}, withEngines());
      const Bitmap after = decoded(workspace() / result);
      ASSERT_EQ(after.layout, PixelLayout::rgba) << name << " to " << result;
      EXPECT_EQ(after.row(30)[3], 255);
      EXPECT_EQ(after.row(30)[60 * 4 + 3], 0);
      for (const int component : {0, 1, 2}) {
        EXPECT_NEAR(pixelAt(after, 10, 30).at(static_cast<std::size_t>(component)),
                    pixelAt(before, 10, 30).at(static_cast<std::size_t>(component)),
                    6)
            << name << " to " << result;
      }
    }
  }
}

TEST_F(ImageResultsTest, CropsAndRedactsPicturesOfEveryKind) {
  for (const auto& [name, making, tolerance] : oddPictureCases) {
    SCOPED_TRACE(name);
    const fs::path file = picture(name, making);
    const Bitmap before = decoded(file);
    const Bitmap cropped =
        decoded(run(file, "crop", {{"x", 25}, {"y", 20}, {"width", 15}, {"height", 10}}));
    EXPECT_EQ(std::pair(cropped.width, cropped.height), std::pair(15, 10));
    for (const auto& [x, y] : {std::pair{0, 0}, {14, 9}}) {
      EXPECT_NEAR(
          pixelAt(cropped, x, y).front(), pixelAt(before, x + 25, y + 20).front(), tolerance);
    }
    const Bitmap redacted =
        decoded(run(file, "redact", {{"x", 5}, {"y", 5}, {"width", 10}, {"height", 10}}));
    EXPECT_EQ(std::pair(redacted.width, redacted.height), std::pair(40, 30));
    EXPECT_EQ(pixelAt(redacted, 5, 5), Bytes(3, 0));
    EXPECT_EQ(pixelAt(redacted, 14, 14), Bytes(3, 0));
    for (const auto& [x, y] : {std::pair{4, 5}, {15, 14}, {39, 29}}) {
      EXPECT_NEAR(pixelAt(redacted, x, y).front(), pixelAt(before, x, y).front(), tolerance);
    }
  }
}

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

TEST_F(ImageResultsTest, DrawsGradientsClipsAndOpacityAndNoOutlines) {
  const fs::path file = folder_.write(
      "a.svg",
      svg(R"x(<defs><linearGradient id="g"><stop offset="0" stop-color="#0000ff"/>)x"
          R"x(<stop offset="1" stop-color="#00ff00"/></linearGradient>)x"
          R"x(<clipPath id="c"><rect x="30" width="10" height="10"/></clipPath></defs>)x"
          R"x(<rect y="20" width="40" height="5" fill="url(#g)"/>)x"
          R"x(<rect width="40" height="20" fill="#ffffff" clip-path="url(#c)"/>)x"
          R"x(<rect y="25" width="40" height="5" opacity="0.5"/>)x"));
  image(file, workspace() / "result.png", {}, {}, withEngines());
  const Bitmap drawn = decoded(workspace() / "result.png");
  EXPECT_EQ(pixelAt(drawn, 0, 0), Bytes({255, 0, 0}));
  EXPECT_GT(pixelAt(drawn, 1, 22).at(2), 240);
  EXPECT_GT(pixelAt(drawn, 38, 22).at(1), 240);
  EXPECT_EQ(pixelAt(drawn, 35, 5), Bytes(3, 255));
  EXPECT_EQ(pixelAt(drawn, 20, 5), Bytes({255, 0, 0}));
  EXPECT_NEAR(drawn.row(27)[3], 128, 2);
}

TEST_F(ImageResultsTest, DrawsSvg) {
  for (const std::string name : {"a.svg", "50% [x].SVG"}) {
    const fs::path file = folder_.write(name, svg(""));
    image(file, workspace() / "result.png", {}, {}, withEngines());
    const Bitmap drawn = decoded(workspace() / "result.png");
    ASSERT_EQ(std::pair(drawn.width, drawn.height), std::pair(40, 30));
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

const std::pair<const char*, const char*> intruderCases[] = {
    {"a.svg", R"(<image width="20" height="20" xlink:href="DIR/secret.png"/>)"},
    {"a.svg", R"(<image width="20" height="20" href="DIR/secret.png"/>)"},
    {"a.svg", R"(<image width="20" height="20" href="../secret.png"/>)"},
    {"a.svg", R"(<image width="20" height="20" href="file://DIR/secret.png"/>)"},
    {"a.svg", R"(<image width="20" height="20" href="http://127.0.0.1:9/a.png"/>)"},
    {"a.svg", R"(<image width="20" height="20" href="png:DIR/secret.png"/>)"},
    {"a.svg", R"(<image width="20" height="20" href="@DIR/secret.png"/>)"},
    {"a.svg", R"(<rect width="20" height="20" fill='url(DIR/secret.png)'/>)"},
    {"a.svg", R"(<g font-family="x&quot; image Over 0,0 20,20 'DIR/secret.png'"><text/></g>)"},
    {"a.mvg", "viewbox 0 0 40 30 image Over 0,0 20,20 'DIR/secret.png'"},
    {"a.svg", "viewbox 0 0 40 30 image Over 0,0 20,20 'DIR/secret.png'"},
    {"a.png",
     "push graphic-context\nviewbox 0 0 40 30\n"
     "image Over 0,0 20,20 'DIR/secret.png'\npop graphic-context\n"}};

TEST_F(ImageResultsTest, ShowsNoFileOfThisMachine) {
  fs::copy_file(picture("blue.png", {"-fill", "blue", "-colorize", "100"}), folder_ / "secret.png");
  const fs::path output = workspace() / "result.png";
  for (const auto& [name, pattern] : intruderCases) {
    SCOPED_TRACE(pattern);
    std::string content = pattern;
    for (std::size_t at = 0; (at = content.find("DIR")) != std::string::npos;) {
      content.replace(at, 3, folder_.path().string());
    }
    const fs::path file = folder_.write(name, content.starts_with('<') ? svg(content) : content);
    fs::remove(output);
    const std::string failure =
        failureText([&, &file = file] { image(file, output, {}, {}, withEngines()); });
    // Either nothing is drawn, or only what the picture itself holds.
    if (fs::exists(output)) {
      EXPECT_EQ(pixelAt(decoded(output), 5, 5).at(2), 0) << failure << "the secret is blue";
    } else {
      EXPECT_THAT(failure, ::testing::HasSubstr("magick could not process this file"));
    }
  }
}

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

TEST_F(ImageResultsTest, ReadsPhotosOfEightyMegapixels) {
  const fs::path photo = workspace() / "large.jpg";
  (void)withEngines().run("magick", {"-size", "10000x8000", "xc:red", photo.string()}, 60);
  const auto header = imageDecoder().probe(run(photo, "compress", {}));
  ASSERT_TRUE(header);
  EXPECT_EQ(std::pair(header->width, header->height), std::pair(10'000, 8'000));
}

TEST_F(ImageResultsTest, TakesPhotosWithoutTheirLastMarkerAndRefusesThoseThatLackMore) {
  const std::string whole = support::contentOf(picture("whole.jpg", {}));
  const Bitmap expected = decoded(run(workspace() / "whole.jpg", "edit", {}));
  const fs::path open = folder_.write("open.jpg", whole.substr(0, whole.size() - 2));
  EXPECT_EQ(decoded(run(open, "edit", {})).pixels, expected.pixels);
  const std::string half = whole.substr(0, whole.size() * 2 / 3);
  for (const std::string& content : {half, half + "\xFF\xD9"}) {
    const fs::path cut = folder_.write("cut.jpg", content);
    EXPECT_EQ(failureText([&] { return run(cut, "edit", {}); }),
              "This image is cut short. Get a complete copy of it.");
  }
}

struct Extent {
  int width = 0;
  int height = 0;
};

/// Of what is drawn in red on black.
Extent inkOf(const Bitmap& note) {
  int left = note.width;
  int right = 0;
  int top = note.height;
  int bottom = 0;
  for (int y = 0; y < note.height; ++y) {
    for (int x = 0; x < note.width; ++x) {
      if (pixelAt(note, x, y).front() > 128) {
        left = std::min(left, x);
        right = std::max(right, x);
        top = std::min(top, y);
        bottom = std::max(bottom, y);
      }
    }
  }
  return {right - left, bottom - top};
}

TEST_F(ImageResultsTest, DrawsTheTextThatWasTyped) {
  const fs::path dark =
      picture("dark.png", {"-fill", "black", "-colorize", "100", "-resize", "600x120!"});
  const auto ink = [&](const std::string& text) {
    return inkOf(decoded(run(dark, "annotate", {{"text", text}, {"color", "#FF0000"}})));
  };
  // Each takes the room of all its letters, in one line: as much more than the text beside it as
  // the letters named last do, which mean nothing to anybody.
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {R"(Ho\new)", "Honew", R"(\)"},
      {R"(Ho\\so)", "Hoso", R"(\\)"},
      {"Ho &lt; so", "Ho  so", "&lt;"},
      {"Ho &amp;gt; so", "Ho  so", "&amp;gt;"},
      {"Ho %o so", "Ho  so", "%o"},
      {"Ho @so", "Ho so", "@"},
      {"Ho\x01so", "Hoso", ""}};
  const int empty = ink("HH").width;
  for (const auto& [typed, without, added] : cases) {
    const int letters = ink(std::string("H") + added + "H").width - empty;
    const Extent drawn = ink(typed);
    EXPECT_NEAR(drawn.width, ink(without).width + letters, 8) << typed;
    EXPECT_LT(drawn.height, 40) << typed;
  }
  EXPECT_GT(ink("Ho\nso").height, 50);
}

TEST_F(ImageResultsTest, ReadsAndWritesTheFileThatIsMeantWhateverItsName) {
  const fs::path red = picture("red.png", {"-fill", "red", "-colorize", "100"});
  const fs::path blue = picture("blue.png", {"-fill", "blue", "-colorize", "100"});
  std::vector<std::string> names = support::words(
      "50%d %03d %%x a*b q? [0] x[0] c:d png:x {a,b} b\\n ~ @at -dash äß→ %[fx:1] %o");
  for (const char* decoy : {"500", "000", "%x", "aXb", "qX", "x", "d", "a", "0"}) {
    fs::create_directory(folder_ / decoy);
    fs::copy_file(blue, folder_ / decoy / (std::string(decoy) + ".png"));
  }
  names.insert(names.end(), {"s p'\"", "line\nend"});
  for (const std::string& name : names) {
    const fs::path folder = folder_ / name;
    fs::create_directory(folder);
    for (const std::string extension : {".png", ""}) {
      const fs::path input = folder / (name + extension);
      fs::copy_file(red, input);
      const JobContext job = withEngines().in(folder);
      const fs::path result = imageTool({input, FileKind::image, ""}, "compress", {}, job);
      ASSERT_EQ(result, folder / "result-compress.png");
      EXPECT_EQ(pixelAt(decoded(result), 9, 9), Bytes({255, 0, 0})) << input;
      EXPECT_NO_THROW((void)job.run("magick", {"identify", enginePath(result, job)}, 60, {result}));
      fs::remove(result);
    }
  }
}

}  // namespace

}  // namespace tolvane::UniversalEngine
