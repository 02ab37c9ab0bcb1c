#pragma once

#include <filesystem>
#include <string>

namespace tolvane::UniversalFormats {

/// The plain text of a text clipping: a property list whose "UTI-Data" holds the clipped text in
/// one or more encodings, of which the most faithful one is taken.
/// @throws ConversionFailure when the file is empty, over 16 MiB, no property list or without text;
/// PlatformError when its size cannot be read.
[[nodiscard]] std::string clippingText(const std::filesystem::path& url);

}  // namespace tolvane::UniversalFormats
