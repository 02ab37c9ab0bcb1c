#pragma once

#include "universal/media/media_request.h"

/// Codecs and streams of an output.
namespace tolvane::UniversalEngine {

/// H.264 and AAC for a video target; for an audio target the codec that goes with it, and the first
/// audio stream alone.
/// @param quality 0.1 to 1
/// @throws ConversionFailure "This audio output format is unavailable."
[[nodiscard]] Arguments encodingArguments(const MediaRequest& request, double quality);

}  // namespace tolvane::UniversalEngine
