#include "universal/media/encoding_arguments.h"

#include <algorithm>

#include "engine/primitives/conversion_failure.h"

namespace tolvane::UniversalEngine {

namespace {

/// Bit rates in kbit/s grow from `rate` by `rateRange` * quality; 0 leaves them to the codec.
struct AudioTarget {
  std::string_view extension;
  const char* codec;
  double rate = 0;
  double rateRange = 0;
  Arguments more = {};
};

const std::vector<AudioTarget>& audioTargets() {
  static const std::vector<AudioTarget> targets = {
      {"mp3", "libmp3lame", 64, 256},
      {"m4a", "aac", 64, 192},
      {"wav", "pcm_s16le"},
      {"aiff", "pcm_s16be"},
      {"flac", "flac"},
      {"ogg", "vorbis", 0, 0, {"-strict", "experimental", "-ac", "2"}},
      {"opus", "libopus", 128, 0}};
  return targets;
}

Arguments codecArguments(std::string_view extension, double quality) {
  const auto found =
      std::find_if(audioTargets().begin(), audioTargets().end(), [extension](const auto& target) {
        return target.extension == extension;
      });
  if (found == audioTargets().end()) {
    throw ConversionFailure::message("This audio output format is unavailable.");
  }
  Arguments arguments = {"-c:a", found->codec};
  if (found->rate > 0) {
    const int rate = static_cast<int>(found->rate + found->rateRange * quality);
    arguments.insert(arguments.end(), {"-b:a", std::to_string(rate) + "k"});
  }
  arguments.insert(arguments.end(), found->more.begin(), found->more.end());
  return arguments;
}

Arguments videoArguments(const MediaRequest& request, double quality) {
  const int rateFactor = static_cast<int>(35 - 17 * quality);  // 18 is the best, 33 the smallest
  Arguments arguments = {"-c:v",
                         "libx264",
                         "-preset",
                         "fast",
                         "-crf",
                         std::to_string(rateFactor),
                         "-pix_fmt",
                         "yuv420p"};
  if (request.tool != "mute") {
    arguments.insert(arguments.end(), {"-c:a", "aac", "-b:a", "192k"});
  }
  arguments.insert(arguments.end(), {"-movflags", "+faststart"});
  return arguments;
}

Arguments audioArguments(const MediaRequest& request, double quality) {
  Arguments arguments;
  if (request.tool != "bleep") {  // it maps what it mixed
    arguments = {"-map", "0:a:0"};
  }
  arguments.emplace_back("-vn");
  const Arguments codec = codecArguments(request.target, quality);
  arguments.insert(arguments.end(), codec.begin(), codec.end());
  return arguments;
}

}  // namespace

Arguments encodingArguments(const MediaRequest& request, double quality) {
  return request.isVideo() ? videoArguments(request, quality) : audioArguments(request, quality);
}

}  // namespace tolvane::UniversalEngine
