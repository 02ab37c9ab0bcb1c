#include "universal/media/tool_arguments.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <utility>

#include "engine/primitives/conversion_failure.h"
#include "engine/primitives/decimal_text.h"
#include "universal/job/option_readers.h"
#include "universal/job/rectangle.h"
#include "universal/media/media_probe.h"

namespace tolvane::UniversalEngine {

namespace {

using DecimalText::format;

/// Seconds.
struct Interval {
  double start;
  double end;

  [[nodiscard]] double length() const { return end - start; }
};

Interval intervalOf(const Value::Map& options) {
  const double start = number(options, "start", 0, 0, maxSeconds);
  const double end = number(options, "end", 5, 0.01, maxSeconds);
  if (start >= end) {
    throw ConversionFailure::message("End time must be after start time.");
  }
  return {start, end};
}

/// @return the chosen rectangle, which lies in the frame.
Rectangle rectangleOf(const MediaRequest& request) {
  constexpr std::int64_t minimumSide = 2;
  const Rectangle area = rectangle(request.options, minimumSide);
  const std::optional<FrameSize> frame = frameSize(request.probed);
  if (!frame || !area.fitsInto(frame->width, frame->height)) {
    throw ConversionFailure::message("The rectangle must fit within the video frame.");
  }
  return area;
}

Arguments mute(const MediaRequest& /*request*/) {
  return {"-an"};
}

Arguments trim(const MediaRequest& request) {
  const Interval kept = intervalOf(request.options);
  return {"-ss", format(kept.start), "-t", format(kept.length())};
}

Arguments crop(const MediaRequest& request) {
  const auto [x, y, width, height] = rectangleOf(request);
  if (width % 2 != 0 || height % 2 != 0) {
    throw ConversionFailure::message("Video crop dimensions must be even numbers.");
  }
  return {"-vf",
          "crop=" + std::to_string(width) + ":" + std::to_string(height) + ":" + std::to_string(x) +
              ":" + std::to_string(y)};
}

Arguments redact(const MediaRequest& request) {
  const auto [x, y, width, height] = rectangleOf(request);
  return {"-vf",
          "drawbox=x=" + std::to_string(x) + ":y=" + std::to_string(y) + ":w=" +
              std::to_string(width) + ":h=" + std::to_string(height) + ":color=black:t=fill"};
}

/// The tempo changes in two equal stages, because one stage reaches no less than half.
Arguments speed(const MediaRequest& request) {
  const double factor = number(request.options, "speed", 1.5, 0.25, 4);
  Arguments arguments = {"-filter:v", "setpts=PTS/" + format(factor)};
  if (hasAudio(request.probed)) {
    const std::string stage = "atempo=" + format(std::sqrt(factor));
    arguments.insert(arguments.end(), {"-filter:a", stage + "," + stage});
  }
  return arguments;
}

Arguments normalize(const MediaRequest& /*request*/) {
  return {"-af", "loudnorm=I=-16:TP=-1.5:LRA=11"};
}

Arguments channels(const MediaRequest& request) {
  return {"-ac", std::to_string(integer(request.options, "channels", 1, 1, 2))};
}

/// Silences the interval and mixes in a tone of the same length at the same place.
Arguments bleep(const MediaRequest& request) {
  const Interval covered = intervalOf(request.options);
  const auto delay = static_cast<std::int64_t>(covered.start * 1000);  // milliseconds
  return {"-filter_complex",
          "[0:a]volume=0:enable='between(t," + format(covered.start) + "," + format(covered.end) +
              ")'[clean];sine=frequency=1000:duration=" + format(covered.length()) +
              ",adelay=" + std::to_string(delay) +
              ":all=1[beep];[clean][beep]amix=inputs=2:duration=first:normalize=0[out]",
          "-map",
          "[out]"};
}

using Builder = Arguments (*)(const MediaRequest&);
constexpr std::array<std::pair<std::string_view, Builder>, 8> builders = {{{"mute", mute},
                                                                           {"trim", trim},
                                                                           {"crop", crop},
                                                                           {"redact", redact},
                                                                           {"speed", speed},
                                                                           {"normalize", normalize},
                                                                           {"channels", channels},
                                                                           {"bleep", bleep}}};

}  // namespace

Arguments toolArguments(const MediaRequest& request) {
  const auto* found = std::find_if(builders.begin(), builders.end(), [&request](const auto& entry) {
    return request.tool == entry.first;
  });
  return found != builders.end() ? found->second(request) : Arguments();
}

}  // namespace tolvane::UniversalEngine
