#include "universal/media/media.h"

#include <utility>

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
  std::string id;  ///< target of a conversion, or tool
  std::string streams;
  double duration = 1.2;
  Value::Map options = {};
};

const ResultCase targets[] = {
    {"mp4", "h264 160x120, aac 2"},
    {"mov", "h264 160x120, aac 2"},
    {"gif", "gif 720x540"},
    {"mp3", "mp3 2"},
    {"m4a", "aac 2"},
    {"wav", "pcm_s16le 2"},
    {"aiff", "pcm_s16be 2"},
    {"flac", "flac 2"},
    {"ogg", "vorbis 2"},
    {"opus", "opus 2"},
};
const std::vector<ResultCase> filmTools = {
    {"compress", "h264 160x120, aac 2", 1.2, {{"quality", 0.1}}},
    {"mute", "h264 160x120"},
    {"trim", "h264 160x120, aac 2", 0.5, {{"start", 0.3}, {"end", 0.8}}},
    {"crop", "h264 100x60, aac 2", 1.2, {{"x", 60}, {"y", 60}, {"height", 60}}},
    {"redact", "h264 160x120, aac 2", 1.2, {{"width", 101}}},
    {"speed", "h264 160x120, aac 2", 0.6, {{"speed", 2}}},
    {"snapshot", "png 160x120", 0, {{"start", 1}}},
};
const std::vector<ResultCase> songTools = {
    {"compress", "aac 1"},
    {"normalize", "aac 1"},
    {"channels", "aac 2", 1.2, {{"channels", 2}}},
    {"bleep", "aac 1", 1.2, {{"start", 0.2}, {"end", 0.7}}},
    {"trim", "aac 1", 0.7, {{"start", 0.5}}},
    {"speed", "aac 1", 0.8},
    {"visualize", "png 1600x400", 0},
};

class MediaTest : public support::MediaFixture {
 protected:
  void expectResult(const fs::path& result, const ResultCase& expected) const {
    const Content content = described(result);
    EXPECT_EQ(content.streams, expected.streams) << result;
    EXPECT_NEAR(content.duration, expected.duration, tolerance) << result;
    EXPECT_THAT(support::contentOf(result), ::testing::Not(::testing::HasSubstr("Secret")));
  }

  Content contentAfter(std::string_view tool, const FileInfo& input) const {
    return described(UniversalEngine::mediaTool(input, tool, {}, context_).front());
  }
};

TEST_F(MediaTest, ConvertsToEveryTarget) {
  const FileInfo input = film();
  for (const ResultCase& c : targets) {
    const fs::path output = context_.workspace / ("result." + c.id);
    UniversalEngine::media(input, c.id, {}, output, c.options, context_);
    expectResult(output, c);
  }
}

TEST_F(MediaTest, WorksWithEveryTool) {
  for (const auto& [input, tools] : {std::pair(film(), filmTools), std::pair(song(), songTools)}) {
    for (const ResultCase& c : tools) {
      const auto results = UniversalEngine::mediaTool(input, c.id, c.options, context_);
      ASSERT_EQ(results.size(), 1U);
      EXPECT_EQ(results.front().stem(), "result-" + c.id);
      expectResult(results.front(), c);
    }
  }
}

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
  fs::remove_all(folder);
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

TEST_F(MediaTest, TakesInputsAndFoldersOfAnyName) {
  for (const std::string name : {"a%d b", "%03d%%", "concat:a|b", "a:b", "quote' \"[x]\\ $HOME"}) {
    const JobContext context = context_.in(folder_ / name);
    fs::create_directory(context.workspace);
    const FileInfo input = film(name + ".mp4", "0.2");
    const auto pictures = UniversalEngine::mediaTool(input, "snapshot", {}, context);
    ASSERT_THAT(pictures, ElementsAre(context.workspace / "result-snapshot.png"));
    EXPECT_TRUE(support::contentOf(pictures.front()).starts_with("\x89PNG"));
    EXPECT_THAT(UniversalEngine::mediaTool(input, "split", {}, context),
                ElementsAre(context.workspace / "segments/segment-000.mp4"));
  }
}

}  // namespace
}  // namespace tolvane
