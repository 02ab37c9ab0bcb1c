#include <ostream>

#include <fmt/format.h>
#include <gmock/gmock.h>

#include "tests/support/failure_text.h"
#include "tests/support/universal_fixture.h"
#include "universal/combined/combined.h"
#include "universal/media/media_probe.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;
using support::failureText;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using Arguments = std::vector<std::string>;

class JoinedVideoTest : public support::UniversalFixture {
 protected:
  /// A file for which the stand-in of ffprobe prints these streams.
  [[nodiscard]] FileInfo video(const std::string& name, const std::string& streams) const {
    static_cast<void>(folder_.write(name + ".json", "{\"streams\":[" + streams + "]}"));
    return {folder_ / name, FileKind::video, ""};
  }

  void installStandIns() const {
    standIn("ffprobe", "cat \"$output.json\"");
    standIn("ffmpeg");
  }

  static Arguments clipArguments(const Arguments& inputs,
                                 const std::string& audio,
                                 const std::string& size,
                                 const fs::path& clip) {
    Arguments all = {"-hide_banner",
                     "-loglevel",
                     "error",
                     "-nostdin",
                     "-y",
                     "-protocol_whitelist",
                     "file,pipe",
                     "-i"};
    all.insert(all.end(), inputs.begin(), inputs.end());
    const std::string filter = fmt::format(
        "scale={0}:force_original_aspect_ratio=decrease,pad={0}:(ow-iw)/2:(oh-ih)/2,setsar=1",
        size);
    const Arguments rest = {"-map",  "0:v:0",      "-map",    audio,  "-shortest", "-vf",
                            filter,  "-r",         "30",      "-c:v", "libx264",   "-preset",
                            "fast",  "-pix_fmt",   "yuv420p", "-c:a", "aac",       "-ar",
                            "48000", "-ac",        "2",       "-b:a", "192k",      "-map_metadata",
                            "-1",    clip.string()};
    all.insert(all.end(), rest.begin(), rest.end());
    return all;
  }
};

TEST_F(JoinedVideoTest, WritesClipsOfOneFormatAndJoinsThem) {
  installStandIns();
  const FileInfo loud = video("a b.mov",
                              R"({"codec_type":"audio"},
                                 {"codec_type":"video","width":3840,"height":2160})");
  const FileInfo silent = video("b.mp4", R"({"codec_type":"video","width":1280,"height":720})");
  EXPECT_THAT(combined({loud, silent}, "join", {}, withStandIns()),
              ElementsAre(workspace() / "result-joined.mp4"));

  EXPECT_THAT(
      runsOf("ffmpeg"),
      ElementsAre(clipArguments({loud.url}, "0:a:0", "1920:1080", workspace() / "clip-0.mp4"),
                  clipArguments({silent.url, "-f", "lavfi", "-i", "anullsrc=r=48000:cl=stereo"},
                                "1:a:0",
                                "1920:1080",
                                workspace() / "clip-1.mp4"),
                  ElementsAre("-hide_banner",
                              "-loglevel",
                              "error",
                              "-nostdin",
                              "-y",
                              "-f",
                              "concat",
                              "-safe",
                              "1",
                              "-i",
                              workspace() / "join.txt",
                              "-c",
                              "copy",
                              workspace() / "result-joined.mp4")));
  EXPECT_EQ(support::contentOf(workspace() / "join.txt"), "file 'clip-0.mp4'\nfile 'clip-1.mp4'");
}

struct FrameCase {
  const char* label;
  const char* streams;
  const char* size;
};
void PrintTo(const FrameCase& c, std::ostream* out) {
  *out << c.label;
}
class JoinedFrameTest : public JoinedVideoTest, public ::testing::WithParamInterface<FrameCase> {};

TEST_P(JoinedFrameTest, FollowsTheFirstVideo) {
  installStandIns();
  const FileInfo first = video("first", GetParam().streams);
  static_cast<void>(combined({first, first}, "join", {}, withStandIns()));
  EXPECT_THAT(runsOf("ffmpeg").front(),
              ::testing::Contains(HasSubstr(std::string("scale=") + GetParam().size + ":force")));
}

INSTANTIATE_TEST_SUITE_P(
    Frames,
    JoinedFrameTest,
    ::testing::Values(
        FrameCase{"odd", R"({"codec_type":"video","width":1279,"height":719})", "1278:718"},
        FrameCase{"tall", R"({"codec_type":"video","width":1080,"height":1920})", "1080:1080"},
        FrameCase{"audio only", R"({"codec_type":"audio","width":64,"height":64})", "1280:720"},
        FrameCase{"width unknown", R"({"codec_type":"video","width":"64","height":64})", "1280:64"},
        FrameCase{"turned",
                  R"({"codec_type":"video","width":640,"height":480,
                      "side_data_list":[{"rotation":-90}]})",
                  "480:640"},
        FrameCase{"turned, width unknown",
                  R"({"codec_type":"video","height":64,"side_data_list":[{"rotation":90}]})",
                  "64:720"},
        FrameCase{"the first of two",
                  R"({"codec_type":"video","width":64,"height":48},
                     {"codec_type":"video","width":32,"height":32})",
                  "64:48"},
        FrameCase{"no streams", "", "1280:720"}));

TEST_F(JoinedVideoTest, RefusesOneVideoWithoutProbingIt) {
  installStandIns();
  EXPECT_EQ(failureText([&] { return combined({video("a", "")}, "join", {}, withStandIns()); }),
            "Choose at least two videos.");
  EXPECT_THAT(runsOf("ffprobe"), IsEmpty());
}

TEST_F(JoinedVideoTest, EndsWithTheFirstClipThatFails) {
  installStandIns();
  standIn("ffmpeg", "case $output in *clip-1.mp4) exit 1;; esac");
  const FileInfo clip = video("a", "");
  EXPECT_THAT(failureText([&] {
                return combined({clip, clip, clip}, "join", {}, withStandIns());
              }),
              ::testing::StartsWith("ffmpeg could not process this file (exit 1)."));
  EXPECT_EQ(runsOf("ffmpeg").size(), 2U);
  EXPECT_FALSE(fs::exists(workspace() / "join.txt"));
}

TEST_F(JoinedVideoTest, PlaysOneAfterAnother) {
  const JobContext job = withEngines();
  const fs::path loud = folder_ / "it's [0] 50%d.mp4";
  const fs::path silent = folder_ / "silent.mkv";
  const auto make = [&](Arguments arguments, const fs::path& file) {
    arguments.push_back(file.string());
    static_cast<void>(job.in(folder_.path()).run("ffmpeg", std::move(arguments), 60));
  };
  make({"-f",
        "lavfi",
        "-i",
        "testsrc=s=65x49:d=1",
        "-f",
        "lavfi",
        "-i",
        "sine=d=1",
        "-pix_fmt",
        "yuv444p"},
       loud);
  make({"-f", "lavfi", "-i", "testsrc=s=128x32:d=0.5"}, silent);

  const auto results =
      combined({{loud, FileKind::video, ""}, {silent, FileKind::video, ""}}, "join", {}, job);
  const Value::Map probed = probe(results.front(), job);
  const auto size = frameSize(probed);
  ASSERT_TRUE(size.has_value());
  EXPECT_EQ(size->width, 64);
  EXPECT_EQ(size->height, 48);
  EXPECT_TRUE(hasAudio(probed));
  const std::string* seconds = valueAt(probed, "format")["duration"].text();
  ASSERT_NE(seconds, nullptr);
  EXPECT_NEAR(std::stod(*seconds), 1.5, 0.1);
}

}  // namespace

}  // namespace tolvane::UniversalEngine
