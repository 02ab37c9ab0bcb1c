#include <gmock/gmock.h>

#include "engine/primitives/conversion_failure.h"
#include "platform/images/image_decoder.h"
#include "tests/support/native_job_fixture.h"

namespace tolvane {
namespace {

using support::gradient;
using ::testing::ElementsAre;
using ::testing::Pair;

class ImageActionsTest : public NativeJobFixture {
 protected:
  void SetUp() override {
    support::writePng(sources_ / "a.png", gradient(60, 40, PixelLayout::rgba));
    support::writeJpeg(sources_ / "b.jpeg", gradient(40, 60, PixelLayout::rgb));
  }

  Bitmap decoded(const std::string& name) { return imageDecoder().decode(results_ / name, 16'384); }
};

TEST_F(ImageActionsTest, WritesPng) {
  EXPECT_THAT(run("image_png", {"a.png", "b.jpeg"}), ElementsAre("a.png", "b.png"));
  EXPECT_THAT(progress_, ElementsAre(Pair(1, 2), Pair(2, 2)));
  EXPECT_EQ(decoded("a.png").pixels, gradient(60, 40, PixelLayout::rgba).pixels);
}

TEST_F(ImageActionsTest, WritesJpeg) {
  EXPECT_THAT(run("image_jpeg", {"a.png", "b.jpeg"}), ElementsAre("a.jpg", "b.jpg"));
  EXPECT_EQ(decoded("a.jpg").layout, PixelLayout::rgb);
}

TEST_F(ImageActionsTest, ResizesToTheLongerSide) {
  EXPECT_THAT(run("resize", {"a.png", "b.jpeg"}, {{"maxDimension", 30}}),
              ElementsAre("a.png", "b.png"));
  EXPECT_EQ(decoded("a.png").width, 30);
  EXPECT_EQ(decoded("a.png").height, 20);
  EXPECT_EQ(decoded("b.png").height, 30);
  EXPECT_EQ(failureOf("resize", {"a.png"}, {{"maxDimension", 15}}),
            "Could not decode the image. Use a dimension between 16 and 16,384 pixels.");
}

TEST_F(ImageActionsTest, NeverReplacesAnInput) {
  const std::string before = support::contentOf(sources_ / "a.png");
  const Job job = {"image_png", {sources_ / "a.png"}, std::nullopt, {}, token_, {}};
  EXPECT_THAT(ConversionEngine().run(job), ElementsAre(sources_ / "a-converted-2.png"));
  EXPECT_EQ(support::contentOf(sources_ / "a.png"), before);
}

TEST_F(ImageActionsTest, CombinesImagesAtOnePointAPixel) {
  EXPECT_THAT(run("images_pdf", {"b.jpeg", "a.png"}), ElementsAre("b-combined.pdf"));
  const auto document = pdfLibrary().open(results_ / "b-combined.pdf");
  ASSERT_EQ(document->pageCount(), 2);
  EXPECT_EQ(document->geometry(0).width, 40);
  EXPECT_EQ(document->geometry(0).height, 60);
  EXPECT_EQ(document->geometry(1).width, 60);
  EXPECT_EQ(document->geometry(1).height, 40);
}

TEST_F(ImageActionsTest, LimitsTheCombinedArea) {
  sources_.write("large.png", support::pngHeader(8000, 5000));
  EXPECT_EQ(failureOf("images_pdf", {"large.png", "a.png"}),
            "Combined images exceed 40 megapixels. Resize them first or combine fewer images.");
}

TEST_F(ImageActionsTest, RefusesOtherKinds) {
  makePdf("c.pdf", 1);
  EXPECT_EQ(failureOf("images_pdf", {"a.png", "c.pdf"}),
            "All selected files must be images for this action.");
  EXPECT_EQ(failureOf("merge_pdf", {"c.pdf", "a.png"}),
            "All selected files must be PDFs for this action.");
}

TEST_F(ImageActionsTest, TakesPhotosWithoutTheirLastMarker) {
  const std::string whole = support::contentOf(sources_ / "b.jpeg");
  sources_.write("open.jpeg", whole.substr(0, whole.size() - 2));
  // In one go, scaled by the complete decoder, and as it is.
  for (const std::string action : {"image_png", "resize", "images_pdf"}) {
    const Value::Map options = {{"maxDimension", 30}};
    const std::string fromWhole = run(action, {"b.jpeg"}, options).front();
    const std::string fromOpen = run(action, {"open.jpeg"}, options).front();
    if (action == "images_pdf") {
      EXPECT_EQ(pdfLibrary().open(results_ / fromOpen)->pageCount(), 1);
    } else {
      EXPECT_EQ(decoded(fromOpen).pixels, decoded(fromWhole).pixels) << action;
    }
  }
  // The end is there, what should come before it is not.
  sources_.write("gap.jpeg", whole.substr(0, whole.size() / 2) + "\xFF\xD9");
  for (const std::string action : {"image_png", "resize"}) {
    EXPECT_EQ(failureOf(action, {"gap.jpeg"}, {{"maxDimension", 30}}),
              "This image is cut short. Get a complete copy of it.");
  }
}

TEST_F(ImageActionsTest, RefusesDamagedPicturesInEveryAction) {
  const std::string whole = support::contentOf(sources_ / "b.jpeg");
  sources_.write("cut.jpeg", whole.substr(0, whole.size() / 2));
  sources_.write("cut.bmp", "BM");  // a right signature
  for (const std::string action : {"image_png", "image_jpeg", "resize", "images_pdf"}) {
    for (const std::string file : {"cut.jpeg", "cut.bmp"}) {
      if (action == "images_pdf" && file == "cut.bmp") {
        continue;  // its size alone is too large to be combined
      }
      EXPECT_EQ(failureOf(action, {"a.png", file}),
                file == "cut.jpeg"
                    ? "This image is cut short. Get a complete copy of it."
                    : "Could not decode the image. Use a dimension between 16 and 16,384 pixels.")
          << action << " of " << file;
      EXPECT_TRUE(results_.names().empty()) << action << " of " << file;
    }
  }
}

}  // namespace
}  // namespace tolvane
