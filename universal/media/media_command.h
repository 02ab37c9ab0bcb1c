#pragma once

#include "universal/media/media_request.h"

/// What ffmpeg is to do with one input. Pure: the same request gives the same arguments.
namespace tolvane::UniversalEngine {

/// One run of ffmpeg, but for its input and output.
struct MediaCommand {
  Arguments arguments;  ///< what stands between the input and the path of the output
  double timeout = 0;   ///< seconds
};

/// A conversion or a tool that makes one file. Tools that this does not know re-encode.
/// @throws ConversionFailure for options out of bounds, an input that lacks what the request needs,
/// and an unknown target.
[[nodiscard]] MediaCommand mediaCommand(const MediaRequest& request);

/// Cuts into MP4 files of "seconds" each, of which each starts at zero. The output is a pattern.
/// @throws ConversionFailure "Seconds must be between 0.1 and 86400.0."
[[nodiscard]] MediaCommand segmentCommand(const Value::Map& options);

}  // namespace tolvane::UniversalEngine
