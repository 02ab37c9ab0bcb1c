#pragma once

#include "universal/media/media_request.h"

/// The arguments by which a media tool differs from a plain conversion.
namespace tolvane::UniversalEngine {

/// The latest moment that options may name: a day.
inline constexpr double maxSeconds = 86'400;

/// @return nothing without a tool and for tools that only re-encode, such as "compress".
/// @throws ConversionFailure for options out of bounds, and for a rectangle that the frame of the
/// input cannot hold.
[[nodiscard]] Arguments toolArguments(const MediaRequest& request);

}  // namespace tolvane::UniversalEngine
