#include "universal/combined/joined_video.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include <fmt/format.h>

#include "engine/primitives/conversion_failure.h"
#include "platform/files/file_system.h"
#include "universal/job/arguments.h"
#include "universal/media/media.h"
#include "universal/media/media_probe.h"

namespace tolvane::UniversalEngine {

namespace {

namespace fs = std::filesystem;

constexpr double timeLimit = 600;  // seconds, of every run

/// H.264 in yuv420p needs even sides.
std::int64_t evenSide(std::optional<std::int64_t> side, std::int64_t most, std::int64_t fallback) {
  const std::int64_t pixels = std::min(side.value_or(fallback), most);
  return pixels - pixels % 2;
}

FrameSize frameOf(const Value::Map& probed) {
  const FrameSides sides = frameSides(probed);
  return {evenSide(sides.width, 1920, 1280), evenSide(sides.height, 1080, 720)};
}

/// Writes one clip of the format that all clips have.
/// @param name of the clip in the workspace.
void writeClip(const fs::path& video,
               const FrameSize& frame,
               const std::string& name,
               const JobContext& context) {
  Arguments arguments = mediaPrefix(video);
  const bool isSilent = !hasAudio(probe(video, context));
  if (isSilent) {
    arguments.insert(arguments.end(), {"-f", "lavfi", "-i", "anullsrc=r=48000:cl=stereo"});
  }
  const std::string fitting = fmt::format(
      "scale={0}:{1}:force_original_aspect_ratio=decrease,"
      "pad={0}:{1}:(ow-iw)/2:(oh-ih)/2,setsar=1",
      frame.width,
      frame.height);
  // One option a line.
  // clang-format off
  const Arguments encoding = {
      "-map", "0:v:0",
      "-map", isSilent ? "1:a:0" : "0:a:0",
      "-shortest",
      "-vf", fitting,
      "-r", "30",
      "-c:v", "libx264",
      "-preset", "fast",
      "-pix_fmt", "yuv420p",
      "-c:a", "aac",
      "-ar", "48000",
      "-ac", "2",
      "-b:a", "192k",
      "-map_metadata", "-1",
      (context.workspace / name).string()};
  // clang-format on
  arguments.insert(arguments.end(), encoding.begin(), encoding.end());
  context.run("ffmpeg", std::move(arguments), timeLimit, {video});
}

/// The engine looks names up by addresses, in which some signs of a folder's name end the path.
std::string listPath(const fs::path& list) {
  const bool isReadAsAddress = list.native().find_first_of("#?%\\") != std::string::npos;
  return (isReadAsAddress ? list.filename() : list).string();
}

}  // namespace

fs::path joinedVideo(const std::vector<FileInfo>& videos, const JobContext& context) {
  if (videos.size() < 2) {
    throw ConversionFailure::message("Choose at least two videos.");
  }
  const FrameSize frame = frameOf(probe(videos.front().url, context));
  std::string list;
  for (std::size_t index = 0; index < videos.size(); ++index) {
    const std::string name = "clip-" + std::to_string(index) + ".mp4";
    writeClip(videos[index].url, frame, name, context);
    list += (index == 0 ? "file '" : "\nfile '") + name + "'";
  }
  const fs::path listFile = context.workspace / "join.txt";
  FileSystem::writeAtomically(listFile, asBytes(list));
  fs::path output = context.workspace / "result-joined.mp4";
  // Safe mode takes bare names only, which it looks up beside the list.
  Arguments arguments = mediaHead();
  arguments.insert(
      arguments.end(),
      {"-f", "concat", "-safe", "1", "-i", listPath(listFile), "-c", "copy", output.string()});
  context.run("ffmpeg", std::move(arguments), timeLimit);
  return output;
}

}  // namespace tolvane::UniversalEngine
