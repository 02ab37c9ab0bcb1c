#pragma once

#include <filesystem>
#include <string>

#include "engine/primitives/cancellation_token.h"
#include "platform/images/bitmap.h"

namespace tolvane::UniversalEngine {

/// The text in a picture of unknown resolution, its lines separated by line feeds.
/// @throws ConversionFailure when there is none, or the token was cancelled before or meanwhile;
/// PlatformError when recognition is not possible.
[[nodiscard]] std::string recognize(const Bitmap& picture, const CancellationToken& token);

/// As above. @throws also PlatformError when the file is no image.
[[nodiscard]] std::string recognize(const std::filesystem::path& image,
                                    const CancellationToken& token);

}  // namespace tolvane::UniversalEngine
