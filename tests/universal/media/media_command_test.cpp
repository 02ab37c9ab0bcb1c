#include "universal/media/media_command.h"

#include <cmath>
#include <ostream>

#include <gtest/gtest.h>

#include "tests/support/failure_text.h"

namespace tolvane::UniversalEngine {
namespace {

const Value sound = Value::Map{{"codec_type", "audio"}};
const Value picture = Value::Map{{"codec_type", "video"}, {"width", 320}, {"height", 240}};
const Value::List film = {picture, sound};
const Value::List silentFilm = {picture};
const Value::List song = {sound};

/// A film of 320 x 240 that is to be shown turned.
Value::List turnedBy(const Value& degrees) {
  Value::Map stream = *picture.map();
  stream["side_data_list"] = Value::List{Value::Map{{"side_data_type", "CPB properties"}},
                                         Value::Map{{"rotation", degrees}}};
  return {stream};
}

struct Request {
  std::string_view target;
  std::optional<std::string_view> tool = std::nullopt;
  Value::Map options = {};
  Value streams = film;

  [[nodiscard]] MediaCommand command() const {
    return mediaCommand({target, tool, options, Value::Map{{"streams", streams}}});
  }
};

std::string joined(const Arguments& arguments) {
  std::string text;
  for (const std::string& argument : arguments) {
    text += (text.empty() ? "" : " ") + argument;
  }
  return text;
}

struct CommandCase {
  const char* label;
  Request request;
  std::string arguments;
  double timeout = 600;
};

void PrintTo(const CommandCase& c, std::ostream* out) {
  *out << c.label;
}

class MediaCommandTest : public ::testing::TestWithParam<CommandCase> {};

TEST_P(MediaCommandTest, IsToTheLetter) {
  const MediaCommand command = GetParam().request.command();
  EXPECT_EQ(joined(command.arguments), GetParam().arguments);
  EXPECT_EQ(command.timeout, GetParam().timeout);
}

const std::string video = "-c:v libx264 -preset fast -crf 21 -pix_fmt yuv420p";
const std::string withSound = " -c:a aac -b:a 192k";
const std::string ending = " -movflags +faststart -map_metadata -1";
const std::string asMp4 = video + withSound + ending;
const std::string asM4a = "-map 0:a:0 -vn -c:a aac -b:a 217k -map_metadata -1";
const std::string animation =
    "-filter_complex fps=12,scale=720:-2:flags=lanczos,split[a][b];[a]palettegen[p];"
    "[b][p]paletteuse -an";

INSTANTIATE_TEST_SUITE_P(
    Targets,
    MediaCommandTest,
    ::testing::Values(
        CommandCase{"mp4", {"mp4"}, asMp4},
        CommandCase{"mov of a silent film", {"mov", {}, {}, silentFilm}, asMp4},
        CommandCase{"gif", {"gif"}, animation},
        CommandCase{"gif of a silent film, whatever the tool",
                    {"gif", "bleep", {{"start", -1}}, silentFilm},
                    animation},
        CommandCase{"mp3", {"mp3"}, "-map 0:a:0 -vn -c:a libmp3lame -b:a 268k -map_metadata -1"},
        CommandCase{"mp3, best",
                    {"mp3", {}, {{"quality", 1}}},
                    "-map 0:a:0 -vn -c:a libmp3lame -b:a 320k -map_metadata -1"},
        CommandCase{"m4a", {"m4a"}, asM4a},
        CommandCase{"wav", {"wav"}, "-map 0:a:0 -vn -c:a pcm_s16le -map_metadata -1"},
        CommandCase{"aiff", {"aiff"}, "-map 0:a:0 -vn -c:a pcm_s16be -map_metadata -1"},
        CommandCase{"flac", {"flac"}, "-map 0:a:0 -vn -c:a flac -map_metadata -1"},
        CommandCase{"ogg",
                    {"ogg"},
                    "-map 0:a:0 -vn -c:a vorbis -strict experimental -ac 2 -map_metadata -1"},
        CommandCase{"opus", {"opus"}, "-map 0:a:0 -vn -c:a libopus -b:a 128k -map_metadata -1"}));

INSTANTIATE_TEST_SUITE_P(
    Quality,
    MediaCommandTest,
    ::testing::Values(
        CommandCase{"compressed film",
                    {"mp4", "compress", {{"quality", 0.5}}},
                    "-c:v libx264 -preset fast -crf 26 -pix_fmt yuv420p" + withSound + ending},
        CommandCase{"best film",
                    {"mp4", "compress", {{"quality", "1"}}},
                    "-c:v libx264 -preset fast -crf 18 -pix_fmt yuv420p" + withSound + ending},
        CommandCase{"smallest film",
                    {"mp4", "compress", {{"quality", 0.1}}},
                    "-c:v libx264 -preset fast -crf 33 -pix_fmt yuv420p" + withSound + ending},
        CommandCase{"compressed song",
                    {"m4a", "compress", {{"quality", 0.5}}, song},
                    "-map 0:a:0 -vn -c:a aac -b:a 160k -map_metadata -1"}));

const std::string beep =
    "-filter_complex [0:a]volume=0:enable='between(t,1.5,4.0)'[clean];"
    "sine=frequency=1000:duration=2.5,adelay=1500:all=1[beep];"
    "[clean][beep]amix=inputs=2:duration=first:normalize=0[out] -map [out] ";

INSTANTIATE_TEST_SUITE_P(
    Tools,
    MediaCommandTest,
    ::testing::Values(
        CommandCase{"mute", {"mp4", "mute"}, "-an " + video + ending},
        CommandCase{"trim", {"mp4", "trim"}, "-ss 0.0 -t 5.0 " + asMp4},
        CommandCase{"trim, from text",
                    {"mp4", "trim", {{"start", "2"}, {"end", "7"}}},
                    "-ss 2.0 -t 5.0 " + asMp4},
        CommandCase{"trim, unreadable options",
                    {"m4a", "trim", {{"start", "abc"}, {"end", Value::List{}}}, song},
                    "-ss 0.0 -t 5.0 " + asM4a},
        CommandCase{"crop up to the edges",
                    {"mp4", "crop", {{"x", 20}, {"y", "40"}, {"width", 300}, {"height", 200.0}}},
                    "-vf crop=300:200:20:40 " + asMp4},
        CommandCase{"crop of a turned film",
                    {"mp4", "crop", {{"x", 140}, {"y", 220}}, turnedBy(-90)},
                    "-vf crop=100:100:140:220 " + asMp4},
        CommandCase{"redact, odd",
                    {"mp4", "redact", {{"x", 1}, {"width", 101}}},
                    "-vf drawbox=x=1:y=0:w=101:h=100:color=black:t=fill " + asMp4},
        CommandCase{"speed",
                    {"mp4", "speed", {{"speed", 4}}},
                    "-filter:v setpts=PTS/4.0 -filter:a atempo=2.0,atempo=2.0 " + asMp4},
        CommandCase{"speed of a silent film",
                    {"mp4", "speed", {}, silentFilm},
                    "-filter:v setpts=PTS/1.5 " + asMp4},
        CommandCase{"normalize",
                    {"m4a", "normalize", {}, song},
                    "-af loudnorm=I=-16:TP=-1.5:LRA=11 " + asM4a},
        CommandCase{"channels", {"m4a", "channels", {{"channels", 2}}, song}, "-ac 2 " + asM4a},
        CommandCase{"bleep",
                    {"m4a", "bleep", {{"start", 1.5}, {"end", 4}}, song},
                    beep + "-vn -c:a aac -b:a 217k -map_metadata -1"},
        CommandCase{
            "bleep of a film", {"mp4", "bleep", {{"start", 1.5}, {"end", 4}}}, beep + asMp4},
        CommandCase{"snapshot",
                    {"png", "snapshot", {{"start", 0.25}}, silentFilm},
                    "-ss 0.25 -frames:v 1",
                    120},
        CommandCase{"visualize",
                    {"png", "visualize", {}, song},
                    "-filter_complex showwavespic=s=1600x400:colors=0x9bc8ff -frames:v 1",
                    120},
        CommandCase{"unknown tool", {"mp4", "unknown"}, asMp4}));

struct RefusalCase {
  Request request;
  const char* message;
};

void PrintTo(const RefusalCase& c, std::ostream* out) {
  *out << c.request.target << " " << c.request.tool.value_or("") << ": " << c.message;
}

class MediaRefusalTest : public ::testing::TestWithParam<RefusalCase> {};

TEST_P(MediaRefusalTest, SaysWhy) {
  EXPECT_EQ(support::failureText([] { return GetParam().request.command(); }), GetParam().message);
}

constexpr const char* badQuality = "Quality must be between 0.1 and 1.0.";
constexpr const char* badStart = "Start must be between 0.0 and 86400.0.";
constexpr const char* noSound = "This media file has no audio track to export.";
constexpr const char* outside = "The rectangle must fit within the video frame.";

INSTANTIATE_TEST_SUITE_P(
    Options,
    MediaRefusalTest,
    ::testing::Values(
        RefusalCase{{"gif", {}, {{"quality", 0.05}}}, badQuality},
        RefusalCase{{"png", "visualize", {{"quality", std::nan("")}}}, badQuality},
        RefusalCase{{"png", "snapshot", {{"quality", 2}, {"start", -1}}}, badQuality},
        RefusalCase{{"png", "snapshot", {{"start", 86'401}}}, badStart},
        RefusalCase{{"mp4", "trim", {{"start", "-1"}, {"end", 0}}}, badStart},
        RefusalCase{{"mp4", "trim", {{"end", 0}}}, "End must be between 0.01 and 86400.0."},
        RefusalCase{{"mp4", "trim", {{"start", 5}, {"end", 5}}},
                    "End time must be after start time."},
        RefusalCase{{"m4a", "bleep", {{"start", 6}}}, "End time must be after start time."},
        RefusalCase{{"mp4", "speed", {{"speed", 4.1}}}, "Speed must be between 0.25 and 4.0."},
        RefusalCase{{"m4a", "channels", {{"channels", 3}}},
                    "Channels must be between 1.0 and 2.0."},
        RefusalCase{{"m4a", "channels", {{"channels", 1.5}}}, "Channels must be a whole number."},
        RefusalCase{{"mp4", "crop", {{"x", -1}, {"y", -1}}}, "X must be between 0.0 and 16384.0."},
        RefusalCase{{"mp4", "crop", {{"y", 20'000.5}}}, "Y must be between 0.0 and 16384.0."},
        RefusalCase{{"mp4", "redact", {{"width", 1}}}, "Width must be between 2.0 and 16384.0."},
        RefusalCase{{"mp4", "redact", {{"height", "9.5"}}}, "Height must be a whole number."}));

INSTANTIATE_TEST_SUITE_P(
    Inputs,
    MediaRefusalTest,
    ::testing::Values(
        RefusalCase{{"mp3", {}, {}, silentFilm}, noSound},
        RefusalCase{{"m4a", "trim", {{"start", -1}}, silentFilm}, noSound},
        RefusalCase{{"m4a", "trim", {}, Value()}, noSound},
        RefusalCase{{"m4a", "trim", {}, Value::List{sound, "no stream"}}, noSound},
        RefusalCase{{"mp4", "crop", {{"x", 221}}}, outside},
        RefusalCase{{"mp4", "redact", {{"y", 140}, {"height", 101}}}, outside},
        RefusalCase{{"mp4", "crop", {{"x", 141}}, turnedBy(90)}, outside},
        RefusalCase{{"mp4", "redact", {{"x", 141}}, turnedBy(-270)}, outside},
        RefusalCase{{"mp4", "redact", {{"y", 221}}, turnedBy(-89.5)}, outside},
        RefusalCase{{"mp4", "redact", {{"y", 141}}, turnedBy(180)}, outside},
        RefusalCase{{"mp4", "redact", {{"y", 141}}, turnedBy(45)}, outside},
        RefusalCase{{"mp4", "crop", {}, song}, outside},
        RefusalCase{{"mp4", "crop", {}, Value::List{Value::Map{{"codec_type", "video"}}, picture}},
                    outside},
        RefusalCase{{"mp4", "crop", {{"width", 101}}},
                    "Video crop dimensions must be even numbers."},
        RefusalCase{{"mp4", "crop", {{"height", 51}, {"x", 300}}}, outside},
        RefusalCase{{"wma"}, "This audio output format is unavailable."},
        RefusalCase{{"wma", "trim", {{"start", 9}}}, "End time must be after start time."}));

TEST(SegmentCommandTest, ForcesKeyFramesWhereItCuts) {
  EXPECT_EQ(joined(segmentCommand({}).arguments),
            "-c:v libx264 -c:a aac -force_key_frames expr:gte(t,n_forced*30.0) -f segment "
            "-segment_time 30.0 -reset_timestamps 1");
  EXPECT_EQ(support::failureText([] {
              return segmentCommand({{"seconds", 0.05}});
            }),
            "Seconds must be between 0.1 and 86400.0.");
}

}  // namespace
}  // namespace tolvane::UniversalEngine
