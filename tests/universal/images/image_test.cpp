#include "universal/images/image.h"

#include <algorithm>

#include <gmock/gmock.h>

#include "tests/support/failure_text.h"
#include "tests/support/pictures.h"
#include "tests/support/universal_fixture.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;
using support::failureText;
using ::testing::IsEmpty;
using Arguments = std::vector<std::string>;

using ImageTest = support::UniversalFixture;

Arguments withLimits(const std::string& arguments) {
  return support::words(
      "-limit memory 128MiB -limit map 256MiB -limit disk 512MiB -limit time 60 " + arguments);
}

TEST_F(ImageTest, GivesTheWholeCommandLine) {
  standIn("magick", "echo \"$MAGICK_TEMPORARY_PATH\" > temporary");
  const std::string flattening = "-background white -alpha remove -alpha off ";
  for (const auto& [name, flattened] : {std::pair("result.jpg", flattening),
                                        std::pair("result.BMP", flattening),
                                        std::pair("result.heic", flattening),
                                        std::pair("result.jpeg", std::string()),
                                        std::pair("result.avif", std::string()),
                                        std::pair("result.png", std::string())}) {
    const fs::path output = workspace() / name;
    image("/in/ab.png", output, {"-negate", "a b"}, {{"quality", 0.57}}, withStandIns());
    // 0.57 * 100 is a little below 57.
    Arguments expected = withLimits("/in/ab.png[0] -auto-orient -negate AB " + flattened +
                                    "-strip -quality 56 " + output.string());
    std::replace(expected.begin(), expected.end(), std::string("AB"), std::string("a b"));
    EXPECT_EQ(runsOf("magick").back(), expected);
    EXPECT_EQ(support::contentOf(workspace() / "temporary"), workspace().string() + "\n");
  }
}

TEST_F(ImageTest, GivesALargePictureTheRoomThatItTakes) {
  standIn("magick");
  const fs::path large = folder_.write("large.png", support::pngHeader(10'000, 8'000));
  image(large, workspace() / "o.png", {}, {}, withStandIns());
  const Arguments told = runsOf("magick").back();
  EXPECT_EQ(Arguments(told.begin(), told.begin() + 12),
            support::words("-limit memory 128MiB -limit map 1832MiB -limit disk 1832MiB "
                           "-limit time 60"));
}

TEST_F(ImageTest, SaysWhichLimitWasReached) {
  const std::string tooLarge =
      "This image takes more memory than the local engine may use. Resize it first.";
  const std::pair<const char*, std::string> cases[] = {
      {"convert: cache resources exhausted 'a.jpg' @ error/cache.c/OpenPixelCache/4119.", tooLarge},
      {"convert: width or height exceeds limit 'a.png' @ error/cache.c/OpenPixelCache/3912.",
       tooLarge},
      {"convert: time limit exceeded 'a.jpg' @ error/cache.c/GetImagePixelCache/1761.",
       "The local engine timed out. Try a smaller file or selection."},
      {"convert: Premature end of JPEG file 'a.jpg' @ warning/jpeg.c/JPEGWarningHandler/399.",
       "This image is cut short. Get a complete copy of it."},
      {"convert: no decode delegate for this image format",
       "magick could not process this file (exit 1). Check that the file is valid and the selected "
       "options fit its content."}};
  for (const auto& [printed, sentence] : cases) {
    standIn("magick", "echo \"" + std::string(printed) + "\"; exit 1");
    const auto run = [&] { image("/in.jpg", workspace() / "o.png", {}, {}, withStandIns()); };
    EXPECT_EQ(failureText([&] { return run(), 0; }), sentence);
  }
}

TEST_F(ImageTest, ChecksTheQualityBeforeItRuns) {
  standIn("magick");
  for (const Value& quality : {Value(0.09), Value(1.01), Value("nan"), Value("2"), Value(false)}) {
    const auto run = [&] {
      image("/in.png", workspace() / "o.png", {}, {{"quality", quality}}, withStandIns());
    };
    EXPECT_EQ(failureText(run), "Quality must be between 0.1 and 1.0.");
  }
  EXPECT_THAT(runsOf("magick"), IsEmpty());
}

TEST_F(ImageTest, NormalizesIntoFreshFiles) {
  standIn("magick");
  const fs::path first = normalized("/in.heic", withStandIns());
  const fs::path second = normalized("/in.heic", withStandIns());
  EXPECT_NE(first, second);
  EXPECT_EQ(first.parent_path(), workspace());
  EXPECT_THAT(first.filename().string(),
              ::testing::MatchesRegex("normalized-[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}.png"));
  EXPECT_EQ(runsOf("magick").front(),
            withLimits("/in.heic[0] -auto-orient -strip -quality 90 " + first.string()));
}

}  // namespace

}  // namespace tolvane::UniversalEngine
