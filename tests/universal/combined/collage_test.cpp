
#include <map>
#include <tuple>

#include <gmock/gmock.h>

#include "platform/documents/pdf_document.h"
#include "platform/images/image_decoder.h"
#include "tests/support/failure_text.h"
#include "tests/support/pictures.h"
#include "tests/support/universal_fixture.h"
#include "universal/combined/combined.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;
using support::failureText;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class CollageTest : public support::UniversalFixture {
 protected:
  static std::vector<FileInfo> images(std::size_t count) {
    return std::vector<FileInfo>(count, {"/in.jpg", FileKind::image, ""});
  }

  /// A picture of one colour.
  [[nodiscard]] FileInfo image(const std::string& name, int width, int height, int grey) const {
    Bitmap picture{width, height, PixelLayout::grey, {}};
    picture.pixels.assign(picture.stride() * static_cast<std::size_t>(height),
                          static_cast<std::uint8_t>(grey));
    support::writePng(folder_ / name, picture);
    return {folder_ / name, FileKind::image, ""};
  }
};

TEST_F(CollageTest, LaysTheNormalizedPicturesOutAsASquare) {
  const std::map<std::size_t, int> columnsOf = {
      {1, 1}, {2, 2}, {4, 2}, {5, 3}, {16, 4}, {17, 5}, {25, 5}};
  for (const auto& [count, columns] : columnsOf) {
    fs::remove(workspace() / "magick.runs");
    standIn("magick");
    EXPECT_THAT(combined(images(count), "collage", {}, withStandIns()),
                ElementsAreArray({workspace() / "result-collage.png"}));
    const Runs runs = runsOf("magick");
    ASSERT_EQ(runs.size(), count + 1);
    std::string expected = "montage";
    for (std::size_t i = 0; i < count; ++i) {
      expected += " " + runs[i].back();
    }
    expected += " -thumbnail 800x800> -tile " + std::to_string(columns) + "x -geometry +12+12 " +
                "-background white " + (workspace() / "result-collage.png").string();
    EXPECT_EQ(runs.back(), support::words(expected));
  }
}

TEST_F(CollageTest, RefusesMoreThan25BeforeAnyWork) {
  standIn("magick");
  EXPECT_EQ(failureText([&] { return combined(images(26), "collage", {}, withStandIns()); }),
            "Choose at most 25 images for a collage.");
  EXPECT_EQ(failureText([&] { return combined(images(1), "mosaic", {}, withStandIns()); }),
            "This combined operation is unavailable.");
  EXPECT_THAT(runsOf("magick"), IsEmpty());
}

TEST_F(CollageTest, EndsWithTheFirstPictureThatFails) {
  standIn("magick", "exit 1");
  for (const char* tool : {"collage", "create_pdf"}) {
    EXPECT_THAT(failureText([&] { return combined(images(3), tool, {}, withStandIns()); }),
                ::testing::StartsWith("magick could not process this file (exit 1)."));
  }
  EXPECT_THAT(runsOf("magick"), SizeIs(2));
}

TEST_F(CollageTest, ShowsThePicturesInOrderOnWhite) {
  // The workspace's own name is one that ImageMagick would rewrite.
  const fs::path odd = folder_ / "50%d [0]";
  fs::create_directory(odd);
  const auto results = combined(
      {image("a.png", 1600, 1200, 60), image("b.png", 100, 50, 120), image("c.png", 400, 800, 180)},
      "collage",
      {},
      withEngines().in(odd));
  constexpr int anySize = 16384;
  const Bitmap sheet = imageDecoder().decode(results.front(), anySize);
  // Every picture has 12 pixels around it: two in the first row, one in the second.
  ASSERT_EQ(std::pair(sheet.width, sheet.height),
            std::pair(12 + 800 + 24 + 100 + 12, 12 + 600 + 24 + 800 + 12));
  const auto greyAt = [&](int x, int y) {
    return static_cast<int>(
        sheet.row(y)[static_cast<std::size_t>(x * bytesPerPixel(sheet.layout))]);
  };
  const std::tuple<int, int, int> expected[] = {{12, 12, 60},
                                                {811, 611, 60},
                                                {811, 612, 255},
                                                {886, 312, 120},
                                                {886, 338, 255},  // not enlarged
                                                {12, 636, 180},
                                                {411, 1435, 180},
                                                {412, 1435, 255},
                                                {11, 11, 255}};
  for (const auto& [x, y, grey] : expected) {
    EXPECT_EQ(greyAt(x, y), grey) << x << ", " << y;
  }
}

TEST_F(CollageTest, MakesAPageOfEveryPicture) {
  const FileInfo wide = image("wide.png", 40, 20, 90);
  const fs::path turned = folder_ / "turned.tiff";
  (void)withEngines()
      .in(folder_.path())
      .run("magick", {wide.url.string(), "-orient", "RightTop", turned.string()}, 60);
  const auto results = combined({wide, {turned, FileKind::image, ""}, image("c.png", 7, 8, 9)},
                                "create_pdf",
                                {{"quality", 7}},
                                withEngines());
  ASSERT_THAT(results, SizeIs(1));
  const auto document = pdfLibrary().open(results.front());
  ASSERT_EQ(document->pageCount(), 3);
  EXPECT_EQ(document->geometry(0).width, 40);
  EXPECT_EQ(document->geometry(1).width, 20);
  EXPECT_EQ(document->geometry(1).height, 40);
  EXPECT_EQ(document->geometry(2).width, 7);
}

}  // namespace

}  // namespace tolvane::UniversalEngine
