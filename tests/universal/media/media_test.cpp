#include "universal/media/media.h"

#include <ostream>

#include "platform/images/image_decoder.h"
#include "tests/support/failure_text.h"
#include "tests/universal/media/media_fixture.h"
#include "universal/media/media_tools.h"

namespace tolvane {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;

/// Coders add up to a frame or a block, which no player shows.
constexpr double tolerance = 0.15;  // seconds

struct ResultCase {
  const char* id;  ///< target of a conversion, or tool
  const char* streams;
  double duration = 1.2;
  Value::Map options = {};
};

void PrintTo(const ResultCase& c, std::ostream* out) {
  *out << c.id << " gives " << c.streams;
}

class MediaResultTest : public support::MediaFixture,
                        public ::testing::WithParamInterface<ResultCase> {
 protected:
  void expectResult(const fs::path& result) const {
    const Content content = described(result);
    EXPECT_EQ(content.streams, GetParam().streams);
    EXPECT_NEAR(content.duration, GetParam().duration, tolerance);
    EXPECT_THAT(support::contentOf(result), ::testing::Not(::testing::HasSubstr("Secret")));
  }

  void expectToolResult(const FileInfo& input) const {
    const auto results =
        UniversalEngine::mediaTool(input, GetParam().id, GetParam().options, context_);
    ASSERT_EQ(results.size(), 1U);
    EXPECT_EQ(results.front().stem(), std::string("result-") + GetParam().id);
    expectResult(results.front());
  }
};

class MediaConversionTest : public MediaResultTest {};

TEST_P(MediaConversionTest, MakesWhatWasAskedFor) {
  const std::string target = GetParam().id;
  const fs::path output = context_.workspace / ("result." + target);
  UniversalEngine::media(film(), target, {}, output, GetParam().options, context_);
  expectResult(output);
}

INSTANTIATE_TEST_SUITE_P(Targets,
                         MediaConversionTest,
                         ::testing::Values(ResultCase{"mp4", "h264 160x120, aac 2"},
                                           ResultCase{"mov", "h264 160x120, aac 2"},
                                           ResultCase{"gif", "gif 720x540"},
                                           ResultCase{"mp3", "mp3 2"},
                                           ResultCase{"m4a", "aac 2"},
                                           ResultCase{"wav", "pcm_s16le 2"},
                                           ResultCase{"aiff", "pcm_s16be 2"},
                                           ResultCase{"flac", "flac 2"},
                                           ResultCase{"ogg", "vorbis 2"},
                                           ResultCase{"opus", "opus 2"}));

class FilmToolTest : public MediaResultTest {};

TEST_P(FilmToolTest, MakesWhatWasAskedFor) {
  expectToolResult(film());
}

INSTANTIATE_TEST_SUITE_P(
    Tools,
    FilmToolTest,
    ::testing::Values(
        ResultCase{"compress", "h264 160x120, aac 2", 1.2, {{"quality", 0.1}}},
        ResultCase{"mute", "h264 160x120"},
        ResultCase{"trim", "h264 160x120, aac 2", 0.5, {{"start", 0.3}, {"end", 0.8}}},
        ResultCase{"crop", "h264 100x60, aac 2", 1.2, {{"x", 60}, {"y", 60}, {"height", 60}}},
        ResultCase{"redact", "h264 160x120, aac 2", 1.2, {{"width", 101}}},
        ResultCase{"speed", "h264 160x120, aac 2", 0.6, {{"speed", 2}}},
        ResultCase{"snapshot", "png 160x120", 0, {{"start", 1}}}));

class SongToolTest : public MediaResultTest {};

TEST_P(SongToolTest, MakesWhatWasAskedFor) {
  expectToolResult(song());
}

INSTANTIATE_TEST_SUITE_P(
    Tools,
    SongToolTest,
    ::testing::Values(ResultCase{"compress", "aac 1"},
                      ResultCase{"normalize", "aac 1"},
                      ResultCase{"channels", "aac 2", 1.2, {{"channels", 2}}},
                      ResultCase{"bleep", "aac 1", 1.2, {{"start", 0.2}, {"end", 0.7}}},
                      ResultCase{"trim", "aac 1", 0.7, {{"start", 0.5}}},
                      ResultCase{"speed", "aac 1", 0.8},
                      ResultCase{"visualize", "png 1600x400", 0}));

class MediaTest : public support::MediaFixture {
 protected:
  Content contentAfter(std::string_view tool, const FileInfo& input) const {
    return described(UniversalEngine::mediaTool(input, tool, {}, context_).front());
  }
};

TEST_F(MediaTest, CutsIntoSegmentsThatStartAtZero) {
  const auto segments = UniversalEngine::mediaTool(film(), "split", {{"seconds", "0.5"}}, context_);
  const fs::path folder = context_.workspace / "segments";
  ASSERT_THAT(
      segments,
      ElementsAre(
          folder / "segment-000.mp4", folder / "segment-001.mp4", folder / "segment-002.mp4"));
  EXPECT_NEAR(described(segments[1]).duration, 0.5, tolerance);
  EXPECT_NEAR(described(segments[2]).duration, 0.2, tolerance);
  EXPECT_EQ(described(segments[2]).streams, "h264 160x120, aac 2");
}

TEST_F(MediaTest, CutsSongsToo) {
  EXPECT_EQ(UniversalEngine::mediaTool(song(), "split", {{"seconds", 0.5}}, context_).size(), 3U);
}

TEST_F(MediaTest, DropsCoversOfSongs) {
  film("cover.mp4");
  const FileInfo covered = make("covered.m4a",
                                "-i cover.mp4 -map 0:a -map 0:v -frames:v 1 -c:v mjpeg -q:v 2 "
                                "-disposition:v attached_pic");
  ASSERT_EQ(described(covered.url).streams, "aac 2, mjpeg 160x120");
  EXPECT_EQ(contentAfter("speed", covered).streams, "aac 2");
}

TEST_F(MediaTest, KeepsSilentFilmsSilent) {
  const FileInfo input = silentFilm();
  EXPECT_EQ(contentAfter("compress", input).streams, "h264 160x120");
  EXPECT_EQ(contentAfter("speed", input).streams, "h264 160x120");
}

TEST_F(MediaTest, HidesAndKeepsWhatIsSeenOfATurnedFilm) {
  make("flat.mp4", "-f lavfi -i color=white:size=160x120:rate=10:duration=0.5 -pix_fmt yuv420p");
  const FileInfo turned = make("turned.mp4", "-i flat.mp4 -c copy -metadata:s:v rotate=90");
  const Value::Map bottom = {{"x", 0}, {"y", 130}, {"width", 120}, {"height", 30}};
  const auto cropped = UniversalEngine::mediaTool(turned, "crop", bottom, context_);
  EXPECT_EQ(described(cropped.front()).streams, "h264 120x30");

  const auto redacted = UniversalEngine::mediaTool(turned, "redact", bottom, context_);
  const fs::path still = context_.workspace / "still.png";
  context_.run("ffmpeg",
               {"-v", "error", "-i", redacted.front().string(), "-frames:v", "1", still.string()},
               60);
  const Bitmap seen = imageDecoder().decode(still, 160);
  ASSERT_EQ(seen.height, 160);
  const auto brightness = [&seen](int y) { return seen.row(y)[180]; };
  EXPECT_LT(brightness(135), 40);
  EXPECT_LT(brightness(155), 40);
  EXPECT_GT(brightness(120), 215);

  const Value::Map outside = {{"x", 100}, {"y", 0}, {"width", 60}, {"height", 60}};
  EXPECT_EQ(support::failureText(
                [&] { return UniversalEngine::mediaTool(turned, "redact", outside, context_); }),
            "The rectangle must fit within the video frame.");
}

TEST_F(MediaTest, TakesShortAndUnevenlyTimedFilms) {
  EXPECT_NEAR(contentAfter("compress", film("short.mp4", "0.1")).duration, 0.1, tolerance);
  const FileInfo uneven = make("uneven.mkv",
                               "-f lavfi -i testsrc=size=64x64:rate=10:duration=1,"
                               "select='not(eq(n,3)+eq(n,4)+eq(n,5))' -vsync vfr");
  EXPECT_NEAR(contentAfter("compress", uneven).duration, 1, tolerance);
}

class NamesTest : public support::MediaFixture,
                  public ::testing::WithParamInterface<const char*> {};

TEST_P(NamesTest, OfInputsAndFoldersDoNotMatter) {
  const JobContext context = context_.in(folder_ / GetParam());
  fs::create_directory(context.workspace);
  const FileInfo input = film(std::string(GetParam()) + ".mp4", "0.2");
  const auto pictures = UniversalEngine::mediaTool(input, "snapshot", {}, context);
  ASSERT_THAT(pictures, ElementsAre(context.workspace / "result-snapshot.png"));
  EXPECT_TRUE(support::contentOf(pictures.front()).starts_with("\x89PNG"));
  EXPECT_THAT(UniversalEngine::mediaTool(input, "split", {}, context),
              ElementsAre(context.workspace / "segments/segment-000.mp4"));
}

INSTANTIATE_TEST_SUITE_P(
    Odd,
    NamesTest,
    ::testing::Values("a%d b", "%03d%%", "concat:a|b", "a:b", "quote' \"[x]\\ $HOME"));

}  // namespace
}  // namespace tolvane
