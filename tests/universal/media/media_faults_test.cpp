#include <chrono>
#include <fstream>
#include <thread>

#include "engine/json/value_json.h"
#include "engine/primitives/conversion_failure.h"
#include "tests/support/eventually.h"
#include "tests/support/failure_text.h"
#include "tests/universal/media/media_fixture.h"
#include "universal/media/media.h"
#include "universal/media/media_tools.h"

namespace tolvane {
namespace {

namespace fs = std::filesystem;
using support::failureText;
using support::words;
using ::testing::ElementsAre;

std::string cannotProcess(const std::string& engine) {
  return engine +
         " could not process this file (exit 1). Check that the file is valid and the selected "
         "options fit its content.";
}

class MediaFaultsTest : public support::MediaFixture {
 protected:
  std::string failureOf(const FileInfo& input, std::string_view tool, Value::Map options = {}) {
    return failureText([&] { return UniversalEngine::mediaTool(input, tool, options, context_); });
  }

  /// The entries of the workspace but for what the runner keeps there.
  std::vector<std::string> written() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(context_.workspace)) {
      if (entry.path().filename() != ".engine-tmp") {
        names.push_back(entry.path().filename().string());
      }
    }
    return names;
  }
};

TEST_F(MediaFaultsTest, ChecksBeforeAnythingIsWritten) {
  const FileInfo input = silentFilm();
  const fs::path output = context_.workspace / "result.mp3";
  EXPECT_EQ(failureText([&] { UniversalEngine::media(input, "mp3", {}, output, {}, context_); }),
            "This media file has no audio track to export.");
  EXPECT_EQ(failureOf(input, "crop", {{"x", 100}}),
            "The rectangle must fit within the video frame.");
  EXPECT_THAT(written(), ElementsAre());
}

TEST_F(MediaFaultsTest, LeavesUnsuitableFilmsToTheEnginesOwnSentence) {
  EXPECT_EQ(
      failureOf(make("odd.mkv", "-f lavfi -i testsrc=size=63x47:rate=10:duration=0.3 -c:v ffv1"),
                "compress"),
      cannotProcess("ffmpeg"));
  EXPECT_EQ(failureOf(silentFilm(), "visualize"), cannotProcess("ffmpeg"));
}

TEST_F(MediaFaultsTest, RefusesFilesThatAreNoMedia) {
  sources_.write("text.mp4", "no film");
  sources_.write("empty.mp4", "");
  const FileInfo cut = film("cut.mp4");
  fs::resize_file(cut.url, fs::file_size(cut.url) / 2);
  for (const char* name : {"text.mp4", "empty.mp4", "cut.mp4", "missing.mp4"}) {
    EXPECT_EQ(failureOf(info(name), "compress"), cannotProcess("ffprobe")) << name;
  }
  EXPECT_EQ(failureOf(info("text.mp4"), "split"), cannotProcess("ffmpeg"));
}

TEST_F(MediaFaultsTest, KeepsWhatIsLeftOfACutFilm) {
  const FileInfo input = make("left.mkv",
                              "-f lavfi -i testsrc=size=160x120:rate=10:duration=2 "
                              "-f lavfi -i sine=duration=2");
  fs::resize_file(input.url, fs::file_size(input.url) / 2);
  EXPECT_EQ(failureOf(input, "compress"), "(no failure)");
}

TEST_F(MediaFaultsTest, LooksPastWhatTheEngineRemarksOnDamage) {
  const FileInfo input =
      make("begun-late.ts", "-f lavfi -i testsrc=size=160x120:rate=10:duration=2 -c:v mpeg2video");
  std::string content = support::contentOf(input.url);
  std::ofstream(input.url, std::ios::binary) << content.substr(776);  // not at a packet's start
  EXPECT_EQ(failureOf(input, "compress"), "(no failure)");
}

TEST_F(MediaFaultsTest, EndsATranscodeAtOnce) {
  const FileInfo input =
      make("long.mp4", "-f lavfi -i testsrc=size=64x64:rate=10:duration=600 -preset ultrafast");
  std::chrono::steady_clock::time_point cancelled;
  std::thread user([&] {
    // The output appears when the engine has begun.
    support::eventually([this] { return fs::exists(context_.workspace / "result-compress.mp4"); });
    cancelled = std::chrono::steady_clock::now();
    token_.cancel();
  });
  EXPECT_EQ(failureOf(input, "compress", {{"quality", 1}}),
            ConversionFailure::cancelled().errorDescription());
  const auto end = std::chrono::steady_clock::now();
  user.join();
  EXPECT_LT(std::chrono::duration<double>(end - cancelled).count(), 1.5);
}

class StandInTest : public support::MediaFixture {
 protected:
  Value::Map probed(const std::string& script) const {
    standIn("ffprobe", script);
    return UniversalEngine::probe("/clips/a.mp4", withStandIns());
  }
};

TEST_F(StandInTest, HearTheWholeCommandLine) {
  standIn("ffprobe", "echo '{\"streams\":[{\"codec_type\":\"audio\"}]}'");
  standIn("ffmpeg");
  const fs::path output = workspace() / "result.mp3";
  const std::string sources =
      "-protocol_whitelist file,pipe -format_whitelist aac,ac3,aiff,amr,ape,asf,au,avi,caf,eac3"
      ",flac,flv,gif,loas,m4v,matroska,mov,mp3,mpeg,mpegts,ogg,tta,w64,wav,wv";
  UniversalEngine::media(
      {"/clips/a.mp4", FileKind::video, ""}, "mp3", {}, output, {}, withStandIns());
  EXPECT_THAT(runsOf("ffprobe"),
              ElementsAre(words("-v error " + sources +
                                " -show_format -show_streams -of json /clips/a.mp4")));
  EXPECT_THAT(runsOf("ffmpeg"),
              ElementsAre(words("-hide_banner -loglevel error -nostdin -y " + sources +
                                " -i /clips/a.mp4 -map 0:a:0 -vn -c:a libmp3lame "
                                "-b:a 268k -map_metadata -1 " +
                                output.string())));
}

TEST_F(StandInTest, AreReadAsJson) {
  EXPECT_EQ(probed("echo '{\"format\": {\"size\": \"12\"}}'"),
            (Value::Map{{"format", Value::Map{{"size", "12"}}}}));
  EXPECT_EQ(probed("echo '[1]'"), Value::Map());
  EXPECT_EQ(probed("printf '[h264] invalid\\n{\\n\"streams\": [\\n{\\n}\\n]\\n}\\n'"),
            (Value::Map{{"streams", Value::List{Value::Map()}}}));
  EXPECT_THROW(probed("echo remark"), ValueJson::ParseError);
  EXPECT_THROW(probed(":"), ValueJson::ParseError);
}

TEST_F(StandInTest, MissingEnginesAreNamed) {
  EXPECT_EQ(failureText([this] {
              return UniversalEngine::mediaTool(info("a.mp4"), "split", {}, withStandIns());
            }),
            "Install ffmpeg to use this local operation, then reopen the file.");
}

}  // namespace
}  // namespace tolvane
