
#include <tuple>

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
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class JoinedVideoTest : public support::UniversalFixture {
 protected:
  /// A file for which the stand-in of ffprobe prints these streams.
  [[nodiscard]] FileInfo video(const std::string& name, const std::string& streams) const {
    (void)folder_.write("work/" + name + ".json", "{\"streams\":[" + streams + "]}");
    return {workspace() / name, FileKind::video, ""};
  }

  void installStandIns() const {
    standIn("ffprobe", "cat \"$output.json\"");
    standIn("ffmpeg");
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

  const std::string start = "-hide_banner -loglevel error -nostdin -y ";
  const std::string frame =
      " -shortest -vf scale=1920:1080:force_original_aspect_ratio=decrease,"
      "pad=1920:1080:(ow-iw)/2:(oh-ih)/2,setsar=1 -r 30 -c:v libx264 -preset fast -pix_fmt yuv420p "
      "-c:a aac -ar 48000 -ac 2 -b:a 192k -map_metadata -1 WORK/clip-";
  std::string only = start;
  for (const std::string& argument : UniversalEngine::allowedSources()) {
    only += argument + " ";
  }
  only += "-i ";
  EXPECT_THAT(
      linesOf("ffmpeg"),
      ElementsAre(only + "'WORK/a b.mov' -map 0:v:0 -map 0:a:0" + frame + "0.mp4",
                  only + "WORK/b.mp4 -f lavfi -i anullsrc=r=48000:cl=stereo -map 0:v:0 -map 1:a:0" +
                      frame + "1.mp4",
                  start + "-f concat -safe 1 -i WORK/join.txt -c copy WORK/result-joined.mp4"));
  EXPECT_EQ(support::contentOf(workspace() / "join.txt"), "file 'clip-0.mp4'\nfile 'clip-1.mp4'");
}

const std::tuple<std::string, std::string, std::string> joinedFrameCases[] = {
    {"odd", R"({"codec_type":"video","width":1279,"height":719})", "1278:718"},
    {"tall", R"({"codec_type":"video","width":1080,"height":1920})", "1080:1080"},
    {"audio only", R"({"codec_type":"audio","width":64,"height":64})", "1280:720"},
    {"width unknown", R"({"codec_type":"video","width":"64","height":64})", "1280:64"},
    {"turned",
     R"({"codec_type":"video","width":640,"height":480,
                      "side_data_list":[{"rotation":-90}]})",
     "480:640"},
    {"turned, width unknown",
     R"({"codec_type":"video","height":64,"side_data_list":[{"rotation":90}]})",
     "64:720"},
    {"the first of two",
     R"({"codec_type":"video","width":64,"height":48},
                     {"codec_type":"video","width":32,"height":32})",
     "64:48"},
    {"no streams", "", "1280:720"},
};

TEST_F(JoinedVideoTest, FollowsTheFirstVideo) {
  for (const auto& [label, streams, size] : joinedFrameCases) {
    SCOPED_TRACE(label);
    installStandIns();
    const FileInfo first = video("first", streams);
    (void)combined({first, first}, "join", {}, withStandIns());
    EXPECT_THAT(runsOf("ffmpeg").end()[-2],
                ::testing::Contains(HasSubstr(std::string("scale=") + size + ":force")));
  }
}

TEST_F(JoinedVideoTest, NeedsTwoVideosAndEndsWithTheFirstThatFails) {
  installStandIns();
  standIn("ffmpeg", "case $output in *clip-1.mp4) exit 1;; esac");
  const FileInfo clip = video("a", "");
  const auto failure = [&](const std::vector<FileInfo>& clips) {
    return failureText([&] { return combined(clips, "join", {}, withStandIns()); });
  };
  EXPECT_EQ(failure({clip}), "Choose at least two videos.");
  EXPECT_THAT(runsOf("ffprobe"), IsEmpty());
  EXPECT_THAT(failure({clip, clip, clip}),
              ::testing::StartsWith("ffmpeg could not process this file (exit 1)."));
  EXPECT_EQ(runsOf("ffmpeg").size(), 2U);
  EXPECT_FALSE(fs::exists(workspace() / "join.txt"));
}

TEST_F(JoinedVideoTest, PlaysOneAfterAnotherWhateverTheFolderIsCalled) {
  const fs::path folder = workspace() / R"(a#b?c=d&e 50%d%20 "f" 'g'\h: i)";
  fs::create_directory(folder);
  const JobContext job = withEngines().in(folder);
  const fs::path loud = folder_ / "it's [0] 50%d.mp4";
  const fs::path silent = folder_ / "silent.mkv";
  const auto make = [&](const std::string& arguments, const fs::path& file) {
    std::vector<std::string> all = support::words(arguments);
    all.push_back(file.string());
    (void)job.in(folder_.path()).run("ffmpeg", all, 60);
  };
  make("-f lavfi -i testsrc=s=65x49:d=1 -f lavfi -i sine=d=1 -pix_fmt yuv444p", loud);
  make("-f lavfi -i testsrc=s=128x32:d=0.5", silent);

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
