#include "universal/media/media_command.h"

#include <cmath>

#include <gtest/gtest.h>

#include "tests/support/failure_text.h"
#include "tests/support/words.h"

namespace tolvane::UniversalEngine {
namespace {

using support::words;

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

struct CommandCase {
  const char* label;
  Request request;
  std::string arguments;
  double timeout = 600;
};

const std::string video = "-c:v libx264 -preset fast -crf 21 -pix_fmt yuv420p";
const std::string withSound = " -c:a aac -b:a 192k";
const std::string ending = " -movflags +faststart -map_metadata -1";
const std::string asMp4 = video + withSound + ending;
const std::string asM4a = "-map 0:a:0 -vn -c:a aac -b:a 217k -map_metadata -1";
const std::string animation =
    "-filter_complex fps=12,scale=720:-2:flags=lanczos,split[a][b];[a]palettegen[p];"
    "[b][p]paletteuse -an";

const std::string beep =
    "-filter_complex [0:a]volume=0:enable='between(t,1.5,4.0)'[clean];"
    "sine=frequency=1000:duration=2.5,adelay=1500:all=1[beep];"
    "[clean][beep]amix=inputs=2:duration=first:normalize=0[out] -map [out] ";

const CommandCase mediaCommandCases[] = {
    {"mp4", {"mp4"}, asMp4},
    {"mov of a silent film", {"mov", {}, {}, silentFilm}, asMp4},
    {"gif", {"gif"}, animation},
    {"gif of a silent film, whatever the tool",
     {"gif", "bleep", {{"start", -1}}, silentFilm},
     animation},
    {"mp3", {"mp3"}, "-map 0:a:0 -vn -c:a libmp3lame -b:a 268k -map_metadata -1"},
    {"mp3, best",
     {"mp3", {}, {{"quality", 1}}},
     "-map 0:a:0 -vn -c:a libmp3lame -b:a 320k -map_metadata -1"},
    {"m4a", {"m4a"}, asM4a},
    {"wav", {"wav"}, "-map 0:a:0 -vn -c:a pcm_s16le -map_metadata -1"},
    {"aiff", {"aiff"}, "-map 0:a:0 -vn -c:a pcm_s16be -map_metadata -1"},
    {"flac", {"flac"}, "-map 0:a:0 -vn -c:a flac -map_metadata -1"},
    {"ogg", {"ogg"}, "-map 0:a:0 -vn -c:a vorbis -strict experimental -ac 2 -map_metadata -1"},
    {"opus", {"opus"}, "-map 0:a:0 -vn -c:a libopus -b:a 128k -map_metadata -1"},
    {"compressed film",
     {"mp4", "compress", {{"quality", 0.5}}},
     "-c:v libx264 -preset fast -crf 26 -pix_fmt yuv420p" + withSound + ending},
    {"best film",
     {"mp4", "compress", {{"quality", "1"}}},
     "-c:v libx264 -preset fast -crf 18 -pix_fmt yuv420p" + withSound + ending},
    {"smallest film",
     {"mp4", "compress", {{"quality", 0.1}}},
     "-c:v libx264 -preset fast -crf 33 -pix_fmt yuv420p" + withSound + ending},
    {"compressed song",
     {"m4a", "compress", {{"quality", 0.5}}, song},
     "-map 0:a:0 -vn -c:a aac -b:a 160k -map_metadata -1"},
    {"mute", {"mp4", "mute"}, "-an " + video + ending},
    {"trim", {"mp4", "trim"}, "-ss 0.0 -t 5.0 " + asMp4},
    {"trim, from text", {"mp4", "trim", {{"start", "2"}, {"end", "7"}}}, "-ss 2.0 -t 5.0 " + asMp4},
    {"trim, unreadable options",
     {"m4a", "trim", {{"start", "abc"}, {"end", Value::List{}}}, song},
     "-ss 0.0 -t 5.0 " + asM4a},
    {"crop up to the edges",
     {"mp4", "crop", {{"x", 20}, {"y", "40"}, {"width", 300}, {"height", 200.0}}},
     "-vf crop=300:200:20:40 " + asMp4},
    {"crop of a turned film",
     {"mp4", "crop", {{"x", 140}, {"y", 220}}, turnedBy(-90)},
     "-vf crop=100:100:140:220 " + asMp4},
    {"redact, odd",
     {"mp4", "redact", {{"x", 1}, {"width", 101}}},
     "-vf drawbox=x=1:y=0:w=101:h=100:color=black:t=fill " + asMp4},
    {"speed",
     {"mp4", "speed", {{"speed", 4}}},
     "-filter:v setpts=PTS/4.0 -filter:a atempo=2.0,atempo=2.0 " + asMp4},
    {"speed of a silent film",
     {"mp4", "speed", {}, silentFilm},
     "-filter:v setpts=PTS/1.5 " + asMp4},
    {"normalize", {"m4a", "normalize", {}, song}, "-af loudnorm=I=-16:TP=-1.5:LRA=11 " + asM4a},
    {"channels", {"m4a", "channels", {{"channels", 2}}, song}, "-ac 2 " + asM4a},
    {"bleep",
     {"m4a", "bleep", {{"start", 1.5}, {"end", 4}}, song},
     beep + "-vn -c:a aac -b:a 217k -map_metadata -1"},
    {"bleep of a film", {"mp4", "bleep", {{"start", 1.5}, {"end", 4}}}, beep + asMp4},
    {"snapshot", {"png", "snapshot", {{"start", 0.25}}, silentFilm}, "-ss 0.25 -frames:v 1", 120},
    {"visualize",
     {"png", "visualize", {}, song},
     "-filter_complex showwavespic=s=1600x400:colors=0x9bc8ff -frames:v 1",
     120},
    {"unknown tool", {"mp4", "unknown"}, asMp4},
};

TEST(MediaCommandTest, IsToTheLetter) {
  for (const CommandCase& c : mediaCommandCases) {
    SCOPED_TRACE(c.label);
    const MediaCommand command = c.request.command();
    EXPECT_EQ(command.arguments, words(c.arguments));
    EXPECT_EQ(command.timeout, c.timeout);
  }
}

constexpr const char* badQuality = "Quality must be between 0.1 and 1.0.";
constexpr const char* badStart = "Start must be between 0.0 and 86400.0.";
constexpr const char* noSound = "This media file has no audio track to export.";
constexpr const char* outside = "The rectangle must fit within the video frame.";

const struct {
  Request request;
  const char* message;
} mediaRefusalCases[] = {
    {{"gif", {}, {{"quality", 0.05}}}, badQuality},
    {{"png", "visualize", {{"quality", std::nan("")}}}, badQuality},
    {{"png", "snapshot", {{"quality", 2}, {"start", -1}}}, badQuality},
    {{"png", "snapshot", {{"start", 86'401}}}, badStart},
    {{"mp4", "trim", {{"start", "-1"}, {"end", 0}}}, badStart},
    {{"mp4", "trim", {{"end", 0}}}, "End must be between 0.01 and 86400.0."},
    {{"mp4", "trim", {{"start", 5}, {"end", 5}}}, "End time must be after start time."},
    {{"m4a", "bleep", {{"start", 6}}}, "End time must be after start time."},
    {{"mp4", "speed", {{"speed", 4.1}}}, "Speed must be between 0.25 and 4.0."},
    {{"m4a", "channels", {{"channels", 3}}}, "Channels must be between 1.0 and 2.0."},
    {{"m4a", "channels", {{"channels", 1.5}}}, "Channels must be a whole number."},
    {{"mp4", "crop", {{"x", -1}, {"y", -1}}}, "X must be between 0.0 and 16384.0."},
    {{"mp4", "crop", {{"y", 20'000.5}}}, "Y must be between 0.0 and 16384.0."},
    {{"mp4", "redact", {{"width", 1}}}, "Width must be between 2.0 and 16384.0."},
    {{"mp4", "redact", {{"height", "9.5"}}}, "Height must be a whole number."},
    {{"mp3", {}, {}, silentFilm}, noSound},
    {{"m4a", "trim", {{"start", -1}}, silentFilm}, noSound},
    {{"m4a", "trim", {}, Value()}, noSound},
    {{"m4a", "trim", {}, Value::List{sound, "no stream"}}, noSound},
    {{"mp4", "crop", {{"x", 221}}}, outside},
    {{"mp4", "redact", {{"y", 140}, {"height", 101}}}, outside},
    {{"mp4", "crop", {{"x", 141}}, turnedBy(90)}, outside},
    {{"mp4", "redact", {{"x", 141}}, turnedBy(-270)}, outside},
    {{"mp4", "redact", {{"y", 221}}, turnedBy(-89.5)}, outside},
    {{"mp4", "redact", {{"y", 141}}, turnedBy(180)}, outside},
    {{"mp4", "redact", {{"y", 141}}, turnedBy(45)}, outside},
    {{"mp4", "crop", {}, song}, outside},
    {{"mp4", "crop", {}, Value::List{Value::Map{{"codec_type", "video"}}, picture}}, outside},
    {{"mp4", "crop", {{"width", 101}}}, "Video crop dimensions must be even numbers."},
    {{"mp4", "crop", {{"height", 51}, {"x", 300}}}, outside},
    {{"wma"}, "This audio output format is unavailable."},
    {{"wma", "trim", {{"start", 9}}}, "End time must be after start time."},
};

TEST(MediaRefusalTest, SaysWhy) {
  for (const auto& c : mediaRefusalCases) {
    SCOPED_TRACE(c.message);
    EXPECT_EQ(support::failureText([&] { return c.request.command(); }), c.message);
  }
}

TEST(SegmentCommandTest, ForcesKeyFramesWhereItCuts) {
  EXPECT_EQ(segmentCommand({}).arguments,
            words("-c:v libx264 -c:a aac -force_key_frames expr:gte(t,n_forced*30.0) -f segment "
                  "-segment_time 30.0 -reset_timestamps 1"));
  EXPECT_EQ(support::failureText([] {
              return segmentCommand({{"seconds", 0.05}});
            }),
            "Seconds must be between 0.1 and 86400.0.");
}

}  // namespace
}  // namespace tolvane::UniversalEngine
