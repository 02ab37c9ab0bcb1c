#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>

#include "engine/primitives/value.h"
#include "universal/job/arguments.h"
#include "universal/job/job_context.h"

/// What ffprobe tells about an audio or video file.
namespace tolvane::UniversalEngine {

/// Pixels.
struct FrameSize {
  std::int64_t width = 0;
  std::int64_t height = 0;
};

/// Pixels; a side is absent when the file does not say.
struct FrameSides {
  std::optional<std::int64_t> width;
  std::optional<std::int64_t> height;
};

/// The options in front of an input of ffmpeg and ffprobe: only files, and only containers that
/// hold their sound and pictures themselves, whatever the file's name says. Lists of other files to
/// play are none of them.
[[nodiscard]] Arguments allowedSources();

/// Runs ffprobe for at most 30 seconds.
/// @return the members "format" and "streams" as it prints them; none when it prints no JSON
/// object.
/// @throws ValueJson::ParseError when it prints no JSON. @throws as LocalToolchain::run
[[nodiscard]] Value::Map probe(const std::filesystem::path& url, const JobContext& context);

/// @param probed what probe() returned. A "streams" that is not a list of maps counts as empty.
[[nodiscard]] bool hasAudio(const Value::Map& probed);

/// @param type "audio" or "video".
/// @return the first stream of that type, as it was printed; null when there is none.
[[nodiscard]] const Value& firstStream(const Value::Map& probed, std::string_view type);

/// The frame of the first video stream as it is seen and as filters get it: the engine turns a film
/// that is to be shown turned before it filters it.
[[nodiscard]] FrameSides frameSides(const Value::Map& probed);

/// @return frameSides() when both are known.
[[nodiscard]] std::optional<FrameSize> frameSize(const Value::Map& probed);

}  // namespace tolvane::UniversalEngine
