#include "universal/media/media_command.h"

#include "engine/primitives/conversion_failure.h"
#include "engine/primitives/decimal_text.h"
#include "universal/job/option_readers.h"
#include "universal/media/encoding_arguments.h"
#include "universal/media/media_probe.h"
#include "universal/media/tool_arguments.h"

namespace tolvane::UniversalEngine {

namespace {

constexpr double encodingTimeout = 600;  // seconds
constexpr double pictureTimeout = 120;

/// 12 frames a second, 720 pixels wide, colours chosen from the clip itself, in one pass.
constexpr const char* animationGraph =
    "fps=12,scale=720:-2:flags=lanczos,split[a][b];[a]palettegen[p];[b][p]paletteuse";
constexpr const char* waveformGraph = "showwavespic=s=1600x400:colors=0x9bc8ff";

void append(Arguments& arguments, Arguments more) {
  arguments.insert(arguments.end(), more.begin(), more.end());
}

MediaCommand snapshot(const Value::Map& options) {
  const double start = number(options, "start", 0, 0, maxSeconds);
  return {{"-ss", DecimalText::format(start), "-frames:v", "1"}, pictureTimeout};
}

MediaCommand encoding(const MediaRequest& request, double quality) {
  if (!request.isVideo() && !hasAudio(request.probed)) {
    throw ConversionFailure::message("This media file has no audio track to export.");
  }
  MediaCommand command = {toolArguments(request), encodingTimeout};
  append(command.arguments, encodingArguments(request, quality));
  append(command.arguments, {"-map_metadata", "-1"});
  return command;
}

}  // namespace

MediaCommand mediaCommand(const MediaRequest& request) {
  const double quality = number(request.options, "quality", 0.8, 0.1, 1);
  if (request.target == "gif") {
    return {{"-filter_complex", animationGraph, "-an"}, encodingTimeout};
  }
  if (request.tool == "snapshot") {
    return snapshot(request.options);
  }
  if (request.tool == "visualize") {
    return {{"-filter_complex", waveformGraph, "-frames:v", "1"}, pictureTimeout};
  }
  return encoding(request, quality);
}

MediaCommand segmentCommand(const Value::Map& options) {
  const std::string seconds = DecimalText::format(number(options, "seconds", 30, 0.1, maxSeconds));
  return {{"-c:v",
           "libx264",
           "-c:a",
           "aac",
           "-force_key_frames",
           "expr:gte(t,n_forced*" + seconds + ")",
           "-f",
           "segment",
           "-segment_time",
           seconds,
           "-reset_timestamps",
           "1"},
          encodingTimeout};
}

}  // namespace tolvane::UniversalEngine
